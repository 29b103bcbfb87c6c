#include "rig/surroundings.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace penlog {

namespace {

constexpr double kUnloadingWay = 0.005;  // m
constexpr double kGeophoneRest = 2.5;    // V

double SlowWave(int channel, double depth, double full_scale) {
  return full_scale * (0.4 + 0.2 * std::sin(0.9 * depth + channel));
}

}  // namespace

double LoadPart(double lifted) {
  return std::clamp(1.0 - lifted / kUnloadingWay, 0.0, 1.0);
}

void Surroundings::Lay(Ground new_ground, std::string name) {
  ground = std::move(new_ground);
  ground_name = std::move(name);
  ++grounds_laid;
}

GroundValues Surroundings::Felt(double distance) const {
  const TipPlace place = tip ? tip() : TipPlace{};
  const double depth = place.depth - distance;
  if (depth <= place.start) return {};
  GroundValues values = ground.At(depth);
  const double part = LoadPart(place.deepest - place.depth);
  values.qc *= part;
  values.fs *= part;
  return values;
}

double Surroundings::Value(int channel, double distance, double full_scale) const {
  const auto fixed = fixed_.find(channel);
  if (fixed != fixed_.end()) return fixed->second;
  const double depth = tip ? tip().depth : 0.0;
  switch (channel) {
    case 1:
      return Felt(distance).qc;
    case 2:
      return Felt(distance).fs;
    case 3:
      return Felt(distance).u2;
    case 4:
      return 1.2 * Felt(distance).u2;
    case 5:
      return 0.8 * Felt(distance).u2;
    case 6:
      return tilt_x + 0.04 * depth;
    case 7:
      return tilt_y - 0.02 * depth;
    case 8:
    case 9:
      return kGeophoneRest;
    case 14:
      return temperature;
    default:
      return SlowWave(channel, depth, full_scale);
  }
}

}  // namespace penlog
