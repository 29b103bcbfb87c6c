#include "forms/specify_ascii_out_form.h"

namespace penlog {

SpecifyASCIIOutForm::SpecifyASCIIOutForm() : Form("frmSpecifyASCIIOut", "SPECIFY ASCII OUT PORT") {
  cmdTestPort.Enabled = false;
  KeepFirstValues();
}

void SpecifyASCIIOutForm::Released() {
  ASCIIOutComm.Close();
}

}  // namespace penlog
