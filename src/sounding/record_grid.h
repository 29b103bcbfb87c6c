// The grid of depth counts on which rows are due.
#pragma once

#include <cstdint>

namespace penlog {

/// The count at which the next row is due after a loss of the link: the next step of the grid, or
/// `next` where the step nearest to `counts` lies ahead. `step` counts a row, at least 1.
std::int32_t NextRecordOnGrid(float counts, std::int32_t step, std::int32_t next);

}  // namespace penlog
