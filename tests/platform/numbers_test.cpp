#include "platform/numbers.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "platform/runtime_fault.h"
#include "tests/platform/comma_locale.h"

namespace penlog {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr double kLargest = std::numeric_limits<double>::max();

struct SingleRow {
  float value;
  const char* pattern;
  const char* expected;
};

const std::vector<SingleRow> kSingles = {
    {0.0F, "##0.00", "0.00"},
    {0.0F, "##.00", ".00"},
    {0.0F, "###", ""},
    {0.0F, "000", "000"},
    {0.5F, "####.00", ".50"},
    {-0.5F, "##.00", "-.50"},
    {0.125F, "0.00", "0.13"},
    {-0.125F, "0.00", "-0.13"},
    {2.675F, "0.00", "2.68"},
    {1.005F, "0.00", "1.01"},
    {0.285F, "##0.00", "0.29"},
    {2.5F, "##0", "3"},
    {3.5F, "##0", "4"},
    {-2.5F, "##0", "-3"},
    {0.5F, "0", "1"},
    {0.49999997F, "0", "0"},
    {0.05F, "0.0", "0.1"},
    {0.05F, "0", "0"},
    {0.005F, "0", "0"},
    {-0.001F, "0.00", "0.00"},
    {-0.0F, "##0.000", "0.000"},
    {-0.005F, "0.00", "-0.01"},
    {-0.004999F, "##0.00", "0.00"},
    {9.995F, "##0.00", "10.00"},
    {99.999F, "##0.00", "100.00"},
    {0.999F, "##.00", "1.00"},
    {999.9996F, "###0.000", "1000.000"},
    {19.999F, "#0.00", "20.00"},
    {1.2345F, "000.000", "001.235"},
    {-1.2345F, "000.000", "-001.235"},
    {7.0F, "000", "007"},
    {7.0F, "0##", "007"},
    {12.25F, "###0.0", "12.3"},
    {1000.0F, "##0.00", "1000.00"},
    {123456.789F, "####0.00000", "123456.79000"},
    {16777216.0F, "##0", "16777216"},
    {3.4028235E+38F, "0.0", "340282350000000000000000000000000000000.0"},
    {1.0E-45F, "####0.00000", "0.00000"},
    {1.0E-45F, "0.0##", "0.0"},
    {1234.5F, "########0.00000", "1234.50000"},
    {0.02F, "###0.000", "0.020"},
    {0.02F, "0.###", "0.02"},
    {3.0F, "0.###", "3."},
    {3.14F, "0.0##", "3.14"},
    {12.5F, "###0.0 MPa", "12.5 MPa"},
    {-12.5F, "u=##0.0 kPa.", "u=-12.5 kPa."},
    {0.25F, "x.00", "x.25"},
    {0.25F, "##0.0%", "0.3%"},
    {1234567.0F, "#,##0.0", "1234567.0"},
    {1.5F, "0.0.0", "1.5.0"},
    {12.5F, "", "12.5"},
    {12.5F, "General", "12.5"},
    {kInfinity, "##0.00", "inf"},
    {-kInfinity, "##0.00", "-inf"},
    {std::numeric_limits<float>::quiet_NaN(), "##0.00", "nan"},
    {-std::numeric_limits<float>::quiet_NaN(), "", "nan"},
};

struct DoubleRow {
  double value;
  const char* pattern;
  const char* expected;
};

const std::vector<DoubleRow> kDoubles = {
    {-0.001, "0.00", "0.00"},
    {2.675, "0.00", "2.68"},
    {1.005, "0.00", "1.01"},
    {0.1 + 0.2, "0.00", "0.30"},
    {123456.789, "####0.00000", "123456.78900"},
    {-0.0005, "##0.000", "-0.001"},
    {9.95, "##0.0", "10.0"},
    {4807.038, "0000.0000", "4807.0380"},
    {120000.5, "000000.000", "120000.500"},
    {1.0E+22, "0", "10000000000000000000000"},
    {5.0E-324, "0.00", "0.00"},
    {86399.999, "#####0", "86400"},
};

void CheckFormats() {
  for (const auto& row : kSingles) {
    EXPECT_EQ(Format(row.value, row.pattern), row.expected) << row.value << " " << row.pattern;
  }
  for (const auto& row : kDoubles) {
    EXPECT_EQ(Format(row.value, row.pattern), row.expected) << row.value << " " << row.pattern;
  }
}

struct PlainRow {
  float value;
  const char* expected;
};

const std::vector<PlainRow> kPlain = {
    {0.0F, "0"},
    {-0.0F, "0"},
    {0.5F, "0.5"},
    {-0.5F, "-0.5"},
    {-3.0F, "-3"},
    {0.1F, "0.1"},
    {0.02F, "0.02"},
    {12.5F, "12.5"},
    {100.0F, "100"},
    {123456.789F, "123456.79"},
    {16777216.0F, "16777216"},
    {0.00001F, "0.00001"},
    {0.0000099F, "9.9E-06"},
    {1.5E-7F, "1.5E-07"},
    {-1.0E-10F, "-1E-10"},
    {1.0E+15F, "1000000000000000"},
    {1.0E+16F, "1E+16"},
    {1.0E+20F, "1E+20"},
    {-3.4028235E+38F, "-3.4028235E+38"},
    {1.0E-45F, "1E-45"},
    {kInfinity, "inf"},
    {-kInfinity, "-inf"},
};

void CheckPlain() {
  for (const auto& row : kPlain) EXPECT_EQ(PlainNumber(row.value), row.expected);
  EXPECT_EQ(PlainNumber(0.1), "0.1");
  EXPECT_EQ(PlainNumber(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(PlainNumber(1.0E+300), "1E+300");
  EXPECT_EQ(PrintNumber(0.5F), " 0.5 ");
  EXPECT_EQ(PrintNumber(-0.5), "-0.5 ");
}

struct LeadingRow {
  const char* text;
  double expected;
};

const std::vector<LeadingRow> kLeading = {
    {"", 0},
    {"   ", 0},
    {"12", 12},
    {"  12.5 ", 12.5},
    {"\r\n 3 ", 3},
    {"-3", -3},
    {"+3", 3},
    {"- 3", 0},
    {"--3", 0},
    {".5", 0.5},
    {"-.5", -0.5},
    {"5.", 5},
    {".", 0},
    {"-", 0},
    {"+", 0},
    {"+?", 0},
    {"-?", 0},
    {"2.5?", 2.5},
    {"12,5", 12},
    {"1.2.3", 1.2},
    {"1 2", 1},
    {"abc", 0},
    {"E5", 0},
    {"1E3", 1000},
    {"1e-3", 0.001},
    {"1D2", 100},
    {"1d+2", 100},
    {"1E", 1},
    {"1E+", 1},
    {"1Ex", 1},
    {"0x10", 0},
    {"inf", 0},
    {"nan", 0},
    {"-inf", 0},
    {"1E999", kLargest},
    {"-1E999", -kLargest},
    {"1E-999", 0},
    {"0E999999999999999999999", 0},
    {"1E999999999999999999999", kLargest},
    {"1E-999999999999999999999", 0},
    {"007", 7},
};

void CheckLeading() {
  for (const auto& row : kLeading) EXPECT_EQ(LeadingNumber(row.text), row.expected) << row.text;
  EXPECT_EQ(LeadingNumber("0." + std::string(400, '0') + "1"), 0);
  EXPECT_EQ(LeadingNumber("1" + std::string(400, '0')), kLargest);
  EXPECT_EQ(LeadingNumber("0." + std::string(400, '0') + "1E401"), 1);
}

struct LocaleRow {
  const char* text;
  bool comma_decimal;
  const char* converted;
  double expected;
};

const std::vector<LocaleRow> kLocale = {
    {"2.1", true, "2,1", 2.1},
    {"2,1", true, "2,1", 2.1},
    {"2.1", false, "2.1", 2.1},
    {"2,1", false, "2.1", 2.1},
    {"21", true, "21", 21},
    {"21", false, "21", 21},
    {"-0,5", false, "-0.5", -0.5},
    {"-.5", true, "-,5", -0.5},
    {"1.234,5", true, "1,234,5", 1.234},
    {"1,234.5", true, "1,234,5", 1.234},
    {"1,234.5", false, "1.234.5", 1.234},
    {"1.234,5", false, "1.234.5", 1.234},
    {"1.2.3", true, "1,2.3", 1.2},
    {"1,2,3", false, "1.2,3", 1.2},
    {"", true, "", 0},
    {"", false, "", 0},
    {"abc", false, "abc", 0},
    {" 3,5 m", false, " 3.5 m", 3.5},
};

void CheckLocaleNumbers() {
  for (const auto& row : kLocale) {
    EXPECT_EQ(LocaleNumberText(row.text, row.comma_decimal), row.converted) << row.text;
    EXPECT_EQ(LocaleNumber(row.text, row.comma_decimal), row.expected) << row.text;
  }
}

// Thousandths up to a million have the digits they were made of, so whole numbers tell the result.
void CheckRoundingOfThousandths() {
  for (int n = -999999; n <= 999999; n += 7) {
    const int hundredths = (std::abs(n) + 5) / 10;
    const std::string cents = std::to_string(100 + hundredths % 100).substr(1);
    const std::string sign = n < 0 && hundredths > 0 ? "-" : "";
    const std::string expected = sign + std::to_string(hundredths / 100) + "." + cents;
    ASSERT_EQ(Format(static_cast<float>(n) / 1000.0F, "##0.00"), expected) << n;
  }
}

// Any 32-bit pattern that is a number: text and back gives the same bits, printed or plain.
void CheckRoundTrips() {
  std::mt19937 random(20190117);
  for (int i = 0; i < 100000; ++i) {
    const float value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    if (!std::isfinite(value)) continue;
    const std::string text = PlainNumber(value);
    ASSERT_EQ(ParseSingle(text), value) << text;
    ASSERT_EQ(WholeSingleText(PrintNumber(value)), value) << text;
    ASSERT_EQ(PlainNumber(ParseSingle(text)), text);
  }
}

// The field that rows are written in never loses a digit before the point.
void CheckFieldsReadBack() {
  std::mt19937 random(4);
  std::uniform_real_distribution<float> values(-99999.0F, 99999.0F);
  for (int i = 0; i < 20000; ++i) {
    const float value = values(random);
    const std::string field = RightField(Format(value, "####0.00000"), 20);
    ASSERT_EQ(field.size(), 20U);
    ASSERT_NEAR(LeadingNumber(field), static_cast<double>(value), 0.005) << field;
  }
}

void CheckAll() {
  CheckFormats();
  CheckPlain();
  CheckLeading();
  CheckLocaleNumbers();
  CheckRoundingOfThousandths();
  CheckRoundTrips();
  CheckFieldsReadBack();
}

TEST(NumberFormat, RowsGiveTheirTexts) {
  CheckFormats();
}

TEST(NumberFormat, IntegersKeepAllDigits) {
  EXPECT_EQ(Format(0, "##.00"), ".00");
  EXPECT_EQ(Format(7, "000"), "007");
  EXPECT_EQ(Format(-7, "000"), "-007");
  EXPECT_EQ(Format(12345, "###0"), "12345");
  EXPECT_EQ(Format(4, "000.00"), "004.00");
  EXPECT_EQ(Format(4, ""), "4");
  EXPECT_EQ(Format(std::int64_t{9007199254740993}, "0"), "9007199254740993");
  EXPECT_EQ(Format(std::numeric_limits<std::int64_t>::min(), "0"), "-9223372036854775808");
}

// 2.675F is below 2.675 as a real number, and far from it as a double.
TEST(NumberFormat, DigitsAreThoseOfTheWidth) {
  EXPECT_EQ(Format(2.675F, "0.00"), "2.68");
  EXPECT_EQ(Format(static_cast<double>(2.675F), "0.00"), "2.67");
  EXPECT_EQ(Format(0.1F, "0.0000000000"), "0.1000000000");
  EXPECT_EQ(Format(static_cast<double>(0.1F), "0.0000000000"), "0.1000000015");
}

TEST(NumberFormat, ThousandthsRoundHalfAwayFromZero) {
  CheckRoundingOfThousandths();
}

TEST(NumberFormat, FieldsReadBack) {
  CheckFieldsReadBack();
}

TEST(TextFormat, RowsGiveTheirTexts) {
  struct Row {
    const char* text;
    const char* pattern;
    const char* expected;
  };
  const std::vector<Row> rows = {
      {"1.5", "@@@@@", "  1.5"},
      {"1.5", "!@@@@@", "1.5  "},
      {"12345", "@@@@@", "12345"},
      {"123456", "@@@@@", "123456"},
      {"123456", "!@@@@@", "123456"},
      {"", "@@@", "   "},
      {"", "!@@@", "   "},
      {"abc", "", "abc"},
      {"abc", "!", "abc"},
      {"\xC2\xB5m", "@@@@", "  \xC2\xB5m"},
      {"\xE2\x82\xAC", "!@@@", "\xE2\x82\xAC  "},
  };
  for (const auto& row : rows) EXPECT_EQ(FormatText(row.text, row.pattern), row.expected);
}

TEST(TextFormat, RightFieldFillsAndNeverCuts) {
  EXPECT_EQ(RightField("0.00", 7), "   0.00");
  EXPECT_EQ(RightField("1000.00", 6), "1000.00");
  EXPECT_EQ(RightField("\xC3\xA9t\xC3\xA9", 5), "  \xC3\xA9t\xC3\xA9");
  EXPECT_EQ(RightField("ab", 0), "ab");
  EXPECT_EQ(RightField("ab", -5), "ab");
}

TEST(PlainNumber, RowsGiveTheirTexts) {
  CheckPlain();
}

TEST(PlainNumber, IntegersAreDecimal) {
  EXPECT_EQ(PlainNumber(0), "0");
  EXPECT_EQ(PlainNumber(-17), "-17");
  EXPECT_EQ(PlainNumber(std::int16_t{-32768}), "-32768");
  EXPECT_EQ(PlainNumber(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
  EXPECT_EQ(PlainNumber(9223372036854775807LL), "9223372036854775807");
}

TEST(PlainNumber, RandomSinglesReadBackToTheSameBits) {
  CheckRoundTrips();
}

TEST(PrintNumber, BlankBeforeUnlessNegativeAndBlankBehind) {
  EXPECT_EQ(PrintNumber(0.5F), " 0.5 ");
  EXPECT_EQ(PrintNumber(-3), "-3 ");
  EXPECT_EQ(PrintNumber(0), " 0 ");
  EXPECT_EQ(PrintNumber(-0.0F), " 0 ");
  EXPECT_EQ(PrintNumber(86399.5), " 86399.5 ");
  EXPECT_EQ(PrintNumber(std::int64_t{12}), " 12 ");
}

TEST(LeadingBlankNumber, CommandPartsHaveNoBlankBehind) {
  EXPECT_EQ("C" + LeadingBlankNumber(31) + LeadingBlankNumber(17), "C 31 17");
  EXPECT_EQ(LeadingBlankNumber(-3), "-3");
  EXPECT_EQ(LeadingBlankNumber(0), " 0");
}

TEST(LeadingNumber, RowsGiveTheirValues) {
  CheckLeading();
}

TEST(ParseSingle, RoundsOnceAndStaysFinite) {
  EXPECT_EQ(ParseSingle("0.1"), 0.1F);
  EXPECT_EQ(ParseSingle(" 2.675 V"), 2.675F);
  // Halfway between two floats but for the last digit: rounding over a double loses that digit.
  EXPECT_EQ(ParseSingle("1.00000005960464477540"), std::nextafter(1.0F, 2.0F));
  EXPECT_EQ(ParseSingle("1E39"), std::numeric_limits<float>::max());
  EXPECT_EQ(ParseSingle("-1E39"), std::numeric_limits<float>::lowest());
  EXPECT_EQ(ParseSingle("1E-60"), 0.0F);
  EXPECT_EQ(ParseSingle("+?"), 0.0F);
}

TEST(WholeNumberText, TakesWholeTextsOnly) {
  for (const char* good : {"2.5", " 2.5 ", "+2.5", "25E-1", "\t2.50\r\n", "2.5D0"}) {
    EXPECT_EQ(WholeNumberText(good), 2.5) << good;
    EXPECT_EQ(WholeSingleText(good), 2.5F) << good;
  }
  for (const char* bad : {"", "  ", "2,5", "2.5 m", "2 5", "x", ".", "-", "2.5E", "1E999", "-1E999",
                          "inf", "nan", "0x10", "++2"}) {
    EXPECT_EQ(WholeNumberText(bad), std::nullopt) << bad;
    EXPECT_EQ(WholeSingleText(bad), std::nullopt) << bad;
  }
  EXPECT_EQ(WholeNumberText("1E39"), 1.0E39);
  EXPECT_EQ(WholeSingleText("1E39"), std::nullopt);
}

TEST(ToInteger, HalfGoesToTheEvenNeighbour) {
  struct Row {
    double value;
    std::int16_t expected;
  };
  const std::vector<Row> rows = {
      {0.5, 0},         {1.5, 2},           {2.5, 2},
      {-0.5, 0},        {-1.5, -2},         {-2.5, -2},
      {2.4999999, 2},   {2.5000001, 3},     {0.49999999999999994, 0},
      {32767.4, 32767}, {-32768.5, -32768}, {-0.0, 0},
      {32766.5, 32766},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ToInteger16(row.value), row.expected) << row.value;
    EXPECT_EQ(ToInteger32(row.value), row.expected) << row.value;
    EXPECT_EQ(RoundHalfEven(row.value), row.expected) << row.value;
  }
  EXPECT_EQ(RoundHalfEven(4503599627370495.5), 4503599627370496);
  EXPECT_EQ(RoundHalfEven(4503599627370496.0 + 1.0), 4503599627370497);
  EXPECT_EQ(RoundHalfEven(-9223372036854775808.0), std::numeric_limits<std::int64_t>::min());
}

std::string FaultOf(std::int64_t (*routine)(double), double value) {
  try {
    routine(value);
  } catch (const RuntimeFault& fault) {
    return fault.what();
  }
  return "none";
}

TEST(ToInteger, OutOfRangeIsAnOverflow) {
  const auto to16 = [](double v) { return std::int64_t{ToInteger16(v)}; };
  const auto to32 = [](double v) { return std::int64_t{ToInteger32(v)}; };
  const auto to64 = [](double v) { return RoundHalfEven(v); };
  for (const double bad : {32767.5, 32768.0, -32768.51, 1.0E30}) {
    EXPECT_EQ(FaultOf(to16, bad), "Overflow") << bad;
  }
  for (const double bad : {2147483647.5, -2147483648.51, 1.0E30}) {
    EXPECT_EQ(FaultOf(to32, bad), "Overflow") << bad;
  }
  for (const double bad : {9223372036854775808.0, -9.3E18, static_cast<double>(kInfinity),
                           -static_cast<double>(kInfinity), std::nan("")}) {
    EXPECT_EQ(FaultOf(to64, bad), "Overflow") << bad;
    EXPECT_EQ(FaultOf(to16, bad), "Overflow") << bad;
  }
  EXPECT_EQ(FaultOf(to16, 32767.0), "none");
  EXPECT_EQ(FaultOf(to32, -2147483648.5), "none");
}

TEST(IntPart, IsTheLargestIntegerNotAbove) {
  EXPECT_EQ(IntPart(2.9), 2.0);
  EXPECT_EQ(IntPart(-2.1), -3.0);
  EXPECT_EQ(IntPart(-2.0), -2.0);
  EXPECT_EQ(IntPart(0.0), 0.0);
}

TEST(LocaleNumber, FirstMarkIsTurnedIntoTheLocalesMark) {
  CheckLocaleNumbers();
}

TEST(CommaLocale, StreamsWriteACommaAndTheFormsDoNot) {
  const CommaLocale locale;
  std::ostringstream stream;
  stream << 1500.5;
  ASSERT_EQ(stream.str(), "1.500,5");
  CheckAll();
}

TEST(CommaLocale, PrintfWritesACommaAndTheFormsDoNot) {
  const CommaLocale locale;
  if (!locale.ReachesC()) GTEST_SKIP() << "this machine has no locale with a decimal comma";
  char text[16];
  std::snprintf(text, sizeof text, "%.1f", 1.5);
  ASSERT_STREQ(text, "1,5");
  CheckAll();
}

}  // namespace
}  // namespace penlog
