#include "screens/create_directory.h"

#include <gtest/gtest.h>

#include "forms/create_new_directory_form.h"
#include "forms/setup_sounding_form.h"
#include "platform/files.h"
#include "screens/setup_sounding.h"
#include "support/boxes.h"
#include "support/world.h"

namespace penlog {
namespace {

class CreateDirectoryTest : public testing::Test {
 protected:
  CreateDirectoryTest() {
    world.disk.PutFolder("/soundings/today");
    SetupSounding.Drive1.Text = "/";
    ChooseDirectory("/soundings");
    frmCreateNewDirectory.Load = frmCreateNewDirectory_Load;
    Show(frmCreateNewDirectory);
  }
  ~CreateDirectoryTest() override { setup_sounding = SetupSoundingState{}; }

  std::string Create(const std::string& name) {
    frmCreateNewDirectory.txtNewDirectoryName.Text = name;
    frmCreateNewDirectory_Command1_Click();
    return boxes.texts.back();
  }

  World world;
  BoxAnswerer boxes;
};

TEST_F(CreateDirectoryTest, ShowsWhereItStands) {
  EXPECT_EQ(frmCreateNewDirectory.lblDirectory.Caption, "/soundings");
  EXPECT_EQ(frmCreateNewDirectory.lblDrive.Caption, "/");
}

TEST_F(CreateDirectoryTest, CreatesWithBlanksStrippedAndGoesThere) {
  EXPECT_EQ(Create("  harbour east "), "SUCCESSFULLY CREATED harbour east");
  EXPECT_TRUE(world.disk.FolderExists("/soundings/harbour east"));
  EXPECT_EQ(setup_sounding.Directory, "/soundings/harbour east");
  EXPECT_EQ(SetupSounding.Dir1.Text, "/soundings/harbour east");
  EXPECT_FALSE(frmCreateNewDirectory.Visible);
}

TEST_F(CreateDirectoryTest, WhatIsSyncedInTheNewDirectoryOutlivesAPowerLoss) {
  Create("today too");
  AppendToFile("/soundings/today too/s.cpt", "row\r\n");
  world.disk.LosePower();
  EXPECT_TRUE(world.disk.FileExists("/soundings/today too/s.cpt"));
}

TEST_F(CreateDirectoryTest, RefusesBadNames) {
  EXPECT_EQ(Create("   "), "NO DIRECTORY NAME SPECIFIED");
  EXPECT_EQ(Create("today"), "DIRECTORY ALREADY EXISTS.");
  EXPECT_EQ(Create(".."), "DIRECTORY ALREADY EXISTS.");
  for (const char character : {'\\', '/', ':', '*', '?', '<', '>', '|'}) {
    EXPECT_EQ(Create(std::string("a") + character), std::string("CANNOT CREATE DIRECTORY: \"") +
                                                        character + "\" IS AN INVALID CHARACTER.");
  }
  EXPECT_TRUE(frmCreateNewDirectory.Visible);
  EXPECT_EQ(setup_sounding.Directory, "/soundings");
}

TEST_F(CreateDirectoryTest, ADoubleQuoteIsNotAmongTheRefusedCharacters) {
  EXPECT_EQ(Create("a\"b"), "SUCCESSFULLY CREATED a\"b");
}

TEST_F(CreateDirectoryTest, TellsWhyTheDiskRefused) {
  world.disk.SetReadOnly("/soundings");
  EXPECT_EQ(Create("new"), "CANNOT CREATE DIRECTORY: /soundings/new: Permission denied");
  EXPECT_TRUE(frmCreateNewDirectory.Visible);
}

}  // namespace
}  // namespace penlog
