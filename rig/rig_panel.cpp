#include "rig/rig_panel.h"

#include <algorithm>
#include <cmath>

#include "platform/numbers.h"
#include "rig/fault_rows.h"

namespace penlog {

namespace {

constexpr double kLeastLift = 0.001;  // m

std::string SpeedText(double metres_per_second) {
  return PlainNumber(std::round(metres_per_second * 1e4) / 100.0) + " cm/s";
}

std::string Metres(double way) {
  return Format(way, "0.000") + " m";
}

std::string Megapascal(double kpa, std::string_view pattern) {
  return Format(kpa / 1000.0, pattern) + " MPa";
}

std::string StrokeText(const RigState& state) {
  return Format(state.stroke, "0.00") + " of " + Format(state.rod_length, "0.00") + " m";
}

std::string TargetText(const RigState& state) {
  const bool pushes = state.target > state.depth + 1e-9 && state.work != TruckWork::Lift;
  return pushes ? "to " + Metres(state.target) : "none ordered";
}

/// A file without its folder.
std::string GroundText(const std::string& name) {
  const auto slash = name.rfind('/');
  return slash == std::string::npos ? name : name.substr(slash + 1);
}

/// Behind the COM number of a wire.
std::string LinkText(const WireState& wire) {
  if (!wire.present) return "unplugged";
  return wire.open ? "opened by the console" : "not opened by the console";
}

std::string ReadsText(const RigState& state) {
  if (state.readings_per_second > 0) {
    return PlainNumber(state.readings_per_second) + " readings a second";
  }
  if (state.since_command < 0) return "has not asked the cone yet";
  const auto seconds = static_cast<long>(state.since_command / kSecond);
  return seconds < 2 ? "asks the cone" : "silent for " + PlainNumber(seconds) + " s";
}

std::string WireName(const RigState& state, RigWire which) {
  return "COM" + PlainNumber(state.Wire(which).number) + " " + LinkText(state.Wire(which));
}

PanelLine CounterLine(const char* name, bool held) {
  return {name, held ? "held" : "free", held, false};
}

std::string FaultHint(const RigState& state) {
  for (const FaultRow& row : FaultRows(state.shared_port)) {
    if (!FaultIsOn(row, state)) continue;
    return "Fault " + FaultRowText(row) + ". " + FaultRowHint(row);
  }
  return "";
}

std::string WorkHint(const RigState& state) {
  switch (state.work) {
    case TruckWork::Push:
    case TruckWork::Hold:
      return "The depth on the console counts with the cone, a row each depth step. Rods are added "
             "by themselves. Try a fault.";
    case TruckWork::RodBreak:
      return "A rod is added. While the clamp is open the console counts no depth, and its clamp "
             "lamp is hollow.";
    case TruckWork::Lift:
      return "The rods come up. The console takes that as rebound: the depth stays, and counts on "
             "when the cone is down again.";
    case TruckWork::Standing:
      break;
  }
  return "";
}

std::string StandingHint(const RigState& state) {
  const std::string truck = PlainNumber(state.Wire(RigWire::Truck).number);
  if (state.since_command < 0) {
    return "Press START NEW SOUNDING on the console. The cone is on COM" +
           PlainNumber(state.cone.number) + ", the truck interface on COM" + truck + ".";
  }
  if (!state.cone.open) {
    return "Go on on the console. When it asks for the port of the truck interface, choose " +
           truck + ". On its first screen press START NEW SOUNDING.";
  }
  if (state.readings_per_second == 0) {
    return "Go on on the console: it finds the cone, then asks for the sounding and for what to "
           "show.";
  }
  if (!state.lines.dsr) return "The clamp is open: the console counts no depth until it is closed.";
  return "The console reads the cone. Take the baseline there and press START, then PUSH here. At "
         "the end STOP there, LIFT here.";
}

}  // namespace

std::string Headline(const RigState& state) {
  if (state.held) return "HELD BY THE CONSOLE";
  switch (state.work) {
    case TruckWork::Push:
      return "PUSHING AT " + SpeedText(state.push_speed);
    case TruckWork::Hold:
      return "PUSHING STEP BY STEP";
    case TruckWork::RodBreak:
      return "ROD BREAK";
    case TruckWork::Lift:
      return "LIFTING";
    case TruckWork::Standing:
      break;
  }
  return state.rts ? "STANDING, STOP LINE ON" : "STANDING";
}

std::vector<PanelFact> Facts(const RigState& state) {
  std::vector<PanelFact> facts = {
      {"Stroke", StrokeText(state)},
      {"Rods", PlainNumber(RodsInTheGround(state.depth, state.rod_length)) + " in the ground"},
      {"Push", TargetText(state)},
      {"Tip", Megapascal(state.felt.qc, "0.00")},
      {"Sleeve", Megapascal(state.felt.fs, "0.000")},
      {"Pore u2", Megapascal(state.felt.u2, "0.000")},
      {"Ground", GroundText(state.ground_name)},
      {"Cone port", WireName(state, RigWire::Cone)},
      {"Truck port", WireName(state, RigWire::Truck)},
      {"Console", ReadsText(state)},
      {"It reads, V", state.last_reading.empty() ? "nothing yet" : state.last_reading}};
  return facts;
}

std::vector<PanelLine> Lines(const RigState& state) {
  std::vector<PanelLine> lines;
  if (state.counter == CounterType::Encoder) {
    lines.push_back(CounterLine("CD encoder A", state.lines.cd));
    lines.push_back(CounterLine("CTS encoder B", state.lines.cts));
  } else {
    lines.push_back(CounterLine("CD proximity", state.lines.cd));
    if (state.has_pressure) {
      lines.push_back({"CTS pressure", state.lines.cts ? "on" : "off", state.lines.cts, false});
    }
  }
  lines.push_back({"DSR clamp", state.lines.dsr ? "closed" : "open", state.lines.dsr, false});
  lines.push_back({"RTS stop", state.rts ? "STOP" : "clear", state.rts, state.rts});
  lines.push_back({"DTR trigger", state.dtr ? "raised" : "low", state.dtr, false});
  return lines;
}

std::string Hint(const RigState& state) {
  if (state.rts) {
    return "The console's stop line is on and holds the push: a limit was passed. "
           "Override or reset it on the console, and the push goes on.";
  }
  for (const std::string& hint : {FaultHint(state), WorkHint(state)}) {
    if (!hint.empty()) return hint;
  }
  return StandingHint(state);
}

std::vector<PanelButton> PanelButtons(const RigState& state) {
  std::vector<PanelButton> buttons = {PanelButton::Push,  PanelButton::Lift,
                                      PanelButton::Stop,  PanelButton::RodBreak,
                                      PanelButton::Clamp, PanelButton::Pressure};
  if (state.has_geophones) buttons.push_back(PanelButton::Strike);
  return buttons;
}

std::string ButtonCaption(PanelButton button, const RigState& state) {
  switch (button) {
    case PanelButton::Push:
      return "PUSH";
    case PanelButton::Stop:
      return "STOP";
    case PanelButton::RodBreak:
      return "ROD BREAK";
    case PanelButton::Lift:
      return "LIFT";
    case PanelButton::Clamp:
      return state.lines.dsr ? "OPEN CLAMP" : "CLOSE CLAMP";
    case PanelButton::Pressure:
      return state.has_pressure && state.lines.cts ? "PRESSURE OFF" : "PRESSURE ON";
    case PanelButton::Strike:
      return "STRIKE";
  }
  return "";
}

std::string ButtonHint(PanelButton button) {
  switch (button) {
    case PanelButton::Push:
      return "pushes on by the way beside it, rod after rod";
    case PanelButton::Stop:
      return "everything stands where it is";
    case PanelButton::RodBreak:
      return "pressure off, clamp open, a rod is added, clamp closed";
    case PanelButton::Lift:
      return "draws the rods up by the way beside it, at most out of the ground";
    case PanelButton::Clamp:
      return "the clamp alone: the console counts depth while it is closed";
    case PanelButton::Pressure:
      return "the pressure switch alone; a truck with an encoder has none";
    case PanelButton::Strike:
      return "the hammer of the seismic test";
  }
  return "";
}

std::string ButtonOrder(PanelButton button, const RigState& state, double way) {
  switch (button) {
    case PanelButton::Push:
      return "push " + PlainNumber(way);
    case PanelButton::Stop:
      return "stop";
    case PanelButton::RodBreak:
      return "rod-break";
    case PanelButton::Lift:
      return "lift " + PlainNumber(std::round(std::min(way, state.depth) * 1e4) / 1e4);
    case PanelButton::Clamp:
      return state.lines.dsr ? "clamp off" : "clamp on";
    case PanelButton::Pressure:
      return state.has_pressure && state.lines.cts ? "pressure off" : "pressure on";
    case PanelButton::Strike:
      return "strike";
  }
  return "";
}

bool ButtonCanPress(PanelButton button, const RigState& state) {
  return button != PanelButton::Lift || state.depth >= kLeastLift;
}

const std::vector<double>& PanelWays() {
  static const std::vector<double> ways = {0.1, 0.5, 1.0, 2.0, 5.0, 10.0, 30.0};
  return ways;
}

std::string WayText(double way) {
  return PlainNumber(way) + " m";
}

std::string GroundOrder(const std::string& path) {
  // The language has no word for a quote inside quotes.
  const bool quotable = path.find('"') == std::string::npos;
  return quotable ? "ground \"" + path + "\"" : "ground " + path;
}

std::string LayeredOrder() {
  return "ground layered";
}

}  // namespace penlog
