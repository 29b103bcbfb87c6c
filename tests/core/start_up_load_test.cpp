#include "core/start_up_load.h"

#include <gtest/gtest.h>

#include "core/first_run_data.h"
#include "core/instance_lock.h"
#include "core/languages.h"
#include "core/reset_state.h"
#include "core/settings_file.h"
#include "core/soil_tables.h"
#include "forms/start_up_form.h"
#include "platform/files.h"
#include "tests/core/settings_world.h"

namespace penlog {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kDirectory = "/allusers/PENLOG(KQ)";

class StartUpLoad : public ::testing::Test {
 protected:
  StartUpLoad() { ResetState(); }
  ~StartUpLoad() override { ResetState(); }
  static std::string Path(const std::string& name) { return std::string(kDirectory) + "/" + name; }
  void PutSetup(std::size_t values) {
    world.disk.Put(Path("System Setup Values.txt"), Lines(SampleValues(), values));
  }
  /// A directory in use, but for its settings.
  void LayOut() {
    for (const FirstRunFile& file : FirstRunFiles()) {
      world.disk.Put(Path(std::string(file.name)), std::string(file.content));
    }
  }
  /// What the load makes of 62 values where it rewrites them.
  static std::vector<std::string> Rewritten(std::vector<std::string> values) {
    values[42] = values[59];            // the GPS port stands in the calibrator's place
    values[57] = values[58] = "0";      // conical
    values.erase(values.begin() + 59);  // and not at its own
    return values;
  }
  /// Settings that were read well and cannot work.
  static std::vector<std::string> UnusableValues() {
    auto values = SampleValues();
    values[0] = "99";    // unit of channel 1
    values[1] = "-2";    // of channel 2
    values[19] = "-1";   // resolution
    values[20] = "0";    // step
    values[31] = "7";    // language
    values[40] = "300";  // cone port
    values[41] = "-3";   // truck interface port
    values[54] = "256";  // ASCII output
    values[55] = "999";  // overlay
    values[59] = "256";  // GPS
    return values;
  }
  bool Has(const std::string& name) { return world.disk.FileExists(Path(name)); }
  SettingsWorld world;
};

TEST_F(StartUpLoad, LaysDownAFirstRunWithoutAWord) {
  StartUp_Load();
  EXPECT_EQ(world.boxes.texts, Texts{});
  EXPECT_EQ(session.DataDirectory, kDirectory);
  for (const FirstRunFile& file : FirstRunFiles()) EXPECT_TRUE(Has(std::string(file.name)));
  EXPECT_EQ(settings.DepthStep, 0.02F);
  EXPECT_EQ(settings.DepthStepCounts, 4);
  EXPECT_EQ(settings.PictureStepCounts, 1);
  EXPECT_EQ(channels.ChannelPresent(30), kTrue);
  EXPECT_EQ(settings.LanguageCount, 2);
  EXPECT_NE(soil.FrictionRatioMax, 0);
}

TEST_F(StartUpLoad, OfASecondStartChangesNoFile) {
  StartUp_Load();
  ReleaseInstanceLock();
  const auto files = world.disk.Files();
  ResetState();
  StartUp_Load();
  EXPECT_EQ(world.disk.Files(), files);
  EXPECT_EQ(world.boxes.texts, Texts{});
}

TEST_F(StartUpLoad, SetsFlagsMessagesAndTheTemporaryFile) {
  session.ReadingsAveraged = 1;
  session.CalibrationMode = kTrue;
  session.CalibrationPlaybackOnly = kTrue;
  StartUp_Load();
  EXPECT_EQ(session.ReadingsAveraged, 4);
  EXPECT_EQ(session.CalibrationMode, 0);
  EXPECT_EQ(session.CalibrationPlaybackOnly, 0);
  EXPECT_EQ(session.LastSoundingCompletedMessage, "LAST SOUNDING COMPLETED.  CANNOT RESTART.");
  EXPECT_EQ(session.ConeNotDetectedMessage,
            "Cone not detected.  Plug in a cone and restart the program.");
  EXPECT_EQ(session.SoundingFiles[0], Path("TemporaryData.txt"));
  EXPECT_FALSE(StartUp.lblFeatures.Visible);
  EXPECT_EQ(StartUp.lblVersionNumber.Caption, "Version: 2019.01.17.1");
}

TEST_F(StartUpLoad, ScalesFromAScreenOf800By600) {
  StartUp_Load();
  EXPECT_EQ(session.ScreenScaleX, 1.28F);
  EXPECT_EQ(session.ScreenScaleY, 1.28F);
}

TEST_F(StartUpLoad, LocaleTestUsesATextSoADecimalCommaShows) {
  StartUp_Load();
  EXPECT_EQ(session.CommaDecimal, 0);
  ReleaseInstanceLock();
  world.host.comma_decimal = true;
  StartUp_Load();
  EXPECT_EQ(session.CommaDecimal, 1);
}

TEST_F(StartUpLoad, TakesTheProgramsFolderBelowVersion6) {
  world.host.system_version = 5;
  StartUp_Load();
  EXPECT_EQ(session.DataDirectory, "/program");
  EXPECT_TRUE(world.disk.FileExists("/program/System Setup Values.txt"));
}

TEST_F(StartUpLoad, TakesTheUsersFolderWithoutAllUsersProfile) {
  world.host.all_users = "";
  StartUp_Load();
  EXPECT_EQ(session.DataDirectory, "/user/PENLOG(KQ)");
}

TEST_F(StartUpLoad, BacksUpTheSettingsBeforeItUpgradesThem) {
  world.disk.Put(Path("AvailableLanguages.txt"), "1\r\n\"English\"\r\n");
  PutSetup(61);
  const std::string before = world.disk.Read(Path("System Setup Values.txt"));
  StartUp_Load();
  EXPECT_EQ(world.disk.Read(Path("System Setup Values.old")), before);
  EXPECT_NE(world.disk.Read(Path("System Setup Values.txt")), before);
}

TEST_F(StartUpLoad, RewritesUpgradedSettingsWithTheTipFieldsBackAtZero) {
  LayOut();
  PutSetup(60);
  StartUp_Load();
  auto expected = SampleValues();
  expected[42] = "11";
  expected[57] = expected[58] = "0";
  expected[60] = "2";
  expected[61] = "0";
  expected.erase(expected.begin() + 59);
  EXPECT_EQ(world.disk.Read(Path("System Setup Values.txt")), Lines(expected, 61));
}

TEST_F(StartUpLoad, GivesAKnownChannelWithAStoredUnitOf0Option1AndRewritesTheSettings) {
  LayOut();
  auto values = SampleValues();
  values[4] = "0";
  world.disk.Put(Path("System Setup Values.txt"), Lines(values, 62));
  StartUp_Load();
  EXPECT_EQ(world.boxes.texts, Texts{});
  EXPECT_EQ(channels.ChannelUnits(5), 1);
  EXPECT_EQ(world.disk.Read(Path("System Setup Values.txt")), Lines(Rewritten(SampleValues()), 61));
}

TEST_F(StartUpLoad, KeepsAStoredUnitOf0OfAChannelWithoutAFile) {
  LayOut();
  world.disk.Remove(Path("Channel5.txt"));
  auto values = SampleValues();
  values[4] = "0";
  const std::string before = Lines(values, 62);
  world.disk.Put(Path("System Setup Values.txt"), before);
  StartUp_Load();
  EXPECT_EQ(channels.ChannelUnits(5), 0);
  EXPECT_EQ(world.disk.Read(Path("System Setup Values.txt")), before);
}

TEST_F(StartUpLoad, StartsConicalWhateverTheFileSays) {
  LayOut();
  PutSetup(62);
  StartUp_Load();
  EXPECT_EQ(settings.TipConfiguration, 0);
  EXPECT_EQ(settings.TipDiameter, 0);
  EXPECT_EQ(settings.BallTipArea, 10029);
}

TEST_F(StartUpLoad, TakesThePictureStepFromTheStepBase) {
  LayOut();
  auto values = SampleValues();
  values[19] = "0.001";
  values[20] = "0.02";
  world.disk.Put(Path("System Setup Values.txt"), Lines(values, 62));
  StartUp_Load();
  EXPECT_EQ(settings.PictureStepCounts, 5);
  EXPECT_EQ(settings.DepthStepCounts, 20);
}

TEST_F(StartUpLoad, ReadsTheDissipationRestartCount) {
  struct Row {
    const char* text;
    int count;
  };
  for (const Row& row :
       {Row{"\"3\"\r\n", 3}, Row{"12", 12}, Row{"\"none\"", 0}, Row{"", 0}, Row{"\"99999\"", 0}}) {
    session.DissipationRestartCount = 7;
    world.disk.Put(Path("Dissipation Restart Settings.txt"), row.text);
    StartUp_Load();
    ReleaseInstanceLock();
    EXPECT_EQ(session.DissipationRestartCount, row.count) << row.text;
  }
  world.disk.Remove(Path("Dissipation Restart Settings.txt"));
  session.DissipationRestartCount = 7;
  StartUp_Load();
  EXPECT_EQ(session.DissipationRestartCount, 0);
}

TEST_F(StartUpLoad, ReadsTheWordTableOfTheChosenLanguage) {
  LayOut();
  auto values = SampleValues();
  values[31] = "1";
  world.disk.Put(Path("System Setup Values.txt"), Lines(values, 62));
  StartUp_Load();
  EXPECT_EQ(Translate("EXIT"), "BEENDEN");
  EXPECT_EQ(StartUp.cmdExit.Caption, "EXIT") << "the form keeps what the program compares";
}

TEST_F(StartUpLoad, GoesOnWithoutAnyFileInADirectoryThatCannotBeWritten) {
  world.disk.MakeFolder(kDirectory);
  world.disk.SetReadOnly("/allusers");
  StartUp_Load();
  ASSERT_FALSE(world.boxes.texts.empty());
  EXPECT_EQ(world.boxes.texts[0].find("THE DATA DIRECTORY CANNOT BE WRITTEN, SO NO SOUNDING CAN BE "
                                      "RECORDED."),
            0U);
  EXPECT_EQ(settings.DepthStepCounts, 4);
  EXPECT_EQ(settings.AvailableLanguages[0], "English");
  EXPECT_TRUE(world.disk.List(kDirectory).empty());
}

TEST_F(StartUpLoad, ReadsADirectoryThatCannotBeWritten) {
  LayOut();
  PutSetup(62);
  world.disk.SetReadOnly("/allusers");
  StartUp_Load();
  EXPECT_EQ(world.boxes.texts.size(), 2U) << "the directory, and the copy to .old";
  EXPECT_EQ(settings.ConeSerialPort, 3);
}

TEST_F(StartUpLoad, GoesOnWithAFullDisk) {
  world.disk.SetRoom(100);
  StartUp_Load();
  ASSERT_FALSE(world.boxes.texts.empty());
  EXPECT_NE(world.boxes.texts[0].find("No space left"), std::string::npos) << world.boxes.texts[0];
  EXPECT_EQ(settings.DepthStepCounts, 4);
}

TEST_F(StartUpLoad, TellsOfAMissingOrDamagedSoilTable) {
  LayOut();
  PutSetup(62);
  for (const char* text : {"", "rubbish\r\n", "1,2,3\r\n"}) {
    world.boxes.texts.clear();
    world.disk.Put(Path("intubc.asc"), text);
    StartUp_Load();
    ReleaseInstanceLock();
    ASSERT_EQ(world.boxes.texts.size(), 1U) << text;
    EXPECT_EQ(world.boxes.texts[0].find("intubc.asc"), 0U);
  }
  world.boxes.texts.clear();
  world.disk.Remove(Path("intubc.asc"));
  StartUp_Load();
  EXPECT_EQ(world.boxes.texts.size(), 1U);
}

TEST_F(StartUpLoad, ReplacesSettingsThatCannotWork) {
  LayOut();
  auto values = SampleValues();
  values[19] = "0";    // resolution
  values[40] = "300";  // cone port
  values[0] = "99";    // unit of channel 1
  world.disk.Put(Path("System Setup Values.txt"), Lines(values, 62));
  StartUp_Load();
  EXPECT_EQ(world.boxes.texts.size(), 3U);
  EXPECT_GT(settings.DepthStepCounts, 0);
  EXPECT_EQ(settings.ConeSerialPort, 0);
  EXPECT_EQ(channels.ChannelUnits(1), 1);
}

TEST_F(StartUpLoad, RewritesReplacedSettingsAsTheFileHadThem) {
  for (const std::size_t count : {std::size_t{61}, std::size_t{62}}) {
    LayOut();
    world.boxes.texts.clear();
    auto values = UnusableValues();
    values[4] = "0";  // of 62 values, too, a rewrite
    world.disk.Put(Path("System Setup Values.txt"), Lines(values, count));
    StartUp_Load();
    ReleaseInstanceLock();
    EXPECT_EQ(replaced_settings.List.size(), 10U);
    auto expected = Rewritten(values);
    expected[4] = "1";
    if (count == 61) {
      expected[59] = "2";  // the last upgrade sets the overlay
      expected[60] = "0";
    }
    EXPECT_EQ(world.disk.Read(Path("System Setup Values.txt")), Lines(expected, 61)) << count;
    EXPECT_EQ(settings.ConeSerialPort, 0) << "the session has the replacements";
    ResetState();
  }
}

TEST_F(StartUpLoad, SavesReplacedSettingsAsTheFileHadThem) {
  LayOut();
  auto values = UnusableValues();
  world.disk.Put(Path("System Setup Values.txt"), Lines(values, 62));
  StartUp_Load();
  SaveKQSettings();
  values[42] = "0";               // the calibrator's port has no loader
  values[57] = values[58] = "0";  // conical
  EXPECT_EQ(world.disk.Read(Path("System Setup Values.txt")), Lines(values, 62));
  EXPECT_EQ(settings.DepthResolution, 0.005F);
  EXPECT_EQ(settings.DepthStep, 0.02F);
  EXPECT_EQ(settings.Language, 0);
  EXPECT_EQ(channels.ChannelUnits(1), 1);
}

TEST_F(StartUpLoad, SavesAPairOfDepthsThatDoNotFitAsTheFileHadThem) {
  LayOut();
  auto values = SampleValues();
  values[19] = "0.5";
  values[20] = "0.02";
  world.disk.Put(Path("System Setup Values.txt"), Lines(values, 62));
  StartUp_Load();
  SaveKQSettings();
  const std::string saved = world.disk.Read(Path("System Setup Values.txt"));
  EXPECT_EQ(SetupLine(saved, 20), "0.5");
  EXPECT_EQ(SetupLine(saved, 21), "0.02");
  EXPECT_EQ(settings.DepthResolution, 0.005F);
}

TEST_F(StartUpLoad, SavesAReplacedSettingThatWasChangedSinceAsItIsFromThenOn) {
  LayOut();
  world.disk.Put(Path("System Setup Values.txt"), Lines(UnusableValues(), 62));
  StartUp_Load();
  settings.ASCIIOutSerialPort = 6;
  settings.DepthStep = 0.05F;
  channels.ChannelUnits(1) = 2;
  SaveKQSettings();
  std::string saved = world.disk.Read(Path("System Setup Values.txt"));
  EXPECT_EQ(SetupLine(saved, 55), "6");
  EXPECT_EQ(SetupLine(saved, 21), "0.05");
  EXPECT_EQ(SetupLine(saved, 1), "2");
  EXPECT_EQ(SetupLine(saved, 41), "300") << "not changed";
  settings.ASCIIOutSerialPort = 0;
  SaveKQSettings();
  saved = world.disk.Read(Path("System Setup Values.txt"));
  EXPECT_EQ(SetupLine(saved, 55), "0") << "switched off, not the 256 of the file";
}

TEST_F(StartUpLoad, OfAnotherFileForgetsWhatWasReplaced) {
  LayOut();
  world.disk.Put(Path("System Setup Values.txt"), Lines(UnusableValues(), 62));
  StartUp_Load();
  ReleaseInstanceLock();
  auto values = SampleValues();
  values[40] = "0";
  world.disk.Put(Path("System Setup Values.txt"), Lines(values, 62));
  StartUp_Load();
  SaveKQSettings();
  EXPECT_EQ(SetupLine(world.disk.Read(Path("System Setup Values.txt")), 41), "0");
}

TEST_F(StartUpLoad, RefusesASecondConsoleOnTheSameDirectoryAfterTenSeconds) {
  ASSERT_TRUE(world.disk.Lock(Path("penlog.lock")));
  EXPECT_THROW(StartUp_Load(), ProgramEnd);
  EXPECT_EQ(world.boxes.texts, Texts{"PENLOG IS ALREADY RUNNING WITH THE DATA DIRECTORY "
                                     "/allusers/PENLOG(KQ).  THIS SECOND ONE ENDS."});
  EXPECT_GE(Now(), 10 * kSecond);
  EXPECT_LT(Now(), 11 * kSecond);
  EXPECT_FALSE(Has("System Setup Values.txt")) << "the other one's files are not touched";
}

TEST_F(StartUpLoad, WaitsForAConsoleThatIsAboutToEnd) {
  ASSERT_TRUE(world.disk.Lock(Path("penlog.lock")));
  PostCall(9 * kSecond, this, [&] { world.disk.Unlock(Path("penlog.lock")); });
  std::string status;
  bool start_enabled = true;
  PostCall(5 * kSecond, this, [&] {
    status = StartUp.lblLoad.Caption;
    start_enabled = StartUp.cmdStart.Enabled;
  });
  StartUp_Load();
  EXPECT_EQ(status, "ANOTHER PENLOG IS RUNNING. WAITING FOR IT TO END");
  EXPECT_FALSE(start_enabled);
  EXPECT_EQ(world.boxes.texts, Texts{});
  EXPECT_TRUE(StartUp.cmdStart.Enabled);
  EXPECT_FALSE(StartUp.frLoad.Visible);
  EXPECT_FALSE(StartUp.Timer1.Running());
  EXPECT_LT(Now(), 10 * kSecond);
  EXPECT_TRUE(Has("System Setup Values.txt"));
}

}  // namespace
}  // namespace penlog
