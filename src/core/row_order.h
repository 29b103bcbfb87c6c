// Which rows of a damaged file stand in their order: rods go down, so no row lies above the one
// before it.
#pragma once

#include <vector>

namespace penlog {

/// For each depth (m) whether it belongs to the longest run of depths, in the order given, of which
/// none is less than the one before. Of several such runs the one whose ends lie highest.
std::vector<bool> InOrder(const std::vector<float>& depths);

}  // namespace penlog
