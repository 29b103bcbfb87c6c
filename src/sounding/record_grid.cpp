#include "sounding/record_grid.h"

#include "platform/numbers.h"

namespace penlog {

std::int32_t NextRecordOnGrid(float counts, std::int32_t step, std::int32_t next) {
  const std::int32_t nearest = ToInteger32(static_cast<double>(counts) / step) * step;
  return counts < static_cast<float>(nearest) ? next : nearest + step;
}

}  // namespace penlog
