#include "conelink/port_supervision.h"

#include <gtest/gtest.h>

#include "conelink/link_world.h"
#include "conelink/main_exchange.h"
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
    cone.ConeLinkUp = kTrue;
    LinkWorld::Open(Main.ConeComm, 3);
    LinkWorld::Open(Main.EncoderComm, 4);
    LinkWorld::Open(Main.ASCIIOutComm, 5);
    LinkWorld::Open(Main.VideoOverlayComm, 6);
    ProbeAllPorts();
    Main.EncoderComm.OnComm = Main_EncoderComm_OnComm;
    Main.ConeComm.OnComm = Main_ConeComm_OnComm;
  }
  ~Supervision() override {
    Main.EncoderComm.OnComm = {};
    Main.ConeComm.OnComm = {};
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
  EXPECT_FALSE(frmWarning.Visible);
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
  EXPECT_TRUE(frmWarning.Visible);
  EXPECT_EQ(cone.WarningShown, kTrue);
  EXPECT_EQ(cone.ConeLinkUp, kTrue);
}

TEST_F(Supervision, WindowThatStandsIsNotRaisedAgain) {
  Plug(4, false);
  cone.WarningShown = kTrue;
  SupervisePorts();
  EXPECT_FALSE(frmWarning.Visible);
  EXPECT_EQ(cone.TruckPortLost, kTrue);
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
  EXPECT_FALSE(frmWarning.Visible);
}

TEST_F(Supervision, ASCIIPortIsProbedFreshAndOpenedAgain) {
  Plug(5, false);
  SupervisePorts();
  EXPECT_EQ(cone.ASCIIPortLost, kTrue);
  EXPECT_TRUE(ASCIIWarns());
  EXPECT_TRUE(frmWarning.Visible);
  Plug(5, true);
  SupervisePorts();
  World::RunFor(kMillisecond);
  EXPECT_EQ(cone.ASCIIPortLost, kFalse);
  EXPECT_FALSE(ASCIIWarns());
  EXPECT_EQ(ascii_end.openings.size(), 2u);
  EXPECT_EQ(ascii_end.openings.back().baud, 19200);
  EXPECT_EQ(sounding.StepsMayBeMissing, kFalse);
}

TEST_F(Supervision, VideoPortIsTakenFromTheTableWithoutAFreshProbe) {
  Plug(6, false);
  SupervisePorts();
  EXPECT_FALSE(VideoWarns()) << "the table still says present";
  ProbeAllPorts();
  SupervisePorts();
  EXPECT_EQ(cone.VideoPortLost, kTrue);
  EXPECT_TRUE(VideoWarns());
  EXPECT_TRUE(frmWarning.Visible);
  Plug(6, true);
  SupervisePorts();
  EXPECT_TRUE(VideoWarns()) << "the table still says missing";
  ProbeAllPorts();
  SupervisePorts();
  World::RunFor(kMillisecond);
  EXPECT_FALSE(VideoWarns());
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
  EXPECT_TRUE(frmWarning.Visible);
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

TEST_F(Supervision, WindowGoesOnceAllIsClearAfterItsTimersTime) {
  cone_end.On("X", "OK\r\n");
  frmWarning.Timer1.OnTick = [] { frmWarning.Visible = false; };
  frmWarning.Visible = true;
  cone.WarningShown = kTrue;
  Main_CommStringCheck("X");
  EXPECT_EQ(cone.WarningShown, kFalse);
  EXPECT_TRUE(frmWarning.Timer1.Running());
  EXPECT_EQ(frmWarning.Timer1.Interval(), 1500);
  World::RunFor(1500 * kMillisecond);
  EXPECT_FALSE(frmWarning.Visible);
  frmWarning.Timer1.OnTick = {};
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

}  // namespace
}  // namespace penlog
