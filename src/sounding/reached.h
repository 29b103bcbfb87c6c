// Values of rows that no sensor gave: those of a channel that a resume lacked.
#pragma once

#include "sounding/sounding_state.h"

namespace penlog {

/// What a row in memory holds there.
inline constexpr float kNoReading = kNotReached;

/// Whether `raw`, from a row, was read by a sensor. A channel that is back after a resume without
/// it has rows where it wasn't: nothing may be drawn of them or computed from them.
inline bool IsReached(float raw) {
  return raw != kNoReading;
}

}  // namespace penlog
