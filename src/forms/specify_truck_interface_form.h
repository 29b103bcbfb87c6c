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
  Label lblHint{
      *this, "lblHint",
      "SELECT A PORT FROM THE DROPDOWN LIST. MOVE THE RAM OR ACTIVATE THE SWITCHES. IF THE "
      "LAMPS REACT, THE PROPER PORT HAS BEEN SELECTED"};
  // The lines that the truck interface uses, live.
  Shape shpDCD{*this, "shpDCD"};
  Label lblDCD{*this, "lblDCD", "Depth / Chan A"};
  Shape shpCTS{*this, "shpCTS"};
  Label lblCTS{*this, "lblCTS", "Press / Chan B"};
  Shape shpDSR{*this, "shpDSR"};
  Label lblDSR{*this, "lblDSR", "Clamp"};
  Shape shpDTR{*this, "shpDTR"};
  Label lblDTR{*this, "lblDTR", "Trigger"};
  Button cmdSavePort{*this, "cmdSavePort", "SAVE PORT"};
  Button cmdCancel{*this, "cmdCancel", "CANCEL"};

  SerialPort EncoderComm{"frmSpecifyTruckInterface.EncoderComm"};
};

inline SpecifyTruckInterfaceForm frmSpecifyTruckInterface;

}  // namespace penlog
