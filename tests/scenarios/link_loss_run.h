// A sounding whose links are lost and come back, in virtual time: what was shown meanwhile, how
// long the recovery took, and which rows stand in its file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/event_queue.h"
#include "scenarios/resume_scripts.h"
#include "scenarios/scenario.h"

namespace penlog {

inline const std::string kConeLost = R"(expect frmWarning.frmSerialWarning visible 10
expect frmWarning.frmModuleWarning visible
expect Main.lblState "LINK LOST"
)";
inline const std::string kConeSilent = R"(expect frmWarning.frmModuleWarning visible 10
expect frmWarning.frmSerialWarning hidden
expect Main.lblState "LINK LOST"
)";
inline const std::string kTruckLost = "expect frmWarning.frmEncoderWarning visible 10\n";
inline const std::string kConeWell = R"(expect frmWarning.frmSerialConnected visible 60
expect frmWarning.frmSerialWarning hidden
expect frmWarning.frmModulesConnected visible 60
expect frmWarning.frmModuleWarning hidden
)";
inline const std::string kTruckWell = R"(expect frmWarning.frmEncoderConnected visible 10
expect frmWarning.frmEncoderWarning hidden
expect frmWarning.frmSteps "DEPTH STEPS MAY BE MISSING"
)";
inline const std::string kLook = "rig test look\n";  ///< keeps what is shown now

/// `rig test lost` before the loss, `rig test back` behind the return (`rig test back held` where
/// no row will come), `rig test look` where the screens are to be looked at, `rig test end` before
/// the sounding is closed.
struct LinkLossRun : Scenario {
  explicit LinkLossRun(const std::string& quits = "0");
  ~LinkLossRun();

  /// Each row stands on the grid of depth steps, none is there twice and `missing` are missing,
  /// all of them before the one row of the gap: the first behind the loss, taken with the first
  /// new reading where the rods were then, or `gap` m where that is known. Without a gap row none
  /// is missing. `first` m is the depth of the first row.
  void ExpectRows(bool gap_row, int missing, double gap = 0, double first = 0.02);
  /// Of the loss that was told last: over within 30 s. Prints a line of the table.
  void Report(const std::string& name) const;

  std::int32_t rows_at_loss = 0;
  Texts stored;                    ///< rows of the recovery copy at the end
  std::vector<std::string> faces;  ///< as `FaceNow` at each look
  bool quit_held = false;          ///< RTS was on at each glance
  bool was_down = false;           ///< the console has noticed

 private:
  void TakeReturn(bool held);
  void Glance();
  void WatchWord();
  void WatchGap();

  std::int32_t rows_before_ = 0;
  std::int32_t rows_when_down_ = -1;  // rows when the console noticed
  double counted_at_gap_ = -1;        // m that the console had counted when the next row was there
  double rods_at_gap_ = -1;           // and m that the rods had gone
  bool truck_was_away_ = false;
  std::string temporary_;
  std::string cpt_;
  Micros back_ = -1;
  Micros over_ = -1;
  float reading_ = 0;
  bool no_row_comes_ = false;
  int missing_ = 0;
  bool lost_before_ = false;  // of the cone, at the last glance
  Micros changed_ = 0;        // when that changed last
};

/// What the console and its status window say of the links: word of state and its ground, whether
/// the readings look old, the panels that are shown, and whether the window stands up.
std::string FaceNow();

}  // namespace penlog
