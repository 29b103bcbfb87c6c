// Watches the input lines of a local port on a thread of its own, since the system tells of an
// edge only to a call that waits for it. The thread does nothing but fill an inbox; the edges are
// handed to the port when the clock collects.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "platform/edge_tracker.h"
#include "platform/port_driver.h"

namespace penlog {

/// The system's calls on the lines of one port; each may come from either thread.
class ModemLineSource {
 public:
  enum class Outcome { Woken, Unsupported, Gone };

  virtual ~ModemLineSource() = default;
  /// None when the port has no such lines, or is gone.
  virtual std::optional<ModemLines> Lines() = 0;
  /// None when the adapter counts nothing.
  virtual std::optional<EdgeCounts> Counters() = 0;
  /// Waits for a change after the call, or for `Interrupt`. A change just before the call is not
  /// noticed: compare the counters.
  virtual Outcome WaitChange() = 0;
  /// Ends a wait that is under way. One that begins just after may miss it: call again.
  virtual void Interrupt() = 0;
};

class ModemWatch {
 public:
  /// `lines` as read at the opening: what differs from them is an edge. `wake_up` is called from
  /// the thread when the inbox has something.
  ModemWatch(std::unique_ptr<ModemLineSource> source, ModemLines lines, PortSink& sink,
             std::function<void()> wake_up);
  /// Ends the thread; takes a few milliseconds at most.
  ~ModemWatch();
  ModemWatch(const ModemWatch&) = delete;
  ModemWatch& operator=(const ModemWatch&) = delete;

  /// Hands the inbox to the sink, no more than the queue's back-pressure allows, and looks whether
  /// the thread missed something. Called at each collect.
  void Collect();

  static constexpr int kPollMs = 10;    ///< pace of an adapter that must be polled
  static constexpr int kCheckMs = 100;  ///< a wait is interrupted to compare lines and counts
  static constexpr std::size_t kInboxLimit = 4096;  ///< further edges count as lost
  static constexpr std::size_t kBacklogLimit = 256;

 private:
  struct Item {
    enum class Kind { Edge, Lost, Overflow, Polled } kind = Kind::Edge;
    ModemLines lines;
    std::int64_t count = 0;
  };

  void Run();
  void TakeIn();
  void Put(const Item& item);
  void PutOverflow(const Item& item);
  bool WaitForMore();
  void SleepBetweenPolls();
  void Nudge();
  void Hand(const Item& item);

  std::unique_ptr<ModemLineSource> source_;
  PortSink& sink_;
  std::function<void()> wake_up_;
  EdgeTracker tracker_;  // the thread's alone
  bool polled_ = false;  // the thread's alone
  Micros checked_ = 0;   // the yielding thread's alone

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Item> inbox_;
  std::optional<EdgeCounts> taken_counts_;
  bool stopping_ = false;
  bool ended_ = false;
  std::thread thread_;
};

}  // namespace penlog
