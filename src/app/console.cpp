#include "app/console.h"

#include <string>

#include "app/wiring.h"
#include "core/instance_lock.h"
#include "forms/form.h"
#include "forms/start_up_form.h"
#include "platform/boxes.h"
#include "platform/runtime_fault.h"
#include "platform/yield.h"
#include "sounding/held_rows.h"

namespace penlog {

namespace {

/// A fault that no routine took is told once, not again for each pass of a loop that meets it.
void TellFault(const std::string& text) {
  const std::string message = "RUN-TIME FAULT: " + text;
  for (const auto& box : OpenBoxes()) {
    if (box.text == message) return;
  }
  PostBox(message);
}

/// What its load could not cope with is told; the operator then has the screen as far as it came.
void ShowFirstScreen() {
  try {
    Show(StartUp);
  } catch (const RuntimeFault& fault) {
    TellFault(fault.what());
    Show(StartUp);
  }
}

/// Rows and marks that stand in memory alone go with the program.
void TryHeldOnceMore() {
  try {
    WriteAllHeld();
  } catch (const ProgramEnd&) {
    return;  // the disk has ended with it
  }
}

}  // namespace

void RunConsole(const std::function<void()>& at_end) {
  OnFault(TellFault);
  WireScreens();
  try {
    ShowFirstScreen();
    for (;;) WaitYield("the operator");
  } catch (const ProgramEnd&) {
    TryHeldOnceMore();
    if (at_end) at_end();
    // Unloading stops the timers, lowers the output lines and closes the ports.
    ResetForms();
    ResetBoxes();
    ReleaseInstanceLock();
  }
}

}  // namespace penlog
