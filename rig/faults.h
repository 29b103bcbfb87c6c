// What can go wrong at the far end of the wires, by name, with the fault model:
//
//   silent          the cone and the modules hear and do nothing; not a byte comes back
//   break-only      they answer nothing until the line has been held in break; that ends the fault
//   garbled         noise on the line: one character in four of an answer becomes another printable
//                   one, and a carriage return stands in its middle
//   half-reply      an answer stops after half of its bytes and has no line end
//   lost-selection  the cone forgets which channels are selected (a dip of its supply): "D" is
//                   answered by "?" until the next "Z"; once unless told how often
//   frozen          "D" is answered with the last reading for as long as the fault lasts
//   unplugged       the adapter is out: the port does not exist
//   replugged       the adapter was out and comes back under another COM number
//   edge-burst      contact chatter: line CD flips back and forth, 200 microseconds a flip, and
//                   ends as it was; 20 flips unless told how many pairs
//   edge-lost       the next edges change their line and no event tells of it; one unless told
//
// A fault lasts until it is switched off, for a number of times, or for a time.
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "platform/event_queue.h"

namespace penlog {

enum class FaultName {
  Silent,
  BreakOnly,
  Garbled,
  HalfReply,
  LostSelection,
  Frozen,
  Unplugged,
  Replugged,
  EdgeBurst,
  EdgeLost,
};

constexpr int kFaultCount = 10;

std::string_view FaultText(FaultName name);
/// The fault of that name; none for an unknown one.
std::optional<FaultName> FaultFromText(std::string_view text);

class RigFaults {
 public:
  /// Lasts until it is switched off.
  void On(FaultName name);
  void OnFor(FaultName name, int times);
  void OnUntil(FaultName name, Micros end);
  void Off(FaultName name);
  void Clear();

  bool Active(FaultName name, Micros now) const;
  /// Whether the fault strikes now; uses up one of its times.
  bool Strikes(FaultName name, Micros now);

 private:
  struct State {
    bool on = false;
    int times = -1;   // -1: without end
    Micros end = -1;  // -1: without end
  };
  State& Of(FaultName name) { return states_[static_cast<std::size_t>(name)]; }
  const State& Of(FaultName name) const { return states_[static_cast<std::size_t>(name)]; }

  std::array<State, kFaultCount> states_;
};

}  // namespace penlog
