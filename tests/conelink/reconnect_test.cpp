#include "conelink/reconnect.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <utility>

#include "conelink/link_world.h"
#include "conelink/main_exchange.h"
#include "screens/connection_status.h"
#include "sounding/port_requests.h"
#include "sounding/truck_interface.h"

namespace penlog {
namespace {

class Reconnect : public ::testing::Test {
 protected:
  Reconnect() {
    settings.ConeSerialPort = session.StartConePort = 5;
    settings.TruckInterfaceSerialPort = session.StartTruckPort = 4;
    cone.ChannelSelectCommand = "Z TF";
    sounding.AutoMode = 1;
    sounding.ConsoleMode = 2;
    sounding.TicksSinceStep = 1000;  // the rods rest
    At(4);
    LinkWorld::Open(Main.EncoderComm, 4);
    Main.EncoderComm.OnComm = Main_EncoderComm_OnComm;
    Main.ConeComm.OnComm = Main_ConeComm_OnComm;
  }
  ~Reconnect() override {
    Main.EncoderComm.OnComm = {};
    Main.ConeComm.OnComm = {};
  }

  /// What sits on COM `number`; silent until told otherwise.
  ScriptedCone& At(int number) {
    auto& end = ends_[number];
    if (!end) end = std::make_unique<ScriptedCone>(world.ports.Wire(number));
    return *end;
  }

  ScriptedCone& ConeAt(int number) {
    ScriptedCone& end = At(number);
    end.On("Y", "CONE COPYRIGHT 2009 V3.20\r\n");
    end.On("X", "OK\r\n");
    end.On("C 3 7", "DCS0001\r\n");
    end.On("Z TF", "\r\n");
    end.On("D", "1.5\r\n");  // too short to count as repeated
    return end;
  }

  static void Lose() {
    cone.ConePortLost = kTrue;
    cone.ConeLinkUp = kFalse;
  }

