// A cone that gives one reading for ever, to the last digit of each field, answers like a living
// one, and its rows look like rows: while the rods move that is told in words.
#pragma once

#include <string>

#include "platform/clock.h"

namespace penlog {

struct RepeatedReadingState {
  std::string Reply;  ///< the cone's last one
  Micros Since = 0;   ///< when it first came
  float Depth = 0;    ///< m; `CurrentDepth` then
  bool IsTold = false;
};

inline RepeatedReadingState repeated_reading;

/// Takes each whole reply to a reading. Tells a cone that has repeated itself for 3 s and at least
/// one depth step on `lblCommError`, and takes that back with the next other reading.
void NoteReply(const std::string& reply);

}  // namespace penlog
