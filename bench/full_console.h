// A console in virtual time whose cone sends 29 fields a reading: the most that a session has.
#pragma once

#include <string>

#include "platform/host.h"
#include "platform/memory_disk.h"
#include "platform/virtual_clock.h"
#include "platform/virtual_ports.h"

namespace penlog {

class FullConsole {
 public:
  /// Channels 1 to 30 but 21 are fields of the reply and have all that a record can give; the soil
  /// type is shown. The sounding's files lie in `folder` of the disk in use.
  explicit FullConsole(const std::string& folder);
  ~FullConsole();
  FullConsole(const FullConsole&) = delete;
  FullConsole& operator=(const FullConsole&) = delete;

  static constexpr int kConePort = 3;
  static constexpr int kTruckPort = 4;

  VirtualClock clock;
  MemoryDisk disk;
  VirtualPorts ports;
  VirtualHost host;

 private:
  void SetUpFiles(const std::string& folder);
  void ConnectCone();
  std::string Reply();

  int reading_ = 0;
};

}  // namespace penlog
