#include "core/settings_file.h"

#include <gtest/gtest.h>

#include "core/settings_check.h"
#include "platform/files.h"
#include "tests/core/settings_world.h"

namespace penlog {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kIncompatible =
    "Incompatible System Setup Values Detected.  Press OK To Upgrade System Setup Values.";

const Texts kUpgradeMessages = {
    kIncompatible,
    kIncompatible,
    "Upgrading System Setup Values (ADD-ON MODULES).",
    "Upgrading System Setup Values (SERIAL PORTS).",
    "Upgrading System Setup Values (ASCII FORMAT).",
    "Upgrading System Setup Values (Tip Configuration Options).",
    "Upgrading System Setup Values (GPS SERIAL PORT).",
    "Upgrading System Setup Values (KQ OVERLAY).",
    "Upgrading System Setup Values (DEPTH SIGNIFICANT DIGITS).",
};

/// Messages from upgrade stage `first` (1 to 9) on.
Texts MessagesFrom(std::size_t first) {
  return {kUpgradeMessages.begin() + static_cast<std::ptrdiff_t>(first) - 1,
          kUpgradeMessages.end()};
}

class SettingsFile : public ::testing::Test {
 protected:
  void Load(std::size_t values) {
    world.PutSetup(Lines(SampleValues(), values));
    LoadSystemSetup();
  }
  SettingsWorld world;
};

TEST_F(SettingsFile, OfSixtyTwoValuesIsTakenWhole) {
  Load(62);
  EXPECT_EQ(world.boxes.texts, Texts{});
  EXPECT_EQ(settings.SetupUpgraded, 0);
  EXPECT_EQ(channels.ChannelUnits(1), 2);
  EXPECT_EQ(channels.ChannelUnits(18), 1);
  EXPECT_EQ(settings.CompanyName, "Ground Survey Ltd.");
  EXPECT_EQ(settings.DepthResolution, 0.01F);
  EXPECT_EQ(settings.DepthStep, 0.05F);
  EXPECT_EQ(settings.LumenProbePresent, 2);
  EXPECT_EQ(settings.DepthCounterType, 1);
  EXPECT_EQ(settings.PressureSwitchPresent, 1);
  EXPECT_EQ(settings.DepthFormat, 1);
  EXPECT_EQ(settings.DepthUnits, 1);
  EXPECT_EQ(settings.PPGraphDefault, 1);
  EXPECT_EQ(settings.CombinePPPlots, 1);
  EXPECT_EQ(settings.QueryForPP, 1);
  EXPECT_EQ(settings.QuitsActive, 0);
  EXPECT_EQ(settings.TipPlotValues, 0);
  EXPECT_EQ(settings.Language, 1);
  EXPECT_EQ(settings.FileNaming, 2);
  EXPECT_EQ(settings.PrintMode, 0);
  EXPECT_EQ(settings.EncoderDirection, 1);
  EXPECT_EQ(settings.Gridlines, 0);
  EXPECT_EQ(settings.AutoEnhanceSeismic, 5);
  EXPECT_EQ(settings.FilterSeismic, 6);
  EXPECT_EQ(settings.DualAxisSeismic, 7);
  EXPECT_EQ(settings.MirrorSeismic, 1);
  EXPECT_EQ(settings.ConeSerialPort, 3);
  EXPECT_EQ(settings.TruckInterfaceSerialPort, 4);
  EXPECT_EQ(channels.ChannelUnits(21), 1);
  EXPECT_EQ(channels.ChannelUnits(30), 1);
  EXPECT_EQ(settings.DiscoverAddOnModules, 1);
  EXPECT_EQ(settings.ASCIIOutSerialPort, 9);
  EXPECT_EQ(settings.VideoOverlaySerialPort, 10);
  EXPECT_EQ(settings.ASCIIOutFormat, 4);
  EXPECT_EQ(settings.TipConfiguration, 1);
  EXPECT_EQ(settings.TipDiameter, 113);
  EXPECT_EQ(settings.GPSSerialPort, 11);
  EXPECT_EQ(settings.LumenProbeOverlay, 3);
  EXPECT_EQ(settings.DepthSignificantDigits, 2);
}

/// Every position with a number of its own; position 19 is the company's name.
std::vector<std::string> NumberedValues() {
  std::vector<std::string> values;
  for (int position = 1; position <= 62; ++position) values.push_back(std::to_string(position));
  values[18] = "\"19\"";
  return values;
}

TEST_F(SettingsFile, GivesEachPositionItsSetting) {
  world.PutSetup(Lines(NumberedValues(), 62));
  LoadSystemSetup();
  const SettingsState& s = settings;
  for (int channel = 1; channel <= 18; ++channel) {
    EXPECT_EQ(channels.ChannelUnits(channel), channel);
  }
  EXPECT_EQ(s.CompanyName, "19");
  EXPECT_EQ(s.DepthResolution, 20.0F);
  EXPECT_EQ(s.DepthStep, 21.0F);
  const std::int16_t selections[] = {
      s.LumenProbePresent,  s.DepthCounterType, s.PressureSwitchPresent,
      s.DepthFormat,        s.DepthUnits,       s.PPGraphDefault,
      s.CombinePPPlots,     s.QueryForPP,       s.QuitsActive,
      s.TipPlotValues,      s.Language,         s.FileNaming,
      s.PrintMode,          s.EncoderDirection, s.Gridlines,
      s.AutoEnhanceSeismic, s.FilterSeismic,    s.DualAxisSeismic,
      s.MirrorSeismic,      s.ConeSerialPort,   s.TruckInterfaceSerialPort};
  int position = 22;
  for (const std::int16_t selection : selections) EXPECT_EQ(selection, position++);
  for (int channel = 21; channel <= 30; ++channel) {
    EXPECT_EQ(channels.ChannelUnits(channel), channel + 23);
  }
  const std::int16_t last[] = {
      s.DiscoverAddOnModules, s.ASCIIOutSerialPort, s.VideoOverlaySerialPort,
      s.ASCIIOutFormat,       s.TipConfiguration,   s.TipDiameter,
      s.GPSSerialPort,        s.LumenProbeOverlay,  s.DepthSignificantDigits};
  position = 54;
  for (const std::int16_t selection : last) EXPECT_EQ(selection, position++);
}

TEST_F(SettingsFile, SavedHasEachSettingAtItsPosition) {
  world.PutSetup(Lines(NumberedValues(), 62));
  LoadSystemSetup();
  settings.CalibratorSerialPort = 43;
  SaveKQSettings();
  EXPECT_EQ(world.Setup(), Lines(NumberedValues(), 62));
}

TEST_F(SettingsFile, RewrittenHasEachSettingAtItsPosition) {
  world.PutSetup(Lines(NumberedValues(), 62));
  LoadSystemSetup();
  settings.CalibratorSerialPort = 43;
  settings.SetupUpgraded = kTrue;
  RewriteUpgradedSetup();
  auto expected = NumberedValues();
  expected[42] = "60";  // the GPS port stands in the calibrator's place, and not at its own
  expected.erase(expected.begin() + 59);
  EXPECT_EQ(world.Setup(), Lines(expected, 61));
}

TEST_F(SettingsFile, HasNoLoaderForTheCalibratorPort) {
  Load(62);
  EXPECT_EQ(settings.CalibratorSerialPort, 0);
}

TEST_F(SettingsFile, OverwritesTheGPSPortOfPosition43WithThatOfPosition60) {
  Load(62);
  EXPECT_EQ(settings.GPSSerialPort, 11) << "position 43 holds 8";
}

TEST_F(SettingsFile, LeavesUnitsOf19And20Alone) {
  channels.ChannelPresent(19) = channels.ChannelPresent(20) = kTrue;
  Load(62);
  EXPECT_EQ(channels.ChannelUnits(19), 0);
  EXPECT_EQ(channels.ChannelUnits(20), 0);
  EXPECT_EQ(settings.SetupUpgraded, 0);
}

TEST_F(SettingsFile, OfThirtyNineValuesGoesThroughAllNineStagesWithABoxEach) {
  Load(39);
  EXPECT_EQ(world.boxes.texts, kUpgradeMessages);
  EXPECT_EQ(settings.SetupUpgraded, kTrue);
  EXPECT_EQ(settings.ConeSerialPort, 5) << "the value at position 37";
  EXPECT_EQ(settings.TruckInterfaceSerialPort, 6) << "38";
  EXPECT_EQ(settings.AutoEnhanceSeismic, 1);
  EXPECT_EQ(settings.FilterSeismic, 1);
  EXPECT_EQ(settings.DualAxisSeismic, 1);
  EXPECT_EQ(settings.MirrorSeismic, 0);
  EXPECT_EQ(channels.ChannelUnits(21), 0);
  EXPECT_EQ(settings.DiscoverAddOnModules, 0);
  EXPECT_EQ(settings.ASCIIOutSerialPort, 0);
  EXPECT_EQ(settings.VideoOverlaySerialPort, 0);
  EXPECT_EQ(settings.ASCIIOutFormat, 1);
  EXPECT_EQ(settings.TipConfiguration, 0);
  EXPECT_EQ(settings.TipDiameter, 0);
  EXPECT_EQ(settings.GPSSerialPort, 0) << "taken from position 39, then stage 7";
  EXPECT_EQ(settings.LumenProbeOverlay, 2) << "stage 9 sets the overlay";
}

TEST_F(SettingsFile, StageNineLeavesTheDigitsAsTheyWere) {
  settings.DepthSignificantDigits = 3;
  Load(61);
  EXPECT_EQ(settings.DepthSignificantDigits, 3);
  EXPECT_EQ(settings.LumenProbeOverlay, 2);
}

TEST_F(SettingsFile, RaisesTheStagesBehindItsLastValue) {
  struct Row {
    std::size_t values;
    std::size_t first_stage;  // 10: none
  };
  for (const Row& row : {Row{39, 1}, Row{43, 2}, Row{53, 3}, Row{54, 4}, Row{56, 5}, Row{57, 6},
                         Row{59, 7}, Row{60, 8}, Row{61, 9}, Row{62, 10}}) {
    world.boxes.texts.clear();
    Load(row.values);
    EXPECT_EQ(world.boxes.texts, MessagesFrom(row.first_stage)) << row.values << " values";
    EXPECT_EQ(settings.SetupUpgraded, row.first_stage < 10 ? kTrue : kFalse) << row.values;
    EXPECT_EQ(settings.SettingsDamaged, kFalse) << row.values;
  }
}

TEST_F(SettingsFile, CutInsideAStageIsToldWithItsLineAndGoesOnWithFirstRunValues) {
  for (std::size_t values = 0; values < 62; ++values) {
    const bool whole_layout =
        values == 39 || values == 43 || (values >= 53 && values != 55 && values != 58);
    if (whole_layout) continue;
    world.boxes.texts.clear();
    settings = SettingsState{};
    Load(values);
    ASSERT_EQ(world.boxes.texts.size(), 1U) << values;
    const std::string line = std::to_string(values + 1);
    EXPECT_EQ(
        world.boxes.texts[0].find("System Setup Values.txt ends too early at line " + line + "."),
        0U)
        << world.boxes.texts[0];
    EXPECT_EQ(settings.SettingsDamaged, kTrue) << values;
    EXPECT_EQ(settings.SetupUpgraded, kFalse) << values;
    EXPECT_EQ(settings.DepthResolution, values < 20 ? 0.005F : 0.01F) << values;
    EXPECT_EQ(settings.DepthSignificantDigits, 3) << values;
  }
}

TEST_F(SettingsFile, WithABadValueNamesFileLineAndWhatWasFound) {
  struct Row {
    std::size_t line;
    const char* value;
    const char* found;
  };
  for (const Row& row : {Row{1, "two",
                             "System Setup Values.txt, line 1: a whole number was "
                             "expected, found \"two\""},
                         Row{20, "abc",
                             "System Setup Values.txt, line 20: a number was expected, "
                             "found \"abc\""},
                         Row{22, "1.5",
                             "System Setup Values.txt, line 22: a whole number was "
                             "expected, found \"1.5\""},
                         Row{42, "70000",
                             "System Setup Values.txt, line 42: a number from -32768 "
                             "to 32767 was expected, found \"70000\""},
                         Row{61, "\x01\xff", "System Setup Values.txt, line 61: "}}) {
    world.boxes.texts.clear();
    auto values = SampleValues();
    values[row.line - 1] = row.value;
    world.PutSetup(Lines(values, 62));
    LoadSystemSetup();
    ASSERT_EQ(world.boxes.texts.size(), 1U) << row.value;
    EXPECT_EQ(world.boxes.texts[0].find(row.found), 0U) << world.boxes.texts[0];
    EXPECT_EQ(channels.ChannelUnits(2), 1) << "the console has what it needs to go on";
  }
}

TEST_F(SettingsFile, OfBinaryGarbageIsToldOnceAndGivesFirstRunSettings) {
  std::string garbage;
  for (int i = 0; i < 5000; ++i) garbage += static_cast<char>((i * 7919 + 13) % 256);
  world.PutSetup(garbage);
  LoadSystemSetup();
  EXPECT_EQ(world.boxes.texts.size(), 1U);
  EXPECT_EQ(settings.DepthStep, 0.02F);
  EXPECT_EQ(settings.QuitsActive, 1);
}

TEST_F(SettingsFile, ThatIsMissingIsToldAndGivesFirstRunSettings) {
  LoadSystemSetup();
  EXPECT_EQ(world.boxes.texts,
            Texts{"/data/System Setup Values.txt IS MISSING.  THE SETTINGS ARE THOSE OF A FIRST "
                  "RUN."});
  EXPECT_EQ(settings.DepthStep, 0.02F);
  EXPECT_FALSE(world.disk.FileExists(world.SetupPath()));
}

TEST_F(SettingsFile, ThatIsDamagedIsNotRewrittenByTheLoad) {
  Load(41);
  const std::string before = world.Setup();
  channels.ChannelPresent(22) = kTrue;
  channels.ChannelUnits(22) = 0;
  LoadSystemSetup();
  RewriteUpgradedSetup();
  EXPECT_EQ(world.Setup(), before);
}

TEST_F(SettingsFile, ThatIsDamagedIsKeptBesideItselfWhenSettingsAreSaved) {
  Load(41);
  const std::string damaged = world.Setup();
  SaveKQSettings();
  EXPECT_EQ(world.disk.Read("/data/System Setup Values (damaged).txt"), damaged);
  world.boxes.texts.clear();
  LoadSystemSetup();
  EXPECT_EQ(world.boxes.texts, Texts{});
  SaveKQSettings();
  EXPECT_FALSE(world.disk.FileExists("/data/System Setup Values (damaged) (2).txt"));
}

TEST_F(SettingsFile, UpgradedIsRewrittenWithSixtyOneValues) {
  Load(61);
  settings.CalibratorSerialPort = 8;
  RewriteUpgradedSetup();
  auto expected = SampleValues();
  expected[42] = "11";  // GPSSerialPort in place of the calibrator's
  expected[60] = "2";   // stage 9
  expected[61] = "0";   // left as it was
  expected.erase(expected.begin() + 59);
  EXPECT_EQ(world.Setup(), Lines(expected, 61));
}

TEST_F(SettingsFile, NotUpgradedIsNotRewritten) {
  Load(62);
  const std::string before = world.Setup();
  RewriteUpgradedSetup();
  EXPECT_EQ(world.Setup(), before);
}

TEST_F(SettingsFile, Of61ValuesLeftByTheRewriteTriggersStageNineAndTheRewriteAgain) {
  Load(60);
  RewriteUpgradedSetup();
  const std::string first = world.Setup();
  const auto overlay = settings.LumenProbeOverlay;
  const auto digits = settings.DepthSignificantDigits;
  for (int start = 0; start < 2; ++start) {
    world.boxes.texts.clear();
    settings = SettingsState{};
    LoadSystemSetup();
    EXPECT_EQ(world.boxes.texts, MessagesFrom(9)) << "start " << start;
    EXPECT_EQ(settings.SetupUpgraded, kTrue);
    if (start == 0) {
      EXPECT_EQ(settings.GPSSerialPort, overlay) << "61 moved up to 60";
      EXPECT_EQ(digits, 0);
    }
    RewriteUpgradedSetup();
    EXPECT_EQ(std::count(first.begin(), first.end(), '\n'), 61);
  }
  EXPECT_NE(world.Setup(), first);
}

TEST_F(SettingsFile, PutsTheOverlayInTheGPSPortAndTheDigitsInTheOverlayAfterARewrite) {
  Load(62);
  settings.LumenProbeOverlay = 6;
  settings.DepthSignificantDigits = 3;
  settings.SetupUpgraded = kTrue;
  RewriteUpgradedSetup();
  const std::string values = world.Setup();
  settings = SettingsState{};
  const std::string tail = "6\r\n3\r\n";  // at 60 and 61; stage 9 then takes the overlay back
  EXPECT_EQ(values.substr(values.size() - tail.size()), tail);
  LoadSystemSetup();
  EXPECT_EQ(settings.GPSSerialPort, 6);
  EXPECT_EQ(settings.LumenProbeOverlay, 2);
}

TEST_F(SettingsFile, PresentChannelWithAStoredUnitOf0ComesUpAsOption1) {
  channels.ChannelPresent(5) = kTrue;
  auto values = SampleValues();
  values[4] = "0";
  values[5] = "0";  // channel 6 is not present
  world.PutSetup(Lines(values, 62));
  LoadSystemSetup();
  EXPECT_EQ(channels.ChannelUnits(5), 1);
  EXPECT_EQ(channels.ChannelUnits(6), 0);
  EXPECT_EQ(settings.SetupUpgraded, kTrue);
}

TEST_F(SettingsFile, SavedHasAll62ValuesWithTheCalibratorPortAt43) {
  Load(62);
  settings.CalibratorSerialPort = 8;
  SaveKQSettings();
  EXPECT_EQ(world.Setup(), Lines(SampleValues(), 62));
}

TEST_F(SettingsFile, BothSaversWriteTheSame) {
  Load(62);
  SaveSystemSetup();
  const std::string saved = world.Setup();
  SaveKQSettings();
  EXPECT_EQ(world.Setup(), saved);
}

TEST_F(SettingsFile, ThatCannotBeSavedIsToldAndTheOldOneStands) {
  Load(62);
  const std::string before = world.Setup();
  settings.ConeSerialPort = 77;
  world.disk.SetRoom(100);
  SaveKQSettings();
  ASSERT_EQ(world.boxes.texts.size(), 1U);
  EXPECT_EQ(world.boxes.texts[0].find("THE SETTINGS COULD NOT BE SAVED."), 0U);
  EXPECT_EQ(world.Setup(), before);
}

TEST_F(SettingsFile, IsBackedUpOnce) {
  world.PutSetup("first");
  BackUpFirstSetup();
  EXPECT_EQ(world.disk.Read("/data/System Setup Values.old"), "first");
}

TEST_F(SettingsFile, BackupIsNotOverwrittenWhenItExists) {
  world.disk.Put("/data/System Setup Values.old", "first");
  world.PutSetup("second");
  BackUpFirstSetup();
  EXPECT_EQ(world.disk.Read("/data/System Setup Values.old"), "first");
}

TEST_F(SettingsFile, BackupThatCannotBeWrittenIsTold) {
  world.PutSetup(Lines(SampleValues(), 62));
  world.disk.SetRoom(10);
  BackUpFirstSetup();
  ASSERT_EQ(world.boxes.texts.size(), 1U);
  EXPECT_EQ(world.boxes.texts[0].find("THE SETTINGS COULD NOT BE COPIED."), 0U);
}

TEST_F(SettingsFile, GivesTheBallTipAreaOnlyWhenItHoldsTheTipFields) {
  Load(62);
  EXPECT_EQ(settings.BallTipArea, 10029) << "3.14159 x 56.5 x 56.5 = 10028.7, to the nearest";
  settings = SettingsState{};
  Load(57);
  EXPECT_EQ(settings.BallTipArea, 0);
}

TEST_F(SettingsFile, IsReadWithAnyLineEndAndWindows1252Text) {
  auto values = SampleValues();
  values[18] = "\"B\xF6hm\"";
  std::string text = Lines(values, 62);
  std::erase(text, '\r');
  world.PutSetup(text);
  LoadSystemSetup();
  EXPECT_EQ(world.boxes.texts, Texts{});
  EXPECT_EQ(settings.CompanyName, "B\xC3\xB6hm");
}

}  // namespace
}  // namespace penlog
