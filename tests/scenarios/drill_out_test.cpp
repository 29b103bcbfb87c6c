// A hole that was drilled out: a suspended sounding goes on from the surface, all through the
// screens.
#include <gtest/gtest.h>

#include <string>

#include "core/session.h"
#include "scenarios/resume_scripts.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

std::string ScriptToDrillOut(const std::string& metres) {
  return ScriptToRecording() + Push("0.4", "0.400 m") + ScriptToSuspend() + kRestart +
         "rig at 0\n" + ScriptToPanel() + "type StartUp.txtDistanceDrilled " + metres + "\n" +
         ScriptBy("cmdResumeAtSurface") + "screen frmResumeDepthStatus\n";
}

TEST(DrilledOut, WaitsForTheDepthWithoutRowsAndGoesOnThere) {
  Scenario scenario;
  Texts waiting;
  std::string cpt;
  scenario.At("waiting", [&] {
    waiting = StoredDepths(scenario);
    cpt = scenario.File(kCpt);
  });
  scenario.At("reached", [&] {
    waiting = StoredDepths(scenario);
    EXPECT_EQ(session.ResumeDepthStatus, 0.0F);
    EXPECT_EQ(sounding.ConsoleMode, 2);
  });
  scenario.Play(ScriptToDrillOut("0.2") + R"(expect frmResumeDepthStatus.lblTargetResumeDepth "0.60"
expect frmResumeDepthStatus.lblCurrentResumeDepth "0.00"
expect frmResumeDepthStatus.lblDifference "0.60 m"
expect Main.lblDepth "0.000 m"
expect Main.lblState "WAITING"
rig push 0.59
expect frmResumeDepthStatus.lblCurrentResumeDepth "0.59" 60
expect frmResumeDepthStatus.lblDifference "0.01 m"
expect Main.lblDepth "0.590 m"
wait 2
rig test waiting
)");
  EXPECT_EQ(waiting.size(), 20U) << "no row on the way down";
  EXPECT_EQ(RowsOf(cpt, kCptHeader).size(), 20U - kDelay);
}

TEST(DrilledOut, MarksTheGapAndRecordsOnAtTheDepthAsCounted) {
  Scenario scenario;
  Texts stored;
  std::string gap;
  scenario.At("stored", [&] {
    stored = StoredDepths(scenario);
    gap = RowsOf(scenario.File(kTemporary), kTemporaryHeader).at(20);
  });
  scenario.Play(ScriptToDrillOut("0.2") + R"(rig push 0.61
expect frmResumeDepthStatus.lblCurrentResumeDepth "0.61" 60
expect frmResumeDepthStatus.lblDifference "-0.01 m"
click frmResumeDepthStatus.lblDepthReached
expect Main.lblState "RECORDING"
expect Main.lblDepth "0.610 m"
)" + Push("0.19", "0.800 m") +
                "rig test stored\n" + ScriptToEnd());
  ASSERT_EQ(stored.size(), 20U + 1U + 10U);
  EXPECT_EQ(stored[19], "0.40");
  EXPECT_EQ(stored[20], "gap");
  EXPECT_EQ(stored[21], "0.62") << "the next of the grid from the surface";
  EXPECT_EQ(stored[30], "0.80");
  // Channels 1, 2, 3, 6, 7 are recorded, and there.
  EXPECT_EQ(gap, "DRILLOUT*****" + std::string(100, '*'));
  const Texts rows = RowsOf(scenario.File(kCpt), kCptHeader);
  EXPECT_EQ(rows.size(), 30U) << "the mark stands in the recovery copy alone";
  EXPECT_EQ(scenario.File(kCpt).find('*'), std::string::npos);
}

