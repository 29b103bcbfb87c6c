// The strip that is always in sight: the state in words, rows on disk and in memory, the file, the
// time since the last row.
#pragma once

#include <cstdint>
#include <string>

#include "platform/clock.h"

namespace penlog {

/// What the strip is made from.
struct StripValues {
  std::int16_t ConsoleMode = 0;  ///< as in `SoundingState`
  bool cone_lost = false;        ///< the cone does not answer, or its port is away
  bool truck_lost = false;
  bool quit = false;   ///< one is latched and stops the rig; an overridden one does not
  bool ended = false;  ///< it was stopped
  bool fills = false;  ///< the averages of a resume are not full: no row is taken
  std::int32_t RowCount = 0;
  std::int32_t RowsInMemory = 0;   ///< rows that the recovery copy lacks
  std::string file;                ///< path of the sounding file; empty: none yet
  std::int64_t last_row_age = -1;  ///< whole seconds; -1: no row was taken yet
};

enum class StripState {
  Waiting,
  Recording,
  StoppedByQuit,
  Stopped,
  LinkLost,
  TruckLinkLost,
  LinksLost
};

struct StripTexts {
  StripState state = StripState::Waiting;
  std::string state_word;
  std::string rows_on_disk;
  std::string rows_held;  ///< empty while all rows are on the disk
  std::string file;       ///< its name without the folder
  std::string last_row;
};

/// A lost link comes before all else but the end of the sounding, a quit before the recording.
StripState StateOf(const StripValues& values);
const char* WordOf(StripState state);
/// "12 s", "3 min 05 s", "1 h 02 min"; "-" for a negative age.
std::string AgeText(std::int64_t seconds);
StripTexts MakeStripTexts(const StripValues& values);

struct StatusStripState {
  std::int32_t RowsSeen = 0;
  Micros LastRowAt = -1;     ///< -1: none of this start of the program
  std::int64_t Second = -1;  ///< of the clock at the last look
  StripState Shown = StripState::Waiting;
  bool ResumeFills = false;  ///< the readings that fill the averages of a resume are taken
};

inline StatusStripState status_strip;

/// Part of the console's timer: looks at the rows at each tick and writes the strip once a second,
/// and at once when the state has changed. Never yields.
void FollowStatusStrip();

}  // namespace penlog
