#include "sounding/main_loop.h"

#include "sounding/fake_cone.h"
#include "sounding/recording_pass.h"
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
