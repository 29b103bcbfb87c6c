// A truck interface that sends edges as fast as its connection takes them, behind a network server
// in a process of its own: the console then has a processor core for itself.
#pragma once

#include <QProcess>

namespace penlog {

/// The far end: prints its TCP port, waits until the console raises RTS, and sends `edges` edges of
/// an encoder that goes down. Ends when the console hangs up.
int RunFlood(long edges);

/// Starts the far end.
class EdgeFlood {
 public:
  explicit EdgeFlood(long edges);
  ~EdgeFlood();
  EdgeFlood(const EdgeFlood&) = delete;
  EdgeFlood& operator=(const EdgeFlood&) = delete;

  /// TCP port of its server; 0 if it didn't start.
  int Port() const { return port_; }

 private:
  QProcess process_;
  int port_ = 0;
};

}  // namespace penlog
