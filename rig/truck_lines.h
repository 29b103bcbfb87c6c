// The truck's contacts on the input lines of its port: depth counter, clamp, pressure switch. Each
// change goes to the console and into the log.
#pragma once

#include <functional>
#include <string>

#include "platform/wire_end.h"
#include "rig/depth_counter.h"
#include "rig/faults.h"
#include "rig/push_plan.h"
#include "rig/rig_log.h"

namespace penlog {

class TruckLines {
 public:
  TruckLines(const TruckSetup& setup, RigFaults& faults, RigLog& log);
  ~TruckLines();
  TruckLines(const TruckLines&) = delete;
  TruckLines& operator=(const TruckLines&) = delete;

  /// The console's end; none while nothing is attached. Sets the lines as they are.
  void Attach(WireEnd* wire);
  /// m below the surface, for the log.
  std::function<double()> depth;

  /// Passes every change of the counter from its present place to `position`.
  void MoveTo(Nanometres position, bool down);
  /// The next change on the way from the present place to `position`; `position` if none lies on
  /// it.
  Nanometres NextChange(Nanometres position, bool down) const;
  void SetClamp(bool closed);
  /// False when the truck has no pressure line (an encoder uses it, or no switch is fitted).
  bool SetPressure(bool on);
  /// The counter's line CD chatters: `pairs` times there and back, 200 microseconds a flip.
  void Chatter(int pairs);
  ModemLines Lines() const { return lines_; }

 private:
  void SendCounter();
  void Send(ModemLines lines, std::string note);
  void Flip(int left);

  bool has_pressure_;
  RigFaults& faults_;
  RigLog& log_;
  DepthCounter counter_;
  WireEnd* wire_ = nullptr;
  ModemLines lines_;
  bool flipped_ = false;
};

}  // namespace penlog
