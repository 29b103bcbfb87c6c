#include "platform/value_writer.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "platform/runtime_fault.h"
#include "platform/value_reader.h"
#include "tests/platform/comma_locale.h"

namespace penlog {
namespace {

std::string OneOfEach() {
  ValueWriter writer;
  writer.Integer(-1);
  writer.Single(0.02F);
  writer.QuotedString("Tip, cone");
  writer.PrintLine("DONE");
  writer.PrintNumberLine(0.5F);
  writer.PrintNumberLine(-86399.25);
  writer.PrintNumberLine(7);
  writer.ListLine({3, 0, 0});
  writer.ListLine({-5});
  return writer.Text();
}

const std::string kOneOfEach =
    "-1\r\n0.02\r\n\"Tip, cone\"\r\nDONE\r\n 0.5 \r\n-86399.25 \r\n 7 \r\n3,0,0\r\n-5\r\n";

TEST(ValueWriter, WritesOneValueALine) {
  EXPECT_EQ(OneOfEach(), kOneOfEach);
}

TEST(ValueWriter, IgnoresACommaLocale) {
  const CommaLocale locale;
  EXPECT_EQ(OneOfEach(), kOneOfEach);
}

TEST(ValueWriter, StartsEmpty) {
  EXPECT_EQ(ValueWriter().Text(), "");
}

TEST(ValueWriter, QuotedStringsStayOnOneLineWithOnePairOfQuotes) {
  struct Row {
    const char* text;
    const char* expected;
  };
  const std::vector<Row> rows = {
      {"", "\"\"\r\n"},
      {"say \"hi\"", "\"say 'hi'\"\r\n"},
      {"\"", "\"'\"\r\n"},
      {"two\r\nlines", "\"two lines\"\r\n"},
      {"a\nb\rc", "\"a b c\"\r\n"},
      {"a\n\nb", "\"a  b\"\r\n"},
      {" kept ", "\" kept \"\r\n"},
      {"\xC2\xB5", "\"\xC2\xB5\"\r\n"},
  };
  for (const auto& row : rows) {
    ValueWriter writer;
    writer.QuotedString(row.text);
    EXPECT_EQ(writer.Text(), row.expected) << row.text;
  }
}

TEST(ValueWriter, SinglesThatNoReaderTakesAreRefused) {
  ValueWriter writer;
  writer.Integer(1);
  EXPECT_THROW(writer.Single(std::numeric_limits<float>::infinity()), RuntimeFault);
  EXPECT_THROW(writer.Single(std::numeric_limits<float>::quiet_NaN()), RuntimeFault);
  EXPECT_EQ(writer.Text(), "1\r\n");
}

TEST(ValueWriter, RandomValuesReadBackTheSame) {
  std::mt19937 random(62);
  ValueWriter writer;
  std::vector<float> singles;
  std::vector<std::int16_t> integers;
  std::vector<std::string> texts;
  while (singles.size() < 3000) {
    const float value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    if (!std::isfinite(value)) continue;
    singles.push_back(value);
    integers.push_back(static_cast<std::int16_t>(random() % 65536U - 32768U));
    texts.push_back(std::string(random() % 5U, ' ') + ", " + std::to_string(random()) + "'");
    writer.Single(singles.back());
    writer.QuotedString(texts.back());
    writer.Integer(integers.back());
    writer.PrintNumberLine(singles.back());
    writer.ListLine({integers.back(), 0, integers.back()});
  }
  ValueReader reader("t", writer.Text());
  for (std::size_t i = 0; i < singles.size(); ++i) {
    ASSERT_EQ(reader.ReadSingle(), singles[i]);
    ASSERT_EQ(reader.ReadString(), texts[i]);
    ASSERT_EQ(reader.ReadInteger(), integers[i]);
    ASSERT_EQ(reader.ReadSingle(), singles[i]);
    for (const int expected : {int{integers[i]}, 0, int{integers[i]}}) {
      ASSERT_EQ(reader.ReadInteger(), expected);
    }
  }
  EXPECT_TRUE(reader.AtEnd());
}

}  // namespace
}  // namespace penlog
