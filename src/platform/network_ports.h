// Serial ports behind network servers (RFC 2217), as the list of ports names them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/port_driver.h"

namespace penlog {

struct NetworkAddress {
  std::string host;  ///< a name or an address; an IPv6 address without its brackets
  int port = 0;      ///< 1 to 65535
  bool operator==(const NetworkAddress&) const = default;
};

/// What needs the network is begun here and goes on in the yields. `Exists` alone waits, 300 ms at
/// most for all servers that the list has just named.
class NetworkPorts {
 public:
  virtual ~NetworkPorts() = default;
  /// The servers that the list names from now on: each that has no open connection is tried in
  /// the background again and again, so that `Exists` knows.
  virtual void SetServers(const std::vector<NetworkAddress>& servers) = 0;
  /// True while a connection to the server stands or, when none is open, while it was reached
  /// lately.
  virtual bool Exists(const NetworkAddress& server) = 0;
  /// As `PortSystem::Open`; the driver is `Ready` when the server has acknowledged.
  virtual std::unique_ptr<PortDriver> Open(const NetworkAddress& server,
                                           const PortSettings& settings, PortSink& sink) = 0;
};

}  // namespace penlog
