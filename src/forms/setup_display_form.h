// Which channels are recorded and which are shown in the strip charts.
#pragma once

#include <string>

#include "forms/control.h"
#include "forms/form.h"

namespace penlog {

/// What the operator said of a single pore pressure transducer's filter.
enum class FilterPlace { NotSaid, Face, BehindTip };

struct SetupDisplayForm : Form {
  SetupDisplayForm();
  void Released() override;

  Label lblRecordCaption{*this, "lblRecordCaption", "CHANNELS TO RECORD"};
  ControlArray<CheckBox> chkRecordChan{*this, "chkRecordChan", 1, 30};
  Label lblGraphCaption{*this, "lblGraphCaption", "CHANNELS TO GRAPH"};
  ControlArray<CheckBox> chkGraphChan{*this, "chkGraphChan", 1, 30};
  Label lblGraph1Caption{*this, "lblGraph1Caption", "GRAPH 1:"};
  Label lblGraph1Selection{*this, "lblGraph1Selection"};
  Label lblGraph2Caption{*this, "lblGraph2Caption", "GRAPH 2:"};
  Label lblGraph2Selection{*this, "lblGraph2Selection"};
  Label lblGraph3Caption{*this, "lblGraph3Caption", "GRAPH 3:"};
  Label lblGraph3Selection{*this, "lblGraph3Selection"};
  Label lblGraph4Caption{*this, "lblGraph4Caption", "GRAPH 4:"};
  Label lblGraph4Selection{*this, "lblGraph4Selection"};
  Button cmdClearSelection{*this, "cmdClearSelection", "CLEAR SELECTION"};
  Button cmdPrevious{*this, "cmdPrevious", "PREVIOUS"};
  Button cmdDone{*this, "cmdDone", "DONE"};

  Frame frmSelectPPType{*this, "frmSelectPPType", "PP CONFIGURATION"};
  Label lblSelectPPType{*this, "lblSelectPPType",
                        "SINGLE PP TRANSDUCER DETECTED.  PLEASE CHOOSE PP CONFIGURATION"};
  Button cmdU1PPFilter{*this, "cmdU1PPFilter", "U1 - FACE MOUNTED PP FILTER"};
  Button cmdU2PPFilter{*this, "cmdU2PPFilter", "U2 - PP FILTER BEHIND THE TIP"};
  Button cmdDoNotRecordPP{*this, "cmdDoNotRecordPP", "DO NOT RECORD PP DATA"};

  /// Up while the program itself sets graph boxes: a box then doesn't act on the slots.
  bool Clearing = false;
  FilterPlace Filter = FilterPlace::NotSaid;  ///< names its channel in the selection
  std::string NothingSelectedMessage;         ///< set at the load
};

inline SetupDisplayForm SetupDisplay;

}  // namespace penlog
