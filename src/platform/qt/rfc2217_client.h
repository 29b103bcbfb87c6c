// One open port behind a network server (RFC 2217).
#pragma once

#include <QTcpSocket>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/modem_notices.h"
#include "platform/network_ports.h"
#include "platform/port_driver.h"
#include "platform/qt/real_clock.h"
#include "platform/qt/rfc2217_farewell.h"
#include "platform/telnet_com_port.h"

namespace penlog {

/// What the list of servers knows of one of them; shared with the connection to it.
struct ServerState {
  bool in_use = false;    ///< a driver holds the server, its connection lost or not
  bool held = false;      ///< that driver is connecting or connected
  bool standing = false;  ///< its connection stands
  bool reached = false;
  Micros reached_at = 0;
  std::unique_ptr<Rfc2217Farewell> farewell;  ///< of the last connection
};

/// Connects, agrees on COM-PORT-OPTION, asks for the modem lines, then for the settings, and is
/// ready when the four settings are acknowledged with the asked values. Answers to all else are
/// taken and not waited for, because real servers leave them out.
///
/// Reading is bounded and stops while the queue holds more than `kBacklogLimit` events; the
/// socket's buffer then fills and TCP pushes back.
class Rfc2217Client : public PortDriver, private TelnetReceiver {
 public:
  Rfc2217Client(RealClock& clock, NetworkAddress address, const PortSettings& settings,
                PortSink& sink, std::shared_ptr<ServerState> state);
  /// Lowers DTR and RTS, and leaves the connection to its farewell.
  ~Rfc2217Client() override;

  void Write(std::string_view bytes) override;
  void SetBreak(bool on) override;
  void SetDtr(bool on) override;
  void SetRts(bool on) override;
  void DiscardInput() override;
  void DiscardOutput() override;
  ModemLines Lines() const override { return opening_lines_; }
  /// Raises a `RuntimeFault` with the reason when the opening has failed.
  bool Ready() const override;

  static constexpr std::size_t kBacklogLimit = 256;

 private:
  enum class Stage { Connecting, Negotiating, Setting, Ready, Failed, Gone };

  void TakeData(std::string_view bytes) override;
  void TakeNegotiation(std::uint8_t verb, std::uint8_t option) override;
  void TakeComPort(std::uint8_t command, std::string_view value) override;

  bool Open() const { return stage_ == Stage::Setting || stage_ == Stage::Ready; }
  void Connect();
  void OnConnected();
  void OnDisconnected();
  void Read();
  void Parse(std::string_view bytes);
  void SendSettings();
  void TakeAnswer(std::uint8_t command, std::string_view value);
  void TakeModemState(std::uint8_t modem_state);
  void BecomeReady();
  void Fail(const std::string& reason);
  void Lose();
  void Send(std::string_view wire);
  void Control(std::uint8_t control);
  void SayGoodbye();

  RealClock& clock_;
  NetworkAddress address_;
  PortSettings settings_;
  PortSink& sink_;
  std::shared_ptr<ServerState> state_;
  std::unique_ptr<QTcpSocket> socket_ = std::make_unique<QTcpSocket>();
  int reader_ = 0;
  Stage stage_ = Stage::Connecting;
  TelnetOptions options_{TelnetOptions::Role::Client};
  TelnetParser parser_{*this};
  ModemNotices notices_;
  ModemLines opening_lines_;
  std::string failure_;
  std::string held_output_;  // while the server has suspended the flow
  bool suspended_ = false;
  bool disconnected_ = false;
  bool break_ = false;
  unsigned acknowledged_ = 0;  // a bit per setting
  std::size_t discard_ = 0;    // bytes of the stream whose data are dropped
  Micros first_try_ = 0;
  Micros retry_at_ = 0;  // 0: none is due
};

}  // namespace penlog
