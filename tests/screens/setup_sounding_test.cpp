#include "screens/setup_sounding.h"

#include <algorithm>

#include "core/settings_file.h"
#include "forms/create_new_directory_form.h"
#include "platform/files.h"
#include "screens/accept_sounding.h"
#include "screens/setup_sounding_world.h"

namespace penlog {
namespace {

TEST_F(SetupSoundingTest, NameEndingIn999InAutoIncrementComesBackEndingIn000) {
  settings.FileNaming = 1;
  Load(Parameters("SITE(999)", "DCS0123", " 1 ", kGraph1Alone));
  EXPECT_EQ(SetupSounding.txtFileName.Text, "SITE(000)");
}

TEST_F(SetupSoundingTest, NameOfExactly5CharactersInAutoIncrementBecomesCPTTEST001) {
  settings.FileNaming = 1;
  Load(Parameters("ABCDE", "DCS0123", " 1 ", kGraph1Alone));
  EXPECT_EQ(SetupSounding.txtFileName.Text, "CPT TEST(001)");
}

TEST_F(SetupSoundingTest, NameStaysInTheOtherModes) {
  for (const std::int16_t mode : {std::int16_t{0}, std::int16_t{2}}) {
    settings.FileNaming = mode;
    std::string file = Parameters("SITE(007)", "DCS0123", " 1 ", kGraph1Alone);
    file.replace(file.find("J1\r\nH2"), 6, "\r\n");  // no job, no hole
    Load(file);
    EXPECT_EQ(SetupSounding.txtFileName.Text, "SITE(007)") << mode;
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
      {"Höhe(041)", "Höhe(042)"}, {"SITE(9e9)", "SITE(000)"},
      {"SITE(1e3)", "SITE(000)"}, {"SITE(9d9)", "SITE(000)"},
      {"SITE(9e2)", "SITE(901)"}, {"SITE(998)", "SITE(999)"},
  };
  for (const auto& row : rows) EXPECT_EQ(NextSoundingName(row.name), row.next) << row.name;
}

TEST_F(SetupSoundingTest, JobAndHoleNameTheFileInTheirMode) {
  for (const std::int16_t mode : {std::int16_t{0}, std::int16_t{1}}) {
    settings.FileNaming = mode;
    SetText(SetupSounding.txtJobNumber, "J" + std::to_string(mode));
    EXPECT_EQ(SetupSounding.txtFileName.Text, "") << mode;
  }
  settings.FileNaming = 2;
  SetText(SetupSounding.txtHoleNumber, "H2");
  EXPECT_EQ(SetupSounding.txtFileName.Text, "J1H2");
  SetText(SetupSounding.txtJobNumber, "K9-");
  EXPECT_EQ(SetupSounding.txtFileName.Text, "K9-H2");
  EXPECT_EQ(SetupSounding.lblFileName.Caption, JoinPath(setup_sounding.Directory, "K9-H2"));
}

TEST_F(SetupSoundingTest, JobAndHoleOfTheLastSoundingNameThisOneInTheirMode) {
  settings.FileNaming = 2;
  Load(Parameters("SITE(007)", "DCS0123", " 1 ", kGraph1Alone));
  EXPECT_EQ(SetupSounding.txtFileName.Text, "J1H2");
}

TEST_F(SetupSoundingTest, FileNamingHasItsThreeModes) {
  auto& list = SetupSounding.cmbFileNaming;
  EXPECT_EQ(list.List, (std::vector<std::string>{"Manual", "Auto-Increment", "Auto-Job&Hole#"}));
  for (std::int16_t mode = 0; mode <= 2; ++mode) {
    settings.FileNaming = mode;
    SetupSounding_Load();
    EXPECT_EQ(list.ListIndex, mode);
    EXPECT_EQ(list.Text, list.List[static_cast<std::size_t>(mode)]);
  }
}

TEST_F(SetupSoundingTest, FileNamingThatWasChosenNamesTheSoundingsToCome) {
  const std::string file = Parameters("SITE(007)", "DCS0123", " 1 ", kGraph1Alone);
  const struct {
    int mode;
    const char* next;
  } rows[] = {{1, "SITE(008)"}, {2, "J1H2"}, {0, "SITE(007)"}};
  for (const auto& row : rows) {
    Load(file);
    Show(SetupSounding);
    Select(SetupSounding.cmbFileNaming, row.mode);
    EXPECT_EQ(settings.FileNaming, row.mode);
    settings = {};  // the program's end and its next start
    LoadSystemSetup();
    EXPECT_EQ(settings.FileNaming, row.mode);
    Load(file);
    EXPECT_EQ(SetupSounding.txtFileName.Text, row.next);
    Unload(SetupSounding);
  }
  EXPECT_TRUE(boxes.texts.empty());
}

TEST_F(SetupSoundingTest, FileNamingByJobAndHoleNamesThisSoundingAndTheOthersLeaveItsName) {
  Load(Parameters("SITE(007)", "DCS0123", " 1 ", kGraph1Alone));
  Show(SetupSounding);
  Select(SetupSounding.cmbFileNaming, 1);
  EXPECT_EQ(SetupSounding.txtFileName.Text, "SITE(007)");
  Select(SetupSounding.cmbFileNaming, 2);
  EXPECT_EQ(SetupSounding.txtFileName.Text, "J1H2");
  Select(SetupSounding.cmbFileNaming, 0);
  EXPECT_EQ(SetupSounding.txtFileName.Text, "J1H2");
  SetupSounding.txtJobNumber.Text = SetupSounding.txtHoleNumber.Text = "";
  session.JobNumber = session.HoleNumber = "";
  Select(SetupSounding.cmbFileNaming, 2);
  EXPECT_EQ(SetupSounding.txtFileName.Text, "J1H2") << "no numbers are no name";
}

TEST_F(SetupSoundingTest, FileNamingThatCannotBeSavedIsToldAndStands) {
  SetupSounding_Load();
  Show(SetupSounding);
  boxes.texts.clear();
  world.disk.SetReadOnly(session.DataDirectory);
  Select(SetupSounding.cmbFileNaming, 1);
  ASSERT_EQ(boxes.texts.size(), 1u);
  EXPECT_EQ(boxes.texts[0].rfind("THE SETTINGS COULD NOT BE SAVED.  ", 0), 0u);
  EXPECT_EQ(settings.FileNaming, 1);
}

TEST_F(SetupSoundingTest, FileNamingStaysWhenNothingWasChosen) {
  settings.FileNaming = 2;
  Show(SetupSounding);
  Select(SetupSounding.cmbFileNaming, -1);
  EXPECT_EQ(settings.FileNaming, 2);
}

TEST_F(SetupSoundingTest, BackFromTheDisplaySetupWhatWasAcceptedStands) {
  settings.DepthFormat = 1;
  settings.DepthUnits = 1;
  settings.FileNaming = 2;
  Load(Parameters("SITE(007)", "DCS0123", " 1 ", kGraph1Alone));
  ChooseDirectory("/soundings");
  SetText(SetupSounding.txtFileName, "OTHER");
  SetupSounding.txtConeNumber.Text = "7";
  SetupSounding.txtStartDepth.Text = "12.5";
  SetupSounding.txtWaterTable.Text = "-3";
  SetupSounding_Command2_Click();
  Unload(SetupSounding);
  setup_sounding.BackFlag = -1;
  SetupSounding_Load();
  EXPECT_EQ(setup_sounding.BackFlag, 0);
  EXPECT_EQ(SetupSounding.lblFileName.Caption, "/soundings/OTHER");
  EXPECT_EQ(SetupSounding.txtConeNumber.Text, "7");
  EXPECT_EQ(SetupSounding.txtStartDepth.Text, "12.5");
  EXPECT_EQ(SetupSounding.txtWaterTable.Text, "-3");
}

TEST_F(SetupSoundingTest, FileNameLabelFollowsNameDirectoryAndDrive) {
  SetupSounding_Load();
  SetText(SetupSounding.txtFileName, "A");
  EXPECT_EQ(SetupSounding.lblFileName.Caption, "/allusers/PENLOG(KQ)/A");
  SetupSounding.Dir1.Text = "/soundings/today";
  SetupSounding_Dir1_Change();
  EXPECT_EQ(SetupSounding.lblFileName.Caption, "/soundings/today/A");
  SetupSounding.Drive1.ListIndex = 0;
  SetupSounding_Drive1_Click();
  EXPECT_EQ(SetupSounding.lblFileName.Caption, "/A") << "no second separator";
  EXPECT_EQ(session.LastDrive, "/");
}

TEST_F(SetupSoundingTest, CreatingADirectoryLiesAboveTheScreen) {
  Show(SetupSounding);
  SetupSounding_Command1_Click();
  EXPECT_TRUE(frmCreateNewDirectory.Visible);
  EXPECT_TRUE(frmCreateNewDirectory.Modal);
  Unload(frmCreateNewDirectory);
  EXPECT_FALSE(frmCreateNewDirectory.Modal);
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

TEST_F(SetupSoundingTest, BrowsesFoldersAndFiles) {
  world.disk.Put("/soundings/today/A.cpt", "x");
  world.disk.Put("/soundings/today/A.tim", "x");
  Show(SetupSounding);
  ChooseDirectory("/soundings");
  EXPECT_EQ(SetupSounding.Dir1.List, (std::vector<std::string>{"..", "today"}));
  Select(SetupSounding.Dir1, 1);
  EXPECT_EQ(setup_sounding.Directory, "/soundings/today");
  EXPECT_EQ(SetupSounding.File1.List, (std::vector<std::string>{"A.cpt"}));
  Select(SetupSounding.File1, 0);
  EXPECT_EQ(SetupSounding.txtFileName.Text, "A.cpt");
  EXPECT_EQ(SetupSounding.lblFileName.Caption, "/soundings/today/A.cpt");
  Select(SetupSounding.Dir1, 0);
  EXPECT_EQ(setup_sounding.Directory, "/soundings");
  Type(SetupSounding.Dir1, "/nowhere");
  EXPECT_EQ(setup_sounding.Directory, "/soundings");
  EXPECT_EQ(SetupSounding.Dir1.Text, "/soundings");
  EXPECT_EQ(boxes.texts.back(), "DIRECTORY NOT FOUND: /nowhere");
}

TEST_F(SetupSoundingTest, KeyThatChoosesWithNoEntryMarkedChoosesNothing) {
  world.disk.Put("/soundings/today/A.cpt", "x");
  Show(SetupSounding);
  ChooseDirectory("/soundings/today");
  Select(SetupSounding.File1, 0);
  SetText(SetupSounding.txtFileName, "B");
  Select(SetupSounding.File1, -1);
  EXPECT_EQ(SetupSounding.txtFileName.Text, "B");
  Select(SetupSounding.Dir1, -1);
  EXPECT_EQ(setup_sounding.Directory, "/soundings/today");
  EXPECT_EQ(SetupSounding.lblFileName.Caption, "/soundings/today/B");
  SetupSounding.Drive1.Click = SetupSounding_Drive1_Click;
  Select(SetupSounding.Drive1, -1);
  EXPECT_EQ(setup_sounding.Directory, "/soundings/today");
}

TEST_F(SetupSoundingTest, FileThatWasChosenIsForgottenInAnotherFolder) {
  world.disk.Put("/soundings/today/A.cpt", "x");
  Show(SetupSounding);
  ChooseDirectory("/soundings/today");
  Select(SetupSounding.File1, 0);
  EXPECT_EQ(SetupSounding.File1.Text, "A.cpt");
  Select(SetupSounding.Dir1, 0);
  EXPECT_EQ(SetupSounding.File1.Text, "");
}

TEST_F(SetupSoundingTest, TypedPathBecomesTheWholePathOfItsFolder) {
  Show(SetupSounding);
  SetText(SetupSounding.txtFileName, "A");
  const struct {
    const char* typed;
    const char* path;
  } rows[] = {
      {"today", "/soundings/today/A"},
      {".", "/soundings/A"},
      {"..", "/A"},
      {"//", "/A"},
      {"/soundings/today/..", "/soundings/A"},
      {"/soundings/today//", "/soundings/today/A"},
      {"../soundings/./today", "/soundings/today/A"},
  };
  for (const auto& row : rows) {
    ChooseDirectory("/soundings");
    Type(SetupSounding.Dir1, row.typed);
    EXPECT_EQ(SetupSounding.lblFileName.Caption, row.path) << row.typed;
    EXPECT_EQ(SetupSounding.Dir1.Text, setup_sounding.Directory) << row.typed;
  }
  EXPECT_TRUE(std::none_of(boxes.texts.begin(), boxes.texts.end(), [](const std::string& text) {
    return text.rfind("DIRECTORY NOT FOUND", 0) == 0;
  }));
}

TEST_F(SetupSoundingTest, TypedPathOfNoFolderIsRefusedAsItWasTyped) {
  Show(SetupSounding);
  ChooseDirectory("/soundings");
  for (const char* typed : {"", "x", "today/x", "/soundings/today/../x/"}) {
    Type(SetupSounding.Dir1, typed);
    EXPECT_EQ(boxes.texts.back(), std::string("DIRECTORY NOT FOUND: ") + typed);
    EXPECT_EQ(setup_sounding.Directory, "/soundings");
    EXPECT_EQ(SetupSounding.Dir1.Text, "/soundings");
  }
}

}  // namespace
}  // namespace penlog
