// The two yields: the only places where handlers run and where time moves.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/event_queue.h"

namespace penlog {

/// The end of the program, on its way to `main`. Not a std::exception: no error trap takes it.
struct ProgramEnd {};

/// Runs what is due now (at most 64 events) and returns at once; never sleeps, never moves a
/// virtual clock. Throws `ProgramEnd` while the end is under way. Inside the handler of a tick, a
/// byte or an edge a yield raises a `RuntimeFault`: such handlers store, count and act. A fault
/// that leaves a handler is reported (`OnFault`), and the other events go on. In a destructor that
/// an exception runs a yield does nothing but say so.
void Yield();

/// Runs what is due or, if nothing is, sleeps until the next event and runs that. Every loop that
/// waits uses it; `what` names the wait in the report of a standstill.
void WaitYield(const char* what);

/// How often `WaitYield` was called so far: whether a stretch of work waited shows in the
/// difference, in virtual and in real time alike.
std::int64_t WaitCount();

/// Ends the program: throws `ProgramEnd`, and each later yield throws it again.
[[noreturn]] void EndProgram();
/// Asks for the end from a place that must not throw (a closed window, the watch of a signal's
/// descriptor), on the thread that yields: the next yield throws.
void RequestEnd();
bool EndUnderWay();

/// The waits that are under way, outermost first, for reports.
std::string WhatWaits();

/// Who hears of a run-time fault that no routine's own trap took: the operator's message.
void OnFault(std::function<void(const std::string& text)> report);
/// Reports a fault in that way.
void ReportFault(const std::string& text);

/// The end that was under way is over: a further start of the program in the same process, with
/// what the outside world has queued.
void ForgetEnd();
/// Back to the state before the first yield, the queue emptied; for tests and for `main`.
void ResetYield();

/// Events handed out in one yield at most.
constexpr int kEventsPerYield = 64;

}  // namespace penlog
