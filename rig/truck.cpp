#include "rig/truck.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/clock.h"
#include "platform/numbers.h"

namespace penlog {

namespace {

constexpr double kNanometresPerMicro = 1000.0;  // of 1 m/s

double ToMetres(Nanometres way) {
  return static_cast<double>(way) / static_cast<double>(kNanometresPerMetre);
}

}  // namespace

Truck::Truck(const TruckSetup& setup, RigFaults& faults, RigLog& log)
    : EventTarget("truck"), setup_(setup), log_(log), lines_(setup, faults, log) {
  lines_.depth = [this] { return Depth(); };
  PlaceTip(setup.start_depth);
}

void Truck::Tell(std::string text) {
  log_.Add({Now(), RigLogKind::Motion, 0, Depth(), 0, std::move(text)});
}

void Truck::Chatter(int pairs) {
  Tell("line CD chatters");
  lines_.Chatter(pairs);
}

void Truck::TakeOutputs(bool dtr, bool rts) {
  if (dtr == dtr_ && rts == rts_) return;
  dtr_ = dtr;
  const bool rts_changed = std::exchange(rts_, rts) != rts;
  log_.Add({Now(), RigLogKind::Output, (dtr ? 1 : 0) + (rts ? 2 : 0), Depth(), 0, ""});
  if (!rts_changed) return;
  if (rts && running_ && !plan_.empty() && plan_.front().hydraulic) {
    Halt();
    Tell("halted by RTS");
  } else if (!rts && !running_ && Busy()) {
    Tell("released by RTS");
    Continue();
  }
}

void Truck::TakeReading(Micros sampled) {
  if (!running_ || plan_.empty() || plan_.front().kind != PlanStep::Kind::Hold) return;
  if (sampled < begun_ || --replies_left_ > 0) return;
  EndStep();
  Continue();
}

// Orders.

void Truck::Push(double metres) {
  target_ = std::max(target_, tip_) + ToNanometres(metres);
  Tell("push to " + Format(ToMetres(target_), "0.000"));
  if (plan_.empty()) Continue();
}

/// Forgets the plan. Where a hold left the tip ahead of the counter, the counter catches up.
void Truck::Drop() {
  Halt();
  plan_.clear();
  if (ahead_ == 0) return;
  counter_at_ += std::exchange(ahead_, 0);
  lines_.MoveTo(counter_at_, true);
}

void Truck::Stop() {
  Drop();
  holds_left_ = 0;
  target_ = tip_;
  SetPressure(false);
  Tell("stop");
}

void Truck::RodBreak() {
  Drop();
  Add(RodBreakPlan(setup_, Stroke()));
}

void Truck::Lift(double metres) {
  Drop();
  holds_left_ = 0;
  Tell("lift by " + Format(metres, "0.000"));
  Add(LiftPlan(setup_, ToNanometres(metres)));
}

void Truck::Hold(int steps, int replies, double metres) {
  holds_left_ = steps;
  hold_replies_ = replies;
  hold_way_ = ToNanometres(metres);
  Tell("hold " + PlainNumber(steps) + " steps");
  if (plan_.empty()) Continue();
}

void Truck::PlaceTip(double metres, double start) {
  tip_ = deepest_ = target_ = ToNanometres(metres);
  start_ = ToNanometres(start);
}

void Truck::Add(const Plan& plan) {
  const bool idle = plan_.empty();
  plan_.insert(plan_.end(), plan.begin(), plan.end());
  if (idle) Continue();
}

// The steps.

Nanometres Truck::Room() const {
  return WholeSteps(setup_, setup_.rod_length) - Stroke();
}

Plan Truck::NextPlan() {
  if (holds_left_ > 0) {
    // What a rod break let the rods come up belongs to the next step's way, not to its depth.
    const Nanometres from = std::max(tip_, std::min(target_, deepest_));
    const Nanometres way = from + hold_way_ - tip_;
    if (Room() < way && Stroke() > 0) return RodBreakPlan(setup_, Stroke());
    --holds_left_;
    target_ = std::max(target_, tip_ + way);
    return HoldPlan(setup_, way, hold_replies_);
  }
  if (target_ <= tip_) return {};
  if (Room() <= 0) return RodBreakPlan(setup_, Stroke());
  return PushPlan(setup_, std::min(target_ - tip_, Room()));
}

/// False when nothing is left to do.
bool Truck::PlanMore() {
  const Plan plan = NextPlan();
  plan_.insert(plan_.end(), plan.begin(), plan.end());
  return !plan.empty();
}

void Truck::Continue() {
  while (!running_) {
    if (plan_.empty() && !PlanMore()) {
      SetPressure(false);
      Tell("stands");
      return;
    }
    if (rts_ && plan_.front().hydraulic) return;
    if (Begin()) return;
    plan_.pop_front();
  }
}

/// False when the step is done at once.
bool Truck::Begin() {
  const PlanStep& step = plan_.front();
  begun_ = Now();
  switch (step.kind) {
    case PlanStep::Kind::Travel:
      return BeginTravel();
    case PlanStep::Kind::Wait:
      running_ = true;
      PostAt(begun_ + std::llround(step.seconds * static_cast<double>(kSecond)));
      return true;
    case PlanStep::Kind::Hold:
      running_ = true;
      replies_left_ = step.replies;
      return true;
    case PlanStep::Kind::Clamp:
      SetClamp(step.on);
      return false;
    case PlanStep::Kind::Pressure:
      SetPressure(step.on);
      return false;
    case PlanStep::Kind::Tell:
      Tell(step.text);
      return false;
  }
  return false;
}

bool Truck::BeginTravel() {
  const PlanStep& step = plan_.front();
  const Nanometres way = std::max(std::abs(step.counter), std::abs(step.tip));
  if (way == 0) return false;
  const double micros = static_cast<double>(way) / (step.speed * kNanometresPerMicro);
  length_ = std::max<Micros>(1, static_cast<Micros>(std::ceil(micros)));
  running_ = true;
  PostNext();
  return true;
}

Nanometres Truck::Along(Nanometres from, Nanometres way, Micros time) const {
  const double part = static_cast<double>(time - begun_) / static_cast<double>(length_);
  return from + std::llround(static_cast<double>(way) * std::clamp(part, 0.0, 1.0));
}

Micros Truck::TimeAt(Nanometres counter) const {
  const double way = static_cast<double>(plan_.front().counter);
  const double part = static_cast<double>(counter - counter_at_) / way;
  return begun_ + static_cast<Micros>(std::ceil(part * static_cast<double>(length_)));
}

void Truck::PostAt(Micros time) {
  Event event;
  event.kind = EventKind::Call;
  event.target = this;
  event.number = ++generation_;
  TheQueue().Post(time, std::move(event));
}

/// The next line change of the travel under way, or its end; never now, so that time goes on.
void Truck::PostNext() {
  const Nanometres way = plan_.front().counter;
  Micros time = begun_ + length_;
  if (way != 0) {
    const Nanometres change = lines_.NextChange(counter_at_ + way, way > 0);
    time = std::min(time, TimeAt(change));
  }
  PostAt(std::max(time, Now() + 1));
}

void Truck::Handle(const Event& event) {
  if (event.number != generation_ || !running_ || plan_.empty()) return;
  if (plan_.front().kind == PlanStep::Kind::Travel) {
    const Nanometres way = plan_.front().counter;
    if (way != 0) lines_.MoveTo(Along(counter_at_, way, Now()), way > 0);
    if (Now() < begun_ + length_) {
      PostNext();
      return;
    }
  }
  EndStep();
  Continue();
}

/// Takes a part of the travel under way as done.
void Truck::Advance(PlanStep& step, Nanometres counter, Nanometres tip) {
  step.counter -= counter;
  step.tip -= tip;
  counter_at_ += counter;
  tip_ += tip;
  deepest_ = std::max(deepest_, tip_);
  if (step.hydraulic) ahead_ += tip - counter;
}

void Truck::EndStep() {
  PlanStep step = plan_.front();
  if (step.kind == PlanStep::Kind::Travel) {
    Advance(step, step.counter, step.tip);
    if (step.new_stroke) {
      stroke_start_ = counter_at_;
      target_ = tip_;
    }
  }
  plan_.pop_front();
  running_ = false;
}

/// Freezes the step under way; a travel leaves its rest to be travelled.
void Truck::Halt() {
  ++generation_;
  if (!running_) return;
  running_ = false;
  PlanStep& step = plan_.front();
  if (step.kind != PlanStep::Kind::Travel) return;
  const Nanometres counter = Along(0, step.counter, Now());
  const Nanometres tip = Along(0, step.tip, Now());
  if (step.counter != 0) lines_.MoveTo(counter_at_ + counter, step.counter > 0);
  Advance(step, counter, tip);
}

bool Truck::Travels() const {
  return running_ && !plan_.empty() && plan_.front().kind == PlanStep::Kind::Travel;
}

double Truck::Depth() const {
  return ToMetres(Travels() ? Along(tip_, plan_.front().tip, Now()) : tip_);
}

double Truck::StrokeMetres() const {
  const Nanometres gone = Travels() ? Along(0, plan_.front().counter, Now()) : 0;
  return ToMetres(Stroke() + gone);
}

double Truck::Target() const {
  return ToMetres(std::max(target_, tip_));
}

TruckWork Truck::Work() const {
  if (!plan_.empty()) return plan_.front().work;
  if (holds_left_ > 0) return TruckWork::Hold;
  return target_ > tip_ ? TruckWork::Push : TruckWork::Standing;
}

TipPlace Truck::Place() const {
  const double depth = Depth();
  return {depth, ToMetres(start_), std::max(depth, ToMetres(deepest_))};
}

}  // namespace penlog
