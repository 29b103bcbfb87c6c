#include "rig/console_watch.h"

#include "platform/texts.h"

namespace penlog {

void ConsoleWatch::Take(const RigRecord& record) {
  switch (record.kind) {
    case RigLogKind::Port:
      TakePort(record.text);
      break;
    case RigLogKind::Command:
      asked_ = record.time;
      break;
    case RigLogKind::Reply:
      if (record.number == 0 && record.sampled > 0) TakeReading(record);
      break;
    default:
      break;
  }
}

void ConsoleWatch::TakePort(const std::string& text) {
  bool& open = StartsWith(text, "cone") ? cone_open_ : truck_open_;
  if (text.find(" opened") != std::string::npos) open = true;
  if (text.find(" closed") != std::string::npos) open = false;
}

void ConsoleWatch::TakeReading(const RigRecord& record) {
  last_reading_ = Trim(record.text);
  const std::int64_t second = record.time / kSecond;
  if (second != second_) {
    last_second_ = second == second_ + 1 ? this_second_ : 0;
    this_second_ = 0;
    second_ = second;
  }
  ++this_second_;
}

int ConsoleWatch::ReadingsPerSecond(Micros now) const {
  const std::int64_t second = now / kSecond;
  if (second == second_) return last_second_;
  return second == second_ + 1 ? this_second_ : 0;
}

}  // namespace penlog
