#include "platform/qt/rfc2217_farewell.h"

#include <QElapsedTimer>
#include <utility>

#include "platform/qt/socket_options.h"

namespace penlog {

namespace {

constexpr int kLimitMs = 200;

}  // namespace

Rfc2217Farewell::Rfc2217Farewell(std::unique_ptr<QTcpSocket> socket, Micros now)
    : socket_(std::move(socket)), until_(now + kLimitMs * kMillisecond) {
  EndOwnSide();
}

Rfc2217Farewell::~Rfc2217Farewell() {
  socket_->abort();
}

bool Rfc2217Farewell::Gone() const {
  return socket_->state() != QAbstractSocket::ConnectedState;
}

void Rfc2217Farewell::EndOwnSide() {
  if (told_ || socket_->bytesToWrite() > 0) return;
  EndSending(*socket_);
  told_ = true;
}

bool Rfc2217Farewell::Over(Micros now) {
  EndOwnSide();
  socket_->readAll();
  return Gone() || now >= until_;
}

void Rfc2217Farewell::Wait() {
  QElapsedTimer since;
  since.start();
  const auto left = [&since] { return static_cast<int>(kLimitMs - since.elapsed()); };
  while (!Gone() && socket_->bytesToWrite() > 0 && left() > 0 &&
         socket_->waitForBytesWritten(left())) {
  }
  EndOwnSide();
  while (!Gone() && left() > 0 && socket_->waitForReadyRead(left())) socket_->readAll();
}

}  // namespace penlog
