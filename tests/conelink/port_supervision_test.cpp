#include "conelink/port_supervision.h"

#include <gtest/gtest.h>

#include <functional>
#include <utility>
#include <vector>

#include "conelink/link_world.h"
#include "conelink/main_exchange.h"
#include "conelink/watched_ports.h"
#include "screens/connection_status.h"
#include "sounding/missing_steps.h"
#include "sounding/truck_interface.h"

namespace penlog {
namespace {

/// Cone on COM 3, truck interface on 4, ASCII output on 5, overlay on 6; all plugged and open.
class Supervision : public ::testing::Test {
 protected:
  Supervision() {
    settings.ConeSerialPort = 3;
    settings.TruckInterfaceSerialPort = 4;
    settings.ASCIIOutSerialPort = 5;
    settings.VideoOverlaySerialPort = 6;
    settings.LumenProbePresent = 1;
    sounding.AutoMode = 1;
    sounding.ConsoleMode = 2;
    sounding.TicksSinceStep = 1000;  // the rods rest
    cone.ConeLinkUp = kTrue;
    LinkWorld::Open(Main.ConeComm, 3);
    LinkWorld::Open(Main.EncoderComm, 4);
    LinkWorld::Open(Main.ASCIIOutComm, 5);
    LinkWorld::Open(Main.VideoOverlayComm, 6);
    ProbeAllPorts();
    Main.EncoderComm.OnComm = Main_EncoderComm_OnComm;
    Main.ConeComm.OnComm = Main_ConeComm_OnComm;
    frmWarning.Timer1.OnTick = frmWarning_Timer1_Timer;
    LinkWorld::ShowConsole();
  }
  ~Supervision() override {
    Main.EncoderComm.OnComm = {};
    Main.ConeComm.OnComm = {};
    frmWarning.Timer1.OnTick = {};
    frmWarning.Load = {};
  }

  void Plug(int number, bool in) {
    world.ports.Wire(number).SetPresent(in);
    World::RunFor(kMillisecond);
  }
  static bool Warns(const Frame& warning, const Frame& connected) {
    EXPECT_NE(bool(warning.Visible), bool(connected.Visible));
    return warning.Visible;
  }
  static bool TruckWarns() {
    return Warns(frmWarning.frmEncoderWarning, frmWarning.frmEncoderConnected);
  }
  static bool ASCIIWarns() {
    return Warns(frmWarning.frmASCIIOutWarning, frmWarning.frmASCIISerialConnected);
  }
  static bool VideoWarns() {
    return Warns(frmWarning.frmSensorayWarning, frmWarning.frmFrameGrabberConnected);
  }
  static bool ConeWarns() {
    return Warns(frmWarning.frmSerialWarning, frmWarning.frmSerialConnected);
  }

