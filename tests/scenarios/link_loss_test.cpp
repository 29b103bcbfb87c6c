// Links that are lost in a sounding and come back, in virtual time. Each test prints what was
// tried, the seconds from the return to the first row (or reading) behind it, and the rows missing.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <ostream>
#include <string>
#include <vector>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "forms/main_form.h"
#include "forms/warning_form.h"
#include "platform/clock.h"
#include "platform/numbers.h"
#include "scenarios/resume_scripts.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

constexpr double kStep = 0.02;  // m between rows
constexpr double kLimit = 30;   // s
constexpr Micros kGlance = 20 * kMillisecond;

const std::string kConeLost = R"(expect frmWarning.frmSerialWarning visible 10
expect frmWarning.frmModuleWarning visible
expect Main.lblState "LINK LOST"
)";
const std::string kConeSilent = R"(expect frmWarning.frmModuleWarning visible 10
expect frmWarning.frmSerialWarning hidden
expect Main.lblState "LINK LOST"
)";
const std::string kTruckLost = "expect frmWarning.frmEncoderWarning visible 10\n";
const std::string kConeWell = R"(expect frmWarning.frmSerialConnected visible 60
expect frmWarning.frmSerialWarning hidden
expect frmWarning.frmModulesConnected visible 60
expect frmWarning.frmModuleWarning hidden
)";
const std::string kTruckWell = R"(expect frmWarning.frmEncoderConnected visible 10
expect frmWarning.frmEncoderWarning hidden
expect frmWarning.frmSteps "DEPTH STEPS MAY BE MISSING"
)";

bool LinksAreUp() {
  return cone.ConeLinkUp == kTrue && cone.ConePortLost != kTrue && cone.TruckPortLost != kTrue;
}

/// `rig test lost` before the loss, `rig test back` behind the return (`rig test back held` where
/// no row will come), `rig test end` before the sounding is closed.
struct LinkLossRun : Scenario {
  explicit LinkLossRun(const std::string& quits = "0", const std::string& name = "dcs")
      : Scenario(Setup(quits, name)) {
    At("lost", [this] {
      rows_at_loss = sounding.RowCount;
      temporary = Has(kTemporary) ? File(kTemporary) : "";
      cpt = Has(kCpt) ? File(kCpt) : "";
      quit_held = true;
      Look();
    });
    At("back", [this] { TakeReturn(false); });
    At("back held", [this] { TakeReturn(true); });
    At("end", [this] {
      DropCalls(this);
      stored = RowsOf(File(kTemporary), kTemporaryHeader);
      EXPECT_TRUE(File(kTemporary).starts_with(temporary)) << "the rows before stand";
      EXPECT_TRUE(File(kCpt).starts_with(cpt)) << "the rows before stand";
    });
  }
  ~LinkLossRun() { DropCalls(this); }

  static ScenarioSetup Setup(const std::string& quits, const std::string& name) {
    ScenarioSetup setup;
    setup.rig = name;
    setup.settings = {{setting::kQuitsActive, quits}};
    setup.change_rig = [](RigSetup& rig) { rig.truck.rod_length = 4.0; };
    return setup;
  }

  void TakeReturn(bool held) {
    back = Now();
    no_row_comes = held;
    rows_before = sounding.RowCount;
    reading = sounding.Readings(1);
  }

  void Look() {
    PostCall(
        Now() + kGlance, this, [this] { Look(); }, EventKind::RepeatingCall);
    quit_held = quit_held && rig.truck.Rts();
    was_down = was_down || cone.ConeLinkUp != kTrue;
    if (back < 0) return;
    if (!LinksAreUp()) {
      over = -1;
      rows_before = sounding.RowCount;
      return;
    }
    const bool well = sounding.Readings(1) != reading && sounding.ReadingsFresh == kTrue;
    if (over < 0 && well && (no_row_comes || sounding.RowCount > rows_before)) over = Now();
  }

  /// Each row stands on the grid but the one of the gap, none is there twice, and `gaps` are in
  /// them.
  void ExpectGrid(int gaps) {
    double number_before = 0;
    for (const std::string& row : RowsOf(File(kCpt), kCptHeader)) {
      const double steps = LeadingNumber(row.substr(0, 7)) / kStep;
      const double number = std::floor(steps + 0.03);
      EXPECT_GE(number, number_before + 1) << "twice: " << row;
      const bool gap = number > number_before + 1;
      missing += static_cast<int>(number - number_before) - 1;
      gaps -= gap ? 1 : 0;
      EXPECT_NEAR(steps, std::round(steps), gap ? 1.0 : 0.03) << row;
      number_before = number;
    }
    EXPECT_EQ(gaps, 0) << "rows are missing where the link was lost, and nowhere else";
  }

