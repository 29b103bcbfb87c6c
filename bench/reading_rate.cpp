#include "bench/reading_rate.h"

#include "rig/cone_line.h"
#include "rig/line_pace.h"

namespace penlog {

namespace {

constexpr Micros kTick = 55 * kMillisecond;
constexpr std::int64_t kCommandLength = 2;

}  // namespace

Micros LeastPeriod(std::size_t reply_length) {
  const Micros wire = LineTime(kCommandLength) + AnswerDelay("D") +
                      LineTime(static_cast<std::int64_t>(reply_length));
  return (wire + kTick - 1) / kTick * kTick;
}

double ShareOfAllowed(const ReadingRate& rate) {
  if (rate.asked.size() < 2) return 0;
  const auto periods = static_cast<double>(rate.asked.size() - 1);
  const auto took = static_cast<double>(rate.asked.back() - rate.asked.front());
  return periods * static_cast<double>(LeastPeriod(rate.reply_length)) / took;
}

}  // namespace penlog
