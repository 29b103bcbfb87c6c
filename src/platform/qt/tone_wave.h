// The sound of a tone as numbers.
#pragma once

#include <cstdint>
#include <vector>

namespace penlog {

/// A tone of up to this length; a longer one is cut.
constexpr int kLongestToneMs = 10'000;

/// Mono 16-bit samples of a sine, `rate_hz` a second, at half of full scale, faded in and out over
/// 3 ms so that it doesn't click. Empty for a length or a frequency below 1, silent for one of half
/// the rate or above, which the samples can't carry.
std::vector<std::int16_t> ToneSamples(int frequency_hz, int length_ms, int rate_hz);

}  // namespace penlog
