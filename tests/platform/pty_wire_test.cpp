// A simulated wire on a pseudo terminal, with the real driver of local ports at its other end.
#include "platform/posix/pty_wire.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "platform/posix/machine_ports.h"
#include "platform/posix/plain_clock.h"
#include "platform/runtime_fault.h"
#include "platform/serial_port.h"
#include "platform/yield.h"

namespace penlog {
namespace {

struct PtyWireTest : testing::Test {
  PtyWireTest() {
    ResetYield();
    UseClock(&clock);
    UseIo(&clock.Io());
    UsePorts(&ports);
    char name[] = "/tmp/penlog wire XXXXXX";
    folder = ::mkdtemp(name);
    std::ofstream(folder + "/list") << "7 " << folder << "/cone\n8 " << folder << "/cone again\n";
    port.SetCommPort(7);
    port.SetSettings("300,N,8,2");
    port.OnComm = [this](int event) {
      heard.push_back(event);
      if (event == kCommReceive) received += port.Input();
    };
  }
  ~PtyWireTest() override {
    port.Close();
    ResetYield();
    DropAllCalls();
    UseIo(nullptr);
    std::filesystem::remove_all(folder);
  }

  void Listen(PtyWire& wire) {
    wire.OnOpened = [this](const PortSettings& settings) {
      opened = settings;
      log += "opened;";
    };
    wire.OnClosed = [this] { log += "closed;"; };
    wire.OnBytes = [this](std::string_view text) { sent += text; };
  }
  static bool Until(const std::function<bool()>& done, Micros limit = 2 * kSecond) {
    const Micros end = Now() + limit;
    while (!done() && Now() < end) WaitYield("a test's condition");
    return done();
  }
  std::string Link() const { return folder + "/cone"; }

  PlainClock clock;
  std::string folder;
  MachinePorts ports{[this] { return folder + "/list"; }, nullptr, [](const std::string&) {}};
  SerialPort port{"port"};
  std::vector<int> heard;
  std::string received, sent, log;
  PortSettings opened;
};

std::string AllByteValues() {
  std::string bytes;
  for (int b = 0; b < 256; ++b) bytes += static_cast<char>(b);
  return bytes;
}

TEST_F(PtyWireTest, PortExistsWhileTheLinkStands) {
  EXPECT_FALSE(ports.Exists(7));
  {
    PtyWire wire(clock.Io(), Link());
    EXPECT_TRUE(ports.Exists(7));
  }
  EXPECT_FALSE(ports.Exists(7));
}

TEST_F(PtyWireTest, EveryByteValuePassesBothWaysWithoutEcho) {
  PtyWire wire(clock.Io(), Link());
  Listen(wire);
  port.SetSettings("19200,N,8,1");
  port.Open();
  ASSERT_TRUE(Until([&] { return log == "opened;"; }));
  const std::string bytes = AllByteValues() + "\r\n\x03\x04\x11\x13\xFF";
  wire.Send(bytes);
  port.Output(bytes);
  EXPECT_TRUE(
      Until([&] { return received.size() >= bytes.size() && sent.size() >= bytes.size(); }));
  EXPECT_EQ(received, bytes);
  EXPECT_EQ(sent, bytes);
}

TEST_F(PtyWireTest, OpeningAndClosingAreToldWithTheSpeed) {
  PtyWire wire(clock.Io(), Link());
  Listen(wire);
  for (int round = 0; round < 2; ++round) {
    port.Open();
    EXPECT_TRUE(Until([&] { return log == "opened;"; })) << log;
    EXPECT_EQ(opened.baud, 300);
    EXPECT_EQ(opened.stop_bits, 2);
    port.Close();
    EXPECT_TRUE(Until([&] { return log == "opened;closed;"; })) << log;
    log.clear();
  }
}

TEST_F(PtyWireTest, WhatIsSentWhileNobodyListensIsLost) {
  PtyWire wire(clock.Io(), Link());
  wire.Send("too early");
  port.Open();
  Listen(wire);
  ASSERT_TRUE(Until([&] { return log == "opened;"; }));
  wire.Send("now");
  EXPECT_TRUE(Until([&] { return !received.empty(); }));
  EXPECT_EQ(received, "now");
}

TEST_F(PtyWireTest, PluggingOutHangsUpAndComesBackUnderAnotherNumber) {
  PtyWire wire(clock.Io(), Link());
  Listen(wire);
  port.Open();
  ASSERT_TRUE(Until([&] { return log == "opened;"; }));
  wire.SetPresent(false);
  EXPECT_FALSE(wire.Present());
  EXPECT_FALSE(ports.Exists(7));
  EXPECT_TRUE(Until([&] { return port.Gone(); }));
  EXPECT_EQ(heard, std::vector<int>{kCommPortGone});
  EXPECT_TRUE(Until([&] { return log == "opened;closed;"; })) << log;
  port.Close();
  wire.SetLink(folder + "/cone again");
  wire.SetPresent(true);
  EXPECT_FALSE(ports.Exists(7));
  ASSERT_TRUE(ports.Exists(8));
  port.SetCommPort(8);
  port.Open();
  port.Output("back");
  EXPECT_TRUE(Until([&] { return sent == "back"; }));
}

TEST_F(PtyWireTest, ProgramThatDoesNotReadStopsNothing) {
  PtyWire wire(clock.Io(), Link());
  Listen(wire);
  const int fd = ::open(Link().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
  ASSERT_GE(fd, 0);
  ASSERT_TRUE(Until([&] { return log == "opened;"; }));
  for (int i = 0; i < 100; ++i) wire.Send(std::string(10'000, 'x'));
  Yield();
  std::string got(4096, '\0');
  EXPECT_GT(::read(fd, got.data(), got.size()), 0);
  ::close(fd);
  EXPECT_TRUE(Until([&] { return log == "opened;closed;"; }));
}

TEST_F(PtyWireTest, HungUpMasterDoesNotKeepTheClockAwake) {
  PtyWire wire(clock.Io(), Link());
  port.Open();
  Until([] { return false; }, 50 * kMillisecond);
  port.Close();
  Until([] { return false; }, 50 * kMillisecond);
  int passes = 0;
  const Micros end = Now() + 500 * kMillisecond;
  while (Now() < end) {
    WaitYield("quiet");
    ++passes;
  }
  EXPECT_LT(passes, 20);
}

TEST_F(PtyWireTest, LinkThatCannotBeMadeIsAFault) {
  EXPECT_THROW(PtyWire(clock.Io(), folder + "/missing/cone"), RuntimeFault);
}

}  // namespace
}  // namespace penlog
