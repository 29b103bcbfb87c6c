// The stick with the sounding's file is pulled out and never comes back: each way to leave the
// console is open, says what is true, and a resume completes the file in another folder.
#include <gtest/gtest.h>

#include <string>

#include "platform/boxes.h"
#include "platform/runtime_fault.h"
#include "scenarios/resume_scripts.h"

namespace penlog {
namespace {

constexpr const char* kMoved = "/other/S1.cpt";
const std::string kRefusedRow =
    "answer ok \"THE SOUNDING COULD NOT BE WRITTEN TO THE DISK OF ITS FILE.\"\n";
const std::string kCompletedLater =
    "\"THE SOUNDING FILE IS NOT COMPLETE YET: /soundings/S1.cpt\"\n";
const std::string kStop = R"(click Main.cmdStart
click Main.cmdWarningOK1
expect Main.frmTakeFinalBaseline visible
)";
const std::string kNoOnRestart = "screen frmZOLRestart\nclick frmZOLRestart.cmdNo\n";

constexpr int kRowsBefore = 20;
constexpr int kRefusedFrom = 16;
constexpr int kAllRows = 30;

ScenarioSetup Steady() {
  ScenarioSetup setup;
  setup.change_rig = SteadyOnSlope;
  return setup;
}

/// `rig test gone` pulls it out.
struct StickGone : Scenario {
  StickGone() : Scenario(Steady()) {
    disk.MakeFolder("/other");
    At("gone", [this] {
      disk.Remove(kCpt);
      disk.before = [](std::string_view, const std::string& path) {
        if (path.starts_with("/soundings")) throw RuntimeFault(path + ": No such device");
      };
    });
  }
  /// A sounding of which the last rows stand in the recovery copy alone, left as `leave` has it.
  void PlayTo(const std::string& leave) {
    Play(ScriptToRecording() + HeldRows(kRefusedFrom - 1) + "rig test gone\nrig hold 1 6\n" +
         kRefusedRow + "wait 20\n" + HeldRows(kRowsBefore - kRefusedFrom) +
         "expect Main.lblDepth \"0.400 m\"\n" + leave);
    EXPECT_EQ(RowsOf(File(kTemporary), kTemporaryHeader).size(),
              static_cast<std::size_t>(kRowsBefore));
    EXPECT_FALSE(Has(kCpt));
  }
  void ResumeInAnotherFolder() {
    Play(ScriptToPanel() + R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
answer yes "THE SOUNDING FILE /soundings/S1.cpt IS MISSING."
answer yes "THE SOUNDING FILE CANNOT BE WRITTEN."
file /other/S1.cpt
answer ok "THESE FILES CANNOT BE READ.  WHAT STANDS THERE OF THEM STAYS THERE:"
answer ok "THE SOUNDING FILE WAS MENDED FROM THE TEMPORARY DATA."
screen Main
wait 5
)" + HeldRows(kAllRows - kRowsBefore) +
         "expect Main.lblDepth \"0.600 m\"\n" + ScriptToEnd());
  }
  /// But for the path in its first line, and the speeds of the row behind the message, which the
  /// operator takes a moment to answer, and of the first one behind the resume.
  void ExpectWhole() const {
    Scenario never(Steady());
    never.Play(ScriptToRecording() + HeldRows(kAllRows) + ScriptToEnd());
    const Texts expected = LinesOf(never.File(kCpt));
    const Texts lines = LinesOf(File(kMoved));
    ASSERT_EQ(lines.size(), expected.size());
    ASSERT_EQ(lines.size(), kCptHeader + kAllRows);
    for (std::size_t i = 1; i < lines.size(); ++i) {
      std::string was = lines[i];
      std::string wanted = expected[i];
      for (const int row : {kRefusedFrom + 1, kRowsBefore + 1}) {
        if (i < kCptHeader || !HasSpeedOf(row, i - kCptHeader, kAllRows)) continue;
        for (std::string* line : {&was, &wanted}) BlankSpeed(*line, 6);
      }
      EXPECT_EQ(was, wanted) << "line " << i + 1;
    }
    EXPECT_EQ(File(kTemporary), "DONE\r\n");
  }
};

