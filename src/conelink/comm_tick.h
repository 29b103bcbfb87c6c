// Time on the cone's link is counted in ticks of a screen's 55 ms timer. A count of n from a reset
// to 1 lasts n-2 to n-1 ticks of real time.
//
// A counter serves one waiter at a time. A handler that talks to the cone inside somebody's wait
// leaves the counter at 0; the waiter then ends at once, as if its time were over.
#pragma once

#include <cstdint>

namespace penlog {

class SerialPort;

/// Part of each such screen's timer handler: above 0 the counter gains 1, above 1000 it falls back
/// to 0, which means idle.
void CountCommTick(std::int16_t& comm_tick);

/// The counter has reached `limit`, or another user of it has ended this wait.
bool TicksOver(const std::int16_t& comm_tick, int limit);

/// One pause of 55 to 110 ms; the cone needs such time between two commands. Leaves the counter
/// at 0.
void CommPause(std::int16_t& comm_tick, int times = 1);

/// Resets the cone by a line break: four pauses of break, two of rest, then the port is closed and
/// opened. `open_first` opens it before. Each serial step that fails is passed over.
void CommBreak(SerialPort& port, std::int16_t& comm_tick, bool open_first);

}  // namespace penlog
