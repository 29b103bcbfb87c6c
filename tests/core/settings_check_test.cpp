#include "core/settings_check.h"

#include <gtest/gtest.h>

#include "core/settings_file.h"
#include "tests/core/settings_world.h"

namespace penlog {
namespace {

class SettingsCheck : public ::testing::Test {
 protected:
  SettingsCheck() {
    settings.DepthResolution = 0.005F;
    settings.DepthStep = 0.02F;
  }
  SettingsWorld world;
};

TEST_F(SettingsCheck, StepBaseIsTheResolutionAtLeastFiveMillimetres) {
  struct Row {
    float resolution;
    float step;
    float base;
    int counts;
    int marks;
  };
  for (const Row& row : {Row{0.005F, 0.02F, 0.005F, 4, 1}, Row{0.01F, 0.02F, 0.01F, 2, 1},
                         Row{0.001F, 0.02F, 0.005F, 20, 5}, Row{0.02F, 0.06F, 0.02F, 3, 1},
                         Row{0.0025F, 0.01F, 0.005F, 4, 2}, Row{0.00125F, 0.05F, 0.005F, 40, 4}}) {
    settings.DepthResolution = row.resolution;
    settings.DepthStep = row.step;
    DeriveSettings();
    EXPECT_EQ(settings.DepthStepResolution, row.base) << row.resolution;
    EXPECT_EQ(settings.DepthStepCounts, row.counts) << row.resolution;
    EXPECT_EQ(settings.PictureStepCounts, row.marks) << row.resolution;
  }
}

TEST_F(SettingsCheck, ResolutionOf0005OrLessGives0005AsBaseWhileCountsDivideByTheFilesValue) {
  settings.DepthResolution = 0.004F;
  settings.DepthStep = 0.02F;
  DeriveSettings();
  EXPECT_EQ(settings.DepthStepResolution, 0.005F);
  EXPECT_EQ(settings.DepthStepCounts, 5);
}

TEST_F(SettingsCheck, EverySessionStartsWithAConicalTip) {
  settings.TipConfiguration = 1;
  settings.TipDiameter = 113;
  settings.BallTipArea = 10029;
  DeriveSettings();
  EXPECT_EQ(settings.TipConfiguration, 0);
  EXPECT_EQ(settings.TipDiameter, 0);
}

TEST_F(SettingsCheck, FindsNothingInFirstRunSettings) {
  LoadSystemSetup();
  for (int channel = 1; channel <= 30; ++channel) channels.UnitCount(channel) = 2;
  world.boxes.texts.clear();
  CheckSettings();
  EXPECT_TRUE(world.boxes.texts.empty());
}

TEST_F(SettingsCheck, DepthThatCannotBeCountedIsToldAndReplaced) {
  struct Row {
    float resolution;
    float step;
  };
  for (const Row& row : {Row{0, 0.02F}, Row{-0.005F, 0.02F}, Row{0.005F, 0}, Row{0.005F, -1},
                         Row{0.05F, 0.02F}, Row{1e-30F, 0.02F}, Row{0, 0}}) {
    settings.DepthResolution = row.resolution;
    settings.DepthStep = row.step;
    world.boxes.texts.clear();
    CheckSettings();
    DeriveSettings();
    EXPECT_FALSE(world.boxes.texts.empty()) << row.resolution << " " << row.step;
    EXPECT_GE(settings.DepthStepCounts, 1) << row.resolution << " " << row.step;
    EXPECT_GT(settings.DepthResolution, 0);
  }
}

TEST_F(SettingsCheck, StepThatIsNoMultipleIsToldAndKept) {
  settings.DepthResolution = 0.02F;
  settings.DepthStep = 0.05F;
  CheckSettings();
  EXPECT_EQ(world.boxes.texts,
            std::vector<std::string>{"Depth Step must be a multiple of the depth resolution."});
  EXPECT_EQ(settings.DepthStep, 0.05F);
  world.boxes.texts.clear();
  settings.DepthStep = 0.06F;
  CheckSettings();
  EXPECT_TRUE(world.boxes.texts.empty());
}

TEST_F(SettingsCheck, PortOutside0To255IsToldAndNotUsed) {
  settings.ConeSerialPort = 256;
  settings.TruckInterfaceSerialPort = -3;
  settings.ASCIIOutSerialPort = 255;
  CheckSettings();
  EXPECT_EQ(world.boxes.texts.size(), 2U);
  EXPECT_EQ(settings.ConeSerialPort, 0);
  EXPECT_EQ(settings.TruckInterfaceSerialPort, 0);
  EXPECT_EQ(settings.ASCIIOutSerialPort, 255);
}

TEST_F(SettingsCheck, UnitOptionThatTheChannelLacksBecomesOption1) {
  for (int channel = 1; channel <= 30; ++channel) channels.UnitCount(channel) = 2;
  channels.ChannelPresent(3) = kTrue;
  channels.ChannelUnits(3) = 3;
  channels.ChannelUnits(4) = -1;  // not present: put right without a word
  channels.ChannelUnits(5) = 2;
  CheckSettings();
  EXPECT_EQ(
      world.boxes.texts,
      std::vector<std::string>{"Unit option 3 of channel 3 does not exist.  Option 1 is used."});
  EXPECT_EQ(channels.ChannelUnits(3), 1);
  EXPECT_EQ(channels.ChannelUnits(4), 1);
  EXPECT_EQ(channels.ChannelUnits(5), 2);
}

TEST_F(SettingsCheck, LanguageThatIsNotOfferedBecomesEnglish) {
  for (const int language : {2, -1, 11, 32000}) {
    world.boxes.texts.clear();
    settings.Language = static_cast<std::int16_t>(language);
    CheckSettings();
    EXPECT_EQ(settings.Language, 0);
    EXPECT_EQ(world.boxes.texts.size(), 1U);
  }
  settings.Language = 1;
  CheckSettings();
  EXPECT_EQ(settings.Language, 1);
}

TEST_F(SettingsCheck, LoadedBallTipAreaIsToTheNearestSquareMillimetre) {
  struct Row {
    std::int16_t diameter;
    int area;
  };
  for (const Row& row : {Row{0, 0}, Row{1, 1}, Row{78, 4778}, Row{80, 5027}, Row{113, 10029}}) {
    settings.TipDiameter = row.diameter;
    EXPECT_EQ(LoadedBallTipArea(), row.area) << row.diameter;
  }
}

}  // namespace
}  // namespace penlog
