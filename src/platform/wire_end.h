// The far end of a serial wire, where a simulated instrument sits: in virtual time, on a pty, or
// behind a network server. The counterpart of `PortDriver`.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/port_driver.h"

namespace penlog {

class WireEnd {
 public:
  virtual ~WireEnd() = default;

  /// Sends bytes to the console; they arrive now. The pace of the line is the sender's affair.
  virtual void Send(std::string_view bytes) = 0;
  /// Sets the three lines that the console reads. Each line that changes is an edge of its own,
  /// in the order CTS, DSR, CD.
  virtual void SetLines(ModemLines lines) = 0;
  virtual ModemLines Lines() const = 0;
  /// Plugs the adapter in or out: while it is out the port does not exist for the console.
  virtual void SetPresent(bool present) = 0;
  virtual bool Present() const = 0;
  /// The next edge is swallowed: the line changes, and no event tells of it.
  virtual void LoseNextEdge() = 0;

  /// What the console does. All run inside a yield.
  std::function<void(std::string_view bytes)> OnBytes;
  std::function<void(bool on)> OnBreak;
  std::function<void(bool dtr, bool rts)> OnOutputs;
  /// The console opened (with its settings) or closed the port.
  std::function<void(const PortSettings& settings)> OnOpened;
  std::function<void()> OnClosed;
};

}  // namespace penlog
