// How the drivers of ports hear from the operating system: the real clock calls them when it
// collects. Two clocks implement it, one on plain poll() and one on the windows' event loop.
#pragma once

#include <functional>

namespace penlog {

/// All calls but `WakeUp` belong to the thread that yields. The callbacks run inside `Collect`
/// alone, never while it sleeps; they queue events and don't throw. A callback may watch and
/// unwatch anything, itself included: after `Unwatch` returned nothing is called for that id.
class IoWatcher {
 public:
  virtual ~IoWatcher() = default;

  /// Calls `readable` at each collect while the descriptor has input, has hung up or has an
  /// error, so that a bounded read goes on at the next collect. The result is above 0.
  virtual int Watch(int fd, std::function<void()> readable) = 0;
  /// Calls `writable` while the descriptor takes output. Starts paused.
  virtual int WatchWritable(int fd, std::function<void()> writable) = 0;
  /// A paused watch neither calls nor ends a sleep, not even when the descriptor has hung up.
  virtual void Pause(int id, bool paused) = 0;
  /// Calls `poll` once at each collect, before the descriptors are looked at: there a driver
  /// takes up paused reading and looks whether its device still stands. While such a poll is
  /// there a sleep lasts at most `kLongestSleepMs`.
  virtual int OnCollect(std::function<void()> poll) = 0;
  /// Ends a watch or a poll. An id that is gone, and 0, does nothing.
  virtual void Unwatch(int id) = 0;
  /// From any thread, also in a signal handler: a sleep ends and the clock collects again.
  virtual void WakeUp() = 0;

  static constexpr int kLongestSleepMs = 100;
};

/// The watcher in use; null in virtual time.
IoWatcher* TheIo();
void UseIo(IoWatcher* io);

}  // namespace penlog
