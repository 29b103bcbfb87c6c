// Texts that go out on a serial port with pauses between them, beside all else that happens: the
// pauses are ticks of a timer, so that nobody waits and a row that is due in them is taken.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "platform/serial_port.h"
#include "platform/timer.h"

namespace penlog {

/// One text and the pauses behind it, of two ticks of 55 ms each.
struct PacedText {
  std::string bytes;
  int pauses = 0;
  bool operator==(const PacedText&) const = default;
};

class PacedOutput {
 public:
  explicit PacedOutput(std::string name);

  /// Sends the texts in turn; what was under way is dropped. A port that is closed or vanishes
  /// meanwhile takes nothing more. The port must stand until the end or a `Drop`.
  void Send(SerialPort& port, std::vector<PacedText> texts);
  /// Texts or pauses are still to come.
  bool Busy() const { return timer_.Running(); }
  /// Forgets what has not been sent.
  void Drop();

 private:
  void SendUpToAPause();
  void Tick();

  Timer timer_;
  SerialPort* port_ = nullptr;
  std::vector<PacedText> texts_;
  std::size_t next_ = 0;
  int ticks_ = 0;  ///< of the pause under way that are still to come
};

}  // namespace penlog
