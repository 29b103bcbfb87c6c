#include "core/row_order.h"

#include <algorithm>
#include <cstddef>

namespace penlog {

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

}  // namespace

std::vector<bool> InOrder(const std::vector<float>& depths) {
  std::vector<std::size_t> ends;  // of the best run of each length: the least last depth
  std::vector<std::size_t> before(depths.size(), kNone);
  for (std::size_t i = 0; i < depths.size(); ++i) {
    const auto place =
        std::upper_bound(ends.begin(), ends.end(), depths[i],
                         [&](float depth, std::size_t end) { return depth < depths[end]; });
    if (place != ends.begin()) before[i] = *(place - 1);
    if (place == ends.end()) {
      ends.push_back(i);
    } else {
      *place = i;
    }
  }
  std::vector<bool> in_order(depths.size(), false);
  for (std::size_t i = ends.empty() ? kNone : ends.back(); i != kNone; i = before[i]) {
    in_order[i] = true;
  }
  return in_order;
}

}  // namespace penlog
