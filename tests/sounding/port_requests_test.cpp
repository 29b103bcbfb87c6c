// Requests of the port screen that concern several links at once, the overlay's screen and the
// settings file.
#include "sounding/port_requests.h"

#include <gtest/gtest.h>

#include "conelink/port_supervision.h"
#include "core/data_directory.h"
#include "sounding/console.h"
#include "sounding/main_entry.h"
#include "sounding/main_loop.h"

namespace penlog {
namespace {

struct Requests : Console {
  Requests() {
    Main.Timer1.OnTick = Main_Timer1_Timer;
    session.DataDirectory = "/data";
    settings.ASCIIOutSerialPort = 5;
    settings.VideoOverlaySerialPort = 6;
    settings.LumenProbePresent = 1;
    for (const int port : {4, 5, 6, 7}) {
      ports.Wire(port).OnBytes = [this, port](std::string_view bytes) { heard[port] += bytes; };
    }
    EnterMainloop();
    RunFor(5 * kSecond);
    heard.clear();
  }

  static void Ask(PortRequest& request, int port) {
    request = {-1, static_cast<std::int16_t>(port)};
  }

  std::map<int, std::string> heard;
};

TEST(MovedPorts, TwoOutputsChangePlaces) {
  Requests world;
  world.Ask(sounding.ASCIIPortRequest, 6);
  world.Ask(sounding.VideoPortRequest, 5);
  ServePortRequests();
  EXPECT_EQ(cone.ASCIIPortLost + cone.VideoPortLost, 0);
  EXPECT_FALSE(Main.ASCIIOutComm.Gone() || Main.VideoOverlayComm.Gone());
  EXPECT_EQ(Main.ASCIIOutComm.CommPort(), 6);
  EXPECT_EQ(Main.VideoOverlayComm.CommPort(), 5);
}

TEST(MovedPorts, TheTruckInterfaceTakesAnOutputsPortAtOnce) {
  Requests world;
  world.Ask(sounding.TruckPortRequest, 6);
  world.Ask(sounding.ASCIIPortRequest, 7);
  world.Ask(sounding.VideoPortRequest, 4);
  ServePortRequests();
  EXPECT_EQ(cone.TruckPortLost + cone.ASCIIPortLost + cone.VideoPortLost, 0);
  EXPECT_EQ(Main.EncoderComm.CommPort(), 6);
  EXPECT_EQ(Main.VideoOverlayComm.CommPort(), 4);
}

TEST(MovedPorts, TheOverlaysScreenIsBuiltOnItsNewPortWithoutAWait) {
  Requests world;
  world.Ask(sounding.VideoPortRequest, 7);
  const Micros before = Now();
  ServePortRequests();
  EXPECT_EQ(Now(), before);
  Requests::RunFor(5 * kSecond);
  EXPECT_TRUE(world.heard[7].starts_with("{R{F0{MF{ML{F4{A17{C0101Sounding: ")) << world.heard[7];
  EXPECT_EQ(world.heard[6], "");
}

TEST(MovedPorts, ABoardOnTheTruckInterfacesPortGetsItsScreenThere) {
  Requests world;
  settings.LumenProbePresent = 2;
  world.Ask(sounding.TruckPortRequest, 7);
  ServePortRequests();
  Requests::RunFor(5 * kSecond);
  EXPECT_TRUE(world.heard[7].starts_with("{R{F0")) << world.heard[7];
  world.heard.clear();
  world.Ask(sounding.VideoPortRequest, 6);
  ServePortRequests();
  Requests::RunFor(5 * kSecond);
  EXPECT_TRUE(world.heard[7].starts_with("{R{F0")) << "asked for anew";
  EXPECT_EQ(world.heard[6], "");
}

TEST(MovedPorts, TheOverlaysPortIsOpenedForABoardOfItsOwnAlone) {
  const std::pair<std::int16_t, bool> rows[] = {{std::int16_t{0}, false},
                                                {std::int16_t{1}, true},
                                                {std::int16_t{2}, false},
                                                {std::int16_t{3}, false},
                                                {std::int16_t{5}, false}};
  for (const auto& [board, opened] : rows) {
    Requests world;
    settings.LumenProbePresent = board;
    world.Ask(sounding.VideoPortRequest, 7);
    ServePortRequests();
    EXPECT_EQ(Main.VideoOverlayComm.PortOpen(), opened) << board;
    EXPECT_EQ(settings.VideoOverlaySerialPort, 7);
    EXPECT_EQ(cone.VideoPortLost, 0);
  }
}

TEST(MovedPorts, AnASCIIPortAloneLeavesTheOverlayAlone) {
  Requests world;
  world.Ask(sounding.ASCIIPortRequest, 7);
  ServePortRequests();
  Requests::RunFor(5 * kSecond);
  EXPECT_EQ(world.heard, (std::map<int, std::string>{}));
}

TEST(MovedPorts, ATruckPortThatRefusesIsNotNotedAsBack) {
  for (const bool refused : {true, false}) {
    Requests world;
    sounding.ConsoleMode = 2;
    sounding.CurrentDepth = 4.0f;
    world.ports.SetRefused(7, refused);
    sounding.TruckPortRequest = {-1, 7};
    ServePortRequests();
    EXPECT_EQ(cone.TruckPortLost == kTrue, refused);
    EXPECT_EQ(sounding.StepsMayBeMissing == kTrue, !refused);
  }
}

TEST(MovedPorts, TheTruckInterfaceCanBeSwitchedOff) {
  Requests world;
  cone.TruckPortLost = -1;
  world.Ask(sounding.TruckPortRequest, kNoTruckPort);
  ServePortRequests();
  EXPECT_EQ(settings.TruckInterfaceSerialPort, 0);
  EXPECT_FALSE(Main.EncoderComm.PortOpen());
  EXPECT_EQ(cone.TruckPortLost, 0);
  world.ports.Wire(4).SetPresent(false);
  SupervisePorts();
  EXPECT_EQ(cone.TruckPortLost, 0) << "what is off can't be lost";
  world.ports.Wire(4).SetPresent(true);
  world.Ask(sounding.TruckPortRequest, 4);
  ServePortRequests();
  EXPECT_TRUE(Main.EncoderComm.PortOpen());
}

TEST(MovedPorts, DecideWhetherTheTruckInterfaceIsShared) {
  Requests world;
  EXPECT_NE(session.StartConePort, session.StartTruckPort);
  world.Ask(sounding.TruckPortRequest, Console::kConePort);
  ServePortRequests();
  EXPECT_EQ(session.StartConePort, session.StartTruckPort);
  world.Ask(sounding.TruckPortRequest, 7);
  ServePortRequests();
  EXPECT_NE(session.StartConePort, session.StartTruckPort);
}

TEST(MovedPorts, AreKeptInTheSettingsFileOnlyWhenAsked) {
  Requests world;
  std::string text;
  for (int line = 1; line <= 62; ++line) text += std::to_string(line) + "\r\n";
  world.disk.Put(DataPath("System Setup Values.txt"), text);
  ServePortRequests();
  EXPECT_EQ(world.disk.Read(DataPath("System Setup Values.txt")), text);
  world.Ask(sounding.ASCIIPortRequest, 7);
  ServePortRequests();
  const std::string saved = world.disk.Read(DataPath("System Setup Values.txt"));
  EXPECT_NE(saved.find("\r\n54\r\n7\r\n6\r\n57\r\n"), std::string::npos) << saved;
}

}  // namespace
}  // namespace penlog
