// How often the truck interface was away in this sounding, and where first; the depth of the last
// return stands in `SoundingState`.
#pragma once

#include <cstdint>

namespace penlog {

struct MissingStepsState {
  std::int32_t TimesAway = 0;
  float FirstDepth = 0;  ///< m; `CurrentDepth` at the first return
};

inline MissingStepsState missing_steps;

}  // namespace penlog
