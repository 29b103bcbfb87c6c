// RFC 2217: a serial port behind telnet (RFC 854) with COM-PORT-OPTION. A codec on byte buffers
// for both ends of the connection; it knows no socket.
//
// On the wire a byte 255 (IAC) starts a command; as data it is doubled. Commands are negotiations,
// IAC WILL|WONT|DO|DONT option, and subnegotiations, IAC SB option bytes IAC SE, in which 255 is
// doubled too.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/port_driver.h"

namespace penlog {

/// Telnet commands that follow an IAC.
enum TelnetVerb : std::uint8_t {
  kTelnetSe = 240,
  kTelnetSb = 250,
  kTelnetWill = 251,
  kTelnetWont = 252,
  kTelnetDo = 253,
  kTelnetDont = 254,
  kTelnetIac = 255,
};

enum TelnetOption : std::uint8_t {
  kTelnetBinary = 0,
  kTelnetEcho = 1,
  kTelnetSuppressGoAhead = 3,
  kTelnetComPort = 44,
};

/// COM-PORT-OPTION commands of a client; a server answers or notifies with the same plus 100.
enum ComPortCommand : std::uint8_t {
  kComSignature = 0,
  kComSetBaud = 1,      ///< 4 bytes, most significant first; 0 asks
  kComSetDataSize = 2,  ///< 5 to 8; 0 asks
  kComSetParity = 3,    ///< 1 none, 2 odd, 3 even, 4 mark, 5 space; 0 asks
  kComSetStopSize = 4,  ///< 1, 2, or 3 for 1.5; 0 asks
  kComSetControl = 5,   ///< a ComPortControl
  kComNotifyLineState = 6,
  kComNotifyModemState = 7,  ///< lines and changes, see `ModemStateByte`
  kComFlowSuspend = 8,
  kComFlowResume = 9,
  kComSetLineStateMask = 10,
  kComSetModemStateMask = 11,
  kComPurge = 12,  ///< 1 received, 2 to be sent, 3 both
};
constexpr std::uint8_t kComFromServer = 100;

/// Values of SET-CONTROL; those that ask are 0, 4, 7, 10, 13.
enum ComPortControl : std::uint8_t {
  kControlAskFlow = 0,
  kControlNoFlow = 1,
  kControlAskBreak = 4,
  kControlBreakOn = 5,
  kControlBreakOff = 6,
  kControlAskDtr = 7,
  kControlDtrOn = 8,
  kControlDtrOff = 9,
  kControlAskRts = 10,
  kControlRtsOn = 11,
  kControlRtsOff = 12,
  kControlAskInboundFlow = 13,
  kControlNoInboundFlow = 14,
};

/// Bits of a modem state: the line is held, the line has changed since the last notification.
enum ModemStateBit : std::uint8_t {
  kModemCtsChanged = 0x01,
  kModemDsrChanged = 0x02,
  kModemCdChanged = 0x08,
  kModemCts = 0x10,
  kModemDsr = 0x20,
  kModemCd = 0x80,
};
/// The bits above as a mask: the ring line is of no use here.
constexpr std::uint8_t kModemMask = 0xBB;

/// Data bytes for the wire: each 255 is doubled.
std::string TelnetData(std::string_view bytes);
/// IAC verb option.
std::string TelnetNegotiation(std::uint8_t verb, std::uint8_t option);
/// IAC SB 44 command value IAC SE, each 255 in the value doubled.
std::string ComPortMessage(std::uint8_t command, std::string_view value);
std::string ComPortMessage(std::uint8_t command, std::uint8_t value);
/// Four bytes, most significant first, and back; 0 for a text of another length.
std::string BaudValue(std::uint32_t baud);
std::uint32_t BaudOf(std::string_view value);
/// 'N' 'O' 'E' 'M' 'S' to 1 .. 5, and back ('N' for a number outside).
std::uint8_t ParityValue(char parity);
char ParityOf(std::uint8_t value);
/// A modem state: `lines` as they are, `changed` the lines that have changed.
std::uint8_t ModemStateByte(ModemLines lines, ModemLines changed);
ModemLines LinesOf(std::uint8_t modem_state);
ModemLines ChangesOf(std::uint8_t modem_state);

/// Takes what a parser finds, in the order of the wire.
class TelnetReceiver {
 public:
  virtual ~TelnetReceiver() = default;
  virtual void TakeData(std::string_view bytes) = 0;
  virtual void TakeNegotiation(std::uint8_t verb, std::uint8_t option) = 0;
  /// `value` is whatever came, of any length.
  virtual void TakeComPort(std::uint8_t command, std::string_view value) = 0;
};

/// Takes a byte stream apart; it may come in pieces of any size. A damaged subnegotiation is
/// dropped: one that another command cuts short, of another option, without a command, or longer
/// than `kLongestSubnegotiation`, after which the stream is data again.
class TelnetParser {
 public:
  static constexpr std::size_t kLongestSubnegotiation = 1024;

  explicit TelnetParser(TelnetReceiver& receiver) : receiver_(receiver) {}
  void Feed(std::string_view bytes);
  /// Begins a new stream.
  void Reset() { state_ = State::Data; }

 private:
  enum class State { Data, Command, Option, Sub, SubCommand };

  std::size_t FeedData(std::string_view bytes);
  std::size_t FeedSub(std::string_view bytes);
  void TakeCommand(std::uint8_t byte);
  void TakeSubCommand(std::uint8_t byte);
  void EndSub();

  TelnetReceiver& receiver_;
  State state_ = State::Data;
  std::uint8_t verb_ = 0;
  std::string sub_;
};

/// Which options both ends agreed on. Asks for 8-bit data (TRANSMIT-BINARY and SUPPRESS-GO-AHEAD
/// both ways) and COM-PORT-OPTION, and refuses all else. A verb that changes nothing is not
/// answered, so that two ends never echo each other for ever.
class TelnetOptions {
 public:
  enum class Role { Client, Server };

  explicit TelnetOptions(Role role) : role_(role) {}
  /// What to send when the connection stands.
  std::string Opening();
  /// What to send after a verb of the far end; often nothing.
  std::string Answer(std::uint8_t verb, std::uint8_t option);
  /// The client does COM-PORT-OPTION and the server wants it.
  bool ComPortAgreed() const { return Side(kTelnetComPort) == Agreement::Yes; }
  /// The server answered DONT (the client WONT).
  bool ComPortRefused() const { return Side(kTelnetComPort) == Agreement::Refused; }
  /// 8-bit data is agreed in both directions.
  bool BinaryAgreed() const;

 private:
  enum class Agreement : std::uint8_t { No, Asked, Yes, Refused };

  Agreement Side(std::uint8_t option) const {
    return role_ == Role::Client ? ours_[option] : theirs_[option];
  }
  static bool Wanted(std::uint8_t option);

  Role role_;
  std::array<Agreement, 256> ours_{};
  std::array<Agreement, 256> theirs_{};
};

}  // namespace penlog
