#include "forms/specify_truck_interface_form.h"

namespace penlog {

SpecifyTruckInterfaceForm::SpecifyTruckInterfaceForm()
    : Form("frmSpecifyTruckInterface", "SPECIFY TRUCK INTERFACE PORT") {
  KeepFirstValues();
}

void SpecifyTruckInterfaceForm::Released() {
  EncoderComm.Close();
}

}  // namespace penlog