  LinkWorld world;
  std::map<int, std::unique_ptr<ScriptedCone>> ends_;
};

TEST_F(Reconnect, FindsTheConeUnderItsNewNumber) {
  ConeAt(7);
  Lose();
  ReconnectSerial();
  EXPECT_EQ(settings.ConeSerialPort, 7);
  EXPECT_EQ(settings.TruckInterfaceSerialPort, 4);
  EXPECT_EQ(cone.ConePortLost, kFalse);
  EXPECT_EQ(cone.ConeLinkUp, kTrue);
  EXPECT_TRUE(Main.ConeComm.PortOpen());
  EXPECT_EQ(Main.ConeComm.CommPort(), 7);
  EXPECT_TRUE(frmWarning.frmSerialConnected.Visible);
  EXPECT_TRUE(frmWarning.frmModulesConnected.Visible);
  EXPECT_FALSE(frmWarning.frmSerialWarning.Visible);
  EXPECT_FALSE(frmWarning.frmModuleWarning.Visible);
}

TEST_F(Reconnect, ConeOnItsOldNumberIsFoundWhenTheScanReachesItPortsBelowFirst) {
  ConeAt(5);
  At(2);
  At(9);
  Lose();
  ReconnectSerial();
  EXPECT_EQ(settings.ConeSerialPort, 5);
  EXPECT_EQ(At(2).heard, std::vector<std::string>{"Y"});
  EXPECT_TRUE(At(9).heard.empty()) << "the scan ends at the cone";
  EXPECT_EQ(At(2).openings.at(0).baud, 19200);
  EXPECT_EQ(At(2).closings, 1);
}

TEST_F(Reconnect, SilentPortCostsElevenTicksAndTenPauses) {
  At(2);
  Lose();
  LinkWorld::GoToTick();
  const Micros start = Now();
  ReconnectSerial();
  // One pause before the scan, then ten ticks of silence and ten pauses on COM 2, ten pauses on the
  // truck's port.
  EXPECT_EQ(Now() - start, 2 * kTick + 10 * kTick + 20 * kTick + 20 * kTick);
}

TEST_F(Reconnect, ResynchronisesTheConeItFound) {
  ConeAt(5);
  Lose();
  ReconnectSerial();
  EXPECT_EQ(At(5).heard,
            (std::vector<std::string>{"Y", "Y", "X", "X", "C 3 7", "Z TF", "Z TF", "D", "D"}));
}

TEST_F(Reconnect, OutputsInGoodUseAreNotDisturbedLostOnesAreProbed) {
  settings.ASCIIOutSerialPort = 1;
  settings.VideoOverlaySerialPort = 2;
  At(1);
  At(2);
  ConeAt(7);
  Lose();
  ReconnectSerial();
  EXPECT_TRUE(At(1).heard.empty());
  EXPECT_TRUE(At(2).heard.empty());
  EXPECT_TRUE(At(2).openings.empty());

  cone.VideoPortLost = kTrue;
  Lose();
  ReconnectSerial();
  EXPECT_TRUE(At(1).heard.empty());
  EXPECT_EQ(At(2).heard, std::vector<std::string>{"Y"});
}

TEST_F(Reconnect, TruckPortThatNobodyHoldsIsProbedWithABannerRequest) {
  Main.EncoderComm.Close();
  ConeAt(7);
  Lose();
  ReconnectSerial();
  EXPECT_EQ(At(4).heard, std::vector<std::string>{"Y"});
}

TEST_F(Reconnect, TruckPortThatIsOpenIsAskedThereAndKeepsItsLines) {
  ConeAt(7);
  Lose();
  Main.EncoderComm.SetRTSEnable(true);
  World::RunFor(kMillisecond);
  At(4).outputs.clear();
  ReconnectSerial();
  EXPECT_EQ(At(4).heard, std::vector<std::string>{"Y"});
  EXPECT_TRUE(At(4).outputs.empty());
  EXPECT_EQ(At(4).closings, 0);
  EXPECT_TRUE(Main.EncoderComm.RTSEnable());
}

TEST_F(Reconnect, TruckPortAtTheSpeedOfAnOverlayIsNotAsked) {
  ConeAt(7);
  Main.EncoderComm.Close();
  Main.EncoderComm.SetSettings("9600,N,8,1");
  Main.EncoderComm.Open();
  Lose();
  ReconnectSerial();
  EXPECT_TRUE(At(4).heard.empty());
  EXPECT_EQ(settings.ConeSerialPort, 7);
}

TEST_F(Reconnect, StepsOfTheTruckAreCountedWhileItsPortIsAsked) {
  settings.DepthCounterType = 1;
  settings.DepthResolution = 0.01f;
  sounding.ClampLine = sounding.PressureLine = 0;
  PostCall(Now() + 5 * kTick, this, [this] {
    for (const bool held : {true, false, true}) world.ports.Wire(4).SetLines({true, true, held});
  });
  Lose();
  ReconnectSerial();
  EXPECT_EQ(At(4).heard, std::vector<std::string>{"Y"});
  EXPECT_EQ(sounding.DepthCounts, 2);
}

TEST_F(Reconnect, PortThatRefusesToOpenIsPassedOver) {
  At(1);
  world.ports.SetRefused(1, true);
  ConeAt(7);
  Lose();
  LinkWorld::GoToTick();
  ReconnectSerial();
  EXPECT_EQ(settings.ConeSerialPort, 7);
  EXPECT_TRUE(At(1).heard.empty());
}

TEST_F(Reconnect, Port255IsTheLastOneProbed) {
  ConeAt(255);
  Lose();
  ReconnectSerial();
  EXPECT_EQ(settings.ConeSerialPort, 255);
}

TEST_F(Reconnect, NoConeLeavesThePortLostAndTheNumberAsItWas) {
  At(2);
  Lose();
  ReconnectSerial();
  EXPECT_EQ(cone.ConePortLost, kTrue);
  EXPECT_EQ(cone.ConeLinkUp, kFalse);
  EXPECT_EQ(settings.ConeSerialPort, 5);
  EXPECT_FALSE(Main.ConeComm.PortOpen());
  EXPECT_TRUE(frmWarning.frmSerialWarning.Visible);
  EXPECT_TRUE(frmWarning.Visible);
}

TEST_F(Reconnect, BannerWithoutTheWordIsNoCone) {
  At(2).On("Y", "GPS V2\r\n");
  Lose();
  ReconnectSerial();
  EXPECT_EQ(cone.ConePortLost, kTrue);
}

TEST_F(Reconnect, BannerOfSeveralLinesIsAwaited) {
  ConeAt(2);
  At(2).OnPieces("Y", {{0, "CONE\r\n"}, {6 * kTick, "COPYRIGHT 2009\r\n"}});
  Lose();
  ReconnectSerial();
  EXPECT_EQ(settings.ConeSerialPort, 2);
}

TEST_F(Reconnect, TruckOnTheConesPortMovesWithIt) {
  settings.TruckInterfaceSerialPort = session.StartTruckPort = 5;
  sounding.QuitState = 1;
  sounding.CurrentDepth = 8.5f;
  ConeAt(7);
  world.ports.Wire(7).SetLines({false, true, false});
  Lose();
  ReconnectSerial();
  EXPECT_EQ(settings.ConeSerialPort, 7);
  EXPECT_EQ(settings.TruckInterfaceSerialPort, 7);
  EXPECT_EQ(sounding.ClampLine, 0);
  EXPECT_TRUE(Main.ConeComm.RTSEnable());
  EXPECT_FALSE(Main.ConeComm.DTREnable());
  EXPECT_EQ(sounding.StepsMayBeMissing, kTrue);
  EXPECT_EQ(sounding.StepsMayBeMissingDepth, 8.5f);
}

TEST_F(Reconnect, TruckLinesAreReadAgainWithoutCounting) {
  settings.DepthCounterType = 1;
  settings.DepthResolution = 0.01f;
  ConeAt(7);
  Lose();
  // The lines change while nobody hears them.
  Main.EncoderComm.OnComm = {};
  sounding.ClampLine = sounding.CountLine = 1;
  world.ports.Wire(4).SetLines({false, true, true});
  World::RunFor(kMillisecond);
  Main.EncoderComm.SetDTREnable(true);
  ReconnectSerial();
  EXPECT_EQ(sounding.ClampLine, 0);
  EXPECT_EQ(sounding.CountLine, 0);
  EXPECT_EQ(sounding.DepthCounts, 0);
  EXPECT_FALSE(Main.EncoderComm.DTREnable());
  EXPECT_EQ(sounding.StepsMayBeMissing, kFalse) << "the truck's own port was never away";
}

TEST_F(Reconnect, TruckPortThatReturnedMeanwhileIsOpenedAgainBeforeTheScan) {
  ConeAt(7);
  world.ports.Wire(4).SetPresent(false);
  Lose();
  ReconnectSerial();
  EXPECT_EQ(cone.TruckPortLost, kTrue);
  world.ports.Wire(4).SetPresent(true);
  Lose();
  ReconnectSerial();
  EXPECT_EQ(cone.TruckPortLost, kFalse);
  EXPECT_FALSE(Main.EncoderComm.Gone());
}

TEST_F(Reconnect, LinesOfOtherPortsCountNoDepthDuringTheScan) {
  settings.TruckInterfaceSerialPort = session.StartTruckPort = 5;
  settings.DepthCounterType = 1;
  settings.DepthResolution = 0.01f;
  settings.DepthStepCounts = 1;
  sounding.ClampLine = sounding.PressureLine = 0;
  sounding.TicksSinceStep = 100;
  sounding.CurrentDepth = 8.5f;
  At(2);  // a receiver that pulses a line once a second, its clamp line open
  world.ports.Wire(2).SetLines({true, false, true});
  std::function<void()> pulse = [&] {
    const bool cd = world.ports.Wire(2).Lines().cd;
    world.ports.Wire(2).SetLines({true, false, !cd});
    PostCall(Now() + 100 * kMillisecond, this, pulse);
  };
  pulse();
  Lose();
  ReconnectSerial();
  DropCalls(this);
  EXPECT_EQ(At(2).heard, std::vector<std::string>{"Y"});
  EXPECT_EQ(sounding.CurrentDepth, 8.5f);
  EXPECT_EQ(sounding.DepthCounts, 0);
  EXPECT_EQ(sounding.ClampLine, 0) << "nor are they taken for the truck's";
}

TEST_F(Reconnect, LatchedQuitHoldsEachPortThatMayBeTheTrucks) {
  settings.TruckInterfaceSerialPort = session.StartTruckPort = 5;
  for (const std::int16_t state : {std::int16_t{1}, std::int16_t{0}}) {
    sounding.QuitState = state;
    At(2).outputs.clear();
    Lose();
    ReconnectSerial();
    bool held = false;
    for (const auto& outputs : At(2).outputs) held = held || outputs.rts;
    EXPECT_EQ(held, state == 1);
    EXPECT_FALSE(Main.ConeComm.PortOpen());
  }
}

TEST_F(Reconnect, EventsAreServedWhileItScans) {
  for (const int port : {1, 2, 3}) At(port);
  Lose();
  int served = 0;
  std::function<void()> count = [&] {
    ++served;
    PostCall(Now() + kTick, this, count);
  };
  count();
  ReconnectSerial();
  DropCalls(this);
  EXPECT_GE(served, 3 * 30);
}

TEST_F(Reconnect, ChatteringDeviceDoesNotHoldTheScan) {
  std::function<void()> chatter = [&] {
    world.ports.Wire(2).Send("\xff");
    PostCall(Now() + 100 * kMillisecond, this, chatter);
  };
  At(2);
  ConeAt(7);
  chatter();
  Lose();
  const Micros start = Now();
  ReconnectSerial();
  DropCalls(this);
  EXPECT_EQ(settings.ConeSerialPort, 7);
  EXPECT_LT(Now() - start, 60 * kSecond);
}

TEST_F(Reconnect, SettingsFileIsNotWritten) {
  ConeAt(7);
  Lose();
  ReconnectSerial();
  EXPECT_TRUE(world.disk.Files().empty());
}

TEST_F(Reconnect, ConeUnpluggedInTheMiddleOfASessionReturnsUnderAnotherNumber) {
  ConeAt(5);
  LinkWorld::Open(Main.ConeComm, 5);
  cone.ConeLinkUp = kTrue;
  EXPECT_EQ(Main_CommStringCheck("D"), "1.5 ");
  world.ports.Wire(5).SetPresent(false);
  EXPECT_EQ(Main_CommStringCheck("D"), "");
  EXPECT_EQ(cone.ConePortLost, kTrue);
  ReconnectSerial();
  EXPECT_EQ(cone.ConePortLost, kTrue);
  ends_.erase(5);
  world.ports.Renumber(5, 8);
  world.ports.Wire(8).SetPresent(true);
  ConeAt(8);
  ReconnectSerial();
  EXPECT_EQ(settings.ConeSerialPort, 8);
  EXPECT_EQ(Main_CommStringCheck("D"), "1.5 ");
}

/// Cone on COM 5 and truck interface on COM 4, both open; then their adapters lose power and come
/// back with their numbers swapped.
class Swapped : public Reconnect {
 protected:
  Swapped() {
    frmWarning.Timer1.OnTick = frmWarning_Timer1_Timer;
    LinkWorld::ShowConsole();
    ConeAt(5);
    LinkWorld::Open(Main.ConeComm, 5);
    cone.ConeLinkUp = kTrue;
    sounding.CurrentDepth = 8.5f;
    EXPECT_EQ(Main_CommStringCheck("D"), "1.5 ");
    Swap();
    ConeAt(4);
  }
  ~Swapped() override { frmWarning.Timer1.OnTick = {}; }

