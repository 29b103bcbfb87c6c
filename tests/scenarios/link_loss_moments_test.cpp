// The truck interface's port, alone or with the cone's, lost before and behind the recording: at a
// baseline, at the start, at the stop question and in a resume. No row is made up, and that steps
// may be missing is told where rods could move.
#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <string>

#include "forms/main_form.h"
#include "scenarios/link_loss_run.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

struct Away {
  const char* name;
  bool cone;
  std::string lost;
  std::string face;  ///< expected meanwhile
  std::string back;
  std::string well;
  int missing_at_start;  ///< rows, while the cone is looked for under a push that goes on
  int missing_in_resume;
};

void PrintTo(const Away& away, std::ostream* out) {
  *out << away.name;
}

const std::string kTruckPanelWell = R"(expect frmWarning.frmEncoderConnected visible 10
expect frmWarning.frmEncoderWarning hidden
)";

const auto kAways = testing::Values(
    Away{"TruckAway", false, "rig unplug truck\n",
         kTruckLost + "expect Main.lblState \"TRUCK LINK LOST\"\n", "rig plug truck\n",
         kTruckPanelWell, 0, 0},
    Away{"ConeAndTruckAway", true, "rig unplug cone\nrig unplug truck\n",
         "expect frmWarning.frmSerialWarning visible 10\nexpect frmWarning.frmModuleWarning "
         "visible\n" +
             kTruckLost + "expect Main.lblState \"LINKS LOST\"\n",
         "rig plug truck\nrig plug cone\n", kTruckPanelWell + kConeWell, 4, 1});

const auto kNameOfCase = [](const auto& info) { return std::string(info.param.name); };

/// `where`: the depth at which the truck interface was away, as a pattern.
std::string StepsTold(const std::string& where) {
  return "expect frmWarning.frmSteps \"DEPTH STEPS MAY BE MISSING\"\nexpect frmWarning.lblSteps "
         "\"~THE TRUCK INTERFACE WAS AWAY AT " +
         where + " m\\.\"\nexpect Main.lblStepsSign visible 2\n";
}

const std::string kStepsWell =
    "expect frmWarning.frmSteps \"DEPTH STEPS: OK\"\nexpect Main.lblStepsSign hidden\n";

struct LossAtAMoment : testing::TestWithParam<Away> {
  const Away& away = GetParam();
};

struct LossOfTheTruckInABaseline : LossAtAMoment {};

TEST_P(LossOfTheTruckInABaseline, PutsNoDepthInDoubt) {
  LinkLossRun run;
  std::string start = ScriptToMain();
  start.erase(start.find("expect Main.lblCommStatus"));
  run.Play(start + away.lost + "rig test lost\nclick Main.cmdTakeBaseline\n" + away.face +
           "wait 5\nexpect Main.cmdStart " + (away.cone ? "disabled" : "enabled") + "\n" +
           away.back + "rig test back held\n" + away.well +
           "expect Main.cmdStart enabled 60\nexpect Main.lblState \"WAITING\"\n" + kStepsWell +
           "click Main.cmdStart\nexpect Main.cmdStart \"STOP\"\nrig push 0.2\n"
           "expect Main.lblDepth \"0.200 m\" 30\nwait 2\n" +
           kStepsWell + "rig test end\n" + ScriptToEnd());
  run.ExpectRows(false, 0);
  EXPECT_EQ(run.stored.size(), 10U);
  run.Report(std::string(away.name) + " during a baseline");
}

INSTANTIATE_TEST_SUITE_P(, LossOfTheTruckInABaseline, kAways, kNameOfCase);

struct LossOfTheTruckAtTheStart : LossAtAMoment {};

