#include "platform/texts.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "tests/platform/comma_locale.h"

namespace penlog {
namespace {

using std::string_literals::operator""s;

TEST(Trim, TakesWhiteSpaceOffBothEnds) {
  EXPECT_EQ(Trim(" \t a b \r\n"), "a b");
  EXPECT_EQ(Trim("a"), "a");
  EXPECT_EQ(Trim(" \r\n"), "");
  EXPECT_EQ(Trim(""), "");
}

TEST(TextCase, IsAsciiOnly) {
  const CommaLocale locale;
  EXPECT_EQ(ToUpper("dse1 \xC3\xA4z"), "DSE1 \xC3\xA4Z");
  EXPECT_TRUE(EqualNoCase("Site.CPT", "sITE.cpt"));
  EXPECT_FALSE(EqualNoCase("site", "site "));
  EXPECT_FALSE(EqualNoCase("[", "{"));
}

TEST(TextEnds, AreCompared) {
  EXPECT_TRUE(StartsWith("DSE123", "DSE"));
  EXPECT_TRUE(StartsWith("DSE", ""));
  EXPECT_FALSE(StartsWith("DS", "DSE"));
  EXPECT_FALSE(StartsWith("dse123", "DSE"));
  EXPECT_TRUE(EndsWithNoCase("hole 1.CPT", ".cpt"));
  EXPECT_TRUE(EndsWithNoCase("hole", ""));
  EXPECT_FALSE(EndsWithNoCase("pt", ".cpt"));
  EXPECT_FALSE(EndsWithNoCase("hole.cpt2", ".cpt"));
}

TEST(Characters, AreCodePoints) {
  EXPECT_EQ(CharacterCount(""), 0U);
  EXPECT_EQ(CharacterCount("abc"), 3U);
  EXPECT_EQ(CharacterCount("\xC2\xB5\xE2\x82\xAC\xF0\x9F\x98\x80"), 3U);
}

TEST(Characters, PartsAreCutBetweenCharacters) {
  const std::string text =
      "a\xC2\xB5\xE2\x82\xAC"
      "d";
  EXPECT_EQ(Left(text, 2), "a\xC2\xB5");
  EXPECT_EQ(Left(text, 9), text);
  EXPECT_EQ(Left(text, 0), "");
  EXPECT_EQ(Left(text, -1), "");
  EXPECT_EQ(Right(text, 2),
            "\xE2\x82\xAC"
            "d");
  EXPECT_EQ(Right(text, 9), text);
  EXPECT_EQ(Right(text, 0), "");
  EXPECT_EQ(Right(text, -1), "");
  EXPECT_EQ(Mid(text, 2, 2), "\xC2\xB5\xE2\x82\xAC");
  EXPECT_EQ(Mid(text, 3),
            "\xE2\x82\xAC"
            "d");
  EXPECT_EQ(Mid(text, 5), "");
  EXPECT_EQ(Mid(text, 9, 3), "");
  EXPECT_EQ(Mid(text, 0, 1), "a");
  EXPECT_EQ(Mid(text, INT_MIN, INT_MAX), text);
}

TEST(FileBytes, RowsGiveTheirTexts) {
  struct Row {
    std::string bytes;
    std::string expected;
  };
  const std::vector<Row> rows = {
      {"", ""},
      {"plain\r\n", "plain\r\n"},
      {"\xEF\xBB\xBF"
       "first",
       "first"},
      {"\xEF\xBB\xBF", ""},
      {"x\xEF\xBB\xBF", "x\xEF\xBB\xBF"},
      {"\xC2\xB5m", "\xC2\xB5m"},
      {"\xB5m", "\xC2\xB5m"},
      {"20 \xB0"
       "C",
       "20 \xC2\xB0"
       "C"},
      {"\x80", "\xE2\x82\xAC"},
      {"\x99", "\xE2\x84\xA2"},
      {"\x83", "\xC6\x92"},
      {"\x81", "\xC2\x81"},
      {"\xFF", "\xC3\xBF"},
      {"Caf\xE9", "Caf\xC3\xA9"},
      {"\xE9t\xE9", "\xC3\xA9t\xC3\xA9"},
      {"\xC3\xA9 and \xE9", "\xC3\xA9 and \xC3\xA9"},
      {"\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"},
      {"\xC0\xAF", "\xC3\x80\xC2\xAF"},                                  // a long form
      {"\xE0\x80\xAF", "\xC3\xA0\xE2\x82\xAC\xC2\xAF"},                  // a long form
      {"\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xE2\x82\xAC"},                  // a surrogate
      {"\xF4\x90\x80\x80", "\xC3\xB4\xC2\x90\xE2\x82\xAC\xE2\x82\xAC"},  // above the last code
      {"\xE2\x82", "\xC3\xA2\xE2\x80\x9A"},                              // torn at the end
      {"a\0b"s, "a\0b"s},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(FromFileBytes(row.bytes), row.expected);
    EXPECT_EQ(FromFileBytes(FromFileBytes(row.expected)), row.expected);
  }
}

}  // namespace
}  // namespace penlog
