// A port comes back at any moment of a scan for the cone over seven other ports: the longest way
// until it is found again.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>

#include "platform/clock.h"
#include "platform/numbers.h"
#include "scenarios/scenario.h"

namespace penlog {
namespace {

constexpr double kScan = 16;    // s that a scan over seven ports takes at most
constexpr double kOnePort = 4;  // s that a port takes in it, and more
constexpr double kLimit = 30;

/// Seconds from the return under `number`, `away` seconds after the loss, to the panel that says
/// OK.
double TimeToFindTheCone(double away, int number) {
  Scenario scenario;
  for (int port = 11; port <= 16; ++port) scenario.session.ports.Wire(port);
  Micros back = 0;
  Micros over = 0;
  scenario.At("back", [&] { back = Now(); });
  scenario.At("over", [&] { over = Now(); });
  scenario.Play(ScriptToRecording() + R"(rig push 0.2
wait 2
rig unplug cone
expect frmWarning.frmSerialWarning visible 5
wait )" + PlainNumber(away) +
                "\nrig replug cone " + std::to_string(number) + R"( 0.01s
wait 0.01
rig test back
expect frmWarning.frmSerialConnected visible 60
rig test over
)" + ScriptToEnd());
  return static_cast<double>(over - back) / 1e6;
}

struct ReturnMoments : testing::TestWithParam<int> {};

TEST_P(ReturnMoments, TheConeIsFoundWithin30SecondsWithEightPortsPresent) {
  double longest = 0;
  for (double away = 0.1; away < kScan; away += 0.5) {
    const double time = TimeToFindTheCone(away, GetParam());
    EXPECT_LT(time, kLimit) << "away for " << away << " s";
    longest = std::max(longest, time);
  }
  std::cout << "back as COM" << GetParam() << ": found after " << longest << " s at most\n";
}

/// Seconds from the truck interface's return to its panel, `away` seconds after both were lost.
double TimeToFindTheTruck(double away) {
  Scenario scenario;
  for (int port = 11; port <= 16; ++port) scenario.session.ports.Wire(port);
  Micros back = 0;
  Micros over = 0;
  scenario.At("back", [&] { back = Now(); });
  scenario.At("over", [&] { over = Now(); });
  scenario.Play(ScriptToRecording() + R"(rig push 0.2
wait 2
rig unplug cone
rig unplug truck
expect frmWarning.frmEncoderWarning visible 5
wait )" + PlainNumber(away) +
                R"(
rig plug truck
rig test back
expect frmWarning.frmEncoderConnected visible 60
rig test over
rig plug cone
expect frmWarning.frmSerialConnected visible 60
wait 5
)" + ScriptToEnd());
  return static_cast<double>(over - back) / 1e6;
}

TEST(ReturnOfTheTruckInterface, IsNotLeftUncountedUntilAScanForTheConeIsOver) {
  for (double away = 0.1; away < kScan; away += 1.3) {
    EXPECT_LT(TimeToFindTheTruck(away), kOnePort) << "away for " << away << " s";
  }
}

INSTANTIATE_TEST_SUITE_P(UnderNumber, ReturnMoments, testing::Values(3, 9, 20),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace penlog
