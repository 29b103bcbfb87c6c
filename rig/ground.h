// The ground as the cone feels it over depth: tip resistance, sleeve friction and pore pressure
// behind the tip, in kPa, from layers or from a real sounding. Linear between two depths; above the
// first nothing loads the cone (the hole is open there), below the last its values go on.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace penlog {

/// One line of a sounding; a value that was not measured is missing. Depth in m, the rest in kPa.
struct GroundSample {
  double depth = 0.0;
  std::optional<double> qc;
  std::optional<double> fs;
  std::optional<double> u2;
};

/// A layer from `top` (m) down to the next one; MPa, as profiles are written.
struct GroundLayer {
  double top = 0.0;
  double qc_mpa = 0.0;
  double fs_mpa = 0.0;
  double u2_mpa = 0.0;
};

struct GroundValues {
  double qc = 0.0;  ///< kPa
  double fs = 0.0;  ///< kPa
  double u2 = 0.0;  ///< kPa
};

class Ground {
 public:
  Ground() = default;
  /// Samples in order of depth; one that isn't deeper than the one before is left out.
  explicit Ground(const std::vector<GroundSample>& samples);

  GroundValues At(double depth) const;
  /// Depths of the first and the last tip resistance, m; 0 without any.
  double Top() const { return qc_.empty() ? 0.0 : qc_.front().first; }
  double Deepest() const { return qc_.empty() ? 0.0 : qc_.back().first; }

 private:
  using Series = std::vector<std::pair<double, double>>;
  static double Interpolate(const Series& series, double depth);

  Series qc_;
  Series fs_;
  Series u2_;
};

/// Layers that pass into each other over the last 5 cm above the next one's top.
Ground LayeredGround(const std::vector<GroundLayer>& layers);

/// A usual profile of 40 m: made ground, clay, silt, sand with a hydrostatic pressure from 1.5 m
/// on, disturbed a little by depth so that no two rows are equal.
Ground UsualGround();

}  // namespace penlog
