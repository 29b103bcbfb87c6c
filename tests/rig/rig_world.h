// A rig on ports in memory with the console's two ports opened, for the tests of the rig.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/clock.h"
#include "platform/serial_port.h"
#include "rig/line_pace.h"
#include "rig/rig.h"
#include "rig/rig_setups.h"
#include "rig/virtual_attach.h"
#include "support/world.h"

namespace penlog {

struct RigWorld {
  explicit RigWorld(const std::string& name, std::uint32_t seed = 1)
      : RigWorld(Seeded(name, seed)) {}

  explicit RigWorld(const RigSetup& setup) : rig(setup) {
    AttachToPorts(rig, world.ports, 3, 4);
    OpenAt(cone, 3);
    if (!setup.shared_port) OpenAt(truck, 4);
    Yield();
    SerialPort& lines = setup.shared_port ? cone : truck;
    lines.OnComm = [this, &lines](int event) {
      if (event < kCommCts || event > kCommCd) return;
      edges.push_back({Now(), event, {lines.CTSHolding(), lines.DSRHolding(), lines.CDHolding()}});
    };
    cone.OnComm = [this, before = cone.OnComm](int event) {
      if (before) before(event);
      if (event == kCommReceive) last_byte = Now();
    };
  }

  static RigSetup Seeded(const std::string& name, std::uint32_t seed) {
    RigSetup setup = MakeRigSetup(name);
    setup.seed = seed;
    return setup;
  }

  static void OpenAt(SerialPort& port, int number) {
    port.SetCommPort(number);
    port.SetSettings("19200,N,8,1");
    port.Open();
  }

  /// Sends a command and takes what comes until it ends in a line feed, or for `limit`.
  std::string Exchange(const std::string& command, Micros limit = 500 * kMillisecond) {
    cone.ClearInBuffer();
    cone.Output(command + "\r");
    std::string reply;
    const Micros end = Now() + limit;
    while (Now() < end && (reply.empty() || reply.back() != '\n')) {
      World::RunFor(kMillisecond);
      reply += cone.Input();
    }
    return reply;
  }

  /// Runs the order; the reason why it failed is a failure of the test.
  std::string Do(const std::string& words) {
    std::string reply;
    EXPECT_TRUE(rig.Command(words, reply)) << reply;
    return reply;
  }

  void RunUntilStanding(Micros limit = 3600 * kSecond) {
    const Micros end = Now() + limit;
    while (rig.truck.Busy() && Now() < end) World::RunFor(100 * kMillisecond);
    EXPECT_FALSE(rig.truck.Busy());
  }

  struct Edge {
    Micros time;
    int event;
    ModemLines lines;
  };

  World world;
  Rig rig;
  SerialPort cone{"cone"};
  SerialPort truck{"truck"};
  std::vector<Edge> edges;
  Micros last_byte = 0;
};

}  // namespace penlog
