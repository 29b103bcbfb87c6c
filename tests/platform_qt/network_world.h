// Real time with network ports by COM number, for the tests of both ends of RFC 2217.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/io_watcher.h"
#include "platform/qt/real_clock.h"
#include "platform/qt/rfc2217_ports.h"
#include "platform/qt/rfc2217_server.h"
#include "platform/runtime_fault.h"
#include "platform/serial_port.h"
#include "platform/yield.h"

namespace penlog {

/// COM numbers that all stand for network servers.
class NetworkPortList : public PortSystem {
 public:
  explicit NetworkPortList(Rfc2217Ports& network) : network_(network) {}
  bool Exists(int number) override {
    return servers.contains(number) && network_.Exists(servers[number]);
  }
  std::unique_ptr<PortDriver> Open(int number, const PortSettings& settings,
                                   PortSink& sink) override {
    return network_.Open(servers[number], settings, sink);
  }
  std::string DeviceName(int number) override { return servers[number].host; }

  std::map<int, NetworkAddress> servers;

 private:
  Rfc2217Ports& network_;
};

struct NetworkWorld {
  NetworkWorld() {
    ResetYield();
    UseClock(&clock);
    UseIo(&clock.io());
    UsePorts(&ports);
  }
  ~NetworkWorld() {
    ResetYield();
    DropAllCalls();
    UseIo(nullptr);
  }
  NetworkWorld(const NetworkWorld&) = delete;
  NetworkWorld& operator=(const NetworkWorld&) = delete;

  /// Yields until `done`, at most `limit`; whether it came to that.
  static bool Until(const std::function<bool()>& done, Micros limit = 2 * kSecond) {
    const Micros end = Now() + limit;
    bool over = false;
    PostCall(end, &over, [&over] { over = true; });
    while (!done() && !over) WaitYield("a test's condition");
    const bool came = done();
    DropCalls(&over);
    return came;
  }
  static void RunFor(Micros time) {
    Until([] { return false; }, time);
  }

  RealClock clock;
  Rfc2217Ports network{clock};
  NetworkPortList ports{network};
};

/// A port that writes down what its handler hears.
struct HeardPort {
  explicit HeardPort(int number, const char* settings = "19200,N,8,1") {
    port.SetCommPort(number);
    port.SetSettings(settings);
    port.OnComm = [this](int event) {
      heard.push_back(event);
      if (event == kCommReceive) bytes += port.Input();
    };
  }
  int Count(int event) const {
    return static_cast<int>(std::count(heard.begin(), heard.end(), event));
  }

  SerialPort port{"port"};
  std::vector<int> heard;
  std::string bytes;
};

/// What opening the port fails with; empty when it opens.
inline std::string FaultOfOpening(SerialPort& port) {
  try {
    port.Open();
  } catch (const RuntimeFault& fault) {
    return fault.what();
  }
  return {};
}

inline std::string AllByteValues() {
  std::string bytes;
  for (int b = 0; b < 256; ++b) bytes += static_cast<char>(b);
  return bytes;
}

}  // namespace penlog
