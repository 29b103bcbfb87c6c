// Links that are lost in a sounding and come back, in virtual time. Each test prints what was
// tried, the seconds from the return to the first row (or reading) behind it, and the rows missing.
#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <string>

#include "core/channels.h"
#include "forms/main_form.h"
#include "platform/numbers.h"
#include "scenarios/link_loss_run.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

constexpr double kStep = 0.02;  // m between rows

// While rows are recorded.

const std::string kRecordingFace = "RECORDING on green; port ok, modules ok, truck ok";
const std::string kUp = "; window up";
const std::string kLostFace = "LINK LOST on red, age on red, readings old; ";
const std::string kPortLostFace = kLostFace + "port LOST, modules LOST, truck ok" + kUp;
const std::string kSilentFace = kLostFace + "port ok, modules LOST, truck ok" + kUp;
const std::string kSteps = ", steps may be missing";

/// What happens, what is shown meanwhile and behind it, and the rows missing under a push that goes
/// on all the time. Then what the file holds when the rods stand still at the return: whether the
/// gap has a row, and where it stands.
struct LossCase {
  const char* name;
  std::string lost;
  std::string back;
  std::string well;
  std::string face;
  int missing = 0;
  bool gap_row = true;
  std::string face_behind = kRecordingFace;
  double pushed = 0.055;   ///< m behind the last row of before, in the loss
  double counted = 0.055;  ///< m of these that the console counts
  int missing_standing = 1;
};

void PrintTo(const LossCase& loss, std::ostream* out) {
  *out << loss.name;
}

const auto kLosses = testing::Values(
    LossCase{"ConeAwayForAMoment", "rig unplug cone\nwait 0.1\n",
             "rig plug cone\n" + kConeSilent + kLook, kConeWell, kSilentFace, 4},
    LossCase{"ConeAwayFor5s", "rig unplug cone\n" + kConeLost + kLook + "wait 5\n",
             "rig plug cone\n", kConeWell, kPortLostFace, 10},
    LossCase{"ConeAwayForAMinute", "rig unplug cone\n" + kConeLost + "wait 60\n" + kLook,
             "rig plug cone\n", kConeWell, kPortLostFace, 62},
    LossCase{"ConeBackAsCOM9", "rig replug cone 9 5s\n" + kConeLost + kLook, "wait 5\n", kConeWell,
             kPortLostFace, 10},
    LossCase{"ConeSilent", "rig fault silent\n" + kConeSilent + kLook + "wait 5\n",
             "rig fault silent off\n", kConeWell, kSilentFace, 10},
    LossCase{"ConeFrozen",
             "rig fault frozen\nwait 1\nexpect Main.lblCommError \"\"\n"
             "expect Main.lblCommError \"COMM ERR: cone repeats\" 5\n" +
                 kLook + "wait 5\n",
             "rig fault frozen off\n", kConeWell + "expect Main.lblCommError \"\"\n",
             kRecordingFace, 0, false},
    LossCase{"OneReplyGarbled", "rig fault garbled 1\n", "wait 0.5\n" + kLook, kConeWell,
             kRecordingFace, 0, false},
    LossCase{"HalfAReply", "rig fault half-reply 1\n", kConeSilent + kLook, kConeWell, kSilentFace,
             4},
    LossCase{"SelectionLost", "rig fault lost-selection 1\n", "wait 0.5\n" + kLook, kConeWell,
             kRecordingFace, 0, false},
    LossCase{"TruckAway",
             "rig unplug truck\n" + kTruckLost + "expect Main.lblState \"TRUCK LINK LOST\"\n" +
                 kLook + "wait 5\n",
             "rig plug truck\n", kConeWell + kTruckWell,
             "TRUCK LINK LOST on red, age on red; port ok, modules ok, truck LOST" + kUp, 0, false,
             kRecordingFace + kSteps, 0.055, 0},
    LossCase{
        "ConeAndTruckAway",
        "rig unplug cone\nrig unplug truck\nexpect frmWarning.frmSerialWarning visible 10\n" +
            kTruckLost + "expect Main.lblState \"LINKS LOST\"\n" + kLook + "wait 5\n",
        "rig plug cone\nrig plug truck\n", kConeWell + kTruckWell,
        "LINKS LOST on red, age on red, readings old; port LOST, modules LOST, truck LOST" + kUp, 4,
        true, kRecordingFace + kSteps, 0, 0},
    LossCase{
        "ConeAndTruckAwayTheTruckBackFirst",
        "rig unplug cone\nrig unplug truck\nexpect frmWarning.frmSerialWarning visible 10\n" +
            kTruckLost + "expect Main.lblState \"LINKS LOST\"\n" + kLook + "rig plug truck\n" +
            kTruckWell + kLook + "rig push 0.035\nwait 5\n",
        "rig plug cone\n", kConeWell + kTruckWell,
        "LINKS LOST on red, age on red, readings old; port LOST, modules LOST, truck LOST" + kUp,
        10, true, kRecordingFace + kSteps, 0, 0.035, 0});

