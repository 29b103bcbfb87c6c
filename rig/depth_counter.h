// The contacts of the depth counter: which lines are held at which place, and where they change.
//
// Encoder: two contacts a quarter of a step apart, four line changes a counted step. Going down,
// channel A (CD) leads channel B (CTS) with direction 0; with direction 1 they change roles. Both
// contacts are open at every whole step, so that a push of whole steps leaves no half-counted one.
// Proximity: one contact (CD), closed over the middle half of each step; it can't tell up from
// down.
#pragma once

#include <cstdint>

#include "platform/port_driver.h"

namespace penlog {

/// Positions are whole nanometres, so that no edge is lost to rounding.
using Nanometres = std::int64_t;
constexpr Nanometres kNanometresPerMetre = 1'000'000'000;

enum class CounterType { Encoder, Proximity };

class DepthCounter {
 public:
  DepthCounter(CounterType type, int direction, Nanometres step);

  /// Position of the next change below and above the present place.
  Nanometres NextDown() const { return ChangePosition(passed_); }
  Nanometres NextUp() const { return ChangePosition(passed_ - 1); }
  void PassDown() { ++passed_; }
  void PassUp() { --passed_; }
  /// The contacts as they are now, into the lines that they use; the others stay.
  ModemLines Lines(ModemLines lines) const;

  CounterType Type() const { return type_; }
  Nanometres Step() const { return step_; }

 private:
  int ChangesPerStep() const { return type_ == CounterType::Encoder ? 4 : 2; }
  Nanometres ChangePosition(std::int64_t index) const;

  CounterType type_;
  int direction_;
  Nanometres step_;
  std::int64_t passed_ = 0;  // changes below the start
};

}  // namespace penlog
