#include "platform/qt/rfc2217_client.h"

#include <QNetworkProxy>
#include <utility>

#include "platform/qt/socket_options.h"
#include "platform/runtime_fault.h"

namespace penlog {

namespace {

constexpr std::size_t kChunk = 2048;
constexpr std::size_t kReadPerCollect = 16 * 1024;
constexpr qint64 kReadBuffer = 16 * 1024;
constexpr qint64 kUnsentLimit = 256 * 1024;
constexpr unsigned kAllSettings = 0b1111;
// A server that serves one client closes on a second one, also on one that comes while the first
// is still going: worth another try.
constexpr Micros kRetryFor = 1500 * kMillisecond;
constexpr Micros kRetryAfter = 150 * kMillisecond;

std::string SettingsText(const PortSettings& settings) {
  return std::to_string(settings.baud) + "," + settings.parity + "," +
         std::to_string(settings.data_bits) + "," + std::to_string(settings.stop_bits);
}

std::string ValueOf(std::uint8_t command, const PortSettings& settings) {
  switch (command) {
    case kComSetBaud:
      return BaudValue(static_cast<std::uint32_t>(settings.baud));
    case kComSetDataSize:
      return {static_cast<char>(settings.data_bits)};
    case kComSetParity:
      return {static_cast<char>(ParityValue(settings.parity))};
    default:
      return {static_cast<char>(settings.stop_bits)};
  }
}

}  // namespace

Rfc2217Client::Rfc2217Client(RealClock& clock, NetworkAddress address, const PortSettings& settings,
                             PortSink& sink, std::shared_ptr<ServerState> state)
    : clock_(clock),
      address_(std::move(address)),
      settings_(settings),
      sink_(sink),
      state_(std::move(state)),
      first_try_(clock.Now()) {
  state_->in_use = state_->held = true;
  socket_->setProxy(QNetworkProxy::NoProxy);
  socket_->setReadBufferSize(kReadBuffer);
  QObject::connect(socket_.get(), &QTcpSocket::connected, socket_.get(), [this] { OnConnected(); });
  QObject::connect(socket_.get(), &QTcpSocket::disconnected, socket_.get(),
                   [this] { disconnected_ = true; });
  QObject::connect(socket_.get(), &QTcpSocket::errorOccurred, socket_.get(),
                   [this](QAbstractSocket::SocketError error) {
                     if (error != QAbstractSocket::SocketTimeoutError) disconnected_ = true;
                   });
  reader_ = clock_.AddReader([this] { Read(); });
  Connect();
}

Rfc2217Client::~Rfc2217Client() {
  clock_.RemoveReader(reader_);
  QObject::disconnect(socket_.get(), nullptr, socket_.get(), nullptr);
  if (Open()) {
    SayGoodbye();
  } else {
    socket_->abort();
  }
  if (state_->standing) {
    state_->reached = true;
    state_->reached_at = clock_.Now();
  }
  state_->in_use = state_->held = state_->standing = false;
}

void Rfc2217Client::Connect() {
  stage_ = Stage::Connecting;
  disconnected_ = false;
  // A server of one client must have let the last one go.
  if (state_->farewell && !state_->farewell->Over(clock_.Now())) {
    retry_at_ = clock_.Now();
    return;
  }
  state_->farewell.reset();
  retry_at_ = 0;
  acknowledged_ = 0;
  notices_ = {};
  parser_.Reset();
  socket_->connectToHost(QString::fromStdString(address_.host),
                         static_cast<quint16>(address_.port));
}

void Rfc2217Client::OnConnected() {
  stage_ = Stage::Negotiating;
  state_->standing = true;
  NoDelayAndKeepAlive(*socket_);
  options_ = TelnetOptions(TelnetOptions::Role::Client);
  Send(options_.Opening());
}

// What arrived before the connection broke is still read.
void Rfc2217Client::Read() {
  if (retry_at_ != 0 && clock_.Now() >= retry_at_) Connect();
  std::size_t taken = 0;
  char chunk[kChunk];
  while (socket_->isOpen() && taken < kReadPerCollect && TheQueue().Backlog() <= kBacklogLimit) {
    const qint64 got = socket_->read(chunk, kChunk);
    if (got <= 0) break;
    taken += static_cast<std::size_t>(got);
    Parse(std::string_view(chunk, static_cast<std::size_t>(got)));
  }
  if (disconnected_ && retry_at_ == 0 && socket_->bytesAvailable() == 0) OnDisconnected();
}

void Rfc2217Client::Parse(std::string_view bytes) {
  const std::string_view dropped = bytes.substr(0, discard_);
  parser_.Feed(dropped);
  discard_ -= dropped.size();
  parser_.Feed(bytes.substr(dropped.size()));
}

void Rfc2217Client::OnDisconnected() {
  const bool was_connected = stage_ == Stage::Negotiating || stage_ == Stage::Setting;
  if (stage_ == Stage::Ready) {
    Lose();
  } else if (was_connected && clock_.Now() - first_try_ < kRetryFor) {
    retry_at_ = clock_.Now() + kRetryAfter;
    state_->standing = false;
    socket_->abort();
  } else if (was_connected) {
    Fail("the server closed the connection");
  } else if (stage_ == Stage::Connecting) {
    Fail(socket_->errorString().toStdString());
  }
}

void Rfc2217Client::Fail(const std::string& reason) {
  failure_ = "rfc2217://" + address_.host + ":" + std::to_string(address_.port) + ": " + reason;
  stage_ = Stage::Failed;
  state_->held = state_->standing = false;
  socket_->abort();
}

void Rfc2217Client::Lose() {
  stage_ = Stage::Gone;
  state_->held = state_->standing = state_->reached = false;
  socket_->abort();
  sink_.Vanished();
}

bool Rfc2217Client::Ready() const {
  if (stage_ == Stage::Failed) throw RuntimeFault(failure_);
  return stage_ == Stage::Ready || stage_ == Stage::Gone;
}

void Rfc2217Client::TakeData(std::string_view bytes) {
  if (discard_ == 0 && stage_ == Stage::Ready) sink_.Received(std::string(bytes));
}

void Rfc2217Client::TakeNegotiation(std::uint8_t verb, std::uint8_t option) {
  Send(options_.Answer(verb, option));
  if (stage_ != Stage::Negotiating) return;
  if (options_.ComPortAgreed()) {
    SendSettings();
  } else if (options_.ComPortRefused()) {
    Fail("the server offers no control of its serial port");
  }
}

// The mask goes first, so that a server's first notification comes before the answers and the
// lines are known when the port is open.
void Rfc2217Client::SendSettings() {
  stage_ = Stage::Setting;
  std::string wire = ComPortMessage(kComSetModemStateMask, kModemMask);
  for (const auto control : {kControlNoFlow, kControlDtrOff, kControlRtsOff}) {
    wire += ComPortMessage(kComSetControl, control);
  }
  for (std::uint8_t command = kComSetBaud; command <= kComSetStopSize; ++command) {
    wire += ComPortMessage(command, ValueOf(command, settings_));
  }
  Send(wire);
}

void Rfc2217Client::TakeComPort(std::uint8_t command, std::string_view value) {
  if (command < kComFromServer) return;
  const auto asked = static_cast<std::uint8_t>(command - kComFromServer);
  if (asked == kComNotifyModemState && value.size() == 1) {
    TakeModemState(static_cast<std::uint8_t>(value[0]));
  } else if (asked == kComFlowSuspend) {
    suspended_ = true;
  } else if (asked == kComFlowResume) {
    suspended_ = false;
    Send(std::exchange(held_output_, {}));
  } else if (stage_ == Stage::Setting) {
    TakeAnswer(asked, value);
  }
}

void Rfc2217Client::TakeAnswer(std::uint8_t command, std::string_view value) {
  if (command < kComSetBaud || command > kComSetStopSize) return;
  if (value != ValueOf(command, settings_)) {
    Fail("the server refuses \"" + SettingsText(settings_) + "\"");
    return;
  }
  acknowledged_ |= 1u << (command - kComSetBaud);
  if (acknowledged_ == kAllSettings) BecomeReady();
}

void Rfc2217Client::BecomeReady() {
  stage_ = Stage::Ready;
  opening_lines_ = notices_.Lines();
  if (notices_.Known()) sink_.LinesKnown(opening_lines_);
}

void Rfc2217Client::TakeModemState(std::uint8_t modem_state) {
  if (stage_ != Stage::Ready) {
    notices_.TakeAtOpening(modem_state);
    return;
  }
  const ModemNotice notice = notices_.Take(modem_state);
  if (notice.known) sink_.LinesKnown(notice.known_lines);
  if (notice.lost > 0) sink_.EdgesLost(notice.lost);
  if (notice.edge) sink_.LinesChanged(notice.lines);
}

void Rfc2217Client::Send(std::string_view wire) {
  if (wire.empty() || socket_->state() != QAbstractSocket::ConnectedState) return;
  socket_->write(wire.data(), static_cast<qint64>(wire.size()));
  socket_->flush();
  // A server that takes nothing for so long has hung; bytes are never dropped silently.
  if (socket_->bytesToWrite() > kUnsentLimit) disconnected_ = true;
}

void Rfc2217Client::Write(std::string_view bytes) {
  if (stage_ != Stage::Ready) return;
  if (!suspended_) {
    Send(TelnetData(bytes));
  } else if (static_cast<qint64>(held_output_.size()) < kUnsentLimit) {
    held_output_ += TelnetData(bytes);
  } else {
    disconnected_ = true;
  }
}

void Rfc2217Client::Control(std::uint8_t control) {
  if (Open()) Send(ComPortMessage(kComSetControl, control));
}

void Rfc2217Client::SetBreak(bool on) {
  break_ = on;
  Control(on ? kControlBreakOn : kControlBreakOff);
}

void Rfc2217Client::SetDtr(bool on) {
  Control(on ? kControlDtrOn : kControlDtrOff);
}

void Rfc2217Client::SetRts(bool on) {
  Control(on ? kControlRtsOn : kControlRtsOff);
}

// Notifications among the bytes that wait stay: only the data between them are dropped.
void Rfc2217Client::DiscardInput() {
  if (!Open() || socket_->state() != QAbstractSocket::ConnectedState) return;
  socket_->waitForReadyRead(0);  // takes in what the system holds, without waiting
  discard_ = static_cast<std::size_t>(socket_->bytesAvailable());
  Send(ComPortMessage(kComPurge, std::uint8_t{1}));
}

void Rfc2217Client::DiscardOutput() {
  held_output_.clear();
  if (Open()) Send(ComPortMessage(kComPurge, std::uint8_t{2}));
}

void Rfc2217Client::SayGoodbye() {
  if (break_) Control(kControlBreakOff);
  Control(kControlDtrOff);
  Control(kControlRtsOff);
  state_->farewell = std::make_unique<Rfc2217Farewell>(std::move(socket_), clock_.Now());
}

}  // namespace penlog
