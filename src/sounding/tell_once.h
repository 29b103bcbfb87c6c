// Messages that come once for a cause, however often it comes up: a fault in each pass must not
// bury the console in boxes.
#pragma once

#include <string>
#include <utility>

#include "platform/runtime_fault.h"

namespace penlog {

/// Posts a box with `text` unless it was told already. Never waits.
void TellOnce(const std::string& text);
/// Runs one step of a pass; a fault in it is told once and keeps no other step from its work.
template <class Work>
void Step(Work&& work) {
  try {
    std::forward<Work>(work)();
  } catch (const RuntimeFault& fault) {
    TellOnce(fault.what());
  }
}

}  // namespace penlog
