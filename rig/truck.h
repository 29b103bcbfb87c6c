// The truck: the push with its depth counter, clamp and pressure switch on the input lines of a
// serial port, and the console's stop and trigger outputs. Each line change comes at its own time.
//
// While RTS is true the push stands still, at once; it goes on when RTS falls. The lift and the
// head's way back are not stopped by it.
#pragma once

#include <deque>
#include <functional>
#include <string>

#include "platform/event_queue.h"
#include "platform/wire_end.h"
#include "rig/faults.h"
#include "rig/push_plan.h"
#include "rig/rig_log.h"
#include "rig/surroundings.h"
#include "rig/truck_lines.h"

namespace penlog {

class Truck : private EventTarget {
 public:
  Truck(const TruckSetup& setup, RigFaults& faults, RigLog& log);

  /// The console's end; none while nothing is attached.
  void Attach(WireEnd* wire) { lines_.Attach(wire); }
  void TakeOutputs(bool dtr, bool rts);
  /// A reading went out that the cone took at `sampled`.
  void TakeReading(Micros sampled);

  /// Pushes on to `metres` below the present depth (of the push under way: below its end), with a
  /// rod break at each end of a stroke.
  void Push(double metres);
  /// Stops everything where it is.
  void Stop();
  void RodBreak();
  void Lift(double metres);
  /// `steps` times a step of `metres` with a hold of `replies` readings.
  void Hold(int steps, int replies, double metres);
  void SetClamp(bool closed) { lines_.SetClamp(closed); }
  bool SetPressure(bool on) { return lines_.SetPressure(on); }
  /// The tip stands at `metres` in a hole that is open to there; nothing moves.
  void PlaceTip(double metres) { PlaceTip(metres, metres); }
  /// The same at the bottom of a hole that was pushed from `start` on.
  void PlaceTip(double metres, double start);
  void SetPushSpeed(double metres_per_second) { setup_.push_speed = metres_per_second; }
  void Chatter(int pairs);

  double Depth() const;
  TipPlace Place() const;
  /// What is under way, also while the console's stop output holds it.
  TruckWork Work() const;
  /// True while the console's stop output holds a push that is under way.
  bool Held() const { return rts_ && !running_ && Busy(); }
  /// m that the head has gone down since its stroke began.
  double StrokeMetres() const;
  /// m below the surface: where the push under way ends.
  double Target() const;
  bool Busy() const { return !plan_.empty() || target_ > tip_ || holds_left_ > 0; }
  bool Dtr() const { return dtr_; }
  bool Rts() const { return rts_; }
  ModemLines Lines() const { return lines_.Lines(); }
  const TruckSetup& Setup() const { return setup_; }

 private:
  void Handle(const Event& event) override;
  void Add(const Plan& plan);
  void Continue();
  bool PlanMore();
  Plan NextPlan();
  bool Begin();
  bool BeginTravel();
  void Halt();
  void Drop();
  void Advance(PlanStep& step, Nanometres counter, Nanometres tip);
  Micros TimeAt(Nanometres counter) const;
  bool Travels() const;
  Nanometres Along(Nanometres from, Nanometres way, Micros time) const;
  void PostNext();
  void PostAt(Micros time);
  void EndStep();
  void Tell(std::string text);
  Nanometres Room() const;
  Nanometres Stroke() const { return counter_at_ - stroke_start_; }

  TruckSetup setup_;
  RigLog& log_;
  TruckLines lines_;
  bool dtr_ = false;
  bool rts_ = false;

  std::deque<PlanStep> plan_;  // the step under way stands first
  bool running_ = false;       // the first step has begun
  Micros begun_ = 0;
  Micros length_ = 0;  // of a travel
  int replies_left_ = 0;
  std::int64_t generation_ = 0;

  Nanometres counter_at_ = 0;  // at the begin of the step under way
  Nanometres ahead_ = 0;       // of the counter, where a hold lets the tip go first
  Nanometres tip_ = 0;
  Nanometres deepest_ = 0;
  Nanometres start_ = 0;
  Nanometres target_ = 0;  // depth to which the tip is to be pushed
  Nanometres stroke_start_ = 0;
  int holds_left_ = 0;
  int hold_replies_ = 0;
  Nanometres hold_way_ = 0;
};

}  // namespace penlog
