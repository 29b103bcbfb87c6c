// The small screens that let the operator choose a port that is not there at start. Each shows a
// list of the ports that exist and the numbers of the other ports in use.
#pragma once

namespace penlog {

struct SpecifyPortsState {
  int ChosenPort = 0;  ///< COM number saved on the one screen of this kind that is open; 0 none
};
inline SpecifyPortsState specify_ports;

/// Shows the screen above the others until it is left; the chosen COM number, 0 when cancelled. The
/// settings are not touched.
int SpecifyTruckInterface();
int SpecifyASCIIOut();
int SpecifyVideoOverlay();

void frmSpecifyTruckInterface_cmdSavePort_Click();
void frmSpecifyTruckInterface_cmdCancel_Click();
void frmSpecifyASCIIOut_cmdSavePort_Click();
void frmSpecifyASCIIOut_cmdCancel_Click();
void frmSpecifyVideoOverlay_cmdSavePort_Click();
void frmSpecifyVideoOverlay_cmdCancel_Click();

}  // namespace penlog
