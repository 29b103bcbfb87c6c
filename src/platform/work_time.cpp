#include "platform/work_time.h"

#include <chrono>

#include "platform/clock.h"

namespace penlog {

namespace {

Micros virtual_time = 0;

}  // namespace

Micros WorkTime() {
  if (TheClock().IsVirtual()) return virtual_time;
  const auto time = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::microseconds>(time).count();
}

void AddWorkTime(Micros time) {
  virtual_time += time;
}

}  // namespace penlog
