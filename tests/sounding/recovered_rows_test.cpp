// Rows that the recovery copy lost are taken from the `.cpt` file, which holds them aligned.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/runtime_fault.h"
#include "sounding/resumed_world.h"

namespace penlog {
namespace {

const std::string kTaken = "ROWS TAKEN FROM THE SOUNDING'S FILE: ";

/// The copy of `rows` rows with one line damaged.
std::string WithDamaged(int row, int rows = kRows) {
  TextLines lines = StoredLines(rows);
  lines[static_cast<std::size_t>(16 + row)] = "\"torn\"";
  return JoinedLines(lines);
}

std::string CptOf(int rows) {
  return Head(true) + CptRows(rows - kLag);
}

/// A row of an end, in the row's own place: none for a sensor that did not get there.
std::string ClosingRow(int n, int rows) {
  std::string row = DepthAndSpeed(true, 20 * n, StoredSpeed(n));
  for (int channel = 1; channel <= 3; ++channel) {
    const int delay = kDelays[static_cast<std::size_t>(channel - 1)];
    row += StoredField(n <= rows - delay ? StoredValue(channel, n) : "-32768");
  }
  return row + "\r\n";
}

TEST(RecoveredRows, OfADamagedLineLeaveTheCptFileAndEachDepthAsTheyWere) {
  for (int row = 1; row <= kRows; ++row) {
    SCOPED_TRACE(row);
    TakenUp taken(WithDamaged(row));
    taken.TakeUp();
    EXPECT_EQ(taken.File(kCpt), WholeCpt());
    EXPECT_FALSE(taken.Has("/data/s (2).cpt")) << "nothing of it was changed";
    ASSERT_EQ(sounding.RowCount, kRows);
    for (int n = 1; n <= kRows; ++n) {
      EXPECT_NEAR(sounding.Rows(n, 0), 0.02 * n, 0.0001) << n;
      for (int channel = 1; channel <= 3; ++channel) {
        const float value = sounding.Rows(n, channel);
        if (n == row && value == -32768.0F) continue;
        EXPECT_EQ(value, ParseSingle(StoredValue(channel, n))) << channel << " of " << n;
      }
    }
    const bool is_whole = row > kLag && row <= kAligned;
    if (is_whole) {
      EXPECT_EQ(taken.File(kTemporary), JoinedLines(StoredLines(kRows)));
    }
    EXPECT_TRUE(taken.WasTold(kTaken + "1, AT "));
    EXPECT_EQ(taken.WasTold("COMPARE THE DEPTH WITH THE RODS"), row == kRows);
    EXPECT_EQ(taken.WasTold("HOLDS -32768: 1."), !is_whole);
    for (int i = 0; i < 6; ++i) TakenUp::Row();
    if (is_whole) {
      EXPECT_EQ(taken.File(kCpt), Head(true) + CptRows(kAligned + 6));
    }
  }
}

/// The copy of `kRows` rows without those of `damaged`.
std::string WithAllDamaged(const std::vector<int>& damaged) {
  TextLines lines = StoredLines(kRows);
  for (const int row : damaged) lines[static_cast<std::size_t>(16 + row)] = "\"torn\"";
  return JoinedLines(lines);
}

/// What stands in memory is the sounding's, but for values of lost rows that stand nowhere.
void ExpectTheRows(const std::vector<int>& damaged) {
  ASSERT_EQ(sounding.RowCount, kRows);
  for (int n = 1; n <= kRows; ++n) {
    EXPECT_NEAR(sounding.Rows(n, 0), 0.02 * n, 0.0001) << n;
    const bool is_lost = std::find(damaged.begin(), damaged.end(), n) != damaged.end();
    for (int channel = 1; channel <= 3; ++channel) {
      const float value = sounding.Rows(n, channel);
      if (is_lost && value == -32768.0F) continue;
      EXPECT_EQ(value, ParseSingle(StoredValue(channel, n))) << channel << " of " << n;
    }
  }
}

TEST(RecoveredRows, OfTwoAndThreeDamagedLinesStandEachInItsPlace) {
  for (int one = 1; one <= kRows; ++one) {
    for (int two = one + 1; two <= kRows; ++two) {
      for (int three = two; three <= (one < 7 ? two : kRows); ++three) {
        const std::vector<int> damaged = {one, two, three};
        SCOPED_TRACE(std::to_string(one) + " " + std::to_string(two) + " " + std::to_string(three));
        TakenUp taken(WithAllDamaged(damaged));
        taken.TakeUp();
        EXPECT_EQ(taken.File(kCpt), WholeCpt());
        ExpectTheRows(damaged);
        if (HasFailure()) return;
      }
    }
  }
}

TEST(RecoveredRows, BehindAFileThatIsRowsShortAreFoundAsFarAsItTells) {
  for (int short_by = 1; short_by <= 5; ++short_by) {
    const int last = kAligned - short_by;
    for (int row = 1; row <= last + kLag; ++row) {
      SCOPED_TRACE(std::to_string(row) + ", rows of the file: " + std::to_string(last));
      TakenUp taken(WithDamaged(row));
      taken.disk.Put(kCpt, Head(true) + CptRows(last));
      taken.TakeUp();
      EXPECT_TRUE(taken.File(kCpt).starts_with(Head(true) + CptRows(last)));
      EXPECT_FALSE(taken.Has("/data/s (2).cpt"));
      ExpectTheRows({row});
    }
  }
}

/// Row 12 is lost, and a value of row 10 is another one than the file holds.
TEST(RecoveredRows, AreNotTakenWhereAValueContradictsEachPlace) {
  TextLines lines = StoredLines(kRows - 1);
  std::string& line = lines[16 + 10];
  line.replace(line.find("2.00010"), 7, "2.99999");
  TakenUp taken(JoinedLines(lines));
  taken.TakeUp();
  EXPECT_EQ(sounding.RowCount, kRows - 1);
  EXPECT_EQ(taken.File(kTemporary), JoinedLines(lines));
  EXPECT_FALSE(taken.WasTold(kTaken));
  EXPECT_FALSE(taken.WasTold("UNFINISHED END")) << "it is a row of the sounding";
  EXPECT_TRUE(taken.WasTold("LINES THAT THE TEMPORARY DATA DOES NOT HOLD TAKEN OUT: 1."));
  EXPECT_TRUE(taken.WasTold("COMPARE THE DEPTH WITH THE RODS BEFORE YOU PUSH."));
  EXPECT_EQ(taken.File("/data/s (2).cpt"), WholeCpt());
}

TEST(RecoveredRows, OfACopyThatWasCutGoOnAtTheDepthOfTheFile) {
  TakenUp taken(JoinedLines(StoredLines(20)));
  taken.disk.Put(kCpt, CptOf(60));
  taken.TakeUp();
  EXPECT_EQ(taken.File(kCpt), CptOf(60));
  EXPECT_EQ(sounding.RowCount, 60);
  EXPECT_NEAR(sounding.CurrentDepth, 1.2F, 0.0001F);
  const std::string copy = taken.File(kTemporary);
  EXPECT_TRUE(copy.starts_with(JoinedLines(StoredLines(57)))) << "whole as far as the file goes";
  EXPECT_NE(copy.find(StoredRowLine("1.20", StoredSpeed(60), {"-32768", "2.00060", "-32768"})),
            copy.npos);
  EXPECT_EQ(taken.boxes.texts,
            Texts{kTaken + "40, AT 0.42 m TO 1.20 m.  PART OF THEIR CHANNELS STANDS NOWHERE AND "
                           "HOLDS -32768: 3.  THE SOUNDING WENT ON BEHIND THE TEMPORARY DATA, TO "
                           "ABOUT 1.20 m.  COMPARE THE DEPTH WITH THE RODS BEFORE YOU PUSH."});
  TakenUp::Row();
  const std::string next = DepthAndSpeed(true, 20 * 58, StoredSpeed(61)) + StoredField("-32768") +
                           StoredField("2.00061") + StoredField("-32768") + "\r\n";
  EXPECT_EQ(taken.File(kCpt), CptOf(60) + next);
}

TEST(RecoveredRows, AreFoundOnceMoreByNoLaterResume) {
  TakenUp taken(JoinedLines(StoredLines(20)));
  taken.disk.Put(kCpt, CptOf(60));
  taken.TakeUp();
  const std::string copy = taken.File(kTemporary);
  taken.TakeUp();
  EXPECT_EQ(taken.File(kTemporary), copy);
  EXPECT_EQ(taken.File(kCpt), CptOf(60));
  EXPECT_EQ(taken.boxes.texts, Texts{});
}

TEST(RecoveredRows, OfADiskThatTookNoneOfTheCopysRowsAreThoseOfTheFile) {
  TakenUp taken;
  taken.TakeUp();
  taken.disk.before = [](std::string_view work, const std::string& path) {
    if ((work == "append" || work == "create") && path.starts_with(kTemporary)) {
      throw RuntimeFault("No space left on device");
    }
  };
  for (int i = 0; i < 7; ++i) TakenUp::Row();
  const std::string copy = taken.File(kTemporary);
  const std::string cpt = taken.File(kCpt);
  EXPECT_EQ(copy, JoinedLines(StoredLines(kRows)));
  EXPECT_EQ(cpt, CptOf(kRows + 7));
  taken.disk.before = nullptr;
  sounding.Held = {};  // the power is gone
  taken.TakeUp();
  EXPECT_EQ(sounding.RowCount, kRows + 7);
  EXPECT_EQ(taken.File(kCpt), cpt);
  EXPECT_TRUE(taken.File(kTemporary).starts_with(JoinedLines(StoredLines(kRows + 7 - kLag))));
}

TEST(RecoveredRows, AreNotTheClosingLinesOfAnUnfinishedEnd) {
  for (const int lost : {0, 2}) {
    TakenUp taken(JoinedLines(StoredLines(kRows - lost)));
    taken.disk.Put(kCpt, WholeCpt() + ClosingRow(10, kRows) + ClosingRow(11, kRows) +
                             ClosingRow(12, kRows) + Column({"0.25310", "0.29880", "0.50070"}));
    taken.TakeUp();
    EXPECT_EQ(taken.File(kCpt), WholeCpt());
    EXPECT_EQ(sounding.RowCount, kRows);
    EXPECT_TRUE(taken.WasTold("LINES OF AN UNFINISHED END TAKEN OUT: 4."));
    EXPECT_EQ(taken.WasTold(kTaken + "2, AT 0.22 m TO 0.24 m."), lost == 2);
    TextLines lines = StoredLines(kRows);
    if (lost == 2) {  // the end holds what else would stand nowhere
      lines.back() = StoredRowLine("0.24", StoredSpeed(12), {"1.00012", "2.00012", "-32768"});
    }
    EXPECT_EQ(taken.File(kTemporary), JoinedLines(lines));
  }
}

// A resume without the channel that lags most: each row since holds -32768 there.

constexpr int kWith = 30;  ///< rows that were recorded with it

std::string CptRowWithout(int n) {
  std::string row = CptRow(n);
  if (n + kLag > kWith) row.replace(13 + 20, 20, StoredField("-32768"));
  return row;
}

std::string CptWithout(int rows) {
  std::string text = Head(true);
  for (int n = 1; n <= rows; ++n) text += CptRowWithout(n);
  return text;
}

TextLines LinesWithout(int rows) {
  TextLines lines = StoredLines(kWith);
  for (int n = kWith + 1; n <= rows; ++n) {
    std::string line = StoredRowNumber(n);
    line.replace(line.find(StoredField(StoredValue(2, n))), 20, StoredField("-32768"));
    lines.push_back(line);
  }
  return lines;
}

void TakeUpWithout(TakenUp& taken) {
  taken.ReadBack();
  channels.ChannelPresent(2) = 0;
  channels.ChannelDelayRows(2) = 0;  // its record is not read
  TakeUpSounding();
}

/// A file whose rows behind `head` lines have one speed, `width` characters from `at` on.
std::string WithOneSpeed(const std::string& text, std::size_t head, std::size_t at,
                         std::size_t width) {
  std::string all;
  std::size_t number = 0;
  for (std::size_t begin = 0; begin < text.size(); ++number) {
    const std::size_t end = text.find('\n', begin) + 1;
    std::string line = text.substr(begin, end - begin);
    if (number >= head) line.replace(at, width, Aligned("2.00", width));
    all += line;
    begin = end;
  }
  return all;
}

std::string CopyOfOneSpeed(const TextLines& lines) {
  return WithOneSpeed(JoinedLines(lines), 17, 7, 7);
}

std::string CptOfOneSpeed(const std::string& cpt) {
  return WithOneSpeed(cpt, 23, 7, 6);
}

TEST(RecoveredRows, OfOneSpeedAreNoClosingLinesEither) {
  for (const bool has_module : {true, false}) {
    SCOPED_TRACE(has_module);
    const std::string cpt = CptOfOneSpeed(has_module ? CptOf(60) : CptWithout(60 - kLag));
    TakenUp taken(CopyOfOneSpeed(has_module ? StoredLines(50) : LinesWithout(50)));
    taken.disk.Put(kCpt, cpt);
    has_module ? taken.TakeUp() : TakeUpWithout(taken);
    EXPECT_EQ(taken.File(kCpt), cpt);
    EXPECT_EQ(sounding.RowCount, 60);
    EXPECT_TRUE(taken.WasTold(kTaken + "10, AT 1.02 m TO 1.20 m."));
  }
}

/// Row 10 came late, row 11 is lacking, and row 12 stands 1.5 steps below row 10.
void ExpectFoundBehindALateRow(bool tells) {
  TextLines lines = StoredHeader();
  std::string cpt = Head(true);
  const auto value = [&](int channel, int n) { return StoredValue(channel, tells ? n : 1); };
  for (int n = 1; n <= kRows; ++n) {
    lines.push_back(StoredRowLine(n == 10 ? "1.95" : MetresOf(1740 + 20 * n, 2),
                                  StoredSpeed(tells ? n : 1),
                                  {value(1, n), value(2, n), value(3, n)}));
    if (n > kAligned) continue;
    cpt += DepthAndSpeed(true, 1740 + 20 * n, StoredSpeed(tells ? n + kLag : 1)) +
           StoredField(value(1, n)) + StoredField(value(2, n + kLag)) +
           StoredField(value(3, n + 1)) + "\r\n";
  }
  lines[16 + 11] = "\"torn\"";
  TakenUp taken(JoinedLines(lines));
  taken.disk.Put(kCpt, cpt);
  taken.TakeUp();
  EXPECT_EQ(taken.File(kCpt), cpt);
  ASSERT_EQ(sounding.RowCount, kRows);
  EXPECT_NEAR(sounding.Rows(11, 0), 1.965, 0.0001);
  EXPECT_NEAR(sounding.CurrentDepth, 1.98, 0.0001) << "the last row stood sound";
}

TEST(RecoveredRows, StandBetweenRowsOfWhichOneCameLate) {
  ExpectFoundBehindALateRow(true);
}

TEST(RecoveredRows, WithoutATellingValueStandWhereALineWasLost) {
  ExpectFoundBehindALateRow(false);
}

TEST(RecoveredRows, SinceAResumeWithoutAModuleAreNoClosingLines) {
  for (const int lost : {1, 2, 3, 4, 10}) {
    SCOPED_TRACE(lost);
    TakenUp taken(JoinedLines(LinesWithout(60 - lost)));
    taken.disk.Put(kCpt, CptWithout(60 - kLag));
    TakeUpWithout(taken);
    EXPECT_EQ(cone.DelayRows, kLag) << "as the file was begun";
    EXPECT_EQ(taken.File(kCpt), CptWithout(60 - kLag));
    EXPECT_EQ(sounding.RowCount, 60);
    EXPECT_NEAR(sounding.CurrentDepth, 1.2F, 0.0001F);
    EXPECT_TRUE(taken.File(kTemporary).starts_with(JoinedLines(LinesWithout(60 - kLag))));
    EXPECT_FALSE(taken.WasTold("TAKEN OUT"));
    EXPECT_TRUE(taken.WasTold(kTaken + PlainNumber(lost)));
    EXPECT_FLOAT_EQ(sounding.Rows(60, 3), -32768.0F);
    EXPECT_FLOAT_EQ(sounding.Rows(58, 3), ParseSingle(StoredValue(3, 58)));
  }
}

TEST(RecoveredRows, AreNotTheClosingLinesOfAnEndWithoutAModule) {
  for (const int lost : {0, 2}) {
    for (int written = 1; written <= kLag; ++written) {
      SCOPED_TRACE(std::to_string(lost) + " lost, closing lines: " + std::to_string(written));
      TakenUp taken(JoinedLines(LinesWithout(60 - lost)));
      std::string cpt = CptWithout(60 - kLag);
      for (int n = 58; n < 58 + written; ++n) {
        cpt += DepthAndSpeed(true, 20 * n, StoredSpeed(n)) + StoredField(StoredValue(1, n)) +
               StoredField("-32768") + StoredField(n < 60 ? StoredValue(3, n) : "-32768") + "\r\n";
      }
      taken.disk.Put(kCpt, cpt);
      TakeUpWithout(taken);
      EXPECT_EQ(taken.File(kCpt), CptWithout(60 - kLag));
      EXPECT_EQ(sounding.RowCount, 60);
      EXPECT_TRUE(taken.WasTold("LINES OF AN UNFINISHED END TAKEN OUT: " + PlainNumber(written)));
      EXPECT_FALSE(taken.WasTold("GOES DOWN TO"));
    }
  }
}

TEST(RecoveredRows, AreNotMadeOfADepthThatIsWrongInTheFile) {
  TakenUp taken;
  std::string cpt = WholeCpt();
  cpt.replace(cpt.find("  0.060"), 7, "  0.070");
  taken.disk.Put(kCpt, cpt);
  taken.TakeUp();
  EXPECT_EQ(taken.File(kCpt), WholeCpt());
  EXPECT_EQ(taken.File(kTemporary), JoinedLines(StoredLines(kRows)));
  EXPECT_FALSE(taken.WasTold(kTaken));
}

TEST(RecoveredRows, StandBeforeTheMarkOfAGapThatCameBehindThem) {
  TextLines lines = StoredLines(kRows);
  const std::string mark = "DRILLOUT*****" + std::string(60, '*');
  lines.insert(lines.begin() + 16 + 6, mark);
  TextLines damaged = lines;
  damaged[16 + 5] = "\"torn\"";  // row 5, the last before the mark
  TakenUp taken(JoinedLines(damaged));
  taken.TakeUp();
  EXPECT_EQ(taken.File(kTemporary), JoinedLines(lines));
  EXPECT_EQ(taken.File(kCpt), WholeCpt());
}

TEST(RecoveredRows, MoveTheDepthThatAResumeFromTheSurfaceGoesTo) {
  TakenUp taken(JoinedLines(StoredLines(20)));
  taken.disk.Put(kCpt, CptOf(60));
  taken.ReadBack();
  session.ResumeDepthStatus = 1.0F;
  session.ResumeTargetDepth = 0.9F;  // 0.5 m drilled below the last row that was known
  TakeUpSounding();
  EXPECT_NEAR(session.ResumeTargetDepth, 1.7F, 0.0001F);
  EXPECT_EQ(sounding.CurrentDepth, 0.0F);
}

TEST(TakeUp, TellsRowsOfTheFileThatItCannotTakeAndHowDeepTheyGo) {
  TakenUp taken(JoinedLines(StoredLines(kRows)));
  std::string cpt = CptOf(20);
  cpt.replace(cpt.find("  0.060"), 7, "  0.960");  // and its rows rise no more
  taken.disk.Put(kCpt, cpt);
  taken.TakeUp();
  EXPECT_TRUE(taken.WasTold("LINES THAT THE TEMPORARY DATA DOES NOT HOLD TAKEN OUT: 8."));
  EXPECT_TRUE(taken.WasTold("COMPARE THE DEPTH WITH THE RODS BEFORE YOU PUSH."));
  EXPECT_EQ(taken.File("/data/s (2).cpt"), cpt);
}

// A file of another place, or of none.

TEST(TakeUp, InAnotherFolderKeepsFormAndMillimetresOfTheFileThatCouldBeRead) {
  for (const bool new_form : {true, false}) {
    TakenUp taken;
    taken.disk.MakeFolder("/stick");
    std::string cpt = Head(new_form) + CptRows(kAligned - 1, new_form);
    if (new_form) cpt.replace(cpt.find("  0.060"), 7, "  0.064");
    taken.disk.Put(kCpt, cpt);
    taken.disk.Put("/stick/moved.cpt", "another's");
    taken.ReadBack();
    taken.disk.before = [](std::string_view work, const std::string& path) {
      if (work == "create" && path.starts_with(kCpt)) throw RuntimeFault("Read-only file system");
    };
    taken.ChooseFile({"/stick/moved.cpt"});
    TakeUpSounding();
    EXPECT_EQ(taken.File("/stick/moved.cpt"), cpt + CptRow(kAligned, new_form));
    EXPECT_EQ(taken.File("/stick/moved (2).cpt"), "another's");
    EXPECT_EQ(taken.File(kCpt), cpt);
    EXPECT_FALSE(taken.WasTold("ITS HEAD WAS WRITTEN ANEW."));
    EXPECT_TRUE(taken.WasTold("IT STANDS AT /stick/moved.cpt NOW.  ROWS ADDED: 1."));
  }
}

const std::string kMissing = "THE SOUNDING FILE /data/s.cpt IS MISSING.";

TEST(TakeUp, LooksAgainForAMissingFileBeforeItWritesItAnew) {
  TakenUp taken;
  const std::string cpt = taken.File(kCpt);
  taken.disk.Remove(kCpt);
  taken.ReadBack();
  taken.boxes.Answer(kMissing, BoxAnswer::No);
  taken.boxes.Delay(100 * kMillisecond);
  PostCall(Now() + kSecond, &taken, [&] { taken.disk.Put(kCpt, cpt); });
  TakeUpSounding();
  EXPECT_EQ(taken.File(kCpt), cpt);
  EXPECT_TRUE(taken.WasTold("PRESS OK TO LOOK FOR THE SOUNDING FILE AGAIN"));
  EXPECT_FALSE(taken.WasTold("THE SOUNDING FILE WAS MENDED"));
}

TEST(TakeUp, FindsAMissingFileInTheFolderThatIsChosen) {
  TakenUp taken;
  taken.disk.MakeFolder("/stick");
  taken.disk.Put("/stick/s.cpt", taken.File(kCpt));
  taken.disk.Remove(kCpt);
  taken.ReadBack();
  taken.boxes.Answer(kMissing, BoxAnswer::No);
  taken.boxes.Answer("PRESS OK TO LOOK FOR", BoxAnswer::Cancel);
  taken.ChooseFile({"/stick/s.cpt"});
  TakeUpSounding();
  EXPECT_EQ(taken.File("/stick/s.cpt"), WholeCpt());
  EXPECT_FALSE(taken.Has(kCpt));
  EXPECT_TRUE(taken.File(kTemporary).starts_with("/stick/s.cpt\r\n"));
}

TEST(TakeUp, WithAMissingFileCanBeGivenUp) {
  TakenUp taken;
  taken.disk.Remove(kCpt);
  taken.ReadBack();
  taken.boxes.Answer(kMissing, BoxAnswer::No);
  taken.boxes.Answer("PRESS OK TO LOOK FOR", BoxAnswer::Cancel);
  taken.boxes.Answer("NO OTHER FOLDER WAS CHOSEN.", BoxAnswer::Cancel);
  taken.ChooseFile({""});
  EXPECT_FALSE(TakeUpSounding());
  EXPECT_FALSE(taken.Has(kCpt));
}

// Lines of the copy's header.

TEST(TakeUp, WritesDamagedHeaderLinesAnewFromTheHeadOfTheFile) {
  TextLines lines = StoredLines(kRows);
  lines[13] = "1x5";
  lines[16] = "\"damaged\"";
  TakenUp taken(JoinedLines(lines));
  taken.TakeUp();
  EXPECT_EQ(taken.File(kTemporary), JoinedLines(StoredLines(kRows)));
  EXPECT_EQ(taken.File("/data/TemporaryData (2).txt"), JoinedLines(lines));
  EXPECT_FLOAT_EQ(session.WaterTable, 1.5F);
  EXPECT_TRUE(taken.WasTold("DAMAGED LINES OF THE TEMPORARY DATA WERE WRITTEN ANEW"));
  taken.TakeUp();
  EXPECT_EQ(taken.boxes.texts, Texts{}) << "told once";
}

TEST(TakeUp, WritesBaselinesThatStandNowhereAnewFromTheConesRecord) {
  TextLines lines = StoredLines(kRows);
  lines[16] = "\"damaged\"";
  TakenUp taken(JoinedLines(lines));
  taken.disk.Remove(kCpt);
  taken.ReadBack();
  channels.Baselines(1) = 0.25F;
  channels.Baselines(2) = 0.5F;
  channels.Baselines(3) = 0.75F;
  TakeUpSounding();
  lines[16] = StoredColumns({"0.25000", "0.50000", "0.75000"});
  EXPECT_EQ(taken.File(kTemporary), JoinedLines(lines));
  EXPECT_NE(taken.File(kCpt).find(Column({"0.25000", "0.50000", "0.75000"})), std::string::npos);
}

}  // namespace
}  // namespace penlog
