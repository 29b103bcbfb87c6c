#include "screens/setup_sounding.h"

#include <gtest/gtest.h>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/session.h"
#include "core/settings.h"
#include "display/display_state.h"
#include "forms/setup_display_form.h"
#include "forms/setup_sounding_form.h"
#include "screens/accept_sounding.h"
#include "screens/last_sounding_parameters.h"
#include "support/boxes.h"
#include "support/world.h"

namespace penlog {
namespace {

constexpr const char* kParameters = "/allusers/PENLOG(KQ)/Last Sounding Parameters.txt";

class SetupSoundingTest : public testing::Test {
 protected:
  SetupSoundingTest() {
    Clear();
    session.DataDirectory = "/allusers/PENLOG(KQ)";
    cone.ConeId = "DCS0123";
    world.disk.MakeFolder("/soundings/today");
    world.disk.MakeFolder(session.DataDirectory);
    SetupDisplay.Load = nullptr;
    SetupSounding.txtFileName.Change = SetupSounding_txtFileName_Change;
    SetupSounding.txtJobNumber.Change = SetupSounding_txtJobOrHole_Change;
    SetupSounding.txtHoleNumber.Change = SetupSounding_txtJobOrHole_Change;
  }
  ~SetupSoundingTest() override { Clear(); }

  static void Clear() {
    channels = ChannelState{};
    settings = SettingsState{};
    session = SessionState{};
    display = DisplayState{};
    cone = ConeState{};
    setup_sounding = SetupSoundingState{};
  }

  /// A parameter file with the name, the cone and one choice for all channels.
  static std::string Parameters(const std::string& name, const std::string& cone_id,
                                const std::string& choice, const std::string& graphs) {
    std::string text = "/soundings/today\r\n/\r\n" + name + "\r\n" + cone_id +
                       "\r\nAnna\r\nHarbour\r\nJ1\r\nH2\r\nhead\r\nfoot 1\r\nfoot 2\r\n";
    for (int i = 0; i < 28; ++i) text += choice + "\r\n";
    return text + graphs;
  }

  void Load(const std::string& file) {
    world.disk.Put(kParameters, file);
    SetupSounding_Load();
  }

