// The truck interface's port gone for a moment in a running sounding.
#include <gtest/gtest.h>

#include <string>

#include "scenarios/resume_scripts.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

/// Of rods that went to 0.6 m, with their stop behind.
struct Moment : Scenario {
  Moment() {
    At("end", [this] { depth = sounding.CurrentDepth; });
  }
  /// All rows stand on the grid of what was counted.
  void ExpectRows() const { ExpectCptDepths(*this, 20, static_cast<int>(depth / 0.02F + 0.01F)); }
  float depth = 0;  ///< m, as counted at the end
};

const std::string kTold = R"(expect frmWarning.frmSteps "DEPTH STEPS MAY BE MISSING" 10
expect frmWarning.lblSteps "~THE TRUCK INTERFACE WAS AWAY AT 0\..* m\."
expect frmWarning.frmEncoderConnected visible 10
expect frmWarning.frmEncoderWarning hidden
expect Main.lblState "RECORDING"
)";

TEST(TruckPortForAMoment, UnderItsNumberIsToldAndCountsOnByItself) {
  Moment scenario;
  scenario.Play(ScriptToRecording() + "rig push 0.6\nwait 10\nrig replug truck 4 0.1s\n" + kTold +
                "wait 30\nrig test end\n" + ScriptToEnd());
  EXPECT_LT(scenario.depth, 0.6F) << "steps of the moment are missing, and were not made up";
  EXPECT_GT(scenario.depth, 0.55F);
  scenario.ExpectRows();
}

TEST(TruckPortForAMoment, WhileTheRodsStandIsToldTooAndNothingIsMissing) {
  Moment scenario;
  scenario.Play(ScriptToRecording() + Push("0.3", "0.300 m") + "rig replug truck 4 0.1s\n" + kTold +
                Push("0.3", "0.600 m") + "rig test end\n" + ScriptToEnd());
  scenario.ExpectRows();
}

TEST(TruckPortForAMoment, IsToldAlsoBehindAResumeUntilTheSoundingEnds) {
  const std::string note = "/allusers/PENLOG(KQ)/Missing Steps.txt";
  for (const bool killed : {true, false}) {
    SCOPED_TRACE(killed);
    Moment scenario;
    scenario.TryPlay("moment", ScriptToRecording() + Push("0.3", "0.300 m") +
                                   "rig replug truck 4 0.1s\n" + kTold +
                                   (killed ? "wait 1\nkill\nwait 1\n"
                                           : ScriptToSuspend() + "click frmZOLRestart.cmdNo\n"));
    EXPECT_TRUE(scenario.Has(note));
    scenario.Play(ScriptToResume() + R"(expect frmWarning.frmSteps "DEPTH STEPS MAY BE MISSING"
expect frmWarning.lblSteps "THE TRUCK INTERFACE WAS AWAY AT 0.300 m."
expect Main.lblStepsSign visible
)" + Push("0.3", "0.600 m") +
                  "rig test end\n" + ScriptToEnd());
    scenario.ExpectRows();
    EXPECT_FALSE(scenario.Has(note)) << "the sounding is done";
  }
}

TEST(TruckPortForAMoment, UnderAnotherNumberStaysLostUntilResetCommsGivesItThatOne) {
  Moment scenario;
  float lost = 0;
  scenario.At("lost", [&] { lost = sounding.CurrentDepth; });
  scenario.Play(ScriptToRecording() + R"(rig push 0.6
wait 10
rig replug truck 9 0.1s
expect frmWarning.frmEncoderWarning visible 5
expect frmWarning.frmEncoderConnected hidden
expect Main.lblState "TRUCK LINK LOST"
wait 40
expect frmWarning.frmEncoderWarning visible
expect Main.lblState "TRUCK LINK LOST"
rig test lost
menu frmWarning.mnuResetComms
select frmResetComms.cmbTruckInterfaceSerialPort 9
click frmResetComms.cmdOK
)" + kTold + "rig push 0.2\nwait 15\nrig test end\n" +
                ScriptToEnd());
  EXPECT_GT(lost, 0.1F);
  EXPECT_LT(lost, 0.3F) << "nobody counts meanwhile";
  EXPECT_NEAR(scenario.depth, lost + 0.2F, 1e-4F);
  scenario.ExpectRows();
}

}  // namespace
}  // namespace penlog
