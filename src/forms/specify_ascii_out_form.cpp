#include "forms/specify_ascii_out_form.h"

namespace penlog {

SpecifyASCIIOutForm::SpecifyASCIIOutForm() : Form("frmSpecifyASCIIOut", "SPECIFY ASCII OUT PORT") {
  KeepFirstValues();
}

}  // namespace penlog
