// The report page on what the cone and its modules say of themselves.
#pragma once

#include "forms/control.h"
#include "forms/form.h"

namespace penlog {

struct ConeSettingsForm : Form {
  ConeSettingsForm();

  /// The report, a line each; columns apart by at least two blanks.
  Label lblReport{*this, "lblReport"};
  Button cmdClose{*this, "cmdClose", "CLOSE"};
};

inline ConeSettingsForm frmConeSettings;

}  // namespace penlog
