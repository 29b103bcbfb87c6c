// A repeating timer: its ticks come through the queue. Late ticks are not made up for: after a
// stall one tick comes, and the next an interval later.
#pragma once

#include <functional>
#include <string>

#include "platform/event_queue.h"

namespace penlog {

class Timer : public EventTarget {
 public:
  Timer(std::string name, int interval_ms) : EventTarget(std::move(name)), interval_(interval_ms) {}

  /// First tick one interval from now; starting a running timer leaves it as it is. With an
  /// interval of 0 no tick comes.
  void Start();
  void Stop();
  bool Running() const { return running_; }
  int Interval() const { return interval_; }
  /// Milliseconds; takes effect at the next start.
  void SetInterval(int interval_ms) { interval_ = interval_ms; }

  std::function<void()> OnTick;

  void Handle(const Event& event) override;

 private:
  void PostNext();

  int interval_;
  bool running_ = false;
  Micros due_ = 0;
};

}  // namespace penlog
