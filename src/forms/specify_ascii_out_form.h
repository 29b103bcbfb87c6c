// Chooses the serial port of the ASCII output when the one that was set is not there.
#pragma once

#include "forms/control.h"
#include "forms/form.h"
#include "platform/serial_port.h"

namespace penlog {

struct SpecifyASCIIOutForm : Form {
  SpecifyASCIIOutForm();
  void Released() override;

  Label lblChoose{*this, "lblChoose", "ASCII OUT SERIAL PORT:"};
  ComboBox cmbASCIIOutSerialPort{*this,
                                 "cmbASCIIOutSerialPort"};  ///< numbers as text, devices beside
  Label lblConeSerialPortCaption{*this, "lblConeSerialPortCaption", "CONE SERIAL PORT:"};
  Label lblConeSerialPort{*this, "lblConeSerialPort"};
  Label lblTruckInterfaceSerialPortCaption{*this, "lblTruckInterfaceSerialPortCaption",
                                           "TRUCK INTERFACE SERIAL PORT:"};
  Label lblTruckInterfaceSerialPort{*this, "lblTruckInterfaceSerialPort"};
  Label lblVideoOverlaySerialPortCaption{*this, "lblVideoOverlaySerialPortCaption",
                                         "VIDEO OVERLAY SERIAL PORT:"};
  Label lblVideoOverlaySerialPort{*this, "lblVideoOverlaySerialPort"};
  Label lblHint{*this, "lblHint",
                "SELECT A PORT FROM THE DROPDOWN LIST. TO TEST THE PORT, CLICK THE 'TEST PORT' "
                "BUTTON. IF OUTPUT APPEARS ON TERMINAL, THE PROPER PORT HAS BEEN SELECTED"};
  Button cmdTestPort{*this, "cmdTestPort", "TEST PORT"};
  Button cmdSavePort{*this, "cmdSavePort", "SAVE PORT"};
  Button cmdCancel{*this, "cmdCancel", "CANCEL"};

  SerialPort ASCIIOutComm{"frmSpecifyASCIIOut.ASCIIOutComm"};
};

inline SpecifyASCIIOutForm frmSpecifyASCIIOut;

}  // namespace penlog
