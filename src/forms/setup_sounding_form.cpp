#include "forms/setup_sounding_form.h"

namespace penlog {

SetupSoundingForm::SetupSoundingForm() : Form("SetupSounding", "SOUNDING SETUP") {
  cmbFileNaming.List = {"Manual", "Auto-Increment", "Auto-Job&Hole#"};
  cmbFileNaming.ListIndex = 0;
  cmbFileNaming.Text = cmbFileNaming.List.front();
  for (Control* control :
       std::initializer_list<Control*>{&cmdGetGPS, &cmdEnterGPS, &lblLattitude, &txtLattitude,
                                       &lblLongitude, &txtLongitude, &lblAltitude, &txtAltitude}) {
    control->Visible = false;
    control->Enabled = false;
  }
  ClosingEnds = true;
  KeepFirstValues();
}

}  // namespace penlog
