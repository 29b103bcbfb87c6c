// The seismic memory of a cone: armed by "S", filled when the hammer closes the trigger circuit
// while DTR is raised, read out by "B" block by block.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/event_queue.h"

namespace penlog {

class SeismicRecorder {
 public:
  /// "S" letters, samples, divisor: one letter records one channel, two letters two.
  void Arm(std::string_view letters, int samples, int divisor);
  void Disarm() { armed_ = false; }
  bool Armed() const { return armed_; }
  /// Null offsets in V, set by "O0" and "O1".
  void SetOffset(int which, double volts) { offset_[which == 0 ? 0 : 1] = volts; }

  /// The strike at a tip `depth` m deep; the time until the record is full. Not armed: 0.
  Micros Strike(double depth);
  /// The next 128 bytes: 42 groups of three, each holding two samples of 12 bits, and two bytes
  /// without meaning.
  std::string Block();
  /// Sample `index` of a channel (0 or 1), 0 to 4095 around 2048.
  int Sample(int channel, int index) const;

 private:
  double SampleMs() const;

  bool armed_ = false;
  int channels_ = 1;
  int samples_ = 0;
  int divisor_ = 24;
  int next_ = 0;
  double arrival_ms_ = 0.0;
  double offset_[2] = {0.0, 0.0};
};

}  // namespace penlog
