// The small screens that let the operator choose a port that is not there at start. Each shows a
// list of the ports that exist and the numbers of the other ports in use.
#pragma once

#include <cstdint>

namespace penlog {

struct SpecifyPortsState {
  int ChosenPort = 0;  ///< COM number saved on the one screen of this kind that is open; 0 none
  std::int16_t TestUnderWay = 0;  ///< -1 a test holds its port
};
inline SpecifyPortsState specify_ports;

/// Shows the screen above the others until it is left; the chosen COM number, 0 when cancelled. The
/// settings are not touched.
int SpecifyTruckInterface();
int SpecifyASCIIOut();
int SpecifyVideoOverlay();

/// Opens the chosen port and shows its lines; a port that refuses is told.
void frmSpecifyTruckInterface_cmbTruckInterfaceSerialPort_Click();
void frmSpecifyTruckInterface_EncoderComm_OnComm(int comm_event);
void frmSpecifyTruckInterface_cmdSavePort_Click();
void frmSpecifyTruckInterface_cmdCancel_Click();
void frmSpecifyASCIIOut_cmbASCIIOutSerialPort_Click();
/// Opens the chosen port, sends the test line and closes it; a port that refuses is told.
void frmSpecifyASCIIOut_cmdTestPort_Click();
void frmSpecifyASCIIOut_cmdSavePort_Click();
void frmSpecifyASCIIOut_cmdCancel_Click();
void frmSpecifyVideoOverlay_cmbVideoOverlaySerialPort_Click();
/// The same with the overlay's screen, which takes more than two seconds; leaving ends it.
void frmSpecifyVideoOverlay_cmdTestPort_Click();
void frmSpecifyVideoOverlay_cmdSavePort_Click();
void frmSpecifyVideoOverlay_cmdCancel_Click();

}  // namespace penlog
