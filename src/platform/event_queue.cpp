#include "platform/event_queue.h"

#include <algorithm>
#include <unordered_map>

namespace penlog {

namespace {

bool FromOutside(EventKind kind) {
  return kind == EventKind::SerialInput || kind == EventKind::ModemEdge ||
         kind == EventKind::OperatorAction;
}

/// Keeps the closures of deferred calls; the event holds their number.
class CallTable : public EventTarget {
 public:
  CallTable() : EventTarget("calls") {}

  std::int64_t Add(const void* owner, std::function<void()> call) {
    calls_.emplace(++last_, Entry{owner, std::move(call)});
    return last_;
  }

  void Handle(const Event& event) override {
    auto found = calls_.find(event.number);
    if (found == calls_.end()) return;
    std::function<void()> call = std::move(found->second.call);
    calls_.erase(found);
    call();
  }

  /// Numbers begin anew, so that a further run in this process is the same as the first.
  void Clear() {
    TheQueue().Drop(this);
    calls_.clear();
    last_ = 0;
  }

  void Drop(const void* owner) {
    std::erase_if(calls_, [owner](const auto& entry) { return entry.second.owner == owner; });
  }

 private:
  struct Entry {
    const void* owner;
    std::function<void()> call;
  };
  std::unordered_map<std::int64_t, Entry> calls_;
  std::int64_t last_ = 0;
};

CallTable& Calls() {
  static CallTable& table = *new CallTable;
  return table;
}

}  // namespace

EventTarget::~EventTarget() {
  TheQueue().Drop(this);
}

void EventQueue::Post(Micros time, Event event) {
  if (FromOutside(event.kind)) ++backlog_;
  waiting_.emplace(std::pair{time, ++sequence_}, std::move(event));
}

bool EventQueue::TakeDue(Micros now, Event& event) {
  auto first = waiting_.begin();
  if (first == waiting_.end() || first->first.first > now) return false;
  const Micros time = first->first.first;
  event = std::move(first->second);
  if (FromOutside(event.kind)) --backlog_;
  waiting_.erase(first);
  if (on_taken) on_taken(time, event);
  return true;
}

std::optional<Micros> EventQueue::NextTime() const {
  if (waiting_.empty()) return std::nullopt;
  return waiting_.begin()->first.first;
}

bool EventQueue::OnlyRepeats() const {
  return std::all_of(waiting_.begin(), waiting_.end(),
                     [](const auto& entry) { return Repeats(entry.second.kind); });
}

template <class Test>
void EventQueue::DropIf(Test test) {
  for (auto at = waiting_.begin(); at != waiting_.end();) {
    if (!test(at->second)) {
      ++at;
      continue;
    }
    if (FromOutside(at->second.kind)) --backlog_;
    at = waiting_.erase(at);
  }
}

void EventQueue::Drop(const EventTarget* target, EventKind kind) {
  DropIf([=](const Event& event) { return event.target == target && event.kind == kind; });
}

void EventQueue::Drop(const EventTarget* target) {
  DropIf([=](const Event& event) { return event.target == target; });
}

void EventQueue::Clear() {
  waiting_.clear();
  backlog_ = 0;
}

EventQueue& TheQueue() {
  // Never destroyed: targets with static storage drop their events when they go.
  static EventQueue& queue = *new EventQueue;
  return queue;
}

void PostCall(Micros time, const void* owner, std::function<void()> call, EventKind kind) {
  Event event;
  event.kind = kind;
  event.target = &Calls();
  event.number = Calls().Add(owner, std::move(call));
  TheQueue().Post(time, std::move(event));
}

void DropCalls(const void* owner) {
  Calls().Drop(owner);
}

void DropAllCalls() {
  Calls().Clear();
}

}  // namespace penlog
