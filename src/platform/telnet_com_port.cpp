#include "platform/telnet_com_port.h"

namespace penlog {

namespace {

constexpr std::string_view kParities = "NOEMS";

char Char(std::uint8_t byte) {
  return static_cast<char>(byte);
}
std::uint8_t Byte(char c) {
  return static_cast<std::uint8_t>(c);
}

constexpr char kIac = static_cast<char>(kTelnetIac);

void AppendDoubled(std::string& wire, std::string_view bytes) {
  for (const char c : bytes) {
    wire += c;
    if (c == kIac) wire += c;
  }
}

std::uint8_t Bits(ModemLines lines, std::uint8_t cts, std::uint8_t dsr, std::uint8_t cd) {
  return static_cast<std::uint8_t>((lines.cts ? cts : 0) | (lines.dsr ? dsr : 0) |
                                   (lines.cd ? cd : 0));
}

}  // namespace

std::string TelnetData(std::string_view bytes) {
  std::string wire;
  wire.reserve(bytes.size());
  AppendDoubled(wire, bytes);
  return wire;
}

std::string TelnetNegotiation(std::uint8_t verb, std::uint8_t option) {
  return {kIac, Char(verb), Char(option)};
}

std::string ComPortMessage(std::uint8_t command, std::string_view value) {
  std::string wire{kIac, Char(kTelnetSb), Char(kTelnetComPort), Char(command)};
  AppendDoubled(wire, value);
  wire += kIac;
  wire += Char(kTelnetSe);
  return wire;
}

std::string ComPortMessage(std::uint8_t command, std::uint8_t value) {
  const char one = Char(value);
  return ComPortMessage(command, std::string_view(&one, 1));
}

std::string BaudValue(std::uint32_t baud) {
  std::string value;
  for (int shift = 24; shift >= 0; shift -= 8) value += static_cast<char>((baud >> shift) & 0xFFu);
  return value;
}

std::uint32_t BaudOf(std::string_view value) {
  if (value.size() != 4) return 0;
  std::uint32_t baud = 0;
  for (const char c : value) baud = (baud << 8) | Byte(c);
  return baud;
}

std::uint8_t ParityValue(char parity) {
  const auto at = kParities.find(parity);
  return static_cast<std::uint8_t>(at == std::string_view::npos ? 1 : at + 1);
}

char ParityOf(std::uint8_t value) {
  return value >= 1 && value <= kParities.size() ? kParities[value - 1u] : 'N';
}

std::uint8_t ModemStateByte(ModemLines lines, ModemLines changed) {
  return Bits(lines, kModemCts, kModemDsr, kModemCd) |
         Bits(changed, kModemCtsChanged, kModemDsrChanged, kModemCdChanged);
}

ModemLines LinesOf(std::uint8_t modem_state) {
  return {(modem_state & kModemCts) != 0, (modem_state & kModemDsr) != 0,
          (modem_state & kModemCd) != 0};
}

ModemLines ChangesOf(std::uint8_t modem_state) {
  return {(modem_state & kModemCtsChanged) != 0, (modem_state & kModemDsrChanged) != 0,
          (modem_state & kModemCdChanged) != 0};
}

void TelnetParser::Feed(std::string_view bytes) {
  while (!bytes.empty()) {
    std::size_t taken = 1;
    const std::uint8_t byte = Byte(bytes[0]);
    switch (state_) {
      case State::Data:
        taken = FeedData(bytes);
        break;
      case State::Command:
        TakeCommand(byte);
        break;
      case State::Option:
        state_ = State::Data;
        receiver_.TakeNegotiation(verb_, byte);
        break;
      case State::Sub:
        taken = FeedSub(bytes);
        break;
      case State::SubCommand:
        TakeSubCommand(byte);
        break;
    }
    bytes.remove_prefix(taken);
  }
}

// Data up to the next IAC, which is taken too.
std::size_t TelnetParser::FeedData(std::string_view bytes) {
  const std::size_t at = bytes.find(kIac);
  if (at != 0) receiver_.TakeData(bytes.substr(0, at));
  if (at == std::string_view::npos) return bytes.size();
  state_ = State::Command;
  return at + 1;
}

void TelnetParser::TakeCommand(std::uint8_t byte) {
  state_ = State::Data;
  if (byte == kTelnetIac) {
    receiver_.TakeData(std::string_view(&kIac, 1));
  } else if (byte == kTelnetSb) {
    sub_.clear();
    state_ = State::Sub;
  } else if (byte >= kTelnetWill) {
    verb_ = byte;
    state_ = State::Option;
  }  // the rest (no operation, go ahead, a stray end) says nothing here
}

std::size_t TelnetParser::FeedSub(std::string_view bytes) {
  if (bytes[0] == kIac) {
    state_ = State::SubCommand;
  } else if (sub_.size() >= kLongestSubnegotiation) {
    state_ = State::Data;
    return 0;
  } else {
    sub_ += bytes[0];
  }
  return 1;
}

void TelnetParser::TakeSubCommand(std::uint8_t byte) {
  if (byte == kTelnetIac && sub_.size() < kLongestSubnegotiation) {
    sub_ += kIac;
    state_ = State::Sub;
  } else if (byte == kTelnetSe) {
    state_ = State::Data;
    EndSub();
  } else {
    TakeCommand(byte);  // the end is missing: what stands here is the next command
  }
}

void TelnetParser::EndSub() {
  if (sub_.size() < 2 || sub_[0] != Char(kTelnetComPort)) return;
  receiver_.TakeComPort(Byte(sub_[1]), std::string_view(sub_).substr(2));
}

bool TelnetOptions::Wanted(std::uint8_t option) {
  return option == kTelnetBinary || option == kTelnetSuppressGoAhead || option == kTelnetComPort;
}

bool TelnetOptions::BinaryAgreed() const {
  return ours_[kTelnetBinary] == Agreement::Yes && theirs_[kTelnetBinary] == Agreement::Yes;
}

std::string TelnetOptions::Opening() {
  std::string wire;
  for (const std::uint8_t option : {kTelnetBinary, kTelnetSuppressGoAhead}) {
    ours_[option] = theirs_[option] = Agreement::Asked;
    wire += TelnetNegotiation(kTelnetWill, option) + TelnetNegotiation(kTelnetDo, option);
  }
  const bool client = role_ == Role::Client;
  (client ? ours_ : theirs_)[kTelnetComPort] = Agreement::Asked;
  return wire + TelnetNegotiation(client ? kTelnetWill : kTelnetDo, kTelnetComPort);
}

std::string TelnetOptions::Answer(std::uint8_t verb, std::uint8_t option) {
  const bool about_us = verb == kTelnetDo || verb == kTelnetDont;
  const bool yes = verb == kTelnetDo || verb == kTelnetWill;
  Agreement& agreement = (about_us ? ours_ : theirs_)[option];
  const Agreement before = agreement;
  const std::uint8_t accept = about_us ? kTelnetWill : kTelnetDo;
  const std::uint8_t refuse = about_us ? kTelnetWont : kTelnetDont;
  if (yes && !Wanted(option)) return TelnetNegotiation(refuse, option);
  agreement = yes ? Agreement::Yes : Agreement::Refused;
  if (before == Agreement::Asked || before == agreement) return {};
  if (!yes && before == Agreement::No) return {};
  return TelnetNegotiation(yes ? accept : refuse, option);
}

}  // namespace penlog
