#include "forms/specify_video_overlay_form.h"

namespace penlog {

SpecifyVideoOverlayForm::SpecifyVideoOverlayForm()
    : Form("frmSpecifyVideoOverlay", "SPECIFY VIDEO OVERLAY PORT") {
  cmdTestPort.Enabled = false;
  KeepFirstValues();
}

void SpecifyVideoOverlayForm::Released() {
  VideoOverlayComm.Close();
}

}  // namespace penlog