  void Swap() {
    ends_.clear();
    world.ports.Renumber(5, 99);
    world.ports.Renumber(4, 5);
    world.ports.Renumber(99, 4);
    World::RunFor(kMillisecond);
  }
  /// Exchanges, and a scan after each that found the link down, as the main loop goes on.
  static void GoOn(int passes) {
    for (int pass = 0; pass < passes; ++pass) {
      Main_CommStringCheck("D");
      if (cone.ConeLinkUp == kFalse) ReconnectSerial();
    }
  }
  static bool TruckWarns() {
    EXPECT_NE(bool(frmWarning.frmEncoderWarning.Visible),
              bool(frmWarning.frmEncoderConnected.Visible));
    return frmWarning.frmEncoderWarning.Visible;
  }
};

TEST_F(Swapped, ConeIsFoundUnderTheTrucksNumberAndTheTruckStaysLost) {
  GoOn(1);
  EXPECT_EQ(settings.ConeSerialPort, 4);
  EXPECT_EQ(cone.ConeLinkUp, kTrue);
  for (int pass = 0; pass < 20; ++pass) {
    EXPECT_EQ(Main_CommStringCheck("D"), "1.5 ");
    EXPECT_EQ(cone.TruckPortLost, kTrue);
    EXPECT_TRUE(TruckWarns());
    World::RunFor(kSecond);
  }
  EXPECT_TRUE(LinkWorld::WarningIsOnTop());
  EXPECT_FALSE(Main.EncoderComm.PortOpen());
}

TEST_F(Swapped, LinesOfTheConesAdapterAreNotTakenForTheTrucks) {
  GoOn(1);
  sounding.ClampLine = 1;
  sounding.QuitState = 1;
  const std::pair<const char*, std::function<void()>> rows[] = {
      {"opened again", [] { Main_CommStringCheck("D"); }}, {"found again", [] {
                                                              Lose();
                                                              ReconnectSerial();
                                                            }}};
  for (const auto& [what, happens] : rows) {
    Main.ConeComm.Close();
    world.ports.Wire(4).SetLines({true, true, true});
    happens();
    EXPECT_TRUE(Main.ConeComm.DSRHolding()) << what;
    EXPECT_EQ(sounding.ClampLine, 1) << what;
    EXPECT_FALSE(Main.ConeComm.RTSEnable()) << what;
    EXPECT_EQ(cone.TruckPortLost, kTrue) << what;
  }
}

TEST_F(Swapped, NumberThatTheOperatorGivesTheTruckClearsIt) {
  GoOn(2);
  sounding.TruckPortRequest = {kTrue, 5};
  ServePortRequests();
  GoOn(2);
  EXPECT_EQ(cone.TruckPortLost, kFalse);
  EXPECT_FALSE(TruckWarns());
  EXPECT_EQ(Main.EncoderComm.CommPort(), 5);
  World::RunFor(2 * kSecond);
  EXPECT_FALSE(LinkWorld::WarningIsOnTop());
}

TEST_F(Swapped, AdaptersThatSwapBackAreBothFound) {
  GoOn(2);
  Swap();
  ConeAt(5);
  GoOn(4);
  EXPECT_EQ(settings.ConeSerialPort, 5);
  EXPECT_EQ(cone.ConeLinkUp, kTrue);
  EXPECT_EQ(cone.TruckPortLost, kFalse);
  EXPECT_FALSE(TruckWarns());
  EXPECT_EQ(Main.EncoderComm.CommPort(), 4);
  EXPECT_EQ(sounding.StepsMayBeMissing, kTrue);
  EXPECT_EQ(sounding.StepsMayBeMissingDepth, 8.5f);
}

TEST_F(Reconnect, ConeThatComesUnderTheNumberOfATruckPortThatIsGoneLeavesItLost) {
  ConeAt(5);
  world.ports.Wire(4).SetPresent(false);
  world.ports.Wire(5).SetPresent(false);
  Lose();
  PostCall(Now() + kMillisecond, this, [this] {  // behind the look at the ports
    ends_.clear();
    world.ports.Renumber(5, 4);
    world.ports.Wire(4).SetPresent(true);
    ConeAt(4);
  });
  ReconnectSerial();
  EXPECT_EQ(settings.ConeSerialPort, 4);
  EXPECT_EQ(cone.TruckPortLost, kTrue);
  EXPECT_TRUE(frmWarning.frmEncoderWarning.Visible);
  EXPECT_FALSE(Main.EncoderComm.PortOpen());
  EXPECT_EQ(Main_CommStringCheck("D"), "1.5 ");
  EXPECT_EQ(cone.TruckPortLost, kTrue);
}

class ReconnectAtStart : public Reconnect {};

TEST_F(ReconnectAtStart, ReturnsThePortOfTheConeAndLeavesItClosed) {
  ConeAt(7);
  At(2);
  EXPECT_EQ(ReconnectKQSerial(), 7);
  World::RunFor(kMillisecond);
  EXPECT_FALSE(StartUp.ConeComm.PortOpen());
  EXPECT_EQ(At(7).openings.at(0).baud, 19200);
  EXPECT_EQ(At(2).heard, std::vector<std::string>{"Y"});
  EXPECT_EQ(settings.ConeSerialPort, 5) << "the caller takes it over";
}

TEST_F(ReconnectAtStart, ShowsThePortThatIsChecked) {
  ConeAt(7);
  StartUp.frLoad.Visible = false;
  ReconnectKQSerial();
  EXPECT_TRUE(StartUp.frLoad.Visible);
  EXPECT_EQ(StartUp.lblLoad.Caption, "CHECKING FOR CONE ON PORT 7");
}

TEST_F(ReconnectAtStart, ReturnsZeroWithoutACone) {
  At(2).On("Y", "GPS\r\n");
  EXPECT_EQ(ReconnectKQSerial(), 0);
  EXPECT_EQ(cone.PortPresent[2], kTrue);
  EXPECT_EQ(cone.PortPresent[3], kFalse);
}

TEST_F(ReconnectAtStart, RefusedPortIsPassedOverAndAnOpenOneClosedBefore) {
  ConeAt(6);
  LinkWorld::Open(StartUp.ConeComm, 6);
  At(1);
  world.ports.SetRefused(1, true);
  ConeAt(6);
  EXPECT_EQ(ReconnectKQSerial(), 6);
}

TEST_F(ReconnectAtStart, SilentPortCostsTwoPausesAndTwentyTicks) {
  Main.EncoderComm.Close();  // so that COM 4 opens
  LinkWorld::GoToTick();
  const Micros start = Now();
  EXPECT_EQ(ReconnectKQSerial(), 0);
  EXPECT_EQ(Now() - start, 4 * kTick + 20 * kTick);
}

}  // namespace
}  // namespace penlog
