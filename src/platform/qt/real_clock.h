// Real time on the windows' event loop: the yields pump it, and nothing ever calls exec().
#pragma once

#include <QTimer>
#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>

#include "platform/clock.h"
#include "platform/qt/qt_io.h"

namespace penlog {

/// Needs a QCoreApplication. What the event loop delivers while it is pumped (widgets, sockets)
/// only fills the queue.
class RealClock : public Clock {
 public:
  RealClock();
  RealClock(const RealClock&) = delete;
  RealClock& operator=(const RealClock&) = delete;
  ~RealClock() override;

  Micros Now() const override { return now_; }
  WallTime Wall() const override;
  void Collect() override;
  void SleepUntil(std::optional<Micros> time) override;
  void Handed(const Event& event) override;

  IoWatcher& io() { return io_; }

  /// Called within a collect, at most 30 times a second, and only when an event was handed out
  /// since the last time: the views are brought up to date.
  std::function<void()> on_frame;
  /// The next collect calls `on_frame` whatever happened, as soon as 1/30 s allows.
  void AskForFrame() { frame_wanted_ = true; }

  /// Bounded reads of the network: called at each collect after the event loop was pumped. They
  /// take turns in going first, among themselves and with the descriptors, so that none starves
  /// another of the queue's room.
  int AddReader(std::function<void()> read);
  void RemoveReader(int id);

 private:
  void TakeTime();
  void Pump();
  void ReadNetwork();
  void Frame();
  Micros SleepLimit(std::optional<Micros> time) const;

  std::chrono::steady_clock::time_point start_;
  std::chrono::system_clock::time_point wall_;
  Micros now_ = 0;
  Micros next_frame_ = 0;
  bool frame_wanted_ = true;
  std::size_t turn_ = 0;
  std::map<int, std::function<void()>> readers_;
  int last_reader_ = 0;
  QTimer alarm_;
  QtIo io_;
};

}  // namespace penlog
