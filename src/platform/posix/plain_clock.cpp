#include "platform/posix/plain_clock.h"

#include <ctime>

namespace penlog {

Micros MonotonicTime() {
  timespec time{};
  ::clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<Micros>(time.tv_sec) * kSecond + time.tv_nsec / 1000;
}

WallTime LocalWallTime() {
  timespec time{};
  ::clock_gettime(CLOCK_REALTIME, &time);
  tm local{};
  ::localtime_r(&time.tv_sec, &local);
  WallTime wall;
  wall.year = local.tm_year + 1900;
  wall.month = local.tm_mon + 1;
  wall.day = local.tm_mday;
  wall.hour = local.tm_hour;
  wall.minute = local.tm_min;
  wall.second = local.tm_sec;
  wall.millisecond = static_cast<int>(time.tv_nsec / 1'000'000);
  return wall;
}

PlainClock::PlainClock() : start_(MonotonicTime()) {
  TakeTime();
}

void PlainClock::TakeTime() {
  now_ = MonotonicTime() - start_;
  wall_ = LocalWallTime();
}

// The time first: what the callbacks queue then is due in this very yield.
void PlainClock::Collect() {
  TakeTime();
  io_.Collect();
}

void PlainClock::SleepUntil(std::optional<Micros> time) {
  if (time) *time -= MonotonicTime() - start_;
  if (!time || *time > 0) io_.Sleep(time);
}

}  // namespace penlog