  void Report(const std::string& name) {
    EXPECT_GE(over, back) << "not over";
    const double seconds = static_cast<double>(over - back) / 1e6;
    EXPECT_LT(seconds, kLimit);
    std::cout << "| " << name << " | " << Format(seconds, "#0.0") << " s | " << missing << " |\n";
  }

  std::int32_t rows_at_loss = 0;
  std::int32_t rows_before = 0;
  std::string temporary;
  std::string cpt;
  Texts stored;
  Micros back = -1;
  Micros over = -1;
  float reading = 0;
  bool no_row_comes = false;
  bool quit_held = false;  ///< RTS was on at each glance
  bool was_down = false;   ///< the console has noticed
  int missing = 0;
};

// While rows are recorded.

struct LossCase {
  const char* name;
  std::string lost;
  std::string back;
  std::string well;
  int gaps = 1;
};

void PrintTo(const LossCase& loss, std::ostream* out) {
  *out << loss.name;
}

struct Recording : testing::TestWithParam<LossCase> {};

TEST_P(Recording, GoesOnBehindALossWithOneRowForTheGapAndOnTheGrid) {
  const LossCase& loss = GetParam();
  LinkLossRun run;
  run.Play(ScriptToRecording() + "rig push 3\nwait 10\nrig test lost\n" + loss.lost + loss.back +
           "rig test back\n" + loss.well + "wait 20\n" + loss.well +
           "expect Main.lblState \"RECORDING\"\nrig stop\nwait 3\nrig test end\n" + ScriptToEnd());
  run.ExpectGrid(loss.gaps);
  EXPECT_GT(run.stored.size(), static_cast<std::size_t>(run.rows_at_loss) + 10);
  EXPECT_EQ(run.DataFile("TemporaryData.txt"), "DONE\r\n");
  run.Report(loss.name);
}

