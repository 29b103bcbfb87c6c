// Resumes whose folder refuses, whose recovery copy is too long, and the way back to the start
// screen, all through the screens.
#include <gtest/gtest.h>

#include <string>

#include "forms/cone_settings_form.h"
#include "forms/start_up_form.h"
#include "platform/numbers.h"
#include "scenarios/resume_scripts.h"

namespace penlog {
namespace {

/// To the refusal of a suspended sounding's folder.
std::string ScriptToRefusal() {
  return ScriptToPanel() + R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
answer yes "THE SOUNDING FILE CANNOT BE WRITTEN."
)";
}

/// No other folder is chosen.
std::string ScriptBack() {
  return ScriptToRefusal() + R"(file cancel
answer cancel "NO OTHER FOLDER WAS CHOSEN."
answer ok "THE LAST SOUNDING WAS NOT RESUMED.  NOTHING OF IT IS LOST"
rig test back
expect StartUp.frmResume hidden
expect StartUp.cmdStart enabled
expect StartUp.cmdResume enabled
expect StartUp.cmdExit enabled
)";
}

std::string ScriptThroughMending() {
  return R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
answer ok "THE SOUNDING FILE WAS MENDED FROM THE TEMPORARY DATA."
screen Main
expect Main.cmdStart "STOP"
wait 5
)";
}

/// A suspended sounding of 10 rows with a torn file, in a folder that takes nothing.
struct Refused : Scenario {
  Refused() {
    Play(ScriptToRecording() + Push("0.2", "0.200 m") + ScriptToSuspend() +
         "click frmZOLRestart.cmdNo\n");
    disk.Put(kCpt, File(kCpt) + "  0.1");
    disk.SetReadOnly("/soundings");
    before = disk.Files();
    At("heal", [this] { disk.SetReadOnly(""); });
    At("back", [this] {
      EXPECT_EQ(disk.Files(), before);
      EXPECT_FALSE(frmConeSettings.Visible);
      EXPECT_TRUE(StartUp.Visible);
    });
  }
  std::map<std::string, std::string> before;
};

TEST(RefusedResume, GivenUpLeadsBackToTheStartScreenAndIsResumedAtOnce) {
  Refused scenario;
  scenario.Play(ScriptBack() + ScriptToRefusal().substr(ScriptToPanel().find("click")) +
                R"(file cancel
answer cancel "NO OTHER FOLDER WAS CHOSEN."
answer ok "THE LAST SOUNDING WAS NOT RESUMED."
rig test heal
)" + ScriptToPanel() +
                ScriptThroughMending() + Push("0.2", "0.400 m") + ScriptToEnd());
  ExpectCptDepths(scenario, 20, 20);
  EXPECT_EQ(scenario.File(kTemporary), "DONE\r\n");
  EXPECT_EQ(FilesLike(scenario, "(2)"), 0U);
}

TEST(RefusedResume, GivenUpIsFollowedByANewSoundingOfItsOwn) {
  Refused scenario;
  const std::string unfinished = scenario.File(kTemporary);
  scenario.Play(ScriptBack() + "rig test heal\n" +
                ScriptAgain("answer ok \"THE LAST SOUNDING WAS NOT FINISHED: "
                            "/soundings/S1.cpt\"\n") +
                Push("0.2", "0.200 m") + ScriptToEnd());
  const Texts lines = LinesOf(scenario.File("/soundings/S2.cpt"));
  EXPECT_EQ(lines.size(), kCptHeader + 10);
  EXPECT_EQ(lines[15], LinesOf(scenario.File(kCpt))[15]) << "the same columns";
  EXPECT_EQ(scenario.File(kTemporary), "DONE\r\n");
  EXPECT_EQ(scenario.File(kKeptBeside), unfinished);
}

TEST(RefusedResume, OfACopyThatIsNoneAnyMoreLeadsBackToo) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + Push("0.2", "0.200 m") + ScriptToSuspend() +
                "click frmZOLRestart.cmdNo\n");
  scenario.At("done", [&] { scenario.disk.Put(kTemporary, "DONE\r\n"); });
  scenario.Play(ScriptToPanel() + R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
rig test done
click frmConeSettings.cmdClose
answer ok "THE LAST SOUNDING CANNOT BE RESUMED.  TemporaryData.txt HAS CHANGED"
expect StartUp.cmdResume enabled
click StartUp.cmdResume
answer ok "LAST SOUNDING COMPLETED.  CANNOT RESTART."
click StartUp.cmdExit
)");
}

