// Values of rows that no sensor gave: those of a channel that a resume lacked.
#pragma once

#include <cstdint>

#include "core/channels.h"
#include "sounding/sounding_state.h"

namespace penlog {

/// What a row in memory holds there.
inline constexpr float kNoReading = kNotReached;

/// Whether `raw`, from a row, was read by a sensor. A channel that is back after a resume without
/// it has rows where it wasn't: nothing may be drawn of them or computed from them.
inline bool IsReached(float raw) {
  return raw != kNoReading;
}

/// A row that is read back holds no reading of any sensor before its fields are filled in: channels
/// that were not recorded have none. 19 to 22 are computed.
inline void ForgetReadings(std::int32_t row) {
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (channel < 19 || channel > 22) sounding.Rows(row, channel) = kNoReading;
  }
}

}  // namespace penlog
