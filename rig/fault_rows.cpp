#include "rig/fault_rows.h"

#include <array>

#include "platform/numbers.h"

namespace penlog {

namespace {

constexpr int kFirstFreeNumber = 5;

constexpr std::array<std::string_view, kFaultCount> kHints = {
    "The cone hears and does not answer. The console tells it and asks again until it answers.",
    "The cone answers nothing until the console has sent a break. The console does so by itself.",
    "Noise: one character in four of an answer is another. The console drops such answers.",
    "Answers stop after half of their bytes. The console waits, drops them and asks again.",
    "The cone forgets its channels once. The console selects them anew.",
    "The cone gives the same numbers for ever. The values on the console stand still.",
    "The adapter is pulled: the port is gone. The console tells the lost link until it is back.",
    "The adapter comes back under another COM number. Find it with the console's port reset.",
    "The depth contact chatters once: 20 flips in 4 ms. See whether the depth on the console "
    "moves.",
    "The next edge of the depth counter is not told. The console's depth falls behind."};

bool IsOfAWire(FaultName name) {
  return name == FaultName::Unplugged || name == FaultName::Replugged;
}

bool StrikesOnce(FaultName name) {
  return name == FaultName::LostSelection || name == FaultName::EdgeLost;
}

std::string WireWord(const FaultRow& row) {
  if (!row.wire) return "";
  return *row.wire == RigWire::Cone ? " cone" : " truck";
}

bool IsTaken(const RigState& state, int number) {
  return number == state.cone.number || number == state.truck.number ||
         number == state.cone.first_number || number == state.truck.first_number;
}

}  // namespace

std::vector<FaultRow> FaultRows(bool shared_port) {
  std::vector<FaultRow> rows;
  for (int i = 0; i < kFaultCount; ++i) {
    const auto name = static_cast<FaultName>(i);
    if (!IsOfAWire(name)) {
      rows.push_back({name, std::nullopt});
      continue;
    }
    rows.push_back({name, RigWire::Cone});
    if (!shared_port) rows.push_back({name, RigWire::Truck});
  }
  return rows;
}

std::string FaultRowText(const FaultRow& row) {
  return std::string(FaultText(row.name)) + WireWord(row);
}

std::string FaultRowHint(const FaultRow& row) {
  return std::string(kHints[static_cast<std::size_t>(row.name)]);
}

bool FaultIsOn(const FaultRow& row, const RigState& state) {
  if (!row.wire) return state.faults[static_cast<std::size_t>(row.name)];
  const WireState& wire = state.Wire(*row.wire);
  return row.name == FaultName::Unplugged ? !wire.present : wire.number != wire.first_number;
}

bool FaultCanSwitch(const FaultRow& row, const RigState& state) {
  return row.name != FaultName::Replugged || state.Wire(*row.wire).present;
}

std::string FaultOrder(const FaultRow& row, const RigState& state) {
  const bool on = FaultIsOn(row, state);
  const std::string name(FaultText(row.name));
  if (row.name == FaultName::Unplugged) {
    return on ? "plug" + WireWord(row) : "fault " + name + WireWord(row);
  }
  if (row.name == FaultName::Replugged) {
    const int number = on ? state.Wire(*row.wire).first_number : FreeNumber(state);
    return "fault " + name + WireWord(row) + " " + PlainNumber(number);
  }
  if (row.name == FaultName::EdgeBurst) return "fault " + name;
  if (on) return "fault " + name + " off";
  return "fault " + name + (StrikesOnce(row.name) ? "" : " on");
}

int FreeNumber(const RigState& state) {
  int number = kFirstFreeNumber;
  while (IsTaken(state, number)) ++number;
  return number;
}

}  // namespace penlog
