#include "rig/depth_counter.h"

#include <array>

#include "platform/runtime_fault.h"

namespace penlog {

namespace {

struct Contacts {
  bool leading = false;
  bool following = false;
};

// By changes passed since a whole step, going down.
constexpr std::array<Contacts, 4> kEncoderContacts = {
    {{false, false}, {true, false}, {true, true}, {false, true}}};

}  // namespace

DepthCounter::DepthCounter(CounterType type, int direction, Nanometres step)
    : type_(type), direction_(direction), step_(step) {
  if (step < 1000) throw RuntimeFault("The depth counter's step must be at least a micrometre");
}

Nanometres DepthCounter::ChangePosition(std::int64_t index) const {
  const std::int64_t halves = std::int64_t{2} * ChangesPerStep();
  const std::int64_t place = 2 * index + 1;
  // Whole steps apart from the rest, so that the product stays small on a long way.
  const std::int64_t whole = place >= 0 ? place / halves : -((-place + halves - 1) / halves);
  return whole * step_ + (place - whole * halves) * step_ / halves;
}

ModemLines DepthCounter::Lines(ModemLines lines) const {
  const std::int64_t changes = ChangesPerStep();
  const std::int64_t phase = ((passed_ % changes) + changes) % changes;
  if (type_ == CounterType::Proximity) {
    lines.cd = phase == 1;
    return lines;
  }
  const Contacts contacts = kEncoderContacts[static_cast<std::size_t>(phase)];
  lines.cd = direction_ == 0 ? contacts.leading : contacts.following;
  lines.cts = direction_ == 0 ? contacts.following : contacts.leading;
  return lines;
}

}  // namespace penlog
