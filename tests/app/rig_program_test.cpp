// The rig's program in real time, heard through the console's own drivers of ports.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <string>

#include "app/program.h"
#include "platform/io_watcher.h"
#include "platform/posix/line_server.h"
#include "platform/posix/machine_ports.h"
#include "platform/qt/real_clock.h"
#include "platform/qt/rfc2217_ports.h"
#include "platform/runtime_fault.h"
#include "platform/serial_port.h"
#include "platform/yield.h"
#include "support/temp_folder.h"

namespace penlog {
namespace {

/// What the children find in the environment; put back at the end.
struct DisplayOf {
  explicit DisplayOf(const char* platform) {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
      const char* value = std::getenv(name);
      if (value != nullptr) kept[name] = value;
      ::unsetenv(name);
    }
    if (platform != nullptr) ::setenv("QT_QPA_PLATFORM", platform, 1);
  }
  ~DisplayOf() {
    ::unsetenv("QT_QPA_PLATFORM");
    for (const auto& [name, value] : kept) ::setenv(name.c_str(), value.c_str(), 1);
  }
  DisplayOf(const DisplayOf&) = delete;
  DisplayOf& operator=(const DisplayOf&) = delete;

  std::map<std::string, std::string> kept;
};

struct RigProgram : testing::Test {
  RigProgram() {
    ResetYield();
    UseClock(&clock);
    UseIo(&clock.io());
    UsePorts(&ports);
  }
  ~RigProgram() override {
    cone.Close();
    truck.Close();
    ResetYield();
    DropAllCalls();
    UseIo(nullptr);
  }

  static bool Until(const std::function<bool()>& done, Micros limit = 10 * kSecond) {
    const Micros end = Now() + limit;
    while (!done() && Now() < end) {
      PostCall(Now() + 5 * kMillisecond, &end, [] {});
      WaitYield("a test's condition");
    }
    DropCalls(&end);
    return done();
  }

  /// Starts the rig and waits until it tells its ports.
  void Start(std::vector<std::string> words) {
    const std::vector<std::string> places = {"--links", folder.Path(), "--ports-file",
                                             folder / "Serial Ports.txt"};
    words.insert(words.end(), places.begin(), places.end());
    rig = std::make_unique<Program>("penlog-rig", words);
    ASSERT_TRUE(Until([this] { return rig->Printed().find("cone COM") != std::string::npos; }))
        << rig->Printed();
  }

  void Open(SerialPort& port, int number) {
    ASSERT_TRUE(Until([number] { return EnumSerPorts(number); })) << number;
    port.SetCommPort(number);
    port.SetSettings("19200,N,8,1");
    port.Open();
  }

  std::string Exchange(const std::string& command) {
    std::string reply;
    cone.ClearInBuffer();
    cone.Output(command + "\r");
    Until(
        [&] {
          reply += cone.Input();
          return !reply.empty() && reply.back() == '\n';
        },
        2 * kSecond);
    return reply;
  }

  std::string PortsFile() const {
    std::ifstream in(folder / "Serial Ports.txt");
    return {std::istreambuf_iterator<char>(in), {}};
  }

