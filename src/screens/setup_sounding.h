// The sounding's setup: fills the screen from the previous sounding, checks the file name, and
// takes the fields into the session.
#pragma once

#include <string>

namespace penlog {

/// What the screen remembers besides its controls.
struct SetupSoundingState {
  std::string Directory;           ///< the chosen folder
  int BackFlag = 0;                ///< -1: reopened from the display setup, the fields stand
  std::string GPSNotFoundMessage;  ///< set at the load, as the next
  std::string LostSatelliteMessage;
};
inline SetupSoundingState setup_sounding;

void SetupSounding_Load();
void SetupSounding_Drive1_Click();
/// An entry was chosen: ".." or a folder below.
void SetupSounding_Dir1_Click();
/// A path was given; one that begins at no root goes on from the chosen folder.
void SetupSounding_Dir1_Change();
void SetupSounding_File1_Click();
void SetupSounding_txtFileName_Change();
/// Job or hole number: with the naming by job and hole the file name follows.
void SetupSounding_txtJobOrHole_Change();
/// The choice is saved with the settings, for the soundings to come.
void SetupSounding_cmbFileNaming_Click();
/// CREATE NEW DIRECTORY.
void SetupSounding_Command1_Click();

/// Goes into an existing folder: the lists and the path shown follow.
void ChooseDirectory(const std::string& path);

/// The next name in the automatic numbering: "X(007)" gives "X(008)", "(999)" gives "(000)"; a name
/// without a number gets "(001)", one of 5 characters or fewer becomes "CPT TEST(001)".
std::string NextSoundingName(const std::string& name);

/// The first character of the name that no file name may hold; empty if all may stand.
std::string InvalidFileNameCharacter(const std::string& name);

}  // namespace penlog
