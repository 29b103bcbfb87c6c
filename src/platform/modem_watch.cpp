#include "platform/modem_watch.h"

#include <chrono>
#include <utility>

#include "platform/clock.h"

namespace penlog {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t kItemsPerCollect = 64;

Micros SteadyTime() {
  const auto time = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::microseconds>(time).count();
}

}  // namespace

ModemWatch::ModemWatch(std::unique_ptr<ModemLineSource> source, ModemLines lines, PortSink& sink,
                       std::function<void()> wake_up)
    : source_(std::move(source)),
      sink_(sink),
      wake_up_(std::move(wake_up)),
      tracker_(lines, source_->Counters()),
      thread_([this] { Run(); }) {}

ModemWatch::~ModemWatch() {
  std::unique_lock lock(mutex_);
  stopping_ = true;
  changed_.notify_all();
  while (!ended_) {
    source_->Interrupt();
    changed_.wait_for(lock, 1ms, [this] { return ended_; });
  }
  lock.unlock();
  thread_.join();
}

void ModemWatch::Run() {
  do {
    TakeIn();
  } while (WaitForMore());
  const std::lock_guard lock(mutex_);
  ended_ = true;
  changed_.notify_all();
}

// Lines before counters: an edge between the two is then found at the next comparison.
void ModemWatch::TakeIn() {
  const auto lines = source_->Lines();
  const auto counts = source_->Counters();
  if (!lines) return;
  const EdgeReport report = tracker_.Take(*lines, counts, SteadyTime());
  {
    const std::lock_guard lock(mutex_);
    taken_counts_ = counts;
    for (const ModemLines& edge : report.edges) Put({Item::Kind::Edge, edge, 0});
    if (report.lost > 0) Put({Item::Kind::Lost, {}, report.lost});
    if (!polled_ && tracker_.CountersAreDead()) {
      polled_ = true;
      Put({Item::Kind::Polled, {}, 0});
    }
  }
  if (!report.edges.empty() || report.lost > 0) wake_up_();
}

void ModemWatch::Put(const Item& item) {
  if (inbox_.size() < kInboxLimit || item.kind == Item::Kind::Polled) {
    inbox_.push_back(item);
  } else {
    PutOverflow(item);
  }
}

// When nobody empties the inbox, its last entry counts what else comes and keeps the last lines.
void ModemWatch::PutOverflow(const Item& item) {
  if (inbox_.back().kind != Item::Kind::Overflow) inbox_.push_back({Item::Kind::Overflow, {}, 0});
  Item& overflow = inbox_.back();
  overflow.count += item.kind == Item::Kind::Edge ? 1 : item.count;
  if (item.kind == Item::Kind::Edge) overflow.lines = item.lines;
}

bool ModemWatch::WaitForMore() {
  if (!polled_) {
    const auto outcome = source_->WaitChange();
    const std::lock_guard lock(mutex_);
    if (outcome == ModemLineSource::Outcome::Gone || stopping_) return false;
    if (outcome == ModemLineSource::Outcome::Woken) return true;
    polled_ = true;
    Put({Item::Kind::Polled, {}, 0});
  }
  SleepBetweenPolls();
  const std::lock_guard lock(mutex_);
  return !stopping_;
}

void ModemWatch::SleepBetweenPolls() {
  std::unique_lock lock(mutex_);
  changed_.wait_for(lock, std::chrono::milliseconds(kPollMs), [this] { return stopping_; });
}

void ModemWatch::Collect() {
  Nudge();
  for (std::size_t n = 0; n < kItemsPerCollect && TheQueue().Backlog() <= kBacklogLimit; ++n) {
    Item item;
    {
      const std::lock_guard lock(mutex_);
      if (inbox_.empty()) return;
      item = inbox_.front();
      inbox_.pop_front();
    }
    Hand(item);
  }
}

// An edge between the thread's comparison and its wait would be told only with the next one, and
// an edge that no counter saw never.
void ModemWatch::Nudge() {
  const bool time_to_check = Now() - checked_ >= kCheckMs * kMillisecond;
  bool missed = false;
  if (!time_to_check) {
    const auto counts = source_->Counters();
    const std::lock_guard lock(mutex_);
    missed = counts != taken_counts_;
  }
  if (!time_to_check && !missed) return;
  checked_ = Now();
  source_->Interrupt();
}

void ModemWatch::Hand(const Item& item) {
  switch (item.kind) {
    case Item::Kind::Edge:
      sink_.LinesChanged(item.lines);
      break;
    case Item::Kind::Lost:
      sink_.EdgesLost(item.count);
      break;
    case Item::Kind::Overflow:
      sink_.EdgesLost(item.count);
      sink_.LinesKnown(item.lines);
      break;
    case Item::Kind::Polled:
      sink_.EdgesPolled();
      break;
  }
}

}  // namespace penlog
