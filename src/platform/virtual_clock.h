// Virtual time: no thread, no sleep, no wall clock. Time moves only in `WaitYield`, from event to
// event, so an hour runs in a second and each run repeats from its seed.
#pragma once

#include <cstdint>
#include <random>
#include <string>

#include "platform/clock.h"

namespace penlog {

class VirtualClock : public Clock {
 public:
  /// Starts at `start`, any date and time of day.
  explicit VirtualClock(WallTime start = {2026, 6, 15, 9, 30, 0, 0}, std::uint32_t seed = 1);

  Micros Now() const override { return now_; }
  WallTime Wall() const override;
  void Collect() override {}
  /// Ends the program after a standstill, see `StandstillReport`.
  void SleepUntil(std::optional<Micros> time) override;
  Micros TimerTime(Micros due) override;
  bool IsVirtual() const override { return true; }
  void Handed(const Event& event) override;

  /// Steps the wall clock (as a time server does); the program's own time goes on evenly.
  void StepWall(Micros by) { wall_offset_ += by; }
  /// Each timer tick comes up to `most` late, drawn from the seed.
  void SetJitter(Micros most) { jitter_ = most; }
  /// Repeating ticks alone for this long, and nothing else to come, end the run; 30 minutes
  /// unless set.
  void SetStandstillLimit(Micros limit) { standstill_limit_ = limit; }
  /// Empty, or what the program waited for when nothing but ticks happened any more.
  const std::string& StandstillReport() const { return standstill_report_; }

 private:
  void EndStandstill(const std::string& what_happened);

  Micros now_ = 0;
  Micros wall_start_;  // microseconds since 1970-01-01, local
  Micros wall_offset_ = 0;
  Micros jitter_ = 0;
  Micros last_progress_ = 0;
  Micros standstill_limit_ = Micros{30} * 60 * kSecond;
  std::string standstill_report_;
  std::mt19937 random_;
};

}  // namespace penlog