const auto kNameOfCase = [](const auto& info) { return std::string(info.param.name); };

struct Recording : testing::TestWithParam<LossCase> {};

TEST_P(Recording, GoesOnBehindALossWithOneRowForTheGapAndOnTheGrid) {
  const LossCase& loss = GetParam();
  LinkLossRun run;
  run.Play(ScriptToRecording() + "rig push 3\nwait 10\nrig test lost\n" + loss.lost + loss.back +
           "rig test back\n" + loss.well + "wait 20\n" + loss.well +
           "expect Main.lblState \"RECORDING\"\n" + kLook + "rig stop\nwait 3\nrig test end\n" +
           ScriptToEnd());
  run.ExpectRows(loss.gap_row, loss.missing);
  EXPECT_EQ(run.was_down, loss.gap_row);
  ASSERT_GE(run.faces.size(), 2U);
  EXPECT_EQ(run.faces.front(), loss.face);
  EXPECT_EQ(run.faces.back(), loss.face_behind);
  EXPECT_GT(run.stored.size(), static_cast<std::size_t>(run.rows_at_loss) + 10);
  EXPECT_EQ(run.DataFile("TemporaryData.txt"), "DONE\r\n");
  run.Report(loss.name);
}

INSTANTIATE_TEST_SUITE_P(, Recording, kLosses, kNameOfCase);

/// The rods have gone on in the loss and stand still at the return, beside the grid: the row of the
/// gap can stand in one place alone.
struct Standing : testing::TestWithParam<LossCase> {};

TEST_P(Standing, TakesTheRowOfTheGapWhereTheRodsAreAndTheNextOnesOnTheGrid) {
  const LossCase& loss = GetParam();
  LinkLossRun run;
  const double gap = 0.2 + loss.counted;
  const std::string push = loss.pushed > 0 ? "rig push " + PlainNumber(loss.pushed) + "\n" : "";
  const bool gap_row = loss.gap_row && loss.counted > 0;
  run.At("row of the gap", [&] {
    EXPECT_EQ(sounding.RowCount, std::floor(gap / kStep) - (gap_row ? loss.missing_standing : 0));
  });
  run.Play(ScriptToRecording() + Push("0.2", "0.200 m") + "rig test lost\n" + push + loss.lost +
           loss.back + "rig test back held\n" + loss.well + "expect Main.lblDepth \"" +
           Format(gap, "0.000") + " m\" 10\nwait 6\nrig test row of the gap\n" + loss.well +
           "rig push 0.2\nwait 13\nrig test end\n" + ScriptToEnd());
  run.ExpectRows(gap_row, gap_row ? loss.missing_standing : 0, gap_row ? gap : 0);
  EXPECT_EQ(run.stored.size(), static_cast<std::size_t>(std::floor((gap + 0.2) / kStep + 0.01)) -
                                   (gap_row ? static_cast<std::size_t>(loss.missing_standing) : 0));
}

INSTANTIATE_TEST_SUITE_P(, Standing, kLosses, kNameOfCase);

TEST(RowOfTheGap, HoldsNoReadingsOfBeforeTheLossAlone) {
  LinkLossRun run;
  run.Play(ScriptToRecording() + "rig set 1 1000\nrig push 0.9\nwait 10\nrig test lost\n" +
           "rig unplug cone\n" + kConeLost + "rig set 1 50000\nwait 3\nrig plug cone\n" +
           "rig test back\n" + kConeWell + "wait 10\nrig test end\n" + ScriptToEnd());
  run.ExpectRows(true, 8);
  double depth = 0;
  double tip = 0;  // V; half of the span is 2.25
  for (const std::string& row : run.stored) {
    const double next = LeadingNumber(row.substr(1));
    if (next - depth > 1.5 * kStep && depth > 0) tip = LeadingNumber(row.substr(14, 20));
    depth = next;
  }
  EXPECT_GT(tip, 0.7);
}

TEST(Lamps, OfATruckInterfaceThatIsBackSayWhatItsLinesSayNow) {
  LinkLossRun run;
  run.Play(ScriptToRecording() + "rig push 0.1\nwait 6\nexpect Main.shpClamp solid\n" +
           "rig test lost\nrig unplug truck\n" + kTruckLost + "rig clamp off\nwait 2\n" +
           "rig plug truck\nrig test back held\n" + kTruckWell +
           "expect Main.shpClamp hollow 1\nrig clamp on\nexpect Main.shpClamp solid 1\n" +
           "rig push 0.2\nwait 12\nrig test end\n" + ScriptToEnd());
  run.ExpectRows(false, 0);
  EXPECT_EQ(run.stored.size(), 15U);
}

