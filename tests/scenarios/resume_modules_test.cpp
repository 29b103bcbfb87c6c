// A sounding with modules that was suspended at row n and taken up again, for which modules are not
// looked for: but for the speed of the first row behind the resume its `.cpt` file differs from the
// uninterrupted one's in the columns of the modules alone.
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <ostream>
#include <string>

#include "scenarios/resume_scripts.h"

namespace penlog {
namespace {

constexpr int kAllRows = 13;
constexpr std::size_t kDepth = 7;
constexpr std::size_t kHead = 13;
constexpr std::size_t kField = 20;
constexpr std::size_t kChannelLine = 15;  // from 0
constexpr int kLastAligned = kAllRows - kDelay;
const std::string kNothing = std::string(14, ' ') + "-32768";

/// Rows that a module's sensor lags behind the tip, by channel.
const std::map<int, int> kDelayOfModules = {{10, 3}, {11, 4}, {23, 5}};

struct SuspendedAt {
  int row;
  bool file_has_rows;  ///< by which the delay of a missing channel is known
};

void PrintTo(const SuspendedAt& at, std::ostream* out) {
  *out << "row " << at.row;
}

ScenarioSetup WithModules() {
  ScenarioSetup setup;
  setup.rig = "dcs-modules";
  setup.settings = {{setting::kDiscoverAddOnModules, "1"}};
  setup.change_rig = SteadyOnSlope;
  return setup;
}

std::string ScriptToResumed(const SuspendedAt& at) {
  const bool unknown = at.row > 0 && !at.file_has_rows;
  return ScriptToSuspend() + kRestart + "screen StartUp\nclick StartUp.cmdResume\n" +
         (at.row == 0 ? "answer ok \"THE LAST SOUNDING HOLDS NO ROWS.\"\n" : "") +
         R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
answer ok "RECORDED CHANNELS ARE MISSING NOW."
)" + (unknown ? "answer ok \"NOTHING TELLS HOW FAR THE SENSORS OF MISSING\"\n" : "") +
         "screen Main\nexpect Main.cmdStart \"STOP\"\nwait 5\n";
}

/// The lines of the closed `.cpt` file, with a final baseline; suspended on the way.
Texts CptOf(const std::optional<SuspendedAt>& at) {
  Scenario scenario(WithModules());
  const int before = at ? at->row : kAllRows;
  std::string script = ScriptToRecording() + HeldRows(before);
  if (at) script += ScriptToResumed(*at) + HeldRows(kAllRows - before);
  std::string end = ScriptToEnd();
  end.replace(end.find("Main.Command3"), 13, "Main.Command2");
  scenario.Play(script + end);
  EXPECT_EQ(scenario.File(kTemporary), "DONE\r\n");
  EXPECT_EQ(FilesLike(scenario, "(2)"), 0U) << "nothing had to be mended";
  return LinesOf(scenario.File(kCpt));
}

std::string FieldOf(const std::string& line, std::size_t column) {
  return line.substr(kHead + kField * column, kField);
}

std::size_t ColumnsOf(const Texts& cpt) {
  return (cpt[kChannelLine].size() - kHead) / kField;
}

int ChannelOf(const Texts& cpt, std::size_t column) {
  return static_cast<int>(LeadingNumber(FieldOf(cpt[kChannelLine], column)));
}

const std::string& LineOf(const Texts& cpt, int row) {
  return cpt[kCptHeader + static_cast<std::size_t>(row) - 1];
}

/// The row, from 1, whose reading stands in that line: the last ones are not moved. 0 for none.
int RowIn(int line, int delay) {
  if (line <= kLastAligned) return line + delay;
  return line <= kAllRows - delay ? line : 0;
}

/// What a module's sensor read in that row, from the uninterrupted file; empty where it has none.
std::string ReadIn(const Texts& whole, int row, std::size_t column, int delay) {
  for (int line = 1; line <= kAllRows; ++line) {
    if (RowIn(line, delay) == row) return FieldOf(LineOf(whole, line), column);
  }
  return {};
}

/// Only rows of before the resume hold a module's reading, in its place if that is known.
void ExpectModulesColumn(const Texts& whole, const Texts& resumed, std::size_t column, int delay,
                         const SuspendedAt& at) {
  for (int line = 1; line <= kAllRows; ++line) {
    const std::string was = FieldOf(LineOf(resumed, line), column);
    const int row = at.file_has_rows ? RowIn(line, delay) : line;
    if (row == 0 || row > at.row) {
      EXPECT_EQ(was, kNothing) << line;
      continue;
    }
    const std::string read = ReadIn(whole, row, column, delay);
    EXPECT_NE(was, kNothing) << line;
    EXPECT_EQ(was, read.empty() ? was : read) << line;
  }
  EXPECT_EQ(FieldOf(resumed.back(), column), kNothing) << "of the final baseline";
}

void ExpectConesColumn(const Texts& whole, const Texts& resumed, std::size_t column) {
  for (std::size_t i = kCptHeader; i < whole.size(); ++i) {
    EXPECT_EQ(FieldOf(resumed[i], column), FieldOf(whole[i], column)) << "line " << i + 1;
  }
}

/// Depth and speed; taken up without a row a sounding stands one step higher.
void ExpectHeads(const Texts& whole, const Texts& resumed, int at) {
  for (std::size_t i = kCptHeader; i < whole.size(); ++i) {
    std::string expected = whole[i].substr(0, kHead);
    std::string was = resumed[i].substr(0, kHead);
    const std::size_t line = i - kCptHeader;
    const bool is_row = line < kAllRows;
    if (is_row && at == 0) {
      expected.replace(0, kDepth, line == 0 ? "  0.000" : whole[i - 1].substr(0, kDepth));
    }
    if (is_row && HasSpeedOf(at + 1, line, kAllRows)) {
      for (std::string* row : {&expected, &was}) BlankSpeed(*row, kDepth);
    }
    EXPECT_EQ(was, expected) << "line " << i + 1;
  }
}

class ComparedWithModules : public testing::TestWithParam<SuspendedAt> {};

TEST_P(ComparedWithModules, ResumedGivesTheFileOfTheUninterruptedButForTheModulesColumns) {
  const SuspendedAt& at = GetParam();
  const Texts whole = CptOf(std::nullopt);
  const Texts resumed = CptOf(at);
  ASSERT_EQ(whole.size(), kCptHeader + kAllRows + 1);
  ASSERT_EQ(resumed.size(), whole.size());
  ASSERT_EQ(ColumnsOf(whole), 5 + kDelayOfModules.size());
  for (std::size_t i = 0; i < kCptHeader; ++i) EXPECT_EQ(resumed[i], whole[i]) << "line " << i + 1;
  for (std::size_t i = 0; i < whole.size(); ++i) ASSERT_EQ(resumed[i].size(), whole[i].size()) << i;
  ExpectHeads(whole, resumed, at.row);
  for (std::size_t column = 0; column < ColumnsOf(whole); ++column) {
    SCOPED_TRACE("channel " + PlainNumber(ChannelOf(whole, column)));
    const auto delay = kDelayOfModules.find(ChannelOf(whole, column));
    if (delay == kDelayOfModules.end()) {
      ExpectConesColumn(whole, resumed, column);
    } else {
      ExpectModulesColumn(whole, resumed, column, delay->second, at);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Suspended, ComparedWithModules,
                         testing::Values(SuspendedAt{0, false}, SuspendedAt{1, false},
                                         SuspendedAt{kDelay, false}, SuspendedAt{8, true}),
                         [](const auto& info) { return "AtRow" + PlainNumber(info.param.row); });

}  // namespace
}  // namespace penlog
