#include "screens/accept_sounding.h"

#include <array>
#include <cmath>

#include "core/data_directory.h"
#include "core/message.h"
#include "core/session.h"
#include "core/settings.h"
#include "forms/setup_display_form.h"
#include "forms/setup_sounding_form.h"
#include "platform/clock.h"
#include "platform/disk.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/texts.h"
#include "screens/setup_sounding.h"
#include "screens/typed_depth.h"

namespace penlog {

namespace {

constexpr std::size_t kLongestName = 240;  ///< bytes; with ".cpt.new" what any disk takes
constexpr float kDeepest = 12'000;         ///< m; the columns and the steps of a float end there

struct TakenName {
  const char* extension;
  const char* message;
};

constexpr std::array kTakenNames = {
    TakenName{".cpt",
              "A sounding file exists with the same name.  Please select a different file name."},
    TakenName{".dis",
              "A dissipation file exists with the same name.  Please select a different "
              "file name."},
    TakenName{".sei",
              "A seismic file exists with the same name.  Please select a different file name."},
};

std::string WithoutCpt(const std::string& name) {
  if (CharacterCount(name) <= 4 || !EndsWithNoCase(name, ".cpt")) return name;
  return name.substr(0, name.size() - 4);
}

std::string ProtectedWarning() {
  return "WARNING: NON-ADMIN USERS CANNOT WRITE TO THE ROOT OR PROGRAM FILES DIRECTORIES.  PLEASE "
         "SELECT ANOTHER DIRECTORY, SUCH AS 'C:\\USERS\\" +
         TheHost().UserName() +
         "\\MY DOCUMENTS' DIRECTORIES OR A DIRECTORY CREATED BY THE CURRENT USER.";
}

}  // namespace

bool IsProtectedDirectory(const std::string& directory) {
  return IsRoot(directory) || ToUpper(directory).find("PROGRAM FILES") != std::string::npos;
}

std::string WhyNotAccepted() {
  const std::string& name = SetupSounding.txtFileName.Text;
  const std::string path = SetupSounding.lblFileName.Caption;
  if (Trim(name).empty()) return "Please enter a filename";
  if (name.size() > kLongestName) return "The file name is too long.";
  for (const auto& taken : kTakenNames) {
    if (TheDisk().FileExists(path + taken.extension)) return taken.message;
  }
  if (!TheDisk().FolderExists(setup_sounding.Directory)) {
    return "DIRECTORY NOT FOUND: " + setup_sounding.Directory;
  }
  const std::string not_writable = WhyNotWritable(setup_sounding.Directory);
  if (!not_writable.empty()) return "THE DIRECTORY CANNOT BE WRITTEN.  " + not_writable;
  for (const TextBox* box : {&SetupSounding.txtStartDepth, &SetupSounding.txtWaterTable}) {
    const std::string shown = "\"" + Left(box->Text, 60) + "\"";
    if (!IsNumberOrEmpty(box->Text)) return shown + " is not a number.";
    if (std::abs(DepthOfText(box->Text)) > kDeepest) return shown + " is no depth.";
  }
  return {};
}

void TakeSoundingFields() {
  constexpr std::array<const char*, 6> kExtensions = {".cpt", ".dis", ".smc",
                                                      ".tim", ".res", ".mp4"};
  for (std::size_t i = 0; i < kExtensions.size(); ++i) {
    session.SoundingFiles[i + 1] = SetupSounding.lblFileName.Caption + kExtensions[i];
  }
  session.LastDirectory = setup_sounding.Directory;
  session.LastDrive = SetupSounding.Drive1.Text;
  session.SoundingName = SetupSounding.txtFileName.Text;
  session.OperatorName = SetupSounding.txtOperator.Text;
  session.ConeNumber = SetupSounding.txtConeNumber.Text;
  session.SoundingLocation = SetupSounding.txtLocation.Text;
  session.JobNumber = SetupSounding.txtJobNumber.Text;
  session.HoleNumber = SetupSounding.txtHoleNumber.Text;
  session.SoundingDateTime = DateTimeText(TheClock().Wall());
  session.HeaderNote = SetupSounding.txtHeader.Text;
  session.FooterNote1 = SetupSounding.txtFooter1.Text;
  session.FooterNote2 = SetupSounding.txtFooter2.Text;
  session.StartDepth = DepthOfText(SetupSounding.txtStartDepth.Text);
  session.WaterTable = DepthOfText(SetupSounding.txtWaterTable.Text);
}

void SetupSounding_Command2_Click() {
  SetText(SetupSounding.txtFileName, WithoutCpt(SetupSounding.txtFileName.Text));
  const std::string invalid = InvalidFileNameCharacter(SetupSounding.txtFileName.Text);
  if (!invalid.empty()) {
    Tell("\"" + invalid + "\" is an invalid filename character.");
    return;
  }
  if (IsProtectedDirectory(setup_sounding.Directory)) Tell(ProtectedWarning());
  const std::string why = WhyNotAccepted();
  if (!why.empty()) {
    Tell(why);
    return;
  }
  TakeSoundingFields();
  Hide(SetupSounding);
  Show(SetupDisplay);
}

}  // namespace penlog
