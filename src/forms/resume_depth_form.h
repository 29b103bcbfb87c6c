// While a resumed sounding's rods go down again: the depth at which it goes on, and the depth now.
#pragma once

#include "forms/control.h"
#include "forms/form.h"

namespace penlog {

struct ResumeDepthForm : Form {
  ResumeDepthForm();

  Label lblTargetCaption{*this, "lblTargetCaption", "RESUME DEPTH:"};
  Label lblTargetResumeDepth{*this, "lblTargetResumeDepth"};
  Label lblCurrentCaption{*this, "lblCurrentCaption", "CURRENT DEPTH:"};
  Label lblCurrentResumeDepth{*this, "lblCurrentResumeDepth"};
  Label lblDifferenceCaption{*this, "lblDifferenceCaption", "STILL TO GO:"};
  Label lblDifference{*this, "lblDifference"};  ///< below 0 the resume depth was passed
  Button lblDepthReached{*this, "lblDepthReached", "DEPTH REACHED"};
};

inline ResumeDepthForm frmResumeDepthStatus;

}  // namespace penlog
