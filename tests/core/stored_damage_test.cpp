// Damage of the recovery copy that is no line of its own: texts of its header, marks of a gap,
// numbers that touch.
#include <gtest/gtest.h>

#include <cmath>

#include "core/temporary_data.h"
#include "support/temporary_lines.h"

namespace penlog {
namespace {

StoredSounding ReadLines(const TextLines& lines) {
  return ReadTemporaryData(
      JoinedLines(lines), [](int) { return false; }, 10000);
}

std::string WithByte(std::string text, std::size_t place, char byte) {
  text[place] = byte;
  return text;
}

const std::string kDate = "2026-06-15 09:30:00";

// Texts of the header.

TEST(StoredTexts, ThatAreDamagedAreToldAndHoldAMarkForWhatCannotBeRead) {
  for (std::size_t line = 2; line <= 13; ++line) {
    for (const char byte : {'\0', '\x01', '\x1F', '\x7F'}) {
      SCOPED_TRACE(line);
      TextLines lines = StoredLines(2);
      std::string& text = lines[line - 1];
      const std::string read = WithByte(text, 1, '?');
      text = WithByte(text, 1, byte);
      StoredSounding stored = ReadLines(lines);
      EXPECT_EQ(stored.unreadable, "");
      EXPECT_EQ(stored.lost_texts, std::vector<std::size_t>{line});
      EXPECT_EQ(stored.HeaderText(line), read);
      EXPECT_EQ(stored.damage, TextLines{"LINE " + std::to_string(line) +
                                         ": IT IS DAMAGED AND READS \"" + read + "\""});
      EXPECT_EQ(stored.rows.size(), 2U);
      EXPECT_FALSE(stored.loses_lines);
      EXPECT_EQ(stored.sound_text, JoinedLines(lines)) << "as it stands";
    }
  }
}

TEST(StoredTexts, ArePlainOrDamagedByWhatTheirLineHolds) {
  struct Case {
    const char* what;
    std::size_t line;
    std::string text;
    bool damaged;
  };
  for (const Case& row :
       {Case{"a tab that was pasted", 10, "Head\tnote", false}, Case{"no note", 10, "", false},
        Case{"an umlaut", 6, "D\xC3\xBCne", false}, Case{"an older umlaut", 6, "D\xFCne", false},
        Case{"a tab in a cone", 5, "DSE\t234", true}, Case{"no cone", 5, "  ", true},
        Case{"a cone of another family", 5, " XYZ 7 ", false}, Case{"no date", 9, "", false},
        Case{"a date with blanks", 9, " " + kDate + " ", false},
        Case{"a letter in a date", 9, WithByte(kDate, 3, 'v'), true},
        Case{"a high byte in a date", 9, WithByte(kDate, 3, '\xB6'), true},
        Case{"half a date", 9, "2026-06-15", true}}) {
    SCOPED_TRACE(row.what);
    TextLines lines = StoredLines(1);
    lines[row.line - 1] = row.text;
    const StoredSounding stored = ReadLines(lines);
    EXPECT_EQ(stored.LosesText(row.line), row.damaged);
    EXPECT_EQ(stored.damage.size(), row.damaged ? 1U : 0U);
  }
}

TEST(StoredDate, FitsADateThatDiffersInNothingThatCanBeRead) {
  struct Case {
    const char* what;
    std::string line;
    std::string date;
    bool fits;
  };
  for (const Case& row :
       {Case{"the same", kDate, kDate, true}, Case{"the same but blanks", kDate, kDate + " ", true},
        Case{"another", kDate, "2026-06-15 09:31:00", false},
        Case{"one byte", WithByte(kDate, 9, '\x05'), kDate, true},
        Case{"a letter", WithByte(kDate, 9, 'u'), kDate, true},
        Case{"a high byte", WithByte(kDate, 9, '\xB5'), kDate, true},
        Case{"all of it", std::string(19, '\0'), kDate, true},
        Case{"another in what can be read", WithByte(kDate, 9, '\x05'), "2026-06-14 08:00:00",
             false},
        Case{"a date that is none", WithByte(kDate, 9, '\x05'), "2026-06-1x 09:30:00", false},
        Case{"a part", "2026-06-15", kDate, false}}) {
    TextLines lines = StoredLines(1);
    lines[8] = row.line;
    EXPECT_EQ(ReadLines(lines).FitsDate(row.date), row.fits) << row.what;
  }
}

// Numbers that touch.

TEST(TouchingValues, AreReadOneByOne) {
  const std::string most = "340282346638528859811704183484516925440.00000";
  const std::string wide = "123456789012345.00000";
  struct Case {
    const char* what;
    TextLines values;
    std::vector<float> read;
  };
  for (const Case& row :
       {Case{"none before the largest", {"-32768", most, "3.5"}, {-32768.0f, 3.4028235e38f, 3.5f}},
        Case{"none before a negative one",
             {"-32768", "-" + wide, "3.5"},
             {-32768.0f, -1.2345679e14f, 3.5f}},
        Case{"none twice", {"-32768", "-32768", wide}, {-32768.0f, -32768.0f, 1.2345679e14f}},
        Case{"none behind it", {wide, "-32768", wide}, {1.2345679e14f, -32768.0f, 1.2345679e14f}},
        Case{"no limit before it", {"inf", wide, "-inf"}, {HUGE_VALF, 1.2345679e14f, -HUGE_VALF}},
        Case{"a number that begins so",
             {"-32768.50000", "-327681.00000", "-3276812345.00000"},
             {-32768.5f, -327681.0f, -3276812345.0f}},
        Case{"such a one that fills its field",
             {"-3276812345678.00000", wide, "3.5"},
             {-3.2768123e12f, 1.2345679e14f, 3.5f}}}) {
    SCOPED_TRACE(row.what);
    TextLines lines = StoredHeader();
    lines.push_back(StoredRowLine("0.02", "2.00", row.values));
    const StoredSounding stored = ReadLines(lines);
    EXPECT_EQ(stored.damage, TextLines{});
    ASSERT_EQ(stored.rows.size(), 1U);
    ASSERT_EQ(stored.rows[0].values.size(), row.read.size());
    for (std::size_t i = 0; i < row.read.size(); ++i) {
      EXPECT_FLOAT_EQ(stored.rows[0].values[i], row.read[i]) << i;
    }
  }
}

// Marks of a gap.

TEST(TornGap, IsOpenWhereNoRowStandsBehindIt) {
  const std::string mark = "DRILLOUT*****";
  struct Case {
    const char* what;
    TextLines behind;
    bool open;
  };
  const std::string row = StoredRowNumber(3);
  for (const Case& one :
       {Case{"nothing", {}, false}, Case{"a whole mark", {mark}, false},
        Case{"a letter of it", {"D"}, true}, Case{"half its word", {"DRILL"}, true},
        Case{"a part of a field", {mark + "***"}, true},
        Case{"bytes in its field", {mark + std::string(60, '\0')}, true},
        Case{"a part, and a row that is none", {mark + "***", "\"torn"}, true},
        Case{"a part before a row", {mark + "***", row}, false}, Case{"no mark", {"E"}, false}}) {
    SCOPED_TRACE(one.what);
    TextLines lines = StoredLines(2);
    lines.insert(lines.end(), one.behind.begin(), one.behind.end());
    EXPECT_EQ(ReadLines(lines).EndsInTornGap(), one.open);
  }
}

TEST(TornGap, PartsTheDepthsBeforeItFromThoseBehindIt) {
  TextLines lines = StoredHeader();
  for (const char* depth : {"0.02", "0.04", "gap", "0.03", "0.05"}) {
    const std::string text = depth;
    lines.push_back(text == "gap" ? "DRILLOUT*****" + std::string(30, '*')
                                  : StoredRowLine(text, "2.00", {text, "2.1", "3.1"}));
  }
  const StoredSounding stored = ReadLines(lines);
  EXPECT_EQ(stored.rows.size(), 4U);
  EXPECT_EQ(stored.damage, TextLines{"LINE 20: IT IS NO WHOLE ROW"});
}

}  // namespace
}  // namespace penlog
