// One strip chart at large size, and its value axis set by hand.
#pragma once

#include "forms/control.h"
#include "forms/form.h"

namespace penlog {

struct EnlargedGraphForm : Form {
  EnlargedGraphForm();

  Label lblGraphLabel{*this, "lblGraphLabel"};
  Label lblGraphValue{*this, "lblGraphValue"};  ///< value and unit
  Label lblGraphYmin{*this, "lblGraphYmin"};
  Label lblGraphYmax{*this, "lblGraphYmax"};
  Picture pctGraph{*this, "pctGraph"};
  Label lblGraphxMin{*this, "lblGraphxMin"};
  Label lblGraphxMax{*this, "lblGraphxMax"};
  Frame frmKey1{*this, "frmKey1"};
  Label lblKeya{*this, "lblKeya"};
  Label lblKeyb{*this, "lblKeyb"};
  Label lblKeyc{*this, "lblKeyc"};

  Frame frmSetXAxis{*this, "frmSetXAxis", "SET X AXIS"};
  Label lblXmin{*this, "lblXmin", "X MIN"};
  TextBox txtXmin{*this, "txtXmin"};
  Label lblXmax{*this, "lblXmax", "X MAX"};
  TextBox txtXmax{*this, "txtXmax"};
  Button cmdOK{*this, "cmdOK", "OK"};
  Button cmdResetScale{*this, "cmdResetScale", "RESET SCALE"};

  Button Command1{*this, "Command1", "RETURN"};
};

inline EnlargedGraphForm EnlargedGraph;

}  // namespace penlog
