// The two scans for a cone that is not where it was: an adapter that lost power comes back under
// another number.
//
// Fault model: ports that refuse to open, that answer with something else, or not at all. Each is
// passed over; the status window is the only report. The cone may come back under the number of the
// truck interface.
#pragma once

namespace penlog {

/// One scan of the COM numbers 1 to 255 on `Main.ConeComm`; ports of the ASCII output and the
/// overlay in good use are left alone, and the truck's own is asked where it is open. On success
/// `ConeSerialPort` is the cone's number (also the truck's where both shared a port at the start),
/// the panels are back, the cone delivers fresh readings and the truck's lines are read without
/// counting. If that number was the truck's own, its port counts as lost from then on. Else
/// `ConePortLost` stays; the main loop calls again. The settings file is not written.
void ReconnectSerial();

/// The start screen's scan on `StartUp.ConeComm`, shown in `lblLoad`. Returns the COM number on
/// which a cone gave its banner, the port closed; 0 if none did.
int ReconnectKQSerial();

}  // namespace penlog
