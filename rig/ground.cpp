#include "rig/ground.h"

#include <algorithm>
#include <cmath>

namespace penlog {

namespace {

constexpr double kTransition = 0.05;   // m
constexpr double kWaterTable = 1.5;    // m
constexpr double kWaterWeight = 9.81;  // kPa per m
constexpr double kUsualDepth = 40.0;   // m
constexpr double kUsualStep = 0.05;    // m

GroundSample SampleOf(const GroundLayer& layer, double depth) {
  return {depth, layer.qc_mpa * 1000.0, layer.fs_mpa * 1000.0, layer.u2_mpa * 1000.0};
}

GroundLayer LayerAt(double depth) {
  static const std::vector<GroundLayer> layers = {
      {0.0, 2.4, 0.035, 0.0},   {1.2, 0.7, 0.030, 0.05},   {5.0, 1.3, 0.040, 0.18},
      {8.5, 4.5, 0.060, -0.02}, {12.0, 11.0, 0.075, 0.0},  {17.0, 2.1, 0.055, 0.30},
      {22.0, 16.0, 0.11, 0.0},  {30.0, 24.0, 0.16, -0.03}, {kUsualDepth, 24.0, 0.16, 0.0}};
  GroundLayer found = layers.front();
  for (const auto& layer : layers) {
    if (layer.top <= depth) found = layer;
  }
  return found;
}

}  // namespace

Ground::Ground(const std::vector<GroundSample>& samples) {
  const auto add = [](Series& series, double depth, const std::optional<double>& value) {
    if (value && (series.empty() || depth > series.back().first))
      series.emplace_back(depth, *value);
  };
  for (const auto& sample : samples) {
    add(qc_, sample.depth, sample.qc);
    add(fs_, sample.depth, sample.fs);
    add(u2_, sample.depth, sample.u2);
  }
}

double Ground::Interpolate(const Series& series, double depth) {
  if (series.empty() || depth < series.front().first) return 0.0;
  const auto above = [](double value, const auto& point) { return value < point.first; };
  const auto next = std::upper_bound(series.begin(), series.end(), depth, above);
  if (next == series.end()) return series.back().second;
  const auto before = next - 1;
  const double part = (depth - before->first) / (next->first - before->first);
  return before->second + part * (next->second - before->second);
}

GroundValues Ground::At(double depth) const {
  return {Interpolate(qc_, depth), Interpolate(fs_, depth), Interpolate(u2_, depth)};
}

Ground LayeredGround(const std::vector<GroundLayer>& layers) {
  std::vector<GroundSample> samples;
  for (std::size_t i = 0; i < layers.size(); ++i) {
    samples.push_back(SampleOf(layers[i], layers[i].top));
    if (i + 1 == layers.size()) break;
    const double end = layers[i + 1].top - kTransition;
    if (end > layers[i].top) samples.push_back(SampleOf(layers[i], end));
  }
  return Ground(samples);
}

Ground UsualGround() {
  std::vector<GroundSample> samples;
  const int count = static_cast<int>(std::lround(kUsualDepth / kUsualStep));
  for (int i = 0; i <= count; ++i) {
    const double depth = i * kUsualStep;
    const GroundLayer layer = LayerAt(depth);
    const double ripple = 1.0 + 0.06 * std::sin(7.3 * depth) + 0.04 * std::sin(31.0 * depth + 1.0);
    const double water = std::max(0.0, depth - kWaterTable) * kWaterWeight;
    samples.push_back({depth, layer.qc_mpa * 1000.0 * ripple,
                       layer.fs_mpa * 1000.0 * (1.0 + 0.05 * std::sin(11.0 * depth)),
                       water + layer.u2_mpa * 1000.0 * ripple});
  }
  return Ground(samples);
}

}  // namespace penlog