  World world;
  BoxAnswerer boxes;
};

TEST_F(SetupSoundingTest, OpensWithTheLastSounding) {
  Load(Parameters("SITE(007)", "DCS0123", " 1 ", " 1 \r\n 3 \r\n 2 \r\n 0 \r\n"));
  EXPECT_EQ(SetupSounding.txtOperator.Text, "Anna");
  EXPECT_EQ(SetupSounding.txtLocation.Text, "Harbour");
  EXPECT_EQ(SetupSounding.txtFooter2.Text, "foot 2");
  EXPECT_EQ(SetupSounding.txtStartDepth.Text, "0");
  EXPECT_EQ(SetupSounding.txtFileName.Text, "SITE(007)");
  EXPECT_EQ(SetupSounding.lblFileName.Caption, "/soundings/today/SITE(007)");
  EXPECT_EQ(channels.RecordMode(3), 1);
  EXPECT_EQ(display.GraphChannel, (std::array<std::int16_t, 5>{0, 1, 3, 2, 0}));
  EXPECT_TRUE(boxes.texts.empty());
}

TEST_F(SetupSoundingTest, MissingFileGivesDefaults) {
  settings.FileNaming = 1;
  SetupSounding_Load();
  EXPECT_EQ(
      boxes.texts,
      (std::vector<std::string>{"Last sounding parameters file missing. Default values loaded"}));
  EXPECT_EQ(SetupSounding.txtFileName.Text, "CPT TEST(001)");
  EXPECT_EQ(SetupSounding.txtStartDepth.Text, "0");
  EXPECT_EQ(setup_sounding.Directory, "/allusers/PENLOG(KQ)");
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
  Load(Parameters("A", "DCS0123", " 0 ", " 1 \r\n 0 \r\n 0 \r\n 0 \r\n"));
  EXPECT_EQ(channels.RecordMode(1), 2);
  EXPECT_EQ(channels.RecordMode(2), 0);
}

TEST_F(SetupSoundingTest, OtherRecordChoiceLeavesTheModeUnchanged) {
  channels.RecordMode(2) = 3;
  Load(Parameters("A", "DCS0123", " 7 ", " 1 \r\n 0 \r\n 0 \r\n 0 \r\n"));
  EXPECT_EQ(channels.RecordMode(2), 3);
}

TEST_F(SetupSoundingTest, CommaInAValueShiftsTheFieldsBehindIt) {
  std::string file = Parameters("A", "DCS0123", " 1 ", " 1 \r\n 0 \r\n 0 \r\n 0 \r\n");
  file.replace(file.find("Harbour"), 7, "Quay 3, east");
  Load(file);
  EXPECT_EQ(SetupSounding.txtLocation.Text, "Quay 3");
  EXPECT_EQ(SetupSounding.txtJobNumber.Text, "east");
  EXPECT_EQ(SetupSounding.txtHoleNumber.Text, "J1");
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
  std::string file = Parameters("A", "DCS0123", " 1 ", " 1 \r\n 0 \r\n 0 \r\n 0 \r\n");
  Load("/gone" + file.substr(file.find('\r')));
  EXPECT_EQ(boxes.texts.back(),
            "Last directory used is missing. Switching to the root directory of the last drive "
            "used.");
  EXPECT_EQ(setup_sounding.Directory, "/");
  file.replace(file.find("/\r\n", 5), 1, "Q:");
  Load(file);
  EXPECT_EQ(boxes.texts.back(), "Last drive used is missing. Switching to the root drive.");
}

TEST_F(SetupSoundingTest, DamagedFileLoadsTheDefaultPlace) {
  for (const std::string& file :
       {std::string("/soundings/today\r\n/\r\n"),
        Parameters("A", "DCS0123", "often", " 1 \r\n 0 \r\n 0 \r\n 0 \r\n"),
        Parameters("A", "DCS0123", " 1 ", "")}) {
    Load(file);
    EXPECT_EQ(boxes.texts.back(),
              "An unkown error has occurred. Default drive and path values have been loaded.");
    EXPECT_EQ(setup_sounding.Directory, "/allusers/PENLOG(KQ)");
    EXPECT_EQ(display.GraphChannel[1], 1);
  }
}

TEST_F(SetupSoundingTest, AutoIncrementCountsTheName) {
  const struct {
    const char* name;
    const char* next;
  } rows[] = {
      {"SITE(007)", "SITE(008)"}, {"SITE(999)", "SITE(000)"},
      {"ABCDE", "CPT TEST(001)"}, {"", "CPT TEST(001)"},
      {"ABCDEF", "ABCDEF(001)"},  {"A(001)", "A(002)"},
      {"(001)", "CPT TEST(001)"}, {"A(01)", "CPT TEST(001)"},
      {"SITE(abc)", "SITE(001)"}, {"SITE(007) ", "SITE(007) (001)"},
      {"Höhe(041)", "Höhe(042)"},
  };
  for (const auto& row : rows) EXPECT_EQ(NextSoundingName(row.name), row.next) << row.name;
  settings.FileNaming = 1;
  Load(Parameters("SITE(999)", "DCS0123", " 1 ", " 1 \r\n 0 \r\n 0 \r\n 0 \r\n"));
  EXPECT_EQ(SetupSounding.txtFileName.Text, "SITE(000)");
}

TEST_F(SetupSoundingTest, JobAndHoleNameTheFileInTheirMode) {
  SetText(SetupSounding.txtJobNumber, "J1");
  EXPECT_EQ(SetupSounding.txtFileName.Text, "");
  settings.FileNaming = 2;
  SetText(SetupSounding.txtHoleNumber, "H2");
  EXPECT_EQ(SetupSounding.txtFileName.Text, "J1H2");
}

TEST_F(SetupSoundingTest, CaptionsFollowUnitsAndFormat) {
  const struct {
    std::int16_t units;
    std::int16_t format;
    const char* start;
    const char* water;
  } rows[] = {
      {0, 0, "START DEPTH(m)", "WATER TABLE DEPTH(m)"},
      {1, 0, "START DEPTH(ft)", "WATER TABLE DEPTH(ft)"},
      {0, 1, "START ELEV(m)", "WATER TABLE ELEV(m)"},
      {1, 1, "START ELEV(ft)", "WATER TABLE ELEV(ft)"},
  };
  for (const auto& row : rows) {
    settings.DepthUnits = row.units;
    settings.DepthFormat = row.format;
    SetupSounding_Load();
    EXPECT_EQ(SetupSounding.lblStartDepth.Caption, row.start);
    EXPECT_EQ(SetupSounding.lblWaterTable.Caption, row.water);
  }
}

class AcceptTest : public SetupSoundingTest {
 protected:
  AcceptTest() {
    Show(SetupSounding);
    ChooseDirectory("/soundings/today");
    SetText(SetupSounding.txtFileName, "SITE");
  }
};

TEST_F(AcceptTest, WorksOutThePathsAndFields) {
  SetupSounding.txtOperator.Text = "Anna";
  SetupSounding.txtStartDepth.Text = "1,5";
  SetupSounding.txtWaterTable.Text = "2.25";
  SetupSounding_Command2_Click();
  const char* extensions[] = {".cpt", ".dis", ".smc", ".tim", ".res", ".mp4"};
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(session.SoundingFiles[i + 1], std::string("/soundings/today/SITE") + extensions[i]);
  }
  EXPECT_EQ(session.OperatorName, "Anna");
  EXPECT_EQ(session.StartDepth, 1.5F);
  EXPECT_EQ(session.WaterTable, 2.25F);
  EXPECT_EQ(session.SoundingDateTime, "2026-06-15 09:30:00");
  EXPECT_FALSE(SetupSounding.Visible);
  EXPECT_TRUE(SetupDisplay.Visible);
}

TEST_F(AcceptTest, ElevationsAreNegatedAndFeetBecomeMetres) {
  settings.DepthFormat = 1;
  settings.DepthUnits = 1;
  SetupSounding.txtStartDepth.Text = "32.81";
  SetupSounding.txtWaterTable.Text = "-3.281";
  SetupSounding_Command2_Click();
  EXPECT_FLOAT_EQ(session.StartDepth, -10);
  EXPECT_FLOAT_EQ(session.WaterTable, 1);
}

TEST_F(AcceptTest, ExtensionCptIsCutOff) {
  for (const char* name : {"SITE.cpt", "SITE.CPT"}) {
    SetText(SetupSounding.txtFileName, name);
    SetupSounding_Command2_Click();
    EXPECT_EQ(session.SoundingName, "SITE");
    EXPECT_EQ(session.SoundingFiles[1], "/soundings/today/SITE.cpt");
  }
}

TEST_F(AcceptTest, RefusesEachInvalidCharacter) {
  for (const char character : {'\\', '/', ':', '*', '?', '"', '<', '>', '|'}) {
    SetText(SetupSounding.txtFileName, std::string("A") + character + "B");
    SetupSounding_Command2_Click();
    EXPECT_EQ(boxes.texts.back(),
              std::string("\"") + character + "\" is an invalid filename character.");
    EXPECT_TRUE(SetupSounding.Visible);
  }
}

TEST_F(AcceptTest, RefusesAnEmptyName) {
  SetText(SetupSounding.txtFileName, "");
  SetupSounding_Command2_Click();
  EXPECT_EQ(boxes.texts.back(), "Please enter a filename");
}

TEST_F(AcceptTest, RefusesANameThatIsTaken) {
  const struct {
    const char* extension;
    const char* message;
  } rows[] = {
      {".cpt", "A sounding file exists with the same name.  Please select a different file name."},
      {".dis",
       "A dissipation file exists with the same name.  Please select a different file name."},
      {".sei", "A seismic file exists with the same name.  Please select a different file name."},
  };
  for (const auto& row : rows) {
    const std::string path = std::string("/soundings/today/SITE") + row.extension;
    world.disk.Put(path, "x");
    SetupSounding_Command2_Click();
    EXPECT_EQ(boxes.texts.back(), row.message);
    EXPECT_TRUE(SetupSounding.Visible);
    world.disk.Remove(path);
  }
}

TEST_F(AcceptTest, NameWithOnlyATimOrMp4FilePasses) {
  world.disk.Put("/soundings/today/SITE.tim", "x");
  world.disk.Put("/soundings/today/SITE.mp4", "x");
  SetupSounding_Command2_Click();
  EXPECT_TRUE(SetupDisplay.Visible);
}

TEST_F(AcceptTest, WarnsOfProtectedDirectoriesAndGoesOn) {
  ChooseDirectory("/");
  SetupSounding_Command2_Click();
  ASSERT_EQ(boxes.texts.size(), 1u);
  EXPECT_EQ(boxes.texts[0],
            "WARNING: NON-ADMIN USERS CANNOT WRITE TO THE ROOT OR PROGRAM FILES DIRECTORIES.  "
            "PLEASE SELECT ANOTHER DIRECTORY, SUCH AS 'C:\\USERS\\operator\\MY DOCUMENTS' "
            "DIRECTORIES OR A DIRECTORY CREATED BY THE CURRENT USER.");
  EXPECT_TRUE(SetupDisplay.Visible);
  EXPECT_TRUE(IsProtectedDirectory("C:\\Program Files (x86)\\x"));
  EXPECT_TRUE(IsProtectedDirectory("D:\\"));
  EXPECT_FALSE(IsProtectedDirectory("/soundings"));
}

TEST_F(AcceptTest, RefusesADepthThatIsNoNumber) {
  for (const char* typed : {"abc", "1.5m", "--2", "1.2.3"}) {
    SetupSounding.txtStartDepth.Text = typed;
    SetupSounding_Command2_Click();
    EXPECT_EQ(boxes.texts.back(), std::string("\"") + typed + "\" is not a number.");
    EXPECT_TRUE(SetupSounding.Visible);
  }
}

TEST_F(SetupSoundingTest, BrowsesFoldersAndFiles) {
  world.disk.Put("/soundings/today/A.cpt", "x");
  world.disk.Put("/soundings/today/A.tim", "x");
  ChooseDirectory("/soundings");
  EXPECT_EQ(SetupSounding.Dir1.List, (std::vector<std::string>{"..", "today"}));
  SetupSounding.Dir1.Text = "today";
  SetupSounding_Dir1_Click();
  EXPECT_EQ(setup_sounding.Directory, "/soundings/today");
  EXPECT_EQ(SetupSounding.File1.List, (std::vector<std::string>{"A.cpt"}));
  SetupSounding.File1.Text = "A.cpt";
  SetupSounding_File1_Click();
  EXPECT_EQ(SetupSounding.txtFileName.Text, "A.cpt");
  EXPECT_EQ(SetupSounding.lblFileName.Caption, "/soundings/today/A.cpt");
  SetupSounding.Dir1.Text = "..";
  SetupSounding_Dir1_Click();
  EXPECT_EQ(setup_sounding.Directory, "/soundings");
  SetupSounding.Dir1.Text = "/nowhere";
  SetupSounding_Dir1_Change();
  EXPECT_EQ(setup_sounding.Directory, "/soundings");
  EXPECT_EQ(boxes.texts.back(), "DIRECTORY NOT FOUND: /nowhere");
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
