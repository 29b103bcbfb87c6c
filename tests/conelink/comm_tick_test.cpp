#include "conelink/comm_tick.h"

#include <gtest/gtest.h>

#include "conelink/link_world.h"
#include "conelink/plain_exchange.h"

namespace penlog {
namespace {

TEST(CountCommTick, CountsAboveZeroAndFallsBackAbove1000) {
  const struct {
    std::int16_t before;
    std::int16_t after;
  } rows[] = {{0, 0}, {1, 2}, {999, 1000}, {1000, 0}, {1001, 0}, {-1, -1}};
  for (const auto& row : rows) {
    std::int16_t tick = row.before;
    CountCommTick(tick);
    EXPECT_EQ(tick, row.after) << row.before;
  }
}

TEST(CountCommTick, TickPast1000WithoutAWaiterBecomesIdle) {
  LinkWorld world;
  StartUp.CommTick = 1;
  World::RunFor(999 * kTick + 1);
  EXPECT_EQ(StartUp.CommTick, 1000);
  World::RunFor(kTick);
  EXPECT_EQ(StartUp.CommTick, 0);
  World::RunFor(5 * kTick);
  EXPECT_EQ(StartUp.CommTick, 0);
}

TEST(CommPause, LastsOneToTwoTicksAndLeavesTheCounterAtZero) {
  LinkWorld world;
  for (const Micros after : {Micros{0}, Micros{1}, kTick / 2, kTick - 1}) {
    LinkWorld::GoToTick(after);
    const Micros start = Now();
    StartUp_CommPause();
    EXPECT_EQ(Now() - start, 2 * kTick - after);
    EXPECT_EQ(StartUp.CommTick, 0);
  }
}

TEST(CommPause, ChainedPausesTakeTwoTicksEach) {
  LinkWorld world;
  LinkWorld::GoToTick(kMillisecond);
  const Micros start = Now();
  StartUp_CommPause(10);
  EXPECT_EQ(Now() - start, 20 * kTick - kMillisecond);
}

TEST(CommPause, PauseInsideAPauseCutsTheOuterShort) {
  LinkWorld world;
  LinkWorld::GoToTick();
  const Micros start = Now();
  PostCall(Now() + 1, &world, [] { StartUp_CommPause(); });
  StartUp_CommPause();
  EXPECT_EQ(StartUp.CommTick, 0);
  EXPECT_LE(Now() - start, 2 * kTick);
}

class LineBreak : public ::testing::Test {
 protected:
  LineBreak() {
    StartUp.ConeComm.SetCommPort(3);
    StartUp.ConeComm.SetSettings("19200,N,8,1");
  }
  LinkWorld world;
  ScriptedCone far{world.ports.Wire(3)};
};

TEST_F(LineBreak, BreaksForFourPausesRestsForTwoAndReopens) {
  LinkWorld::GoToTick();
  const Micros start = Now();
  StartUp_CommBreak();
  World::RunFor(1);
  EXPECT_EQ(Now() - start - 1, 12 * kTick);
  EXPECT_EQ(far.breaks, (std::vector<bool>{true, false}));
  EXPECT_EQ(far.openings.size(), 2u);
  EXPECT_EQ(far.closings, 1);
  EXPECT_TRUE(StartUp.ConeComm.PortOpen());
  EXPECT_FALSE(StartUp.ConeComm.Break());
}

TEST_F(LineBreak, WakesAConeThatAnswersOnlyAfterABreak) {
  far.needs_break = true;
  far.On("Y", "COPYRIGHT\r\n");
  StartUp.ConeComm.Open();
  EXPECT_EQ(StartUp_CommStringCheck("Y"), "");
  StartUp.ConeComm.Close();
  StartUp_CommBreak();
  EXPECT_EQ(StartUp_CommStringCheck("Y"), "COPYRIGHT");
}

TEST_F(LineBreak, PortThatIsOpenAlreadyIsNoFault) {
  StartUp.ConeComm.Open();
  EXPECT_NO_THROW(StartUp_CommBreak());
  World::RunFor(1);
  EXPECT_EQ(far.breaks.size(), 2u);
  EXPECT_TRUE(StartUp.ConeComm.PortOpen());
}

TEST_F(LineBreak, OfTheConsoleFindsItsPortOpen) {
  LinkWorld::Open(Main.ConeComm, 3);
  CommBreak(Main.ConeComm, Main.CommTick, false);
  World::RunFor(1);
  EXPECT_EQ(far.breaks.size(), 2u);
  EXPECT_EQ(far.openings.size(), 2u);
  EXPECT_TRUE(Main.ConeComm.PortOpen());
}

TEST_F(LineBreak, VanishedPortIsPassedOver) {
  world.ports.Wire(3).SetPresent(false);
  EXPECT_NO_THROW(StartUp_CommBreak());
  EXPECT_FALSE(StartUp.ConeComm.PortOpen());
}

}  // namespace
}  // namespace penlog
