// The cone is not where the last row was taken, or a part of the end was done: what a resume says
// and counts, all through the screens.
#include <gtest/gtest.h>

#include <string>

#include "platform/numbers.h"
#include "scenarios/resume_scripts.h"

namespace penlog {
namespace {

TEST(SuspendedBehindALoss, TellsHowFarTheConeIsAndItsRowsGoOnWhereItWasBroughtBack) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + Push("0.4", "0.400 m") + R"(rig unplug cone
expect Main.lblState "LINK LOST" 20
rig push 0.5
expect Main.lblDepth "0.900 m" 120
wait 2
click Main.cmdStart
expect Main.frmLocalWarning visible
click Main.cmdWarningOK2
answer ok "THE CONE STANDS 0.50 m BELOW THE LAST ROW.  BRING IT TO 0.40 m"
screen frmZOLRestart
rig plug cone
rig lift 0.5
wait 60
)" + kRestart + ScriptToPanel() +
                "expect StartUp.lblLastSoundingDepth \"0.40 m\"\n" +
                ScriptBy("cmdResumeAtLastDepth") + "expect Main.lblDepth \"0.400 m\"\n" +
                Push("0.2", "0.600 m") + ScriptToEnd());
  EXPECT_NEAR(scenario.rig.truck.Depth(), 0.6, 0.006) << "the rods agree with the rows";
  ExpectCptDepths(scenario, 20, 30);
}

TEST(ResumePanel, ShowsTheDepthWithTheSignOfTheSounding) {
  for (const bool elevations : {true, false}) {
    ScenarioSetup setup;
    setup.settings = {{setting::kDepthFormat, elevations ? "1" : "0"}};
    Scenario scenario(setup);
    const std::string depth = elevations ? "-0.40 m" : "0.40 m";
    scenario.Play(ScriptToRecording() + Push("0.4", elevations ? "-0.400 m" : "0.400 m") +
                  ScriptToSuspend() + "click frmZOLRestart.cmdNo\n");
    const std::string path = "/allusers/PENLOG(KQ)/System Setup Values.txt";
    Texts lines = LinesOf(scenario.File(path));
    lines[setting::kDepthFormat - 1] = elevations ? "0" : "1";
    std::string text;
    for (const std::string& line : lines) text += line + "\r\n";
    scenario.disk.Put(path, text);
    scenario.Play(ScriptToPanel() + "expect StartUp.lblLastSoundingDepth \"" + depth + R"("
click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
answer ok "THE SOUNDING WAS BEGUN IN )" +
                  (elevations ? "ELEVATIONS" : "DEPTHS") + "\"\nscreen Main\nend\n");
    // Without its file the settings tell.
    scenario.disk.Remove(kCpt);
    scenario.Play(ScriptToPanel() + "expect StartUp.lblLastSoundingDepth \"" +
                  (elevations ? "0.40 m" : "-0.40 m") + "\"\nend\n");
  }
}

TEST(StoppedTwice, AroundACrashAddsItsDistanceOnce) {
  Scenario scenario;
  const auto pushed = [&] { return scenario.rig.cone.Memory().DistancePushed(); };
  const auto before = pushed();
  const std::string stop = R"(click Main.cmdStart
expect Main.frmLocalWarning visible
click Main.cmdWarningOK1
expect Main.frmTakeFinalBaseline visible
wait 3
)";
  scenario.TryPlay("stopped", ScriptToRecording() +
                                  "rig push 2.6\nexpect Main.lblDepth \"2.600 m\" 300\nwait 2\n" +
                                  stop + "kill\nwait 1\n");
  EXPECT_EQ(pushed(), before + 2);
  scenario.Play(ScriptToResume() + Push("0.5", "3.100 m") + stop +
                "click Main.Command3\nscreen frmZOLRestart\nclick frmZOLRestart.cmdNo\n");
  EXPECT_EQ(pushed(), before + 3) << "the whole metres of 3.1";
  EXPECT_EQ(scenario.File(kTemporary), "DONE\r\n");
}

}  // namespace
}  // namespace penlog
