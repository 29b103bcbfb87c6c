// Serial adapters in a truck come and go. Each exchange of the console looks first which of them
// are there, keeps the panels of the status window, and opens again what has come back.
//
// Fault model: a port vanishes and returns under its number, also between two looks, so that only
// the open port object knows of it; it may be there and refuse to open for a while, at once or, on
// the network, after a wait; two adapters may come back with their numbers swapped.
#pragma once

#include <string_view>

namespace penlog {

/// Looks whether COM `number` exists and notes it in `PortPresent`.
bool ProbePort(int number);
/// Fills `PortPresent` for 1 to 255; returns how many there are.
int ProbeAllPorts();

/// The truck's, the ASCII, the overlay and the cone's port in turn. A missing one sets its lost
/// flag and its warning panel and raises the status window. One that is back is opened with its own
/// settings, the truck's lines are read without counting, and only then its panel says OK; while it
/// refuses, it counts as lost; one that took its time to refuse is left alone for a while, and as
/// long as rows are coming. `ConePortLost` follows the cone's port. The overlay's port is
/// probed while it is lost alone; else its entry in `PortPresent` counts. Each new loss brings a
/// status window that the operator has placed to the front again.
void SupervisePorts();

/// The same before a scan for the cone: the overlay is left out, and `ConePortLost` stays set until
/// the scan has found the cone.
void SuperviseBeforeScan();

/// The cone answers under the number of the truck interface, which had a port of its own: where the
/// truck's lines are now, nobody knows. Its port counts as lost until it is given another number.
void LoseTrucksNumber();
/// Whether that is so: the lines of the shared port are then not the truck's.
bool ConeTookTheTrucksNumber();

/// Puts the status window on top, unless it stands for a loss already.
void RaiseWarning();
/// When nothing is lost and the operator doesn't hold it, starts the timer that takes the status
/// window away.
void LowerWarningIfClear();

/// Panels of the cone's port and its modules.
void ShowConeConnected();
void ShowModulesLost();

/// `ConeComm` on COM `number`, closed before if it was open. Where it carries the truck's lines
/// too, a latched quit is put out again, and on the truck's own number the lines are read without
/// counting. A `RuntimeFault` when it doesn't open.
void OpenConePort(int number);

constexpr std::string_view kConeSettings = "19200,N,8,1";
/// Of the truck's port while it carries no overlay.
constexpr const char* kTruckSettings = "19200,N,8,1";
/// What the camera makes of them (`LumenProbePresent`): below 2 those, at 2 the overlay's, which
/// goes out on the same port then; above that empty: the port keeps what it had.
const char* TruckSettings();

}  // namespace penlog
