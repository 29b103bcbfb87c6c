// Real time for a test: the plain clock, and its watcher for the drivers.
#pragma once

#include <ctime>
#include <functional>

#include "platform/posix/plain_clock.h"
#include "platform/yield.h"

namespace penlog {

struct RealWorld {
  RealWorld() {
    ResetYield();
    UseClock(&clock);
    UseIo(&clock.Io());
  }
  ~RealWorld() {
    ResetYield();
    UseIo(nullptr);
    UseClock(nullptr);
  }
  RealWorld(const RealWorld&) = delete;
  RealWorld& operator=(const RealWorld&) = delete;

  /// Yields for that long, or until `over`; whether it was over.
  static bool RunFor(
      Micros time, const std::function<bool()>& over = [] { return false; }) {
    bool late = false;
    PostCall(Now() + time, &late, [&late] { late = true; });
    while (!late && !over()) WaitYield("a test's time");
    DropCalls(&late);
    return over();
  }

  /// The share of one processor that this process takes while it waits for that long.
  static double ProcessorShare(Micros time) {
    const std::clock_t before = std::clock();
    RunFor(time);
    const double seconds = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
    return seconds * static_cast<double>(kSecond) / static_cast<double>(time);
  }

  PlainClock clock;
};

}  // namespace penlog
