// Time as the program sees it. It changes only inside a yield: between two yields every reading
// of the clock gives the same time.
#pragma once

#include <optional>
#include <string>

#include "platform/event_queue.h"

namespace penlog {

/// Local time of day and date; `millisecond` belongs to the same instant.
struct WallTime {
  int year = 2000;
  int month = 1;  ///< 1 to 12
  int day = 1;    ///< 1 to 31
  int hour = 0;
  int minute = 0;
  int second = 0;
  int millisecond = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;
  /// Time since the start of the program, as of the last yield.
  virtual Micros Now() const = 0;
  /// Local date and time of the same instant.
  virtual WallTime Wall() const = 0;
  /// Takes in what happened outside (sockets, ports, windows, watcher threads) and the time.
  /// Called by the yields alone.
  virtual void Collect() = 0;
  /// Sleeps until `time` or until something happens outside; without a time only the latter.
  /// A virtual clock moves to `time` at once. Called by `WaitYield` alone.
  virtual void SleepUntil(std::optional<Micros> time) = 0;
  /// When a timer due at `due` really fires: a virtual clock may add jitter.
  virtual Micros TimerTime(Micros due) { return due; }
  /// True for virtual time: nothing may then wait for the outside world.
  virtual bool IsVirtual() const { return false; }
  /// Told of each event that is handed out: a virtual clock watches for a standstill.
  virtual void Handed(const Event&) {}
};

/// The clock in use; one must have been given by `UseClock`.
Clock& TheClock();
void UseClock(Clock* clock);

/// Shorthand for TheClock().Now().
Micros Now();

/// "yyyy-mm-dd hh:mm:ss".
std::string DateTimeText(const WallTime& wall);
/// Seconds since local midnight, with the fraction.
double SecondsSinceMidnight(const WallTime& wall);

}  // namespace penlog
