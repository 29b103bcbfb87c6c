// The rows of a recovery copy and those of its `.cpt` file in one order. The copy has marks where a
// gap was drilled, and each part between two marks has an order of its own: behind a mark the
// depths may begin above the row before it. No table is touched here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/temporary_data.h"
#include "sounding/found_cpt.h"

namespace penlog {

/// A row of the sounding, from where it is known.
struct Slot {
  StoredRow row;
  std::ptrdiff_t copy = -1;  ///< its place in the recovery copy, from 0
  std::ptrdiff_t cpt = -1;   ///< its place in the `.cpt` file, from 0
  std::int32_t marks = 0;    ///< marks of gaps above it, a torn one too
};
using Slots = std::vector<Slot>;

/// The rows of the copy before each mark, rising; the torn one too.
std::vector<std::int32_t> RowsBeforeMarks(const StoredSounding& stored);

/// The lines that the copy lost between its rows number `rows` and `rows` + 1, `marks` being above.
std::ptrdiff_t LinesLost(const StoredSounding& stored, std::ptrdiff_t rows, std::int32_t marks);

/// Whether two values are the same text in a file.
bool IsSameValue(float one, float other);

/// The whole rows of the file, up to the first line that is none.
std::vector<StoredRow> CptRows(const FoundCpt& found);

/// Both in their order; those of the file alone have its depth and no values yet. `cpt` is cut off
/// where it rises with no mark to tell why. Several rows may have the depth of one, in fine steps:
/// then the values decide that stand in their own rows in the file, `own` being their places.
Slots MergeRows(const StoredSounding& stored, std::vector<StoredRow>& cpt,
                const std::vector<std::size_t>& own);

}  // namespace penlog
