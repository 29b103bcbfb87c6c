#include "display/scale_axis.h"

#include <array>
#include <cmath>

#include "platform/numbers.h"

namespace penlog {

namespace {

struct AxisRow {
  float up_to;
  float step;
  std::int16_t divisions;
};

constexpr std::array kAxisRows = {
    AxisRow{10, 1, 10},      AxisRow{20, 2, 1},       AxisRow{50, 5, 5},
    AxisRow{100, 10, 5},     AxisRow{200, 20, 4},     AxisRow{500, 50, 5},
    AxisRow{1000, 100, 5},   AxisRow{2000, 200, 4},   AxisRow{5000, 500, 5},
    AxisRow{10000, 1000, 5}, AxisRow{20000, 2000, 3}, AxisRow{50000, 5000, 4},
};
constexpr AxisRow kBeyond{100000, 10000, 4};
constexpr int kMostMultiples = 1000;

/// The multiple of the step at or just outside `end`: the one away from zero with `outward`, else
/// the one towards it. An end of 0 counts as positive. Beyond the 1000th multiple it stays.
float MovedToMultiple(float end, float step, bool outward) {
  const float sign = end < 0 ? -1.0F : 1.0F;
  for (int i = 1; i <= kMostMultiples; ++i) {
    const float multiple = sign * step * static_cast<float>(i);
    if (multiple == end) return end;
    if (std::fabs(multiple) > std::fabs(end)) {
      return outward ? multiple : sign * step * static_cast<float>(i - 1);
    }
  }
  return end;
}

}  // namespace

void ScaleAxis(float& max, float& min, float& step, std::int16_t& ticks, std::int16_t& divisions) {
  const float range = std::fabs(max - min);
  AxisRow row = kBeyond;
  for (auto at = kAxisRows.rbegin(); at != kAxisRows.rend(); ++at) {
    if (range <= at->up_to) row = *at;
  }
  step = row.step;
  divisions = row.divisions;
  if (range > kAxisRows.back().up_to) {
    min = 0;
    max = kBeyond.up_to;
  }
  min = MovedToMultiple(min, step, min < 0);
  max = MovedToMultiple(max, step, max >= 0);
  if (max - min == 1.0F) {
    step = 1;
    divisions = 10;
  }
  ticks = ToInteger16((max - min) / step);
}

}  // namespace penlog
