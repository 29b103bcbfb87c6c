// What the hydraulics and the crew do, as lists of plain steps: a stroke, a rod break, a lift, a
// step with a hold. Pure: positions and times are filled in when the truck runs the steps.
#pragma once

#include <string>
#include <vector>

#include "rig/depth_counter.h"

namespace penlog {

struct TruckSetup {
  CounterType counter = CounterType::Encoder;
  int direction = 0;             ///< of the encoder; 1: its contacts are swapped
  double resolution = 0.005;     ///< m of a counted step
  bool pressure_switch = false;  ///< only beside a proximity counter
  double start_depth = 0.0;      ///< m: depth of the tip at the start, in an open hole
  double push_speed = 0.02;      ///< m/s
  double lift_speed = 0.10;      ///< m/s
  double return_speed = 0.25;    ///< m/s: the head goes up to take the next rod
  double rod_length = 1.0;       ///< m: a stroke; rounded to whole steps
  double rebound = 0.005;        ///< m: what the rods come up at a rod break; whole steps too
  double rod_change = 8.0;       ///< s that the crew needs to add a rod
};

/// What a step is part of.
enum class TruckWork { Standing, Push, RodBreak, Lift, Hold };

struct PlanStep {
  enum class Kind {
    Travel,    ///< the counter moves by `counter`, the tip by `tip`
    Wait,      ///< for `seconds`
    Clamp,     ///< `on`: closed
    Pressure,  ///< `on`: the switch shows pressure
    Hold,      ///< until `replies` readings were taken and sent since the step began
    Tell,      ///< `text` into the log
  };
  Kind kind = Kind::Wait;
  TruckWork work = TruckWork::Standing;
  Nanometres counter = 0;  ///< down is positive
  Nanometres tip = 0;
  double speed = 0.0;       ///< m/s of the longer of the two ways
  bool hydraulic = false;   ///< the push, which the console's stop output halts
  bool new_stroke = false;  ///< the head's stroke begins anew where this ends
  double seconds = 0.0;
  bool on = false;
  int replies = 0;
  std::string text;
};

using Plan = std::vector<PlanStep>;

Nanometres ToNanometres(double metres);
/// Rounded to whole steps of the counter.
Nanometres WholeSteps(const TruckSetup& setup, double metres);

/// Clamp closed, pressure on, down by `way`.
Plan PushPlan(const TruckSetup& setup, Nanometres way);

/// Pressure off; the rods come up by the rebound while the clamp still holds them; the clamp
/// opens and the head goes up to the beginning of its stroke, `stroke` above; the crew adds a rod;
/// the clamp closes. The counter sees all of it.
Plan RodBreakPlan(const TruckSetup& setup, Nanometres stroke);

/// Up by `way` with the rods clamped and no pressure.
Plan LiftPlan(const TruckSetup& setup, Nanometres way);

/// Down by exactly `way` (a depth step), where the tip stands for `replies` readings before the
/// counter passes its last step, as rods creep over a contact, and for two more after it. So the
/// row that this step makes due is taken from readings of one place.
Plan HoldPlan(const TruckSetup& setup, Nanometres way, int replies);

}  // namespace penlog
