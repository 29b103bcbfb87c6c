// The picture of the ground as numbers: the stretch of depth that is shown, the bands of soil, the
// scales of the curves.
#pragma once

#include <string>
#include <vector>

#include "rig/ground.h"

namespace penlog {

/// Metres of depth in the picture.
constexpr double kProfileSpan = 6.0;

/// Depth at the upper edge of the picture for a tip at `depth`: it stands still for 5 m of push and
/// then turns a page, so that what is drawn once serves for minutes. Negative: air above the
/// ground.
double ProfileTop(double depth);

/// Pixel row of `depth` in a picture of that height whose upper edge is at `top`.
double ProfileRow(double depth, double top, int height);

/// A usual name for what the cone meets, from tip and friction ratio alone: "sand", "silt", "clay",
/// "peat"; empty where nothing is known.
std::string SoilWord(const GroundValues& values);

struct SoilBand {
  double top = 0.0;     ///< m
  double bottom = 0.0;  ///< m
  std::string word;
};

/// The bands between two depths, from above; one thinner than 0.2 m belongs to the one above it.
std::vector<SoilBand> SoilBands(const Ground& ground, double top, double bottom);

/// The lowest of 1, 1.5, 2, 3, 4, 5, 6, 8 times a power of ten that is not below `value`, at least
/// 0.01.
double FullScale(double value);

struct ProfileScales {
  double qc = 1.0;  ///< MPa at the right edge
  double fs = 0.1;  ///< MPa
  double u2 = 0.1;  ///< MPa
};

/// Scales that show all of the ground between two depths.
ProfileScales ScalesOf(const Ground& ground, double top, double bottom);

}  // namespace penlog
