#include "rig/push_plan.h"

#include <cmath>

namespace penlog {

namespace {

constexpr double kSettleSeconds = 0.3;    // valves and clamp
constexpr double kReboundSpeed = 0.01;    // m/s
constexpr int kRepliesBehindTheStep = 2;  // the pass under way, and the one that takes the row

PlanStep Travel(Nanometres counter, Nanometres tip, double speed, bool hydraulic) {
  PlanStep step;
  step.kind = PlanStep::Kind::Travel;
  step.counter = counter;
  step.tip = tip;
  step.speed = speed;
  step.hydraulic = hydraulic;
  return step;
}

PlanStep Wait(double seconds) {
  PlanStep step;
  step.kind = PlanStep::Kind::Wait;
  step.seconds = seconds;
  return step;
}

PlanStep Switch(PlanStep::Kind kind, bool on) {
  PlanStep step;
  step.kind = kind;
  step.on = on;
  return step;
}

PlanStep Hold(int replies) {
  PlanStep step;
  step.kind = PlanStep::Kind::Hold;
  step.replies = replies;
  return step;
}

PlanStep Tell(std::string text) {
  PlanStep step;
  step.kind = PlanStep::Kind::Tell;
  step.text = std::move(text);
  return step;
}

Plan For(TruckWork work, Plan plan) {
  for (auto& step : plan) step.work = work;
  return plan;
}

}  // namespace

Nanometres ToNanometres(double metres) {
  return std::llround(metres * static_cast<double>(kNanometresPerMetre));
}

Nanometres WholeSteps(const TruckSetup& setup, double metres) {
  const Nanometres step = ToNanometres(setup.resolution);
  return std::llround(metres / setup.resolution) * step;
}

Plan PushPlan(const TruckSetup& setup, Nanometres way) {
  return For(TruckWork::Push,
             {Switch(PlanStep::Kind::Clamp, true), Switch(PlanStep::Kind::Pressure, true),
              Travel(way, way, setup.push_speed, true)});
}

Plan RodBreakPlan(const TruckSetup& setup, Nanometres stroke) {
  const Nanometres rebound = WholeSteps(setup, setup.rebound);
  return For(TruckWork::RodBreak,
             {Tell("rod break"), Switch(PlanStep::Kind::Pressure, false), Wait(kSettleSeconds),
              Travel(-rebound, -rebound, kReboundSpeed, false),
              Switch(PlanStep::Kind::Clamp, false), Wait(kSettleSeconds),
              Travel(rebound - stroke, 0, setup.return_speed, false), Wait(setup.rod_change),
              Switch(PlanStep::Kind::Clamp, true), Wait(kSettleSeconds), Tell("rod added")});
}

Plan LiftPlan(const TruckSetup& setup, Nanometres way) {
  PlanStep up = Travel(-way, -way, setup.lift_speed, false);
  up.new_stroke = true;
  return For(TruckWork::Lift,
             {Switch(PlanStep::Kind::Pressure, false), Switch(PlanStep::Kind::Clamp, true), up});
}

Plan HoldPlan(const TruckSetup& setup, Nanometres way, int replies) {
  const Nanometres last = ToNanometres(setup.resolution);
  return For(TruckWork::Hold,
             {Switch(PlanStep::Kind::Clamp, true), Switch(PlanStep::Kind::Pressure, true),
              Travel(way - last, way, setup.push_speed, true), Hold(replies),
              Travel(last, 0, setup.push_speed, true), Hold(kRepliesBehindTheStep)});
}

}  // namespace penlog
