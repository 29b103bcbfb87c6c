// The graph slots: the channels of the strip charts. Slot 1 is always channel 1; slots 2 to 4 are
// filled by the operator, without gaps.
#pragma once

#include <functional>

namespace penlog {

/// Whether one of the slots 2 to 4 holds the channel.
bool SlotHolds(int channel);

/// How many of the slots 2 to 4 hold a channel.
int FilledSlots();

/// A click on a channel's graph box: a slot that holds the channel gives it up and those behind
/// move forward; else the first free slot takes it, or none when all are taken. Channel 1 has its
/// slot.
void ToggleGraphSlot(int channel);

/// Slots 2 to 4 keep the channels that `stays` names, each once; those behind move forward.
void KeepGraphSlots(const std::function<bool(int channel)>& stays);

/// A slot of 2 to 4 that holds `channel` holds `other` instead.
void ReplaceInGraphSlots(int channel, int other);

}  // namespace penlog
