// Creates a folder for soundings below the one that is chosen.
#pragma once

#include "forms/control.h"
#include "forms/form.h"

namespace penlog {

struct CreateNewDirectoryForm : Form {
  CreateNewDirectoryForm();

  Label lblDriveCaption{*this, "lblDriveCaption", "CURRENT DRIVE:"};
  Label lblDrive{*this, "lblDrive"};
  Label lblDirectoryCaption{*this, "lblDirectoryCaption", "CURRENT DIRECTORY:"};
  Label lblDirectory{*this, "lblDirectory"};
  Label lblNewDirectoryName{*this, "lblNewDirectoryName", "NEW DIRECTORY NAME:"};
  TextBox txtNewDirectoryName{*this, "txtNewDirectoryName"};
  Button Command1{*this, "Command1", "CREATE DIRECTORY"};
  Button Command2{*this, "Command2", "CANCEL"};
};

inline CreateNewDirectoryForm frmCreateNewDirectory;

}  // namespace penlog
