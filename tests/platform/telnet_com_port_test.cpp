#include "platform/telnet_com_port.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace penlog {
namespace {

using std::string_literals::operator""s;

/// Writes down what the parser finds; neighbouring data are joined, so that the pieces in which
/// the stream came leave no trace.
struct Listener : TelnetReceiver {
  void TakeData(std::string_view bytes) override {
    data += bytes;
    if (log.empty() || log.back()[0] != 'd') log.push_back("d");
    log.back() += bytes;
  }
  void TakeNegotiation(std::uint8_t verb, std::uint8_t option) override {
    log.push_back("n" + std::to_string(verb) + " " + std::to_string(option));
  }
  void TakeComPort(std::uint8_t command, std::string_view value) override {
    log.push_back("c" + std::to_string(command) + " " + std::string(value));
  }
  std::string data;
  std::vector<std::string> log;
};

std::vector<std::string> Parsed(std::string_view wire) {
  Listener listener;
  TelnetParser parser(listener);
  parser.Feed(wire);
  return listener.log;
}

std::string AllBytes() {
  std::string bytes;
  for (int b = 0; b < 256; ++b) bytes += static_cast<char>(b);
  return bytes;
}

struct WireRow {
  const char* what;
  std::string wire;
  std::vector<std::string> found;
};

const std::vector<WireRow>& WireRows() {
  static const std::vector<WireRow> rows = {
      {"nothing", "", {}},
      {"plain data", "D1;2\r\n"s, {"dD1;2\r\n"}},
      {"doubled 255", "a\xFF\xFF"s + "b", {"da\xFF"s + "b"}},
      {"zero and line ends stay", "\0\r\0\n"s, {"d\0\r\0\n"s}},
      {"will binary", "\xFF\xFB\0"s, {"n251 0"}},
      {"wont, do, dont", "\xFF\xFC\x01\xFF\xFD\x2C\xFF\xFE\x03"s, {"n252 1", "n253 44", "n254 3"}},
      {"data around a verb", "ab\xFF\xFD\x2C"s + "cd", {"dab", "n253 44", "dcd"}},
      {"modem state", "\xFF\xFA\x2C\x6B\x11\xFF\xF0"s, {"c107 \x11"}},
      {"255 in a value", "\xFF\xFA\x2C\x65\0\xFF\xFF\0\x01\xFF\xF0"s, {"c101 \0\xFF\0\x01"s}},
      {"command without a value", "\xFF\xFA\x2C\x08\xFF\xF0"s, {"c8 "}},
      {"no operation, go ahead", "a\xFF\xF1"s + "b\xFF\xF9"s + "c", {"dabc"}},
      {"end without a beginning", "a\xFF\xF0"s + "b", {"dab"}},
      {"subnegotiation of another option", "\xFF\xFA\x18\x01\xFF\xF0z"s, {"dz"}},
      {"empty subnegotiation", "\xFF\xFA\xFF\xF0z"s, {"dz"}},
      {"option without a command", "\xFF\xFA\x2C\xFF\xF0z"s, {"dz"}},
      {"cut by a new one", "\xFF\xFA\x2C\x65\0\xFF\xFA\x2C\x6B\x10\xFF\xF0"s, {"c107 \x10"}},
      {"cut by a verb", "\xFF\xFA\x2C\x65\0\xFF\xFD\x2Cz"s, {"n253 44", "dz"}},
      {"half a message at the end", "ab\xFF\xFA\x2C\x6B"s, {"dab"}},
  };
  return rows;
}

TEST(TelnetParser, WholeStreamGivesDataAndMessagesInOrder) {
  for (const auto& row : WireRows()) EXPECT_EQ(Parsed(row.wire), row.found) << row.what;
}

TEST(TelnetParser, StreamSplitAtEveryByteGivesTheSame) {
  for (const auto& row : WireRows()) {
    for (std::size_t at = 0; at <= row.wire.size(); ++at) {
      Listener listener;
      TelnetParser parser(listener);
      parser.Feed(std::string_view(row.wire).substr(0, at));
      parser.Feed(std::string_view(row.wire).substr(at));
      EXPECT_EQ(listener.log, row.found) << row.what << ", split at " << at;
    }
  }
}

TEST(TelnetParser, StreamByteByByteGivesTheSame) {
  for (const auto& row : WireRows()) {
    Listener listener;
    TelnetParser parser(listener);
    for (const char c : row.wire) parser.Feed(std::string_view(&c, 1));
    EXPECT_EQ(listener.log, row.found) << row.what;
  }
}

TEST(TelnetParser, EveryByteValueSurvivesAsData) {
  const std::string bytes = AllBytes() + "\xFF\xFF\xFF" + AllBytes();
  Listener listener;
  TelnetParser parser(listener);
  parser.Feed(TelnetData(bytes));
  EXPECT_EQ(listener.data, bytes);
}

TEST(TelnetParser, EveryByteValueSurvivesInAMessage) {
  const std::string bytes = AllBytes();
  EXPECT_EQ(Parsed(ComPortMessage(kComSignature, bytes)),
            (std::vector<std::string>{"c0 " + bytes}));
}

TEST(TelnetParser, EndlessSubnegotiationIsGivenUp) {
  for (const std::string& filler : {"x"s, "\xFF\xFF"s}) {
    std::string wire = "\xFF\xFA\x2C\x6B"s;
    for (int i = 0; i < 5000; ++i) wire += filler;
    Listener listener;
    TelnetParser parser(listener);
    parser.Feed(wire);
    parser.Feed(ComPortMessage(107, std::uint8_t{0x10}));
    ASSERT_FALSE(listener.log.empty());
    EXPECT_EQ(listener.log.back(), "c107 \x10");
    EXPECT_GT(listener.data.size(), 3000u) << "the stream must be data again";
  }
}

TEST(TelnetParser, LongestSubnegotiationStillPasses) {
  const std::string value(TelnetParser::kLongestSubnegotiation - 2, 'v');
  EXPECT_EQ(Parsed(ComPortMessage(kComSignature, value)),
            (std::vector<std::string>{"c0 " + value}));
}

TEST(TelnetParser, CorruptedStreamsRecoverAtTheNextMessage) {
  std::mt19937 random(4711);
  for (int round = 0; round < 2000; ++round) {
    std::string wire = TelnetData("R1;0.51;2.3\r") + ComPortMessage(107, std::uint8_t{0x21}) +
                       TelnetNegotiation(kTelnetDo, kTelnetComPort) + TelnetData(AllBytes());
    for (int hit = 0; hit < 8; ++hit) wire[random() % wire.size()] = static_cast<char>(random());
    Listener listener;
    TelnetParser parser(listener);
    parser.Feed(wire);
    // A cut command may swallow one byte; an IAC then begins the next one in any state but data.
    parser.Feed("..");
    parser.Feed(ComPortMessage(107, std::uint8_t{0x90}));
    ASSERT_FALSE(listener.log.empty()) << round;
    EXPECT_EQ(listener.log.back(), "c107 \x90") << round;
  }
}

TEST(TelnetWire, MessagesAreTheBytesOfTheProtocol) {
  EXPECT_EQ(TelnetNegotiation(kTelnetWill, kTelnetComPort), "\xFF\xFB\x2C"s);
  EXPECT_EQ(ComPortMessage(kComSetBaud, BaudValue(19200)), "\xFF\xFA\x2C\x01\0\0\x4B\0\xFF\xF0"s);
  EXPECT_EQ(ComPortMessage(kComSetControl, kControlDtrOn), "\xFF\xFA\x2C\x05\x08\xFF\xF0"s);
  EXPECT_EQ(ComPortMessage(kComSetModemStateMask, std::uint8_t{255}),
            "\xFF\xFA\x2C\x0B\xFF\xFF\xFF\xF0"s);
  EXPECT_EQ(TelnetData("a\xFF"), "a\xFF\xFF"s);
}

TEST(TelnetWire, BaudGoesThereAndBack) {
  for (const std::uint32_t baud : {0u, 50u, 19200u, 65280u, 115200u, 4000000u, 0xFFFFFFFFu}) {
    EXPECT_EQ(BaudOf(BaudValue(baud)), baud);
  }
  EXPECT_EQ(BaudOf(""), 0u);
  EXPECT_EQ(BaudOf("\0\0\1"s), 0u);
  EXPECT_EQ(BaudOf("\0\0\0\1\0"s), 0u);
}

TEST(TelnetWire, ParityGoesThereAndBack) {
  const std::string parities = "NOEMS";
  for (std::size_t i = 0; i < parities.size(); ++i) {
    EXPECT_EQ(ParityValue(parities[i]), i + 1);
    EXPECT_EQ(ParityOf(static_cast<std::uint8_t>(i + 1)), parities[i]);
  }
  EXPECT_EQ(ParityOf(0), 'N');
  EXPECT_EQ(ParityOf(6), 'N');
}

TEST(TelnetWire, ModemStateGoesThereAndBack) {
  for (unsigned bits = 0; bits < 64; ++bits) {
    const ModemLines lines{(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0};
    const ModemLines changed{(bits & 8) != 0, (bits & 16) != 0, (bits & 32) != 0};
    const std::uint8_t state = ModemStateByte(lines, changed);
    EXPECT_EQ(state & ~kModemMask, 0) << bits;
    EXPECT_EQ(LinesOf(state), lines) << bits;
    EXPECT_EQ(ChangesOf(state), changed) << bits;
  }
  EXPECT_EQ(ModemStateByte({true, false, false}, {true, false, false}), 0x11);
  EXPECT_EQ(LinesOf(0x44), ModemLines{}) << "the ring line is not one of ours";
}

/// Carries what two ends say to each other until both are silent; the number of rounds.
struct TwoEnds {
  struct End : TelnetReceiver {
    explicit End(TelnetOptions::Role role) : options(role) {}
    void TakeData(std::string_view bytes) override { data += bytes; }
    void TakeNegotiation(std::uint8_t verb, std::uint8_t option) override {
      to_send += options.Answer(verb, option);
    }
    void TakeComPort(std::uint8_t, std::string_view) override {}
    TelnetOptions options;
    std::string to_send, data;
    TelnetParser parser{*this};
  };

  int Run() {
    int rounds = 0;
    for (; rounds < 20 && !(client.to_send.empty() && server.to_send.empty()); ++rounds) {
      const std::string up = std::exchange(client.to_send, {});
      const std::string down = std::exchange(server.to_send, {});
      server.parser.Feed(up);
      client.parser.Feed(down);
    }
    return rounds;
  }

  End client{TelnetOptions::Role::Client};
  End server{TelnetOptions::Role::Server};
};

TEST(TelnetOptions, ClientAndServerAgreeOnComPortAndEightBits) {
  for (const bool server_opens : {false, true}) {
    TwoEnds ends;
    ends.client.to_send = ends.client.options.Opening();
    if (server_opens) ends.server.to_send = ends.server.options.Opening();
    EXPECT_LE(ends.Run(), 3) << "the two ends talk for ever";
    for (const auto* end : {&ends.client, &ends.server}) {
      EXPECT_TRUE(end->options.ComPortAgreed());
      EXPECT_TRUE(end->options.BinaryAgreed());
      EXPECT_FALSE(end->options.ComPortRefused());
      EXPECT_EQ(end->data, "");
    }
  }
}

TEST(TelnetOptions, UnknownOptionsAreRefused) {
  TelnetOptions client(TelnetOptions::Role::Client);
  for (const std::uint8_t option : {kTelnetEcho, TelnetOption{24}, TelnetOption{255}}) {
    EXPECT_EQ(client.Answer(kTelnetWill, option), TelnetNegotiation(kTelnetDont, option));
    EXPECT_EQ(client.Answer(kTelnetDo, option), TelnetNegotiation(kTelnetWont, option));
    EXPECT_EQ(client.Answer(kTelnetWont, option), "");
    EXPECT_EQ(client.Answer(kTelnetDont, option), "");
  }
}

TEST(TelnetOptions, RefusedComPortIsSeen) {
  TelnetOptions client(TelnetOptions::Role::Client);
  client.Opening();
  EXPECT_FALSE(client.ComPortRefused());
  EXPECT_EQ(client.Answer(kTelnetDont, kTelnetComPort), "");
  EXPECT_TRUE(client.ComPortRefused());
  EXPECT_FALSE(client.ComPortAgreed());
}

TEST(TelnetOptions, RepeatedVerbsAreNotAnswered) {
  TelnetOptions client(TelnetOptions::Role::Client);
  client.Opening();
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(client.Answer(kTelnetDo, kTelnetComPort), "");
    EXPECT_EQ(client.Answer(kTelnetWill, kTelnetBinary), "");
  }
  EXPECT_EQ(client.Answer(kTelnetWont, kTelnetBinary),
            TelnetNegotiation(kTelnetDont, kTelnetBinary));
  EXPECT_EQ(client.Answer(kTelnetWont, kTelnetBinary), "");
  EXPECT_FALSE(client.BinaryAgreed());
}

TEST(TelnetOptions, ServerThatOffersComPortItselfIsTakenUp) {
  TelnetOptions client(TelnetOptions::Role::Client);
  client.Opening();
  EXPECT_EQ(client.Answer(kTelnetWill, kTelnetComPort),
            TelnetNegotiation(kTelnetDo, kTelnetComPort));
  EXPECT_FALSE(client.ComPortAgreed()) << "only DO 44 lets the client speak";
}

}  // namespace
}  // namespace penlog
