#include "conelink/comm_tick.h"

#include "core/error_trap.h"
#include "platform/serial_port.h"
#include "platform/yield.h"

namespace penlog {

namespace {

constexpr std::int16_t kIdleAbove = 1000;
constexpr int kPauseTicks = 3;

}  // namespace

void CountCommTick(std::int16_t& comm_tick) {
  if (comm_tick > 0) ++comm_tick;
  if (comm_tick > kIdleAbove) comm_tick = 0;
}

bool TicksOver(const std::int16_t& comm_tick, int limit) {
  return comm_tick >= limit || comm_tick == 0;
}

void CommPause(std::int16_t& comm_tick, int times) {
  for (int i = 0; i < times; ++i) {
    comm_tick = 1;
    while (!TicksOver(comm_tick, kPauseTicks)) WaitYield("a pause on the cone's link");
    comm_tick = 0;
  }
}

void CommBreak(SerialPort& port, std::int16_t& comm_tick, bool open_first) {
  if (open_first) Trapped([&] { port.Open(); });
  Trapped([&] { port.SetBreak(true); });
  CommPause(comm_tick, 4);
  Trapped([&] { port.SetBreak(false); });
  CommPause(comm_tick, 2);
  Trapped([&] { port.Close(); });
  Trapped([&] { port.Open(); });
}

}  // namespace penlog
