#include "screens/last_sounding_parameters.h"

#include <algorithm>

#include "screens/setup_sounding_world.h"

namespace penlog {
namespace {

TEST_F(SetupSoundingTest, OpensWithTheLastSounding) {
  Load(Parameters("SITE(007)", "DCS0123", " 1 ", " 1 \r\n 3 \r\n 2 \r\n 0 \r\n"));
  EXPECT_EQ(SetupSounding.Drive1.List, world.disk.Drives());
  EXPECT_EQ(SetupSounding.Drive1.Text, "/");
  EXPECT_EQ(setup_sounding.Directory, "/soundings/today");
  EXPECT_EQ(SetupSounding.txtOperator.Text, "Anna");
  EXPECT_EQ(SetupSounding.txtConeNumber.Text, "DCS0123");
  EXPECT_EQ(SetupSounding.txtLocation.Text, "Harbour");
  EXPECT_EQ(SetupSounding.txtJobNumber.Text, "J1");
  EXPECT_EQ(SetupSounding.txtHoleNumber.Text, "H2");
  EXPECT_EQ(SetupSounding.txtHeader.Text, "head");
  EXPECT_EQ(SetupSounding.txtFooter1.Text, "foot 1");
  EXPECT_EQ(SetupSounding.txtFooter2.Text, "foot 2");
  EXPECT_EQ(SetupSounding.txtStartDepth.Text, "0");
  EXPECT_EQ(SetupSounding.txtWaterTable.Text, "");
  EXPECT_EQ(SetupSounding.txtFileName.Text, "SITE(007)");
  EXPECT_EQ(SetupSounding.lblFileName.Caption, "/soundings/today/SITE(007)");
  for (int channel = 1; channel <= 30; ++channel) {
    const bool has_choice = channel != 19 && channel != 20;
    EXPECT_EQ(channels.RecordMode(channel), has_choice ? 1 : 0) << channel;
  }
  EXPECT_EQ(display.GraphChannel, (std::array<std::int16_t, 5>{0, 1, 3, 2, 0}));
  EXPECT_TRUE(boxes.texts.empty());
  EXPECT_EQ(setup_sounding.GPSNotFoundMessage, "GPS not found.");
  EXPECT_EQ(setup_sounding.LostSatelliteMessage, "Lost Satellite");
}

TEST_F(SetupSoundingTest, FirstGraphIsChannel1WhateverTheFileSays) {
  Load(Parameters("A", "DCS0123", " 1 ", " 4 \r\n 3 \r\n 2 \r\n 0 \r\n"));
  EXPECT_EQ(display.GraphChannel, (std::array<std::int16_t, 5>{0, 1, 3, 2, 0}));
}

TEST_F(SetupSoundingTest, GraphOfAChannelThatCannotBeIsNone) {
  Load(Parameters("A", "DCS0123", " 1 ", " 1 \r\n 31 \r\n-1 \r\n 2 \r\n"));
  EXPECT_EQ(display.GraphChannel, (std::array<std::int16_t, 5>{0, 1, 0, 0, 2}));
}

TEST_F(SetupSoundingTest, MissingFileGivesDefaults) {
  settings.FileNaming = 1;
  SetupSounding_Load();
  EXPECT_EQ(
      boxes.texts,
      (std::vector<std::string>{"Last sounding parameters file missing. Default values loaded"}));
  EXPECT_EQ(SetupSounding.txtFileName.Text, "CPT TEST(001)");
  EXPECT_EQ(SetupSounding.txtStartDepth.Text, "0");
  for (const TextBox* box :
       {&SetupSounding.txtOperator, &SetupSounding.txtLocation, &SetupSounding.txtJobNumber,
        &SetupSounding.txtHoleNumber, &SetupSounding.txtHeader, &SetupSounding.txtFooter1,
        &SetupSounding.txtFooter2, &SetupSounding.txtLattitude, &SetupSounding.txtLongitude,
        &SetupSounding.txtAltitude}) {
    EXPECT_EQ(box->Text, "") << box->Name();
  }
  EXPECT_EQ(setup_sounding.Directory, "/allusers/PENLOG(KQ)");
  EXPECT_EQ(SetupSounding.lblFileName.Caption, "/allusers/PENLOG(KQ)/CPT TEST(001)");
  EXPECT_EQ(display.GraphChannel[1], 1);
}

TEST_F(SetupSoundingTest, ConeChangeKeepsTheTextsButNotChoicesAndGraphs) {
  channels.RecordMode(3) = 0;
  Load(Parameters("A", "DSE9999", " 1 ", " 4 \r\n 3 \r\n 2 \r\n 0 \r\n"));
  EXPECT_EQ(SetupSounding.txtOperator.Text, "Anna");
  EXPECT_EQ(channels.RecordMode(3), 0);
  EXPECT_EQ(display.GraphChannel, (std::array<std::int16_t, 5>{0, 1, 0, 0, 0}));
}

TEST_F(SetupSoundingTest, RecordModeTwoCannotBeSwitchedOffByTheFile) {
  channels.RecordMode(1) = 2;
  channels.RecordMode(2) = 1;
  Load(Parameters("A", "DCS0123", " 0 ", kGraph1Alone));
  EXPECT_EQ(channels.RecordMode(1), 2);
  EXPECT_EQ(channels.RecordMode(2), 0);
}

TEST_F(SetupSoundingTest, OtherRecordChoiceLeavesTheModeUnchanged) {
  for (const char* choice : {" 2 ", " 3 ", " 7 ", "-1 ", "often", "0.5", "70000", ""}) {
    channels.RecordMode(2) = 3;
    channels.RecordMode(3) = 1;
    Load(Parameters("A", "DCS0123", choice, kGraph1Alone));
    EXPECT_EQ(channels.RecordMode(2), 3) << choice;
    EXPECT_EQ(channels.RecordMode(3), 1) << choice;
  }
}

TEST_F(SetupSoundingTest, BlanksAtTheEndsOfTheConesNameAreNoDifference) {
  for (const char* id : {"DCS0123 ", " DCS0123", "DCS0123"}) {
    cone.ConeId = id;
    channels.RecordMode(3) = 0;
    Load(Parameters("A", id, " 1 ", kGraph1Alone));
    EXPECT_EQ(channels.RecordMode(3), 1) << "\"" << id << "\"";
  }
}

TEST_F(SetupSoundingTest, CommaInAValueShiftsTheFieldsBehindIt) {
  settings.FileNaming = 1;
  channels.RecordMode(1) = 3;
  channels.RecordMode(2) = 0;
  std::string file = Parameters("SITE(007)", "DCS0123", " 1 ", " 1 \r\n 3 \r\n 2 \r\n 0 \r\n");
  file.replace(file.find("Harbour"), 7, "Quay 3, east");
  Load(file);
  EXPECT_EQ(SetupSounding.txtLocation.Text, "Quay 3");
  EXPECT_EQ(SetupSounding.txtJobNumber.Text, "east");
  EXPECT_EQ(SetupSounding.txtHoleNumber.Text, "J1");
  EXPECT_EQ(SetupSounding.txtFooter2.Text, "foot 1");
  EXPECT_EQ(channels.RecordMode(1), 3) << "\"foot 2\" is no choice";
  EXPECT_EQ(channels.RecordMode(2), 1);
  EXPECT_EQ(display.GraphChannel, (std::array<std::int16_t, 5>{0, 1, 1, 3, 2}));
  EXPECT_EQ(setup_sounding.Directory, "/soundings/today");
  EXPECT_EQ(SetupSounding.txtFileName.Text, "SITE(008)");
  EXPECT_TRUE(boxes.texts.empty());
}

TEST_F(SetupSoundingTest, GraphThatIsNoNumberIsNone) {
  Load(Parameters("A", "DCS0123", " 1 ", " 1 \r\n tip \r\n 2.5 \r\n 3 \r\n"));
  EXPECT_EQ(display.GraphChannel, (std::array<std::int16_t, 5>{0, 1, 0, 0, 3}));
}

TEST_F(SetupSoundingTest, FileNameWithACommaShiftsTheFieldsWhenReloaded) {
  Load(Parameters("SITE 3,4", "DCS0123", " 1 ", kGraph1Alone));
  EXPECT_EQ(SetupSounding.txtFileName.Text, "SITE 3");
  EXPECT_EQ(SetupSounding.txtOperator.Text, "DCS0123") << "\"4\" was taken for the cone";
}

TEST_F(SetupSoundingTest, ChannelFourteenLeavesTheGraphsWithoutAModule) {
  const std::string file = Parameters("A", "DCS0123", " 1 ", " 1 \r\n 14 \r\n 3 \r\n 2 \r\n");
  Load(file);
  EXPECT_EQ(display.GraphChannel, (std::array<std::int16_t, 5>{0, 1, 3, 2, 0}));
  cone.ModulePresent[4] = -1;
  Load(file);
  EXPECT_EQ(display.GraphChannel, (std::array<std::int16_t, 5>{0, 1, 14, 3, 2}));
}

TEST_F(SetupSoundingTest, MissingDriveOrDirectoryFallsBackToARoot) {
  std::string file = Parameters("A", "DCS0123", " 1 ", kGraph1Alone);
  Load("/gone" + file.substr(file.find('\r')));
  EXPECT_EQ(boxes.texts.back(),
            "Last directory used is missing. Switching to the root directory of the last drive "
            "used.");
  EXPECT_EQ(setup_sounding.Directory, "/");
  file.replace(file.find("/\r\n", 5), 1, "Q:");
  Load(file);
  EXPECT_EQ(boxes.texts.back(), "Last drive used is missing. Switching to the root drive.");
  EXPECT_EQ(setup_sounding.Directory, "/");
  EXPECT_EQ(SetupSounding.Drive1.Text, "/");
}

TEST_F(SetupSoundingTest, DamagedFileLoadsTheDefaultPlace) {
  for (const std::string& file :
       {std::string("/soundings/today\r\n/\r\n"), Parameters("A", "DCS0123", " 1 ", "")}) {
    Load(file);
    EXPECT_EQ(boxes.texts.back(),
              "An unkown error has occurred. Default drive and path values have been loaded.");
    EXPECT_EQ(setup_sounding.Directory, "/allusers/PENLOG(KQ)");
    EXPECT_EQ(display.GraphChannel[1], 1);
  }
}

TEST_F(SetupSoundingTest, SavesWhatItLoads) {
  session.LastDirectory = "/soundings/today";
  session.LastDrive = "/";
  session.SoundingName = "SITE";
  session.OperatorName = "Anna";
  channels.RecordMode(1) = 2;
  channels.ChannelDelayRows(1) = 1;
  channels.ChannelDelayRows(2) = 5;
  channels.ChannelDelayRows(3) = 9;
  display.GraphChannel = {0, 1, 3, 0, 0};
  SaveLastSoundingParameters([](int channel) { return channel == 2; });
  EXPECT_EQ(cone.DelayRows, 5);
  EXPECT_EQ(channels.RecordMode(2), 1);
  EXPECT_EQ(channels.RecordMode(3), 0);
  const std::string text = world.disk.Read(kParameters);
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 43);
  EXPECT_EQ(text.substr(0, text.find(" 0 ")),
            "/soundings/today\r\n/\r\nSITE\r\nDCS0123\r\nAnna\r\n\r\n\r\n\r\n\r\n\r\n\r\n 2 \r\n 1 "
            "\r\n");
  EXPECT_TRUE(text.ends_with(" 1 \r\n 3 \r\n 0 \r\n 0 \r\n"));
  session.OperatorName.clear();
  LoadLastSoundingParameters();
  EXPECT_EQ(session.OperatorName, "Anna");
}

}  // namespace
}  // namespace penlog
