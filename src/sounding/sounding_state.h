// The running sounding: the console's mode, depth, readings and recorded rows.
#pragma once

#include <array>
#include <cstdint>
#include <set>
#include <string>

#include "core/channel_table.h"

namespace penlog {

/// A change of a port asked for on the port screen; `Mainloop` serves it between two passes.
struct PortRequest {
  std::int16_t Requested = 0;  ///< -1 until it is served
  /// COM number; 0 switches an output off. For the truck interface 0 means its old number, and
  /// `kNoTruckPort` switches it off.
  std::int16_t NewPort = 0;
};
constexpr std::int16_t kNoTruckPort = -1;

/// What is to be appended to one file and is not known to be on its medium.
struct HeldText {
  std::string Text;
  std::int64_t FileLength = -1;  ///< bytes of the file that are on the medium; -1: not begun
  bool Failed = false;           ///< the last attempt failed: part of the text may have landed
  /// A sync failed. The system may have forgotten what it was to bring to the medium, and then no
  /// later sync tells: the file has to be written anew.
  bool SyncFailed = false;
  std::uint64_t Print = 0;  ///< of what the file holds on the medium, to know it again by
  bool GivenUp = false;     ///< the operator goes on without it: it takes nothing more
};

/// The two forms of the `.cpt` file.
enum class CptForm : std::int8_t { OfSettings, Old, New };

/// Stands in a file for a sensor that has not reached a depth, or that a resume lacks.
constexpr int kNotReached = -32768;

struct SoundingState {
  /// 0 nothing, 1 waiting, 2 recording, 3 4 5 9 seismic steps, 8 start requested.
  std::int16_t ConsoleMode = 0;
  std::int32_t TimeOriginMs = 0;    ///< time of day at which the sounding was started; 0 until then
  std::int32_t ElapsedMs = 0;       ///< ms since TimeOriginMs, as of the head of the pass
  std::int32_t SecondsCounter = 0;  ///< whole seconds
  std::int32_t TicksSinceStep = 0;  ///< ticks of 55 ms since the last due row
  std::int16_t AutoMode = 1;        ///< 1 auto, 0 manual
  std::int16_t ManualClampState = 1;  ///< 1 clamp closed
  std::int16_t StopWarningKind = 0;   ///< 0 stop, 1 dissipation, 2 seismic interrupted
  std::int16_t CloseWithFinalBaseline = 0;
  std::int16_t RestartTestActive = 0;
  std::int16_t FiveMetreWord = 0;          ///< 1 once the sounding is more than 5 m below its start
  std::int16_t WarningCounter = 0;         ///< due rows since the stop dialog was shown
  std::int16_t LastClockSecond = 0;        ///< second of the clock at the last tick that changed it
  std::int16_t ExitUnderWay = 0;           ///< -1 the restart question is shown
  std::int16_t RestartCommandPending = 0;  ///< -1 the reduced selection is to be sent to the cone

  // Ports: what the port screen compares with and asks for.
  std::array<std::int16_t, 4> PortsAtLoad{};  ///< cone, truck, ASCII, overlay
  PortRequest TruckPortRequest;
  PortRequest ASCIIPortRequest;
  PortRequest VideoPortRequest;

  // Depth.
  float CurrentDepth = 0;  ///< m, grows downward
  double DepthRest = 0;    ///< m; what rounding to 32 bits has left out of CurrentDepth
  float DepthCounts = 0;   ///< counted steps since the start of the sounding
  std::int32_t NextRecordCount = 0;
  std::int32_t NextPictureCount = 0;
  float Rebound = 0;              ///< m that the rods have come back up
  std::int16_t PressureLine = 0;  ///< 0 pressure on, 1 off
  std::int16_t ClampLine = 0;     ///< 0 clamped, 1 open
  std::int16_t CountLine = 0;     ///< proximity counter: 0 held, 1 not
  std::int16_t PhaseDown = 0;     ///< encoder: 1 line not held, 0 held
  std::int16_t PhaseUp = 0;
  std::int16_t RecordPending = 0;  ///< -1 a row is due
  std::int32_t PictureCount = 0;
  double LastStepSeconds = 0;
  std::int16_t StepsMayBeMissing = 0;  ///< -1 the truck's port was away while rods could move
  float StepsMayBeMissingDepth = 0;    ///< m; CurrentDepth at its last return

  // Quits.
  std::int16_t QuitState = 0;  ///< 0 clear, 1 latched, 3 overridden
  std::int16_t QuitSettleCount = 0;
  ChannelTable<std::int16_t> QuitFlag;

  // Readings and rows; raw cone units.
  ChannelTable<float> Readings;
  std::array<ChannelTable<float>, 11> ReadingWindow;  ///< samples 1 to 10 of each channel
  std::int16_t ReadingsFresh = 0;           ///< -1 a reading was taken since the link last came up
  std::int16_t ReadingsTaken = 0;           ///< since entry, or in mode 1 since a loss; at most 10
  std::int16_t BaselinePending = 0;         ///< -1 asked for before the window was full
  std::array<std::string, 31> ReplyTokens;  ///< fields 1 to 30 of the last reply
  std::int32_t RowCount = 0;                ///< last row used; row 0 the baselines
  RowTable Rows;
  RowColumn RowSpeed;  ///< cm/s
  RowColumn RowQt;     ///< corrected tip resistance in base units

  // Files.
  std::array<HeldText, 7> Held;           ///< by the index of SoundingFiles
  std::int32_t RowsHeldBack = 0;          ///< held rows of the copy or the `.cpt` file
  std::int32_t HeldRetrySecond = 0;       ///< SecondsCounter at the last attempt to write them
  std::int16_t CloseRowsMade = 0;         ///< -1 the delayed rows are written or held
  std::int16_t FinalBaselineMade = 0;     ///< -1 the final baseline line is written or held
  std::int16_t TableFull = 0;             ///< -1 the operator knows that no further row has room
  std::set<std::string> Told;             ///< messages of this sounding that come once
  CptForm RowForm = CptForm::OfSettings;  ///< of the `.cpt` file that a resume goes on with
  ChannelTable<std::int16_t> KeptColumn;  ///< -1 recorded before the resume, and not there since
};

inline SoundingState sounding;

/// While a row could be lost behind a question: modes 2, 3, 4, 5 and 9.
inline bool IsRecording() {
  const int mode = sounding.ConsoleMode;
  return mode == 2 || mode == 3 || mode == 4 || mode == 5 || mode == 9;
}

}  // namespace penlog
