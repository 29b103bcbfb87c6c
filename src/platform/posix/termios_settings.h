// A serial line's settings on termios.
#pragma once

#include <string>

#include "platform/port_driver.h"

namespace penlog {

/// Makes the line raw and 8-bit clean, without flow control, and sets speed, parity, data and stop
/// bits. Raises a `RuntimeFault`, with `path` in its text, for a speed that the system has no name
/// for and for settings that the adapter doesn't take up.
void ApplyPortSettings(int fd, const std::string& path, const PortSettings& settings);

/// What a line is set to; what has no name in `PortSettings` reads as its first value.
PortSettings ReadPortSettings(int fd);

/// True for the program's side of a pseudo terminal, which has no line behind it.
bool IsPseudoTerminal(int fd);

}  // namespace penlog
