// The serial ports of this machine and of the network servers that "Serial Ports.txt" names.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/network_ports.h"
#include "platform/port_driver.h"
#include "platform/port_map.h"

namespace penlog {

class MachinePorts : public PortSystem {
 public:
  /// `list_file` gives the path of "Serial Ports.txt", empty while it isn't known yet; it is asked
  /// at each call. `network` may be null: network ports then don't exist. `report` gets each
  /// message about the file once per reading; it must not yield.
  MachinePorts(std::function<std::string()> list_file, NetworkPorts* network,
               std::function<void(const std::string& text)> report);

  bool Exists(int number) override;
  std::unique_ptr<PortDriver> Open(int number, const PortSettings& settings,
                                   PortSink& sink) override;
  std::string DeviceName(int number) override;

 private:
  /// What tells one state of a file from another.
  using FileStamp = std::array<std::int64_t, 6>;
  static FileStamp StampOf(const std::string& path);
  void ReadAgainIfChanged();
  void ReadList(const std::string& path);
  /// Null for a number without a device.
  const PortDevice* DeviceOf(int number);
  bool DeviceExists(const PortDevice& device) const;

  std::function<std::string()> list_file_;
  NetworkPorts* network_;
  std::function<void(const std::string&)> report_;
  bool read_ = false;
  bool has_list_ = false;
  std::string list_path_;
  FileStamp stamp_{};
  PortMap map_;
};

}  // namespace penlog
