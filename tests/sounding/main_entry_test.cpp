#include "sounding/main_entry.h"

#include "conelink/port_supervision.h"
#include "sounding/fake_cone.h"
#include "sounding/main_load.h"
#include "sounding/port_requests.h"
#include "sounding/resume_rebuild.h"

namespace penlog {
namespace {

TEST(DualAxis, IsSettledFromTheGeophonesAndTheFamily) {
  struct Case {
    int setting;
    bool channel8, channel9;
    const char* cone_id;
    int settled;
  };
  const Case cases[] = {
      {1, true, true, "DSE1234", 1}, {1, true, true, "DPG1234", 0},  {0, true, true, "DSE1234", 0},
      {0, true, true, "DPG1234", 0}, {1, true, false, "DSE1234", 2}, {0, true, false, "DPG1234", 2},
      {1, false, false, "DSE1", 1},  {1, false, true, "DSE1", 1},    {3, true, true, "DSE1", 3},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(SettledDualAxis(static_cast<std::int16_t>(row.setting), row.channel8, row.channel9,
                              row.cone_id),
              row.settled)
        << row.setting << row.cone_id;
  }
}

struct Entry : Console {
  Entry() {
    Main.Timer1.OnTick = Main_Timer1_Timer;
    for (const int number : {5, 6}) ports.Wire(number);
  }
};

TEST(Entry, OpensThePortsOfTheSession) {
  Entry entry;
  settings.ASCIIOutSerialPort = 5;
  settings.VideoOverlaySerialPort = 6;
  settings.LumenProbePresent = 1;
  EnterMainloop();
  EXPECT_TRUE(Main.ConeComm.PortOpen());
  EXPECT_TRUE(Main.EncoderComm.PortOpen());
  EXPECT_TRUE(Main.ASCIIOutComm.PortOpen());
  EXPECT_TRUE(Main.VideoOverlayComm.PortOpen());
  EXPECT_EQ(Main.ASCIIOutComm.Settings(), "19200,N,8,1");
  EXPECT_EQ(Main.VideoOverlayComm.Settings(), "9600,N,8,1");
  EXPECT_EQ(Main.EncoderComm.Settings(), "19200,N,8,1");
}

TEST(Entry, TheTruckPortsSettingsFollowTheProbe) {
  struct Case {
    int probe;
    const char* settings_text;
  };
  const Case cases[] = {
      {0, "19200,N,8,1"}, {1, "19200,N,8,1"}, {2, "9600,N,8,1"}, {3, "4800,E,7,2"}};
  for (const auto& row : cases) {
    Entry entry;
    settings.LumenProbePresent = static_cast<std::int16_t>(row.probe);
    settings.VideoOverlaySerialPort = 6;
    Main.EncoderComm.SetSettings("4800,E,7,2");
    EnterMainloop();
    EXPECT_EQ(Main.EncoderComm.Settings(), row.settings_text) << row.probe;
    EXPECT_EQ(Main.VideoOverlayComm.PortOpen(), row.probe == 1) << row.probe;
  }
}

TEST(Entry, SettlesTheSettingOfTheGeophones) {
  Entry entry;
  Console::AddChannel(8);
  settings.DualAxisSeismic = 1;
  EnterMainloop();
  EXPECT_EQ(settings.DualAxisSeismic, 2);
}

TEST(Entry, AnOutputThatDoesNotOpenCountsAsLostAndIsOpenedWhenItCan) {
  Entry entry;
  settings.ASCIIOutSerialPort = 15;
  settings.VideoOverlaySerialPort = 16;
  settings.LumenProbePresent = 1;
  EnterMainloop();
  EXPECT_EQ(cone.ASCIIPortLost, -1);
  EXPECT_EQ(cone.VideoPortLost, -1);
  for (const int number : {15, 16}) {
    entry.ports.Wire(number);
    ProbePort(number);
  }
  SupervisePorts();
  EXPECT_TRUE(Main.ASCIIOutComm.PortOpen());
  EXPECT_TRUE(Main.VideoOverlayComm.PortOpen());
  EXPECT_EQ(cone.ASCIIPortLost, 0);
  EXPECT_EQ(cone.VideoPortLost, 0);
}

TEST(Entry, WithASharedPortEncoderCommIsNeverOpened) {
  Entry entry;
  settings.TruckInterfaceSerialPort = Console::kConePort;
  entry.truck().SetLines({false, true, false});
  EnterMainloop();
  EXPECT_FALSE(Main.EncoderComm.PortOpen());
  EXPECT_EQ(sounding.ClampLine, 0);
  EXPECT_EQ(sounding.PhaseUp, 1);
}

TEST(Entry, WhereTheConeTookTheTrucksNumberItsLinesAreNotTheTrucks) {
  for (const bool took : {true, false}) {
    Entry entry;
    settings.ConeSerialPort = Console::kTruckPort;
    cone.TruckPortLost = kTrue;
    if (!took) session.StartConePort = session.StartTruckPort;
    entry.truck().SetLines({false, true, false});
    sounding.ClampLine = 1;
    EnterMainloop();
    EXPECT_EQ(sounding.ClampLine, took ? 1 : 0);
    EXPECT_FALSE(Main.EncoderComm.PortOpen());
  }
}

TEST(Entry, SetsTheDefaults) {
  Entry entry;
  sounding.ManualClampState = 0;
  sounding.QuitSettleCount = 9;
  sounding.AutoMode = 0;
  sounding.QuitState = 3;
  settings.DepthFormat = 1;
  EnterMainloop();
  EXPECT_EQ(sounding.ManualClampState, 1);
  EXPECT_EQ(sounding.QuitSettleCount, 0);
  EXPECT_EQ(sounding.AutoMode, 1);
  EXPECT_EQ(sounding.QuitState, 0);
  EXPECT_EQ(Main.Label7.Caption, "ELEVATION");
  EXPECT_EQ(Main.Label72.Caption, "ELEVATION");
  EXPECT_EQ(Main.lblCommStatus.Caption, "Cone # DSE1234 Found");
}

TEST(Entry, InCalibrationModeOpensTheCalibratorsPort) {
  Entry entry;
  session.CalibrationMode = -1;
  settings.CalibratorSerialPort = 6;
  EnterMainloop();
  EXPECT_TRUE(Main.CalibratorComm.PortOpen());
  EXPECT_EQ(Main.CalibratorComm.Settings(), "19200,N,8,1");
}

TEST(Entry, ScalesTheQuitLimitsWithTheBaselinesOfThatMoment) {
  Entry entry;
  channels.ChannelSensitivity(1) = 10.0f;
  channels.Baselines(1) = 2.0f;
  channels.QuitLimitDeep(1) = 0.5f;
  EnterMainloop();
  EXPECT_FLOAT_EQ(channels.QuitLimitDeep(1), 7.0f);
}

TEST(Entry, ClearsTheRangesOfTheCharts) {
  Entry entry;
  for (auto* range :
       {&display.GraphMin, &display.GraphMax, &display.GraphShownMin, &display.GraphShownMax}) {
    range->fill(5.0f);
  }
  EnterMainloop();
  for (const auto* range :
       {&display.GraphMin, &display.GraphMax, &display.GraphShownMin, &display.GraphShownMax}) {
    for (std::size_t g = 1; g <= 4; ++g) EXPECT_EQ((*range)[g], 0.0f);
  }
}

TEST(Entry, APortThatDoesNotOpenCountsAsLost) {
  Entry entry;
  entry.ports.SetRefused(Console::kTruckPort, true);
  EnterMainloop();
  EXPECT_EQ(cone.TruckPortLost, -1);
}

TEST(Load, ShowsTheLampsOfTheCounter) {
  for (const int type : {0, 1}) {
    Console console;
    settings.DepthCounterType = static_cast<std::int16_t>(type);
    settings.DepthUnits = static_cast<std::int16_t>(type);
    Main_Load();
    EXPECT_EQ(Main.shpPressure.Visible, type == 1);
    EXPECT_EQ(Main.Label10.Visible, type == 1);
    EXPECT_EQ(Main.shpUp.Visible, type == 0);
    EXPECT_EQ(Main.lblDown.Visible, type == 0);
    EXPECT_EQ(Main.lblDepthUnits.Caption, type == 0 ? "(m)" : "(ft)");
    EXPECT_TRUE(Main.lblNoSeismicHardwareFound.Visible);
    EXPECT_TRUE(frmWarning.Visible);
    EXPECT_TRUE(Main.Timer1.Running());
    EXPECT_EQ(Main.lblBallTip.Caption, "TIP CONFIG: CONICAL, 0mm^2 AREA");
  }
}

TEST(Load, LaysOutTheConsole) {
  Console console;
  display.GraphCount = 1;
  display.GraphChannel[1] = 1;
  EXPECT_EQ(Main.lblCommStatus.Caption, "No Cone Present");
  Main_Load();
  EXPECT_EQ(Main.lblCommStatus.Caption, "Cone # DSE1234 Found");
  EXPECT_TRUE(Main.pctGraph(1).Visible);
  EXPECT_TRUE(Main.lblChanValue(3).Visible);
}

TEST(Load, PutsTheDepthLampInThePlaceOfThePressureLampWithTheEncoder) {
  Console console;
  Main.Label10.Where = {true, 0.1, 0.2, 0.3, 0.4};
  Main.shpPressure.Where = {true, 0.5, 0.6, 0.7, 0.8};
  Main_Load();
  EXPECT_EQ(Main.Label11.Where.left, 0.1);
  EXPECT_EQ(Main.shpDepth.Where.left, 0.5);
  EXPECT_TRUE(Main.shpDown.Visible && Main.lblUp.Visible);
}

TEST(Load, KeepsThePortsToCompareWith) {
  Console console;
  settings.ASCIIOutSerialPort = 7;
  settings.VideoOverlaySerialPort = 8;
  Main_Load();
  EXPECT_EQ(sounding.PortsAtLoad, (std::array<std::int16_t, 4>{3, 4, 7, 8}));
}

TEST(Load, KnowsOfTheSeismicHardware) {
  for (const int geophone : {8, 9}) {
    Console console;
    channels.ChannelPresent(geophone) = -1;
    Main_Load();
    EXPECT_FALSE(Main.lblNoSeismicHardwareFound.Visible) << geophone;
  }
}

TEST(Load, WarnsOfTheBallTipAndCancelStartsAnew) {
  for (const bool ok : {true, false}) {
    Console console;
    settings.TipConfiguration = 1;
    settings.TipDiameter = 60;
    settings.BallTipArea = 2827;
    std::string text;
    PostCall(Now() + kSecond, &console, [&] {
      text = FrontBox()->text;
      AnswerBox(FrontBox()->id, ok ? BoxAnswer::Ok : BoxAnswer::Cancel);
    });
    if (ok) {
      Main_Load();
      EXPECT_TRUE(console.host.started.empty());
    } else {
      EXPECT_THROW(Main_Load(), ProgramEnd);
      EXPECT_EQ(console.host.started.size(), 1u);
    }
    EXPECT_EQ(Main.lblBallTip.Caption, "TIP CONFIG: BALL, 2827mm DIA, 2827mm^2 AREA");
    EXPECT_TRUE(Main.lblBallTip.Visible);
    EXPECT_EQ(text,
              "CAUTION: SYSTEM IS CONFIGURED TO INTERPERT TIP READINGS USING BALL TIP WITH A "
              "DIAMETER OF 60 mm.  Fs / Fr / U2 READINGS MAY BE AFFECTED.  SPT AND SBT "
              "CORRELATIONS NOT ESTABLISHED.\r\rENSURE THAT THE PROPER BALL TIP IS ATTACHED AND "
              "PRESS OK.\r\rIF BALL TIP DIAMETER IS INCORRECT OR CONICAL TIP IS ATTACHED, PRESS "
              "CANCEL TO RESTART AND EDIT THE TIP CONFIGURATION IN SETUP");
  }
}

void Request(PortRequest& request, int port) {
  request = {-1, static_cast<std::int16_t>(port)};
}

TEST(PortRequests, MoveTheTruckPortAndReadItsLinesWithoutCounting) {
  Entry entry;
  EnterMainloop();
  sounding.ConsoleMode = 2;
  sounding.CurrentDepth = 4.0f;
  sounding.QuitState = 1;
  entry.ports.Wire(5).SetLines({false, false, false});
  Request(sounding.TruckPortRequest, 5);
  ServePortRequests();
  EXPECT_EQ(settings.TruckInterfaceSerialPort, 5);
  EXPECT_TRUE(Main.EncoderComm.PortOpen());
  EXPECT_EQ(Main.EncoderComm.CommPort(), 5);
  EXPECT_EQ(Main.EncoderComm.Settings(), "9600,N,8,1");
  EXPECT_TRUE(Main.EncoderComm.RTSEnable()) << "the quit is latched";
  EXPECT_FALSE(Main.EncoderComm.DTREnable());
  EXPECT_EQ(sounding.ClampLine, 1);
  EXPECT_EQ(sounding.DepthCounts, 0.0f);
  EXPECT_EQ(sounding.TruckPortRequest.Requested, 0);
  EXPECT_EQ(sounding.StepsMayBeMissing, -1);
  EXPECT_EQ(sounding.StepsMayBeMissingDepth, 4.0f);
}

TEST(PortRequests, ForTheTruckWithPortZeroReopenTheOldOne) {
  Entry entry;
  EnterMainloop();
  Request(sounding.TruckPortRequest, 0);
  ServePortRequests();
  EXPECT_EQ(settings.TruckInterfaceSerialPort, Console::kTruckPort);
  EXPECT_TRUE(Main.EncoderComm.PortOpen());
}

struct RequestCase {
  bool truck, ascii, video;
  int ascii_port, video_port;
};

TEST(PortRequests, AreServedInEachCombination) {
  const RequestCase cases[] = {
      {false, true, false, 5, 9}, {false, false, true, 9, 6}, {false, true, true, 5, 6},
      {true, true, false, 5, 9},  {true, false, true, 9, 6},  {true, true, true, 5, 6},
      {true, true, true, 0, 0},   {false, true, true, 0, 0},
  };
  for (const auto& row : cases) {
    Entry entry;
    settings.LumenProbePresent = 1;
    EnterMainloop();
    settings.ASCIIOutSerialPort = 9;
    settings.VideoOverlaySerialPort = 9;
    if (row.truck) Request(sounding.TruckPortRequest, Console::kTruckPort);
    if (row.ascii) Request(sounding.ASCIIPortRequest, row.ascii_port);
    if (row.video) Request(sounding.VideoPortRequest, row.video_port);
    ServePortRequests();
    const auto what = ::testing::Message() << row.truck << row.ascii << row.video;
    EXPECT_EQ(settings.ASCIIOutSerialPort, row.ascii_port) << what;
    EXPECT_EQ(settings.VideoOverlaySerialPort, row.video_port) << what;
    EXPECT_EQ(Main.ASCIIOutComm.PortOpen(), row.ascii && row.ascii_port > 0) << what;
    EXPECT_EQ(Main.VideoOverlayComm.PortOpen(), row.video && row.video_port > 0) << what;
    EXPECT_EQ(sounding.TruckPortRequest.Requested + sounding.ASCIIPortRequest.Requested +
                  sounding.VideoPortRequest.Requested,
              0)
        << what;
  }
}

TEST(PortRequests, CloseAnOpenOutputAndOpenItsNewNumberWithItsOwnSettings) {
  for (const int number : {8, 0}) {
    Entry entry;
    entry.ports.Wire(8);
    entry.ports.Wire(9);
    settings.ASCIIOutSerialPort = 5;
    settings.VideoOverlaySerialPort = 6;
    settings.LumenProbePresent = 1;
    EnterMainloop();
    ASSERT_TRUE(Main.ASCIIOutComm.PortOpen() && Main.VideoOverlayComm.PortOpen());
    Request(sounding.ASCIIPortRequest, number);
    Request(sounding.VideoPortRequest, number == 0 ? 0 : 9);
    ServePortRequests();
    EXPECT_EQ(Main.ASCIIOutComm.PortOpen(), number > 0);
    EXPECT_EQ(Main.VideoOverlayComm.PortOpen(), number > 0);
    if (number == 0) continue;
    EXPECT_EQ(Main.ASCIIOutComm.CommPort(), 8);
    EXPECT_EQ(Main.VideoOverlayComm.CommPort(), 9);
    EXPECT_EQ(Main.ASCIIOutComm.Settings(), "19200,N,8,1");
    EXPECT_EQ(Main.VideoOverlayComm.Settings(), "9600,N,8,1");
  }
}

TEST(PortRequests, OutputsGetTheirSettingsWhateverThePortHadBefore) {
  Entry entry;
  settings.LumenProbePresent = 1;
  EnterMainloop();
  for (SerialPort* port : {&Main.ASCIIOutComm, &Main.VideoOverlayComm}) {
    port->SetSettings("300,E,7,2");
  }
  Request(sounding.ASCIIPortRequest, 5);
  Request(sounding.VideoPortRequest, 6);
  ServePortRequests();
  EXPECT_EQ(Main.ASCIIOutComm.Settings(), "19200,N,8,1");
  EXPECT_EQ(Main.VideoOverlayComm.Settings(), "9600,N,8,1");
}

TEST(PortRequests, ForTheTruckLeaveNoLineRaisedOnTheSharedPort) {
  Entry entry;
  settings.TruckInterfaceSerialPort = Console::kConePort;
  EnterMainloop();
  sounding.QuitState = 1;
  Main.ConeComm.SetRTSEnable(true);
  Request(sounding.TruckPortRequest, 5);
  ServePortRequests();
  EXPECT_FALSE(Main.ConeComm.RTSEnable());
  EXPECT_TRUE(Main.EncoderComm.RTSEnable());
}

TEST(PortRequests, APortThatDoesNotOpenCountsAsLost) {
  Entry entry;
  settings.LumenProbePresent = 1;
  EnterMainloop();
  Request(sounding.TruckPortRequest, 77);
  Request(sounding.ASCIIPortRequest, 78);
  Request(sounding.VideoPortRequest, 79);
  ServePortRequests();
  EXPECT_EQ(cone.TruckPortLost, -1);
  EXPECT_EQ(cone.ASCIIPortLost, -1);
  EXPECT_EQ(cone.VideoPortLost, -1);
}

TEST(PortRequests, AnOverlayThatWasPluggedInMeanwhileIsPresentInTheTable) {
  Entry entry;
  settings.LumenProbePresent = 1;
  EnterMainloop();
  entry.ports.Wire(12);
  Request(sounding.VideoPortRequest, 12);
  ServePortRequests();
  EXPECT_EQ(cone.PortPresent[12], -1);
  SupervisePorts();
  EXPECT_EQ(cone.VideoPortLost, 0);
}

TEST(Entry, InACalibrationCheckLeavesTheOperatorAScreen) {
  Entry entry;
  session.CalibrationMode = -1;
  Show(Main);
  EnterMainloop();
  EXPECT_TRUE(Main.Visible);
}

/// Three rows of a suspended sounding.
struct Suspended : FakeCone {
  Suspended() {
    for (const int channel : {6, 7}) AddChannel(channel);
    channels.ChannelFullScale(19) = 15.0f;
    channels.Baselines(1) = 1.0f;
    sounding.RowCount = 3;
    for (int row = 1; row <= 3; ++row) {
      sounding.Rows(row, 0) = static_cast<float>(row) * 0.02f;
      sounding.Rows(row, 1) = static_cast<float>(100 * row) + 1.0f;
      sounding.Rows(row, 2) = static_cast<float>(row);
      sounding.Rows(row, 6) = 3.0f;
      sounding.Rows(row, 7) = 4.0f;
    }
    sounding.Rows(3, 1) = 1.0f;
    sounding.DepthCounts = 6.4f;
    session.ResumeConeId = "DSE1234";
  }
};

TEST(Resume, RebuildsTheDerivedChannelsOfTheRows) {
  Suspended suspended;
  RebuildResumedSounding();
  EXPECT_FLOAT_EQ(sounding.Rows(1, 20), 1.0f);
  EXPECT_EQ(sounding.Rows(3, 20), 0.0f) << "a tip at its baseline";
  EXPECT_FLOAT_EQ(sounding.Rows(2, 19), 75.0f);
  for (const int channel : {20, 21, 22}) EXPECT_EQ(channels.ChannelPresent(channel), -1);
  EXPECT_EQ(suspended.Count("D"), 10);
}

TEST(Resume, DrawsTheChartsFromAllRows) {
  Suspended suspended;
  display.GraphCount = 2;
  display.GraphChannel = {0, 1, 3, 0, 0};
  display.GraphAutoScale.fill(-1);
  settings.TipPlotValues = 1;
  for (const int row : {1, 2, 3}) sounding.Rows(row, 3) = -2.5f;
  sounding.Rows(1, 0) = 2.5f;
  sounding.Rows(2, 0) = 3.0f;
  sounding.Rows(3, 0) = 3.5f;
  session.StartDepth = 2;
  RebuildResumedSounding();
  EXPECT_EQ(display.GraphDepthMin, 2.0f);
  EXPECT_EQ(display.GraphDepthMax, 4.0f);
  EXPECT_EQ(Main.lblGraphYmin.Caption, "2");
  EXPECT_FLOAT_EQ(sounding.RowQt(2), 200.0f - 0.5f);
  EXPECT_EQ(display.GraphShownMax[1], 200.0f);
  EXPECT_EQ(display.GraphShownMin[2], -3.0f);
  ASSERT_EQ(Main.pctGraph(1).traces.size(), 2u);
  EXPECT_EQ(Main.pctGraph(1).traces[0].points.size(), 3u);
  EXPECT_EQ(Main.pctGraph(1).traces[1].points.size(), 3u);
}

TEST(Resume, TheFrictionRatioOfRowsTakesTheBallIntoAccount) {
  Suspended suspended;
  settings.TipConfiguration = 1;
  channels.ChannelArea(1) = 1000;
  settings.BallTipArea = 4000;
  RebuildFrictionRatio();
  EXPECT_FLOAT_EQ(sounding.Rows(1, 20), 4.0f);
}

TEST(Resume, RebuildsSoilTypeAndNWhereAGraphShowsThem) {
  for (const bool shown : {true, false}) {
    Suspended suspended;
    soil.FrictionRatioMax = 100;
    soil.SptDivisor.fill(2.0f);
    for (auto& column : soil.SbtTable) column[1] = {5.0f, 0.0001f};
    if (shown) display.GraphChannel[3] = 22;
    sounding.Rows(1, 1) = 2001.0f;
    RebuildResumedSounding();
    EXPECT_EQ(sounding.Rows(1, 21), shown ? 5.0f : 0.0f);
    EXPECT_EQ(sounding.Rows(1, 22), shown ? 10.0f : 0.0f);  // 20 bar over 2
  }
}

TEST(Resume, AFaultOfAFillingReadingIsToldAndTheSoundingGoesOn) {
  Suspended suspended;
  channels.ReplyField(1) = 31;
  PostCall(Now() + 20 * kSecond, &suspended, [] { RequestEnd(); });
  EXPECT_THROW(Mainloop(), ProgramEnd);
  EXPECT_FALSE(OpenBoxes().empty());
  EXPECT_EQ(sounding.ConsoleMode, 2);
  EXPECT_GT(suspended.Count("D"), 50) << "passes follow";
}

TEST(Resume, IsPartOfTheEntry) {
  Suspended suspended;
  EnterMainloop();
  EXPECT_EQ(Main.cmdStart.Caption, "STOP");
  EXPECT_EQ(sounding.ConsoleMode, 2);
  EXPECT_EQ(suspended.Count("D"), 10);
}

TEST(Resume, AtTheLastDepthGoesOnRecordingAtOnce) {
  Suspended suspended;
  settings.DepthFormat = 1;
  RebuildResumedSounding();
  EXPECT_EQ(sounding.ConsoleMode, 2);
  EXPECT_FLOAT_EQ(sounding.CurrentDepth, 0.06f);
  EXPECT_EQ(Main.lblDepth.Caption, "-0.060 m");
  EXPECT_EQ(sounding.NextRecordCount, 8);   // 2 + 6.4, rounded
  EXPECT_EQ(sounding.NextPictureCount, 7);  // 1 + 6.4, rounded
  EXPECT_EQ(Main.cmdStart.Caption, "STOP");
  EXPECT_TRUE(Main.cmdStart.Enabled);
  EXPECT_FALSE(Main.cmdExit.Enabled);
  EXPECT_FALSE(Main.cmdTakeBaseline.Visible);
  EXPECT_TRUE(Main.cmdResetQuits.Visible);
  EXPECT_FALSE(Main.cmdTakeBaseline.Enabled);
  EXPECT_TRUE(Main.lblBigDepth.Visible);
  EXPECT_EQ(Main.lblRebound.Caption, "0.000 m");
  EXPECT_LE(sounding.SecondsCounter, 10) << "zeroed before the readings that fill the averages";
}

TEST(Resume, AtTheSurfaceWaitsInModeOne) {
  Suspended suspended;
  session.ResumeDepthStatus = 1.0f;
  sounding.ConsoleMode = 0;
  sounding.SecondsCounter = 1000;
  RebuildResumedSounding();
  EXPECT_EQ(sounding.ConsoleMode, 1);
  EXPECT_EQ(sounding.CurrentDepth, 0.0f);
}

}  // namespace
}  // namespace penlog
