// Changes of ports that the port screen asks for; the main loop serves them between two passes.
#pragma once

namespace penlog {

/// Serves and clears what is requested in `sounding.TruckPortRequest`, `ASCIIPortRequest` and
/// `VideoPortRequest`, builds the overlay's screen anew where its port has changed, and keeps the
/// new numbers in the settings file. Waits for nothing but the opening of a network port.
void ServePortRequests();

}  // namespace penlog
