#include "platform/timer.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/clock.h"
#include "support/world.h"

namespace penlog {
namespace {

struct Ticking : testing::Test {
  Ticking() {
    timer.OnTick = [this] { ticks.push_back(Now() / kMillisecond); };
  }
  World world;
  Timer timer{"timer", 55};
  std::vector<Micros> ticks;
};

TEST_F(Ticking, FirstTickComesOneIntervalAfterTheStart) {
  World::RunFor(20 * kMillisecond);
  timer.Start();
  World::RunFor(54 * kMillisecond);
  EXPECT_TRUE(ticks.empty());
  World::RunFor(1 * kMillisecond);
  EXPECT_EQ(ticks, (std::vector<Micros>{75}));
}

TEST_F(Ticking, TicksKeepTheGridOfTheStart) {
  timer.Start();
  World::RunFor(230 * kMillisecond);
  EXPECT_EQ(ticks, (std::vector<Micros>{55, 110, 165, 220}));
}

TEST_F(Ticking, ASecondStartOfARunningTimerChangesNothing) {
  timer.Start();
  World::RunFor(30 * kMillisecond);
  timer.Start();
  World::RunFor(30 * kMillisecond);
  EXPECT_EQ(ticks, (std::vector<Micros>{55}));
}

TEST_F(Ticking, AStoppedTimerTicksNoMore) {
  timer.Start();
  World::RunFor(60 * kMillisecond);
  timer.Stop();
  World::RunFor(200 * kMillisecond);
  EXPECT_EQ(ticks.size(), 1u);
  EXPECT_FALSE(timer.Running());
}

TEST_F(Ticking, AHandlerMayStopItsTimer) {
  timer.OnTick = [this] {
    ticks.push_back(0);
    timer.Stop();
  };
  timer.Start();
  World::RunFor(200 * kMillisecond);
  EXPECT_EQ(ticks.size(), 1u);
}

TEST_F(Ticking, AHandlerMayReplaceItself) {
  timer.OnTick = [this] {
    timer.OnTick = [this] { ticks.push_back(2); };
    ticks.push_back(1);
  };
  timer.Start();
  World::RunFor(110 * kMillisecond);
  EXPECT_EQ(ticks, (std::vector<Micros>{1, 2}));
}

TEST_F(Ticking, AnIntervalOfZeroNeverTicks) {
  timer.SetInterval(0);
  timer.Start();
  World::RunFor(kSecond);
  EXPECT_TRUE(ticks.empty());
}

/// A clock that is told the time: a machine that stalls.
class StallingClock : public VirtualClock {
 public:
  Micros Now() const override { return now; }
  Micros now = 0;
};

TEST_F(Ticking, AfterAStallOneTickComesAndTheNextAnIntervalLater) {
  StallingClock clock;
  UseClock(&clock);
  timer.Start();
  const auto at = [&](Micros ms) {
    clock.now = ms * kMillisecond;
    Yield();
  };
  at(55);
  at(300);  // four ticks are overdue
  at(300);
  at(354);
  EXPECT_EQ(ticks, (std::vector<Micros>{55, 300}));
  at(355);
  EXPECT_EQ(ticks.size(), 3u);
  UseClock(&world.clock);
}

TEST_F(Ticking, ATickThatIsALittleLateDoesNotShiftTheGrid) {
  StallingClock clock;
  UseClock(&clock);
  timer.Start();
  clock.now = 60 * kMillisecond;
  Yield();
  clock.now = 110 * kMillisecond;
  Yield();
  EXPECT_EQ(ticks, (std::vector<Micros>{60, 110}));
  UseClock(&world.clock);
}

TEST_F(Ticking, AWaitOfThreeTicksLastsOneToTwoIntervalsFromBetweenTicks) {
  // A counter set to 1 and waited for until it is 3: two ticks must come.
  timer.Start();
  for (const Micros offset : {1, 27, 54}) {
    World::RunFor((110 - (Now() / kMillisecond) % 55 + offset) * kMillisecond);
    const Micros start = Now();
    const std::size_t before = ticks.size();
    while (ticks.size() < before + 2) WaitYield("two ticks");
    EXPECT_GE(Now() - start, 55 * kMillisecond) << offset;
    EXPECT_LE(Now() - start, 110 * kMillisecond) << offset;
  }
}

}  // namespace
}  // namespace penlog