  /// No test shows windows on the display of whoever runs it.
  const DisplayOf hidden{nullptr};
  TempFolder folder;
  RealClock clock;
  Rfc2217Ports network{clock};
  MachinePorts ports{[this] { return folder / "Serial Ports.txt"; }, &network,
                     [](const std::string& text) { ADD_FAILURE() << text; }};
  SerialPort cone{"cone"};
  SerialPort truck{"truck"};
  std::unique_ptr<Program> rig;
};

TEST_F(RigProgram, WrongWordsGiveTheUsageAndExitTwo) {
  Program wrong("penlog-rig", {"--dance", "1"});
  ASSERT_TRUE(Until([&] { return wrong.Ended(); }));
  EXPECT_EQ(wrong.ExitCode(), 2);
  EXPECT_EQ(wrong.Printed().find("penlog-rig: unknown word \"--dance\""), 0u);
  EXPECT_NE(wrong.Printed().find("--setup NAME"), std::string::npos);
}

TEST_F(RigProgram, UnreadableGroundEndsItWithOne) {
  Program wrong("penlog-rig", {"--ground", folder / "none.gef"});
  ASSERT_TRUE(Until([&] { return wrong.Ended(); }));
  EXPECT_EQ(wrong.ExitCode(), 1);
  EXPECT_NE(wrong.Printed().find("none.gef"), std::string::npos);
}

TEST_F(RigProgram, ConeAnswersOnAPtyAtThePaceOfTheLine) {
  Start({});
  Open(cone, 3);
  EXPECT_NE(Exchange("Y").find("COPYRIGHT"), std::string::npos);
  EXPECT_EQ(Exchange("Z TFPIJ"), "OK\r\n");
  const Micros start = Now();
  const std::string reading = Exchange("D");
  EXPECT_EQ(std::count(reading.begin(), reading.end(), ' '), 4);
  EXPECT_GE(Now() - start, 30 * kMillisecond) << "46 characters and the conversion";
}

TEST_F(RigProgram, ConeAnswersOverTheNetworkAndABreakClearsItsSelection) {
  Start({"--cone", "rfc2217"});
  Open(cone, 3);
  EXPECT_EQ(Exchange("Z T"), "OK\r\n");
  EXPECT_NE(Exchange("D")[0], '?');
  cone.SetBreak(true);
  Until([] { return false; }, 100 * kMillisecond);
  cone.SetBreak(false);
  Until([] { return false; }, 200 * kMillisecond);
  EXPECT_EQ(Exchange("D"), "?\r\n");
}

TEST_F(RigProgram, PushComesAsEdgesOverTheNetworkAndRtsStopsIt) {
  Start({"--control", "0"});
  Open(truck, 4);
  int edges = 0;
  truck.OnComm = [&edges](int event) { edges += event == kCommCts || event == kCommCd ? 1 : 0; };
  rig->Type("speed 10");
  rig->Type("push 0.05");
  EXPECT_TRUE(Until([&] { return edges == 40; })) << edges;
  rig->Type("push 0.5");
  ASSERT_TRUE(Until([&] { return edges >= 60; }));
  truck.SetRTSEnable(true);
  Until([] { return false; }, 200 * kMillisecond);
  const int halted = edges;
  Until([] { return false; }, 300 * kMillisecond);
  EXPECT_EQ(edges, halted);
  EXPECT_NE(rig->Printed().find("ok"), std::string::npos);
}

TEST_F(RigProgram, ControlPortTakesOrders) {
  Start({"--control", "0"});
  const std::string printed = rig->Printed();
  const std::size_t at = printed.find("control 127.0.0.1:");
  ASSERT_NE(at, std::string::npos);
  const int port = std::stoi(printed.substr(at + 18));
  EXPECT_EQ(AskLineServer(port, "status"), "ok depth 0.000 standing clamped pushed 1234");
  EXPECT_EQ(AskLineServer(port, "dance"), "no no such word: \"dance\" (help lists them)");
}

TEST_F(RigProgram, ReplugGivesTheLinkAndTheListAnotherNumber) {
  Start({});
  Open(cone, 3);
  EXPECT_NE(Exchange("Y"), "");
  rig->Type("replug cone 9 0.2s");
  ASSERT_TRUE(Until([] { return EnumSerPorts(9); }));
  EXPECT_FALSE(EnumSerPorts(3));
  EXPECT_TRUE(cone.Gone());
  EXPECT_EQ(PortsFile().find("9 " + (folder / "COM9")), 0u) << PortsFile();
  cone.Close();
  Open(cone, 9);
  EXPECT_NE(Exchange("Y").find("COPYRIGHT"), std::string::npos);
}

TEST_F(RigProgram, WithoutADisplayItIsAPlainProcess) {
  // A toolkit of windows that begins in spite of it ends with a platform of that name.
  const DisplayOf none("no-such-platform");
  Start({});
  Open(cone, 3);
  EXPECT_NE(Exchange("Y").find("COPYRIGHT"), std::string::npos);
  rig->Signal(SIGTERM);
  ASSERT_TRUE(Until([this] { return rig->Ended(); }));
  EXPECT_EQ(rig->ExitCode(), 0);
}

TEST_F(RigProgram, WithItsWindowTheWiresServeAndSigtermEndsIt) {
  const DisplayOf offscreen("offscreen");
  Start({"--window", "yes", "--place", "400x700+0+0", "--cone", "rfc2217"});
  Open(cone, 3);
  EXPECT_EQ(Exchange("Z TFPIJ"), "OK\r\n");
  rig->Type("push 0.02");
  for (int i = 0; i < 10; ++i) EXPECT_NE(Exchange("D")[0], '?');
  rig->Signal(SIGTERM);
  ASSERT_TRUE(Until([this] { return rig->Ended(); }));
  EXPECT_EQ(rig->ExitCode(), 0);
}

TEST_F(RigProgram, WindowThatIsNotWantedIsNotShown) {
  const DisplayOf named("no-such-platform");
  ::setenv("DISPLAY", ":no-such-display", 1);
  Start({"--window", "no"});
  ::unsetenv("DISPLAY");
  rig->Signal(SIGTERM);
  ASSERT_TRUE(Until([this] { return rig->Ended(); }));
  EXPECT_EQ(rig->ExitCode(), 0);
}

TEST_F(RigProgram, SigtermEndsItAndRemovesItsLinks) {
  Start({"--log", folder / "rig.log"});
  Open(cone, 3);
  Exchange("Y");
  EXPECT_TRUE(std::filesystem::exists(std::filesystem::symlink_status(folder / "COM3")));
  rig->Signal(SIGTERM);
  ASSERT_TRUE(Until([this] { return rig->Ended(); }));
  EXPECT_EQ(rig->ExitCode(), 0);
  EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(folder / "COM3")));
  std::ifstream in(folder / "rig.log");
  const std::string log{std::istreambuf_iterator<char>(in), {}};
  EXPECT_NE(log.find("command 0 0.0000 Y\n"), std::string::npos) << log;
  EXPECT_NE(log.find("COPYRIGHT 2019\\r\\n\n"), std::string::npos);
}

}  // namespace
}  // namespace penlog
