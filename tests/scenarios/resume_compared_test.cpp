// A sounding that was suspended at row n and taken up again gives the `.cpt` file of the one that
// was not, for each form of its rows. Each row is read from a cone that stands still, 20 s behind
// the one before, so that two runs read and print the same.
//
// Allowed to differ: the speed of the first row after the resume, which has no row before it to
// measure from; and for n = 0 the depths, which then start one step below 0, after a warning.
#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <set>
#include <sstream>
#include <string>

#include "core/settings.h"
#include "scenarios/resume_scripts.h"

namespace penlog {
namespace {

constexpr int kAllRows = 11;
constexpr std::size_t kFullRows = kAllRows - kDelay;

struct SoundingForm {
  bool feet;
  bool elevation;
  bool new_form;
  bool ball;
  int resolution = 5;  // mm
};

std::string NameOf(const SoundingForm& form) {
  return std::string(form.feet ? "Feet" : "Metres") + (form.elevation ? "Elevation" : "Depth") +
         (form.new_form ? "NewForm" : "OldForm") + (form.ball ? "Ball" : "Cone") +
         (form.resolution == 5 ? "" : "In" + std::to_string(form.resolution) + "mm");
}

ScenarioSetup SetupOf(const SoundingForm& form) {
  ScenarioSetup setup;
  setup.settings = {{setting::kDepthUnits, form.feet ? "1" : "0"},
                    {setting::kDepthFormat, form.elevation ? "1" : "0"},
                    {setting::kDepthSignificantDigits, form.new_form ? "3" : "2"},
                    {setting::kDepthResolution, "0.00" + std::to_string(form.resolution)}};
  setup.change_rig = [form](RigSetup& rig) {
    SteadyOnSlope(rig);
    rig.truck.resolution = form.resolution / 1000.0;
  };
  return setup;
}

/// Both are whole centimetres of metres: 1 m, and 5 m above datum.
std::string StartDepthText(const SoundingForm& form) {
  if (form.elevation) return form.feet ? "16.405" : "5";
  return form.feet ? "3.281" : "1";
}

/// The tip is set at each start, as its setup does: the settings file does not keep it.
std::string AtStart(const SoundingForm& form) {
  return form.ball ? "screen StartUp\nrig test ball\n" : "screen StartUp\n";
}

std::string AtConsole(const SoundingForm& form) {
  return form.ball ? "answer ok \"CAUTION: SYSTEM IS CONFIGURED\"\nscreen Main\n" : "screen Main\n";
}

std::string ScriptToFirstRow(const SoundingForm& form) {
  return AtStart(form) + R"(click StartUp.cmdStart
screen frmConeSettings 60
click frmConeSettings.cmdClose
answer ok "Last sounding parameters file missing. Default values loaded"
screen SetupSounding
select SetupSounding.Dir1 /soundings
type SetupSounding.txtFileName S1
type SetupSounding.txtStartDepth )" +
         StartDepthText(form) + R"(
click SetupSounding.Command2
screen SetupDisplay
click SetupDisplay.cmdDone
)" + AtConsole(form) +
         R"(wait 3
click Main.cmdTakeBaseline
click Main.cmdStart
expect Main.cmdStart "STOP"
wait 1
)";
}

std::string ScriptToResumed(const SoundingForm& form, int at) {
  const std::string warning = "answer ok \"THE LAST SOUNDING HOLDS NO ROWS.\"\n";
  return ScriptToSuspend() + kRestart + AtStart(form) + "click StartUp.cmdResume\n" +
         (at == 0 ? warning : "") + R"(expect StartUp.frmResume visible
click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
)" + AtConsole(form) +
         "expect Main.cmdStart \"STOP\"\nwait 5\n";
}

std::string ScriptToFinalBaseline() {
  return R"(click Main.cmdStart
click Main.cmdWarningOK1
expect Main.frmTakeFinalBaseline visible
click Main.Command2
screen frmZOLRestart
click frmZOLRestart.cmdNo
)";
}

