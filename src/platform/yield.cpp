#include "platform/yield.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <vector>

#include "platform/clock.h"
#include "platform/runtime_fault.h"

namespace penlog {

namespace {

struct YieldState {
  bool ending = false;
  int refusals = 0;        // one after another
  int quick_handlers = 0;  // handlers of ticks, bytes and edges on the stack
  std::int64_t wait_count = 0;
  std::vector<const char*> waits;
  std::function<void(const std::string&)> report;
};

YieldState state;

constexpr int kRefusalLimit = 1000;

bool MustBeQuick(EventKind kind) {
  return kind == EventKind::SerialInput || kind == EventKind::ModemEdge ||
         kind == EventKind::PortState || kind == EventKind::Tick;
}

struct QuickGuard {
  explicit QuickGuard(bool quick) : quick_(quick) { state.quick_handlers += quick_ ? 1 : 0; }
  ~QuickGuard() { state.quick_handlers -= quick_ ? 1 : 0; }
  QuickGuard(const QuickGuard&) = delete;
  QuickGuard& operator=(const QuickGuard&) = delete;

 private:
  bool quick_;
};

struct WaitGuard {
  explicit WaitGuard(const char* what) { state.waits.push_back(what); }
  ~WaitGuard() { state.waits.pop_back(); }
  WaitGuard(const WaitGuard&) = delete;
  WaitGuard& operator=(const WaitGuard&) = delete;
};

void HandOut(const Event& event) {
  TheClock().Handed(event);
  QuickGuard guard(MustBeQuick(event.kind));
  try {
    event.target->Handle(event);
  } catch (const std::exception& fault) {
    // Any fault, not only a RuntimeFault: a sounding must outlive a mistake in one handler.
    ReportFault(fault.what());
  }
}

void ThrowIfEnding() {
  if (state.ending) throw ProgramEnd{};
}

/// Throwing here would terminate, so the yield returns; a loop that waits would then spin for
/// ever and is stopped.
void Refuse() {
  std::fputs("penlog: a yield was refused while an exception was in flight\n", stderr);
  if (++state.refusals > kRefusalLimit) std::abort();
}

/// False when the yield must not run: an exception is on its way through a destructor.
bool MayYield() {
  if (std::uncaught_exceptions() > 0) {
    Refuse();
    return false;
  }
  state.refusals = 0;
  ThrowIfEnding();
  if (state.quick_handlers > 0) throw RuntimeFault("A handler of ticks, bytes or edges yielded");
  return true;
}

int RunDue() {
  TheClock().Collect();
  ThrowIfEnding();  // a signal or a closed window may have asked for it just now
  int ran = 0;
  Event event;
  const Micros now = Now();
  while (ran < kEventsPerYield && TheQueue().TakeDue(now, event)) {
    ++ran;
    HandOut(event);
    ThrowIfEnding();
  }
  return ran;
}

}  // namespace

void Yield() {
  if (MayYield()) RunDue();
}

void WaitYield(const char* what) {
  if (!MayYield()) return;
  ++state.wait_count;
  WaitGuard guard(what);
  if (RunDue() > 0) return;
  TheClock().SleepUntil(TheQueue().NextTime());
  RunDue();
}

std::int64_t WaitCount() {
  return state.wait_count;
}

void EndProgram() {
  state.ending = true;
  throw ProgramEnd{};
}

void RequestEnd() {
  state.ending = true;
}

bool EndUnderWay() {
  return state.ending;
}

std::string WhatWaits() {
  std::string text;
  for (const char* wait : state.waits) text += (text.empty() ? "" : " > ") + std::string(wait);
  return text;
}

void OnFault(std::function<void(const std::string&)> report) {
  state.report = std::move(report);
}

void ReportFault(const std::string& text) {
  const auto report = state.report;  // it may be replaced meanwhile
  if (report) {
    report(text);
  } else {
    std::fprintf(stderr, "penlog: %s\n", text.c_str());
  }
}

void ForgetEnd() { state.ending = false; }

void ResetYield() {
  state = YieldState{};
  TheQueue().Clear();
  DropAllCalls();
}

}  // namespace penlog
