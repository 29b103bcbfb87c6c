#include "rig/seismic_recorder.h"

#include <algorithm>
#include <cmath>

namespace penlog {

namespace {

constexpr double kDivisorMs = 1.6275e-3;  // ms of one count of the divisor
constexpr double kShearVelocity = 180.0;  // m/s
constexpr double kSourceOffset = 1.0;     // m from the rods to the hammer
constexpr int kGroups = 42;

/// Noise of a few counts that depends on the place alone, so that a record reads the same twice.
int PlaceNoise(int channel, int index) {
  std::uint32_t mixed = static_cast<std::uint32_t>(index * 2 + channel) * 2654435761U;
  mixed ^= mixed >> 15;
  return static_cast<int>(mixed % 7) - 3;
}

void AppendGroup(std::string& bytes, int first, int second) {
  bytes += static_cast<char>(first & 255);
  bytes += static_cast<char>(((first >> 8) << 4) | (second >> 8));
  bytes += static_cast<char>(second & 255);
}

}  // namespace

void SeismicRecorder::Arm(std::string_view letters, int samples, int divisor) {
  armed_ = true;
  channels_ = letters.size() > 1 ? 2 : 1;
  samples_ = samples;
  divisor_ = divisor;
  next_ = 0;
}

double SeismicRecorder::SampleMs() const {
  return kDivisorMs * divisor_ * channels_;
}

Micros SeismicRecorder::Strike(double depth) {
  if (!armed_) return 0;
  armed_ = false;
  next_ = 0;
  arrival_ms_ = 1000.0 * std::hypot(depth, kSourceOffset) / kShearVelocity;
  return static_cast<Micros>(std::llround(samples_ * SampleMs() * 1000.0));
}

int SeismicRecorder::Sample(int channel, int index) const {
  const double since = index * SampleMs() - arrival_ms_;
  const double side = channel == 0 ? 1.0 : 0.6;
  const double wave =
      since <= 0.0 ? 0.0 : 900.0 * side * std::exp(-since / 40.0) * std::sin(0.4 * since);
  const double counts = 2048.0 + wave + offset_[channel] * 4096.0 / 5.0;
  return std::clamp(static_cast<int>(std::lround(counts)) + PlaceNoise(channel, index), 0, 4095);
}

std::string SeismicRecorder::Block() {
  std::string bytes;
  for (int group = 0; group < kGroups; ++group) {
    if (channels_ == 2) {
      AppendGroup(bytes, Sample(1, next_), Sample(0, next_));
      next_ += 1;
    } else {
      AppendGroup(bytes, Sample(0, next_), Sample(0, next_ + 1));
      next_ += 2;
    }
  }
  return bytes + "\r\n";
}

}  // namespace penlog
