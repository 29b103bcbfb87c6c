#include "forms/create_new_directory_form.h"

namespace penlog {

CreateNewDirectoryForm::CreateNewDirectoryForm()
    : Form("frmCreateNewDirectory", "CREATE NEW DIRECTORY") {
  KeepFirstValues();
}

}  // namespace penlog
