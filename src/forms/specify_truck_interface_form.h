// Chooses the serial port of the truck interface when the one that was set is not there.
#pragma once

#include "forms/control.h"
#include "forms/form.h"
#include "platform/serial_port.h"

namespace penlog {

struct SpecifyTruckInterfaceForm : Form {
  SpecifyTruckInterfaceForm();
  void Released() override;

  Label lblChoose{*this, "lblChoose", "TRUCK INTERFACE SERIAL PORT:"};
  ComboBox cmbTruckInterfaceSerialPort{
      *this, "cmbTruckInterfaceSerialPort"};  ///< numbers as text, devices beside
  Label lblConeSerialPortCaption{*this, "lblConeSerialPortCaption", "CONE SERIAL PORT:"};
  Label lblConeSerialPort{*this, "lblConeSerialPort"};
  Label lblASCIIOutSerialPortCaption{*this, "lblASCIIOutSerialPortCaption",
                                     "ASCII OUT SERIAL PORT:"};
  Label lblASCIIOutSerialPort{*this, "lblASCIIOutSerialPort"};
  Label lblVideoOverlaySerialPortCaption{*this, "lblVideoOverlaySerialPortCaption",
                                         "VIDEO OVERLAY SERIAL PORT:"};
  Label lblVideoOverlaySerialPort{*this, "lblVideoOverlaySerialPort"};
  Button cmdSavePort{*this, "cmdSavePort", "SAVE PORT"};
  Button cmdCancel{*this, "cmdCancel", "CANCEL"};

  SerialPort EncoderComm{"frmSpecifyTruckInterface.EncoderComm"};
};

inline SpecifyTruckInterfaceForm frmSpecifyTruckInterface;

}  // namespace penlog
