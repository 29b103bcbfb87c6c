// The time base of a sounding: milliseconds of the local day.
#pragma once

#include <cstdint>

namespace penlog {

/// Local time of day in ms.
std::int32_t TimeToMillisecond();

/// Milliseconds from `origin` to `now`, both times of day; an earlier time is of the next day. A
/// second midnight is not told.
std::int32_t ElapsedSince(std::int32_t origin, std::int32_t now);

}  // namespace penlog
