// "View Settings.txt" and the menu that writes it.
#include "display/view_settings.h"

#include <gtest/gtest.h>

#include "core/reset_state.h"
#include "core/session.h"
#include "forms/main_form.h"
#include "forms/start_up_form.h"
#include "platform/boxes.h"
#include "platform/files.h"
#include "sounding/sounding_state.h"
#include "support/world.h"

namespace penlog {
namespace {

constexpr char kFile[] = "/data/View Settings.txt";

struct ViewFile : testing::Test {
  ViewFile() {
    ResetState();
    session.DataDirectory = "/data";
    TheDisk().MakeFolder("/data");
    sounding.ConsoleMode = 2;  // what is told is posted
  }
  World world;
};

TEST_F(ViewFile, IsDayWithTonesWithoutOne) {
  LoadViewSettings();
  EXPECT_EQ(ChosenLook(), LookSet::Day);
  EXPECT_EQ(view_settings.AlarmTone, 1);
  EXPECT_FALSE(BoxIsOpen());
}

TEST_F(ViewFile, KeepsWhatWasChosen) {
  Main_mnuNight_Click();
  Main_mnuAlarmTone_Click();
  EXPECT_EQ(ReadFile(kFile), "1\r\n0\r\n");
  EXPECT_TRUE(Main.mnuNight.Checked);
  EXPECT_FALSE(Main.mnuDay.Checked);
  EXPECT_FALSE(Main.mnuAlarmTone.Checked);
  EXPECT_TRUE(StartUp.mnuNight.Checked);
  EXPECT_FALSE(StartUp.mnuDay.Checked);
  EXPECT_FALSE(StartUp.mnuAlarmTone.Checked);
  ChooseLook(LookSet::Day);
  LoadViewSettings();
  EXPECT_EQ(ChosenLook(), LookSet::Night);
  EXPECT_EQ(view_settings.AlarmTone, 0);
  EXPECT_TRUE(StartUp.mnuNight.Checked) << "also before the console is opened";
  Main_mnuDay_Click();
  EXPECT_EQ(ReadFile(kFile), "0\r\n0\r\n");
  EXPECT_EQ(ChosenLook(), LookSet::Day);
}

TEST_F(ViewFile, ADamagedOneIsToldAndTheDayIsShown) {
  for (const char* text : {"", "2\r\n1\r\n", "1\r\n", "night\r\n", "1\r\n7\r\n"}) {
    ResetBoxes();
    ReplaceFile(kFile, text);
    LoadViewSettings();
    EXPECT_EQ(ChosenLook(), LookSet::Day) << text;
    EXPECT_EQ(view_settings.AlarmTone, 1) << text;
    ASSERT_NE(FrontBox(), nullptr) << text;
    EXPECT_EQ(FrontBox()->text.rfind("THE VIEW SETTINGS COULD NOT BE READ", 0), 0u);
  }
}

TEST_F(ViewFile, AFullDiskIsToldAndTheChoiceHolds) {
  world.disk.before = [](std::string_view, const std::string&) {
    throw RuntimeFault("No space left on device");
  };
  Main_mnuNight_Click();
  world.disk.before = nullptr;
  EXPECT_EQ(ChosenLook(), LookSet::Night);
  ASSERT_NE(FrontBox(), nullptr);
  EXPECT_EQ(FrontBox()->text.rfind("THE VIEW SETTINGS COULD NOT BE SAVED", 0), 0u);
}

}  // namespace
}  // namespace penlog
