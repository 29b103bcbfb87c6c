#include "platform/qt/real_clock.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QDateTime>
#include <QObject>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <csignal>
#include <thread>
#include <vector>

#include "network_world.h"
#include "platform/posix/end_signals.h"
#include "platform/timer.h"

namespace penlog {
namespace {

double CpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& t) {
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

Micros MedianTick(const NetworkWorld& world, Micros time) {
  std::vector<Micros> gaps;
  Micros last = Now();
  Timer timer("ticks", 55);
  timer.OnTick = [&] {
    gaps.push_back(Now() - last);
    last = Now();
  };
  timer.Start();
  world.RunFor(time);
  if (gaps.empty()) return 0;
  std::sort(gaps.begin(), gaps.end());
  return gaps[gaps.size() / 2];
}

TEST(RealClock, TickOfFiftyFiveMillisecondsComesWithinTwo) {
  const NetworkWorld world;
  Micros median = 0;
  const double cpu = CpuSeconds();
  const Micros start = Now();
  // The best of five: other programs run here too.
  for (int round = 0; round < 5; ++round) {
    median = MedianTick(world, 1500 * kMillisecond);
    if (std::abs(median - 55 * kMillisecond) <= 2 * kMillisecond) break;
  }
  EXPECT_GE(median, 53 * kMillisecond);
  EXPECT_LE(median, 57 * kMillisecond);
  const double share = (CpuSeconds() - cpu) / (static_cast<double>(Now() - start) / 1e6);
  // About 1 % is the aim; a loaded machine and a sanitizer get room.
  EXPECT_LT(share, 0.05) << "idling burns the processor";
  RecordProperty("idle_cpu_per_mille", static_cast<int>(share * 1000));
}

TEST(RealClock, TimeStandsStillBetweenYields) {
  NetworkWorld world;
  Yield();
  const Micros before = Now();
  usleep(5000);
  EXPECT_EQ(Now(), before);
  Yield();
  EXPECT_GE(Now(), before + 5000);
}

TEST(RealClock, WallIsTheLocalTimeOfDay) {
  NetworkWorld world;
  Yield();
  const WallTime wall = world.clock.Wall();
  const QDateTime told(QDate(wall.year, wall.month, wall.day),
                       QTime(wall.hour, wall.minute, wall.second, wall.millisecond));
  EXPECT_LT(std::abs(told.msecsTo(QDateTime::currentDateTime())), 1000);
}

TEST(RealClock, EventsOfOtherThreadsEndASleep) {
  RealClock clock;
  std::atomic<bool> happened = false;
  std::thread other([&] {
    usleep(100'000);
    happened = true;
    clock.io().WakeUp();
  });
  int sleeps = 0;
  for (; !happened && sleeps < 20; ++sleeps) {
    clock.SleepUntil(2500 * kMillisecond);
    clock.Collect();
  }
  other.join();
  EXPECT_TRUE(happened) << "it does not sleep";
  EXPECT_GE(clock.Now(), 100 * kMillisecond);
  EXPECT_LT(clock.Now(), 2400 * kMillisecond) << "it slept through the wake-up";
}

struct Pipe {
  Pipe() { EXPECT_EQ(pipe(ends), 0); }
  ~Pipe() {
    close(ends[0]);
    CloseWriting();
  }
  void Put(char c) const { EXPECT_EQ(write(ends[1], &c, 1), 1); }
  void CloseWriting() {
    if (ends[1] >= 0) close(ends[1]);
    ends[1] = -1;
  }
  int ends[2] = {-1, -1};
};

TEST(RealClock, WatchedDescriptorIsCalledInACollectAlone) {
  NetworkWorld world;
  Pipe pipe;
  int calls = 0;
  const int id = world.clock.io().Watch(pipe.ends[0], [&] { ++calls; });
  pipe.Put('x');
  world.clock.SleepUntil(Now() + kSecond);
  EXPECT_EQ(calls, 0);
  world.clock.Collect();
  EXPECT_EQ(calls, 1);
  world.clock.Collect();
  EXPECT_EQ(calls, 2) << "the byte still waits: a bounded read goes on";
  world.clock.io().Unwatch(id);
  world.clock.Collect();
  EXPECT_EQ(calls, 2);
}

TEST(RealClock, PausedWatchNeitherCallsNorEndsASleepAfterAHangUp) {
  NetworkWorld world;
  Pipe pipe;
  int calls = 0;
  const int id = world.clock.io().Watch(pipe.ends[0], [&] { ++calls; });
  world.clock.io().Pause(id, true);
  pipe.CloseWriting();
  const Micros before = Now();
  const double cpu = CpuSeconds();
  world.RunFor(300 * kMillisecond);
  EXPECT_GE(Now() - before, 300 * kMillisecond);
  EXPECT_LT(CpuSeconds() - cpu, 0.1) << "it spins";
  EXPECT_EQ(calls, 0);
  world.clock.io().Pause(id, false);
  world.clock.Collect();
  EXPECT_EQ(calls, 1);
  world.clock.io().Unwatch(id);
}

TEST(RealClock, CallbackMayEndItsOwnWatchAndOthers) {
  NetworkWorld world;
  Pipe pipe;
  pipe.Put('x');
  int calls = 0;
  int first = 0;
  int second = 0;
  const auto end_both = [&] {
    ++calls;
    world.clock.io().Unwatch(first);
    world.clock.io().Unwatch(second);
  };
  first = world.clock.io().Watch(pipe.ends[0], end_both);
  second = world.clock.io().Watch(pipe.ends[0], end_both);
  world.clock.Collect();
  world.clock.Collect();
  EXPECT_EQ(calls, 1);
}

TEST(RealClock, WritableWatchStartsPaused) {
  NetworkWorld world;
  Pipe pipe;
  int calls = 0;
  const int id = world.clock.io().WatchWritable(pipe.ends[1], [&] { ++calls; });
  world.clock.Collect();
  EXPECT_EQ(calls, 0);
  world.clock.io().Pause(id, false);
  world.clock.Collect();
  EXPECT_EQ(calls, 1);
  world.clock.io().Unwatch(id);
}

TEST(RealClock, FramesComeAtMostThirtyTimesASecondAndOnlyAfterEvents) {
  NetworkWorld world;
  int frames = 0;
  world.clock.on_frame = [&] { ++frames; };
  Timer timer("fast", 2);
  timer.OnTick = [] {};
  timer.Start();
  world.RunFor(kSecond);
  EXPECT_GE(frames, 20);
  EXPECT_LE(frames, 31);
  timer.Stop();
  world.RunFor(100 * kMillisecond);
  frames = 0;
  bool over = false;
  PostCall(Now() + 400 * kMillisecond, &over, [&over] { over = true; });
  while (!over) WaitYield("quiet");
  EXPECT_LE(frames, 1) << "nothing happened that could be shown";
}

TEST(RealClock, ChangeIsShownWithoutWaitingForTheNextEvent) {
  NetworkWorld world;
  int frames = 0;
  world.clock.on_frame = [&] { ++frames; };
  world.RunFor(100 * kMillisecond);
  frames = 0;
  Micros shown = 0;
  bool over = false;
  PostCall(Now(), &over, [] {});
  PostCall(Now() + 500 * kMillisecond, &over, [&over] { over = true; });
  const Micros before = Now();
  while (!over) {
    WaitYield("quiet");
    if (frames > 0 && shown == 0) shown = Now();
  }
  EXPECT_GT(frames, 0);
  EXPECT_LT(shown - before, 80 * kMillisecond);
}

TEST(RealClock, DeferredDeletionsHappen) {
  NetworkWorld world;
  bool deleted = false;
  auto* object = new QObject;
  QObject::connect(object, &QObject::destroyed, [&] { deleted = true; });
  object->deleteLater();
  Yield();
  EXPECT_TRUE(deleted);
}

TEST(EndSignals, SignalEndsAWaitWithTheProgramsEnd) {
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    NetworkWorld world;
    EndSignals end_signals(world.clock.io());
    std::thread other([number] {
      usleep(30'000);
      kill(getpid(), number);
    });
    EXPECT_THROW(world.RunFor(2 * kSecond), ProgramEnd) << number;
    other.join();
    EXPECT_THROW(Yield(), ProgramEnd);
  }
}

}  // namespace
}  // namespace penlog
