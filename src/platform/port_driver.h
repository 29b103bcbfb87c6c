// The driver's side of a serial port: what an operating system, a network server or the simulated
// rig must offer. `SerialPort` stands on it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace penlog {

/// State of the three input lines that the truck interface uses; true is "held".
struct ModemLines {
  bool cts = false;
  bool dsr = false;
  bool cd = false;
  bool operator==(const ModemLines&) const = default;
};

/// "19200,N,8,1" taken apart: baud, parity N E O M S, data bits 5 to 8, stop bits 1 or 2.
struct PortSettings {
  int baud = 19200;
  char parity = 'N';
  int data_bits = 8;
  int stop_bits = 1;
  bool operator==(const PortSettings&) const = default;
};

/// Raises a `RuntimeFault` for a text that is no port setting.
PortSettings ParsePortSettings(std::string_view text);

/// Where a driver reports. Every call only queues: it may come between two yields.
class PortSink {
 public:
  virtual ~PortSink() = default;
  /// Bytes arrived, in order.
  virtual void Received(std::string bytes) = 0;
  /// One edge: the lines as they are after it. An edge per call, in order.
  virtual void LinesChanged(ModemLines lines) = 0;
  /// The lines became known without an edge (first notification of a network port).
  virtual void LinesKnown(ModemLines lines) = 0;
  /// Counters showed edges that no event told of.
  virtual void EdgesLost(std::int64_t count) = 0;
  /// The adapter can't deliver edge events: its lines are polled.
  virtual void EdgesPolled() = 0;
  /// The port is gone (hang-up, node removed, connection lost). Reported once.
  virtual void Vanished() = 0;
};

/// One open port. Its calls never wait, and after the port vanished they do nothing. The
/// destructor lowers DTR and RTS and closes the port.
class PortDriver {
 public:
  virtual ~PortDriver() = default;
  virtual void Write(std::string_view bytes) = 0;
  virtual void SetBreak(bool on) = 0;
  virtual void SetDtr(bool on) = 0;
  virtual void SetRts(bool on) = 0;
  /// Drops what arrived and was not reported yet, and what was not sent yet.
  virtual void DiscardInput() = 0;
  virtual void DiscardOutput() = 0;
  /// The lines as read at the opening.
  virtual ModemLines Lines() const = 0;
  /// False while the opening is still under way (a network port's settings are not acknowledged).
  /// Raises a `RuntimeFault` with the reason when the opening has failed.
  virtual bool Ready() const { return true; }
};

/// The ports of the machine by COM number, 1 to 255.
class PortSystem {
 public:
  virtual ~PortSystem() = default;
  /// Whether the port exists, open or not, without opening it. All 255 take under 5 ms.
  virtual bool Exists(int number) = 0;
  /// Opens with DTR and RTS false. Raises a `RuntimeFault` when the port is absent, in use or
  /// refuses the settings. `sink` outlives the driver.
  virtual std::unique_ptr<PortDriver> Open(int number, const PortSettings& settings,
                                           PortSink& sink) = 0;
  /// What stands beside the number in a list: "/dev/ttyUSB0", "rfc2217://host:port".
  virtual std::string DeviceName(int number) = 0;
};

/// The port system in use.
PortSystem& ThePorts();
void UsePorts(PortSystem* ports);

/// `EnumSerPorts`: true when COM number `port` (1 to 255) exists; never opens it.
bool EnumSerPorts(int port);

}  // namespace penlog
