// The start screen's copies of the link's primitives, on its own port and tick counter.
#pragma once

#include <string>

namespace penlog {

/// One command to the cone on `StartUp.ConeComm`; see `PlainExchange`.
std::string StartUp_CommStringCheck(const std::string& command);

/// As many pauses of 55 to 110 ms.
void StartUp_CommPause(int times = 1);

/// Opens the port and resets the cone by a line break; the port is open afterwards.
void StartUp_CommBreak();

/// Two more dialects on the same port, for instruments other than the cone. Nothing calls them.
std::string ResistivityCommStringCheck(const std::string& command);
/// Each attempt adds one Chr(4) to `command`.
std::string ZOLCommStringCheck(std::string& command);

}  // namespace penlog
