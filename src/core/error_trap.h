// The error traps of the routines: a statement that fails leaves the state as it was, and the
// routine goes on at the next one.
#pragma once

#include <utility>

#include "platform/runtime_fault.h"

namespace penlog {

/// Runs one statement; a `RuntimeFault` in it is dropped. The end of the program passes through.
/// Returns whether it ran to its end.
template <class Statement>
bool Trapped(Statement&& statement) {
  try {
    std::forward<Statement>(statement)();
    return true;
  } catch (const RuntimeFault&) {
    return false;
  }
}

}  // namespace penlog
