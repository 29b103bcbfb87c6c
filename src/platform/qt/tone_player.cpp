#include "platform/qt/tone_player.h"

#include <deque>
#include <mutex>
#include <system_error>
#include <thread>

#include "platform/qt/tone_wave.h"

#ifdef PENLOG_HAS_ALSA
#include <alsa/asoundlib.h>
#endif

namespace penlog {

namespace {

constexpr int kRate = 44'100;

struct Tone {
  int frequency_hz;
  int length_ms;
};

struct Tones {
  std::mutex mutex;
  std::deque<Tone> waiting;  // the front one sounds
  bool playing = false;
};

// Never destroyed: the thread may outlive main.
Tones& TheTones() {
  static Tones& tones = *new Tones;
  return tones;
}

#ifdef PENLOG_HAS_ALSA

void SayNothing(const char*, int, const char*, int, const char*, ...) {}

void Sound(const Tone& tone) {
  const auto samples = ToneSamples(tone.frequency_hz, tone.length_ms, kRate);
  snd_lib_error_set_handler(SayNothing);
  snd_pcm_t* device = nullptr;
  if (samples.empty() || snd_pcm_open(&device, "default", SND_PCM_STREAM_PLAYBACK, 0) < 0) return;
  constexpr unsigned kLatencyUs = 50'000;
  if (snd_pcm_set_params(device, SND_PCM_FORMAT_S16, SND_PCM_ACCESS_RW_INTERLEAVED, 1, kRate, 1,
                         kLatencyUs) >= 0) {
    snd_pcm_sframes_t done = 0;
    const auto all = static_cast<snd_pcm_sframes_t>(samples.size());
    while (done < all) {
      const auto count =
          snd_pcm_writei(device, samples.data() + done, static_cast<snd_pcm_uframes_t>(all - done));
      if (count < 0 && snd_pcm_recover(device, static_cast<int>(count), 1) < 0) break;
      if (count > 0) done += count;
    }
    snd_pcm_drain(device);
  }
  snd_pcm_close(device);
}

#else

void Sound(const Tone&) {}

#endif

void PlayWaiting() {
  Tones& tones = TheTones();
  for (;;) {
    Tone tone{};
    {
      const std::lock_guard lock(tones.mutex);
      if (tones.waiting.empty()) {
        tones.playing = false;
        return;
      }
      tone = tones.waiting.front();
    }
    Sound(tone);
    const std::lock_guard lock(tones.mutex);
    tones.waiting.pop_front();
  }
}

}  // namespace

void PlayTone(int frequency_hz, int length_ms) {
  Tones& tones = TheTones();
  const std::lock_guard lock(tones.mutex);
  if (tones.waiting.size() >= kTonesWaiting) return;
  tones.waiting.push_back({frequency_hz, length_ms});
  if (tones.playing) return;
  try {
    std::thread(PlayWaiting).detach();
    tones.playing = true;
  } catch (const std::system_error&) {
    tones.waiting.clear();  // no thread to be had: silence
  }
}

int TonesPlaying() {
  const std::lock_guard lock(TheTones().mutex);
  return static_cast<int>(TheTones().waiting.size());
}

}  // namespace penlog