TEST_P(LossOfTheTruckAtTheStart, TakesRowsFromItsReturnOnAndTellsThatStepsMayBeMissing) {
  LinkLossRun run;
  float depth = 0;
  run.At("look", [&] { depth = sounding.CurrentDepth; });
  run.Play(ScriptToMain() + "click Main.cmdTakeBaseline\nclick Main.cmdStart\n" + away.lost +
           "rig push 0.9\nexpect Main.cmdStart \"STOP\"\nrig test lost\n" + away.face +
           "wait 5\nexpect Main.lblDepth \"0.00 m\"\n" + away.back + "rig test back\n" + away.well +
           "expect Main.lblState \"RECORDING\" 10\n" + StepsTold("0\\.000") +
           "wait 50\nrig test look\nrig test end\n" + ScriptToEnd());
  run.ExpectRows(away.cone, away.missing_at_start);
  EXPECT_GT(depth, 0.6F);
  EXPECT_LT(depth, 0.85F) << "five seconds of depth were not counted";
  EXPECT_EQ(static_cast<int>(run.stored.size()) + away.missing_at_start,
            static_cast<int>(std::floor(depth / 0.02F + 0.01F)));
  run.Report(std::string(away.name) + " at the start");
}

INSTANTIATE_TEST_SUITE_P(, LossOfTheTruckAtTheStart, kAways, kNameOfCase);

struct LossOfTheTruckAtTheStopQuestion : LossAtAMoment {};

TEST_P(LossOfTheTruckAtTheStopQuestion, LeavesTheSoundingToGoOnBehindIt) {
  // The cone's return takes the question away, the truck interface's leaves it.
  const std::string on = away.cone ? "" : "click Main.cmdWarningCancel\n";
  LinkLossRun run;
  run.Play(ScriptToRecording() + "rig push 0.9\nwait 10\nclick Main.cmdStart\n" +
           "expect Main.frmLocalWarning visible\nexpect Main.cmdWarningOK1 visible\n" +
           "rig test lost\n" + away.lost + away.face +
           "wait 5\nexpect Main.cmdWarningOK1 visible\n" + away.back + "rig test back\n" +
           away.well + "wait 3\n" + on +
           "expect Main.frmLocalWarning hidden\nexpect Main.cmdStart \"STOP\"\n"
           "expect Main.lblState \"RECORDING\"\n" +
           StepsTold("0\\..*") + "wait 40\nrig test end\n" + ScriptToEnd());
  run.ExpectRows(away.cone, 0);
  run.Report(std::string(away.name) + " at the stop question");
}

INSTANTIATE_TEST_SUITE_P(, LossOfTheTruckAtTheStopQuestion, kAways, kNameOfCase);

// A sounding that is resumed.

std::string ScriptToSuspended() {
  return ScriptToRecording() + Push("0.4", "0.400 m") + ScriptToSuspend() + kRestart;
}

struct LossOfTheTruckInAResume : LossAtAMoment {};

TEST_P(LossOfTheTruckInAResume, WhileItsReadingsFillTakesRowsFromItsReturnOn) {
  LinkLossRun run;
  run.At("filling", [] {
    EXPECT_LT(sounding.ReadingsTaken, 10);
    EXPECT_EQ(sounding.ConsoleMode, 2);
  });
  run.Play(ScriptToSuspended() + ScriptToPanel() +
           "click StartUp.cmdResumeAtLastDepth\nscreen frmConeSettings 60\n" +
           "click frmConeSettings.cmdClose\nscreen Main\n" + away.lost +
           "rig test filling\nrig test lost\nrig push 0.9\n" + away.face +
           "wait 5\nexpect Main.lblDepth \"0.400 m\"\n" + away.back + "rig test back\n" +
           away.well + "expect Main.lblState \"RECORDING\" 10\n" + StepsTold("0\\.400") +
           "wait 40\nrig test end\n" + ScriptToEnd());
  run.ExpectRows(away.cone, away.missing_in_resume);
  EXPECT_GT(run.stored.size(), 35U);
  for (const std::string& row : run.stored) {
    EXPECT_GT(LeadingNumber(row.substr(14, 20)), 0.25) << "the sensor gives 0.2531 V at rest";
  }
  run.Report(std::string(away.name) + " in the filling readings of a resume");
}

