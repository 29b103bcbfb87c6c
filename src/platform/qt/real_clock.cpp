#include "platform/qt/real_clock.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QEvent>
#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace penlog {

namespace {

constexpr Micros kFrameTime = kSecond / 30;
constexpr Micros kForEver = std::numeric_limits<Micros>::max();

}  // namespace

RealClock::RealClock() : start_(std::chrono::steady_clock::now()) {
  alarm_.setTimerType(Qt::PreciseTimer);
  alarm_.setSingleShot(true);
  TakeTime();
}

RealClock::~RealClock() = default;

void RealClock::TakeTime() {
  const auto since = std::chrono::steady_clock::now() - start_;
  now_ = std::chrono::duration_cast<std::chrono::microseconds>(since).count();
  wall_ = std::chrono::system_clock::now();
}

WallTime RealClock::Wall() const {
  const auto since = wall_.time_since_epoch();
  const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(since).count();
  const QDateTime local = QDateTime::fromMSecsSinceEpoch(ms);
  const QDate date = local.date();
  const QTime time = local.time();
  return {date.year(),   date.month(),  date.day(), time.hour(),
          time.minute(), time.second(), time.msec()};
}

void RealClock::Collect() {
  TakeTime();
  Pump();
  const bool network_first = (++turn_ & 1u) != 0;
  if (network_first) ReadNetwork();
  io_.CollectPolls();
  io_.CollectDescriptors();
  if (!network_first) ReadNetwork();
  Frame();
  TakeTime();
}

void RealClock::Pump() {
  QCoreApplication::processEvents();
  // Without exec() the event loop never deletes what was to be deleted later.
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

int RealClock::AddReader(std::function<void()> read) {
  readers_.emplace(++last_reader_, std::move(read));
  return last_reader_;
}

void RealClock::RemoveReader(int id) {
  readers_.erase(id);
}

void RealClock::ReadNetwork() {
  std::vector<int> ids;
  for (const auto& reader : readers_) ids.push_back(reader.first);
  // Half the turns are those in which the network goes first: there, too, each must come to lead.
  const std::size_t first = ids.empty() ? 0 : turn_ / 2 % ids.size();
  std::rotate(ids.begin(), ids.begin() + static_cast<std::ptrdiff_t>(first), ids.end());
  for (const int id : ids) {
    const auto found = readers_.find(id);
    if (found == readers_.end()) continue;
    const auto read = found->second;
    read();
  }
}

void RealClock::Handed(const Event&) {
  frame_wanted_ = true;
}

void RealClock::Frame() {
  if (!on_frame || !frame_wanted_ || now_ < next_frame_) return;
  frame_wanted_ = false;
  // On a grid of its own, so that frames that come late don't add up to fewer in a second.
  next_frame_ = now_ - next_frame_ < kFrameTime ? next_frame_ + kFrameTime : now_ + kFrameTime;
  on_frame();
}

Micros RealClock::SleepLimit(std::optional<Micros> time) const {
  Micros limit = time.value_or(kForEver);
  if (on_frame && frame_wanted_) limit = std::min(limit, next_frame_);
  if (io_.HasPolls()) limit = std::min(limit, now_ + IoWatcher::kLongestSleepMs * kMillisecond);
  return limit;
}

// Returns early for anything that happens; the loop that waits comes back.
void RealClock::SleepUntil(std::optional<Micros> time) {
  TakeTime();
  const Micros limit = SleepLimit(time);
  if (limit <= now_) return;
  if (limit != kForEver) {
    const Micros wait_ms = (limit - now_ + kMillisecond - 1) / kMillisecond;
    alarm_.start(static_cast<int>(std::min<Micros>(wait_ms, 3'600'000)));
  }
  QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  alarm_.stop();
  TakeTime();
}

}  // namespace penlog
