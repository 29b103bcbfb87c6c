#include "forms/restart_form.h"

namespace penlog {

RestartForm::RestartForm() : Form("frmZOLRestart", "RESTART PENLOG") {
  KeepFirstValues();
}

}  // namespace penlog
