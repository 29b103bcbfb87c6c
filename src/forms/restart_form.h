// After a sounding: start the program again, or end it.
#pragma once

#include "forms/control.h"
#include "forms/form.h"

namespace penlog {

struct RestartForm : Form {
  RestartForm();

  Label lblQuestion{*this, "lblQuestion", "WOULD YOU LIKE TO RESTART PENLOG?"};
  Button cmdYes{*this, "cmdYes", "YES"};
  Button cmdNo{*this, "cmdNo", "NO"};
};

inline RestartForm frmZOLRestart;

}  // namespace penlog
