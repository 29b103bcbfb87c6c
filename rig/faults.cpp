#include "rig/faults.h"

namespace penlog {

namespace {

constexpr std::array<std::string_view, kFaultCount> kFaultTexts = {
    "silent", "break-only", "garbled",   "half-reply", "lost-selection",
    "frozen", "unplugged",  "replugged", "edge-burst", "edge-lost"};

}  // namespace

std::string_view FaultText(FaultName name) {
  return kFaultTexts[static_cast<std::size_t>(name)];
}

std::optional<FaultName> FaultFromText(std::string_view text) {
  for (std::size_t i = 0; i < kFaultTexts.size(); ++i) {
    if (kFaultTexts[i] == text) return static_cast<FaultName>(i);
  }
  return std::nullopt;
}

void RigFaults::On(FaultName name) {
  Of(name) = State{true, -1, -1};
}

void RigFaults::OnFor(FaultName name, int times) {
  Of(name) = State{times > 0, times, -1};
}

void RigFaults::OnUntil(FaultName name, Micros end) {
  Of(name) = State{true, -1, end};
}

void RigFaults::Off(FaultName name) {
  Of(name) = State{};
}

void RigFaults::Clear() {
  states_ = {};
}

bool RigFaults::Active(FaultName name, Micros now) const {
  const State& state = Of(name);
  return state.on && (state.end < 0 || now < state.end);
}

bool RigFaults::Strikes(FaultName name, Micros now) {
  if (!Active(name, now)) return false;
  State& state = Of(name);
  if (state.times > 0 && --state.times == 0) state = State{};
  return true;
}

}  // namespace penlog
