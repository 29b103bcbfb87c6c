// The recovery copy as it was read at RESUME LAST SOUNDING.
#pragma once

#include <string>

namespace penlog {

/// Rows, paths and header in memory are those of this text. Another one on the disk is another
/// sounding's: nothing may be added to it.
struct ResumedCopyState {
  std::string Text;
};

inline ResumedCopyState resumed_copy;

}  // namespace penlog
