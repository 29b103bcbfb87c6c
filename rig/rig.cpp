#include "rig/rig.h"

#include "platform/clock.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"

namespace penlog {

namespace {

const char* WireName(RigWire which) {
  return which == RigWire::Cone ? "cone" : "truck";
}

void Silence(WireEnd* wire) {
  if (wire == nullptr) return;
  wire->OnBytes = nullptr;
  wire->OnBreak = nullptr;
  wire->OnOutputs = nullptr;
  wire->OnOpened = nullptr;
  wire->OnClosed = nullptr;
}

}  // namespace

Rig::Rig(const RigSetup& rig_setup)
    : setup(rig_setup),
      truck(setup.truck, faults, log),
      cone(setup.cone, surroundings, setup.seed),
      line_(faults, log, setup.seed + 100) {
  surroundings.ground = setup.ground;
  surroundings.ground_name = setup.ground_name;
  surroundings.tip = [this] { return truck.Place(); };
  line_.cone = &cone;
  line_.depth = [this] { return truck.Depth(); };
  line_.on_reading_sent = [this](Micros sampled) { truck.TakeReading(sampled); };
  for (const auto& [number, unit] : setup.modules) {
    const auto seed = setup.seed + static_cast<std::uint32_t>(number);
    modules[number] = std::make_unique<SimModule>(number, unit, surroundings, seed);
    line_.modules[number] = modules[number].get();
  }
}

Rig::~Rig() {
  DropCalls(this);
  Silence(cone_wire_);
  Silence(truck_wire_);
}

WireEnd* Rig::WireOf(RigWire which) const {
  return which == RigWire::Cone || setup.shared_port ? cone_wire_ : truck_wire_;
}

void Rig::LogPort(RigWire which, const std::string& what) {
  log.Add({Now(), RigLogKind::Port, 0, truck.Depth(), 0, WireName(which) + (" " + what)});
}

void Rig::Listen(WireEnd& wire, RigWire which) {
  wire.OnOpened = [this, which](const PortSettings& settings) {
    LogPort(which, "opened at " + PlainNumber(settings.baud));
    if (which == RigWire::Cone) line_.TakeSettings(settings);
  };
  wire.OnClosed = [this, which] { LogPort(which, "closed"); };
}

void Rig::ListenForCone(WireEnd& wire) {
  wire.OnBytes = [this](std::string_view bytes) { line_.TakeBytes(bytes); };
  wire.OnBreak = [this](bool on) { line_.TakeBreak(on); };
}

void Rig::ListenForTruck(WireEnd& wire) {
  wire.OnOutputs = [this](bool dtr, bool rts) { truck.TakeOutputs(dtr, rts); };
  truck.Attach(&wire);
}

void Rig::AttachCone(WireEnd& wire) {
  cone_wire_ = &wire;
  line_.wire = &wire;
  Listen(wire, RigWire::Cone);
  ListenForCone(wire);
  if (setup.shared_port) ListenForTruck(wire);
}

void Rig::AttachTruck(WireEnd& wire) {
  if (setup.shared_port) throw RuntimeFault("This rig's truck lines are on the cone's port");
  truck_wire_ = &wire;
  Listen(wire, RigWire::Truck);
  ListenForTruck(wire);
}

bool Rig::Present(RigWire which) const {
  const WireEnd* wire = WireOf(which);
  return wire != nullptr && wire->Present();
}

void Rig::Plug(RigWire which, bool present) {
  WireEnd* wire = WireOf(which);
  if (wire == nullptr || wire->Present() == present) return;
  LogPort(which, present ? "plugged" : "unplugged");
  wire->SetPresent(present);
}

bool Rig::Replug(RigWire which, int number, Micros away) {
  if (!on_renumber || WireOf(which) == nullptr) return false;
  Plug(which, false);
  PostCall(Now() + away, this, [this, which, number] {
    LogPort(which, "gets number " + PlainNumber(number));
    on_renumber(which, number);
    Plug(which, true);
  });
  return true;
}

bool Rig::Strike() {
  if (!truck.Dtr()) return false;
  const Micros length = cone.Strike(truck.Depth());
  if (length == 0) return false;
  line_.SendAt(Now() + length, 0, std::string(kRecordFull));
  return true;
}

}  // namespace penlog
