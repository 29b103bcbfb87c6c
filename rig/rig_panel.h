// What the rig's window says and which orders its buttons give, as plain functions of the state.
#pragma once

#include <string>
#include <vector>

#include "rig/rig_state.h"

namespace penlog {

/// The state in large letters: "PUSHING AT 2 cm/s".
std::string Headline(const RigState& state);

/// A named value: "stroke", "0.62 of 1.00 m".
struct PanelFact {
  std::string name;
  std::string value;
};

/// Stroke, rods, end of the push and the three values that the cone feels; then the ground, the
/// wires, and what the console does.
std::vector<PanelFact> Facts(const RigState& state);

/// One line of the truck's port.
struct PanelLine {
  std::string name;  ///< "DSR  clamp"
  std::string word;  ///< "closed"
  bool on = false;   ///< held, or raised by the console
  bool alarm = false;

  bool operator==(const PanelLine&) const = default;
};

/// Counter, clamp, pressure, stop and trigger of this truck.
std::vector<PanelLine> Lines(const RigState& state);

/// What a newcomer does next, or what he sees now.
std::string Hint(const RigState& state);

enum class PanelButton { Push, Stop, RodBreak, Lift, Clamp, Pressure, Strike };

/// Those that this rig has.
std::vector<PanelButton> PanelButtons(const RigState& state);
std::string ButtonCaption(PanelButton button, const RigState& state);
std::string ButtonHint(PanelButton button);
/// False for a lift with no rod in the ground.
bool ButtonCanPress(PanelButton button, const RigState& state);
/// The order to the rig (`Rig::Command`); `way` in m is used by those that move. A lift ends where
/// the tip leaves the ground.
std::string ButtonOrder(PanelButton button, const RigState& state, double way);

/// The ways that can be chosen, m.
const std::vector<double>& PanelWays();
/// "0.2 m".
std::string WayText(double way);

/// The order that lays the ground of that file.
std::string GroundOrder(const std::string& path);
/// The order that lays the usual ground.
std::string LayeredOrder();

}  // namespace penlog
