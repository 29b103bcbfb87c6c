// One rule for the axes of all graphs.
#pragma once

#include <cstdint>

namespace penlog {

/// Turns a range into a round one, in the axis's own units: the ends go in and come out; `step` is
/// the distance of two ticks, `ticks` how many steps the span has, `divisions` how many ticks stand
/// between two labels. A range of 0 to 0 becomes 0 to 1.
void ScaleAxis(float& max, float& min, float& step, std::int16_t& ticks, std::int16_t& divisions);

}  // namespace penlog