  LinkWorld world;
  ScriptedCone cone_end{world.ports.Wire(3)};
  ScriptedCone truck_end{world.ports.Wire(4)};
  ScriptedCone ascii_end{world.ports.Wire(5)};
  ScriptedCone video_end{world.ports.Wire(6)};
};

TEST_F(Supervision, AllPresentRaisesNothing) {
  SupervisePorts();
  EXPECT_FALSE(TruckWarns() || ASCIIWarns() || VideoWarns() || ConeWarns());
  EXPECT_FALSE(LinkWorld::WarningIsOnTop());
  EXPECT_EQ(cone.WarningShown, kFalse);
  World::RunFor(kMillisecond);
  EXPECT_EQ(truck_end.closings + ascii_end.closings + video_end.closings + cone_end.closings, 0);
}

TEST_F(Supervision, ProbeFillsThePortTable) {
  cone.PortPresent.fill(7);
  EXPECT_EQ(ProbeAllPorts(), 4);
  EXPECT_EQ(cone.PortPresent[0], 7);
  EXPECT_EQ(cone.PortPresent[3], kTrue);
  EXPECT_EQ(cone.PortPresent[7], kFalse);
  EXPECT_EQ(cone.PortPresent[255], kFalse);
  EXPECT_FALSE(ProbePort(256));
  EXPECT_FALSE(ProbePort(-1));
}

TEST_F(Supervision, MissingTruckPortWarnsAndRaisesTheWindow) {
  Plug(4, false);
  SupervisePorts();
  EXPECT_EQ(cone.TruckPortLost, kTrue);
  EXPECT_EQ(cone.PortPresent[4], kFalse);
  EXPECT_TRUE(TruckWarns());
  EXPECT_TRUE(LinkWorld::WarningIsOnTop());
  EXPECT_EQ(cone.WarningShown, kTrue);
  EXPECT_EQ(cone.ConeLinkUp, kTrue);
}

TEST_F(Supervision, WindowThatStandsIsNotRaisedAgain) {
  Plug(4, false);
  cone.WarningShown = kTrue;
  SupervisePorts();
  EXPECT_FALSE(LinkWorld::WarningIsOnTop());
  EXPECT_EQ(cone.TruckPortLost, kTrue);
}

TEST_F(Supervision, WindowThatIsLoadedByALossShowsTheWarningAlone) {
  frmWarning.Load = frmWarning_Load;
  Unload(frmWarning);
  for (const int number : {4, 5}) Plug(number, false);
  SupervisePorts();
  EXPECT_TRUE(frmWarning.Loaded);
  EXPECT_TRUE(TruckWarns());
  EXPECT_TRUE(ASCIIWarns());
}

TEST_F(Supervision, TruckPortThatReturnsIsOpenedAgainBeforeItsPanelSaysOk) {
  for (const auto& [probe, baud] : {std::pair{0, 19200}, {1, 19200}, {2, 9600}}) {
    settings.LumenProbePresent = static_cast<std::int16_t>(probe);
    Plug(4, false);
    SupervisePorts();
    Plug(4, true);
    truck_end.openings.clear();
    SupervisePorts();
    EXPECT_EQ(cone.TruckPortLost, kFalse);
    EXPECT_FALSE(TruckWarns());
    World::RunFor(kMillisecond);
    ASSERT_EQ(truck_end.openings.size(), 1u);
    EXPECT_EQ(truck_end.openings[0].baud, baud) << probe;
    EXPECT_FALSE(Main.EncoderComm.Gone());
    EXPECT_FALSE(Main.EncoderComm.DTREnable());
  }
}

TEST_F(Supervision, TruckPortWithAVideoProbeAboveTwoKeepsItsSettings) {
  Main.EncoderComm.Close();
  Main.EncoderComm.SetSettings("4800,N,8,1");
  Main.EncoderComm.Open();
  settings.LumenProbePresent = 3;
  Plug(4, false);
  SupervisePorts();
  Plug(4, true);
  SupervisePorts();
  World::RunFor(kMillisecond);
  EXPECT_EQ(truck_end.openings.back().baud, 4800);
}

TEST_F(Supervision, TruckLinesOfTheReturnAreReadWithoutCounting) {
  settings.DepthCounterType = 0;
  settings.DepthResolution = 0.01f;
  settings.DepthStepCounts = 1;
  sounding.CurrentDepth = 7.25f;
  Plug(4, false);
  SupervisePorts();
  world.ports.Wire(4).SetLines({true, true, false});  // CTS and DSR held while it is away
  Plug(4, true);
  SupervisePorts();
  World::RunFor(kMillisecond);
  EXPECT_EQ(sounding.ClampLine, 0);
  EXPECT_EQ(sounding.PhaseDown, 0);
  EXPECT_EQ(sounding.PhaseUp, 1);
  EXPECT_EQ(sounding.DepthCounts, 0);
  EXPECT_EQ(sounding.CurrentDepth, 7.25f);
  // Depth goes on from there: the line that is let go second tells the direction.
  world.ports.Wire(4).SetLines({false, true, false});
  World::RunFor(kMillisecond);
  EXPECT_EQ(sounding.DepthCounts, 1);
}

TEST_F(Supervision, EachNewLossBringsAPlacedStatusWindowToTheFrontAgain) {
  for (const std::int16_t pinned : {kFalse, kTrue}) {
    for (const int port : {3, 4, 5}) {
      SCOPED_TRACE(testing::Message() << pinned << " " << port);
      cone.WarningPinned = pinned;
      cone.WarningShown = kTrue;  // for another loss, or for the last one
      cone.ConeLinkUp = kTrue;
      Show(Main);
      SupervisePorts();
      ASSERT_FALSE(LinkWorld::WarningIsOnTop());
      Plug(port, false);
      SupervisePorts();
      EXPECT_EQ(LinkWorld::WarningIsOnTop(), pinned == kTrue);
      Show(Main);
      SupervisePorts();
      EXPECT_FALSE(LinkWorld::WarningIsOnTop()) << "the loss is known";
      Plug(port, true);
      SupervisePorts();
    }
  }
}

TEST_F(Supervision, ReturnOfTheTruckPortBeforeTheStartPutsNoDepthInDoubt) {
  const struct {
    std::int16_t mode;
    float resume;
    bool noted;
  } rows[] = {{0, 0, false}, {1, 0, false}, {8, 0, false},
              {1, 1, true},  {2, 0, true},  {4, 0, true}};
  for (const auto& row : rows) {
    ForgetMissingSteps();
    sounding.ConsoleMode = row.mode;
    session.ResumeDepthStatus = row.resume;
    Plug(4, false);
    SupervisePorts();
    Plug(4, true);
    SupervisePorts();
    EXPECT_EQ(sounding.StepsMayBeMissing == kTrue, row.noted) << row.mode << " " << row.resume;
  }
}

TEST_F(Supervision, ASecondReturnOfTheTruckPortKeepsTheDepthOfTheFirst) {
  ForgetMissingSteps();
  for (const float depth : {3.5f, 4.5f, 6.5f}) {
    sounding.CurrentDepth = depth;
    Plug(4, false);
    SupervisePorts();
    Plug(4, true);
    SupervisePorts();
  }
  EXPECT_EQ(missing_steps.TimesAway, 3);
  EXPECT_EQ(missing_steps.FirstDepth, 3.5f);
  EXPECT_EQ(sounding.StepsMayBeMissingDepth, 6.5f);
}

TEST_F(Supervision, ReturnOfTheTruckPortSaysThatStepsMayBeMissingAndWhere) {
  sounding.CurrentDepth = 12.5f;
  Plug(4, false);
  SupervisePorts();
  EXPECT_EQ(sounding.StepsMayBeMissing, kFalse);
  Plug(4, true);
  SupervisePorts();
  EXPECT_EQ(sounding.StepsMayBeMissing, kTrue);
  EXPECT_EQ(sounding.StepsMayBeMissingDepth, 12.5f);
}

TEST_F(Supervision, TruckPortOfALatchedQuitReturnsWithItsStopLine) {
  for (const std::int16_t state : {std::int16_t{1}, std::int16_t{0}, std::int16_t{3}}) {
    sounding.QuitState = state;
    Plug(4, false);
    SupervisePorts();
    Plug(4, true);
    SupervisePorts();
    World::RunFor(kMillisecond);
    EXPECT_EQ(truck_end.outputs.back().rts, state == 1) << state;
    EXPECT_FALSE(truck_end.outputs.back().dtr);
  }
}

TEST_F(Supervision, TruckPortThatRefusesToOpenKeepsItsWarning) {
  Plug(4, false);
  SupervisePorts();
  Plug(4, true);
  world.ports.SetRefused(4, true);
  SupervisePorts();
  EXPECT_EQ(cone.TruckPortLost, kTrue);
  EXPECT_TRUE(TruckWarns());
  EXPECT_EQ(sounding.StepsMayBeMissing, kFalse);
  world.ports.SetRefused(4, false);
  SupervisePorts();
  EXPECT_EQ(cone.TruckPortLost, kFalse);
  EXPECT_FALSE(TruckWarns());
}

TEST_F(Supervision, TruckPortThatWentAndCameBetweenTwoLooksIsOpenedAgain) {
  Plug(4, false);
  Plug(4, true);
  SupervisePorts();
  EXPECT_FALSE(Main.EncoderComm.Gone());
  EXPECT_EQ(sounding.StepsMayBeMissing, kTrue);
  EXPECT_FALSE(TruckWarns());
}

TEST_F(Supervision, TruckOnTheConesPortIsNotSupervised) {
  settings.TruckInterfaceSerialPort = 3;
  cone.PortPresent[3] = 7;
  Plug(4, false);
  SupervisePorts();
  EXPECT_EQ(cone.TruckPortLost, kFalse);
  EXPECT_FALSE(TruckWarns());
}

TEST_F(Supervision, PortNumberZeroIsNotInUseAndNeverLost) {
  settings.TruckInterfaceSerialPort = 0;
  settings.ASCIIOutSerialPort = 0;
  settings.VideoOverlaySerialPort = 0;
  cone.TruckPortLost = cone.ASCIIPortLost = cone.VideoPortLost = kTrue;
  SupervisePorts();
  EXPECT_EQ(cone.TruckPortLost, kFalse);
  EXPECT_EQ(cone.ASCIIPortLost, kFalse);
  EXPECT_EQ(cone.VideoPortLost, kFalse);
  EXPECT_FALSE(LinkWorld::WarningIsOnTop());
}

TEST_F(Supervision, ASCIIPortIsProbedFreshAndOpenedAgain) {
  Plug(5, false);
  SupervisePorts();
  EXPECT_EQ(cone.ASCIIPortLost, kTrue);
  EXPECT_TRUE(ASCIIWarns());
  EXPECT_TRUE(LinkWorld::WarningIsOnTop());
  Plug(5, true);
  SupervisePorts();
  World::RunFor(kMillisecond);
  EXPECT_EQ(cone.ASCIIPortLost, kFalse);
  EXPECT_FALSE(ASCIIWarns());
  EXPECT_EQ(ascii_end.openings.size(), 2u);
  EXPECT_EQ(ascii_end.openings.back().baud, 19200);
  EXPECT_EQ(sounding.StepsMayBeMissing, kFalse);
}

TEST_F(Supervision, VideoPortIsTakenFromTheTableUntilItIsLost) {
  Plug(6, false);
  SupervisePorts();
  EXPECT_FALSE(VideoWarns()) << "the table still says present";
  ProbeAllPorts();
  SupervisePorts();
  EXPECT_EQ(cone.VideoPortLost, kTrue);
  EXPECT_TRUE(VideoWarns());
  EXPECT_TRUE(LinkWorld::WarningIsOnTop());
  SupervisePorts();
  EXPECT_TRUE(VideoWarns());
  Plug(6, true);
  SupervisePorts();
  World::RunFor(kMillisecond);
  EXPECT_FALSE(VideoWarns()) << "no scan for the cone comes any more";
  EXPECT_EQ(cone.VideoPortLost, kFalse);
  EXPECT_EQ(video_end.openings.back().baud, 9600);
  EXPECT_FALSE(Main.VideoOverlayComm.Gone());
}

TEST_F(Supervision, VideoPortIsSupervisedWithProbeSettingOneAlone) {
  for (const std::int16_t probe : {std::int16_t{0}, std::int16_t{2}, std::int16_t{3}}) {
    settings.LumenProbePresent = probe;
    cone.PortPresent[6] = kFalse;
    SupervisePorts();
    EXPECT_EQ(cone.VideoPortLost, kFalse) << probe;
  }
}

TEST_F(Supervision, MissingConePortTakesTheLinkDown) {
  Plug(3, false);
  SupervisePorts();
  EXPECT_EQ(cone.ConePortLost, kTrue);
  EXPECT_EQ(cone.ConeLinkUp, kFalse);
  EXPECT_TRUE(ConeWarns());
  EXPECT_TRUE(frmWarning.frmModuleWarning.Visible);
  EXPECT_FALSE(frmWarning.frmModulesConnected.Visible);
  EXPECT_TRUE(LinkWorld::WarningIsOnTop());
}

TEST_F(Supervision, ConePortFlagFollowsThePortBeforeEachExchange) {
  cone.ConePortLost = kTrue;
  SupervisePorts();
  EXPECT_EQ(cone.ConePortLost, kFalse);
}

TEST_F(Supervision, FlagOfTheConePortStaysSetBeforeAScan) {
  cone.ConePortLost = kTrue;
  Plug(6, false);
  ProbeAllPorts();
  SuperviseBeforeScan();
  EXPECT_EQ(cone.ConePortLost, kTrue);
  EXPECT_EQ(cone.VideoPortLost, kFalse) << "the overlay is left out";
}

TEST_F(Supervision, WindowGoesBehindTheConsoleOnceAllIsClearAfterItsTimersTime) {
  cone_end.On("X", "OK\r\n");
  Plug(5, false);
  Main_CommStringCheck("X");
  World::RunFor(10 * kSecond);
  EXPECT_TRUE(LinkWorld::WarningIsOnTop()) << "it is still lost";
  Plug(5, true);
  const Micros clear = Now();
  Main_CommStringCheck("X");
  EXPECT_EQ(cone.WarningShown, kFalse);
  World::RunFor(clear + 1499 * kMillisecond - Now());
  EXPECT_TRUE(LinkWorld::WarningIsOnTop());
  World::RunFor(2 * kMillisecond);
  EXPECT_EQ(ShownForms(), (std::vector<Form*>{&frmWarning, &Main}));
  EXPECT_FALSE(frmWarning.Timer1.Running());
}

TEST_F(Supervision, WindowStaysOnTopIfAnythingHappensWithinItsTimersTime) {
  cone_end.On("X", "OK\r\n");
  const std::pair<const char*, std::function<void()>> rows[] = {
      {"the operator pins it", [] { cone.WarningPinned = kTrue; }}, {"another loss", [this] {
                                                                       Plug(5, false);
                                                                       Main_CommStringCheck("X");
                                                                     }}};
  for (const auto& [what, happens] : rows) {
    RaiseWarning();
    Main_CommStringCheck("X");
    EXPECT_TRUE(frmWarning.Timer1.Running()) << what;
    happens();
    World::RunFor(2 * kSecond);
    EXPECT_TRUE(LinkWorld::WarningIsOnTop()) << what;
    EXPECT_FALSE(frmWarning.Timer1.Running()) << what;
    cone.WarningPinned = kFalse;
    cone.WarningShown = kFalse;
  }
}

TEST_F(Supervision, WindowStaysWhileAnythingIsLostOrTheOperatorPinsIt) {
  const struct {
    const char* what;
    std::int16_t ConeState::*flag;
    std::int16_t value;
  } rows[] = {{"cone port", &ConeState::ConePortLost, kTrue},
              {"truck port", &ConeState::TruckPortLost, kTrue},
              {"ASCII port", &ConeState::ASCIIPortLost, kTrue},
              {"overlay port", &ConeState::VideoPortLost, kTrue},
              {"link", &ConeState::ConeLinkUp, kFalse},
              {"pin", &ConeState::WarningPinned, kTrue}};
  for (const auto& row : rows) {
    const ConeState before = cone;
    cone.WarningShown = kTrue;
    cone.*row.flag = row.value;
    LowerWarningIfClear();
    EXPECT_EQ(cone.WarningShown, kTrue) << row.what;
    EXPECT_FALSE(frmWarning.Timer1.Running()) << row.what;
    cone = before;
  }
}

TEST_F(Supervision, SharedPortOpenedAgainReadsTheLinesAndKeepsTheQuit) {
  settings.TruckInterfaceSerialPort = 3;
  sounding.QuitState = 1;
  sounding.CurrentDepth = 3.5f;
  Plug(3, false);
  world.ports.Wire(3).SetLines({false, true, false});
  Plug(3, true);
  cone_end.On("X", "OK\r\n");
  EXPECT_EQ(Main_CommStringCheck("X"), "OK");
  EXPECT_EQ(sounding.ClampLine, 0);
  EXPECT_TRUE(cone_end.outputs.back().rts);
  EXPECT_FALSE(cone_end.outputs.back().dtr);
  EXPECT_EQ(sounding.StepsMayBeMissing, kTrue);
  EXPECT_EQ(sounding.StepsMayBeMissingDepth, 3.5f);
}

TEST_F(Supervision, PortThatIsGivenAnotherNumberWhileItIsLostTurnsGreenAgain) {
  Plug(4, false);
  Plug(5, false);
  SupervisePorts();
  world.ports.Wire(7);
  settings.TruckInterfaceSerialPort = 7;  // as the port screen's request is served
  Main.EncoderComm.Close();
  OpenTruckPort("19200,N,8,1");
  settings.ASCIIOutSerialPort = 0;
  cone.TruckPortLost = cone.ASCIIPortLost = kFalse;
  SupervisePorts();
  EXPECT_FALSE(TruckWarns());
  EXPECT_FALSE(frmWarning.frmASCIIOutWarning.Visible) << "an output that is switched off";
}

TEST_F(Supervision, TruckThatTheOperatorPutsOnTheConesPortIsNotLost) {
  session.StartConePort = 3;
  session.StartTruckPort = 4;
  Plug(4, false);
  SupervisePorts();
  settings.TruckInterfaceSerialPort = 3;
  cone.TruckPortLost = kFalse;  // its lines were read there
  SupervisePorts();
  EXPECT_EQ(cone.TruckPortLost, kFalse);
  EXPECT_FALSE(frmWarning.frmEncoderWarning.Visible);
}

/// Ports that take their time to refuse, among exchanges that go on.
class SlowPorts : public Supervision {
 protected:
  SlowPorts() { cone_end.On("D", " 0.5 -1.25\r\n"); }