TEST(RefusedResume, TakesTheTimeMarksAlongToAnotherFolder) {
  ScenarioSetup setup;
  setup.settings = {{setting::kLumenProbePresent, "1"}, {setting::kVideoOverlaySerialPort, "0"}};
  Scenario scenario(setup);
  scenario.Play(ScriptToRecording() + Push("0.2", "0.200 m") + ScriptToSuspend() +
                "click frmZOLRestart.cmdNo\n");
  const std::string marks = scenario.File("/soundings/S1.tim");
  scenario.disk.MakeFolder("/other");
  scenario.disk.SetReadOnly("/soundings");
  scenario.Play(ScriptToRefusal() + R"(file /other/MOVED.cpt
answer ok "THE SOUNDING FILE WAS MENDED FROM THE TEMPORARY DATA."
screen Main
wait 5
)" + Push("0.2", "0.400 m") +
                ScriptToEnd());
  EXPECT_EQ(scenario.File("/soundings/S1.tim"), marks);
  const std::string moved = scenario.File("/other/MOVED.tim");
  EXPECT_TRUE(moved.starts_with(marks));
  EXPECT_GT(LinesOf(moved).size(), LinesOf(marks).size()) << "it goes on";
}

// As many rows as there is room for, and more.

/// A recovery copy with so many rows, all like the last one of the sounding but for their depths.
std::string WithRows(const std::string& temporary, int rows) {
  const Texts lines = LinesOf(temporary);
  std::string text;
  for (std::size_t i = 0; i < kTemporaryHeader; ++i) text += lines[i] + "\r\n";
  const std::string rest = lines.back().substr(7);
  for (int row = 1; row <= rows; ++row) {
    const std::string hundredths = PlainNumber(1000 + 2 * row % 100).substr(2);
    const std::string depth = PlainNumber(2 * row / 100) + "." + hundredths;
    text += "\"" + std::string(6 - depth.size(), ' ') + depth + rest + "\r\n";
  }
  return text;
}

class ResumedRows : public testing::TestWithParam<int> {};

TEST_P(ResumedRows, AreTakenUpAsFarAsThereIsRoomAndEndWhole) {
  constexpr int kRoom = 10'000;
  Scenario scenario;
  scenario.Play(ScriptToRecording() + Push("0.2", "0.200 m") + ScriptToSuspend() +
                "click frmZOLRestart.cmdNo\n");
  const std::string copy = WithRows(scenario.File(kTemporary), GetParam());
  const bool is_too_long = GetParam() > kRoom;
  scenario.disk.Put(kTemporary, copy);
  std::string at_resume;
  std::string copy_at_resume;
  scenario.At("look", [&] {
    at_resume = scenario.File(kCpt);
    copy_at_resume = scenario.File(kTemporary);
  });
  const std::string left_out =
      "answer ok \"PART OF THE LAST SOUNDING'S TEMPORARY DATA CANNOT BE READ AND IS LEFT OUT.  "
      "WHEN THE SOUNDING IS RESUMED, THE DAMAGED FILE IS KEPT BESIDE.  LINE 10018: THERE IS ROOM "
      "FOR 10000 ROWS\"\n";
  scenario.Play("screen StartUp\nclick StartUp.cmdResume\n" + (is_too_long ? left_out : "") +
                R"(expect StartUp.lblLastSoundingDepth "200.00 m"
)" + ScriptThroughMending() +
                R"(rig test look
expect Main.lblDepth "200.000 m"
rig push 0.1
answer ok "THE SOUNDING HOLDS 10000 ROWS"
expect Main.lblDepth "200.100 m" 30
wait 2
)" + ScriptToEnd());
  EXPECT_TRUE(copy_at_resume == WithRows(copy, kRoom));
  EXPECT_EQ(scenario.Has(kKeptBeside), is_too_long);
  if (is_too_long) {
    EXPECT_TRUE(scenario.File(kKeptBeside) == copy);
  }
  EXPECT_EQ(LinesOf(at_resume).size(), kCptHeader + kRoom - kDelay);
  EXPECT_TRUE(scenario.File(kCpt).starts_with(at_resume));
  ExpectCptDepths(scenario, 20, kRoom);
  EXPECT_EQ(scenario.File(kTemporary), "DONE\r\n");
}

INSTANTIATE_TEST_SUITE_P(NearTheRoom, ResumedRows, testing::Values(10'000, 10'001, 10'050));

}  // namespace
}  // namespace penlog
