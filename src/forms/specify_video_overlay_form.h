// Chooses the serial port of the video overlay when the one that was set is not there.
#pragma once

#include "forms/control.h"
#include "forms/form.h"
#include "platform/serial_port.h"

namespace penlog {

struct SpecifyVideoOverlayForm : Form {
  SpecifyVideoOverlayForm();
  void Released() override;

  Label lblChoose{*this, "lblChoose", "VIDEO OVERLAY SERIAL PORT:"};
  ComboBox cmbVideoOverlaySerialPort{
      *this, "cmbVideoOverlaySerialPort"};  ///< numbers as text, devices beside
  Label lblConeSerialPortCaption{*this, "lblConeSerialPortCaption", "CONE SERIAL PORT:"};
  Label lblConeSerialPort{*this, "lblConeSerialPort"};
  Label lblTruckInterfaceSerialPortCaption{*this, "lblTruckInterfaceSerialPortCaption",
                                           "TRUCK INTERFACE SERIAL PORT:"};
  Label lblTruckInterfaceSerialPort{*this, "lblTruckInterfaceSerialPort"};
  Label lblASCIIOutSerialPortCaption{*this, "lblASCIIOutSerialPortCaption",
                                     "ASCII OUT SERIAL PORT:"};
  Label lblASCIIOutSerialPort{*this, "lblASCIIOutSerialPort"};
  Label lblHint{*this, "lblHint",
                "SELECT A PORT FROM THE DROPDOWN LIST. TO TEST THE PORT, CLICK THE 'TEST PORT' "
                "BUTTON. IF AN OVERLAY APPEARS ON THE VIDEO SCREEN, THE PROPER PORT HAS BEEN "
                "SELECTED"};
  Button cmdTestPort{*this, "cmdTestPort", "TEST PORT"};
  Button cmdSavePort{*this, "cmdSavePort", "SAVE PORT"};
  Button cmdCancel{*this, "cmdCancel", "CANCEL"};

  SerialPort VideoOverlayComm{"frmSpecifyVideoOverlay.VideoOverlayComm"};
};

inline SpecifyVideoOverlayForm frmSpecifyVideoOverlay;

}  // namespace penlog