// Quits.

struct QuitsBehindALoss : testing::TestWithParam<LossCase> {};

/// The cone leans from the return on. Only a loss of the cone starts the wait anew.
TEST_P(QuitsBehindALoss, WaitForTenReadingsAgainIfTheConeWasLost) {
  const LossCase& loss = GetParam();
  LinkLossRun run("1");
  int asked = 0;   // readings since the last other command: the cone was selected anew
  int behind = 0;  // and since it leans
  bool leans = false;
  bool raised = false;
  run.At("leans", [&] { leans = true; });
  run.rig.log.on_added = [&](const RigRecord& record) {
    raised = raised || (record.kind == RigLogKind::Output && (record.number & 2) != 0);
    if (raised || record.kind != RigLogKind::Command) return;
    asked = record.text == "D" ? asked + 1 : 0;
    behind += leans ? 1 : 0;
    EXPECT_FALSE(Main.frmQuitWarning.Visible) << "the stop line first";
  };
  run.Play(ScriptToRecording() + "rig push 1.8\nwait 60\nrig test lost\n" + loss.lost +
           "rig tilt 12 0\nrig test leans\n" + loss.back + "rig test back\n" +
           "expect Main.frmQuitWarning visible 60\n" + loss.well +
           "expect Main.frmQuitWarning visible\nrig test end\n" + ScriptToEnd());
  EXPECT_TRUE(raised);
  EXPECT_EQ(run.was_down, loss.gap_row);
  if (loss.gap_row) {
    EXPECT_NEAR(asked, 12, 1) << "two show that the cone lives";
  } else {
    EXPECT_LE(behind, 6) << "as many as bring the average above the limit, and none more";
  }
}

INSTANTIATE_TEST_SUITE_P(, QuitsBehindALoss, kLosses, kNameOfCase);

TEST(LatchedQuit, HoldsTheRigThroughALossOfTheCone) {
  LinkLossRun run("1");
  std::int16_t state = 0;
  run.At("look", [&] {
    state = sounding.QuitState;
    EXPECT_LE(sounding.RowCount, run.rows_at_loss + 1) << "the rig stands";
  });
  run.Play(ScriptToRecording() + "rig tilt 12 0\nrig push 1.5\n" +
           "expect Main.frmQuitWarning visible 120\nwait 3\nrig test lost\nrig unplug cone\n" +
           kConeLost + "wait 5\nrig plug cone\nrig test back held\n" + kConeWell +
           "wait 10\nexpect Main.frmQuitWarning visible\nrig test look\nrig test end\n" +
           ScriptToEnd());
  EXPECT_EQ(state, 1);
  EXPECT_TRUE(run.quit_held) << "the stop line was never let go";
  EXPECT_TRUE(run.was_down);
  run.Report("cone away under a latched quit");
}

// Before and behind the recording.

struct WayToLose {
  const char* name;
  const char* lost;
  const std::string& face;  ///< expected meanwhile
  const char* back;
  const char* buttons;  ///< of the stop question: an exchange that fails takes them
  int missing;          ///< under a push that goes on
};

void PrintTo(const WayToLose& way, std::ostream* out) {
  *out << way.name;
}

const auto kWaysToLose = testing::Values(
    WayToLose{"ConeSilent", "rig fault silent\n", kConeSilent, "rig fault silent off\n", "hidden",
              10},
    WayToLose{"ConeAway", "rig unplug cone\n", kConeLost, "rig plug cone\n", "visible", 6});

struct LossDuringABaseline : testing::TestWithParam<WayToLose> {};

TEST_P(LossDuringABaseline, TakesItFromReadingsBehindTheReturn) {
  LinkLossRun run;
  float difference = 1;
  run.At("look", [&difference] {
    difference = std::abs(channels.Baselines(1) - sounding.Readings(1));
    EXPECT_GT(channels.Baselines(1), 0.2F) << "whole readings";
  });
  std::string start = ScriptToMain();
  start.erase(start.find("expect Main.lblCommStatus"));
  run.Play(start + GetParam().lost + R"(rig test lost
click Main.cmdTakeBaseline
)" + GetParam().face +
           R"(wait 5
expect Main.cmdStart disabled
)" + GetParam().back +
           R"(rig test back held
expect Main.cmdStart enabled 60
rig test look
click Main.cmdStart
expect Main.cmdStart "STOP"
rig push 0.2
expect Main.lblDepth "0.200 m" 30
wait 2
rig test end
)" + ScriptToEnd());
  EXPECT_LT(difference, 0.001F);
  run.ExpectRows(false, 0);
  run.Report(std::string(GetParam().name) + " during a baseline");
}

