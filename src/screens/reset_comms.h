// Reset Comm Ports: gives the running truck interface, ASCII output and video overlay other ports.
// The screen leaves requests; the main loop serves them with its next pass.
//
// Nothing here waits: each question is posted and its answer is an event, so that readings and rows
// go on behind it. Fault model: ports come and go while the screen and its questions are open.
#pragma once

#include <string>
#include <vector>

namespace penlog {

/// What stands chosen in one list.
struct PortChoice {
  std::string Text;     ///< as accepted last: where a refused selection goes back to
  bool Chosen = false;  ///< by the operator, also where it is what runs: OK then asks for it
};

struct ResetCommsState {
  std::vector<int> Ports;  ///< COM numbers that existed when the lists were filled
  PortChoice Truck;
  PortChoice ASCIIOut;
  PortChoice Overlay;
};
inline ResetCommsState reset_comms;

/// What a free port must not be, as the lists show it.
struct PortsTaken {
  int cone_port = 0;                ///< COM number
  std::vector<std::string> chosen;  ///< entries of the lists that hold a port
};
/// The first entry of a list that is a port and is not taken, as its index; -1 when none is.
/// Entries that are no number are no ports.
int FreePortIn(const std::vector<std::string>& list, const PortsTaken& taken);

/// Opens the screen with what runs now; one that is open comes to the front as it is.
void OpenResetComms();

void frmResetComms_Load();
void frmResetComms_cmbTruckInterfaceSerialPort_Click();
void frmResetComms_cmbASCIIOutSerialPort_Click();
void frmResetComms_cmbVideoOverlaySerialPort_Click();
/// Hands what was chosen to the main loop. A chosen port that is not there any more, or on which
/// the cone answers meanwhile, keeps the screen open, and the lists show again what runs.
void frmResetComms_cmdOK_Click();
void frmResetComms_cmdCancel_Click();

}  // namespace penlog
