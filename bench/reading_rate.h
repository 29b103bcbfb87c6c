// How close the console comes to the most readings that the link allows.
//
// A reading takes the command's and the answer's characters at 19200 baud and the cone's own 8 ms;
// then the exchange waits for the next tick of 55 ms, because characters may follow the line end.
// The next command can go out on that tick: the least period is a whole number of ticks.
#pragma once

#include <cstddef>
#include <vector>

#include "platform/event_queue.h"

namespace penlog {

struct ReadingRate {
  std::vector<Micros> asked;     ///< when each "D" was complete at the cone
  std::size_t reply_length = 0;  ///< characters of an answer, line end included
};

/// The least period of a reading whose answer has that length.
Micros LeastPeriod(std::size_t reply_length);

/// Readings per second over what the link allows; 0 with fewer than two readings.
double ShareOfAllowed(const ReadingRate& rate);

}  // namespace penlog
