#include "platform/value_reader.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/runtime_fault.h"
#include "tests/platform/comma_locale.h"

namespace penlog {
namespace {

std::string FaultOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const RuntimeFault& fault) {
    return fault.what();
  }
  return "none";
}

TEST(ValueReader, ReadsValuesInTheirOrder) {
  ValueReader reader("Channel1.txt", "\"Tip, title\"\r\n 3 \r\n0.02\r\nfree text , 7\r\n-1");
  EXPECT_FALSE(reader.AtEnd());
  EXPECT_EQ(reader.ReadString(), "Tip, title");
  EXPECT_EQ(reader.ReadInteger(), 3);
  EXPECT_EQ(reader.ReadSingle(), 0.02F);
  EXPECT_EQ(reader.ReadString(), "free text");
  EXPECT_EQ(reader.ReadInteger(), 7);
  EXPECT_FALSE(reader.AtEnd());
  EXPECT_EQ(reader.ReadInteger(), -1);
  EXPECT_TRUE(reader.AtEnd());
}

TEST(ValueReader, TakesEveryKindOfLineEnd) {
  for (const std::string end : {"\r\n", "\n", "\r"}) {
    ValueReader reader("x", "1" + end + "\"two\"" + end + end + "3" + end + "rest, of it " + end);
    EXPECT_EQ(reader.ReadInteger(), 1);
    EXPECT_EQ(reader.ReadString(), "two");
    EXPECT_EQ(reader.Line(), 3);
    EXPECT_EQ(reader.ReadInteger(), 3);
    EXPECT_EQ(reader.Line(), 5);
    EXPECT_EQ(reader.ReadLine(), "rest, of it ");
    EXPECT_TRUE(reader.AtEnd());
  }
}

TEST(ValueReader, StringsKeepTheirPlaces) {
  ValueReader reader("x", "\r\n\"\",,a b  ,\"  q  \" 5\r\n\t\"say 'hi'\"\t, last");
  const std::vector<std::string> expected = {"", "", "", "a b", "  q  ", "5", "say 'hi'", "last"};
  for (const auto& text : expected) EXPECT_EQ(reader.ReadString(), text);
  EXPECT_TRUE(reader.AtEnd());
}

TEST(ValueReader, NumbersEndAtBlanksToo) {
  ValueReader reader("x", " 0.5  1200 -3 \r\n\r\n  \r\n\"4.5\",\" 6 \"\r\n");
  EXPECT_EQ(reader.ReadSingle(), 0.5F);
  EXPECT_EQ(reader.ReadLong(), 1200);
  EXPECT_EQ(reader.ReadInteger(), -3);
  EXPECT_EQ(reader.ReadSingle(), 4.5F);
  EXPECT_EQ(reader.ReadInteger(), 6);
  EXPECT_TRUE(reader.AtEnd());
}

TEST(ValueReader, LinesAreTakenAsTheyStand) {
  ValueReader reader("x", "5\r\n  a, \"b\" \r\n\r\nlast");
  EXPECT_EQ(reader.ReadInteger(), 5);
  EXPECT_EQ(reader.ReadLine(), "  a, \"b\" ");
  EXPECT_EQ(reader.ReadLine(), "");
  EXPECT_EQ(reader.ReadLine(), "last");
  EXPECT_EQ(FaultOf([&] { reader.ReadLine(); }), "x ends too early at line 4");
}

TEST(ValueReader, WhiteSpaceIsTheEnd) {
  for (const char* text : {"", " ", "\r\n", " \t\r\n\n \r"}) {
    const ValueReader reader("x", text);
    EXPECT_TRUE(reader.AtEnd()) << text;
  }
  for (const char* text : {"0", "\"\"", ",", " \r\n x"}) {
    const ValueReader reader("x", text);
    EXPECT_FALSE(reader.AtEnd()) << text;
  }
}

TEST(ValueReader, PastTheEndTellsTitleAndLine) {
  for (const char* text : {"1\r\n2\r\n", "1\r\n2\r\n   \r\n"}) {
    ValueReader reader("System Setup Values.txt", text);
    reader.ReadInteger();
    reader.ReadInteger();
    const std::string expected = "System Setup Values.txt ends too early at line 3";
    EXPECT_EQ(FaultOf([&] { reader.ReadInteger(); }), expected);
    EXPECT_EQ(FaultOf([&] { reader.ReadLong(); }), expected);
    EXPECT_EQ(FaultOf([&] { reader.ReadSingle(); }), expected);
    EXPECT_EQ(FaultOf([&] { reader.ReadString(); }), expected);
  }
}

