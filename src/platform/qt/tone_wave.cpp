#include "platform/qt/tone_wave.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace penlog {

namespace {

constexpr double kLoudness = 0.5 * 32767;
constexpr double kFadeSeconds = 0.003;

}  // namespace

std::vector<std::int16_t> ToneSamples(int frequency_hz, int length_ms, int rate_hz) {
  if (frequency_hz < 1 || length_ms < 1 || rate_hz < 1) return {};
  const std::int64_t length = std::min(length_ms, kLongestToneMs);
  const auto count = static_cast<std::size_t>(length * rate_hz / 1000);
  std::vector<std::int16_t> samples(count);
  if (frequency_hz >= rate_hz / 2) return samples;
  const double turn = 2 * std::numbers::pi * frequency_hz / rate_hz;
  const double fade = std::max(1.0, kFadeSeconds * rate_hz);
  for (std::size_t i = 0; i < count; ++i) {
    const double from_end = static_cast<double>(std::min(i, count - 1 - i));
    const double level = kLoudness * std::min(1.0, from_end / fade);
    samples[i] = static_cast<std::int16_t>(level * std::sin(turn * static_cast<double>(i)));
  }
  return samples;
}

}  // namespace penlog
