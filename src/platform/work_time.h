// How long work takes that the program waits for: `Now` stands still between two yields.
#pragma once

#include "platform/event_queue.h"

namespace penlog {

/// A time that goes on evenly, from an arbitrary begin. In virtual time no work takes any, but for
/// what `AddWorkTime` has added.
Micros WorkTime();

/// In virtual time: the work that is being done takes that long.
void AddWorkTime(Micros time);

}  // namespace penlog
