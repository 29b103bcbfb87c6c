// Real time for a process without windows: the system's monotonic clock, and sleeping in poll().
#pragma once

#include "platform/clock.h"
#include "platform/posix/poll_io.h"

namespace penlog {

class PlainClock : public Clock {
 public:
  PlainClock();

  Micros Now() const override { return now_; }
  WallTime Wall() const override { return wall_; }
  void Collect() override;
  void SleepUntil(std::optional<Micros> time) override;

  /// What the drivers of this process are given by `UseIo`.
  PollIo& Io() { return io_; }

 private:
  void TakeTime();

  PollIo io_;
  Micros start_;
  Micros now_ = 0;
  WallTime wall_;
};

/// The system's monotonic time; only differences mean something.
Micros MonotonicTime();
/// The local date and time of this instant.
WallTime LocalWallTime();

}  // namespace penlog
