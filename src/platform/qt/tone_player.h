// Sounds tones beside the program.
#pragma once

namespace penlog {

/// Sounds a tone after those that still sound, and returns at once. Opening a sound device may
/// take long or fail: a thread of its own does it, which lives only while there are tones, and
/// knows nothing but them. More than `kTonesWaiting` tones are not kept. Silent without a device,
/// or when built without sound.
void PlayTone(int frequency_hz, int length_ms);

constexpr int kTonesWaiting = 8;

/// Tones that wait or sound.
int TonesPlaying();

}  // namespace penlog