INSTANTIATE_TEST_SUITE_P(, LossDuringABaseline, kWaysToLose, kNameOfCase);

TEST(LossAtTheStart, TakesOneRowForTheGapOnceTheConeIsBack) {
  LinkLossRun run;
  run.Play(ScriptToMain() + "click Main.cmdTakeBaseline\nclick Main.cmdStart\nrig unplug cone\n" +
           "rig push 0.9\nexpect Main.cmdStart \"STOP\"\nrig test lost\n" + kConeLost +
           "wait 5\nrig plug cone\nrig test back\n" + kConeWell +
           "expect Main.lblDepth \"0.900 m\" 60\nwait 2\nrig test end\n" + ScriptToEnd());
  run.ExpectRows(true, 10);
  run.Report("cone away at the start");
}

struct LossAtTheStopQuestion : testing::TestWithParam<WayToLose> {};

TEST_P(LossAtTheStopQuestion, TakesItsButtonsIfTheConeIsSilentAndTheReturnClosesIt) {
  const std::string buttons = std::string(GetParam().buttons) + "\n";
  LinkLossRun run;
  run.Play(ScriptToRecording() + "rig push 0.9\nwait 10\nclick Main.cmdStart\n" +
           "expect Main.frmLocalWarning visible\nexpect Main.cmdWarningOK1 visible\n" +
           "rig test lost\n" + GetParam().lost + GetParam().face +
           "wait 5\nexpect Main.cmdWarningOK1 " + buttons + "expect Main.cmdWarningCancel " +
           buttons + GetParam().back + "rig test back\n" + kConeWell +
           "expect Main.frmLocalWarning hidden 10\nexpect Main.cmdStart \"STOP\"\n" +
           "expect Main.lblDepth \"0.900 m\" 60\nwait 2\nrig test end\n" + ScriptToEnd());
  run.ExpectRows(true, GetParam().missing);
  run.Report(std::string(GetParam().name) + " at the stop question");
}

INSTANTIATE_TEST_SUITE_P(, LossAtTheStopQuestion, kWaysToLose, kNameOfCase);

// A sounding that is resumed.

TEST(LossDuringAResume, WhileItsReadingsFillTakesNoRowOfPartOfTheTruth) {
  LinkLossRun run;
  run.At("filling", [] {
    EXPECT_LT(sounding.ReadingsTaken, 10);
    EXPECT_EQ(sounding.ConsoleMode, 2);
  });
  run.Play(ScriptToRecording() + Push("0.4", "0.400 m") + ScriptToSuspend() + kRestart +
           ScriptToPanel() + "click StartUp.cmdResumeAtLastDepth\nscreen frmConeSettings 60\n" +
           "click frmConeSettings.cmdClose\nscreen Main\nrig unplug cone\nrig test filling\n" +
           "rig test lost\nrig push 0.9\n" + kConeLost + "wait 5\nrig plug cone\nrig test back\n" +
           kConeWell + "wait 40\nrig test end\n" + ScriptToEnd());
  run.ExpectRows(true, 9);
  ASSERT_GT(run.stored.size(), 25U);
  for (const std::string& row : run.stored) {
    EXPECT_GT(LeadingNumber(row.substr(14, 20)), 0.25) << "the sensor gives 0.2531 V at rest";
  }
  run.Report("cone away in the filling readings of a resume");
}

TEST(LossDuringAResume, WaitingAtTheSurfaceTakesNoRowAndGoesOnWaiting) {
  LinkLossRun run;
  run.Play(ScriptToRecording() + Push("0.4", "0.400 m") + ScriptToSuspend() + kRestart +
           "rig at 0\n" + ScriptToPanel() + ScriptBy("cmdResumeAtSurface") +
           "screen frmResumeDepthStatus\nrig push 0.4\nwait 5\nrig test lost\nrig unplug cone\n" +
           kConeLost + "wait 5\nrig plug cone\nrig test back held\n" + kConeWell +
           "expect frmResumeDepthStatus.lblCurrentResumeDepth \"0.40\" 60\nwait 2\n" +
           "expect Main.lblState \"WAITING\"\nclick frmResumeDepthStatus.lblDepthReached\n" +
           Push("0.4", "0.800 m") + "rig test end\n" + ScriptToEnd());
  ASSERT_EQ(run.stored.size(), 41U) << "20 rows, the gap, 20 rows";
  EXPECT_TRUE(run.stored[20].starts_with("DRILLOUT")) << run.stored[20];
  ExpectCptDepths(run, 20, 40);
  run.Report("cone away while a resume waits at the surface");
}

}  // namespace
}  // namespace penlog
