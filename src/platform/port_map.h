// Which device stands behind which COM number.
//
// "Serial Ports.txt" in the data directory: a line "NUMBER DEVICE" for each port. NUMBER is 1 to
// 255; DEVICE is a path from the root ("/dev/ttyUSB0", which may hold blanks) or
// "rfc2217://HOST:PORT". "#" at the start of a line or behind a blank starts a comment.
//
// Without that file a fixed rule gives the numbers, so that no number depends on which other ports
// are present:
//
//     COM1 to 32      /dev/ttyS0 to 31       built-in ports
//     COM33 to 96     /dev/ttyUSB0 to 63     USB adapters
//     COM97 to 160    /dev/ttyACM0 to 63     USB devices of the modem class
//     COM161 to 176   /dev/ttyAMA0 to 15     ports of ARM boards
//     COM177 to 208   /dev/rfcomm0 to 31     Bluetooth
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/network_ports.h"

namespace penlog {

struct PortDevice {
  std::string path;        ///< empty for a network port
  NetworkAddress network;  ///< used when `path` is empty
  /// As in the file.
  std::string Text() const;
  bool operator==(const PortDevice&) const = default;
};

struct PortMap {
  std::map<int, PortDevice> devices;
  /// What was wrong, a text for the operator each: "Serial Ports.txt, line 3: ...". The line
  /// itself is skipped.
  std::vector<std::string> messages;
};

/// Takes the content of the file apart; `title` names it in the messages.
PortMap ParsePortMap(std::string_view title, std::string_view text);

/// The device of COM `number` by the fixed rule; empty for a number that has none.
std::string FixedRuleDevice(int number);

}  // namespace penlog
