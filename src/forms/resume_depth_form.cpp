#include "forms/resume_depth_form.h"

namespace penlog {

ResumeDepthForm::ResumeDepthForm() : Form("frmResumeDepthStatus", "RESUME DEPTH STATUS") {
  for (Label* label : {&lblTargetResumeDepth, &lblCurrentResumeDepth, &lblDifference}) {
    label->Bold = true;
  }
  KeepFirstValues();
}

}  // namespace penlog