/// The lines of the closed `.cpt` file; suspended at row `at` on the way.
Texts CptOf(const SoundingForm& form, std::optional<int> at) {
  Scenario scenario(SetupOf(form));
  scenario.At("ball", [] {
    settings.TipConfiguration = 1;
    settings.TipDiameter = 60;
    settings.BallTipArea = 2827;
  });
  const int before = at.value_or(kAllRows);
  std::string script = ScriptToFirstRow(form) + HeldRows(before);
  if (at) script += ScriptToResumed(form, *at) + HeldRows(kAllRows - before);
  scenario.Play(script + ScriptToFinalBaseline());
  EXPECT_EQ(scenario.File(kTemporary), "DONE\r\n");
  EXPECT_EQ(FilesLike(scenario, "(2)"), 0U) << "nothing had to be mended";
  return LinesOf(scenario.File(kCpt));
}

/// Depth of row `row` of a sounding that began one step below 0.
std::string DepthFromBelow0(const SoundingForm& form, int row) {
  const std::string hundredths = std::to_string(100 + 2 * (row - 1)).substr(1);
  std::string depth = "0." + hundredths + (form.new_form ? "0" : "");
  if (form.elevation && row > 1) depth.insert(0, 1, '-');
  const std::size_t width = form.new_form ? 7 : 6;
  return std::string(width - depth.size(), ' ') + depth;
}

/// Each column but the speed has another value in each row before the last ones, in which the
/// sensors behind the tip have nothing left: a value that came from the row beside would be seen.
void ExpectEachColumnChanges(const Texts& cpt) {
  std::vector<std::set<std::string>> columns;
  for (std::size_t i = kCptHeader; i < kCptHeader + kFullRows; ++i) {
    std::istringstream row(cpt[i]);
    std::string value;
    for (std::size_t column = 0; row >> value; ++column) {
      if (column == columns.size()) columns.emplace_back();
      columns[column].insert(value);
    }
  }
  ASSERT_GE(columns.size(), 5U);
  for (std::size_t column = 0; column < columns.size(); ++column) {
    if (column == 1) continue;  // speed
    EXPECT_EQ(columns[column].size(), kFullRows) << "column " << column;
  }
}

class Compared : public testing::TestWithParam<SoundingForm> {};

TEST_P(Compared, ResumedAtAnyRowGivesTheFileOfTheUninterruptedSounding) {
  const SoundingForm& form = GetParam();
  const std::size_t depth_width = form.new_form ? 7 : 6;
  const Texts whole = CptOf(form, std::nullopt);
  ASSERT_EQ(whole.size(), kCptHeader + kAllRows + 1);
  EXPECT_EQ(whole[0].starts_with("KQ"), form.new_form);
  EXPECT_EQ(whole[16].find("BALL D mm  60") != std::string::npos, form.ball);
  ExpectEachColumnChanges(whole);
  for (const int at : {0, 1, kDelay, 7}) {
    SCOPED_TRACE(at);
    const Texts resumed = CptOf(form, at);
    ASSERT_EQ(resumed.size(), whole.size());
    for (std::size_t i = 0; i < whole.size(); ++i) {
      std::string expected = whole[i];
      std::string was = resumed[i];
      const bool is_row = i >= kCptHeader && i + 1 < whole.size();
      const std::size_t line = i - kCptHeader;
      if (is_row && at == 0) {
        expected.replace(0, depth_width, DepthFromBelow0(form, static_cast<int>(line) + 1));
      }
      if (is_row && HasSpeedOf(at + 1, line, kAllRows)) {
        for (std::string* row : {&expected, &was}) BlankSpeed(*row, depth_width);
      }
      EXPECT_EQ(was, expected) << "line " << i + 1;
    }
  }
}

std::vector<SoundingForm> EachForm() {
  std::vector<SoundingForm> forms;
  for (const bool feet : {false, true}) {
    for (const bool elevation : {false, true}) {
      for (const bool new_form : {false, true}) {
        for (const bool ball : {false, true}) forms.push_back({feet, elevation, new_form, ball});
      }
    }
  }
  // The new form has a digit for each millimetre: a row that comes one count late is seen.
  for (const int resolution : {1, 2, 4}) forms.push_back({false, false, true, false, resolution});
  return forms;
}

INSTANTIATE_TEST_SUITE_P(Suspended, Compared, testing::ValuesIn(EachForm()),
                         [](const auto& info) { return NameOf(info.param); });

}  // namespace
}  // namespace penlog
