// Chooses the serial port of the video overlay when the one that was set is not there.
#pragma once

#include "forms/control.h"
#include "forms/form.h"

namespace penlog {

struct SpecifyVideoOverlayForm : Form {
  SpecifyVideoOverlayForm();

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
  Button cmdSavePort{*this, "cmdSavePort", "SAVE PORT"};
  Button cmdCancel{*this, "cmdCancel", "CANCEL"};
};

inline SpecifyVideoOverlayForm frmSpecifyVideoOverlay;

}  // namespace penlog
