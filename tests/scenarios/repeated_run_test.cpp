// One seed, one run: every event with its time, every text of every control and every file are
// the same each time, in this process and in another.
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "scenarios/scenario.h"

namespace penlog {
namespace {

/// With a rod break, two faults of the link, chatter of the counter and a quit.
std::uint64_t HashOfARun(std::uint32_t seed) {
  ScenarioSetup setup;
  setup.seed = seed;
  Scenario scenario(setup);
  scenario.session.clock.SetJitter(2 * kMillisecond);
  scenario.Play(ScriptToRecording() + R"(rig push 1.4
wait 20
rig fault garbled 2
wait 5
rig fault silent 6s
wait 20
rig fault edge-burst 5
expect Main.lblDepth "~^1\.[3-4]" 120
rig tilt 12 0
expect Main.frmQuitWarning visible
press Main.cmdResetQuits
wait 1
rig tilt 0 0
wait 8
release Main.cmdResetQuits
wait 3
)" + ScriptToEnd());
  return scenario.Hash();
}

std::string HashText(std::uint64_t hash) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "hash %016llx", static_cast<unsigned long long>(hash));
  return text.data();
}

/// What another process of this program prints for the seed.
std::string HashOfAnotherProcess() {
  const std::string command = "'" + std::filesystem::read_symlink("/proc/self/exe").string() +
                              "' --gtest_filter=RepeatedRun.PrintsItsHash";
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
  std::string text;
  std::array<char, 256> part{};
  while (pipe && std::fgets(part.data(), part.size(), pipe.get()) != nullptr) text += part.data();
  const auto at = text.find("hash ");
  return at == std::string::npos ? text : text.substr(at, 21);
}

TEST(RepeatedRun, PrintsItsHash) {
  const std::uint64_t hash = HashOfARun(7);
  std::printf("%s\n", HashText(hash).c_str());
  EXPECT_NE(hash, 0U);
}

TEST(RepeatedRun, OfOneSeedIsTheSameTwiceInOneProcess) {
  EXPECT_EQ(HashText(HashOfARun(7)), HashText(HashOfARun(7)));
}

TEST(RepeatedRun, OfOneSeedIsTheSameInAnotherProcess) {
  EXPECT_EQ(HashText(HashOfARun(7)), HashOfAnotherProcess());
}

TEST(RepeatedRun, OfAnotherSeedDiffers) {
  EXPECT_NE(HashOfARun(7), HashOfARun(8));
}

}  // namespace
}  // namespace penlog
