#include "platform/timer.h"

#include "platform/clock.h"

namespace penlog {

void Timer::Start() {
  if (running_) return;
  running_ = true;
  if (interval_ <= 0) return;
  due_ = Now() + interval_ * kMillisecond;
  PostNext();
}

void Timer::Stop() {
  running_ = false;
  TheQueue().Drop(this);
}

void Timer::PostNext() {
  Event event;
  event.kind = EventKind::Tick;
  event.target = this;
  TheQueue().Post(TheClock().TimerTime(due_), std::move(event));
}

void Timer::Handle(const Event&) {
  if (!running_ || interval_ <= 0) return;
  due_ += interval_ * kMillisecond;
  if (due_ <= Now()) due_ = Now() + interval_ * kMillisecond;
  PostNext();
  const auto tick = OnTick;  // a handler may replace itself
  if (tick) tick();
}

}  // namespace penlog
