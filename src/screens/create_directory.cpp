#include "screens/create_directory.h"

#include <string>

#include "core/message.h"
#include "forms/create_new_directory_form.h"
#include "forms/setup_sounding_form.h"
#include "platform/disk.h"
#include "platform/files.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"
#include "screens/setup_sounding.h"

namespace penlog {

namespace {

/// Why the name can't be used; empty if it can. A double quote is not among the refused
/// characters of this screen.
std::string NameFault(const std::string& name) {
  if (name.empty()) return "NO DIRECTORY NAME SPECIFIED";
  for (const char character : {'\\', '/', ':', '*', '?', '<', '>', '|'}) {
    if (name.find(character) != std::string::npos) {
      return std::string("CANNOT CREATE DIRECTORY: \"") + character + "\" IS AN INVALID CHARACTER.";
    }
  }
  if (HasControlCharacter(name)) {
    return "CANNOT CREATE DIRECTORY: \"(control character)\" IS AN INVALID CHARACTER.";
  }
  const std::string path = JoinPath(setup_sounding.Directory, name);
  if (name == "." || name == ".." || TheDisk().FolderExists(path) || TheDisk().FileExists(path)) {
    return "DIRECTORY ALREADY EXISTS.";
  }
  return {};
}

}  // namespace

void frmCreateNewDirectory_Load() {
  frmCreateNewDirectory.lblDrive.Caption = SetupSounding.Drive1.Text;
  frmCreateNewDirectory.lblDirectory.Caption = setup_sounding.Directory;
}

void frmCreateNewDirectory_Command1_Click() {
  const std::string name(Trim(frmCreateNewDirectory.txtNewDirectoryName.Text));
  const std::string fault = NameFault(name);
  if (!fault.empty()) {
    Tell(fault);
    return;
  }
  const std::string path = JoinPath(setup_sounding.Directory, name);
  try {
    MakeWholeFolder(path);
  } catch (const RuntimeFault& refused) {
    Tell(std::string("CANNOT CREATE DIRECTORY: ") + refused.what());
    return;
  }
  Tell("SUCCESSFULLY CREATED " + name);
  ChooseDirectory(path);
  Unload(frmCreateNewDirectory);
}

void frmCreateNewDirectory_Command2_Click() {
  Unload(frmCreateNewDirectory);
}

}  // namespace penlog
