#include "sounding/main_loop.h"

#include <stdexcept>

#include "platform/memory_disk.h"
#include "sounding/fake_cone.h"
#include "sounding/reading_cycle.h"
#include "sounding/recording_pass.h"
#include "sounding/row_text.h"
#include "sounding/sounding_end.h"
#include "sounding/sounding_files.h"
#include "sounding/stop_dialog.h"

namespace penlog {
namespace {

TEST(Elapsed, RunsPastOneMidnight) {
  struct Case {
    std::int32_t origin, now, elapsed;
  };
  const Case cases[] = {
      {0, 34'200'000, 34'200'000},         {1000, 1000, 0},
      {86'399'000, 86'399'999, 999},       {86'399'000, 0, 1000},
      {80'000'000, 3'600'000, 10'000'000}, {80'000'000, 80'000'001, 1},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(ElapsedSince(row.origin, row.now), row.elapsed) << row.origin << " " << row.now;
  }
}

TEST(Elapsed, OfASoundingPastMidnightIsRight) {
  FakeCone fake({2026, 6, 15, 23, 59, 50, 0});
  sounding.ConsoleMode = 0;
  sounding.TimeOriginMs = TimeToMillisecond();
  World::RunFor(25 * kSecond);
  MainloopPass();
  EXPECT_GE(sounding.ElapsedMs, 25'000);
  EXPECT_LT(sounding.ElapsedMs, 25'200);
}

TEST(TimeOfDay, IsInMilliseconds) {
  Console console({2026, 6, 15, 13, 14, 15, 678});
  EXPECT_EQ(TimeToMillisecond(), ((13 * 60 + 14) * 60 + 15) * 1000 + 678);
}

TEST(Timer, CountsTicksSecondsAndThePauseOfTheLink) {
  FakeCone fake;
  sounding.TicksSinceStep = 0;
  sounding.SecondsCounter = 0;
  Main.CommTick = 1;
  World::RunFor(10 * kSecond + 100 * kMillisecond);
  EXPECT_EQ(sounding.TicksSinceStep, 183);
  EXPECT_EQ(Main.CommTick, 184);
  EXPECT_EQ(sounding.SecondsCounter, 10);
}

TEST(Timer, ThePauseCounterFallsBackAfterAThousand) {
  FakeCone fake;
  Main.CommTick = 1000;
  Main_Timer1_Timer();
  EXPECT_EQ(Main.CommTick, 0);
  Main_Timer1_Timer();
  EXPECT_EQ(Main.CommTick, 0);
}

TEST(Pass, InModeOneReadsAndRecordsNothing) {
  FakeCone fake;
  sounding.ConsoleMode = 1;
  MainloopPass();
  EXPECT_EQ(fake.Count("D"), 1);
  EXPECT_EQ(sounding.RowCount, 0);
}

TEST(Pass, InModeOneWithTheLinkDownResynchronises) {
  FakeCone fake;
  sounding.ConsoleMode = 1;
  cone.ConeLinkUp = 1;  // neither up nor known as lost
  MainloopPass();
  EXPECT_EQ(cone.ConeLinkUp, -1);
  EXPECT_GT(fake.Count("Z TFP"), 0);
  EXPECT_TRUE(frmWarning.frmSerialConnected.Visible);
  EXPECT_FALSE(frmWarning.frmModuleWarning.Visible);
}

TEST(Pass, InIdleModesOnlyKeepsEventsRunning) {
  for (const int mode : {0, 3, 4, 5, 9}) {
    FakeCone fake;
    sounding.ConsoleMode = static_cast<std::int16_t>(mode);
    const Micros start = Now();
    MainloopPass();
    EXPECT_TRUE(fake.commands.empty()) << mode;
    EXPECT_GT(Now(), start) << "the pass waited for an event";
    EXPECT_EQ(sounding.ConsoleMode, mode);
  }
}

TEST(Pass, NeverSpinsWhereTheWorkTakesNoTime) {
  for (const int mode : {0, 1, 2, 8, 9}) {
    FakeCone fake;
    sounding.ConsoleMode = static_cast<std::int16_t>(mode);
    fake.ports.Wire(Console::kConePort).SetPresent(false);
    for (int pass = 0; pass < 3; ++pass) {
      const Micros start = Now();
      MainloopPass();
      EXPECT_GT(Now(), start) << mode;
    }
  }
}

/// As in real time: each look at the outside takes a few microseconds.
class RunningClock : public Clock {
 public:
  explicit RunningClock(Clock& below) : below_(below) {}
  Micros Now() const override { return below_.Now() + run_; }
  WallTime Wall() const override { return below_.Wall(); }
  void Collect() override { run_ += 7; }
  void SleepUntil(std::optional<Micros> time) override {
    ++sleeps;
    if (time) run_ = std::max(run_, *time - below_.Now());
  }
  int sleeps = 0;

 private:
  Clock& below_;
  Micros run_ = 0;
};

TEST(Pass, WithNothingToDoSleepsThoughTimeRunsOn) {
  for (const int mode : {0, 3, 4, 5, 9}) {
    FakeCone fake;
    RunningClock clock(fake.clock);
    UseClock(&clock);
    sounding.ConsoleMode = static_cast<std::int16_t>(mode);
    const auto ticks = sounding.TicksSinceStep;
    for (int pass = 0; pass < 50; ++pass) MainloopPass();
    EXPECT_GE(clock.sleeps, 25) << mode << ": half the passes serve what the sleep ended with";
    EXPECT_GE(sounding.TicksSinceStep - ticks, 25) << mode;
    UseClock(&fake.clock);
  }
}

TEST(Pass, AReadingCostsNoFurtherTick) {
  FakeCone fake;
  sounding.ConsoleMode = 1;
  MainloopPass();
  const Micros start = Now();
  GetConeData();
  const Micros reading = Now() - start;
  const Micros before = Now();
  for (int pass = 0; pass < 10; ++pass) MainloopPass();
  EXPECT_LE(Now() - before, 10 * reading + 10 * kMillisecond);
}

TEST(Pass, AStepServedAtTheHeadYieldHasTheTimeOfThatPass) {
  FakeCone fake;
  sounding.ConsoleMode = 2;
  sounding.NextRecordCount = 1;
  World::RunFor(5 * kSecond);
  fake.truck().SetLines({true, true, false});
  fake.truck().SetLines({false, true, false});
  sounding.ElapsedMs = 17;
  cone.ConePortLost = 0;
  MainloopPass();
  EXPECT_EQ(sounding.LastStepSeconds, (9 * 3600 + 30 * 60 + 5) * 1.0);
}

TEST(Pass, WithThePortLostAndTheLinkDownScansTwice) {
  FakeCone fake;
  fake.ports.Wire(Console::kConePort).SetPresent(false);
  int probes = 0;
  fake.ports.Wire(9).OnBytes = [&](std::string_view bytes) {
    probes += static_cast<int>(std::count(bytes.begin(), bytes.end(), 'Y'));
  };
  sounding.ConsoleMode = 9;
  cone.ConePortLost = -1;
  cone.ConeLinkUp = 0;
  MainloopPass();
  EXPECT_EQ(probes, 2);
  fake.ports.Wire(9).OnBytes = {};
}

TEST(Pass, ServesPortRequestsBeforeItsHeadYield) {
  FakeCone fake;
  sounding.ConsoleMode = 0;
  fake.ports.Wire(6);
  bool open = false;
  PostCall(Now(), &fake, [&] { open = Main.ASCIIOutComm.PortOpen(); });
  sounding.ASCIIPortRequest = {-1, 6};
  MainloopPass();
  EXPECT_TRUE(open);
}

TEST(Pass, AFaultOfTheLinkKeepsNoDueRowFromBeingTaken) {
  FakeCone fake;
  CreateSoundingFiles();
  sounding.ConsoleMode = 2;
  sounding.RecordPending = -1;
  settings.ASCIIOutSerialPort = 999;  // a number that no port can have
  cone.ASCIIPortLost = -1;
  sounding.ASCIIPortRequest = {-1, 999};
  for (int pass = 0; pass < 3; ++pass) MainloopPass();
  EXPECT_EQ(sounding.RowCount, 1);
}

TEST(Pass, InModeEightStartsTheSounding) {
  FakeCone fake;
  sounding.ConsoleMode = 8;
  MainloopPass();
  EXPECT_EQ(sounding.ConsoleMode, 2);
  EXPECT_EQ(Main.cmdStart.Caption, "STOP");
}

TEST(Pass, RecordsTheDueRowBeforeTheReading) {
  FakeCone fake;
  sounding.ConsoleMode = 8;
  MainloopPass();
  fake.readings = {"7 8 9"};
  MainloopPass();
  fake.EncoderDown(2);
  fake.readings = {"1 2 3"};
  MainloopPass();
  EXPECT_EQ(sounding.RowCount, 1);
  EXPECT_EQ(sounding.Rows(1, 1), 7.0f) << "the row is the latest reading before it";
  EXPECT_EQ(sounding.Readings(1), 1.0f);
}

/// From the press of START on: the reference of the speed is the time of the day, taken before the
/// sounding had an origin, so that the first row has no speed.
TEST(Speed, OfTheFirstRowIsZeroAndOfTheNextThatOfItsStep) {
  FakeCone fake;
  sounding.ConsoleMode = 1;
  MainloopPass();
  Main_cmdStart_Click();
  MainloopPass();
  ASSERT_EQ(sounding.ConsoleMode, 2);
  for (int row = 1; row <= 3; ++row) {
    const Micros due = (row + 1) * kSecond;
    while (Now() < due) MainloopPass();
    fake.EncoderDown(2);
    MainloopPass();
  }
  ASSERT_EQ(sounding.RowCount, 3);
  EXPECT_EQ(sounding.RowSpeed(0), 0.0f);
  EXPECT_NEAR(sounding.RowSpeed(1), 2.0f, 0.3f);
  const std::string text = ReadFile("/data/s.cpt");
  const std::string first = text.substr(CptHeader().size(), 13);
  EXPECT_EQ(first, "  0.020  0.00");
}

TEST(TenThousandRows, AreClosedLikeAnySounding) {
  FakeCone fake;
  channels.ChannelDelayRows(2) = cone.DelayRows = 3;
  CreateSoundingFiles();
  sounding.ConsoleMode = 2;
  sounding.RowCount = kMostRows - 2;
  sounding.CurrentDepth = 199.96f;
  sounding.DepthCounts = 19996;
  sounding.NextRecordCount = 19998;
  for (int row = 0; row < 5; ++row) {
    fake.EncoderDown(2);
    MainloopPass();
  }
  EXPECT_EQ(sounding.RowCount, kMostRows);
  EXPECT_NEAR(sounding.CurrentDepth, 200.06f, 1e-3) << "the depth goes on";
  ASSERT_EQ(OpenBoxes().size(), 1u) << "told once";
  EXPECT_EQ(OpenBoxes()[0].text.find("THE SOUNDING HOLDS 10000 ROWS"), 0u);
  EXPECT_TRUE(CloseSounding());
  std::string expected = CptHeader() + AlignedRow(9999) + AlignedRow(10000);
  for (int row = 9998; row <= 10000; ++row) expected += FlushRow(row, 10000);
  EXPECT_EQ(ReadFile("/data/s.cpt"), expected);
  EXPECT_EQ(ReadFile("/data/TemporaryData.txt"), "DONE\r\n");
}

/// The stop dialog is up, and OK is pressed at a moment that the test chooses.
struct Stopping : FakeCone {
  Stopping() {
    CreateSoundingFiles();
    Main.cmdStart.Caption = "STOP";
    Main.cmdWarningOK1.Click = Main_cmdWarningOK1_Click;
    sounding.ConsoleMode = 2;
    sounding.CurrentDepth = 12.5f;
    cone.DistancePushed = 100.0f;
    Show(Main);
    Main_cmdStart_Click();
  }
  ~Stopping() { Main.cmdWarningOK1.Click = {}; }
  static void PressOk() {
    OperatorAction action;
    action.form = &Main;
    action.control = &Main.cmdWarningOK1;
    PostActionNow(action);
  }
};

TEST(StopOk, ServedDuringThatPassesReadingWritesTheDistancePushed) {
  Stopping stopping;
  PostCall(Now() + 10 * kMillisecond, &stopping, Stopping::PressOk);
  MainloopPass();
  EXPECT_EQ(sounding.ConsoleMode, 1);
  EXPECT_EQ(stopping.commands.back(), "W 22 3 @Ap");  // 112
  EXPECT_EQ(cone.DistancePushedPending, 0);
  EXPECT_TRUE(Main.frmTakeFinalBaseline.Visible);
}

TEST(StopOk, ServedAtTheHeadYieldDoesNotWriteTheDistancePushed) {
  Stopping stopping;
  Stopping::PressOk();
  for (int pass = 0; pass < 5; ++pass) MainloopPass();
  EXPECT_EQ(sounding.ConsoleMode, 1);
  EXPECT_FALSE(stopping.WroteDistance());
  EXPECT_EQ(cone.DistancePushedPending, -1);
  EXPECT_FLOAT_EQ(cone.DistancePushed, 112.5f);
}

TEST(StopOk, ServedAtTheFootYieldDoesNotWriteTheDistancePushed) {
  Stopping stopping;
  RecordingPass();
  Stopping::PressOk();
  Yield();  // the foot of that pass
  EXPECT_EQ(sounding.ConsoleMode, 1);
  for (int pass = 0; pass < 5; ++pass) MainloopPass();
  EXPECT_FALSE(stopping.WroteDistance());
  EXPECT_TRUE(Main.frmTakeFinalBaseline.Visible);
}

TEST(Exit, LeavesThePassesWithNothingToDo) {
  FakeCone fake;
  sounding.ConsoleMode = 1;
  sounding.ExitUnderWay = -1;
  MainloopPass();
  EXPECT_TRUE(fake.commands.empty());
}

TEST(Mainloop, AFaultInAPassIsToldOnceAndTheConsoleLives) {
  FakeCone fake;
  sounding.ConsoleMode = 1;
  channels.ReplyField(1) = 31;
  PostCall(Now() + 20 * kSecond, &fake, [] { RequestEnd(); });
  EXPECT_THROW(Mainloop(), ProgramEnd);
  EXPECT_EQ(OpenBoxes().size(), 1u);
  EXPECT_GT(fake.Count("D"), 50);
}

/// A disk whose fault is none that the routines know.
class StrangeDisk : public MemoryDisk {
 public:
  void Sync(Handle handle) override {
    if (strange) throw std::length_error("strange");
    MemoryDisk::Sync(handle);
  }
  bool strange = false;
};

/// A list of ports whose fault is none that the routines know.
class StrangePorts : public PortSystem {
 public:
  explicit StrangePorts(PortSystem& ports) : ports_(ports) {}
  bool Exists(int number) override {
    if (strange) throw std::length_error("strange ports");
    return ports_.Exists(number);
  }
  std::unique_ptr<PortDriver> Open(int number, const PortSettings& port_settings,
                                   PortSink& sink) override {
    return ports_.Open(number, port_settings, sink);
  }
  std::string DeviceName(int number) override { return ports_.DeviceName(number); }
  bool strange = false;

 private:
  PortSystem& ports_;
};

TEST(Mainloop, AnyOtherExceptionInAPassIsToldOnceAndTheConsoleLives) {
  FakeCone fake;
  StrangePorts ports(ThePorts());
  UsePorts(&ports);
  sounding.ConsoleMode = 1;
  ports.strange = true;
  PostCall(Now() + 20 * kSecond, &fake, [&] { ports.strange = false; });
  PostCall(Now() + 30 * kSecond, &fake, [] { RequestEnd(); });
  EXPECT_THROW(Mainloop(), ProgramEnd);
  ASSERT_EQ(OpenBoxes().size(), 1u);
  EXPECT_EQ(OpenBoxes().front().text, "strange ports");
  EXPECT_GT(fake.Count("D"), 20);
  UsePorts(&fake.ports);
}

TEST(Mainloop, AnyOtherExceptionOfTheDiskIsToldTooAndNoRowIsLost) {
  StrangeDisk disk;
  FakeCone fake;
  UseDisk(&disk);
  disk.MakeFolder("/data");
  sounding.ConsoleMode = 8;
  PostCall(Now() + 5 * kSecond, &fake, [&] {
    disk.strange = true;
    fake.EncoderDown(2);
  });
  PostCall(Now() + 20 * kSecond, &fake, [&] { disk.strange = false; });
  PostCall(Now() + 30 * kSecond, &fake, [] { RequestEnd(); });
  EXPECT_THROW(Mainloop(), ProgramEnd);
  ASSERT_FALSE(OpenBoxes().empty());
  EXPECT_TRUE(OpenBoxes().front().text.ends_with("strange")) << OpenBoxes().front().text;
  EXPECT_EQ(sounding.RowCount, 1);
  const std::string text = ReadFile("/data/s.cpt");
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 23 + 1);
  UseDisk(&fake.disk);
}

TEST(Mainloop, FullDiskKeepsRowsUntilThereIsRoomAgain) {
  FakeCone fake;
  sounding.ConsoleMode = 8;
  MainloopPass();
  fake.disk.SetRoom(0);
  for (int row = 0; row < 3; ++row) {
    fake.EncoderDown(2);
    MainloopPass();
  }
  EXPECT_EQ(sounding.RowsHeldBack, 3);
  fake.disk.SetRoom(-1);
  for (int pass = 0; pass < 25; ++pass) MainloopPass();
  EXPECT_EQ(sounding.RowsHeldBack, 0);
  const std::string text = ReadFile("/data/s.cpt");
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 23 + 3);
}

}  // namespace
}  // namespace penlog
