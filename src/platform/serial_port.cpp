#include "platform/serial_port.h"

#include <algorithm>
#include <limits>
#include <vector>

#include "platform/clock.h"
#include "platform/runtime_fault.h"
#include "platform/yield.h"

namespace penlog {

namespace {

/// What a PortState event tells.
enum PortNews : std::int64_t { kNewsGone, kNewsEdgesLost, kNewsPolled, kNewsLinesKnown };

constexpr Micros kOpeningLimit = 2 * kSecond;

std::vector<SerialPort*>& AllPorts() {
  static std::vector<SerialPort*>& ports = *new std::vector<SerialPort*>;
  return ports;
}

std::uint32_t Pack(ModemLines lines) {
  return (lines.cts ? 1u : 0u) | (lines.dsr ? 2u : 0u) | (lines.cd ? 4u : 0u);
}

ModemLines Unpack(std::uint32_t bits) {
  return {(bits & 1u) != 0, (bits & 2u) != 0, (bits & 4u) != 0};
}

}  // namespace

SerialPort::SerialPort(std::string name) : EventTarget(std::move(name)) {
  AllPorts().push_back(this);
}

SerialPort::~SerialPort() {
  std::erase(AllPorts(), this);
}

void SerialPort::CloseAll() {
  for (SerialPort* port : AllPorts()) port->Close();
}

void SerialPort::ResetAll() {
  for (SerialPort* port : AllPorts()) {
    port->Close();
    port->SetCommPort(1);
    port->SetSettings("9600,N,8,1");
    port->input_len_ = 0;
    port->input_mode_ = InputModes::Text;
    port->edges_lost_ = port->edge_count_ = 0;
    port->edges_polled_ = false;
  }
}

void SerialPort::SetCommPort(int number) {
  if (PortOpen()) throw RuntimeFault(TargetName() + ": the port is open");
  if (number < 0 || number > 255) throw RuntimeFault(TargetName() + ": invalid port number");
  number_ = number;
}

void SerialPort::SetSettings(std::string_view settings) {
  if (PortOpen()) throw RuntimeFault(TargetName() + ": the port is open");
  settings_ = ParsePortSettings(settings);
  settings_text_ = settings;
}

void SerialPort::Open() {
  if (PortOpen()) throw RuntimeFault(TargetName() + ": the port is open already");
  if (number_ < 1) throw RuntimeFault(TargetName() + ": no port number is set");
  gone_ = break_ = dtr_ = rts_ = edges_polled_ = lines_told_ = false;
  edge_count_ = 0;
  input_.clear();
  lines_ = {};
  driver_ = ThePorts().Open(number_, settings_, *this);
  try {
    WaitUntilReady();
  } catch (...) {
    Close();
    throw;
  }
}

void SerialPort::WaitUntilReady() {
  const Micros limit = Now() + kOpeningLimit;
  while (driver_ && !gone_ && !driver_->Ready() && Now() < limit) WaitYield("opening of a port");
  if (!driver_) return;  // closed by a handler meanwhile
  if (gone_ || !driver_->Ready()) {
    throw RuntimeFault(TargetName() + ": COM" + std::to_string(number_) + " did not open");
  }
  if (!lines_told_) lines_ = driver_->Lines();
}

void SerialPort::Close() {
  driver_.reset();
  TheQueue().Drop(this);
  input_.clear();
  dtr_ = rts_ = break_ = false;
}

void SerialPort::ClearInBuffer() {
  input_.clear();
  TheQueue().Drop(this, EventKind::SerialInput);
  if (driver_) driver_->DiscardInput();
}

void SerialPort::ClearOutBuffer() {
  if (driver_) driver_->DiscardOutput();
}

std::string SerialPort::Input() {
  if (input_len_ <= 0 || static_cast<std::size_t>(input_len_) >= input_.size()) {
    return std::exchange(input_, {});
  }
  std::string taken = input_.substr(0, static_cast<std::size_t>(input_len_));
  input_.erase(0, taken.size());
  return taken;
}

void SerialPort::Output(std::string_view bytes) {
  if (driver_ && !gone_) driver_->Write(bytes);
}

void SerialPort::SetBreak(bool on) {
  if (Gone()) throw RuntimeFault(TargetName() + ": the port is not open");
  break_ = on;
  driver_->SetBreak(on);
}

void SerialPort::SetDTREnable(bool on) {
  dtr_ = on;
  if (driver_ && !gone_) driver_->SetDtr(on);
}

void SerialPort::SetRTSEnable(bool on) {
  rts_ = on;
  if (driver_ && !gone_) driver_->SetRts(on);
}

void SerialPort::PostEvent(EventKind kind, std::int64_t number, std::uint32_t lines,
                           std::string text) {
  Event event;
  event.kind = kind;
  event.target = this;
  event.number = number;
  event.lines = lines;
  event.text = std::move(text);
  TheQueue().Post(Now(), std::move(event));
}

void SerialPort::Received(std::string bytes) {
  PostEvent(EventKind::SerialInput, 0, 0, std::move(bytes));
}

void SerialPort::LinesChanged(ModemLines lines) {
  PostEvent(EventKind::ModemEdge, 0, Pack(lines), {});
}

void SerialPort::LinesKnown(ModemLines lines) {
  PostEvent(EventKind::PortState, kNewsLinesKnown, Pack(lines), {});
}

void SerialPort::EdgesLost(std::int64_t count) {
  constexpr std::int64_t kMost = std::numeric_limits<std::uint32_t>::max();
  const auto lost = static_cast<std::uint32_t>(std::clamp<std::int64_t>(count, 0, kMost));
  PostEvent(EventKind::PortState, kNewsEdgesLost, lost, {});
}

void SerialPort::EdgesPolled() {
  PostEvent(EventKind::PortState, kNewsPolled, 0, {});
}

void SerialPort::Vanished() {
  PostEvent(EventKind::PortState, kNewsGone, 0, {});
}

void SerialPort::Handle(const Event& event) {
  if (!driver_) return;
  if (event.kind == EventKind::SerialInput) {
    input_ += event.text;
    Notify(kCommReceive);
  } else if (event.kind == EventKind::ModemEdge) {
    TakeEdge(Unpack(event.lines));
  } else {
    TakeNews(event);
  }
}

void SerialPort::TakeNews(const Event& event) {
  if (event.number == kNewsEdgesLost) {
    edges_lost_ += event.lines;
  } else if (event.number == kNewsPolled) {
    edges_polled_ = true;
  } else if (event.number == kNewsLinesKnown) {
    lines_told_ = true;
    lines_ = Unpack(event.lines);
  } else if (!gone_) {
    gone_ = true;
    Notify(kCommPortGone);
  }
}

void SerialPort::TakeEdge(ModemLines lines) {
  ++edge_count_;
  lines_told_ = true;
  const ModemLines before = lines_;
  lines_ = lines;
  if (lines.cts != before.cts) Notify(kCommCts);
  if (lines.dsr != before.dsr) Notify(kCommDsr);
  if (lines.cd != before.cd) Notify(kCommCd);
}

void SerialPort::Notify(int comm_event) {
  const auto handler = OnComm;  // a handler may replace itself or close the port
  if (handler) handler(comm_event);
}

}  // namespace penlog