TEST(LossOfTheTruckInTheSearchOfAResume, IsShownOnTheConsoleAndTellsThatStepsMayBeMissing) {
  LinkLossRun run;
  run.Play(ScriptToSuspended() + ScriptToPanel() + R"(rig unplug truck
click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
screen Main
rig test lost
)" + kTruckLost +
           R"(expect Main.lblState "TRUCK LINK LOST"
rig push 0.1
wait 8
expect Main.lblDepth "0.400 m"
rig plug truck
rig test back held
)" + kTruckPanelWell +
           "expect Main.lblState \"RECORDING\" 2\n" + StepsTold("0\\.400") +
           Push("0.2", "0.600 m") + "rig test end\n" + ScriptToEnd());
  run.ExpectRows(false, 0);
  EXPECT_EQ(run.stored.size(), 30U);
}

/// Rods that go on down while nobody counts: what was counted is less than what is there.
TEST_P(LossOfTheTruckInAResume, OnTheWayDownTakesNoRowAndPutsWhatIsToGoInDoubt) {
  LinkLossRun run;
  run.At("look", [&] { EXPECT_EQ(sounding.RowCount, 20); });
  run.Play(ScriptToSuspended() + "rig at 0\n" + ScriptToPanel() + ScriptBy("cmdResumeAtSurface") +
           R"(screen frmResumeDepthStatus
expect frmResumeDepthStatus.lblDifferenceCaption "STILL TO GO:"
rig push 0.4
wait 5
rig test lost
)" + away.lost +
           away.face +
           R"(expect frmResumeDepthStatus.lblDifferenceCaption "STILL TO GO (STEPS MISSING?):" 2
wait 3
)" + away.back +
           "rig test back held\n" + away.well +
           R"(wait 20
rig test look
expect Main.lblState "WAITING"
expect frmResumeDepthStatus.lblDifferenceCaption "STILL TO GO (STEPS MISSING?):"
)" + StepsTold("0\\.[01].*") +
           R"(expect frmResumeDepthStatus.lblCurrentResumeDepth "~0\.[23]"
click frmResumeDepthStatus.lblDepthReached
expect Main.lblState "RECORDING" 10
rig push 0.4
wait 30
rig test end
)" + ScriptToEnd());
  ASSERT_GT(run.stored.size(), 21U + 15U);
  EXPECT_TRUE(run.stored[20].starts_with("DRILLOUT")) << run.stored[20];
  double due = std::ceil(LeadingNumber(run.stored[21].substr(1)) / 0.02 - 0.01) * 0.02;
  EXPECT_LT(due, 0.4) << "as counted: what was missed is nowhere";
  for (std::size_t row = 21; row < run.stored.size(); ++row, due += 0.02) {
    EXPECT_NEAR(LeadingNumber(run.stored[row].substr(1)), due, 0.0051) << run.stored[row];
  }
  run.Report(std::string(away.name) + " while a resume waits at the surface");
}

/// The operator sees the mark on his rods and says that the depth is reached, before the links are
/// back.
TEST_P(LossOfTheTruckInAResume, OnTheWayDownWithTheDepthReachedMeanwhileTakesRowsFromItsReturnOn) {
  LinkLossRun run;
  run.At("look", [&] { EXPECT_EQ(sounding.RowCount, 20); });
  run.Play(ScriptToSuspended() + "rig at 0\n" + ScriptToPanel() + ScriptBy("cmdResumeAtSurface") +
           "screen frmResumeDepthStatus\nrig push 0.4\n" +
           "expect frmResumeDepthStatus.lblCurrentResumeDepth \"0.40\" 60\nrig test lost\n" +
           away.lost + away.face + "click frmResumeDepthStatus.lblDepthReached\n" +
           "rig push 0.1\nwait 6\nrig test look\nexpect Main.lblDepth \"0.400 m\"\n" + away.back +
           "rig test back held\n" + away.well + "expect Main.lblState \"RECORDING\" 10\n" +
           StepsTold("0\\.400") + "rig push 0.2\nwait 20\nexpect Main.lblDepth \"0.600 m\"\n" +
           "rig test end\n" + ScriptToEnd());
  ASSERT_EQ(run.stored.size(), 31U) << "20 rows, the gap, 10 rows";
  EXPECT_TRUE(run.stored[20].starts_with("DRILLOUT")) << run.stored[20];
  ExpectCptDepths(run, 20, 30);
}

INSTANTIATE_TEST_SUITE_P(, LossOfTheTruckInAResume, kAways, kNameOfCase);

}  // namespace
}  // namespace penlog
