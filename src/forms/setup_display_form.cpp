#include "forms/setup_display_form.h"

namespace penlog {

SetupDisplayForm::SetupDisplayForm() : Form("SetupDisplay", "DISPLAY SETUP") {
  Hold(frmSelectPPType, {&lblSelectPPType, &cmdU1PPFilter, &cmdU2PPFilter, &cmdDoNotRecordPP});
  frmSelectPPType.Visible = false;
  for (int channel = 1; channel <= 30; ++channel) {
    chkRecordChan(channel).Visible = false;
    chkGraphChan(channel).Visible = false;
  }
  ClosingEnds = true;
  KeepFirstValues();
}

void SetupDisplayForm::Released() {
  Clearing = false;
  Filter = FilterPlace::NotSaid;
  NothingSelectedMessage.clear();
}

}  // namespace penlog
