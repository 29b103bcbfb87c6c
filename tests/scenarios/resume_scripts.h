// Pieces of scripts for a sounding that is suspended and taken up again, and looks at its files.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/numbers.h"
#include "rig/ground.h"
#include "scenarios/scenario.h"

namespace penlog {

using Texts = std::vector<std::string>;

inline constexpr const char* kTemporary = "/allusers/PENLOG(KQ)/TemporaryData.txt";
inline constexpr const char* kKeptBeside = "/allusers/PENLOG(KQ)/TemporaryData (2).txt";
inline constexpr const char* kCpt = "/soundings/S1.cpt";
inline constexpr std::size_t kCptHeader = 23;
inline constexpr std::size_t kTemporaryHeader = 17;
inline constexpr int kDelay = 5;  // rows that the files of this cone lag

/// To the panel, from the start screen.
inline std::string ScriptToPanel() {
  return R"(screen StartUp
expect StartUp.frmResume hidden
click StartUp.cmdResume
expect StartUp.frmResume visible
)";
}

/// From the panel to the console, by that button; the readings that fill the averages are over.
inline std::string ScriptBy(const std::string& button) {
  return "click StartUp." + button + R"(
screen frmConeSettings 60
click frmConeSettings.cmdClose
screen Main
expect Main.cmdStart "STOP"
wait 5
)";
}

inline std::string ScriptToResume() {
  return ScriptToPanel() + ScriptBy("cmdResumeAtLastDepth");
}

/// From a recording console to the question whether to start again.
inline std::string ScriptToSuspend() {
  return R"(click Main.cmdStart
expect Main.frmLocalWarning visible
click Main.cmdWarningOK2
screen frmZOLRestart
)";
}

inline const std::string kRestart = "click frmZOLRestart.cmdYes\n";

inline std::string Push(const std::string& metres, const std::string& shown) {
  return "rig push " + metres + "\nexpect Main.lblDepth \"" + shown + "\" 120\nwait 2\n";
}

/// The cone reads the same at the same depth in two runs, on a ground in which each of its sensors
/// reads another value in each row, so that a value of the row beside is seen.
inline void SteadyOnSlope(RigSetup& rig) {
  rig.cone.steady = true;
  rig.ground = Ground({{0.0, 1500.0, 20.0, 15.0}, {2.0, 5500.0, 90.0, 215.0}});
}

/// `count` rows of a cone that stands still, each 20 s behind the one before.
inline std::string HeldRows(int count) {
  std::string script;
  for (int row = 0; row < count; ++row) script += "rig hold 1 6\nwait 20\n";
  return script;
}

/// Whether the speed of `row`, from 1, stands on that line, from 0, behind the header of a closed
/// `.cpt` file of `rows` rows.
inline bool HasSpeedOf(int row, std::size_t line, int rows) {
  const int stands = static_cast<int>(line) + 1;
  const bool is_flushed = stands > rows - kDelay;
  return row == (is_flushed ? stands : stands + kDelay);
}

/// Its place in the row: behind a depth of this width.
inline void BlankSpeed(std::string& row, std::size_t depth_width) {
  constexpr std::size_t kDepthAndSpeed = 13;
  row.replace(depth_width, kDepthAndSpeed - depth_width, "speed");
}

inline Texts RowsOf(const std::string& text, std::size_t header) {
  Texts lines = LinesOf(text);
  lines.erase(lines.begin(),
              lines.begin() + static_cast<std::ptrdiff_t>(std::min(header, lines.size())));
  return lines;
}

/// Depths of the rows of the recovery copy as text, the marks of gaps as "gap".
inline Texts StoredDepths(const Scenario& scenario) {
  Texts depths;
  for (const std::string& row : RowsOf(scenario.File(kTemporary), kTemporaryHeader)) {
    const auto blank = row.find_first_not_of(" \"");
    depths.push_back(
        row.starts_with("DRILLOUT*****") ? "gap" : row.substr(blank, row.find(' ', blank) - blank));
  }
  return depths;
}

/// The rows of a closed `.cpt` file stand `step` mm apart from `first` mm on.
inline void ExpectCptDepths(const Scenario& scenario, int first, int count, int step = 20) {
  const Texts rows = RowsOf(scenario.File(kCpt), kCptHeader);
  ASSERT_EQ(rows.size(), static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    const double depth = LeadingNumber(rows[static_cast<std::size_t>(i)].substr(0, 7));
    EXPECT_NEAR(depth * 1000, first + i * step, 0.6) << i;
  }
}

inline std::size_t FilesLike(const Scenario& scenario, const std::string& part) {
  const auto& files = scenario.disk.Files();
  return static_cast<std::size_t>(std::count_if(files.begin(), files.end(), [&](const auto& file) {
    return file.first.find(part) != std::string::npos;
  }));
}

}  // namespace penlog
