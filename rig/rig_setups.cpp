#include "rig/rig_setups.h"

#include <array>

#include "platform/runtime_fault.h"

namespace penlog {

namespace {

// Full scales in kPa and degrees, outputs in V, distances in mm, areas in mm2.
const UnitRecord kTip = {1, 'T', 100000.0, 4.75, 0.25, 0, 0, 0.0, 1000};
const UnitRecord kSleeve = {2, 'F', 1000.0, 4.5, 0.3, 100, 1, 0.15, 15000};
const UnitRecord kPoreU2 = {3, 'P', 2500.0, 4.6, 0.5, 40, 0, 0.0, 0};
const UnitRecord kTiltX = {6, 'I', 15.0, 4.5, 2.5, 60, 0, 0.0, 0};
const UnitRecord kTiltY = {7, 'J', 15.0, 4.5, 2.5, 80, 0, 0.0, 0};
const UnitRecord kGeophoneX = {8, 'K', 5.0, 5.0, 0.0, 300, 0, 0.0, 0};
const UnitRecord kGeophoneY = {9, 'L', 5.0, 5.0, 0.0, 300, 0, 0.0, 0};
const UnitRecord kResistivity = {10, 'R', 200.0, 4.8, 0.2, 60, 0, 0.0, 0};
const UnitRecord kFluorescence = {11, 'V', 100.0, 4.9, 0.1, 80, 0, 0.0, 0};
// 1000 * x ^ -0.4 degrees: 25 degrees at a little over 10 kilohm.
const UnitRecord kTemperature = {14, 'E', 1.0, 1000.0, -0.4, 60, 0, 0.0, 0};
const UnitRecord kHydrophone = {23, 'P', 50.0, 4.5, 0.5, 100, 0, 0.0, 0};

UnitSetup Cone(const char* id, double firmware, std::vector<UnitRecord> channels) {
  UnitSetup unit;
  unit.header.id = id;
  unit.header.distance_pushed = 1234;
  unit.firmware = firmware;
  unit.channels = std::move(channels);
  // Zeros have drifted since the calibration, so that a baseline differs from the memory.
  unit.zero_shift[1] = 0.0031;
  unit.zero_shift[2] = -0.0012;
  unit.zero_shift[3] = 0.0007;
  return unit;
}

UnitSetup Module(const char* id, std::vector<UnitRecord> channels) {
  UnitSetup unit;
  unit.header.id = id;
  unit.header.field1 = "01";
  unit.firmware = 1.10;
  unit.channels = std::move(channels);
  return unit;
}

RigSetup Dcs() {
  RigSetup setup;
  setup.cone = Cone("DCS0417", 3.20, {kTip, kSleeve, kPoreU2, kTiltX, kTiltY});
  setup.ground = UsualGround();
  return setup;
}

RigSetup DcsSwapped() {
  RigSetup setup = Dcs();
  setup.truck.direction = 1;
  return setup;
}

RigSetup DcsShared() {
  RigSetup setup = Dcs();
  setup.shared_port = true;
  return setup;
}

RigSetup DcsModules() {
  RigSetup setup = Dcs();
  setup.modules[2] = Module("MHP0012", {kHydrophone});
  setup.modules[5] = Module("MRF0007", {kResistivity, kFluorescence});
  return setup;
}

RigSetup DcsPlain() {
  RigSetup setup = Dcs();
  UnitRecord sleeve = kSleeve;
  sleeve.distance_mm = 0;
  sleeve.subtract = 0;
  sleeve.subtract_factor = 0.0;
  setup.cone = Cone("DCS0101", 3.20, {kTip, sleeve});
  return setup;
}

RigSetup Proximity() {
  RigSetup setup = Dcs();
  setup.truck.counter = CounterType::Proximity;
  setup.truck.resolution = 0.02;
  setup.truck.pressure_switch = true;
  setup.truck.rebound = 0.02;
  return setup;
}

RigSetup ProximityShared() {
  RigSetup setup = Proximity();
  setup.shared_port = true;
  return setup;
}

std::vector<UnitRecord> SeismicChannels() {
  return {kTip, kSleeve, kPoreU2, kTiltX, kTiltY, kGeophoneX, kGeophoneY, kTemperature};
}

RigSetup Dse() {
  RigSetup setup = Dcs();
  setup.cone = Cone("DSE0203", 3.20, SeismicChannels());
  return setup;
}

RigSetup Dde() {
  RigSetup setup = Dcs();
  setup.cone = Cone("DDE0044", 3.10, SeismicChannels());
  return setup;
}

RigSetup Dpg() {
  RigSetup setup = Dcs();
  setup.cone = Cone("DPG0009", 3.00, {kTip, kSleeve, kPoreU2, kTiltX, kGeophoneX, kGeophoneY});
  return setup;
}

struct NamedSetup {
  const char* name;
  RigSetup (*make)();
};

constexpr std::array<NamedSetup, 10> kSetups = {{{"dcs", Dcs},
                                                 {"dcs-swapped", DcsSwapped},
                                                 {"dcs-shared", DcsShared},
                                                 {"dcs-modules", DcsModules},
                                                 {"dcs-plain", DcsPlain},
                                                 {"proximity", Proximity},
                                                 {"prox-shared", ProximityShared},
                                                 {"dse", Dse},
                                                 {"dde", Dde},
                                                 {"dpg", Dpg}}};

}  // namespace

RigSetup MakeRigSetup(const std::string& name) {
  std::string names;
  for (const auto& row : kSetups) {
    if (row.name == name) {
      RigSetup setup = row.make();
      setup.name = name;
      return setup;
    }
    names += std::string(names.empty() ? "" : ", ") + row.name;
  }
  throw RuntimeFault("no rig \"" + name + "\"; there are " + names);
}

std::vector<std::string> RigSetupNames() {
  std::vector<std::string> names;
  names.reserve(kSetups.size());
  for (const auto& row : kSetups) names.emplace_back(row.name);
  return names;
}

}  // namespace penlog
