// An operator without sense at a rig with every fault: random actions on the console in virtual
// time, random orders to the rig, a disk and a clock that play tricks. Repeats from its seed.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "attacks/hostile_disk.h"
#include "attacks/monkey_watch.h"
#include "forms/operator_actions.h"
#include "operator/virtual_session.h"
#include "platform/wire_end.h"

namespace penlog {

class Monkey {
 public:
  explicit Monkey(std::uint32_t seed);
  ~Monkey();
  Monkey(const Monkey&) = delete;
  Monkey& operator=(const Monkey&) = delete;

  /// Starts the program again and again until that much virtual time has passed.
  void Live(Micros time);

  bool Good() const { return watch_.Good(); }
  /// Seed, what went wrong, and the last actions before the first fault.
  std::string Report() const;
  const MonkeyWatch& Watch() const { return watch_; }
  int Lives() const { return lives_; }

 private:
  std::uint32_t Pick(std::uint32_t below) { return static_cast<std::uint32_t>(random_() % below); }
  bool Chance(std::uint32_t one_in) { return Pick(one_in) == 0; }
  const char* PickWord(const std::vector<const char*>& words);
  void Note(const std::string& what);

  void LiveOnce(Micros until);
  void PostStep();
  void Step();

  // The operator.
  void ActSensibly();
  void ActOnMain();
  void SetUpSounding();
  void AnswerFrontBox();
  void Do(const std::string& name, ActionKind kind = ActionKind::Click,
          const std::string& text = {}, int number = 0);
  void ActOnAnything();
  void Post(OperatorAction action);

  // The world.
  void PushOn();
  void OrderRig();
  void TroubleDisk();
  void TroubleClock();
  void TroubleLines();
  void TroubleWire();
  void FlapLines(int flips);
  void Chatter();
  void HealLater();

  std::mt19937 random_;
  VirtualSession session_;
  HostileDisk disk_;
  MonkeyWatch watch_;
  WireEnd* chatter_ = nullptr;  ///< a port behind which nothing sensible sits
  bool healthy_ = true;
  bool power_lost_ = false;
  Micros until_ = 0;
  int lives_ = 0;
  int names_ = 0;
  std::vector<std::string> notes_;
};

}  // namespace penlog
