// Rows that the recovery copy of a sounding lost, and whose depths its `.cpt` file does not hold
// yet, since alignment holds the last rows back: the values that stand in both tell their places.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "core/temporary_data.h"
#include "sounding/merged_rows.h"

namespace penlog {

/// The slots with the rows that the file needs behind its last one, which stands in slot `last`.
/// Each row of the copy there gets a place in which it holds what the file holds of it. Rows are
/// added where the distance of two rows has room for them, in even steps, behind the copy's last
/// row, and beside the mark of a gap as many as lines were lost on that side of it. Of several such
/// ways the one that fits distances and lost lines best. None where no way is left.
std::optional<Slots> WithLackingRows(const StoredSounding& stored, const Slots& slots,
                                     const std::vector<StoredRow>& cpt, std::ptrdiff_t last);

}  // namespace penlog
