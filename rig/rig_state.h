// The state of the rig as a person at its window sees it: plain values, taken at one instant.
#pragma once

#include <array>
#include <string>

#include "rig/console_watch.h"
#include "rig/rig.h"

namespace penlog {

/// COM numbers of the rig's ports, as the console's list has them.
struct RigNumbers {
  int cone = 3;
  int truck = 4;

  int Of(RigWire which) const { return which == RigWire::Cone ? cone : truck; }
};

/// One wire at one instant.
struct WireState {
  bool present = false;  ///< the adapter is plugged
  bool open = false;     ///< the console has opened the port
  int number = 0;        ///< COM number now
  int first_number = 0;  ///< and at the start
};

struct RigState {
  // The truck.
  TruckWork work = TruckWork::Standing;
  bool held = false;         ///< by the console's stop output, while a push is under way
  double depth = 0.0;        ///< m, of the tip
  double target = 0.0;       ///< m: where the push under way ends
  double stroke = 0.0;       ///< m gone of the rod's length
  double rod_length = 1.0;   ///< m
  double push_speed = 0.02;  ///< m/s
  ModemLines lines;
  bool dtr = false;
  bool rts = false;
  CounterType counter = CounterType::Encoder;
  bool has_pressure = false;

  // The ground.
  std::string ground_name;
  GroundValues felt;  ///< kPa, at the tip

  // The wires and the console.
  bool shared_port = false;  ///< the truck's lines are on the cone's port
  WireState cone;
  WireState truck;
  int readings_per_second = 0;
  std::string last_reading;    ///< in V, as it was sent
  Micros since_command = -1;   ///< since the console asked the cone for something; -1: never
  bool has_geophones = false;  ///< a cone for the seismic test

  std::array<bool, kFaultCount> faults = {};  ///< by `FaultName`: on now

  const WireState& Wire(RigWire which) const {
    return which == RigWire::Cone || shared_port ? cone : truck;
  }
};

/// `first` are the numbers at the start, `numbers` those of now.
RigState StateOf(const Rig& rig, const ConsoleWatch& watch, const RigNumbers& numbers,
                 const RigNumbers& first);

/// Rods that stand in the ground when the tip is at `depth` m.
int RodsInTheGround(double depth, double rod_length);

}  // namespace penlog
