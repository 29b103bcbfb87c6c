// The colour of what wants a look and is no alarm.
#pragma once

#include "forms/control.h"

namespace penlog {

/// Ground of a notice: rows in memory, depth steps that may be missing. Red as a ground is the
/// alarm's alone.
constexpr Colour kAmber{255, 191, 0};

}  // namespace penlog