TEST(DrilledOut, ShowsFeetAndElevations) {
  ScenarioSetup setup;
  setup.settings = {{setting::kDepthFormat, "1"}, {setting::kDepthUnits, "1"}};
  Scenario scenario(setup);
  scenario.Play(ScriptToRecording() + Push("0.4", "-1.312 ft") + ScriptToSuspend() + kRestart +
                "rig at 0\n" + ScriptToPanel() + "type StartUp.txtDistanceDrilled 3.281\n" +
                ScriptBy("cmdResumeAtSurface") + R"(screen frmResumeDepthStatus
expect frmResumeDepthStatus.lblTargetResumeDepth "-4.59"
expect frmResumeDepthStatus.lblCurrentResumeDepth "0.00"
expect frmResumeDepthStatus.lblDifference "4.59 ft"
rig push 0.5
expect frmResumeDepthStatus.lblCurrentResumeDepth "-1.64" 60
expect frmResumeDepthStatus.lblDifference "2.95 ft"
end
)");
}

TEST(DrilledOut, AgainBehindAGapIsReadBackWithItsRows) {
  Scenario scenario;
  Texts stored;
  scenario.At("stored", [&] { stored = StoredDepths(scenario); });
  scenario.Play(ScriptToDrillOut("0") + R"(rig push 0.4
expect frmResumeDepthStatus.lblCurrentResumeDepth "0.40" 60
click frmResumeDepthStatus.lblDepthReached
)" + Push("0.1", "0.500 m") +
                ScriptToSuspend() + kRestart + "rig at 0\n" + ScriptToPanel() +
                "expect StartUp.lblLastSoundingDepth \"0.50 m\"\n" +
                ScriptBy("cmdResumeAtSurface") + R"(screen frmResumeDepthStatus
expect frmResumeDepthStatus.lblTargetResumeDepth "0.50"
rig push 0.5
expect frmResumeDepthStatus.lblCurrentResumeDepth "0.50" 60
click frmResumeDepthStatus.lblDepthReached
)" + Push("0.1", "0.600 m") +
                "rig test stored\n" + ScriptToEnd());
  ASSERT_EQ(stored.size(), 32U);
  EXPECT_EQ(stored[20], "gap");
  EXPECT_EQ(stored[26], "gap");
  ExpectCptDepths(scenario, 20, 30);
}

/// Suspended behind the mark of the gap, before a row; then to the panel.
std::string ScriptToOpenGap() {
  return ScriptToDrillOut("0.2") + R"(rig push 0.6
expect frmResumeDepthStatus.lblCurrentResumeDepth "0.60" 60
click frmResumeDepthStatus.lblDepthReached
)" + ScriptToSuspend() +
         "answer ok \"THE CONE STANDS 0.20 m BELOW THE LAST ROW.\"\n" + kRestart +
         R"(screen StartUp
click StartUp.cmdResume
answer ok "THE LAST SOUNDING WAS RESUMED FROM THE SURFACE, AND NO ROW WAS TAKEN"
expect StartUp.lblLastSoundingDepth "0.40 m"
)";
}

TEST(DrilledOut, SuspendedBehindTheMarkIsTakenUpFromTheSurfaceWithoutAnotherMark) {
  Scenario scenario;
  Texts stored;
  scenario.At("stored", [&] { stored = StoredDepths(scenario); });
  scenario.Play(ScriptToOpenGap() + "rig at 0\ntype StartUp.txtDistanceDrilled 0.2\n" +
                ScriptBy("cmdResumeAtSurface") + R"(screen frmResumeDepthStatus
expect frmResumeDepthStatus.lblTargetResumeDepth "0.60"
rig push 0.6
expect frmResumeDepthStatus.lblCurrentResumeDepth "0.60" 60
click frmResumeDepthStatus.lblDepthReached
expect Main.lblDepth "0.600 m"
)" + Push("0.1", "0.700 m") +
                "rig test stored\n" + ScriptToEnd());
  ASSERT_EQ(stored.size(), 20U + 1U + 5U);
  EXPECT_EQ(stored[20], "gap");
  EXPECT_EQ(stored[21], "0.62");
  EXPECT_EQ(RowsOf(scenario.File(kCpt), kCptHeader).size(), 25U);
}

