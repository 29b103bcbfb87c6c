#include "sounding/truck_interface.h"

#include "display/depth_word.h"
#include "forms/enlarged_graph_form.h"
#include "platform/files.h"
#include "sounding/console.h"
#include "sounding/held_rows.h"
#include "sounding/sounding_files.h"

namespace penlog {
namespace {

/// Recording with the first row due at the second count.
struct Truck : Console {
  explicit Truck(int counter_type = 0) {
    settings.DepthCounterType = static_cast<std::int16_t>(counter_type);
    sounding.ConsoleMode = 2;
    sounding.NextRecordCount = 2;
    StartFile(kTemporaryFile, "");  // a sounding has begun
  }
};

TEST(TruckInterface, OpeningReadsTheLinesAndCountsNothing) {
  for (const bool held : {false, true}) {
    Truck truck;
    truck.truck().SetLines({held, held, held});
    truck.OpenPorts();
    Yield();
    EXPECT_EQ(sounding.ClampLine, held ? 0 : 1);
    EXPECT_EQ(sounding.PhaseUp, held ? 0 : 1);
    EXPECT_EQ(sounding.PhaseDown, held ? 0 : 1);
    EXPECT_EQ(Truck::Solid(Main.shpClamp), held);
    EXPECT_EQ(Truck::Solid(Main.shpDepth), held);
    EXPECT_EQ(sounding.DepthCounts, 0.0f);
    EXPECT_FALSE(Main.EncoderComm.DTREnable());
    EXPECT_FALSE(Main.EncoderComm.RTSEnable());
  }
}

TEST(TruckInterface, OpeningReadsThePhasesWithTheirRolesSwapped) {
  for (const int direction : {0, 1}) {
    Truck truck;
    settings.EncoderDirection = static_cast<std::int16_t>(direction);
    truck.truck().SetLines({true, true, false});  // CTS held, CD not
    truck.OpenPorts();
    EXPECT_EQ(sounding.PhaseUp, direction == 1 ? 0 : 1);
    EXPECT_EQ(sounding.PhaseDown, direction == 1 ? 1 : 0);
  }
}

struct PressureCase {
  int counter_type, pressure_switch;
  bool shared, cts;
  int line;
};

TEST(TruckInterface, PressureIsReadAtStartOnlyWhereToldSo) {
  const PressureCase cases[] = {
      {0, 0, false, false, 0}, {0, 1, false, false, 0}, {0, -1, false, false, 1},
      {0, -1, false, true, 0}, {1, 0, false, false, 0}, {1, 1, false, false, 1},
      {1, 1, false, true, 0},  {0, 0, true, false, 0},  {0, 1, true, false, 1},
      {0, 1, true, true, 0},   {1, 0, true, false, 0},  {1, 1, true, false, 1},
  };
  for (const auto& row : cases) {
    Truck truck(row.counter_type);
    settings.PressureSwitchPresent = static_cast<std::int16_t>(row.pressure_switch);
    if (row.shared) settings.TruckInterfaceSerialPort = Console::kConePort;
    truck.truck().SetLines({row.cts, true, true});
    truck.OpenPorts();
    EXPECT_EQ(sounding.PressureLine, row.line)
        << row.counter_type << row.pressure_switch << row.shared << row.cts;
    EXPECT_EQ(Truck::Solid(Main.shpPressure), row.line == 0);
  }
}

TEST(TruckInterface, ALatchedQuitIsSetAgainRightAfterTheOpening) {
  Truck truck;
  bool rts = false;
  truck.truck().OnOutputs = [&](bool, bool on) { rts = on; };
  sounding.QuitState = 1;
  truck.OpenPorts();
  Yield();
  EXPECT_TRUE(rts);
}

TEST(TruckInterface, AnOverriddenQuitIsNotSetAtTheOpening) {
  Truck truck;
  sounding.QuitState = 3;
  truck.OpenPorts();
  EXPECT_FALSE(Main.EncoderComm.RTSEnable());
}

TEST(Encoder, DownCountsGrowTheDepth) {
  Truck truck;
  truck.OpenPorts();
  truck.EncoderDown(3);
  EXPECT_FLOAT_EQ(sounding.CurrentDepth, 0.03f);
  EXPECT_EQ(sounding.DepthCounts, 3.0f);
  EXPECT_EQ(Main.lblDepth.Caption, "0.030 m");
  EXPECT_EQ(Main.lblBigDepth.Caption, "0.03m");
}

TEST(Encoder, DirectionSwapsTheSignOfTravel) {
  Truck truck;
  settings.EncoderDirection = 1;
  truck.OpenPorts();
  truck.EncoderDown(3);
  EXPECT_EQ(sounding.CurrentDepth, 0.0f);
  EXPECT_FLOAT_EQ(sounding.Rebound, 0.03f);
  truck.EncoderUp(4);
  EXPECT_FLOAT_EQ(sounding.CurrentDepth, 0.01f);
}

TEST(Encoder, TheDepthLampShowsTheDirection) {
  Truck truck;
  truck.OpenPorts();
  truck.Cd(false);
  EXPECT_FALSE(Truck::Solid(Main.shpDepth));
  truck.Cts(false);
  EXPECT_TRUE(Truck::Solid(Main.shpDepth));
  EXPECT_EQ(Main.shpDepth.FillColor, kGreen);
  truck.Cd(true);
  EXPECT_FALSE(Truck::Solid(Main.shpDepth));
  truck.Cd(false);
  EXPECT_TRUE(Truck::Solid(Main.shpDepth));
  EXPECT_EQ(Main.shpDepth.FillColor, kRed);
}

/// With 0.025 m the sum of three steps, drained three times, leaves a rest of rounding.
TEST(Encoder, TheDepthLampShowsTheDirectionWithTheClampOpenToo) {
  Truck truck;
  truck.OpenPorts();
  truck.Line(&ModemLines::dsr, false);
  truck.EncoderDown(1);
  EXPECT_EQ(Main.shpDepth.FillColor, kGreen);
  truck.EncoderUp(1);
  EXPECT_EQ(Main.shpDepth.FillColor, kRed);
  EXPECT_EQ(sounding.DepthCounts, 0.0f);
}

TEST(Rebound, ThreeUpFiveDownCountsTwo) {
  for (const int counter_type : {0, 1}) {
    for (const float resolution : {0.01f, 0.025f}) {
      Truck truck(counter_type);
      settings.DepthResolution = resolution;
      settings.PressureSwitchPresent = 1;
      truck.OpenPorts();
      const auto down = [&](int n) {
        if (counter_type == 0) return truck.EncoderDown(n);
        truck.Cts(true);
        truck.Pulse(n);
      };
      const auto up = [&](int n) {
        if (counter_type == 0) return truck.EncoderUp(n);
        truck.Cts(false);
        truck.Pulse(n);
      };
      down(10);
      const float before = sounding.CurrentDepth;
      up(3);
      EXPECT_NEAR(sounding.Rebound, 3 * resolution, 1e-6);
      down(3);
      EXPECT_EQ(sounding.Rebound, 0.0f) << "counter type " << counter_type;
      EXPECT_EQ(sounding.CurrentDepth, before);
      down(2);
      EXPECT_NEAR(sounding.CurrentDepth, before + 2 * resolution, 1e-6);
      EXPECT_EQ(sounding.DepthCounts, 12.0f) << resolution;
    }
  }
}

TEST(Depth, OfAHundredMetresHasNoErrorOfRounding) {
  struct Case {
    float resolution, start;
    int counts;
    float depth;
  };
  const Case cases[] = {
      {0.005f, 0.0f, 20000, 100.0f},   {0.001f, 0.0f, 100000, 100.0f}, {0.01f, 0.0f, 10000, 100.0f},
      {0.005f, -100.0f, 6000, -70.0f}, {0.025f, 1.5f, 4000, 101.5f},
  };
  for (const auto& row : cases) {
    Truck truck(1);
    settings.DepthResolution = row.resolution;
    sounding.CurrentDepth = row.start;
    truck.OpenPorts();
    for (int i = 0; i < row.counts; ++i) Main_EncoderComm_OnComm(kCommCd);
    EXPECT_EQ(sounding.DepthCounts, static_cast<float>(row.counts));
    EXPECT_NEAR(sounding.CurrentDepth, row.depth, 1e-4) << row.resolution << " " << row.start;
  }
}

TEST(Rebound, IsShownNegated) {
  Truck truck;
  truck.OpenPorts();
  truck.EncoderUp(3);
  EXPECT_EQ(Main.lblRebound.Caption, "-0.030 m");
}

TEST(Clamp, APulseWithTheClampOpenChangesNothing) {
  for (const int counter_type : {0, 1}) {
    Truck truck(counter_type);
    truck.OpenPorts();
    truck.Dsr(false);
    EXPECT_EQ(sounding.ClampLine, 1);
    EXPECT_FALSE(Truck::Solid(Main.shpClamp));
    truck.EncoderDown(2);
    truck.EncoderUp(2);
    truck.Pulse(2);
    EXPECT_EQ(sounding.CurrentDepth, 0.0f);
    EXPECT_EQ(sounding.DepthCounts, 0.0f);
    EXPECT_EQ(sounding.Rebound, 0.0f);
    truck.Dsr(true);
    EXPECT_TRUE(Truck::Solid(Main.shpClamp));
  }
}

TEST(Clamp, AChangeOfTheLineInManualModeOpensIt) {
  Truck truck;
  truck.OpenPorts();
  sounding.AutoMode = 0;
  SetClampLine(0);
  truck.Dsr(false);
  EXPECT_EQ(sounding.ClampLine, 1);
  SetClampLine(0);
  truck.Dsr(true);
  EXPECT_EQ(sounding.ClampLine, 1) << "also when the line closes";
  EXPECT_FALSE(Truck::Solid(Main.shpClamp));
}

TEST(Proximity, InManualModeTheLinesOfClampAndPressureAreIgnored) {
  Truck truck(1);
  settings.PressureSwitchPresent = 1;
  truck.OpenPorts();
  sounding.AutoMode = 0;
  truck.Dsr(false);
  truck.Cts(false);
  EXPECT_EQ(sounding.ClampLine, 0);
  EXPECT_EQ(sounding.PressureLine, 0);
}

TEST(Proximity, WithoutAPressureSwitchItsLineIsIgnored) {
  Truck truck(1);
  truck.OpenPorts();
  truck.Cts(false);
  truck.Pulse(2);
  EXPECT_EQ(sounding.PressureLine, 0);
  EXPECT_FLOAT_EQ(sounding.CurrentDepth, 0.02f);
}

TEST(Proximity, OnlyTheEdgeToTheHeldLineCounts) {
  Truck truck(1);
  truck.OpenPorts();
  truck.Cd(false);
  EXPECT_EQ(sounding.DepthCounts, 0.0f);
  EXPECT_FALSE(Truck::Solid(Main.shpDepth));
  truck.Cd(true);
  EXPECT_EQ(sounding.DepthCounts, 1.0f);
  EXPECT_TRUE(Truck::Solid(Main.shpDepth));
}

TEST(Record, IsDueAtTheCountOfEachStep) {
  Truck truck;
  truck.OpenPorts();
  truck.EncoderDown(1);
  EXPECT_EQ(sounding.RecordPending, 0);
  truck.EncoderDown(1);
  EXPECT_EQ(sounding.RecordPending, -1);
  EXPECT_EQ(sounding.NextRecordCount, 4);
}

TEST(Record, IsNotDueOutsideOfRecordingYetDepthCounts) {
  for (const int mode : {0, 1, 3, 4, 5, 8, 9}) {
    Truck truck;
    sounding.ConsoleMode = static_cast<std::int16_t>(mode);
    truck.OpenPorts();
    truck.EncoderDown(4);
    EXPECT_EQ(sounding.RecordPending, 0) << mode;
    EXPECT_EQ(sounding.NextRecordCount, 6) << mode;
    EXPECT_NEAR(sounding.CurrentDepth, 0.04f, 1e-6) << mode;
  }
}

TEST(Record, TwoStepsBetweenPassesMakeOneRowPending) {
  Truck truck;
  truck.OpenPorts();
  truck.EncoderDown(4);
  EXPECT_EQ(sounding.RecordPending, -1);
  EXPECT_EQ(sounding.NextRecordCount, 6) << "the record count has moved twice";
}

TEST(Speed, IsOfTheStepAndGoesToTheRowBefore) {
  Truck truck;
  truck.OpenPorts();
  sounding.RowCount = 5;
  sounding.LastStepSeconds = 10.0;
  sounding.ElapsedMs = 11000;
  sounding.TicksSinceStep = 7;
  truck.EncoderDown(2);
  EXPECT_FLOAT_EQ(sounding.RowSpeed(5), 2.0f);
  EXPECT_EQ(Main.lblSpeedValue.Caption, "2.00 cm/s");
  EXPECT_EQ(sounding.LastStepSeconds, 11.0);
  EXPECT_EQ(sounding.TicksSinceStep, 0);
}

TEST(Speed, AboveFortyIsShownForThatStepAndStoredAsZero) {
  struct Case {
    int elapsed_ms;
    const char* shown;
    float stored;
  };
  const Case cases[] = {{50, "40.00 cm/s", 40.0f}, {40, "50.00 cm/s", 0.0f}};
  for (const auto& row : cases) {
    Truck truck;
    truck.OpenPorts();
    sounding.ElapsedMs = row.elapsed_ms;
    truck.EncoderDown(2);
    EXPECT_EQ(Main.lblSpeedValue.Caption, row.shown);
    EXPECT_EQ(sounding.RowSpeed(0), row.stored);
  }
}

TEST(Speed, KeepsItsValueWithoutAnInterval) {
  Truck truck;
  truck.OpenPorts();
  sounding.RowSpeed(0) = 1.5f;
  truck.EncoderDown(2);
  EXPECT_EQ(sounding.RowSpeed(0), 1.5f);
  EXPECT_EQ(Main.lblSpeedValue.Caption, "1.50 cm/s");
}

TEST(SharedPort, EventsArriveOnTheConePortAndEncoderCommStaysClosed) {
  Truck truck;
  settings.TruckInterfaceSerialPort = Console::kConePort;
  truck.truck().SetLines({true, true, true});
  truck.OpenPorts();
  truck.EncoderDown(2);
  EXPECT_EQ(sounding.DepthCounts, 2.0f);
  EXPECT_FALSE(Main.EncoderComm.PortOpen());
}

TEST(SharedPort, WithAPortOfItsOwnTheConePortCountsNothing) {
  Truck truck;
  truck.OpenPorts();
  sounding.PhaseUp = 1;
  Main_ConeComm_OnComm(kCommCts);
  EXPECT_EQ(sounding.DepthCounts, 0.0f);
}

TEST(SharedPort, APulseWithinTwoTicksOfTheLastDueRowIsDropped) {
  struct Case {
    int counter_type;
    std::int32_t ticks;
    float counts;
  };
  // The rule stands in the proximity counter's branch alone.
  const Case cases[] = {{1, 0, 0.0f}, {1, 1, 0.0f}, {1, 2, 1.0f}, {0, 0, 1.0f}};
  for (const auto& row : cases) {
    Truck truck(row.counter_type);
    settings.TruckInterfaceSerialPort = Console::kConePort;
    truck.truck().SetLines({true, true, true});
    truck.OpenPorts();
    sounding.TicksSinceStep = row.ticks;
    if (row.counter_type == 1) {
      truck.Pulse();
    } else {
      truck.EncoderDown();
    }
    EXPECT_EQ(sounding.DepthCounts, row.counts) << row.counter_type << " " << row.ticks;
  }
}

TEST(SharedPort, TheTickRuleIsNotOnThePortOfTheTruck) {
  Truck truck(1);
  truck.OpenPorts();
  sounding.TicksSinceStep = 0;
  truck.Pulse();
  EXPECT_EQ(sounding.DepthCounts, 1.0f);
}

TEST(SharedPort, LinesOfAnotherPortThatAScanHoldsOpenCountNothing) {
  Truck truck;
  settings.TruckInterfaceSerialPort = Console::kConePort;
  WireEnd& foreign = truck.ports.Wire(9);
  foreign.SetLines({true, true, true});
  Main.ConeComm.SetCommPort(9);
  Main.ConeComm.Open();
  for (const ModemLines lines : {ModemLines{true, true, false}, {false, true, false}}) {
    foreign.SetLines(lines);
    Yield();
  }
  EXPECT_EQ(sounding.DepthCounts, 0.0f);
  EXPECT_EQ(sounding.Rebound, 0.0f);
}

TEST(SharedPort, LinesOfAConeOnTheNumberOfALostTruckInterfaceCountNothing) {
  Truck truck;
  settings.TruckInterfaceSerialPort = Console::kConePort;
  truck.truck().SetLines({true, true, true});
  truck.OpenPorts();
  sounding.TicksSinceStep = 7;
  truck.EncoderDown(1);
  EXPECT_EQ(sounding.DepthCounts, 1.0f);
  cone.TruckPortLost = -1;
  sounding.TicksSinceStep = 7;
  truck.EncoderDown(3);
  EXPECT_EQ(sounding.DepthCounts, 1.0f);
}

TEST(ErrorEvents, AreIgnored) {
  Truck truck;
  truck.OpenPorts();
  sounding.PhaseUp = sounding.PhaseDown = 1;
  Main_EncoderComm_OnComm(kCommPortGone);
  settings.TruckInterfaceSerialPort = Console::kConePort;
  Main_ConeComm_OnComm(100);
  EXPECT_EQ(sounding.DepthCounts, 0.0f);
  EXPECT_EQ(sounding.Rebound, 0.0f);
}

TEST(DepthLabels, AreRewrittenByAnEventThatCountsNothing) {
  Truck truck;
  truck.OpenPorts();
  sounding.CurrentDepth = 2.0f;
  Main.lblDepth.Caption = Main.lblBigDepth.Caption = Main.lblRebound.Caption = "old";
  truck.Cd(false);
  EXPECT_EQ(Main.lblDepth.Caption, "2.000 m");
  EXPECT_EQ(Main.lblBigDepth.Caption, "2.00m");
  EXPECT_EQ(Main.lblRebound.Caption, "0.000 m");
  Main.lblDepth.Caption = "2.00 m";
  truck.Cd(true);
  EXPECT_EQ(Main.lblDepth.Caption, "2.000 m");
}

TEST(PictureMarks, AreWrittenAtEachPictureStep) {
  Truck truck;
  settings.LumenProbePresent = 1;
  sounding.NextPictureCount = 1;
  sounding.CurrentDepth = 1.0f;
  truck.OpenPorts();
  truck.EncoderDown(2);
  EXPECT_EQ(ReadFile("/data/s.tim"), "000.260 34200\r\n000.270 34200\r\n");
  EXPECT_EQ(sounding.PictureCount, 2);
  EXPECT_EQ(Main.lblNumberOfPictures.Caption, "2");
  EXPECT_EQ(sounding.NextPictureCount, 3);
}

TEST(PictureMarks, BeforeTheSoundingAreCountedAndLeaveTheFilesOfOthersAlone) {
  Truck truck;
  sounding.Held = {};
  settings.LumenProbePresent = 1;
  truck.disk.Put("/data/s.tim", "another's marks\r\n");
  truck.OpenPorts();
  truck.EncoderDown(2);
  EXPECT_EQ(sounding.PictureCount, 2);
  EXPECT_EQ(ReadFile("/data/s.tim"), "another's marks\r\n");
  CreateSoundingFiles();
  EXPECT_EQ(ReadFile("/data/s (2).tim"), "another's marks\r\n");
  EXPECT_FALSE(truck.disk.FileExists("/data/s (3).tim"));
}

TEST(PictureMarks, AreNotTakenWithoutALumenProbe) {
  Truck truck;
  truck.OpenPorts();
  truck.EncoderDown(2);
  EXPECT_FALSE(truck.disk.FileExists("/data/s.tim"));
}

TEST(PictureMarks, ComeEveryFewCountsAndWithEachKindOfProbe) {
  for (const int probe : {1, 2, 3, 5}) {
    Truck truck;
    settings.LumenProbePresent = static_cast<std::int16_t>(probe);
    settings.PictureStepCounts = 3;
    sounding.NextPictureCount = 3;
    sounding.ConsoleMode = 1;
    truck.OpenPorts();
    truck.EncoderDown(7);
    EXPECT_EQ(sounding.PictureCount, 2) << probe;
    EXPECT_EQ(ReadFile("/data/s.tim"), "-000.720 34200\r\n-000.690 34200\r\n") << probe;
    EXPECT_EQ(sounding.NextPictureCount, 9);
  }
}

TEST(PictureMarks, CountGoesOnWhenTheDiskIsFull) {
  Truck truck;
  settings.LumenProbePresent = 1;
  truck.OpenPorts();
  truck.disk.SetRoom(0);
  truck.EncoderDown(3);
  EXPECT_EQ(sounding.DepthCounts, 3.0f);
  EXPECT_EQ(sounding.RecordPending, -1);
  EXPECT_EQ(OpenBoxes().size(), 1u) << "told once";
}

TEST(Flood, EveryEdgeOfAFastRigIsCounted) {
  Truck truck;
  truck.OpenPorts();
  for (int i = 0; i < 5000; ++i) {
    for (const ModemLines lines : {ModemLines{true, true, false},
                                   {false, true, false},
                                   {false, true, true},
                                   {true, true, true}}) {
      truck.truck().SetLines(lines);
    }
  }
  while (TheQueue().Backlog() > 0) Yield();
  EXPECT_EQ(sounding.DepthCounts, 5000.0f);
}

TEST(TruckInterface, ADepthStepUnloadsTheEnlargedGraphWithEachDueRow) {
  Truck truck;
  truck.OpenPorts();
  Show(EnlargedGraph);
  EnlargedGraph.txtXmin.Text = "1";
  truck.EncoderDown();
  EXPECT_TRUE(EnlargedGraph.Visible);  // no row is due yet
  truck.EncoderDown();
  EXPECT_FALSE(EnlargedGraph.Visible);
  EXPECT_FALSE(EnlargedGraph.Loaded);
  EXPECT_EQ(EnlargedGraph.txtXmin.Text, "");
}

/// The lamp is hollow at three of four edges; its word is not.
TEST(DepthLamp, WordHoldsBetweenTheStepsAndTurnsWithThem) {
  depth_word = {};
  Truck truck;
  truck.OpenPorts();
  truck.EncoderDown();
  truck.Cd(false);
  EXPECT_FALSE(Truck::Solid(Main.shpDepth));
  EXPECT_EQ(Main.shpDepth.Caption, "DOWN");
  truck.Cd(true);
  truck.EncoderUp(2);
  EXPECT_EQ(Main.shpDepth.Caption, "UP");
  Truck::RunFor(kStillAfter);
  FollowDepthWord();
  EXPECT_EQ(Main.shpDepth.Caption, "STILL");
}

TEST(DepthLamp, WordComesWithAPulseToo) {
  depth_word = {};
  Truck truck(1);
  truck.OpenPorts();
  truck.Pulse();
  EXPECT_EQ(Main.shpDepth.Caption, "DOWN");
}

}  // namespace
}  // namespace penlog
