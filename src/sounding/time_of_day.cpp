#include "sounding/time_of_day.h"

#include "platform/clock.h"

namespace penlog {

namespace {

constexpr std::int32_t kMsOfDay = 86'400'000;

}  // namespace

std::int32_t TimeToMillisecond() {
  const WallTime wall = TheClock().Wall();
  return wall.hour * 3'600'000 + wall.minute * 60'000 + wall.second * 1000 + wall.millisecond;
}

std::int32_t ElapsedSince(std::int32_t origin, std::int32_t now) {
  return now < origin ? kMsOfDay - origin + now : now - origin;
}

}  // namespace penlog
