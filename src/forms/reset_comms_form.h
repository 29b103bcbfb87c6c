// Gives running links other ports, without stopping what runs.
#pragma once

#include "forms/control.h"
#include "forms/form.h"

namespace penlog {

struct ResetCommsForm : Form {
  ResetCommsForm();

  Label lblNewPort{*this, "lblNewPort", "NEW PORT"};
  Label lblInUse{*this, "lblInUse", "IN USE"};
  Label lblConeSerialPortCaption{*this, "lblConeSerialPortCaption", "CONE SERIAL PORT:"};
  Label lblConeSerialPort{*this, "lblConeSerialPort"};
  Label lblTruckInterfaceSerialPortCaption{*this, "lblTruckInterfaceSerialPortCaption",
                                           "TRUCK INTERFACE SERIAL PORT:"};
  ComboBox cmbTruckInterfaceSerialPort{*this, "cmbTruckInterfaceSerialPort"};
  Label lblTruckInterfaceSerialPort{*this, "lblTruckInterfaceSerialPort"};
  Label lblASCIIOutSerialPortCaption{*this, "lblASCIIOutSerialPortCaption",
                                     "ASCII OUT SERIAL PORT:"};
  ComboBox cmbASCIIOutSerialPort{*this, "cmbASCIIOutSerialPort"};
  Label lblASCIIOutSerialPort{*this, "lblASCIIOutSerialPort"};
  Label lblVideoOverlaySerialPortCaption{*this, "lblVideoOverlaySerialPortCaption",
                                         "VIDEO OVERLAY SERIAL PORT:"};
  ComboBox cmbVideoOverlaySerialPort{*this, "cmbVideoOverlaySerialPort"};
  Label lblVideoOverlaySerialPort{*this, "lblVideoOverlaySerialPort"};
  Button cmdOK{*this, "cmdOK", "OK"};
  Button cmdCancel{*this, "cmdCancel", "CANCEL"};
};

inline ResetCommsForm frmResetComms;

}  // namespace penlog
