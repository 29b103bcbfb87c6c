#include "platform/virtual_clock.h"

#include <chrono>

#include "platform/yield.h"

namespace penlog {

namespace {

Micros SinceEpoch(const WallTime& wall) {
  using namespace std::chrono;
  const sys_days date{year{wall.year} / wall.month / wall.day};
  const Micros days = date.time_since_epoch().count();
  return days * 86400 * kSecond + (wall.hour * 3600 + wall.minute * 60 + wall.second) * kSecond +
         wall.millisecond * kMillisecond;
}

WallTime FromEpoch(Micros since_epoch) {
  using namespace std::chrono;
  const sys_time<microseconds> instant{microseconds{since_epoch}};
  const sys_days date = floor<days>(instant);
  const year_month_day ymd{date};
  const hh_mm_ss time{instant - date};
  WallTime wall;
  wall.year = static_cast<int>(ymd.year());
  wall.month = static_cast<int>(static_cast<unsigned>(ymd.month()));
  wall.day = static_cast<int>(static_cast<unsigned>(ymd.day()));
  wall.hour = static_cast<int>(time.hours().count());
  wall.minute = static_cast<int>(time.minutes().count());
  wall.second = static_cast<int>(time.seconds().count());
  wall.millisecond = static_cast<int>(time.subseconds().count() / 1000);
  return wall;
}

}  // namespace

VirtualClock::VirtualClock(WallTime start, std::uint32_t seed)
    : wall_start_(SinceEpoch(start)), random_(seed) {}

WallTime VirtualClock::Wall() const {
  return FromEpoch(wall_start_ + wall_offset_ + now_);
}

void VirtualClock::SleepUntil(std::optional<Micros> time) {
  if (!time) EndStandstill("no event is left in the queue");
  const Micros still = *time - last_progress_;
  // A single event further on, as a script's long wait, is no standstill.
  if (still > standstill_limit_ && TheQueue().OnlyRepeats()) {
    EndStandstill("nothing but ticks happened for " + std::to_string(still / kSecond) + " s");
  }
  if (*time > now_) now_ = *time;
}

void VirtualClock::EndStandstill(const std::string& what_happened) {
  standstill_report_ = what_happened + "; waiting for: " + WhatWaits();
  EndProgram();
}

Micros VirtualClock::TimerTime(Micros due) {
  if (jitter_ <= 0) return due;
  // The generator's own numbers: the library's distributions differ between builds.
  return due + static_cast<Micros>(random_() % static_cast<std::uint64_t>(jitter_ + 1));
}

void VirtualClock::Handed(const Event& event) {
  if (!Repeats(event.kind)) last_progress_ = now_;
}

}  // namespace penlog
