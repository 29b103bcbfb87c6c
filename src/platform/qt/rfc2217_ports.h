// The network servers that the list of ports names.
#pragma once

#include <QTcpSocket>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/network_ports.h"
#include "platform/qt/rfc2217_client.h"

namespace penlog {

/// A server without an open connection is tried every 2 s: connected to and left at once.
class Rfc2217Ports : public NetworkPorts {
 public:
  explicit Rfc2217Ports(RealClock& clock);
  ~Rfc2217Ports() override;
  Rfc2217Ports(const Rfc2217Ports&) = delete;
  Rfc2217Ports& operator=(const Rfc2217Ports&) = delete;

  void SetServers(const std::vector<NetworkAddress>& servers) override;
  /// Never waits but once: up to 300 ms for the first tries of a list, which run at the same time,
  /// so that a program that has just started finds what is there. Many silent servers take no more.
  bool Exists(const NetworkAddress& server) override;
  std::unique_ptr<PortDriver> Open(const NetworkAddress& server, const PortSettings& settings,
                                   PortSink& sink) override;

 private:
  struct Server {
    NetworkAddress address;
    std::shared_ptr<ServerState> state = std::make_shared<ServerState>();
    std::unique_ptr<QTcpSocket> trial;
    Micros trial_began = 0;
    Micros next_trial = 0;
    bool tried = false;  ///< the first try has come to a result
  };
  using Key = std::pair<std::string, int>;

  Server& Find(const NetworkAddress& address);
  void Poll();
  void BeginTrial(Server& server);
  void WatchTrial(Server& server);
  void EndTrial(Server& server, bool reached);
  void WaitForFirstTrial(Server& server);

  RealClock& clock_;
  int poll_;
  std::map<Key, Server> servers_;
  std::int64_t first_wait_left_ms_ = 0;  ///< of the 300 ms for the tries of new servers
};

}  // namespace penlog
