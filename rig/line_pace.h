// How long characters take on a serial line.
#pragma once

#include <cstdint>

#include "platform/event_queue.h"

namespace penlog {

constexpr int kLinkBaud = 19200;

/// Time of `characters` in a row, each of 10 bits (start, 8 data, stop): 520.8 microseconds a
/// character at 19200 baud. Rounded once, so that long texts don't drift.
constexpr Micros LineTime(std::int64_t characters, int baud = kLinkBaud) {
  return (characters * 10 * kSecond + baud / 2) / baud;
}

}  // namespace penlog
