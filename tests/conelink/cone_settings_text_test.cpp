#include "conelink/cone_settings_text.h"

#include <gtest/gtest.h>

#include "conelink/link_world.h"

namespace penlog {
namespace {

class ReportPage : public ::testing::Test {
 protected:
  ReportPage() {
    LinkWorld::ClearState();
    cone.ConeId = "DCS0042";
    cone.FirmwareVersion = 3.2f;
    cone.MemorySize = 128;
    cone.ClockFrequency = 19200;
    cone.CreationDate = "150119";
    cone.LastCalibrationDate = "200319";
    cone.DistancePushed = 1234;
    cone.ModulePresent[0] = kTrue;
  }
  ~ReportPage() override { LinkWorld::ClearState(); }

  static void Put(int channel, const std::string& name, float full_scale, std::int16_t unit = 0) {
    channels.ChannelPresent(channel) = kTrue;
    channels.ChannelModule(channel) = unit;
    channels.ChannelLabel(1, channel) = name;
    channels.ChannelFullScale(channel) = full_scale;
    channels.UnitCount(channel) = 2;
    channels.ChannelUnits(channel) = 1;
    channels.UnitLabel(1, channel) = "kPa";
    channels.UnitFormat(1, channel) = "#####0";
    channels.UnitFactor(1, channel) = 1;
    channels.UnitLabel(2, channel) = "bar";
    channels.UnitFormat(2, channel) = "###0.0";
    channels.UnitFactor(2, channel) = 0.01f;
  }
};

constexpr char kConeHeader[] =
    "Cone #: DCS0042\n"
    "Firmware Version: 3.2            Creation Date: 150119\n"
    "Memory Size: 128                 Last Calibration Date: 200319\n"
    "Clock Frequency: 19200           Distance Pushed Since Last Calibration: 1234\n"
    "\n"
    "Channels Available\n";

TEST_F(ReportPage, ConeWithoutChannelsHasItsHeaderAlone) {
  EXPECT_EQ(ConeSettingsReport(), kConeHeader);
}

TEST_F(ReportPage, EachChannelOfTheConeHasALineInFiveColumns) {
  Put(1, "Tip", 100000);
  Put(2, "Sleeve", 1000);
  channels.ChannelUnits(2) = 2;
  channels.ChannelDistance(2) = 0.085f;
  channels.ChannelArea(1) = 1000;
  channels.ChannelArea(2) = 15000;
  channels.SubtractChannel(2) = 1;
  EXPECT_EQ(ConeSettingsReport(),
            std::string(kConeHeader) +
                "Tip          100000 kPa   0 m from tip      1000 mm^2 Area   No Subtraction\n"
                "Sleeve       10.0 bar     0.085 m from tip  15000 mm^2 Area   Sub Channel 1\n");
}

TEST_F(ReportPage, LongEntryMovesItsColumnForAllLinesByTwoBlanks) {
  Put(1, "Tip", 5);
  Put(30, "A Very Long Name", 7);
  EXPECT_EQ(ConeSettingsReport(),
            std::string(kConeHeader) +
                "Tip               5 kPa   0 m from tip    0 mm^2 Area        No Subtraction\n"
                "A Very Long Name  7 kPa   0 m from tip    0 mm^2 Area        No Subtraction\n");
}

TEST_F(ReportPage, ChannelWithoutAFileShowsItsNumberAndTheBareFullScale) {
  channels.ChannelPresent(12) = kTrue;
  channels.ChannelFullScale(12) = 2.5f;
  EXPECT_EQ(ConeSettingsReport(),
            std::string(kConeHeader) +
                "Channel 12   2.5          0 m from tip    0 mm^2 Area        No Subtraction\n");
}

TEST_F(ReportPage, ComputedChannelsNineteenAndTwentyHaveNoLine) {
  Put(19, "Inclination", 15);
  Put(20, "Friction Ratio", 100);
  EXPECT_EQ(ConeSettingsReport(), kConeHeader);
}

TEST_F(ReportPage, EachModuleThatIsPresentFollowsWithItsOwnChannels) {
  Put(23, "Conductivity", 20, 3);
  Put(24, "Foreign", 20, 4);  // of a module that is not used
  cone.ModulePresent[3] = kTrue;
  cone.ModuleNumber[3] = "MOD0003";
  cone.ModuleFirmware[3] = "M1";
  cone.ModuleMemorySize[3] = 64;
  cone.ModuleClockFrequency[3] = 9600;
  cone.ModuleCreationDate[3] = "170101";
  cone.ModuleCalibrationDate[3] = "180101";
  cone.ModuleDistancePushed[3] = 7;
  EXPECT_EQ(ConeSettingsReport(),
            std::string(kConeHeader) +
                "\n"
                "Module #: MOD0003\n"
                "Firmware Version: M1             Creation Date: 170101\n"
                "Memory Size: 64                  Last Calibration Date: 180101\n"
                "Clock Frequency: 9600            Distance Pushed Since Last Calibration: 7\n"
                "\n"
                "Channels Available\n"
                "Conductivity  20 kPa      0 m from tip    0 mm^2 Area        No Subtraction\n");
}

}  // namespace
}  // namespace penlog
