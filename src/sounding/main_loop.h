// The heartbeat of the console: one pass after another, each doing what the console's mode says.
#pragma once

#include "sounding/time_of_day.h"

namespace penlog {

/// Entered once, when the operator leaves the display setup or the report page of a resume. Ends
/// with the program alone. A run-time fault in a pass is told once, and the next pass follows.
[[noreturn]] void Mainloop();

/// One pass: time, link, port requests, a yield, the mode's work, a yield. A pass in which no time
/// went by waits for the next event.
void MainloopPass();

/// The console's 55 ms timer: ticks, seconds, the pauses of the cone link, and what must be shown
/// in time also while a pass waits for the cone.
void Main_Timer1_Timer();

}  // namespace penlog
