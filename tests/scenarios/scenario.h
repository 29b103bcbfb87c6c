// A scenario: an operator script played on the console and its simulated rig in virtual time.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "operator/run_hash.h"
#include "operator/virtual_session.h"
#include "rig/rig_setups.h"

namespace penlog {

/// Lines of "System Setup Values.txt", from 1.
namespace setting {
constexpr int kCompanyName = 19;
constexpr int kDepthResolution = 20;
constexpr int kDepthStep = 21;
constexpr int kDepthCounterType = 23;
constexpr int kPressureSwitchPresent = 24;
constexpr int kDepthFormat = 25;
constexpr int kDepthUnits = 26;
constexpr int kQuitsActive = 30;
constexpr int kConeSerialPort = 41;
constexpr int kTruckInterfaceSerialPort = 42;
constexpr int kDiscoverAddOnModules = 54;
constexpr int kASCIIOutSerialPort = 55;
constexpr int kVideoOverlaySerialPort = 56;
constexpr int kLumenProbePresent = 22;
constexpr int kDepthSignificantDigits = 62;
}  // namespace setting

struct ScenarioSetup {
  std::string rig = "dcs";
  std::uint32_t seed = 1;
  WallTime start = {2026, 6, 15, 9, 30, 0, 0};
  /// Lines of "System Setup Values.txt" that differ from a first run's. The ports are 3 and 4, or
  /// both 3 where the rig shares the cone's port.
  std::map<int, std::string> settings;
  /// The data directory stays empty: the console lays down its first-run files itself.
  bool first_run = false;
  std::function<void(RigSetup&)> change_rig;
};

class Scenario {
 public:
  explicit Scenario(const ScenarioSetup& setup = {});
  /// After a failure tells the seed and the hash of the run.
  ~Scenario();

  /// Plays the script; a script that isn't played to its end fails the test.
  void Play(const std::string& script);
  /// The same with `tests/scenarios/NAME.txt`.
  void PlayFile(const std::string& name);
  /// Plays without judging how it ends.
  SessionResult TryPlay(const std::string& title, const std::string& script);

  /// `rig test WORD` in a script runs `act` at that moment.
  void At(const std::string& word, std::function<void()> act) { acts_[word] = std::move(act); }

  /// A file of the disk in memory; one that is missing fails the test.
  std::string File(const std::string& path) const;
  std::string DataFile(const std::string& name) const;
  bool Has(const std::string& path) const { return session.disk.Files().contains(path); }
  std::uint64_t Hash() const { return hash_; }

  const std::uint32_t seed;
  VirtualSession session;
  Rig& rig = session.rig;
  MemoryDisk& disk = session.disk;

 private:
  PlayerHands Hands();

  std::map<std::string, std::function<void()>> acts_;
  std::uint64_t hash_ = 0;
};

/// From the start to a recording console: "/soundings/S1.cpt".
std::string ScriptToRecording();
/// From the start to the console waiting for a baseline.
std::string ScriptToMain();
/// From a recording console to the end: stop, no final baseline, no new start.
std::string ScriptToEnd();
/// From the first screen of a later start on the same disk to the recording of a sounding S2; `box`
/// answers what the start asks.
std::string ScriptAgain(const std::string& box);

/// The rig's setup by name, with its seed.
RigSetup SeededRig(const std::string& name, std::uint32_t seed);

std::vector<std::string> LinesOf(const std::string& text);

}  // namespace penlog
