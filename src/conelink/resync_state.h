// Whether the cone is being brought back to give readings.
#pragma once

#include <cstdint>

namespace penlog {

struct ResyncState {
  std::int16_t UnderWay = 0;  ///< -1 it answers, but has not yet given two readings that differ
};

inline ResyncState resync;

}  // namespace penlog
