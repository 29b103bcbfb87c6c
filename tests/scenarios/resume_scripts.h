// Pieces of scripts for a sounding that is suspended and taken up again, and looks at its files.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/numbers.h"
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
