// A simulated instrument behind a network serial server (RFC 2217).
#pragma once

#include <QTcpServer>
#include <QTcpSocket>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/qt/real_clock.h"
#include "platform/telnet_com_port.h"
#include "platform/wire_end.h"

namespace penlog {

/// Listens on loopback and serves one client at a time; one that comes second is sent away,
/// unless the first never spoke RFC 2217 (a trial whether the server stands).
///
/// Each edge is one notification. A swallowed edge changes the line without one; the next
/// notification carries its change bit. What the client does comes through the queue. A client
/// that is gone drops DTR, RTS and break, whether it said so or not.
class Rfc2217Server : public WireEnd, private TelnetReceiver {
 public:
  /// Port 0: the system chooses one. Raises a `RuntimeFault` when the port is taken.
  explicit Rfc2217Server(RealClock& clock, int port = 0);
  ~Rfc2217Server() override;

  /// The TCP port; it stays the same while the server is out and after.
  int Port() const { return port_; }
  /// Bytes that the client has not taken yet: the measure of back-pressure for a flood.
  std::int64_t Unsent() const;
  bool HasClient() const { return client_ != nullptr && options_.ComPortAgreed(); }

  void Send(std::string_view bytes) override;
  void SetLines(ModemLines lines) override;
  ModemLines Lines() const override { return lines_; }
  void SetPresent(bool present) override;
  bool Present() const override { return listener_.isListening(); }
  void LoseNextEdge() override { lose_next_ = true; }

 private:
  void TakeData(std::string_view bytes) override;
  void TakeNegotiation(std::uint8_t verb, std::uint8_t option) override;
  void TakeComPort(std::uint8_t command, std::string_view value) override;

  void Listen();
  void TakeConnection();
  void Serve(std::unique_ptr<QTcpSocket> client);
  void Read();
  void Drop();
  void SendWire(std::string_view wire);
  void Reply(std::uint8_t command, std::string_view value);
  void Reply(std::uint8_t command, std::uint8_t value);
  void TakeSetting(std::uint8_t command, std::string_view value);
  void TakeControl(std::uint8_t control);
  std::uint8_t ControlState(std::uint8_t asked) const;
  void SetOutput(bool& output, bool on);
  void SetBreakState(bool on);
  void SetOne(bool ModemLines::*line, bool held);
  void Notify(ModemLines changed);
  void TellOutputs();
  void Later(std::function<void()> call);

  RealClock& clock_;
  QTcpServer listener_;
  std::unique_ptr<QTcpSocket> client_;
  int reader_;
  int port_;
  TelnetOptions options_{TelnetOptions::Role::Server};
  TelnetParser parser_{*this};
  PortSettings settings_;
  unsigned set_ = 0;  // a bit per setting the client has made
  bool opened_ = false;
  ModemLines lines_;
  ModemLines untold_;  // changed without a notification
  std::uint8_t mask_ = 0;
  bool lose_next_ = false;
  bool dtr_ = false;
  bool rts_ = false;
  bool break_ = false;
  bool suspended_ = false;
  std::string held_;
};

}  // namespace penlog
