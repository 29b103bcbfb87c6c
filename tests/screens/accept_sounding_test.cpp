#include "screens/accept_sounding.h"

#include <cmath>

#include "screens/setup_sounding_world.h"

namespace penlog {
namespace {

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

TEST_F(AcceptTest, EntryWithTheExtensionCptLosesTheExtension) {
  const std::pair<const char*, const char*> rows[] = {
      {"SITE.cpt", "SITE"},       {"SITE.CPT", "SITE"},   {"A.Cpt", "A"},         {".cpt", ".cpt"},
      {"SITE.cpt2", "SITE.cpt2"}, {"SITEcpt", "SITEcpt"}, {"A.cpt.cpt", "A.cpt"},
  };
  for (const auto& [name, accepted] : rows) {
    SetText(SetupSounding.txtFileName, name);
    SetupSounding_Command2_Click();
    EXPECT_EQ(session.SoundingName, accepted);
    EXPECT_EQ(session.SoundingFiles[1], std::string("/soundings/today/") + accepted + ".cpt");
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
  EXPECT_EQ(InvalidFileNameCharacter("A|B:C\"/"), "/") << "in the order of the test";
  EXPECT_EQ(InvalidFileNameCharacter("A|B:C\""), ":");
}

TEST_F(AcceptTest, RefusesAnEmptyName) {
  for (const char* name : {"", "  "}) {
    SetText(SetupSounding.txtFileName, name);
    boxes.texts.clear();
    SetupSounding_Command2_Click();
    EXPECT_EQ(boxes.texts, (std::vector<std::string>{"Please enter a filename"}));
    EXPECT_TRUE(SetupSounding.Visible);
  }
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

TEST_F(AcceptTest, OfTwoTakenNamesTheFirstOfItsOrderIsTold) {
  const char* rows[][3] = {{".cpt", ".dis", "A sounding file"},
                           {".cpt", ".sei", "A sounding file"},
                           {".dis", ".sei", "A dissipation file"}};
  for (const auto& [first, second, told] : rows) {
    for (const char* extension : {first, second}) {
      world.disk.Put(std::string("/soundings/today/SITE") + extension, "x");
    }
    boxes.texts.clear();
    SetupSounding_Command2_Click();
    ASSERT_EQ(boxes.texts.size(), 1u);
    EXPECT_EQ(boxes.texts[0].rfind(told, 0), 0u) << first << second;
    for (const char* extension : {first, second}) {
      world.disk.Remove(std::string("/soundings/today/SITE") + extension);
    }
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

TEST_F(AcceptTest, WarnsOfAProtectedDirectoryBeforeItAsksForAName) {
  ChooseDirectory("/");
  SetText(SetupSounding.txtFileName, "");
  SetupSounding_Command2_Click();
  ASSERT_EQ(boxes.texts.size(), 2u);
  EXPECT_EQ(boxes.texts[0].rfind("WARNING: NON-ADMIN USERS", 0), 0u);
  EXPECT_EQ(boxes.texts[1], "Please enter a filename");
}

TEST_F(AcceptTest, RefusesAnInvalidCharacterBeforeItWarnsOfAProtectedDirectory) {
  ChooseDirectory("/");
  SetText(SetupSounding.txtFileName, "A?");
  SetupSounding_Command2_Click();
  EXPECT_EQ(boxes.texts, (std::vector<std::string>{"\"?\" is an invalid filename character."}));
  EXPECT_TRUE(SetupSounding.Visible);
}

TEST_F(AcceptTest, RefusesADirectoryThatCannotBeWritten) {
  world.disk.SetReadOnly("/soundings");
  SetupSounding_Command2_Click();
  ASSERT_EQ(boxes.texts.size(), 1u);
  EXPECT_EQ(boxes.texts[0].rfind("THE DIRECTORY CANNOT BE WRITTEN.  /soundings/today", 0), 0u);
  EXPECT_TRUE(SetupSounding.Visible);
}

TEST_F(AcceptTest, LeavesNothingInTheDirectory) {
  SetupSounding_Command2_Click();
  EXPECT_TRUE(world.disk.List("/soundings/today").empty());
}

TEST_F(AcceptTest, TakesEveryField) {
  const std::pair<TextBox*, std::string*> fields[] = {
      {&SetupSounding.txtOperator, &session.OperatorName},
      {&SetupSounding.txtConeNumber, &session.ConeNumber},
      {&SetupSounding.txtLocation, &session.SoundingLocation},
      {&SetupSounding.txtJobNumber, &session.JobNumber},
      {&SetupSounding.txtHoleNumber, &session.HoleNumber},
      {&SetupSounding.txtHeader, &session.HeaderNote},
      {&SetupSounding.txtFooter1, &session.FooterNote1},
      {&SetupSounding.txtFooter2, &session.FooterNote2},
  };
  for (const auto& [box, field] : fields) box->Text = box->Name();
  SetupSounding.Drive1.Text = "/";
  SetupSounding_Command2_Click();
  for (const auto& [box, field] : fields) EXPECT_EQ(*field, box->Name());
  EXPECT_EQ(session.SoundingName, "SITE");
  EXPECT_EQ(session.LastDirectory, "/soundings/today");
  EXPECT_EQ(session.LastDrive, "/");
}

TEST_F(AcceptTest, DepthsAreReadWithEitherMarkInEitherLocale) {
  for (const std::int16_t comma : {std::int16_t{0}, std::int16_t{1}}) {
    session.CommaDecimal = comma;
    for (const char* typed : {"1,5", "1.5", " 1.5 "}) {
      Show(SetupSounding);
      SetupSounding.txtStartDepth.Text = typed;
      SetupSounding_Command2_Click();
      EXPECT_EQ(session.StartDepth, 1.5F) << typed << comma;
    }
  }
  EXPECT_TRUE(boxes.texts.empty());
}

TEST_F(AcceptTest, EmptyDepthsAreZero) {
  settings.DepthFormat = 1;
  SetupSounding.txtStartDepth.Text = "";
  SetupSounding_Command2_Click();
  EXPECT_EQ(session.StartDepth, 0);
  EXPECT_FALSE(std::signbit(session.StartDepth)) << "negated or not";
  EXPECT_EQ(session.WaterTable, 0);
}

TEST_F(AcceptTest, RefusesADepthThatIsNoNumber) {
  for (const char* typed : {"abc", "1.5m", "--2", "1.2.3"}) {
    SetupSounding.txtStartDepth.Text = typed;
    SetupSounding_Command2_Click();
    EXPECT_EQ(boxes.texts.back(), std::string("\"") + typed + "\" is not a number.");
    EXPECT_TRUE(SetupSounding.Visible);
  }
}

}  // namespace
}  // namespace penlog
