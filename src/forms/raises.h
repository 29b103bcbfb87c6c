// Counts the screens that were brought to the front: a view can't tell from the order alone that
// the front one was asked for once more, while another window lies above it.
#pragma once

#include <cstdint>

namespace penlog {

struct RaiseState {
  std::uint32_t Count = 0;  ///< of `Show`
};

inline RaiseState raises;

}  // namespace penlog
