// What the console does, as the rig's wires tell it: for people who watch the rig, never for the
// rig's own behaviour. Takes each record of the log; costs a compare or two a record.
#pragma once

#include <cstdint>
#include <string>

#include "rig/rig_log.h"

namespace penlog {

class ConsoleWatch {
 public:
  void Take(const RigRecord& record);

  bool ConeOpen() const { return cone_open_; }
  bool TruckOpen() const { return truck_open_; }
  /// Readings that went out within the last whole second before `now`; a second in which nothing
  /// went over the wires counts as one without.
  int ReadingsPerSecond(Micros now) const;
  /// The numbers of the last reading as they were sent, without the line end; empty before the
  /// first.
  const std::string& LastReading() const { return last_reading_; }
  /// Time since the last line that the console sent to the cone; -1 before the first.
  Micros SinceCommand(Micros now) const { return asked_ < 0 ? -1 : now - asked_; }

 private:
  void TakePort(const std::string& text);
  void TakeReading(const RigRecord& record);

  bool cone_open_ = false;
  bool truck_open_ = false;
  std::string last_reading_;
  Micros asked_ = -1;
  std::int64_t second_ = 0;  // that is being counted
  int this_second_ = 0;
  int last_second_ = 0;
};

}  // namespace penlog