TEST(StickGone, ForGoodCanBeSuspendedAndIsWholeInAnotherFolder) {
  StickGone stick;
  stick.PlayTo(R"(click Main.cmdStart
click Main.cmdWarningOK2
answer ok )" + kCompletedLater +
               kNoOnRestart);
  stick.ResumeInAnotherFolder();
  stick.ExpectWhole();
}

TEST(StickGone, ForGoodCanBeLeftByTheClosedWindow) {
  StickGone stick;
  std::string told;
  stick.At("look", [&] { told = FrontBox() == nullptr ? "" : FrontBox()->text; });
  stick.PlayTo("rig test look\nend\n");
  EXPECT_EQ(told, "") << "nothing is in the way before";
  stick.ResumeInAnotherFolder();
  stick.ExpectWhole();
}

TEST(StickGone, ForGoodAtTheEndIsSuspendedInstead) {
  for (const char* button : {"Command2", "Command3"}) {
    StickGone stick;
    stick.PlayTo(kStop + "click Main." + button + R"(
answer yes "THE SOUNDING IS NOT CLOSED YET.  /soundings/S1.cpt is no longer there."
answer no "THE SOUNDING IS NOT CLOSED YET.  /soundings/S1.cpt is no longer there."
)" + kNoOnRestart);
    stick.ResumeInAnotherFolder();
    stick.ExpectWhole();
  }
}

/// The rows stand in the recovery copy alone, as chosen, through a session and one more.
TEST(StickGone, ForGoodWithoutAnotherFolderCanBeSuspendedAgainAndAgain) {
  StickGone stick;
  const std::string suspended = R"(click Main.cmdStart
click Main.cmdWarningOK2
answer ok )" + kCompletedLater + kNoOnRestart;
  stick.PlayTo(suspended);
  for (const char* depth : {"0.440 m", "0.480 m"}) {
    stick.Play(ScriptToPanel() + R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
answer yes "THE SOUNDING FILE /soundings/S1.cpt IS MISSING."
answer no "THE SOUNDING FILE CANNOT BE WRITTEN."
)" + kRefusedRow +
               "screen Main\nwait 5\n" + Push("0.04", depth) + suspended);
  }
  EXPECT_EQ(RowsOf(stick.File(kTemporary), kTemporaryHeader).size(), 24U);
}

/// A file on a stick that takes nothing, and that would have to be changed.
TEST(StickGone, OrReadOnlyWithADamagedFileCanBeSuspendedAndIsWholeOnceItIsWritable) {
  StickGone stick;
  stick.Play(ScriptToRecording() + Push("0.4", "0.400 m") + ScriptToSuspend() +
             "click frmZOLRestart.cmdNo\n");
  const std::string whole = stick.File(kCpt);
  const std::string damaged = whole.substr(0, whole.rfind("\r\n", whole.size() - 3) + 2) + "  0.40";
  stick.disk.Put(kCpt, damaged);
  stick.disk.SetReadOnly("/soundings");
  stick.Play(ScriptToPanel() + R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
answer no "THE SOUNDING FILE CANNOT BE WRITTEN."
screen Main
wait 5
rig push 0.1
answer ok "THE SOUNDING FILE TAKES NO ROWS BEFORE THE NEXT RESUME HAS MENDED IT."
expect Main.lblDepth "0.500 m" 120
click Main.cmdStart
click Main.cmdWarningOK2
answer ok "THE SOUNDING FILE IS NOT COMPLETE YET: /soundings/S1.cpt: only a resume can mend it."
)" + kNoOnRestart);
  EXPECT_EQ(stick.File(kCpt), damaged);
  stick.disk.SetReadOnly("");
  stick.Play(ScriptToPanel() + R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
answer ok "THE SOUNDING FILE WAS MENDED FROM THE TEMPORARY DATA."
screen Main
wait 5
)" + Push("0.1", "0.600 m") +
             ScriptToEnd());
  ExpectCptDepths(stick, 20, 30);
  EXPECT_EQ(stick.File(kTemporary), "DONE\r\n");
}

}  // namespace
}  // namespace penlog
