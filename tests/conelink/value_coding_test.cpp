#include "conelink/value_coding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

#include "platform/numbers.h"
#include "platform/runtime_fault.h"

namespace penlog {
namespace {

TEST(BinaryToSingle, DecodesTheTable) {
  const struct {
    std::string text;
    float value;
  } rows[] = {
      {"", 0},
      {"@", 0},
      {"A", 1},
      {"\x7f", 63},
      {"@A", 1},
      {"A@", 64},
      {"\x7f\x7f", 4095},
      {"@@A", 1},
      {"A@@", 4096},
      {"D@A", 16385},
      {"\x7f\x7f\x7f", 262143},
      {"D@A}", 12.5f},
      {"@@Oh", 1000},
      {"`@@C", -3},
      {"dCf{", -1477.9f},
      {"\\@@A", 1e-7f},
      {"\x7f\x7f\x7f\x7f", -1048575.0f / 1e7f},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(BinaryToSingle(row.text), row.value) << '"' << row.text << '"';
  }
}

TEST(BinaryToSingle, FourCharactersOfNoBitsAreZeroThreeAreZeroToo) {
  EXPECT_EQ(BinaryToSingle("@@@@"), 0);
  EXPECT_EQ(BinaryToSingle("@@@"), 0);
}

TEST(BinaryToSingle, CodeBelow64CountsAsNoBits) {
  EXPECT_EQ(BinaryToSingle("0A"), 1);
  EXPECT_EQ(BinaryToSingle("\r\n "), 0);
}

TEST(BinaryToSingle, CodeAbove127CountsAsAllBits) {
  EXPECT_EQ(BinaryToSingle("\xff"), 63);
}

TEST(BinaryToSingle, FormIsToldByLengthAlone) {
  EXPECT_EQ(BinaryToSingle("`@C"), 32 * 4096 + 3) << "three: the sign bit is a weight";
  EXPECT_EQ(BinaryToSingle("`@@C"), -3) << "four: the first bit is the sign";
}

TEST(BinaryToSingle, LongerRunsAreSummedHighestWeightFirst) {
  // 26 magnitude bits: each weight is added in single precision, so the lowest ones are lost.
  EXPECT_EQ(BinaryToSingle("@\x7f\x7f\x7f\x7f"), 16777215.0f);
  EXPECT_EQ(BinaryToSingle("B@@@A"), 33554432.0f) << "2^25, a bit of weight 1 gets lost in it";
  EXPECT_EQ(BinaryToSingle("`@@@A"), -1.0f);
}

TEST(BinaryToSingle, RunTooLongForTheTypeGivesItsLargestValue) {
  const float largest = std::numeric_limits<float>::max();
  EXPECT_EQ(BinaryToSingle(std::string(100, '\x7f')), -largest / 1e7f);
  EXPECT_EQ(BinaryToSingle("A" + std::string(200, '@')), largest);
}

TEST(SingleToBinary, EncodesTheTable) {
  const struct {
    float value;
    int count;
    std::string text;
  } rows[] = {
      {12.5f, 4, "D@A}"},
      {1000, 4, "@@Oh"},
      {0, 4, "@@@@"},
      {0.5f, 4, "D@@E"},
      {0.05f, 4, "H@@E"},
      {-0.25f, 4, "h@@Y"},
      {1048575, 4, "C\x7f\x7f\x7f"},
      {123.456f, 4, "L^I@"},
      {5, 1, "E"},
      {65, 2, "AA"},
      {262143, 3, "\x7f\x7f\x7f"},
  };
  for (const auto& row : rows) {
    float value = row.value;
    EXPECT_EQ(SingleToBinary(value, row.count), row.text) << PlainNumber(row.value);
  }
}

TEST(SingleToBinary, NegativeWholeMinusThreeIsCode96AndThreeCharacters) {
  float value = -3;
  const std::string text = SingleToBinary(value, 4);
  EXPECT_EQ(static_cast<int>(text[0]), 96);
  EXPECT_EQ(text.substr(1), "@@C");
}

TEST(SingleToBinary, ZeroInThreeCharactersIsThreeTimesNoBits) {
  float value = 0;
  EXPECT_EQ(SingleToBinary(value, 3), "@@@");
}

TEST(SingleToBinary, LeavesTheAbsoluteValueInTheCallersVariable) {
  float value = -12.5f;
  SingleToBinary(value, 4);
  EXPECT_EQ(value, 12.5f);
}

TEST(SingleToBinary, MoreThanSevenPlacesSaturateAtSeven) {
  float value = 0.00001234f;  // prints with eight places
  const std::string text = SingleToBinary(value, 4);
  EXPECT_EQ(text, "\\@SR") << "seven places, magnitude 1234";
  EXPECT_EQ(BinaryToSingle(text), 1234.0f / 1e7f);
}

TEST(SingleToBinary, MagnitudeOf2To20GivesTwentyOneBits) {
  for (const float whole : {1048576.0f, 5e8f}) {
    float value = whole;
    EXPECT_EQ(SingleToBinary(value, 4), "C\x7f\x7f\x7f") << PlainNumber(whole);
  }
  float value = 123456.7f;  // seven digits spell 1234567
  EXPECT_EQ(SingleToBinary(value, 4), "G\x7f\x7f\x7f");
}

TEST(SingleToBinary, ThreeCharactersOfATooLargeValueAreItsRemainder) {
  float value = 262144 + 5;
  EXPECT_EQ(SingleToBinary(value, 3), "@@E");
}

TEST(SingleToBinary, ValueThatIsNoIntegerOrNotFiniteIsAFault) {
  for (const float bad : {3e9f, std::numeric_limits<float>::infinity(), std::nanf("")}) {
    float value = bad;
    EXPECT_THROW(SingleToBinary(value, 4), RuntimeFault);
  }
}

TEST(ValueCoding, EveryPlainNumberOfThreeCharactersComesBack) {
  for (std::int32_t whole = 0; whole < 262144; ++whole) {
    auto value = static_cast<float>(whole);
    ASSERT_EQ(BinaryToSingle(SingleToBinary(value, 3)), static_cast<float>(whole));
  }
}

TEST(ValueCoding, EveryDecimalThatFitsComesBack) {
  std::mt19937 random(7);
  float powers[] = {1, 10, 100, 1000, 1e4f, 1e5f};
  for (int i = 0; i < 200000; ++i) {
    // Six digits: fewer than a 32-bit float holds, so the decimal text is certain.
    const auto magnitude = static_cast<float>(random() % 1000000);
    const float exact = (random() % 2 == 0 ? 1.0f : -1.0f) * magnitude / powers[random() % 6];
    float value = exact;
    ASSERT_EQ(BinaryToSingle(SingleToBinary(value, 4)), exact) << PlainNumber(exact);
  }
}

ReplyFields Split(const std::string& reply) {
  ReplyFields tokens;
  tokens.fill("old");
  SplitConeReply(reply, tokens);
  return tokens;
}

TEST(SplitConeReply, TwoNumbersWithTwoLeadingBlanksKeepTheBlankBehindThem) {
  const auto tokens = Split("  0.5 -1.25 ");
  EXPECT_EQ(tokens[1], "0.5 ");
  EXPECT_EQ(tokens[2], "-1.25 ");
  EXPECT_EQ(tokens[3], "");
}

TEST(SplitConeReply, ReplyWithoutABlankYieldsNoFields) {
  const auto tokens = Split("0.5");
  for (std::size_t i = 1; i <= 30; ++i) EXPECT_EQ(tokens[i], "") << i;
}

TEST(SplitConeReply, LastWordWithoutABlankIsLost) {
  const auto tokens = Split("1 2 3");
  EXPECT_EQ(tokens[2], "2 ");
  EXPECT_EQ(tokens[3], "");
}

TEST(SplitConeReply, TakesTwentyNineFieldsAndLeavesTheThirtieth) {
  std::string reply;
  for (int i = 1; i <= 31; ++i) reply += PlainNumber(i) + " ";
  const auto tokens = Split(reply);
  EXPECT_EQ(tokens[29], "29 ");
  EXPECT_EQ(tokens[30], "old");
}

TEST(SplitConeReply, EndOfRangeMarkStaysInItsField) {
  const auto tokens = Split("1.5   +? 2 ");
  EXPECT_EQ(tokens[2], "+? ");
  EXPECT_EQ(LeadingNumber(tokens[2]), 0);
  EXPECT_EQ(tokens[3], "2 ");
}

TEST(SplitConeReply, EmptyReplyEmptiesAll) {
  const auto tokens = Split("");
  for (std::size_t i = 1; i <= 30; ++i) EXPECT_EQ(tokens[i], "") << i;
}

TEST(DecodeSeismicBlock, MiddleByteHoldsTheUpperBitsOfBoth) {
  SeismicBytes block{};
  block[1] = 0x34;
  block[2] = 0x8A;
  block[3] = 0x56;
  block[124] = 0xFF;
  block[125] = 0xF0;
  block[126] = 0x01;
  const auto samples = DecodeSeismicBlock(block);
  EXPECT_EQ(samples[0], 0x834);
  EXPECT_EQ(samples[1], 0xA56);
  EXPECT_EQ(samples[2], 0);
  EXPECT_EQ(samples[82], 0xFFF);
  EXPECT_EQ(samples[83], 0x001);
}

TEST(DecodeSeismicBlock, EveryPairOfSamplesComesBack) {
  for (int first = 0; first < 4096; first += 17) {
    for (int second = 0; second < 4096; second += 13) {
      SeismicBytes block{};
      block[4] = static_cast<std::uint8_t>(first & 255);
      block[5] = static_cast<std::uint8_t>((first >> 8) * 16 + (second >> 8));
      block[6] = static_cast<std::uint8_t>(second & 255);
      const auto samples = DecodeSeismicBlock(block);
      ASSERT_EQ(samples[2], first);
      ASSERT_EQ(samples[3], second);
    }
  }
}

}  // namespace
}  // namespace penlog
