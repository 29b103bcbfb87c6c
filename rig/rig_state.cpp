#include "rig/rig_state.h"

#include <algorithm>
#include <cmath>

#include "platform/clock.h"

namespace penlog {

namespace {

void TakeTruck(RigState& state, const Truck& truck) {
  state.work = truck.Work();
  state.held = truck.Held();
  state.depth = truck.Depth();
  state.target = truck.Target();
  state.stroke = truck.StrokeMetres();
  state.rod_length = truck.Setup().rod_length;
  state.push_speed = truck.Setup().push_speed;
  state.lines = truck.Lines();
  state.dtr = truck.Dtr();
  state.rts = truck.Rts();
  state.counter = truck.Setup().counter;
  state.has_pressure = state.counter == CounterType::Proximity && truck.Setup().pressure_switch;
}

bool HasGeophones(const RigSetup& setup) {
  const auto& channels = setup.cone.channels;
  return std::any_of(channels.begin(), channels.end(),
                     [](const UnitRecord& record) { return record.channel == 8; });
}

}  // namespace

RigState StateOf(const Rig& rig, const ConsoleWatch& watch, const RigNumbers& numbers,
                 const RigNumbers& first) {
  RigState state;
  TakeTruck(state, rig.truck);
  state.ground_name = rig.surroundings.ground_name;
  state.felt = {rig.surroundings.Value(1, 0.0, 0.0), rig.surroundings.Value(2, 0.0, 0.0),
                rig.surroundings.Value(3, 0.0, 0.0)};
  state.shared_port = rig.setup.shared_port;
  state.cone = {rig.Present(RigWire::Cone), watch.ConeOpen(), numbers.cone, first.cone};
  state.truck = {rig.Present(RigWire::Truck), watch.TruckOpen(), numbers.truck, first.truck};
  state.readings_per_second = watch.ReadingsPerSecond(Now());
  state.last_reading = watch.LastReading();
  state.since_command = watch.SinceCommand(Now());
  state.has_geophones = HasGeophones(rig.setup);
  for (int i = 0; i < kFaultCount; ++i) {
    state.faults[static_cast<std::size_t>(i)] = rig.faults.Active(static_cast<FaultName>(i), Now());
  }
  return state;
}

int RodsInTheGround(double depth, double rod_length) {
  // A tip that has come up a hair below a whole rod still has that rod's joint at the surface.
  return depth <= 0.0 ? 0 : static_cast<int>(std::ceil(depth / rod_length - 1e-9));
}

}  // namespace penlog
