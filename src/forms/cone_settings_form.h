// The report page on what the cone and its modules say of themselves.
#pragma once

#include <functional>

#include "forms/control.h"
#include "forms/form.h"

namespace penlog {

struct ConeSettingsForm : Form {
  ConeSettingsForm();

  /// The report, a line each; columns apart by at least two blanks.
  Label lblReport{*this, "lblReport"};
  Button cmdClose{*this, "cmdClose", "CLOSE"};

  /// Enters the console's loop, which doesn't return; filled by the program's wiring.
  std::function<void()> RunMainloop;
};

inline ConeSettingsForm frmConeSettings;

}  // namespace penlog
