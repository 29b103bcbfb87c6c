// What went over the wires and what the rig did, with times: for tests, and to judge a recorded
// sounding by.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/event_queue.h"

namespace penlog {

enum class RigLogKind {
  Command,  ///< a command line was complete at an instrument; number: its unit, text: the line
  Reply,    ///< the last byte of an answer was sent; number: unit, text: the bytes sent
  Silence,  ///< a command was left without an answer; number: unit, text: why
  Break,    ///< number: 1 begins, 0 ends
  Port,     ///< the console opened or closed a port, or an adapter was plugged
  Output,   ///< DTR and RTS of the truck's port changed; number: 1 DTR, 2 RTS, 3 both
  Edge,     ///< an input line changed; number: 1 CTS, 2 DSR, 4 CD, those that are held after it
  Motion,   ///< the push, the clamp, the lift
  Control,  ///< a word of control, a fault that begins or ends
};

struct RigRecord {
  Micros time = 0;
  RigLogKind kind = RigLogKind::Control;
  std::int64_t number = 0;
  double depth = 0.0;  ///< m, of the tip; for a reply to "D" where the sample was taken
  Micros sampled = 0;  ///< for a reply to "D" the time of the sample
  std::string text;
};

class RigLog {
 public:
  void Add(RigRecord record);
  const std::vector<RigRecord>& Records() const { return records_; }
  std::vector<RigRecord> Of(RigLogKind kind) const;
  /// A line each: seconds, kind, number, depth, text with line ends as \r \n.
  std::string Text() const;
  /// Of every record with its time, so that two runs are compared by one number.
  std::uint64_t Hash() const;
  void Clear() { records_.clear(); }
  /// Keeps no record from now on (a real-time rig that runs for days), but still tells.
  void KeepNothing() { keep_ = false; }

  std::function<void(const RigRecord& record)> on_added;

 private:
  std::vector<RigRecord> records_;
  bool keep_ = true;
};

std::string RigLogLine(const RigRecord& record);

}  // namespace penlog