TEST(DrilledOut, SuspendedBehindTheMarkIsTakenUpAtTheLastDepthBehindThatMark) {
  Scenario scenario;
  Texts stored;
  scenario.At("stored", [&] { stored = StoredDepths(scenario); });
  scenario.Play(ScriptToOpenGap() + ScriptBy("cmdResumeAtLastDepth") +
                "expect Main.lblDepth \"0.400 m\"\n" + Push("0.1", "0.500 m") +
                "rig test stored\n" + ScriptToEnd());
  ASSERT_EQ(stored.size(), 20U + 1U + 5U);
  EXPECT_EQ(stored[20], "gap");
  EXPECT_EQ(stored[21], "0.42");
  ExpectCptDepths(scenario, 20, 25);
}

TEST(DrilledOut, StoppedWhileItWaitsIsClosedAndTheScreenGoes) {
  Scenario scenario;
  scenario.Play(ScriptToDrillOut("0.2") + R"(click Main.cmdStart
expect Main.frmLocalWarning visible
click Main.cmdWarningOK1
expect Main.frmTakeFinalBaseline visible
expect frmResumeDepthStatus.lblDepthReached hidden
click Main.Command3
screen frmZOLRestart
click frmZOLRestart.cmdNo
)");
  EXPECT_EQ(scenario.File(kTemporary), "DONE\r\n");
  ExpectCptDepths(scenario, 20, 20);
}

TEST(DrilledOut, SuspendedOrCutOffWhileItWaitsIsAsItWas) {
  for (const bool killed : {true, false}) {
    Scenario scenario;
    std::string before;
    scenario.At("before", [&] { before = scenario.File(kTemporary); });
    scenario.TryPlay(
        "script",
        ScriptToDrillOut("0.2") + "rig test before\nrig push 0.3\nwait 20\n" +
            (killed
                 ? "kill\nwait 1\n"
                 : ScriptToSuspend() +
                       "answer ok \"THE CONE STANDS 0.10 m ABOVE\"\nclick frmZOLRestart.cmdNo\n"));
    EXPECT_EQ(scenario.File(kTemporary), before);
    EXPECT_FALSE(before.empty());
    scenario.Play("rig at 0.4\n" + ScriptToResume() + "expect Main.lblDepth \"0.400 m\"\n" +
                  Push("0.2", "0.600 m") + ScriptToEnd());
    ExpectCptDepths(scenario, 20, 30);
  }
}

TEST(DrilledOut, WithItsConeLostOnTheWayDownGoesOnWhenItIsBack) {
  Scenario scenario;
  Texts stored;
  scenario.At("stored", [&] { stored = StoredDepths(scenario); });
  scenario.Play(ScriptToDrillOut("0") + R"(rig push 0.1
wait 8
rig unplug cone
rig push 0.3
wait 20
expect Main.lblDepth "0.400 m"
expect frmResumeDepthStatus.lblCurrentResumeDepth "0.40" 60
rig plug cone
expect Main.lblState "WAITING" 60
wait 3
click frmResumeDepthStatus.lblDepthReached
expect Main.lblState "RECORDING" 30
)" + Push("0.1", "0.500 m") +
                "rig test stored\n" + ScriptToEnd());
  ASSERT_EQ(stored.size(), 26U);
  EXPECT_EQ(stored[20], "gap");
  EXPECT_EQ(stored[21], "0.42");
}

TEST(DrilledOut, ADistanceThatIsNoneIsToldAndThePanelStays) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + Push("0.1", "0.100 m") + ScriptToSuspend() + kRestart +
                ScriptToPanel() + R"(type StartUp.txtDistanceDrilled "a lot"
click StartUp.cmdResumeAtSurface
answer ok """a lot"" is not a number."
expect StartUp.cmdResumeAtSurface enabled
type StartUp.txtDistanceDrilled ""
)" + ScriptBy("cmdResumeAtSurface") +
                "expect frmResumeDepthStatus.lblTargetResumeDepth \"0.10\"\nend\n");
}

}  // namespace
}  // namespace penlog