INSTANTIATE_TEST_SUITE_P(
    , Recording,
    testing::Values(
        LossCase{"ConeAwayForAMoment", "rig unplug cone\nwait 0.1\n", "rig plug cone\n", kConeWell},
        LossCase{"ConeAwayFor5s", "rig unplug cone\n" + kConeLost + "wait 5\n", "rig plug cone\n",
                 kConeWell},
        LossCase{"ConeAwayForAMinute", "rig unplug cone\n" + kConeLost + "wait 60\n",
                 "rig plug cone\n", kConeWell},
        LossCase{"ConeBackAsCOM9", "rig replug cone 9 5s\n" + kConeLost, "wait 5\n", kConeWell},
        LossCase{"ConeSilent", "rig fault silent\n" + kConeSilent + "wait 5\n",
                 "rig fault silent off\n", kConeWell},
        LossCase{"ConeFrozen",
                 "rig fault frozen\nwait 1\nexpect Main.lblCommError \"\"\n"
                 "expect Main.lblCommError \"COMM ERR: cone repeats\" 5\nwait 5\n",
                 "rig fault frozen off\n", kConeWell + "expect Main.lblCommError \"\"\n", 0},
        LossCase{"OneReplyGarbled", "rig fault garbled 1\n", "wait 0.5\n", kConeWell, 0},
        LossCase{"HalfAReply", "rig fault half-reply 1\n", "wait 0.5\n", kConeWell},
        LossCase{"SelectionLost", "rig fault lost-selection 1\n", "wait 0.5\n", kConeWell, 0},
        LossCase{"TruckAway",
                 "rig unplug truck\n" + kTruckLost + "expect Main.lblState \"TRUCK LINK LOST\"\n" +
                     "wait 5\n",
                 "rig plug truck\n", kConeWell + kTruckWell, 0},
        LossCase{"ConeAndTruckAway",
                 "rig unplug cone\nrig unplug truck\nexpect frmWarning.frmSerialWarning visible "
                 "10\n" +
                     kTruckLost + "expect Main.lblState \"~LOST\"\nwait 5\n",
                 "rig plug cone\nrig plug truck\n", kConeWell + kTruckWell}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(RowOfTheGap, HoldsNoReadingsOfBeforeTheLossAlone) {
  LinkLossRun run;
  run.Play(ScriptToRecording() + "rig set 1 1000\nrig push 0.9\nwait 10\nrig test lost\n" +
           "rig unplug cone\n" + kConeLost + "rig set 1 50000\nwait 3\nrig plug cone\n" +
           "rig test back\n" + kConeWell + "wait 10\nrig test end\n" + ScriptToEnd());
  run.ExpectGrid(1);
  double depth = 0;
  double tip = 0;  // V; half of the span is 2.25
  for (const std::string& row : run.stored) {
    const double next = LeadingNumber(row.substr(1));
    if (next - depth > 1.5 * kStep && depth > 0) tip = LeadingNumber(row.substr(14, 20));
    depth = next;
  }
  EXPECT_GT(tip, 0.7);
}

// Quits.

TEST(QuitsBehindALoss, WaitForTenReadingsAgain) {
  LinkLossRun run("1");
  int asked = 0;  // readings since the last other command: the cone was selected anew
  bool raised = false;
  run.rig.log.on_added = [&](const RigRecord& record) {
    raised = raised || (record.kind == RigLogKind::Output && (record.number & 2) != 0);
    if (!raised && record.kind == RigLogKind::Command) asked = record.text == "D" ? asked + 1 : 0;
  };
  run.Play(ScriptToRecording() + "rig push 1.8\nwait 60\nrig test lost\nrig unplug cone\n" +
           kConeLost + "rig tilt 12 0\nrig plug cone\nrig test back\n" + kConeWell +
           "expect Main.frmQuitWarning visible 20\nrig test end\n" + ScriptToEnd());
  EXPECT_TRUE(raised);
  EXPECT_NEAR(asked, 12, 1) << "two show that the cone lives";
}

TEST(QuitsBehindALoss, LatchedBeforeHoldTheRigThroughIt) {
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

TEST(LossDuringABaseline, TakesItFromReadingsBehindTheReturn) {
  LinkLossRun run;
  float difference = 1;
  run.At("look", [&difference] {
    difference = std::abs(channels.Baselines(1) - sounding.Readings(1));
    EXPECT_GT(channels.Baselines(1), 0.2F) << "whole readings";
  });
  std::string start = ScriptToMain();
  start.erase(start.find("expect Main.lblCommStatus"));
  run.Play(start + R"(rig fault silent
rig test lost
click Main.cmdTakeBaseline
wait 5
expect Main.cmdStart disabled
rig fault silent off
rig test back held
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
  run.ExpectGrid(0);
  run.Report("cone silent during a baseline");
}

TEST(LossAtTheStart, TakesOneRowForTheGapOnceTheConeIsBack) {
  LinkLossRun run;
  run.Play(ScriptToMain() + "click Main.cmdTakeBaseline\nclick Main.cmdStart\nrig unplug cone\n" +
           "rig push 0.9\nexpect Main.cmdStart \"STOP\"\nrig test lost\n" + kConeLost +
           "wait 5\nrig plug cone\nrig test back\n" + kConeWell +
           "expect Main.lblDepth \"0.900 m\" 60\nwait 2\nrig test end\n" + ScriptToEnd());
  run.ExpectGrid(1);
  run.Report("cone away at the start");
}

TEST(LossAtTheStopQuestion, TakesItsButtonsAndItComesAgain) {
  LinkLossRun run;
  run.Play(ScriptToRecording() + "rig push 0.9\nwait 10\nclick Main.cmdStart\n" +
           "expect Main.frmLocalWarning visible\nexpect Main.cmdWarningOK1 visible\n" +
           "rig test lost\nrig fault silent\n" + kConeSilent +
           "expect Main.cmdWarningOK1 hidden\nexpect Main.cmdWarningCancel hidden\n" +
           "wait 5\nrig fault silent off\nrig test back\n" + kConeWell +
           "expect Main.frmLocalWarning hidden 10\nexpect Main.cmdStart \"STOP\"\n" +
           "expect Main.lblDepth \"0.900 m\" 60\nwait 2\nrig test end\n" + ScriptToEnd());
  run.ExpectGrid(1);
  run.Report("cone silent at the stop question");
}

TEST(LossAtTheStopQuestion, DoesNotKeepTheOperatorFromSuspending) {
  LinkLossRun run;
  run.Play(ScriptToRecording() + "rig push 0.9\nwait 10\nrig test lost\nrig unplug cone\n" +
           kConeLost + ScriptToSuspend() + "click frmZOLRestart.cmdNo\n");
  EXPECT_EQ(run.File(kTemporary).find(kCpt), 0U) << "it can be resumed";
  EXPECT_TRUE(run.File(kTemporary).starts_with(run.temporary));
}

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
  run.ExpectGrid(1);
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
