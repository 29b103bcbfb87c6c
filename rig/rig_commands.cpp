// The control language of the rig: one line, one order. `Rig::Command` stands here, so that the
// rig itself knows nothing of texts.
#include <array>
#include <optional>
#include <vector>

#include "platform/clock.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"
#include "rig/command_words.h"
#include "rig/ground_files.h"
#include "rig/rig.h"

namespace penlog {

namespace {

struct Order {
  Rig& rig;
  Words words;  ///< behind the verb
  std::string& reply;
};

struct Verb {
  std::string_view name;
  std::string_view usage;  ///< behind the name
  std::string_view meaning;
  void (*run)(Order& order);
};

RigWire WireWord(const Order& order, std::size_t index) {
  const std::string word = index < order.words.size() ? order.words[index] : "";
  if (word == "cone") return RigWire::Cone;
  if (word == "truck") return RigWire::Truck;
  throw BadWords{"\"cone\" or \"truck\" is missing"};
}

void RunPush(Order& order) {
  order.rig.truck.Push(NumberWord(order.words, 0, 0.0001, 200.0));
}

void RunStop(Order& order) {
  order.rig.truck.Stop();
}

void RunRodBreak(Order& order) {
  order.rig.truck.RodBreak();
}

void RunLift(Order& order) {
  order.rig.truck.Lift(NumberWord(order.words, 0, 0.0001, 200.0));
}

void RunHold(Order& order) {
  const int steps = WholeWord(order.words, 0, 1, 10000);
  const int replies = WholeWord(order.words, 1, 1, 1000);
  const bool told = order.words.size() > 2;
  const double step = told ? NumberWord(order.words, 2, 0.001, 1.0) : order.rig.setup.depth_step;
  order.rig.truck.Hold(steps, replies, step);
}

void RunAt(Order& order) {
  if (order.rig.truck.Busy()) throw BadWords{"the rods are moving"};
  const double tip = NumberWord(order.words, 0, 0.0, 200.0);
  const bool told = order.words.size() > 1;
  order.rig.truck.PlaceTip(tip, told ? NumberWord(order.words, 1, 0.0, tip) : tip);
}

void RunSpeed(Order& order) {
  order.rig.truck.SetPushSpeed(NumberWord(order.words, 0, 0.01, 500.0) / 100.0);
}

void RunClamp(Order& order) {
  order.rig.truck.SetClamp(OnOffWord(order.words, 0));
}

void RunPressure(Order& order) {
  if (!order.rig.truck.SetPressure(OnOffWord(order.words, 0))) {
    throw BadWords{"this truck has no pressure switch"};
  }
}

/// Faults that are an act and not a state. False for the others.
bool RunActFault(Order& order, FaultName name) {
  const std::size_t count = order.words.size();
  Rig& rig = order.rig;
  if (name == FaultName::EdgeBurst) {
    rig.truck.Chatter(count > 1 ? WholeWord(order.words, 1, 1, 1000000) : 10);
    return true;
  }
  if (name == FaultName::Unplugged) {
    const RigWire which = WireWord(order, 1);
    rig.Plug(which, false);
    if (const auto away = SecondsWord(order.words, 2)) {
      PostCall(Now() + *away, &rig, [&rig, which] { rig.Plug(which, true); });
    }
    return true;
  }
  if (name == FaultName::Replugged) {
    const RigWire which = WireWord(order, 1);
    const int number = WholeWord(order.words, 2, 1, 255);
    const Micros away = SecondsWord(order.words, 3).value_or(kSecond);
    if (!rig.Replug(which, number, away)) throw BadWords{"these ports have no numbers"};
    return true;
  }
  return false;
}

void RunFault(Order& order) {
  const auto name = order.words.empty() ? std::nullopt : FaultFromText(order.words[0]);
  if (!name) throw BadWords{"no such fault"};
  if (RunActFault(order, *name)) return;
  RigFaults& faults = order.rig.faults;
  const bool once = *name == FaultName::LostSelection || *name == FaultName::EdgeLost;
  const std::string how = order.words.size() > 1 ? order.words[1] : (once ? "1" : "on");
  if (how == "on") {
    faults.On(*name);
  } else if (how == "off") {
    faults.Off(*name);
  } else if (const auto length = SecondsWord(order.words, 1)) {
    faults.OnUntil(*name, Now() + *length);
  } else {
    faults.OnFor(*name, order.words.size() > 1 ? WholeWord(order.words, 1, 1, 1000000) : 1);
  }
}

void RunClear(Order& order) {
  order.rig.faults.Clear();
  order.rig.Plug(RigWire::Cone, true);
  order.rig.Plug(RigWire::Truck, true);
}

void RunUnplug(Order& order) {
  order.rig.Plug(WireWord(order, 0), false);
}

void RunPlug(Order& order) {
  order.rig.Plug(WireWord(order, 0), true);
}

void RunReplug(Order& order) {
  const RigWire which = WireWord(order, 0);
  const int number = WholeWord(order.words, 1, 1, 255);
  const Micros away = SecondsWord(order.words, 2).value_or(kSecond);
  if (!order.rig.Replug(which, number, away)) throw BadWords{"these ports have no numbers"};
}

void RunGround(Order& order) {
  if (order.words.empty()) throw BadWords{"the file is missing"};
  const std::string& name = order.words[0];
  const bool layered = name == "layered";
  order.rig.surroundings.Lay(layered ? UsualGround() : LoadGround(name), name);
}

void RunTemperature(Order& order) {
  order.rig.surroundings.temperature = NumberWord(order.words, 0, 0.1, 99.0);
}

void RunTilt(Order& order) {
  const double x = NumberWord(order.words, 0, -45.0, 45.0);
  order.rig.surroundings.tilt_y = NumberWord(order.words, 1, -45.0, 45.0);
  order.rig.surroundings.tilt_x = x;
}

void RunSet(Order& order) {
  const int channel = WholeWord(order.words, 0, 1, 30);
  order.rig.surroundings.Set(channel, NumberWord(order.words, 1, -1e6, 1e6));
}

void RunFree(Order& order) {
  order.rig.surroundings.Free(WholeWord(order.words, 0, 1, 30));
}

void RunShift(Order& order) {
  const int channel = WholeWord(order.words, 0, 1, 30);
  const double volts = NumberWord(order.words, 1, -5.0, 5.0);
  order.rig.cone.ShiftZero(channel, volts);
  for (const auto& [number, module] : order.rig.modules) module->ShiftZero(channel, volts);
}

void RunStrike(Order& order) {
  if (!order.rig.Strike()) throw BadWords{"no cone is armed, or DTR is not raised"};
}

void RunStatus(Order& order) {
  const Truck& truck = order.rig.truck;
  order.reply = "depth " + Format(truck.Depth(), "0.000");
  order.reply += truck.Busy() ? " moving" : " standing";
  order.reply += truck.Lines().dsr ? " clamped" : " open";
  if (truck.Rts()) order.reply += " stopped-by-console";
  order.reply +=
      " pushed " + PlainNumber(static_cast<long>(order.rig.cone.Memory().DistancePushed()));
}

constexpr std::array<Verb, 23> kVerbs = {{
    {"push", "METRES", "pushes on, with a rod break at each end of a stroke", RunPush},
    {"stop", "", "everything stands where it is", RunStop},
    {"rod-break", "", "rebound, clamp open, a rod is added, clamp closed", RunRodBreak},
    {"lift", "METRES", "draws the rods up", RunLift},
    {"hold", "STEPS READINGS [METRES]", "depth steps, each held for so many readings", RunHold},
    {"at", "METRES [FROM]", "the tip stands there in an open hole, or in one pushed from FROM on",
     RunAt},
    {"speed", "CM_PER_S", "of the push; 2 at the start", RunSpeed},
    {"clamp", "on|off", "closes or opens the clamp", RunClamp},
    {"pressure", "on|off", "the pressure switch", RunPressure},
    {"fault", "NAME [on|off|TIMES|SECONDSs]",
     "silent break-only garbled half-reply lost-selection frozen edge-lost; edge-burst [PAIRS]; "
     "unplugged cone|truck [SECONDSs]; replugged cone|truck NUMBER [SECONDSs]",
     RunFault},
    {"clear", "", "no fault any more, all adapters plugged", RunClear},
    {"unplug", "cone|truck", "the adapter is pulled", RunUnplug},
    {"plug", "cone|truck", "and plugged again", RunPlug},
    {"replug", "cone|truck NUMBER [SECONDSs]", "pulled, and back under another number", RunReplug},
    {"ground", "FILE|layered", "a sounding in GEF or CSV, or the usual ground", RunGround},
    {"temperature", "DEGREES", "of the ground", RunTemperature},
    {"tilt", "DEGREES_X DEGREES_Y", "of the cone at the surface", RunTilt},
    {"set", "CHANNEL VALUE", "holds a channel at a value, in its engineering unit", RunSet},
    {"free", "CHANNEL", "and lets it follow the ground again", RunFree},
    {"shift", "CHANNEL VOLTS", "drift of a zero", RunShift},
    {"strike", "", "the hammer of the seismic test", RunStrike},
    {"status", "", "answers depth, motion, clamp, distance pushed in the cone's memory", RunStatus},
    {"help", "", "answers these lines", [](Order& order) { order.reply = RigUsage(); }},
}};

std::string Refusal(const Verb& verb, const BadWords& bad) {
  std::string text(verb.name);
  text.append(": ").append(bad.text).append(" (").append(verb.name);
  if (!verb.usage.empty()) text.append(" ").append(verb.usage);
  return text.append(")");
}

}  // namespace

std::string RigUsage() {
  std::string text;
  for (const auto& verb : kVerbs) {
    std::string line(verb.name);
    line += " ";
    line += verb.usage;
    line.resize(std::max<std::size_t>(line.size() + 2, 34), ' ');
    text += line;
    text += verb.meaning;
    text += "\n";
  }
  return text;
}

bool Rig::Command(const std::string& words, std::string& reply) {
  reply.clear();
  Words all = SplitWords(words);
  if (all.empty()) return true;
  const std::string name = all.front();
  all.erase(all.begin());
  for (const auto& verb : kVerbs) {
    if (verb.name != name) continue;
    Order order{*this, std::move(all), reply};
    try {
      log.Add({Now(), RigLogKind::Control, 0, truck.Depth(), 0, words});
      verb.run(order);
      return true;
    } catch (const BadWords& bad) {
      reply = Refusal(verb, bad);
    } catch (const RuntimeFault& fault) {
      reply = name + ": " + fault.what();
    }
    return false;
  }
  reply = "no such word: \"" + name + "\" (help lists them)";
  return false;
}

}  // namespace penlog
