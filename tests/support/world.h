// The console's surroundings for a test: virtual time, a disk and ports in memory, all state
// cleared. Declare one at the head of a test or as a fixture's member.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "forms/operator_actions.h"
#include "platform/boxes.h"
#include "platform/host.h"
#include "platform/memory_disk.h"
#include "platform/serial_port.h"
#include "platform/virtual_clock.h"
#include "platform/virtual_ports.h"
#include "platform/yield.h"

namespace penlog {

struct World {
  explicit World(WallTime start = {2026, 6, 15, 9, 30, 0, 0}, std::uint32_t seed = 1)
      : clock(start, seed) {
    ResetYield();
    ResetBoxes();
    UseClock(&clock);
    UseDisk(&disk);
    UsePorts(&ports);
    UseHost(&host);
    ResetActions();
    ResetForms();
  }
  ~World() {
    SerialPort::CloseAll();  // while their wires and the clock still stand
    ResetYield();
    ResetBoxes();
    ResetActions();
    ResetForms();
  }
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  /// Lets virtual time pass.
  static void RunFor(Micros time) {
    bool over = false;
    PostCall(Now() + time, &over, [&over] { over = true; });
    while (!over) WaitYield("a test's time");
  }

  /// Presses a control as the operator does, and serves it.
  static void Press(Form& form, Control& control) {
    OperatorAction action;
    action.form = &form;
    action.control = &control;
    PostActionNow(action);
    Yield();
  }

  VirtualClock clock;
  MemoryDisk disk;
  VirtualPorts ports;
  VirtualHost host;
};

}  // namespace penlog
