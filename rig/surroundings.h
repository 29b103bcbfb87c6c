// What surrounds the cone: the value that each channel's sensor would show in engineering units,
// from the ground at the sensor's own depth, from the inclination, the temperature, or set by hand.
#pragma once

#include <functional>
#include <map>
#include <string>

#include "rig/ground.h"

namespace penlog {

/// Where the tip is, m below the surface. Nothing above `start` loads the cone: there the hole is
/// open.
struct TipPlace {
  double depth = 0.0;
  double start = 0.0;
  double deepest = 0.0;
};

class Surroundings {
 public:
  /// Value of `channel` (1 to 30) for a sensor `distance` m above the tip: kPa for tip, sleeve and
  /// pore pressure, degrees for 6, 7 and 14, V for 8 and 9; a slow wave over depth, as a fraction
  /// of `full_scale`, for the rest.
  double Value(int channel, double distance, double full_scale) const;

  /// Holds a channel at a value until it is freed.
  void Set(int channel, double value) { fixed_[channel] = value; }
  void Free(int channel) { fixed_.erase(channel); }

  /// Another ground from now on; `name` is what it is called.
  void Lay(Ground new_ground, std::string name);

  Ground ground;
  std::string ground_name = "layered";
  int grounds_laid = 0;  ///< so far, the first one not counted
  std::function<TipPlace()> tip;
  double temperature = 12.0;  ///< deg C
  double tilt_x = 0.4;        ///< deg at the surface; both grow a little with depth
  double tilt_y = -0.3;

 private:
  GroundValues Felt(double distance) const;

  std::map<int, double> fixed_;
};

/// Part of the load that acts on a tip that stands `lifted` m above the bottom of its hole: all at
/// the bottom, none from 5 mm on.
double LoadPart(double lifted);

}  // namespace penlog