  /// Takes readings for so long; returns how many came.
  int ReadFor(Micros time) {
    int readings = 0;
    for (const Micros end = Now() + time; Now() < end;) {
      readings += Main_CommStringCheck("D") == " 0.5 -1.25 " ? 1 : 0;
    }
    return readings;
  }
  /// The port goes and comes back as one that refuses after so long.
  void ComeBackRefusing(int number, Micros after) {
    Plug(number, false);
    watched.refuses_after[number] = after;
    Plug(number, true);
  }
  /// Seconds from each opening to the next, rounded.
  std::vector<int> Gaps(int number) {
    std::vector<int> gaps;
    const auto& openings = watched.openings[number];
    for (std::size_t i = 1; i < openings.size(); ++i) {
      gaps.push_back(static_cast<int>((openings[i] - openings[i - 1] + kSecond / 2) / kSecond));
    }
    return gaps;
  }

  WatchedPorts watched{world.ports};
};

TEST_F(SlowPorts, OutputIsTriedAgainAfterGrowingPausesAndReadingsGoOn) {
  const std::pair<Micros, std::vector<int>> rows[] = {{WatchedPorts::kMute, {12, 32, 32, 32}},
                                                      {kSecond, {11, 31, 31, 31}}};
  for (const auto& [after, gaps] : rows) {
    watched.openings.clear();
    cone.ASCIIRefusals = {};
    ComeBackRefusing(5, after);
    const int readings = ReadFor(120 * kSecond);
    EXPECT_EQ(Gaps(5), gaps);
    EXPECT_GT(readings, 109 * kSecond / (2 * kTick)) << "one in two ticks but for the trials";
    EXPECT_EQ(cone.ASCIIPortLost, kTrue);
    EXPECT_TRUE(ASCIIWarns());
  }
}

TEST_F(SlowPorts, OverlayIsTriedAgainAfterGrowingPauses) {
  ComeBackRefusing(6, WatchedPorts::kMute);
  ReadFor(60 * kSecond);
  EXPECT_EQ(Gaps(6), (std::vector<int>{12, 32}));
}

TEST_F(SlowPorts, TruckIsTriedAgainEveryThreeSeconds) {
  ComeBackRefusing(4, WatchedPorts::kMute);
  const int readings = ReadFor(19 * kSecond);
  EXPECT_EQ(Gaps(4), (std::vector<int>{5, 5, 5}));
  EXPECT_GT(readings, 8 * kSecond / (2 * kTick));
  EXPECT_TRUE(TruckWarns());
}

TEST_F(SlowPorts, PortThatIsOpenAgainStartsWithTheFirstPauseTheNextTime) {
  ComeBackRefusing(5, WatchedPorts::kMute);
  ReadFor(20 * kSecond);
  watched.refuses_after.clear();
  ReadFor(30 * kSecond);
  EXPECT_EQ(cone.ASCIIPortLost, kFalse);
  EXPECT_FALSE(ASCIIWarns());
  watched.openings.clear();
  ComeBackRefusing(5, WatchedPorts::kMute);
  ReadFor(20 * kSecond);
  EXPECT_EQ(Gaps(5), std::vector<int>{12});
}

TEST_F(SlowPorts, AnotherNumberIsTriedAtOnce) {
  ComeBackRefusing(5, WatchedPorts::kMute);
  ReadFor(5 * kSecond);
  world.ports.Wire(7);
  settings.ASCIIOutSerialPort = 7;
  ReadFor(kSecond);
  EXPECT_EQ(cone.ASCIIPortLost, kFalse);
  EXPECT_EQ(watched.openings[5].size(), 1u);
}

TEST_F(SlowPorts, WhatRefusesAtOnceIsTriedInEachExchange) {
  Plug(5, false);
  world.ports.SetRefused(5, true);
  Plug(5, true);
  const int readings = ReadFor(10 * kSecond);
  EXPECT_GT(readings, 50);
  EXPECT_EQ(watched.openings[5].size(), static_cast<std::size_t>(readings));
}

TEST_F(SlowPorts, ThatWereFoundOutAreNotTriedWhileRowsAreComing) {
  sounding.ConsoleMode = 2;
  std::function<void()> row = [&] {
    sounding.TicksSinceStep = 0;
    PostCall(Now() + kSecond, this, row);
  };
  row();
  ComeBackRefusing(5, WatchedPorts::kMute);
  ReadFor(100 * kSecond);
  EXPECT_EQ(watched.openings[5].size(), 1u);
  DropCalls(this);
  sounding.TicksSinceStep = 91;
  ReadFor(kSecond);
  EXPECT_EQ(watched.openings[5].size(), 2u) << "the rods have rested for five seconds";
}

}  // namespace
}  // namespace penlog
