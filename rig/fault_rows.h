// The named faults as switches: which there are on a rig, whether each is on, and the order that
// turns it the other way.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "rig/rig_state.h"

namespace penlog {

struct FaultRow {
  FaultName name = FaultName::Silent;
  std::optional<RigWire> wire;  ///< of a fault that strikes one wire
};

/// All faults, in the order of their names; those of a wire once for each wire of the rig.
std::vector<FaultRow> FaultRows(bool shared_port);

/// "lost-selection", "unplugged truck".
std::string FaultRowText(const FaultRow& row);
/// What it does, and what to look for on the console.
std::string FaultRowHint(const FaultRow& row);
/// An edge burst is over as soon as it has struck and is never on.
bool FaultIsOn(const FaultRow& row, const RigState& state);
/// False while an adapter that is out can't come back under another number.
bool FaultCanSwitch(const FaultRow& row, const RigState& state);
/// The order to the rig (`Rig::Command`) that switches it on or off.
std::string FaultOrder(const FaultRow& row, const RigState& state);

/// The lowest COM number from 5 on that no port of the rig has or had at the start.
int FreeNumber(const RigState& state);

}  // namespace penlog
