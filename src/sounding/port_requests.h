// Changes of ports that the port screen asks for; the main loop serves them between two passes.
#pragma once

namespace penlog {

/// Serves and clears what is requested in `sounding.TruckPortRequest`, `ASCIIPortRequest` and
/// `VideoPortRequest`.
void ServePortRequests();

}  // namespace penlog
