// The ASCII output: plain text lines on a serial port for a logger beside the rig. The port is
// never read.
#pragma once

#include <string>
#include <string_view>

namespace penlog {

constexpr std::string_view kASCIIOutSettings = "19200,N,8,1";

/// The line that proves a port: carriage return and line feed behind it, in that order.
std::string ASCIIOutTestLine();

}  // namespace penlog
