#include "rig/ground_profile.h"

#include <algorithm>
#include <cmath>

namespace penlog {

namespace {

constexpr double kPage = 5.0;        // m between two turns
constexpr double kAir = 0.5;         // m above a page's first depth
constexpr double kSampleWay = 0.05;  // m
constexpr double kThinnest = 0.2;    // m
constexpr double kNothing = 10.0;    // kPa of tip: no ground

}  // namespace

double ProfileTop(double depth) {
  // A tip that stands on the border belongs to the page above: it has just been pushed there.
  const double page = std::max(0.0, std::ceil(depth / kPage - 1e-9) - 1.0);
  return page * kPage - kAir;
}

double ProfileRow(double depth, double top, int height) {
  return (depth - top) / kProfileSpan * height;
}

std::string SoilWord(const GroundValues& values) {
  if (values.qc < kNothing || values.fs <= 0.0) return "";
  const double ratio = 100.0 * values.fs / values.qc;
  if (ratio >= 6.0 && values.qc < 1500.0) return "peat";
  if (ratio >= 2.8 && values.qc < 2500.0) return "clay";
  return values.qc >= 4000.0 && ratio < 2.0 ? "sand" : "silt";
}

std::vector<SoilBand> SoilBands(const Ground& ground, double top, double bottom) {
  std::vector<SoilBand> bands;
  const int count = static_cast<int>(std::lround((bottom - top) / kSampleWay));
  for (int i = 0; i < count; ++i) {
    const double depth = top + i * kSampleWay;
    const std::string word = SoilWord(ground.At(depth + kSampleWay / 2));
    if (bands.empty() || bands.back().word != word) {
      bands.push_back({depth, depth, word});
    }
    bands.back().bottom = depth + kSampleWay;
  }
  std::vector<SoilBand> merged;
  for (const SoilBand& band : bands) {
    const bool thin = band.bottom - band.top < kThinnest - 1e-9;
    if (!merged.empty() && (thin || merged.back().word == band.word)) {
      merged.back().bottom = band.bottom;
    } else {
      merged.push_back(band);
    }
  }
  return merged;
}

double FullScale(double value) {
  double power = 0.01;
  for (;; power *= 10.0) {
    for (const double part : {1.0, 1.5, 2.0, 3.0, 4.0, 5.0, 6.0, 8.0}) {
      if (part * power >= value - 1e-9) return part * power;
    }
  }
}

ProfileScales ScalesOf(const Ground& ground, double top, double bottom) {
  GroundValues most;
  for (double depth = top; depth <= bottom; depth += kSampleWay) {
    const GroundValues values = ground.At(depth);
    most.qc = std::max(most.qc, values.qc);
    most.fs = std::max(most.fs, values.fs);
    most.u2 = std::max(most.u2, values.u2);
  }
  return {FullScale(most.qc / 1000.0), FullScale(most.fs / 1000.0), FullScale(most.u2 / 1000.0)};
}

}  // namespace penlog
