// A world with all state of the console cleared before and after.
#pragma once

#include "core/reset_state.h"
#include "support/world.h"

namespace penlog {

struct ClearedWorld : World {
  ClearedWorld() { ResetState(); }
  ~ClearedWorld() { ResetState(); }
};

}  // namespace penlog
