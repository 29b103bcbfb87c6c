// The end of a connection to a network server: nobody waits for it but the end of the program.
#pragma once

#include <QTcpSocket>
#include <memory>

#include "platform/event_queue.h"

namespace penlog {

/// Keeps a socket to which the last has been written. What is on its way goes out, then the end of
/// our sending; the server's own end tells that it has taken all in. An end at once would lose the
/// falling outputs. After 200 ms it is over in any case.
class Rfc2217Farewell {
 public:
  /// The socket has no connections of its signals any more.
  Rfc2217Farewell(std::unique_ptr<QTcpSocket> socket, Micros now);
  ~Rfc2217Farewell();
  Rfc2217Farewell(const Rfc2217Farewell&) = delete;
  Rfc2217Farewell& operator=(const Rfc2217Farewell&) = delete;

  /// Does what can be done now, and never waits; true once the server may be connected to again.
  bool Over(Micros now);
  /// Waits until it is over; the event loop isn't needed.
  void Wait();

 private:
  void EndOwnSide();
  bool Gone() const;

  std::unique_ptr<QTcpSocket> socket_;
  Micros until_;
  bool told_ = false;  // the end of our sending
};

}  // namespace penlog
