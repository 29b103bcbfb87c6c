#include "platform/qt/rfc2217_ports.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QNetworkProxy>
#include <QTimer>
#include <algorithm>

#include "platform/runtime_fault.h"

namespace penlog {

namespace {

constexpr Micros kTrialEvery = 2 * kSecond;
constexpr Micros kTrialLimit = 1500 * kMillisecond;
constexpr Micros kRemembered = 5 * kSecond;
constexpr int kFirstTrialMs = 300;

}  // namespace

// The poll also keeps sleeps short, so that an opening's time limit is seen without any timer.
Rfc2217Ports::Rfc2217Ports(RealClock& clock)
    : clock_(clock), poll_(clock.io().OnCollect([this] { Poll(); })) {}

Rfc2217Ports::~Rfc2217Ports() {
  clock_.io().Unwatch(poll_);
  for (auto& [key, server] : servers_) {
    if (server.state->farewell) server.state->farewell->Wait();
  }
}

Rfc2217Ports::Server& Rfc2217Ports::Find(const NetworkAddress& address) {
  Server& server = servers_[Key(address.host, address.port)];
  if (server.address.port == 0) {
    server.address = address;
    BeginTrial(server);
    first_wait_left_ms_ = kFirstTrialMs;
  }
  return server;
}

void Rfc2217Ports::SetServers(const std::vector<NetworkAddress>& servers) {
  std::erase_if(servers_, [&servers](const auto& entry) {
    const Server& server = entry.second;
    return !server.state->in_use && !server.state->farewell &&
           std::find(servers.begin(), servers.end(), server.address) == servers.end();
  });
  for (const auto& address : servers) Find(address);
}

bool Rfc2217Ports::Exists(const NetworkAddress& address) {
  Server& server = Find(address);
  const ServerState& state = *server.state;
  if (state.standing) return true;
  if (!server.tried) WaitForFirstTrial(server);
  return state.reached && clock_.Now() - state.reached_at <= kRemembered;
}

std::unique_ptr<PortDriver> Rfc2217Ports::Open(const NetworkAddress& address,
                                               const PortSettings& settings, PortSink& sink) {
  Server& server = Find(address);
  if (server.state->in_use) {
    throw RuntimeFault("rfc2217://" + address.host + ":" + std::to_string(address.port) +
                       " is in use");
  }
  server.trial.reset();  // a server may serve one client alone
  return std::make_unique<Rfc2217Client>(clock_, address, settings, sink, server.state);
}

void Rfc2217Ports::Poll() {
  for (auto& entry : servers_) {
    Server& server = entry.second;
    auto& farewell = server.state->farewell;
    if (farewell && farewell->Over(clock_.Now())) farewell.reset();
    if (server.trial) {
      WatchTrial(server);
    } else if (!server.state->held && !farewell && clock_.Now() >= server.next_trial) {
      BeginTrial(server);
    }
  }
}

void Rfc2217Ports::BeginTrial(Server& server) {
  server.trial = std::make_unique<QTcpSocket>();
  server.trial->setProxy(QNetworkProxy::NoProxy);
  server.trial_began = clock_.Now();
  server.next_trial = clock_.Now() + kTrialEvery;
  server.trial->connectToHost(QString::fromStdString(server.address.host),
                              static_cast<quint16>(server.address.port));
}

void Rfc2217Ports::WatchTrial(Server& server) {
  const auto socket = server.trial->state();
  if (socket == QAbstractSocket::ConnectedState) {
    EndTrial(server, true);
  } else if (socket == QAbstractSocket::UnconnectedState) {
    EndTrial(server, false);
  } else if (clock_.Now() - server.trial_began > kTrialLimit) {
    server.tried = true;
    server.trial.reset();  // silence proves nothing: what was reached is remembered for a while
  }
}

void Rfc2217Ports::EndTrial(Server& server, bool reached) {
  server.tried = true;
  server.trial->abort();
  server.trial.reset();
  server.state->reached = reached;
  server.state->reached_at = clock_.Now();
}

// Pumps the event loop, which only fills the queue; nothing of ours is dispatched.
void Rfc2217Ports::WaitForFirstTrial(Server& server) {
  QElapsedTimer since;
  since.start();
  QTimer alarm;
  alarm.start(10);
  for (;;) {
    if (server.trial) WatchTrial(server);
    if (server.tried || since.elapsed() >= first_wait_left_ms_) break;
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                    QEventLoop::WaitForMoreEvents);
  }
  server.tried = true;
  first_wait_left_ms_ = std::max<qint64>(0, first_wait_left_ms_ - since.elapsed());
}

}  // namespace penlog
