// Creates a folder below the one that the sounding's setup stands in.
#pragma once

namespace penlog {

void frmCreateNewDirectory_Load();
/// CREATE DIRECTORY.
void frmCreateNewDirectory_Command1_Click();
/// CANCEL.
void frmCreateNewDirectory_Command2_Click();

}  // namespace penlog
