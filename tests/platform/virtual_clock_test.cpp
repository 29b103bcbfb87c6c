#include "platform/virtual_clock.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/timer.h"
#include "platform/yield.h"
#include "support/world.h"

namespace penlog {
namespace {

std::string Clocktime() {
  const WallTime wall = TheClock().Wall();
  return DateTimeText(wall) + "." + std::to_string(wall.millisecond);
}

TEST(VirtualClock, StartsAtAnyTimeOfDay) {
  World world({2024, 2, 29, 7, 5, 9, 42});
  EXPECT_EQ(Clocktime(), "2024-02-29 07:05:09.42");
}

TEST(VirtualClock, CrossesMidnightAndTheYear) {
  World world({2025, 12, 31, 23, 59, 59, 900});
  EXPECT_NEAR(SecondsSinceMidnight(TheClock().Wall()), 86399.9, 1e-9);
  World::RunFor(150 * kMillisecond);
  EXPECT_EQ(Clocktime(), "2026-01-01 00:00:00.50");
  EXPECT_NEAR(SecondsSinceMidnight(TheClock().Wall()), 0.05, 1e-9);
  EXPECT_EQ(Now(), 150 * kMillisecond);
}

TEST(VirtualClock, AStepMovesTheWallAndNotTheProgramsTime) {
  World world({2026, 6, 15, 0, 0, 10, 0});
  world.clock.StepWall(-20 * kSecond);
  EXPECT_EQ(Clocktime(), "2026-06-14 23:59:50.0");
  EXPECT_EQ(Now(), 0);
  World::RunFor(kSecond);
  EXPECT_EQ(Clocktime(), "2026-06-14 23:59:51.0");
  EXPECT_EQ(Now(), kSecond);
}

std::vector<Micros> JitteredTicks(std::uint32_t seed, Micros most) {
  World world({2026, 6, 15, 9, 30, 0, 0}, seed);
  world.clock.SetJitter(most);
  Timer timer("timer", 55);
  std::vector<Micros> ticks;
  timer.OnTick = [&] { ticks.push_back(Now()); };
  timer.Start();
  World::RunFor(2 * kSecond);
  return ticks;
}

TEST(VirtualClock, JitterRepeatsFromItsSeed) {
  const auto first = JitteredTicks(5, 4 * kMillisecond);
  EXPECT_EQ(first, JitteredTicks(5, 4 * kMillisecond));
  EXPECT_NE(first, JitteredTicks(6, 4 * kMillisecond));
}

TEST(VirtualClock, JitterDelaysATickByItsLimitAtMostAndDoesNotAddUp) {
  const auto ticks = JitteredTicks(5, 4 * kMillisecond);
  ASSERT_GE(ticks.size(), 35u);
  bool delayed = false;
  for (std::size_t i = 0; i < ticks.size(); ++i) {
    const Micros late = ticks[i] - static_cast<Micros>(i + 1) * 55 * kMillisecond;
    EXPECT_GE(late, 0);
    EXPECT_LE(late, 4 * kMillisecond);
    delayed = delayed || late > 0;
  }
  EXPECT_TRUE(delayed);
}

struct Standstill : testing::Test {
  Standstill() { timer.Start(); }
  void WaitForEver() {
    for (;;) WaitYield("the reply of the cone");
  }
  World world;
  Timer timer{"timer", 55};
};

TEST_F(Standstill, ThirtyMinutesOfTicksEndTheRunAndNameWhatWaits) {
  EXPECT_THROW(WaitForEver(), ProgramEnd);
  EXPECT_NE(world.clock.StandstillReport().find("the reply of the cone"), std::string::npos);
  EXPECT_NEAR(static_cast<double>(Now()), 30.0 * 60 * kSecond, 1.0 * kSecond);
}

TEST_F(Standstill, CallsThatRepeatByThemselvesProveNoProgress) {
  const std::function<void()> repeat = [&] {
    PostCall(Now() + kSecond, this, repeat, EventKind::RepeatingCall);
  };
  repeat();
  EXPECT_THROW(WaitForEver(), ProgramEnd);
}

TEST_F(Standstill, AnEventStartsTheThirtyMinutesAnew) {
  PostCall(20 * 60 * kSecond, this, [] {});
  EXPECT_THROW(WaitForEver(), ProgramEnd);
  EXPECT_NEAR(static_cast<double>(Now()), 50.0 * 60 * kSecond, 1.0 * kSecond);
}

TEST_F(Standstill, AnEventStillToComeIsWaitedForLonger) {
  bool came = false;
  PostCall(3600 * kSecond, this, [&] { came = true; });
  while (!came) WaitYield("the hour");
  EXPECT_EQ(Now(), 3600 * kSecond);
  EXPECT_EQ(world.clock.StandstillReport(), "");
}

TEST_F(Standstill, AnEmptyQueueEndsTheRunAtOnce) {
  timer.Stop();
  EXPECT_THROW(WaitForEver(), ProgramEnd);
  EXPECT_EQ(Now(), 0);
  EXPECT_NE(world.clock.StandstillReport().find("no event is left"), std::string::npos);
}

}  // namespace
}  // namespace penlog
