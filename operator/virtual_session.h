// The console and its rig together in virtual time: a disk and wires in memory, nothing outside.
// Tests, the demo and the pictures of the documents run on it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "operator/player.h"
#include "platform/host.h"
#include "platform/memory_disk.h"
#include "platform/virtual_clock.h"
#include "platform/virtual_ports.h"
#include "rig/rig.h"

namespace penlog {

struct VirtualSessionSetup {
  WallTime start = {2026, 6, 15, 9, 30, 0, 0};
  std::uint32_t seed = 1;
  int cone_port = 3;   ///< COM number
  int truck_port = 4;  ///< not used when the rig shares the cone's port
};

struct SessionResult {
  int exit_code = 0;       ///< of the player: 0 played to its end
  std::string report;      ///< why not
  std::string standstill;  ///< what waited when nothing happened any more; usually empty
};

class VirtualSession {
 public:
  VirtualSession(const RigSetup& rig_setup, const VirtualSessionSetup& setup);
  ~VirtualSession();
  VirtualSession(const VirtualSession&) = delete;
  VirtualSession& operator=(const VirtualSession&) = delete;

  /// Starts the console and plays the script on it until the program ends. A further call is a
  /// further start of the program on the same disk and rig; so is the console's own start anew,
  /// with which the script goes on. Missing hands are the session's own: its rig, a kill that ends
  /// the run and lets nothing more reach the disk, and pictures that are left out. `at_end` runs
  /// before the screens are unloaded.
  SessionResult Play(const Script& script, PlayerHands hands = {},
                     const std::function<void()>& at_end = {});

  /// Where the console keeps its files.
  static std::string DataDirectory();

  VirtualClock clock;
  MemoryDisk disk;
  VirtualPorts ports;
  VirtualHost host;
  Rig rig;

 private:
  void CompleteHands(PlayerHands& hands);
  void Kill();
};

/// Copies every file of the memory disk below a folder of the disk in use.
void WriteOut(const MemoryDisk& from, const std::string& folder);

}  // namespace penlog
