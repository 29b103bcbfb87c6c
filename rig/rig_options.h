// The words on the command line of the rig's program.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/screen_place.h"

namespace penlog {

/// Whether the rig shows its window.
enum class WindowOption { IfDisplay, Yes, No };

struct WireOption {
  bool network = false;  ///< RFC 2217 on loopback; otherwise a pseudo terminal
  int port = 0;          ///< of the network server; 0: the system chooses
};

struct RigOptions {
  std::string setup = "dcs";
  std::uint32_t seed = 1;
  WireOption cone;
  WireOption truck{true, 0};
  int cone_number = 3;  ///< COM numbers in the list of ports
  int truck_number = 4;
  std::string links = ".";     ///< folder for the links to pseudo terminals
  std::string ports_file;      ///< the console's list of ports, written when given
  std::string log;             ///< what goes over the wires, written when given
  std::string ground;          ///< a sounding in GEF or CSV
  std::optional<int> control;  ///< port on loopback that takes orders
  WindowOption window = WindowOption::IfDisplay;
  ScreenPlace place;  ///< of the window on the screen
  bool help = false;
};

/// Raises a `RuntimeFault` that says which word is wrong.
RigOptions ParseRigOptions(const std::vector<std::string>& words);
std::string RigProgramUsage();

}  // namespace penlog