TEST(ValueReader, BadNumbersTellWhatWasFound) {
  struct Row {
    const char* text;
    const char* integer;
    const char* single;
  };
  const char* const fine = "none";
  const std::vector<Row> rows = {
      {"abc\r\n", "t, line 1: a whole number was expected, found \"abc\"",
       "t, line 1: a number was expected, found \"abc\""},
      {"\r\n\n 12x", "t, line 3: a whole number was expected, found \"12x\"",
       "t, line 3: a number was expected, found \"12x\""},
      {",5", "t, line 1: a whole number was expected, found nothing",
       "t, line 1: a number was expected, found nothing"},
      {"\"\"", "t, line 1: a whole number was expected, found nothing",
       "t, line 1: a number was expected, found nothing"},
      {"\"Tip\"", "t, line 1: a whole number was expected, found \"Tip\"",
       "t, line 1: a number was expected, found \"Tip\""},
      {"2.5", "t, line 1: a whole number was expected, found \"2.5\"", fine},
      {"2.0", fine, fine},
      {"1E2", fine, fine},
      {"32768", "t, line 1: a number from -32768 to 32767 was expected, found \"32768\"", fine},
      {"-32769", "t, line 1: a number from -32768 to 32767 was expected, found \"-32769\"", fine},
      {"32767", fine, fine},
      {"1E39", "t, line 1: a number from -32768 to 32767 was expected, found \"1E39\"",
       "t, line 1: a number was expected, found \"1E39\""},
      {"nan", "t, line 1: a whole number was expected, found \"nan\"",
       "t, line 1: a number was expected, found \"nan\""},
      {"\x01\x02", "t, line 1: a whole number was expected, found \"??\"",
       "t, line 1: a number was expected, found \"??\""},
      {"\"open\r\n5", "t, line 1: a closing double quote was expected, found \"\"open\"",
       "t, line 1: a closing double quote was expected, found \"\"open\""},
  };
  for (const auto& row : rows) {
    ValueReader integers("t", row.text);
    EXPECT_EQ(FaultOf([&] { integers.ReadInteger(); }), row.integer) << row.text;
    ValueReader singles("t", row.text);
    EXPECT_EQ(FaultOf([&] { singles.ReadSingle(); }), row.single) << row.text;
  }
}

TEST(ValueReader, DamagedTextIsShownShort) {
  ValueReader reader("t", std::string(5000, '\0'));
  EXPECT_EQ(FaultOf([&] { reader.ReadInteger(); }),
            "t, line 1: a whole number was expected, found \"" + std::string(40, '?') + "\"");
}

TEST(ValueReader, LongHas32Bits) {
  ValueReader good("t", "2147483647,-2147483648");
  EXPECT_EQ(good.ReadLong(), 2147483647);
  EXPECT_EQ(good.ReadLong(), -2147483647 - 1);
  ValueReader bad("t", "2147483648");
  EXPECT_EQ(FaultOf([&] { bad.ReadLong(); }),
            "t, line 1: a number from -2147483648 to 2147483647 was expected, "
            "found \"2147483648\"");
}

TEST(ValueReader, AFaultLeavesThePlace) {
  ValueReader reader("t", "1\r\nabc\r\n3");
  EXPECT_EQ(reader.ReadInteger(), 1);
  EXPECT_NE(FaultOf([&] { reader.ReadInteger(); }), "none");
  EXPECT_EQ(reader.Line(), 2);
  EXPECT_EQ(reader.ReadString(), "abc");
  EXPECT_EQ(reader.ReadInteger(), 3);
}

TEST(ValueReader, AnUnclosedQuoteSwallowsNothing) {
  ValueReader reader("t", "\"a\r\n\"b\"");
  EXPECT_EQ(FaultOf([&] { reader.ReadString(); }),
            "t, line 1: a closing double quote was expected, found \"\"a\"");
  EXPECT_EQ(reader.ReadLine(), "\"a");
  EXPECT_EQ(reader.ReadString(), "b");
  ValueReader torn("t", "1\r\n\"");
  torn.ReadInteger();
  EXPECT_EQ(FaultOf([&] { torn.ReadString(); }),
            "t, line 2: a closing double quote was expected, found \"\"\"");
}

TEST(ValueReader, OlderBytesAndByteOrderMarkAreRead) {
  ValueReader reader("t",
                     "\xEF\xBB\xBF"
                     "12\r\n\"20 \xB0"
                     "C\"");
  EXPECT_EQ(reader.ReadInteger(), 12);
  EXPECT_EQ(reader.ReadString(),
            "20 \xC2\xB0"
            "C");
}

TEST(ValueReader, IgnoresACommaLocale) {
  const CommaLocale locale;
  ValueReader reader("t", "0.02\r\n1.5,2.5");
  EXPECT_EQ(reader.ReadSingle(), 0.02F);
  EXPECT_EQ(reader.ReadSingle(), 1.5F);
  EXPECT_EQ(reader.ReadSingle(), 2.5F);
}

}  // namespace
}  // namespace penlog
