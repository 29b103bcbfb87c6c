// The cone: what every unit answers, and the seismic commands S, B, O0 and O1.
//
// A cone that is armed by "S" says nothing and goes on waiting whatever asks for its banner; any
// other command ends that and is answered. When the hammer has closed the trigger circuit and the
// record is full it sends one line by itself.
#pragma once

#include <string>
#include <string_view>

#include "rig/seismic_recorder.h"
#include "rig/sim_unit.h"

namespace penlog {

class SimCone : public SimUnit {
 public:
  using SimUnit::SimUnit;

  std::string Answer(std::string_view command) override;
  void Reset() override;

  /// The hammer strikes. The time until the record is full, 0 if the cone isn't armed.
  Micros Strike(double depth) { return recorder_.Strike(depth); }
  const SeismicRecorder& Recorder() const { return recorder_; }

 private:
  std::string Arm(std::string_view arguments);
  std::string SetOffset(std::string_view arguments);

  SeismicRecorder recorder_;
};

/// What the cone sends when its record is full.
constexpr std::string_view kRecordFull = "TRIGGERED\r\n";

}  // namespace penlog
