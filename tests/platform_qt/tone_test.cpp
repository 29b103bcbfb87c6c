#include <gtest/gtest.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <algorithm>
#include <cstdlib>
#include <vector>

#include "platform/qt/tone_player.h"
#include "platform/qt/tone_wave.h"

namespace penlog {
namespace {

constexpr int kRate = 44'100;

int RisingZeroes(const std::vector<std::int16_t>& samples) {
  int count = 0;
  for (std::size_t i = 1; i < samples.size(); ++i) {
    count += samples[i - 1] < 0 && samples[i] >= 0 ? 1 : 0;
  }
  return count;
}

int Loudest(const std::vector<std::int16_t>& samples) {
  int loudest = 0;
  for (const int sample : samples) loudest = std::max(loudest, std::abs(sample));
  return loudest;
}

TEST(ToneWave, HasTheLengthAndTheFrequency) {
  struct Row {
    int frequency_hz;
    int length_ms;
  };
  for (const Row row : {Row{700, 100}, Row{250, 50}, Row{1000, 1000}, Row{40, 500}}) {
    const auto samples = ToneSamples(row.frequency_hz, row.length_ms, kRate);
    EXPECT_EQ(samples.size(), static_cast<std::size_t>(row.length_ms * kRate / 1000));
    EXPECT_NEAR(RisingZeroes(samples), row.frequency_hz * row.length_ms / 1000, 1)
        << row.frequency_hz;
    EXPECT_NEAR(Loudest(samples), 16383, 200) << row.frequency_hz;
  }
}

TEST(ToneWave, FadesInAndOut) {
  const auto samples = ToneSamples(1000, 100, kRate);
  EXPECT_LT(std::abs(samples.front()), 100);
  EXPECT_LT(std::abs(samples.back()), 200);
}

TEST(ToneWave, BadTonesAreEmptyOrSilent) {
  EXPECT_TRUE(ToneSamples(0, 100, kRate).empty());
  EXPECT_TRUE(ToneSamples(-5, 100, kRate).empty());
  EXPECT_TRUE(ToneSamples(700, 0, kRate).empty());
  EXPECT_TRUE(ToneSamples(700, -1, kRate).empty());
  EXPECT_EQ(Loudest(ToneSamples(kRate / 2, 100, kRate)), 0);
  EXPECT_EQ(ToneSamples(700, 1'000'000'000, kRate).size(),
            static_cast<std::size_t>(kLongestToneMs / 1000 * kRate));
}

TEST(TonePlayer, ReturnsAtOnceAndKeepsNoLongTail) {
  QElapsedTimer since;
  since.start();
  for (int i = 0; i < 100; ++i) PlayTone(700, 20);
  EXPECT_LT(since.elapsed(), 100);
  EXPECT_LE(TonesPlaying(), kTonesWaiting);
  while (TonesPlaying() > 0 && since.elapsed() < 2500) usleep(10'000);
  EXPECT_EQ(TonesPlaying(), 0) << "with or without a device the tones come to an end";
}

}  // namespace
}  // namespace penlog
