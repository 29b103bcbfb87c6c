#include "forms/reset_comms_form.h"

namespace penlog {

ResetCommsForm::ResetCommsForm() : Form("frmResetComms", "Reset Comm Ports") {
  KeepFirstValues();
}

}  // namespace penlog
