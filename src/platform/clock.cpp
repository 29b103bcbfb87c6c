#include "platform/clock.h"

#include <cstdlib>

namespace penlog {

namespace {

Clock* clock_in_use = nullptr;

std::string Digits(int value, std::size_t width) {
  std::string text = std::to_string(value);
  return text.size() < width ? std::string(width - text.size(), '0') + text : text;
}

}  // namespace

Clock& TheClock() {
  if (clock_in_use == nullptr) std::abort();  // a program without a clock is mis-built
  return *clock_in_use;
}

void UseClock(Clock* clock) { clock_in_use = clock; }

Micros Now() { return TheClock().Now(); }

std::string DateTimeText(const WallTime& wall) {
  return Digits(wall.year, 4) + "-" + Digits(wall.month, 2) + "-" + Digits(wall.day, 2) + " " +
         Digits(wall.hour, 2) + ":" + Digits(wall.minute, 2) + ":" + Digits(wall.second, 2);
}

double SecondsSinceMidnight(const WallTime& wall) {
  return wall.hour * 3600.0 + wall.minute * 60.0 + wall.second + wall.millisecond / 1000.0;
}

}  // namespace penlog
