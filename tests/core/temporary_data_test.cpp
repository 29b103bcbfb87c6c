#include "core/temporary_data.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "platform/numbers.h"
#include "support/temporary_lines.h"

namespace penlog {
namespace {

constexpr std::int32_t kRoom = 10000;

bool NoChannel(int) {
  return false;
}

StoredSounding Read(const std::string& text) {
  return ReadTemporaryData(text, NoChannel, kRoom);
}

StoredSounding ReadLines(const TextLines& lines) {
  return Read(JoinedLines(lines));
}

/// Row n is one of `StoredRowNumber`.
void ExpectRow(const StoredRow& row, int n) {
  EXPECT_FLOAT_EQ(row.depth, 0.02f * static_cast<float>(n));
  EXPECT_FLOAT_EQ(row.speed, 2.0f + 0.01f * static_cast<float>(n % 100));
  ASSERT_EQ(row.values.size(), 3U);
  for (int channel = 1; channel <= 3; ++channel) {
    EXPECT_FLOAT_EQ(row.values[static_cast<std::size_t>(channel - 1)],
                    ParseSingle(StoredValue(channel, n)));
  }
}

TEST(StoredHeader, IsReadLineByLine) {
  const StoredSounding stored = ReadLines(StoredLines(2));
  EXPECT_FALSE(stored.done);
  EXPECT_EQ(stored.unreadable, "");
  EXPECT_EQ(stored.main_file, "/data/s.cpt");
  EXPECT_EQ(stored.sounding_name, "NAME");
  EXPECT_EQ(stored.company_name, "Company, Ltd.") << "a comma parts nothing in a whole line";
  EXPECT_EQ(stored.operator_name, "Oper");
  EXPECT_EQ(stored.cone_id, "DSE1234");
  EXPECT_EQ(stored.location, "Loc");
  EXPECT_EQ(stored.job_number, "Job");
  EXPECT_EQ(stored.hole_number, "Hole");
  EXPECT_EQ(stored.date_time, "2026-06-15 09:30:00");
  EXPECT_EQ(stored.header_note, "Head");
  EXPECT_EQ(stored.footer_note1, "Foot1");
  EXPECT_EQ(stored.footer_note2, "Foot2");
  EXPECT_EQ(stored.gps_position, "GPS");
  EXPECT_FLOAT_EQ(stored.water_table, 1.5f);
  EXPECT_EQ(stored.graphs, (std::array<std::int16_t, 3>{3, 2, 0}));
  EXPECT_EQ(stored.columns, (std::vector<int>{1, 2, 3}));
  ASSERT_EQ(stored.zeros.size(), 3U);
  EXPECT_FLOAT_EQ(stored.zeros[0].value_or(0), 0.2531f);
  EXPECT_FLOAT_EQ(stored.zeros[2].value_or(0), 0.5007f);
  EXPECT_TRUE(stored.damage.empty());
}

TEST(StoredHeader, TextsOfOlderFilesAreReadAsWindows1252) {
  TextLines lines = StoredLines(1);
  lines[5] = "D\xFCne";
  EXPECT_EQ(ReadLines(lines).location, "D\xC3\xBCne");
}

TEST(StoredHeader, GraphsAreTheItemsThatStandOnTheLine) {
  struct Case {
    const char* line;
    std::array<std::int16_t, 3> graphs;
  };
  for (const Case& row :
       {Case{"3,2,20", {3, 2, 20}}, Case{"0,0,0", {0, 0, 0}}, Case{"7", {7, 0, 0}},
        Case{"3,2", {3, 2, 0}}, Case{"", {0, 0, 0}}, Case{"1,3,2,6", {1, 3, 2}},
        Case{" 3 , 2 , 6 ", {3, 2, 6}}, Case{"3,x,31", {3, 0, 0}}, Case{"-1,2.5,6", {0, 0, 6}}}) {
    TextLines lines = StoredLines(1);
    lines[14] = row.line;
    EXPECT_EQ(ReadLines(lines).graphs, row.graphs) << row.line;
  }
}

TEST(StoredHeader, FirstLineDecidesWhetherItIsDone) {
  struct Case {
    const char* text;
    bool done;
  };
  for (const Case& row :
       {Case{"DONE\r\n", true}, Case{"DONE", true}, Case{"DONE\n/data/s.cpt", true},
        Case{"DONE.cpt\r\n", false}, Case{"/data/DONE\r\n", false}, Case{"", false},
        Case{"done\r\n", false}}) {
    EXPECT_EQ(Read(row.text).done, row.done) << row.text;
  }
}

TEST(StoredHeader, ThatCannotBeUsedSaysWhy) {
  struct Case {
    const char* what;
    std::function<std::string()> text;
    const char* why;
  };
  const auto with = [](std::size_t line, const std::string& text) {
    TextLines lines = StoredLines(3);
    lines[line] = text;
    return JoinedLines(lines);
  };
  const Case cases[] = {
      {"nothing", [] { return std::string(); }, "IT IS EMPTY"},
      {"one line", [] { return std::string("/data/s.cpt\r\n"); }, "ITS HEADER IS NOT WHOLE"},
      {"16 lines",
       [] {
         TextLines lines = StoredHeader();
         lines.pop_back();
         return JoinedLines(lines);
       },
       "ITS HEADER IS NOT WHOLE"},
      {"no path", [&] { return with(0, "  "); }, "LINE 1 NAMES NO FILE"},
      {"the copy itself", [&] { return with(0, "/allusers/PENLOG(KQ)/TemporaryData.txt"); },
       "LINE 1 NAMES NO FILE OF A SOUNDING"},
      {"a side file", [&] { return with(0, "/data/s.TIM"); }, "LINE 1 NAMES NO FILE OF A SOUNDING"},
      {"the film", [&] { return with(0, "/data/s.mp4"); }, "LINE 1 NAMES NO FILE OF A SOUNDING"},
      {"a restart test", [&] { return with(0, "/data/s.rst"); },
       "LINE 1 NAMES NO FILE OF A SOUNDING"},
      {"a calibration", [&] { return with(0, "/data/s.cal"); },
       "LINE 1 NAMES NO FILE OF A SOUNDING"},
      {"a digit in the extension", [&] { return with(0, "/data/s.cp4"); },
       "LINE 1 NAMES NO FILE OF A SOUNDING"},
      {"no extension", [&] { return with(0, "/data/sounding"); },
       "LINE 1 NAMES NO FILE OF A SOUNDING"},
      {"an extension alone", [&] { return with(0, "/data/.cpt"); },
       "LINE 1 NAMES NO FILE OF A SOUNDING"},
      {"blanks behind it", [&] { return with(0, "/data/s.cpt  "); },
       "LINE 1 NAMES NO FILE OF A SOUNDING"},
      {"a character that names don't have", [&] { return with(0, "/data/s\x01.cpt"); },
       "LINE 1 NAMES NO FILE OF A SOUNDING"},
      {"no columns", [&] { return with(15, ""); }, "LINE 16 NAMES NO CHANNELS"},
      {"columns unquoted", [&] { return with(15, std::string(13, ' ') + StoredField("1")); },
       "LINE 16 NAMES NO CHANNELS"},
      {"half a column", [&] { return with(15, "\"" + std::string(25, ' ') + "1\""); },
       "LINE 16 NAMES NO CHANNELS"},
      {"channel 31",
       [&] {
         return with(15, StoredColumns({"1", "31"}));
       },
       "LINE 16 NAMES NO CHANNELS"},
      {"channel 19",
       [&] {
         return with(15, StoredColumns({"1", "19"}));
       },
       "LINE 16 NAMES NO CHANNELS"},
      {"a channel twice",
       [&] {
         return with(15, StoredColumns({"1", "1"}));
       },
       "LINE 16 NAMES NO CHANNELS"},
      {"a word",
       [&] {
         return with(15, StoredColumns({"1", "two"}));
       },
       "LINE 16 NAMES NO CHANNELS"},
  };
  for (const Case& row : cases) {
    const StoredSounding stored = Read(row.text());
    EXPECT_EQ(stored.unreadable, row.why) << row.what;
    EXPECT_FALSE(stored.done) << row.what;
    EXPECT_TRUE(stored.rows.empty()) << row.what;
  }
}

TEST(StoredHeader, UpTo30ColumnsAreReadAndNotOnly18) {
  TextLines numbers;
  TextLines zeros;
  for (int channel = 1; channel <= 30; ++channel) {
    if (channel >= 19 && channel <= 22) continue;
    numbers.push_back(std::to_string(channel));
    zeros.push_back("0.00000");
  }
  TextLines lines = StoredHeader();
  lines[15] = StoredColumns(numbers);
  lines[16] = StoredColumns(zeros);
  lines.push_back(StoredRowLine("0.02", "2.00", zeros));
  const StoredSounding stored = ReadLines(lines);
  EXPECT_EQ(stored.columns.size(), 26U);
  ASSERT_EQ(stored.rows.size(), 1U);
  EXPECT_EQ(stored.rows[0].values.size(), 26U);
}

TEST(StoredBaselines, ThatAreNoNumbersAreToldByTheirChannel) {
  TextLines lines = StoredLines(2);
  lines[16] = StoredColumns({"0.25310", "x", "0.50070"});
  StoredSounding stored = ReadLines(lines);
  EXPECT_TRUE(stored.zeros[0] && stored.zeros[2]);
  EXPECT_FALSE(stored.zeros[1]);
  EXPECT_EQ(stored.damage, TextLines{"LINE 17: THE BASELINE OF CHANNEL 2 IS NO NUMBER"});
  EXPECT_FALSE(stored.loses_lines);
  EXPECT_EQ(stored.rows.size(), 2U);
  lines[16] = StoredColumns({"0.25310", "0.50070"});
  stored = ReadLines(lines);
  EXPECT_EQ(stored.damage.size(), 3U) << "with one field less none is known";
  EXPECT_EQ(stored.rows.size(), 2U);
}

TEST(StoredWaterTable, ThatIsNoNumberIsToldAndCountsAs0) {
  TextLines lines = StoredLines(1);
  lines[13] = "deep";
  const StoredSounding stored = ReadLines(lines);
  EXPECT_EQ(stored.water_table, 0.0f);
  ASSERT_EQ(stored.damage.size(), 1U);
  EXPECT_EQ(stored.damage[0].find("LINE 14:"), 0U);
}

TEST(StoredRows, AreTakenInOrder) {
  for (const int count : {0, 1, 2, 25}) {
    const TextLines lines = StoredLines(count);
    const StoredSounding stored = ReadLines(lines);
    ASSERT_EQ(stored.rows.size(), static_cast<std::size_t>(count));
    for (int n = 1; n <= count; ++n) ExpectRow(stored.rows[static_cast<std::size_t>(n - 1)], n);
    EXPECT_EQ(stored.sound_text, JoinedLines(lines)) << "a sound file stays byte by byte";
    EXPECT_TRUE(stored.damage.empty());
    EXPECT_FALSE(stored.loses_lines);
  }
}

/// A line in the place of row 3 of 5, and what is made of it.
struct DamagedLine {
  const char* what;
  std::string line;
  const char* why;
};

const std::vector<DamagedLine>& DamagedLines() {
  const std::string row = StoredRowNumber(3);
  static const std::vector<DamagedLine> lines = {
      {"half of it", row.substr(0, row.size() / 2), "IT IS NO WHOLE ROW"},
      {"without its last quote", row.substr(0, row.size() - 1), "IT IS NO WHOLE ROW"},
      {"without its first quote", row.substr(1), "IT IS NO WHOLE ROW"},
      {"empty", "", "IT IS NO WHOLE ROW"},
      {"one quote", "\"", "IT IS NO WHOLE ROW"},
      {"only quotes", "\"\"", "IT HOLDS WHAT IS NO NUMBER"},
      {"zeros of a torn block", std::string(60, '\0'), "IT IS NO WHOLE ROW"},
      {"one column less", StoredRowLine("0.06", "2.00", {"1.00003", "2.00003"}),
       "IT DOES NOT FIT THE COLUMNS"},
      {"one column more", StoredRowLine("0.06", "2.00", {"1.0", "2.0", "3.0", "4.0"}),
       "IT DOES NOT FIT THE COLUMNS"},
      {"no columns", StoredRowLine("0.06", "2.00", {}), "IT DOES NOT FIT THE COLUMNS"},
      {"text for a value", StoredRowLine("0.06", "2.00", {"1.00003", "two", "3.00003"}),
       "IT HOLDS WHAT IS NO NUMBER"},
      {"text behind a value", StoredRowLine("0.06", "2.00", {"1.00003", "2.0000x", "3.00003"}),
       "IT HOLDS WHAT IS NO NUMBER"},
      {"text for the depth", StoredRowLine("deep", "2.00", {"1.0", "2.0", "3.0"}),
       "IT HOLDS WHAT IS NO NUMBER"},
      {"text for the speed", StoredRowLine("0.06", "fast", {"1.0", "2.0", "3.0"}),
       "IT HOLDS WHAT IS NO NUMBER"},
      {"nan for the depth", StoredRowLine("nan", "2.00", {"1.0", "2.0", "3.0"}),
       "IT HOLDS WHAT IS NO NUMBER"},
      {"half a mark of a gap", "DRILLOUT**", "IT IS NO WHOLE ROW"},
      {"a mark torn in a field", "DRILLOUT*****" + std::string(30, '*'), "IT IS NO WHOLE ROW"},
      {"a mark with more behind it", "DRILLOUT*****\"  0.06", "IT IS NO WHOLE ROW"},
      {"two rows in one line", row + row, "IT HOLDS WHAT IS NO NUMBER"},
  };
  return lines;
}

TEST(DamagedLine, IsLeftOutAloneAndTold) {
  for (const DamagedLine& damaged : DamagedLines()) {
    SCOPED_TRACE(damaged.what);
    TextLines lines = StoredLines(5);
    lines[17 + 2] = damaged.line;
    const StoredSounding stored = ReadLines(lines);
    ASSERT_EQ(stored.rows.size(), 4U);
    for (const int n : {1, 2}) ExpectRow(stored.rows[static_cast<std::size_t>(n - 1)], n);
    for (const int n : {4, 5}) ExpectRow(stored.rows[static_cast<std::size_t>(n - 2)], n);
    EXPECT_EQ(stored.damage, TextLines{std::string("LINE 20: ") + damaged.why});
    EXPECT_TRUE(stored.loses_lines);
    lines.erase(lines.begin() + 19);
    EXPECT_EQ(stored.sound_text, JoinedLines(lines)) << "the rest, byte by byte";
  }
}

// Rods go down.

struct OrderCase {
  const char* what;
  TextLines depths;
  std::vector<int> left_out;  // by their places, from 0
  const char* why;
};

/// Rows of those depths, each with a reading of its own; "gap" for a mark.
TextLines RowsAt(const TextLines& depths) {
  TextLines lines = StoredHeader();
  int number = 0;
  for (const std::string& depth : depths) {
    const std::string reading = std::to_string(number++) + ".5";
    lines.push_back(depth == "gap" ? "DRILLOUT*****" + std::string(60, '*')
                                   : StoredRowLine(depth, "2.00", {reading, "2.1", "3.1"}));
  }
  return lines;
}

TEST(DamagedDepth, IsLeftOutAloneAndTold) {
  const OrderCase cases[] = {
      {"all in order", {"0.02", "0.04", "0.06", "0.08"}, {}, ""},
      {"steps of half a hundredth", {"0.01", "0.01", "0.02", "0.02", "0.03"}, {}, ""},
      {"a jump of a lost link", {"0.02", "0.04", "9.96", "9.98"}, {}, ""},
      {"elevations as they are counted", {"-12.00", "-11.98", "-11.96"}, {}, ""},
      {"the last one negative",
       {"0.02", "0.04", "0.06", "-5.00"},
       {3},
       "ITS DEPTH IS OUT OF ORDER"},
      {"the last one above", {"0.02", "0.04", "0.06", "0.03"}, {3}, "ITS DEPTH IS OUT OF ORDER"},
      {"one too deep", {"0.02", "5.00", "0.06", "0.08"}, {1}, "ITS DEPTH IS OUT OF ORDER"},
      {"the first too deep", {"5.00", "0.04", "0.06"}, {0}, "ITS DEPTH IS OUT OF ORDER"},
      {"no depth of a hole", {"0.02", "0.04", "12000.50"}, {2}, "ITS DEPTH CAN BE NONE"},
      {"parts swapped",
       {"0.02", "0.08", "0.10", "0.04", "0.06", "0.12", "0.14"},
       {1, 2},
       "ITS DEPTH IS OUT OF ORDER"},
      {"above a gap that was drilled", {"0.02", "0.04", "gap", "0.03", "0.05"}, {}, ""},
      {"out of order behind a gap",
       {"0.02", "gap", "0.50", "0.52", "0.51", "0.54"},
       {3},
       "ITS DEPTH IS OUT OF ORDER"},
  };
  for (const OrderCase& row : cases) {
    SCOPED_TRACE(row.what);
    TextLines lines = RowsAt(row.depths);
    const StoredSounding stored = ReadLines(lines);
    TextLines told;
    for (const int place : row.left_out) {
      told.push_back("LINE " + std::to_string(18 + place) + ": " + row.why);
    }
    EXPECT_EQ(stored.damage, told);
    EXPECT_EQ(stored.loses_lines, !told.empty());
    for (auto place = row.left_out.rbegin(); place != row.left_out.rend(); ++place) {
      lines.erase(lines.begin() + 17 + *place);
    }
    EXPECT_EQ(stored.sound_text, JoinedLines(lines));
  }
}

TEST(DamagedDepth, TheSameLineTwiceIsOneRowUnlessStepsAreFinerThanItsDigits) {
  TextLines lines = StoredLines(6);
  lines.insert(lines.begin() + 19, lines[19]);
  const StoredSounding stored = ReadLines(lines);
  EXPECT_EQ(stored.rows.size(), 6U);
  EXPECT_EQ(stored.damage, TextLines{"LINE 21: IT STANDS TWICE"});
  TextLines fine = StoredHeader();
  for (const char* depth : {"0.01", "0.01", "0.02", "0.02", "0.03", "0.03"}) {
    fine.push_back(StoredRowLine(depth, "2.00", {"1.1", "2.1", "3.1"}));
  }
  EXPECT_EQ(ReadLines(fine).rows.size(), 6U);
}

TEST(DamagedLine, AtTheEndWithoutALineEndIsLeftOut) {
  for (const DamagedLine& damaged : DamagedLines()) {
    if (damaged.line.empty()) continue;
    SCOPED_TRACE(damaged.what);
    const std::string sound = JoinedLines(StoredLines(2));
    const StoredSounding stored = Read(sound + damaged.line);
    EXPECT_EQ(stored.rows.size(), 2U);
    EXPECT_EQ(stored.sound_text, sound);
    EXPECT_TRUE(stored.loses_lines);
  }
}

TEST(DamagedLine, EveryBeginningOfTheLastRowIsNoRow) {
  const std::string sound = JoinedLines(StoredLines(2));
  const std::string last = StoredRowNumber(3);
  for (std::size_t length = 1; length < last.size(); ++length) {
    const StoredSounding stored = Read(sound + last.substr(0, length));
    EXPECT_EQ(stored.rows.size(), 2U) << length;
    EXPECT_EQ(stored.sound_text, sound) << length;
  }
}

TEST(StoredRows, AWholeLastLineWithoutItsEndIsARowAndGetsItsEnd) {
  const std::string whole = JoinedLines(StoredLines(3));
  for (const std::size_t missing : {1U, 2U}) {
    const StoredSounding stored = Read(whole.substr(0, whole.size() - missing));
    EXPECT_EQ(stored.rows.size(), 3U);
    EXPECT_EQ(stored.sound_text, whole);
    EXPECT_FALSE(stored.loses_lines);
    EXPECT_TRUE(stored.damage.empty());
  }
}

TEST(StoredRows, LineEndsWithoutCarriageReturnAreReadAndWrittenAsTheyShouldBe) {
  std::string text;
  for (const std::string& line : StoredLines(2)) text += line + "\n";
  const StoredSounding stored = Read(text);
  EXPECT_EQ(stored.rows.size(), 2U);
  EXPECT_EQ(stored.sound_text, JoinedLines(StoredLines(2)));
}

TEST(StoredGap, IsAMarkAndNoRow) {
  const std::string gap = "DRILLOUT*****" + std::string(60, '*');
  TextLines lines = StoredLines(2);
  lines.insert(lines.begin() + 17, gap);
  lines.insert(lines.begin() + 19, gap);
  lines.push_back(gap);
  const StoredSounding stored = ReadLines(lines);
  EXPECT_EQ(stored.rows.size(), 2U);
  EXPECT_EQ(stored.gaps, (std::vector<std::int32_t>{0, 1, 2}));
  EXPECT_EQ(stored.sound_text, JoinedLines(lines)) << "it is kept";
  EXPECT_TRUE(stored.damage.empty());
}

TEST(StoredGap, BehindTheLastRowIsOpen) {
  const std::string gap = "DRILLOUT*****" + std::string(60, '*');
  struct Case {
    const char* what;
    int rows;
    int gap_behind;
    bool open;
  };
  for (const Case& row : {Case{"behind the last", 2, 2, true}, Case{"before the last", 2, 1, false},
                          Case{"without rows", 0, 0, true}}) {
    TextLines lines = StoredLines(row.rows);
    lines.insert(lines.begin() + 17 + row.gap_behind, gap);
    EXPECT_EQ(ReadLines(lines).EndsInGap(), row.open) << row.what;
  }
  EXPECT_FALSE(ReadLines(StoredLines(2)).EndsInGap()) << "there is none";
}

TEST(StoredGap, TornAsTheLastLineIsLeftOutAndTold) {
  const std::string sound = JoinedLines(StoredLines(2));
  const std::string gap = "DRILLOUT*****" + std::string(60, '*');
  for (std::size_t length = 1; length <= gap.size(); ++length) {
    SCOPED_TRACE(length);
    const bool whole = length >= 13 && (length - 13) % 20 == 0;
    const std::string line = gap.substr(0, length);
    const StoredSounding stored = Read(sound + line);
    EXPECT_EQ(stored.rows.size(), 2U);
    EXPECT_EQ(stored.EndsInGap(), whole);
    EXPECT_EQ(stored.EndsInTornGap(), !whole);
    EXPECT_EQ(stored.sound_text, whole ? sound + line + "\r\n" : sound);
    EXPECT_EQ(stored.damage, whole ? TextLines{} : TextLines{"LINE 20: IT IS NO WHOLE ROW"});
    EXPECT_EQ(stored.loses_lines, !whole);
  }
}

TEST(StoredGap, OfOtherChannelsThanTheRowsIsAMarkToo) {
  for (const std::size_t stars : {0U, 20U, 100U}) {
    TextLines lines = StoredLines(2);
    lines.insert(lines.begin() + 18, "DRILLOUT*****" + std::string(stars, '*'));
    EXPECT_EQ(ReadLines(lines).gaps, std::vector<std::int32_t>{1}) << stars;
  }
}

TEST(StoredRows, AreReadByTheirNumbersAndNotByTheirPlaces) {
  struct Case {
    const char* depth;
    const char* speed;
    TextLines values;
    float read_depth;
    float second;
  };
  const Case cases[] = {
      {"-100.00", "2.00", {"1.5", "2.5", "3.5"}, -100.0f, 2.5f},
      {"-1234.56", "39.99", {"1.5", "2.5", "3.5"}, -1234.56f, 2.5f},
      {"1000.00", "2.00", {"1.5", "2.5", "3.5"}, 1000.0f, 2.5f},
      {"99.98", "0.00", {"-1.50000", "-2.50000", "-3.50000"}, 99.98f, -2.5f},
      {"0.02", "2.00", {"-32768", "-32768", "-32768"}, 0.02f, -32768.0f},
      {"0.02",
       "2.00",
       {"123456789012345.00000", "-123456789012345.00000", "3.5"},
       0.02f,
       -1.2345679e14f},
      {"0.02", "inf", {"1.5", "2.5", "3.5"}, 0.02f, 2.5f},
  };
  for (const Case& row : cases) {
    TextLines lines = StoredHeader();
    lines.push_back(StoredRowLine(row.depth, row.speed, row.values));
    const StoredSounding stored = ReadLines(lines);
    ASSERT_EQ(stored.rows.size(), 1U) << row.depth;
    EXPECT_FLOAT_EQ(stored.rows[0].depth, row.read_depth);
    EXPECT_FLOAT_EQ(stored.rows[0].values[1], row.second) << row.depth;
    EXPECT_TRUE(stored.damage.empty());
  }
}

TEST(StoredRows, ReadWhatTheWriterPrintsForValuesThatAreNotFinite) {
  TextLines lines = StoredHeader();
  lines.push_back(StoredRowLine("0.02", "0.00", {"nan", "inf", "-inf"}));
  const StoredSounding stored = ReadLines(lines);
  ASSERT_EQ(stored.rows.size(), 1U);
  EXPECT_TRUE(std::isnan(stored.rows[0].values[0]));
  EXPECT_TRUE(std::isinf(stored.rows[0].values[1]) && stored.rows[0].values[1] > 0);
  EXPECT_TRUE(std::isinf(stored.rows[0].values[2]) && stored.rows[0].values[2] < 0);
}

TEST(StoredRows, BehindTheTablesRoomAreLeftOutAndMarksKept) {
  struct Case {
    int rows;
    int room;
    std::size_t left_out;
  };
  for (const Case& row : {Case{3, 3, 0}, Case{4, 3, 1}, Case{7, 3, 4}}) {
    TextLines lines = StoredLines(row.rows);
    lines.push_back("DRILLOUT*****");
    const StoredSounding stored = ReadTemporaryData(JoinedLines(lines), NoChannel, row.room);
    EXPECT_EQ(stored.rows.size(), 3U);
    ASSERT_EQ(stored.damage.size(), row.left_out);
    EXPECT_EQ(stored.loses_lines, row.left_out > 0);
    for (const std::string& text : stored.damage) {
      EXPECT_TRUE(text.ends_with(": THERE IS ROOM FOR 3 ROWS")) << text;
    }
    EXPECT_TRUE(stored.sound_text.ends_with("DRILLOUT*****\r\n"));
  }
}

TEST(StoredRows, TenThousandAreReadAndNotOneMore) {
  std::string text = JoinedLines(StoredHeader());
  for (int n = 0; n < 10001; ++n) {
    const std::string hundredths = std::to_string(100 + 2 * n % 100).substr(1);
    text += StoredRowLine(std::to_string(n / 50) + "." + hundredths, "2.00",
                          {StoredValue(1, n), StoredValue(2, n), StoredValue(3, n)}) +
            "\r\n";
  }
  const StoredSounding stored = Read(text);
  EXPECT_EQ(stored.rows.size(), 10000U);
  EXPECT_EQ(stored.damage, TextLines{"LINE 10018: THERE IS ROOM FOR 10000 ROWS"});
}

// Which columns the rows hold.

bool IsThree(int channel) {
  return channel == 3;
}

TEST(RowColumns, LeaveOutHeaderChannelsAndComputedOnesWhereTheRowsDo) {
  struct Case {
    const char* what;
    TextLines columns;
    std::size_t values;
    bool (*header_only)(int);
    std::vector<int> read;
  };
  const Case cases[] = {
      {"all", {"1", "2", "3"}, 3, NoChannel, {1, 2, 3}},
      {"a header column", {"1", "2", "3"}, 2, IsThree, {1, 2}},
      {"a header channel with a field", {"1", "2", "3"}, 3, IsThree, {1, 2, 3}},
      {"computed", {"1", "2", "21", "22"}, 2, NoChannel, {1, 2}},
      {"both", {"1", "3", "21"}, 1, IsThree, {1}},
      {"a header channel with a field beside a computed one", {"1", "3", "21"}, 2, IsThree, {1, 3}},
      {"a computed one with a field", {"1", "3", "21"}, 3, IsThree, {1, 3, 21}},
  };
  for (const Case& row : cases) {
    TextLines lines = StoredHeader();
    lines[15] = StoredColumns(row.columns);
    lines[16] = StoredColumns(TextLines(row.columns.size(), "0.00000"));
    for (int n = 0; n < 3; ++n) {
      lines.push_back(StoredRowLine("0.02", "2.00", TextLines(row.values, "1.00000")));
    }
    const StoredSounding stored = ReadTemporaryData(JoinedLines(lines), row.header_only, kRoom);
    EXPECT_EQ(stored.row_channels, row.read) << row.what;
    EXPECT_EQ(stored.rows.size(), 3U) << row.what;
    EXPECT_TRUE(stored.damage.empty()) << row.what;
  }
}

TEST(RowColumns, AreThoseOfMostLines) {
  TextLines lines = StoredHeader();
  const TextLines two = {"1.0", "2.0"};
  const TextLines three = {"1.0", "2.0", "3.0"};
  for (const TextLines* values : {&three, &two, &three, &three, &two}) {
    lines.push_back(StoredRowLine("0.02", "2.00", *values));
  }
  const StoredSounding stored = ReadTemporaryData(JoinedLines(lines), IsThree, kRoom);
  EXPECT_EQ(stored.row_channels, (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(stored.rows.size(), 3U);
  EXPECT_EQ(stored.damage, (TextLines{"LINE 19: IT DOES NOT FIT THE COLUMNS",
                                      "LINE 22: IT DOES NOT FIT THE COLUMNS"}));
}

TEST(RowColumns, WithoutRowsLeaveTheHeaderChannelOut) {
  EXPECT_EQ(ReadTemporaryData(JoinedLines(StoredHeader()), IsThree, kRoom).row_channels,
            (std::vector<int>{1, 2}));
}

}  // namespace
}  // namespace penlog
