// Rows that the recovery copy of a sounding lost and its `.cpt` file still holds: a damaged line,
// or an end that its disk did not take. The file holds them aligned, so each channel is taken from
// the row in which it stands there. Nothing is opened or written here.
#pragma once

#include <cstdint>
#include <optional>

#include "core/temporary_data.h"
#include "sounding/found_cpt.h"

namespace penlog {

/// What was put back.
struct RecoveredRows {
  std::int32_t count = 0;
  float first = 0;              ///< m; depth of the first and the last of them, not negated
  float last = 0;               ///< m
  std::int32_t incomplete = 0;  ///< of these some channels stand nowhere and hold -32768
  float behind_copy = 0;  ///< m; how far the sounding went on behind the recovery copy's last row
};

/// Puts the rows in their places, in memory and in `stored`: its rows, marks and sound text. Depths
/// tell which rows are lacking; where the file needs more behind its last one, the values that
/// stand in both tell where. Rows whose depths are not in the file stand in depth steps, and none
/// is put behind a mark that no row follows: its depth is not known. Taken is what makes fewest
/// rows of the file disagree, and nothing where that are not fewer than without it. Start depth,
/// counts, the alignment and the depth of a resume follow the rows.
std::optional<RecoveredRows> RecoverRows(const FoundCpt& found, StoredSounding& stored);

/// The lines behind the last row of the file that can be formed from the rows in memory.
struct LinesBehind {
  bool is_end = false;         ///< all are lines of an end that was cut off
  std::optional<float> depth;  ///< m, not negated; to which they go, where that is below the rows
};

LinesBehind JudgeLinesBehind(const FoundCpt& found);

}  // namespace penlog
