#include "rig/truck_lines.h"

#include <algorithm>
#include <utility>

#include "platform/clock.h"

namespace penlog {

namespace {

constexpr Micros kFlipTime = 200;

std::int64_t LineBits(ModemLines lines) {
  return (lines.cts ? 1 : 0) + (lines.dsr ? 2 : 0) + (lines.cd ? 4 : 0);
}

}  // namespace

TruckLines::TruckLines(const TruckSetup& setup, RigFaults& faults, RigLog& log)
    : has_pressure_(setup.counter == CounterType::Proximity && setup.pressure_switch),
      faults_(faults),
      log_(log),
      counter_(setup.counter, setup.direction, ToNanometres(setup.resolution)) {
  lines_.dsr = true;
}

TruckLines::~TruckLines() {
  DropCalls(this);
}

void TruckLines::Attach(WireEnd* wire) {
  wire_ = wire;
  if (wire_ != nullptr) wire_->SetLines(lines_);
}

void TruckLines::Send(ModemLines lines, std::string note) {
  lines_ = lines;
  if (wire_ != nullptr) wire_->SetLines(lines_);
  log_.Add({Now(), RigLogKind::Edge, LineBits(lines_), depth ? depth() : 0.0, 0, std::move(note)});
}

void TruckLines::SendCounter() {
  ModemLines lines = counter_.Lines(lines_);
  if (flipped_) lines.cd = !lines.cd;
  if (lines == lines_) return;
  const bool lost = faults_.Strikes(FaultName::EdgeLost, Now());
  if (lost && wire_ != nullptr) wire_->LoseNextEdge();
  Send(lines, lost ? "lost" : "");
}

void TruckLines::MoveTo(Nanometres position, bool down) {
  while (down ? counter_.NextDown() <= position : counter_.NextUp() >= position) {
    down ? counter_.PassDown() : counter_.PassUp();
    SendCounter();
  }
}

Nanometres TruckLines::NextChange(Nanometres position, bool down) const {
  return down ? std::min(position, counter_.NextDown()) : std::max(position, counter_.NextUp());
}

void TruckLines::SetClamp(bool closed) {
  if (lines_.dsr == closed) return;
  ModemLines lines = lines_;
  lines.dsr = closed;
  Send(lines, closed ? "clamp" : "open");
}

bool TruckLines::SetPressure(bool on) {
  if (!has_pressure_) return false;
  if (lines_.cts == on) return true;
  ModemLines lines = lines_;
  lines.cts = on;
  Send(lines, on ? "pressure" : "no pressure");
  return true;
}

void TruckLines::Chatter(int pairs) {
  Flip(2 * pairs);
}

void TruckLines::Flip(int left) {
  if (left <= 0) return;
  flipped_ = !flipped_;
  SendCounter();
  PostCall(Now() + kFlipTime, this, [this, left] { Flip(left - 1); });
}

}  // namespace penlog
