// What the load makes of files that a failing disk or a hasty editor left: it may complain, it may
// not stop, and the console must be able to work with what it took.
#include <gtest/gtest.h>

#include <random>

#include "core/first_run_data.h"
#include "core/reset_state.h"
#include "core/start_up_load.h"
#include "tests/core/settings_world.h"

namespace penlog {
namespace {

constexpr const char* kDirectory = "/allusers/PENLOG(KQ)/";

/// One blow: bytes overwritten, cut, doubled, or a line replaced.
std::string Damaged(std::string text, std::mt19937& random) {
  const auto at = [&] { return text.empty() ? 0 : random() % text.size(); };
  static const char* const kValues[] = {"-1", "99999", "0", "1e38", "nan", "\"", "", ",,", "2.5"};
  switch (random() % 4) {
    case 0:
      for (int i = 0; i < 8 && !text.empty(); ++i) text[at()] = static_cast<char>(random() % 256);
      return text;
    case 1:
      return text.substr(0, at());
    case 2:
      return text.insert(at(), text.substr(at(), 40));
    default:
      break;
  }
  const std::size_t start = text.rfind('\n', at());
  if (start == std::string::npos) return text;
  const std::size_t end = std::min(text.find('\r', start), text.size());
  return text.replace(start + 1, end - start - 1, kValues[random() % std::size(kValues)]);
}

void ExpectTheConsoleCanWork() {
  EXPECT_GT(settings.DepthResolution, 0);
  EXPECT_GT(settings.DepthStep, 0);
  EXPECT_GE(settings.DepthStepCounts, 1);
  EXPECT_GE(settings.PictureStepCounts, 1);
  for (const int port : {settings.ConeSerialPort, settings.TruckInterfaceSerialPort,
                         settings.ASCIIOutSerialPort, settings.VideoOverlaySerialPort}) {
    EXPECT_GE(port, 0);
    EXPECT_LE(port, 255);
  }
  EXPECT_GE(settings.LanguageCount, 1);
  EXPECT_GE(settings.Language, 0);
  EXPECT_LT(settings.Language, settings.LanguageCount);
  for (int channel = 1; channel <= kChannels; ++channel) {
    if (channel == 19 || channel == 20 || channels.ChannelPresent(channel) != kTrue) continue;
    EXPECT_GE(channels.ChannelUnits(channel), 1) << channel;
    EXPECT_LE(channels.ChannelUnits(channel), channels.UnitCount(channel)) << channel;
    EXPECT_NE(channels.UnitFactor(channels.ChannelUnits(channel), channel), 0) << channel;
    EXPECT_LE(channels.SubtractChannel(channel), kChannels) << channel;
  }
}

TEST(DamagedFiles, NeverStopTheLoad) {
  std::mt19937 random(20260615);
  const auto& files = FirstRunFiles();
  int told = 0;
  for (int round = 0; round < 300; ++round) {
    SettingsWorld world;
    ResetState();
    for (const FirstRunFile& file : files) {
      world.disk.Put(kDirectory + std::string(file.name), std::string(file.content));
    }
    const bool settings_file = round % 2 == 0;
    const std::string name = settings_file ? std::string("System Setup Values.txt")
                                           : std::string(files[random() % files.size()].name);
    world.disk.Put(kDirectory + name, Damaged(world.disk.Read(kDirectory + name), random));
    ASSERT_NO_THROW(StartUp_Load()) << name << ", round " << round;
    told += world.boxes.texts.empty() ? 0 : 1;
    SCOPED_TRACE(name + ", round " + std::to_string(round));
    ExpectTheConsoleCanWork();
    ResetState();
  }
  EXPECT_GT(told, 100) << "most of the damage can be seen";
}

}  // namespace
}  // namespace penlog
