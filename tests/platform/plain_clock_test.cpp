// In real time; each test takes well under two seconds.
#include "platform/posix/plain_clock.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <thread>
#include <vector>

#include "platform/timer.h"
#include "platform/yield.h"
#include "support/real_world.h"

namespace penlog {
namespace {

struct Pipe {
  Pipe() { EXPECT_EQ(::pipe(ends), 0); }
  ~Pipe() {
    ::close(ends[0]);
    ::close(ends[1]);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  void Put() const { EXPECT_EQ(::write(ends[1], "x", 1), 1); }
  void Take() const {
    char byte = 0;
    EXPECT_EQ(::read(ends[0], &byte, 1), 1);
  }
  int ends[2]{};
};

struct RealTime : testing::Test {
  RealWorld world;
  PollIo& io = world.clock.Io();
};

TEST_F(RealTime, TheClockStandsStillBetweenYields) {
  const Micros before = Now();
  ::usleep(3000);
  EXPECT_EQ(Now(), before);
  Yield();
  EXPECT_GE(Now() - before, 3000);
}

TEST_F(RealTime, WallTimeIsThatOfTheSystem) {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  const WallTime wall = TheClock().Wall();
  EXPECT_EQ(wall.year, local.tm_year + 1900);
  EXPECT_GE(wall.millisecond, 0);
  EXPECT_LT(wall.millisecond, 1000);
  const double apart =
      SecondsSinceMidnight(wall) - (local.tm_hour * 3600.0 + local.tm_min * 60.0 + local.tm_sec);
  EXPECT_TRUE(std::abs(apart) <= 2 || std::abs(apart) > 86390) << apart;
}

TEST_F(RealTime, TheTimersMedianIsWithinTwoMillisecondsOf55) {
  Timer timer("timer", 55);
  std::vector<Micros> times;
  timer.OnTick = [&] { times.push_back(MonotonicTime()); };
  timer.Start();
  while (times.size() < 22) WaitYield("the ticks");
  std::vector<Micros> intervals;
  for (std::size_t i = 1; i < times.size(); ++i) intervals.push_back(times[i] - times[i - 1]);
  std::sort(intervals.begin(), intervals.end());
  EXPECT_NEAR(static_cast<double>(intervals[intervals.size() / 2]), 55'000, 2'000);
  EXPECT_NEAR(static_cast<double>(times.back() - times.front()), 21 * 55'000, 30'000)
      << "lateness does not add up";
}

TEST_F(RealTime, AWaitThatIdlesTakesHardlyAnyTimeOfTheProcessor) {
  Timer timer("timer", 55);
  timer.Start();
  const double used = world.ProcessorShare(300 * kMillisecond);
  EXPECT_LT(used, 0.02);
}

TEST_F(RealTime, AReadableDescriptorEndsTheSleepAndIsCalledInTheCollect) {
  const Pipe pipe;
  int calls = 0;
  const int id = io.Watch(pipe.ends[0], [&] {
    ++calls;
    pipe.Take();
  });
  std::thread later([&] {
    ::usleep(20'000);
    pipe.Put();
  });
  const Micros start = MonotonicTime();
  world.RunFor(300 * kMillisecond, [&] { return calls > 0; });
  EXPECT_LT(MonotonicTime() - start, 200 * kMillisecond);
  EXPECT_EQ(calls, 1);
  later.join();
  io.Unwatch(id);
}

TEST_F(RealTime, WhatIsLeftUnreadIsCalledAgainAtTheNextCollect) {
  const Pipe pipe;
  pipe.Put();
  int calls = 0;
  const int id = io.Watch(pipe.ends[0], [&] { ++calls; });
  Yield();
  Yield();
  EXPECT_EQ(calls, 2);
  io.Unwatch(id);
  Yield();
  EXPECT_EQ(calls, 2);
}

TEST_F(RealTime, APausedWatchIsNotCalledAndDoesNotEndASleep) {
  Pipe pipe;
  int calls = 0;
  const int id = io.Watch(pipe.ends[0], [&] { ++calls; });
  ::close(pipe.ends[1]);  // hung up
  pipe.ends[1] = -1;
  io.Pause(id, true);
  Yield();
  EXPECT_EQ(calls, 0);
  EXPECT_LT(world.ProcessorShare(200 * kMillisecond), 0.05);
  io.Pause(id, false);
  Yield();
  EXPECT_EQ(calls, 1) << "a hang-up is told as readable";
  io.Unwatch(id);
}

TEST_F(RealTime, AWritableWatchStartsPaused) {
  const Pipe pipe;
  int calls = 0;
  const int id = io.WatchWritable(pipe.ends[1], [&] {
    ++calls;
    io.Pause(id, true);
  });
  Yield();
  EXPECT_EQ(calls, 0);
  io.Pause(id, false);
  Yield();
  Yield();
  EXPECT_EQ(calls, 1);
  io.Unwatch(id);
}

TEST_F(RealTime, ACallbackMayEndItsOwnWatchAndOthers) {
  const Pipe first;
  const Pipe second;
  first.Put();
  second.Put();
  int calls = 0;
  int a = 0;
  int b = 0;
  const auto end_both = [&] {
    ++calls;
    io.Unwatch(a);
    io.Unwatch(b);
  };
  a = io.Watch(first.ends[0], end_both);
  b = io.Watch(second.ends[0], end_both);
  Yield();
  Yield();
  EXPECT_EQ(calls, 1);
}

TEST_F(RealTime, ACallbackMayPauseAnotherThatIsReadyToo) {
  const Pipe first;
  const Pipe second;
  first.Put();
  second.Put();
  int calls = 0;
  int a = 0;
  int b = 0;
  a = io.Watch(first.ends[0], [&] {
    ++calls;
    io.Pause(b, true);
  });
  b = io.Watch(second.ends[0], [&] {
    ++calls;
    io.Pause(a, true);
  });
  Yield();
  EXPECT_EQ(calls, 1);
  io.Unwatch(a);
  io.Unwatch(b);
}

TEST_F(RealTime, APollIsCalledOncePerCollectAndAtLeastTenTimesASecond) {
  int calls = 0;
  const int id = io.OnCollect([&] { ++calls; });
  Yield();
  EXPECT_EQ(calls, 1);
  const Micros start = MonotonicTime();
  while (calls < 5) WaitYield("the polls");
  EXPECT_LT(MonotonicTime() - start, 500 * kMillisecond);
  io.Unwatch(id);
}

TEST_F(RealTime, WakeUpFromAnotherThreadEndsASleepWithoutATime) {
  std::thread later([&] {
    ::usleep(20'000);
    io.WakeUp();
  });
  const Micros start = MonotonicTime();
  WaitYield("the wake-up");
  EXPECT_GE(MonotonicTime() - start, 15 * kMillisecond);
  later.join();
}

TEST_F(RealTime, AWakeUpBeforeTheSleepIsNotLost) {
  io.WakeUp();
  const Micros start = MonotonicTime();
  world.clock.SleepUntil(Now() + 500 * kMillisecond);
  EXPECT_LT(MonotonicTime() - start, 300 * kMillisecond);
}

TEST_F(RealTime, ASignalEndsASleepAndNothingElse) {
  struct sigaction action {};
  struct sigaction old {};
  action.sa_handler = [](int) {};
  ::sigaction(SIGUSR1, &action, &old);
  const pthread_t waiter = ::pthread_self();
  std::thread later([waiter] {
    ::usleep(20'000);
    ::pthread_kill(waiter, SIGUSR1);
  });
  EXPECT_NO_THROW(WaitYield("the signal"));
  later.join();
  ::sigaction(SIGUSR1, &old, nullptr);
}

}  // namespace
}  // namespace penlog
