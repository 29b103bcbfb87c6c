#include "sounding/row_text.h"

#include "sounding/console.h"

namespace penlog {
namespace {

using Channels = std::vector<int>;

/// Columns of a line: the first 13 characters, then 20 each; anything else is left as it is.
std::vector<std::string> Columns(const std::string& line) {
  std::vector<std::string> columns{line.substr(0, 13)};
  for (std::size_t at = 13; at + 20 <= line.size(); at += 20)
    columns.push_back(line.substr(at, 20));
  return columns;
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t end = text.find("\r\n"); end != text.npos; end = text.find("\r\n", start)) {
    lines.push_back(text.substr(start, end - start));
    start = end + 2;
  }
  EXPECT_EQ(start, text.size()) << "the text ends with a line end";
  return lines;
}

std::string Field(const std::string& text) {
  return std::string(20 - text.size(), ' ') + text;
}

TEST(Lists, OfHeaderRowsFlushAndFinalBaselineDifferAsTold) {
  struct Case {
    int channel;
    int record_mode;
    bool present;
    bool header, rows, flush, final_line;
  };
  const Case cases[] = {
      {3, 1, true, true, true, true, true},      {3, 2, true, true, true, true, true},
      {3, 3, true, true, false, false, false},   {3, 0, true, false, false, false, false},
      {3, 1, false, false, false, false, false}, {19, 1, true, false, false, true, false},
      {20, 1, true, false, false, true, false},  {19, 3, true, false, false, false, false},
      {21, 1, true, true, false, true, true},    {22, 2, true, true, false, true, true},
      {21, 3, true, true, false, false, false},  {30, 1, true, true, true, true, true},
  };
  for (const auto& row : cases) {
    Console console;
    for (const int channel : {1, 2, 3}) channels.ChannelPresent(channel) = 0;
    channels.RecordMode(row.channel) = static_cast<std::int16_t>(row.record_mode);
    channels.ChannelPresent(row.channel) = row.present ? -1 : 0;
    const auto list = [&](bool listed) { return listed ? Channels{row.channel} : Channels{}; };
    const auto what = ::testing::Message() << row.channel << " mode " << row.record_mode;
    EXPECT_EQ(HeaderChannels(), list(row.header)) << what;
    EXPECT_EQ(RowChannels(), list(row.rows)) << what;
    EXPECT_EQ(FlushChannels(true), list(row.flush)) << what;
    EXPECT_EQ(FlushChannels(false), list(row.final_line)) << what;
  }
}

TEST(Lists, GoByTheChannelNumber) {
  Console console;
  for (const int channel : {23, 10, 5}) Console::AddChannel(channel);
  EXPECT_EQ(HeaderChannels(), (Channels{1, 2, 3, 5, 10, 23}));
  EXPECT_EQ(RowChannels(), (Channels{1, 2, 3, 5, 10, 23}));
}

struct Header : Console {
  Header() {
    channels.ChannelPresent(3) = 0;
    settings.CompanyName = "Company";
    session.OperatorName = "Oper";
    session.SoundingLocation = "Loc";
    session.JobNumber = "Job";
    session.HoleNumber = "Hole";
    session.SoundingDateTime = "2026-06-15 09:30:00";
    session.HeaderNote = "Head";
    session.FooterNote1 = "Foot1";
    session.FooterNote2 = "Foot2";
    session.GPSPosition = "GPS";
    session.SoundingName = "NAME";
    session.WaterTable = 1.5f;
    channels.ChannelSensitivity(1) = 24.5f;
    channels.ChannelFullScale(1) = 100000.0f;
    channels.Baselines(1) = 0.123456f;
    channels.Baselines(2) = -2.0f;
    channels.UnitLabel(1, 1) = "kPa";
    channels.UnitLabel(2, 1) = "MPa";
    channels.UnitFactor(2, 1) = 0.001f;
    channels.ChannelUnits(1) = 2;
  }
};

TEST(CptHeader, NewFormIsThisByteByByte) {
  Header header;
  const std::string blanks(13, ' ');
  const std::string expected =
      "KQ Sounding File ver. 2015.07.02.1\r\n"
      "Company\r\nOper\r\nDSE1234\r\nLoc\r\nJob\r\nHole\r\n2026-06-15 09:30:00\r\n"
      "Head\r\nFoot1\r\nFoot2\r\nGPS\r\n 1.5 \r\n\r\n\r\n" +
      blanks + Field("1") + Field("2") + "\r\n" + blanks + Field("C1") + Field("C2") + "\r\n" +
      blanks + Field("24.5") + Field("1") + "\r\n" + blanks + Field("0.12346") + Field("-2.00000") +
      "\r\n" + blanks + Field("100000 kPa") + Field("1 u2") + "\r\n" + blanks + Field("MPa") +
      Field("u2") + "\r\n" + blanks + Field("0.001") + Field("1") +
      "\r\n"
      "    (m)(cm/s)\r\n";
  EXPECT_EQ(CptHeader(), expected);
}

TEST(CptHeader, OldFormDiffersInItsFirstAndLastLine) {
  Header header;
  const auto new_lines = Lines(CptHeader());
  settings.DepthSignificantDigits = 2;
  auto old_lines = Lines(CptHeader());
  ASSERT_EQ(old_lines.size(), 23u);
  EXPECT_EQ(old_lines.front(), "Dravenholtz Sounding File");
  EXPECT_EQ(old_lines.back(), "   (m) (cm/s)");
  old_lines.front() = new_lines.front();
  old_lines.back() = new_lines.back();
  EXPECT_EQ(old_lines, new_lines);
}

TEST(CptHeader, NamesTheBallInOneField) {
  Header header;
  settings.TipConfiguration = 1;
  settings.TipDiameter = 60;
  EXPECT_EQ(Columns(Lines(CptHeader())[16])[1], Field("C1 BALL D mm  60"));
  EXPECT_EQ(Columns(Lines(CptHeader())[16])[2], Field("C2"));
}

TEST(CptHeader, ATextWithALineEndStaysOneLine) {
  Header header;
  session.HeaderNote = "one\r\ntwo";
  const auto lines = Lines(CptHeader());
  ASSERT_EQ(lines.size(), 23u);
  EXPECT_EQ(lines[8], "one  two");
}

TEST(CptHeader, FieldsAreCountedInCharacters) {
  Header header;
  channels.UnitLabel(2, 1) = "\xC2\xB0";  // one character of two bytes
  EXPECT_EQ(Lines(CptHeader())[20].substr(13, 21), std::string(19, ' ') + "\xC2\xB0");
}

TEST(TemporaryHeader, IsThisByteByByte) {
  Header header;
  display.GraphChannel = {0, 1, 2, 20, 0};
  const std::string blanks(13, ' ');
  const std::string expected =
      "/data/s.cpt\r\nNAME\r\nCompany\r\nOper\r\nDSE1234\r\nLoc\r\nJob\r\nHole\r\n"
      "2026-06-15 09:30:00\r\nHead\r\nFoot1\r\nFoot2\r\nGPS\r\n 1.5 \r\n2,20,0\r\n\"" +
      blanks + Field("1") + Field("2") + "\"\r\n\"" + blanks + Field("0.12346") +
      Field("-2.00000") + "\"\r\n";
  EXPECT_EQ(TemporaryHeader("/data/s.cpt"), expected);
}

/// Rows 1 to `count`, 0.02 m apart: channel c of row r reads 100 c + r; the speed of the step after
/// row r is r cm/s.
struct Pushed : Console {
  explicit Pushed(int count, int digits = 3) {
    settings.DepthSignificantDigits = static_cast<std::int16_t>(digits);
    sounding.RowCount = count;
    for (int row = 0; row <= count; ++row) {
      sounding.Rows(row, 0) = static_cast<float>(row) * 0.02f;
      sounding.RowSpeed(row) = static_cast<float>(row);
      for (int channel = 1; channel <= 30; ++channel) {
        sounding.Rows(row, channel) = static_cast<float>(100 * channel + row);
      }
    }
  }
  static void Delay(int channel, int rows) {
    channels.ChannelDelayRows(channel) = static_cast<std::int16_t>(rows);
    if (rows > cone.DelayRows) cone.DelayRows = static_cast<std::int16_t>(rows);
  }
};

struct FormCase {
  int digits, format;
  float depth, speed;
  const char* start;
};

TEST(Row, DepthAndSpeedFillThirteenCharactersInEachForm) {
  const FormCase cases[] = {
      {3, 0, 1.234f, 2.0f, "  1.234  2.00"},    {2, 0, 1.234f, 2.0f, "  1.23   2.00"},
      {3, 1, 1.234f, 2.0f, " -1.234  2.00"},    {2, 1, -100.0f, 2.0f, "100.00   2.00"},
      {3, 1, -100.0f, 2.0f, "100.000  2.00"},   {3, 0, 0.0f, 0.0f, "  0.000  0.00"},
      {2, 0, 999.99f, 39.99f, "999.99  39.99"}, {3, 0, 999.999f, 39.99f, "999.999 39.99"},
      {0, 0, 1.0f, 2.0f, "  1.00   2.00"},
  };
  for (const auto& row : cases) {
    Pushed pushed(1, row.digits);
    settings.DepthFormat = static_cast<std::int16_t>(row.format);
    sounding.Rows(1, 0) = row.depth;
    sounding.RowSpeed(0) = row.speed;
    EXPECT_EQ(AlignedRow(1).substr(0, 13), row.start);
    EXPECT_EQ(FlushRow(1, 1).substr(0, 13), row.start);
  }
}

TEST(Row, InTheOldFormAThousandMetresPushTheRowOneCharacterRight) {
  Pushed pushed(1, 2);
  sounding.Rows(1, 0) = 1000.0f;
  sounding.RowSpeed(0) = 2.0f;
  EXPECT_EQ(AlignedRow(1), "1000.00   2.00" + Field("101.00000") + Field("201.00000") +
                               Field("301.00000") + "\r\n");
}

TEST(Row, DepthStaysInMetresWithFeetShown) {
  Pushed pushed(2);
  settings.DepthUnits = 1;
  EXPECT_EQ(AlignedRow(2).substr(0, 13), "  0.040  1.00");
}

TEST(AlignedRow, TakesEachChannelFromTheRowWhereItsSensorPassed) {
  Pushed pushed(9);
  Pushed::Delay(2, 5);
  Pushed::Delay(3, 2);
  // Row 4 of the ground is complete with row 9; the speed is that of the newest step.
  EXPECT_EQ(AlignedRow(9), "  0.080  8.00" + Field("104.00000") + Field("209.00000") +
                               Field("306.00000") + "\r\n");
}

TEST(AlignedRow, WithoutDelayIsTheNewestRow) {
  Pushed pushed(1);
  EXPECT_EQ(AlignedRow(1), "  0.020  0.00" + Field("101.00000") + Field("201.00000") +
                               Field("301.00000") + "\r\n");
}

TEST(TemporaryRow, IsUnalignedQuotedInTheOldFormAndNeverNegated) {
  Pushed pushed(9);
  Pushed::Delay(2, 5);
  settings.DepthFormat = 1;
  EXPECT_EQ(TemporaryRow(9), "\"  0.18   8.00" + Field("109.00000") + Field("209.00000") +
                                 Field("309.00000") + "\"\r\n");
}

TEST(FlushRow, HasNoShiftAndMarksASensorThatIsNotThereYet) {
  Pushed pushed(9);
  Pushed::Delay(2, 5);
  Pushed::Delay(3, 2);
  EXPECT_EQ(FlushRow(5, 9),
            "  0.100  4.00" + Field("105.00000") + Field("-32768") + Field("305.00000") + "\r\n");
  EXPECT_EQ(FlushRow(7, 9),
            "  0.140  6.00" + Field("107.00000") + Field("-32768") + Field("307.00000") + "\r\n");
  EXPECT_EQ(FlushRow(8, 9),
            "  0.160  7.00" + Field("108.00000") + Field("-32768") + Field("-32768") + "\r\n");
}

TEST(FlushRow, OfRowsNineteenAndTwentyHoldsNoChannelAtAll) {
  Pushed pushed(21);
  Pushed::Delay(2, 4);
  EXPECT_EQ(Columns(FlushRow(18, 21)).size(), 4u);
  EXPECT_EQ(FlushRow(19, 21), "  0.380 18.00\r\n");
  EXPECT_EQ(FlushRow(20, 21), "  0.400 19.00\r\n");
  EXPECT_EQ(Columns(FlushRow(21, 21)).size(), 4u);
}

TEST(FlushRow, IncludesTheDerivedChannels) {
  Pushed pushed(3);
  for (const int channel : {2, 3}) channels.RecordMode(channel) = 0;
  for (const int channel : {19, 20, 21, 22}) Console::AddChannel(channel);
  EXPECT_EQ(FlushRow(3, 3), "  0.060  2.00" + Field("103.00000") + Field("1903.00000") +
                                Field("2003.00000") + Field("2103.00000") + Field("2203.00000") +
                                "\r\n");
}

TEST(FinalBaseline, IsTheCurrentReadingsWithoutNineteenAndTwenty) {
  Pushed pushed(3);
  channels.RecordMode(3) = 3;
  for (const int channel : {19, 20, 21}) Console::AddChannel(channel);
  sounding.Readings(1) = 0.5f;
  sounding.Readings(2) = -1.25f;
  sounding.Readings(21) = 7.0f;
  channels.Baselines(1) = 99.0f;
  EXPECT_EQ(FinalBaselineLine(), std::string(13, ' ') + Field("0.50000") + Field("-1.25000") +
                                     Field("7.00000") + "\r\n");
}

TEST(Columns, OfHeaderAndRowsDifferWithAGraphedSoilChannel) {
  Pushed pushed(1);
  Console::AddChannel(21);
  EXPECT_EQ(Columns(Lines(CptHeader())[15]).size(), 5u);
  EXPECT_EQ(Columns(Lines(AlignedRow(1))[0]).size(), 4u);
}

TEST(Tim, HasItsHeaderAndMarks) {
  EXPECT_EQ(
      TimHeader(34200.5f),
      "Lumen Probe Time File.  Each line a represents a 5mm depth increment.\r\n 34200.5 \r\n");
  EXPECT_EQ(PictureMarkLine(1.755f, 34201.0f), "001.005 34201\r\n");
  EXPECT_EQ(PictureMarkLine(0.005f, 0.5f), "-000.745 0.5\r\n");
}

}  // namespace
}  // namespace penlog
