#include "forms/restart_form.h"

namespace penlog {

RestartForm::RestartForm() : Form("frmZOLRestart", "RESTART PENLOG") {
  ClosingEnds = true;
  KeepFirstValues();
}

}  // namespace penlog
