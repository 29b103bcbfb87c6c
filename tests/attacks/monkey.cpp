#include "attacks/monkey.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <map>

#include "app/console.h"
#include "core/first_run_data.h"
#include "core/reset_state.h"
#include "forms/main_form.h"
#include "platform/boxes.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/yield.h"
#include "rig/rig_setups.h"

namespace penlog {

namespace {

constexpr int kChatterPort = 9;
constexpr Micros kMinute = 60 * kSecond;

RigSetup RigFor(std::uint32_t seed) {
  const auto names = RigSetupNames();
  RigSetup setup = MakeRigSetup(names[seed % names.size()]);
  setup.seed = seed;
  return setup;
}

VirtualSessionSetup SessionFor(std::uint32_t seed) {
  VirtualSessionSetup setup;
  setup.seed = seed;
  // Some runs come to midnight soon.
  if (seed % 3 == 1) setup.start = {2026, 12, 31, 23, 50, 0, 0};
  return setup;
}

/// Lines of the settings that make a run another one. A third of the runs begins without settings.
std::map<int, std::string> SettingsFor(std::uint32_t seed, const RigSetup& rig) {
  const bool proximity = rig.truck.counter == CounterType::Proximity;
  return {{20, proximity ? "0.02" : "0.005"},
          {22, seed % 7 == 4 ? "1" : "0"},
          {23, proximity ? "1" : "0"},
          {24, rig.truck.pressure_switch ? "1" : "0"},
          {25, seed % 2 == 0 ? "1" : "0"},
          {26, seed % 5 == 0 ? "1" : "0"},
          {29, "1"},
          {32, seed % 4 == 1 ? "1" : "0"},
          {33, std::to_string(seed % 3)},
          {35, rig.truck.direction == 1 ? "1" : "0"},
          {41, "3"},
          {42, rig.shared_port ? "3" : "4"},
          {54, rig.modules.empty() ? "0" : "1"},
          {55, seed % 6 == 5 ? "9" : "0"},
          {62, seed % 8 < 4 ? "2" : "3"}};
}

std::string WithLines(std::string_view text, const std::map<int, std::string>& lines) {
  std::string changed;
  for (int number = 1; !text.empty(); ++number) {
    const auto end = std::min(text.find('\n'), text.size() - 1);
    const auto found = lines.find(number);
    changed += found == lines.end() ? std::string(text.substr(0, end + 1)) : found->second + "\r\n";
    text.remove_prefix(end + 1);
  }
  return changed;
}

void LayDown(MemoryDisk& disk, std::uint32_t seed, const RigSetup& rig) {
  for (const FirstRunFile& file : FirstRunFiles()) {
    const bool is_setup = file.name == "System Setup Values.txt";
    disk.Put(
        JoinPath(VirtualSession::DataDirectory(), file.name),
        is_setup ? WithLines(file.content, SettingsFor(seed, rig)) : std::string(file.content));
  }
}

}  // namespace

Monkey::Monkey(std::uint32_t seed)
    : random_(seed), session_(RigFor(seed), SessionFor(seed)), disk_(seed + 1), watch_(disk_) {
  UseDisk(&disk_);
  disk_.PutFolder("/soundings");
  if (seed % 3 != 0) LayDown(disk_, seed, session_.rig.setup);
  if (seed % 4 == 2) session_.clock.SetJitter(30 * kMillisecond);
  session_.host.comma_decimal = seed % 5 == 3;
  chatter_ = &session_.ports.Wire(kChatterPort);
}

Monkey::~Monkey() {
  DropCalls(this);
  UseDisk(&session_.disk);
}

const char* Monkey::PickWord(const std::vector<const char*>& words) {
  return words[Pick(static_cast<std::uint32_t>(words.size()))];
}

void Monkey::Note(const std::string& what) {
  if (!watch_.Good()) return;
  if (std::getenv("PENLOG_MONKEY_TRACE") != nullptr) {
    std::cout << Now() / kMillisecond << " ms: " << what << "\n";
  }
  if (notes_.size() > 60) notes_.erase(notes_.begin());
  notes_.push_back(std::to_string(Now() / kMillisecond) + " ms: " + what);
}

std::string Monkey::Report() const {
  std::string text;
  for (const auto& fault : watch_.Faults()) text += fault + "\n";
  text += "after:\n";
  for (const auto& note : notes_) text += "  " + note + "\n";
  return text;
}

void Monkey::Live(Micros time) {
  const Micros until = Now() + time;
  while (Now() < until && watch_.Good()) LiveOnce(until);
}

void Monkey::LiveOnce(Micros until) {
  ++lives_;
  until_ = until;
  power_lost_ = false;
  ForgetEnd();
  ResetBoxes();
  ResetActions();
  ResetState();
  watch_.BeginLife();
  Note("the program starts");
  PostStep();
  RunConsole();
  DropCalls(this);
  watch_.EndLife(power_lost_);
}

void Monkey::PostStep() {
  // Mostly as quick as an operator, at times all at once, at times away for minutes.
  static constexpr std::array<Micros, 6> kGaps = {
      kMillisecond, 40 * kMillisecond, 400 * kMillisecond, kSecond, 2 * kSecond, 6 * kSecond};
  const Micros gap = Chance(200) ? 10 * kMinute : 1 + kGaps[Pick(kGaps.size())] * (1 + Pick(8)) / 4;
  PostCall(
      Now() + gap, this, [this] { Step(); }, EventKind::RepeatingCall);
}

void Monkey::Step() {
  watch_.Look();
  PostStep();
  if (Now() > until_ || !watch_.Good()) return RequestEnd();
  const std::uint32_t dice = Pick(1000);
  if (dice < 500) {
    ActSensibly();
  } else if (dice < 740) {
    ActOnAnything();
  } else if (dice < 930) {
    OrderRig();
  } else if (dice < 945) {
    TroubleWire();
  } else if (dice < 955) {
    TroubleLines();
  } else if (dice < 985) {
    TroubleDisk();
  } else if (dice < 997) {
    TroubleClock();
  } else if (dice < 998) {
    Note("power lost");
    power_lost_ = true;
    RequestEnd();
  }
}

void Monkey::HealLater() {
  if (Chance(10)) return;  // it stays until something else heals it
  const Micros when = Now() + static_cast<Micros>(1 + Pick(120)) * kSecond;
  PostCall(
      when, this,
      [this] {
        Note("healed");
        std::string reply;
        session_.rig.Command("clear", reply);
        disk_.Trouble(0);
        disk_.SetRoom(-1);
        disk_.SetReadOnly("");
      },
      EventKind::RepeatingCall);
}

}  // namespace penlog
