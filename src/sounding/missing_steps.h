// How often the truck interface was away in this sounding, and where first, and what edges it lost;
// the depth of the last return stands in `SoundingState`.
#pragma once

#include <cstdint>

namespace penlog {

struct MissingStepsState {
  std::int32_t TimesAway = 0;
  float FirstDepth = 0;              ///< m; `CurrentDepth` at the first return
  std::int32_t TimesAwayBefore = 0;  ///< of them before the resume
  std::int64_t EdgesLost = 0;        ///< in this program, as the status window has counted them
  std::int64_t EdgesLostBefore = 0;  ///< before the resume
  std::int64_t EdgesLostAtStart =
      0;  ///< in this program before the sounding, whose depth lacks none
};

inline MissingStepsState missing_steps;

}  // namespace penlog
