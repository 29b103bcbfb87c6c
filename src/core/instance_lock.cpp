#include "core/instance_lock.h"

#include <string>

#include "core/data_directory.h"
#include "core/message.h"
#include "core/session.h"
#include "core/start_up_buttons.h"
#include "forms/start_up_form.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/yield.h"

namespace penlog {

namespace {

constexpr Micros kWait = 10 * kSecond;
constexpr const char* kLockName = "penlog.lock";

bool Locked() {
  return TheDisk().Lock(DataPath(kLockName));
}

/// The timer's ticks are what the wait wakes up on.
bool LockedWithin(Micros wait) {
  const Micros until = Now() + wait;
  while (!Locked()) {
    if (Now() >= until) return false;
    WaitYield("another console to end");
  }
  return true;
}

}  // namespace

void TakeInstanceLock() {
  if (Locked()) return;
  BeginStatus("ANOTHER PENLOG IS RUNNING. WAITING FOR IT TO END");
  Show(StartUp);
  const bool locked = LockedWithin(kWait);
  EndStatus();
  EnableEveryButton();
  if (locked) return;
  Tell("PENLOG IS ALREADY RUNNING WITH THE DATA DIRECTORY " + session.DataDirectory +
       ".  THIS SECOND ONE ENDS.");
  EndProgram();
}

void ReleaseInstanceLock() {
  TheDisk().Unlock(DataPath(kLockName));
}

}  // namespace penlog
