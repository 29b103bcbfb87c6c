// The settings cut off at every byte, with one byte flipped, with one value replaced: each load is
// told or good, and leaves settings with which the console can work.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "core/channels.h"
#include "core/data_directory.h"
#include "core/first_run.h"
#include "core/languages.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/settings_check.h"
#include "core/settings_file.h"
#include "support/boxes.h"
#include "support/state.h"

namespace penlog {
namespace {

constexpr const char* kSetup = "System Setup Values.txt";

struct SetupWorld : ClearedWorld {
  SetupWorld() {
    session.DataDirectory = "/data";
    for (int channel = 1; channel <= kChannels; ++channel) {
      channels.ChannelPresent(channel) = kTrue;
      channels.UnitCount(channel) = 2;
    }
    disk.Put("/data/AvailableLanguages.txt", "2\r\n\"English\"\r\n\"Deutsch\"\r\n");
  }
  void Load(const std::string& text) {
    disk.Put(DataPath(kSetup), text);
    LoadLanguages();
    LoadSystemSetup();
    CheckSettings();
    LoadWordTable();
    DeriveSettings();
    RewriteUpgradedSetup();
  }
  BoxAnswerer boxes;
};

void ExpectUsable(const std::string& what) {
  EXPECT_GT(settings.DepthStep, 0.0f) << what;
  EXPECT_GT(settings.DepthResolution, 0.0f) << what;
  EXPECT_GE(settings.DepthStepCounts, 1) << what;
  EXPECT_GE(settings.PictureStepCounts, 1) << what;
  EXPECT_GE(settings.Language, 0) << what;
  EXPECT_LT(settings.Language, settings.LanguageCount) << what;
  for (const int port : {settings.ConeSerialPort, settings.TruckInterfaceSerialPort,
                         settings.ASCIIOutSerialPort, settings.VideoOverlaySerialPort}) {
    EXPECT_TRUE(port >= 0 && port <= 255) << what;
  }
  for (int channel = 1; channel <= kChannels; ++channel) {
    const int unit = channels.ChannelUnits(channel);
    EXPECT_TRUE(unit >= 0 && unit <= channels.UnitCount(channel)) << what;
  }
}

TEST(OddSettings, CutOffAtAnyByteAreUsable) {
  const std::string whole(FirstRunContent(kSetup));
  ASSERT_GT(whole.size(), 180U);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    SetupWorld world;
    world.Load(whole.substr(0, size));
    ExpectUsable("cut off at " + std::to_string(size));
    // Only what stood behind the last digit can be missing without a word.
    const bool silent = world.boxes.texts.empty();
    EXPECT_TRUE(!silent || size + 2 >= whole.size()) << "cut off at " << size << " and not told";
  }
}

TEST(OddSettings, WithFlippedBitsAreUsable) {
  const std::string whole(FirstRunContent(kSetup));
  std::mt19937 random(5);
  for (int run = 0; run < 400; ++run) {
    std::string text = whole;
    for (int flip = 0; flip < 1 + run % 3; ++flip) {
      text[random() % text.size()] ^= static_cast<char>(1U << (random() % 8));
    }
    SetupWorld world;
    world.Load(text);
    ExpectUsable("flipped in run " + std::to_string(run));
  }
}

TEST(OddSettings, WithAnyValueReplacedAreUsable) {
  const std::string whole(FirstRunContent(kSetup));
  for (int line = 1; line <= 62; ++line) {
    for (const char* value : {"-1", "32767", "-32768", "70000", "1e38", "-1e38", "1e-38", "0",
                              "2.5", "\"\"", "x", "\"a\" b", ",,,", "255", "256"}) {
      std::size_t at = 0;
      for (int i = 1; i < line; ++i) at = whole.find('\n', at) + 1;
      std::string text = whole;
      text.replace(at, text.find('\r', at) - at, value);
      SetupWorld world;
      world.Load(text);
      ExpectUsable("line " + std::to_string(line) + " " + value);
    }
  }
}

TEST(OddSettings, ADamagedFileStaysAsItIsUntilItIsSavedOverAndThenBesideIt) {
  SetupWorld world;
  const std::string damaged = std::string(FirstRunContent(kSetup)).substr(0, 60) + "\x01garbage";
  world.Load(damaged);
  EXPECT_EQ(world.disk.Files().at(DataPath(kSetup)), damaged);
  SaveSystemSetup();
  EXPECT_EQ(world.disk.Files().at(DataPath("System Setup Values (damaged).txt")), damaged);
}

}  // namespace
}  // namespace penlog
