// The one queue of the program: serial input, modem-line edges, ticks, operator actions and
// answers wait here with their time until a yield hands them to their target.
//
// An event is data and not a closure, and its target has a fixed name, so that everything that
// enters the queue can be written to a journal and played back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace penlog {

/// Microseconds on the program's clock; 0 is the start of the program.
using Micros = std::int64_t;

constexpr Micros kMillisecond = 1000;
constexpr Micros kSecond = 1'000'000;

enum class EventKind {
  SerialInput,     ///< bytes that arrived at a port
  ModemEdge,       ///< one change of a port's input lines
  PortState,       ///< a port vanished, or lost edges
  Tick,            ///< a repeating timer
  OperatorAction,  ///< a press, a typed text, a choice
  Answer,          ///< the answer of a message box or a file dialog
  Call,            ///< a deferred call of the outside world (the simulated rig, the player)
  RepeatingCall,   ///< the same where it repeats by itself, so that it proves no progress
};

class EventTarget;

/// What happened, as plain data. The meaning of `number`, `lines` and `text` is the target's.
struct Event {
  EventKind kind = EventKind::Call;
  EventTarget* target = nullptr;
  std::int64_t number = 0;
  std::uint32_t lines = 0;
  std::string text;
};

/// Who takes events. The destructor drops what is still queued for it.
class EventTarget {
 public:
  explicit EventTarget(std::string name) : name_(std::move(name)) {}
  EventTarget(const EventTarget&) = delete;
  EventTarget& operator=(const EventTarget&) = delete;
  virtual ~EventTarget();

  virtual void Handle(const Event& event) = 0;
  const std::string& TargetName() const { return name_; }

 private:
  std::string name_;
};

class EventQueue {
 public:
  /// Queues an event for `time`; equal times keep the order of their posting.
  void Post(Micros time, Event event);
  /// Takes the earliest event that is due at `now`; false if none is.
  bool TakeDue(Micros now, Event& event);
  /// The time of the earliest event; none when the queue is empty.
  std::optional<Micros> NextTime() const;
  /// Events that wait and came from outside (input, edges, actions): the measure of back-pressure.
  std::size_t Backlog() const { return backlog_; }
  /// True when nothing waits but what repeats by itself: no event is coming that would end a wait.
  bool OnlyRepeats() const;
  /// Drops what is queued for a target: one kind, or all.
  void Drop(const EventTarget* target, EventKind kind);
  void Drop(const EventTarget* target);
  void Clear();
  /// Called with each event that is handed out, for a journal or a hash of the run.
  std::function<void(Micros, const Event&)> on_taken;

 private:
  template <class Test>
  void DropIf(Test test);

  std::map<std::pair<Micros, std::uint64_t>, Event> waiting_;
  std::uint64_t sequence_ = 0;
  std::size_t backlog_ = 0;
};

/// The program's queue.
EventQueue& TheQueue();

/// Calls `call` inside a yield at `time`. For the outside world (rig, player), never for the
/// console's own logic: such calls do not appear in a journal. `owner` is for `DropCalls`.
void PostCall(Micros time, const void* owner, std::function<void()> call,
              EventKind kind = EventKind::Call);
void DropCalls(const void* owner);
void DropAllCalls();

/// Whether an event of that kind repeats by itself, so that it proves no progress.
constexpr bool Repeats(EventKind kind) {
  return kind == EventKind::Tick || kind == EventKind::RepeatingCall;
}

}  // namespace penlog
