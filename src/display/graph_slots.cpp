#include "display/graph_slots.h"

#include <algorithm>
#include <array>

#include "display/display_state.h"

namespace penlog {

namespace {

auto FirstChosen() {
  return display.GraphChannel.begin() + 2;
}

auto BehindChosen() {
  return display.GraphChannel.end();
}

}  // namespace

bool SlotHolds(int channel) {
  return std::find(FirstChosen(), BehindChosen(), channel) != BehindChosen();
}

int FilledSlots() {
  return static_cast<int>(
      std::count_if(FirstChosen(), BehindChosen(), [](auto channel) { return channel != 0; }));
}

void ToggleGraphSlot(int channel) {
  if (channel == 1) return;
  for (auto slot = FirstChosen(); slot != BehindChosen(); ++slot) {
    if (*slot == channel) {
      std::copy(slot + 1, BehindChosen(), slot);
      display.GraphChannel.back() = 0;
      return;
    }
    if (*slot == 0) {
      *slot = static_cast<std::int16_t>(channel);
      return;
    }
  }
}

void KeepGraphSlots(const std::function<bool(int channel)>& stays) {
  const auto before = display.GraphChannel;
  std::fill(FirstChosen(), BehindChosen(), std::int16_t{0});
  auto free = FirstChosen();
  for (std::size_t slot = 2; slot < before.size(); ++slot) {
    const std::int16_t channel = before[slot];
    if (channel > 0 && !SlotHolds(channel) && stays(channel)) *free++ = channel;
  }
}

void ReplaceInGraphSlots(int channel, int other) {
  std::replace(FirstChosen(), BehindChosen(), static_cast<std::int16_t>(channel),
               static_cast<std::int16_t>(other));
}

}  // namespace penlog
