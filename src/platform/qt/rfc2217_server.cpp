#include "platform/qt/rfc2217_server.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <cstddef>
#include <utility>

#include "platform/qt/socket_options.h"
#include "platform/runtime_fault.h"

namespace penlog {

namespace {

constexpr std::size_t kReadPerCollect = 16 * 1024;
constexpr std::int64_t kUnsentLimit = 64 * 1024 * 1024;
constexpr unsigned kAllSettings = 0b1111;
constexpr std::uint8_t kLineStateIdle = 0x60;  // nothing left to send
constexpr std::string_view kSignatureText = "simulated port";

ModemLines Either(ModemLines a, ModemLines b) {
  return {a.cts || b.cts, a.dsr || b.dsr, a.cd || b.cd};
}

std::uint8_t FirstByte(std::string_view value) {
  return value.empty() ? std::uint8_t{0} : static_cast<std::uint8_t>(value[0]);
}

}  // namespace

Rfc2217Server::Rfc2217Server(RealClock& clock, int port)
    : clock_(clock), reader_(clock.AddReader([this] { Read(); })), port_(port) {
  listener_.setProxy(QNetworkProxy::NoProxy);
  QObject::connect(&listener_, &QTcpServer::newConnection, &listener_,
                   [this] { TakeConnection(); });
  Listen();
}

Rfc2217Server::~Rfc2217Server() {
  clock_.RemoveReader(reader_);
  client_.reset();
  DropCalls(this);
}

void Rfc2217Server::Listen() {
  if (!listener_.listen(QHostAddress::LocalHost, static_cast<quint16>(port_))) {
    throw RuntimeFault("Port " + std::to_string(port_) +
                       " can't be served: " + listener_.errorString().toStdString());
  }
  port_ = listener_.serverPort();
}

void Rfc2217Server::SetPresent(bool present) {
  if (present == Present()) return;
  if (present) {
    Listen();
  } else {
    listener_.close();
    Drop();
  }
}

void Rfc2217Server::TakeConnection() {
  while (listener_.hasPendingConnections()) {
    std::unique_ptr<QTcpSocket> client(listener_.nextPendingConnection());
    client->setParent(nullptr);  // ours alone
    if (HasClient()) {
      client->abort();
    } else {
      Drop();
      Serve(std::move(client));
    }
  }
}

void Rfc2217Server::Serve(std::unique_ptr<QTcpSocket> client) {
  client_ = std::move(client);
  NoDelayAndKeepAlive(*client_);
  options_ = TelnetOptions(TelnetOptions::Role::Server);
  parser_.Reset();
  settings_ = {};
  set_ = 0;
  mask_ = 0;
  untold_ = {};
  suspended_ = false;
  held_.clear();
  SendWire(options_.Opening());
}

void Rfc2217Server::Read() {
  std::size_t taken = 0;
  char chunk[4096];
  while (client_ && taken < kReadPerCollect) {
    const qint64 got = client_->read(chunk, sizeof chunk);
    if (got <= 0) break;
    taken += static_cast<std::size_t>(got);
    parser_.Feed(std::string_view(chunk, static_cast<std::size_t>(got)));
  }
  if (!client_) return;
  client_->flush();
  const bool hung = Unsent() > kUnsentLimit;
  const bool gone = client_->state() != QAbstractSocket::ConnectedState;
  if (hung || (gone && client_->bytesAvailable() == 0)) Drop();
}

void Rfc2217Server::Drop() {
  if (!client_) return;
  client_->abort();
  client_.release()->deleteLater();  // it may be on the stack
  SetBreakState(false);
  const bool outputs = dtr_ || rts_;
  dtr_ = rts_ = false;
  if (outputs) TellOutputs();
  if (!std::exchange(opened_, false)) return;
  Later([this] {
    if (OnClosed) OnClosed();
  });
}

std::int64_t Rfc2217Server::Unsent() const {
  return client_ ? client_->bytesToWrite() : 0;
}

// The reader's flush at the next collect sends all of a yield's messages together.
void Rfc2217Server::SendWire(std::string_view wire) {
  if (client_ && !wire.empty()) client_->write(wire.data(), static_cast<qint64>(wire.size()));
}

void Rfc2217Server::Send(std::string_view bytes) {
  if (!opened_) return;
  if (suspended_) {
    held_ += bytes;
  } else {
    SendWire(TelnetData(bytes));
  }
}

void Rfc2217Server::SetLines(ModemLines lines) {
  SetOne(&ModemLines::cts, lines.cts);
  SetOne(&ModemLines::dsr, lines.dsr);
  SetOne(&ModemLines::cd, lines.cd);
}

void Rfc2217Server::SetOne(bool ModemLines::*line, bool held) {
  if (lines_.*line == held) return;
  lines_.*line = held;
  ModemLines changed;
  changed.*line = true;
  if (std::exchange(lose_next_, false)) {
    untold_ = Either(untold_, changed);
  } else {
    Notify(changed);
  }
}

void Rfc2217Server::Notify(ModemLines changed) {
  const std::uint8_t state = ModemStateByte(lines_, Either(changed, untold_));
  untold_ = {};
  const bool asked = (ModemStateByte({}, changed) & mask_) != 0;
  if (asked) Reply(kComNotifyModemState, static_cast<std::uint8_t>(state & mask_));
}

void Rfc2217Server::Reply(std::uint8_t command, std::string_view value) {
  SendWire(ComPortMessage(static_cast<std::uint8_t>(command + kComFromServer), value));
}

void Rfc2217Server::Reply(std::uint8_t command, std::uint8_t value) {
  const char one = static_cast<char>(value);
  Reply(command, std::string_view(&one, 1));
}

void Rfc2217Server::TakeData(std::string_view bytes) {
  if (!opened_) return;
  Later([this, text = std::string(bytes)] {
    if (OnBytes) OnBytes(text);
  });
}

void Rfc2217Server::TakeNegotiation(std::uint8_t verb, std::uint8_t option) {
  SendWire(options_.Answer(verb, option));
}

void Rfc2217Server::TakeComPort(std::uint8_t command, std::string_view value) {
  switch (command) {
    case kComSignature:
      if (value.empty()) Reply(command, kSignatureText);
      break;
    case kComSetBaud:
    case kComSetDataSize:
    case kComSetParity:
    case kComSetStopSize:
      TakeSetting(command, value);
      break;
    case kComSetControl:
      TakeControl(FirstByte(value));
      break;
    case kComNotifyLineState:
      Reply(command, kLineStateIdle);
      break;
    case kComNotifyModemState:
      Reply(command, ModemStateByte(lines_, {}));
      break;
    case kComFlowSuspend:
      suspended_ = true;
      break;
    case kComFlowResume:
      suspended_ = false;
      SendWire(TelnetData(std::exchange(held_, {})));
      break;
    case kComSetModemStateMask:
      mask_ = FirstByte(value);
      Reply(kComNotifyModemState, static_cast<std::uint8_t>(ModemStateByte(lines_, {}) & mask_));
      untold_ = {};
      [[fallthrough]];
    case kComSetLineStateMask:
    case kComPurge:
      Reply(command, FirstByte(value));
      break;
    default:
      break;
  }
}

// 0 asks; a value outside the range leaves the setting, and the answer tells what stands.
void Rfc2217Server::TakeSetting(std::uint8_t command, std::string_view value) {
  const std::uint8_t byte = FirstByte(value);
  if (command == kComSetBaud) {
    const std::uint32_t baud = BaudOf(value);
    if (baud >= 50 && baud <= 4'000'000) settings_.baud = static_cast<int>(baud);
    Reply(command, BaudValue(static_cast<std::uint32_t>(settings_.baud)));
  } else if (command == kComSetDataSize) {
    if (byte >= 5 && byte <= 8) settings_.data_bits = byte;
    Reply(command, static_cast<std::uint8_t>(settings_.data_bits));
  } else if (command == kComSetParity) {
    if (byte >= 1 && byte <= 5) settings_.parity = ParityOf(byte);
    Reply(command, ParityValue(settings_.parity));
  } else {
    if (byte == 1 || byte == 2) settings_.stop_bits = byte;
    Reply(command, static_cast<std::uint8_t>(settings_.stop_bits));
  }
  set_ |= 1u << (command - kComSetBaud);
  if (set_ != kAllSettings || std::exchange(opened_, true)) return;
  Later([this, settings = settings_] {
    if (OnOpened) OnOpened(settings);
  });
  TellOutputs();
}

void Rfc2217Server::TakeControl(std::uint8_t control) {
  switch (control) {
    case kControlBreakOn:
    case kControlBreakOff:
      SetBreakState(control == kControlBreakOn);
      break;
    case kControlDtrOn:
    case kControlDtrOff:
      SetOutput(dtr_, control == kControlDtrOn);
      break;
    case kControlRtsOn:
    case kControlRtsOff:
      SetOutput(rts_, control == kControlRtsOn);
      break;
    default:
      break;
  }
  Reply(kComSetControl, ControlState(control));
}

/// The answer to a control: the state of what it is about.
std::uint8_t Rfc2217Server::ControlState(std::uint8_t asked) const {
  if (asked < kControlAskBreak) return kControlNoFlow;
  if (asked < kControlAskDtr) return break_ ? kControlBreakOn : kControlBreakOff;
  if (asked < kControlAskRts) return dtr_ ? kControlDtrOn : kControlDtrOff;
  if (asked < kControlAskInboundFlow) return rts_ ? kControlRtsOn : kControlRtsOff;
  return kControlNoInboundFlow;
}

void Rfc2217Server::SetOutput(bool& output, bool on) {
  if (std::exchange(output, on) != on) TellOutputs();
}

void Rfc2217Server::SetBreakState(bool on) {
  if (std::exchange(break_, on) == on) return;
  Later([this, on] {
    if (OnBreak) OnBreak(on);
  });
}

void Rfc2217Server::TellOutputs() {
  Later([this, dtr = dtr_, rts = rts_] {
    if (OnOutputs) OnOutputs(dtr, rts);
  });
}

void Rfc2217Server::Later(std::function<void()> call) {
  PostCall(clock_.Now(), this, std::move(call));
}

}  // namespace penlog
