// A sounding is stopped or suspended while its links are lost, in virtual time: it ends whole.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "forms/main_form.h"
#include "platform/clock.h"
#include "platform/numbers.h"
#include "scenarios/link_loss_run.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

constexpr double kLongestEnd = 3;  // s from the press of the last button to the last screen

/// What is lost when the operator stops, and whether the cone is.
struct StopCase {
  const char* name;
  std::string lost;
  bool cone_lost = true;
};

void PrintTo(const StopCase& stop, std::ostream* out) {
  *out << stop.name;
}

const auto kStops = testing::Values(
    StopCase{"ConeAway", "rig unplug cone\n" + kConeLost},
    StopCase{"ConeSilent", "rig fault silent\n" + kConeSilent},
    StopCase{"ConeBackAndFrozen",
             "rig fault frozen\nrig unplug cone\n" + kConeLost +
                 "wait 2\nrig plug cone\nexpect Main.lblCommError \"COMM ERR: duplicate\" 60\n"
                 "wait 3\nexpect Main.lblState \"LINK LOST\"\n"},
    StopCase{"TruckAway",
             "rig unplug truck\n" + kTruckLost + "expect Main.lblState \"TRUCK LINK LOST\"\n",
             false},
    StopCase{"ConeAndTruckAway", "rig unplug cone\nrig unplug truck\n" + kTruckLost +
                                     "expect Main.lblState \"LINKS LOST\"\n"});

const auto kNameOfCase = [](const auto& info) { return std::string(info.param.name); };

const std::string kRefused =
    "click Main.Command2\nanswer ok \"FINAL BASELINE CANNOT BE TAKEN WHILE\"\n"
    "expect Main.frmTakeFinalBaseline visible\n";

std::string ScriptToLoss(const StopCase& stop) {
  return ScriptToRecording() + "rig push 0.9\nwait 20\nrig test lost\n" + stop.lost + "wait 4\n";
}

std::string ScriptToQuestion() {
  return "click Main.cmdStart\nexpect Main.frmLocalWarning visible\n"
         "expect Main.cmdWarningOK1 visible\nexpect Main.cmdWarningOK2 visible\n";
}

std::string ScriptToBaseline() {
  return "click Main.cmdWarningOK1\nexpect Main.frmTakeFinalBaseline visible\n"
         "expect Main.lblState \"STOPPED\"\n";
}

/// Its rows are those of the recovery copy, behind them at most the final baseline.
void ExpectWhole(const LinkLossRun& run, bool final_baseline) {
  EXPECT_EQ(run.DataFile("TemporaryData.txt"), "DONE\r\n");
  EXPECT_GT(run.stored.size(), 15U);
  const Texts rows = RowsOf(run.File(kCpt), kCptHeader);
  ASSERT_EQ(rows.size(), run.stored.size() + (final_baseline ? 1 : 0));
  for (std::size_t row = 0; row < run.stored.size(); ++row) {
    const double depth = LeadingNumber(rows[row].substr(0, 7));
    EXPECT_NEAR(depth, 0.02 * static_cast<double>(row + 1), 0.0006) << rows[row];
    EXPECT_NEAR(LeadingNumber(run.stored[row].substr(1)), depth, 0.0051);
  }
  if (final_baseline) {
    EXPECT_TRUE(rows.back().starts_with(std::string(13, ' '))) << rows.back();
  }
}

struct StoppedWhileLost : testing::TestWithParam<StopCase> {
  void Time(LinkLossRun& run) {
    run.At("press", [this] { pressed = Now(); });
    run.At("ended", [this] { ended = Now(); });
  }
  Micros pressed = 0;
  Micros ended = 0;
};

TEST_P(StoppedWhileLost, EndsWhole) {
  const StopCase& stop = GetParam();
  LinkLossRun run;
  Time(run);
  run.Play(ScriptToLoss(stop) + ScriptToQuestion() + ScriptToBaseline() +
           (stop.cone_lost ? kRefused : "") + "rig test end\nrig test press\nclick Main." +
           (stop.cone_lost ? "Command3" : "Command2") +
           "\nscreen frmZOLRestart\nrig test ended\nclick frmZOLRestart.cmdNo\n");
  ExpectWhole(run, !stop.cone_lost);
  EXPECT_LT(static_cast<double>(ended - pressed) / 1e6, kLongestEnd);
}

TEST_P(StoppedWhileLost, SuspendedCanBeResumed) {
  const StopCase& stop = GetParam();
  const bool depth_counts_on =
      stop.cone_lost && stop.lost.find("unplug truck") == std::string::npos;
  LinkLossRun run;
  Time(run);
  run.Play(ScriptToLoss(stop) + ScriptToQuestion() +
           "rig test end\nrig test press\nclick Main.cmdWarningOK2\nscreen frmZOLRestart\n"
           "rig test ended\n" +
           std::string(depth_counts_on ? "answer ok \"THE CONE STANDS\"" : "") +
           "\nrig clear\nrig stop\n" + kRestart + ScriptToResume() + Push("0.2", "~m$") +
           "wait 10\n" + ScriptToEnd());
  EXPECT_LT(static_cast<double>(ended - pressed) / 1e6, kLongestEnd);
  EXPECT_EQ(run.DataFile("TemporaryData.txt"), "DONE\r\n");
  const Texts rows = RowsOf(run.File(kCpt), kCptHeader);
  EXPECT_GE(rows.size(), run.stored.size() + 9);
  for (std::size_t row = 0; row < rows.size(); ++row) {
    EXPECT_NEAR(LeadingNumber(rows[row].substr(0, 7)), 0.02 * static_cast<double>(row + 1), 0.0006);
  }
}

INSTANTIATE_TEST_SUITE_P(, StoppedWhileLost, kStops, kNameOfCase);

TEST(LossAtTheFinalBaseline, TakesItFromReadingsBehindTheReturn) {
  LinkLossRun run;
  run.Play(ScriptToRecording() + "rig push 0.5\nwait 30\nrig set 1 50000\nwait 3\n" +
           ScriptToQuestion() + ScriptToBaseline() + "rig test lost\nrig unplug cone\n" +
           "expect frmWarning.frmSerialWarning visible 10\nrig set 1 0\n" + kRefused +
           "wait 3\nrig plug cone\nrig test back held\n" + kConeWell +
           "wait 3\nexpect Main.frmTakeFinalBaseline visible\nrig test end\nclick Main.Command2\n"
           "screen frmZOLRestart\nclick frmZOLRestart.cmdNo\n");
  ExpectWhole(run, true);
  const Texts rows = RowsOf(run.File(kCpt), kCptHeader);
  EXPECT_LT(LeadingNumber(rows.back().substr(14, 20)), 0.3) << "V; 0.2531 V at rest";
  run.Report("cone away at the final baseline");
}

}  // namespace
}  // namespace penlog
