// Rows that the recovery copy lost beside the mark of a drilled gap, and where the depths begin
// anew above the row before it.
#include <gtest/gtest.h>

#include <algorithm>

#include "sounding/resume_depth.h"
#include "sounding/resumed_world.h"

namespace penlog {
namespace {

const std::string kTaken = "ROWS TAKEN FROM THE SOUNDING'S FILE: ";
const std::string kMark = "DRILLOUT*****" + std::string(60, '*');

/// A sounding with marks of gaps, in mm.
struct Depths {
  std::vector<int> rows;
  std::vector<int> marks;  ///< rows before each
};

/// `last` rows in steps of 2 cm, a mark behind `above` of them, and `drilled` mm more below it.
Depths Drilled(int above, int last, int drilled) {
  Depths depths{{}, {above}};
  for (int n = 1; n <= last; ++n) depths.rows.push_back(20 * n + (n > above ? drilled : 0));
  return depths;
}

/// The copy's lines, rounded to hundredths.
TextLines Lines(const Depths& depths) {
  TextLines lines = StoredHeader();
  for (std::size_t i = 0; i <= depths.rows.size(); ++i) {
    const int n = static_cast<int>(i);
    if (i > 0) {
      const int mm = (depths.rows[i - 1] + 5) / 10 * 10;
      lines.push_back(StoredRowLine(MetresOf(mm, 2), StoredSpeed(n),
                                    {StoredValue(1, n), StoredValue(2, n), StoredValue(3, n)}));
    }
    if (std::find(depths.marks.begin(), depths.marks.end(), n) != depths.marks.end()) {
      lines.push_back(kMark);
    }
  }
  return lines;
}

std::string Cpt(const Depths& depths, int rows) {
  std::string text = Head(true);
  for (int n = 1; n <= rows; ++n) {
    const std::string depth =
        DepthAndSpeed(true, depths.rows[static_cast<std::size_t>(n - 1)], StoredSpeed(n + kLag));
    text += depth + CptRow(n).substr(13);
  }
  return text;
}

/// The line of row n.
std::size_t LineOf(const Depths& depths, int n) {
  const auto before =
      std::count_if(depths.marks.begin(), depths.marks.end(), [&](int rows) { return rows < n; });
  return static_cast<std::size_t>(16 + n + before);
}

void ExpectDepths(const Depths& depths) {
  ASSERT_EQ(sounding.RowCount, static_cast<int>(depths.rows.size()));
  for (int n = 1; n <= sounding.RowCount; ++n) {
    EXPECT_NEAR(sounding.Rows(n, 0), depths.rows[static_cast<std::size_t>(n - 1)] / 1000.0, 0.0051)
        << n;
  }
}

/// The lines of the copy that are marks, by their places.
std::vector<std::size_t> Marks(const std::string& copy) {
  std::vector<std::size_t> places;
  std::size_t place = 0;
  for (std::size_t at = 0; at < copy.size(); at = copy.find('\n', at) + 1, ++place) {
    if (copy.compare(at, kMark.size(), kMark) == 0) places.push_back(place);
  }
  return places;
}

/// Whether all rows behind the mark are lost, and none stands in the file.
bool IsDepthLost(const Depths& depths, int one, int two) {
  const int rows = static_cast<int>(depths.rows.size());
  const int first = depths.marks.back() + 1;
  return first > rows - kLag && first <= rows && one <= first && two == rows && rows - first < 2 &&
         (one == first || first == rows);
}

/// Each row by itself is lost, and each pair of rows that are near each other.
void ExpectEachLossMended(const Depths& depths) {
  const int rows = static_cast<int>(depths.rows.size());
  const std::string whole = JoinedLines(Lines(depths));
  for (int one = 1; one <= rows; ++one) {
    for (int two = one; two <= std::min(one + 3, rows); ++two) {
      if (IsDepthLost(depths, one, two)) continue;
      SCOPED_TRACE(std::to_string(one) + " and " + std::to_string(two) + " damaged");
      TextLines lines = Lines(depths);
      lines[LineOf(depths, one)] = lines[LineOf(depths, two)] = "\"torn\"";
      TakenUp taken(JoinedLines(lines));
      taken.disk.Put(kCpt, Cpt(depths, rows - kLag));
      taken.TakeUp();
      EXPECT_EQ(taken.File(kCpt), Cpt(depths, rows - kLag));
      ExpectDepths(depths);
      EXPECT_EQ(Marks(taken.File(kTemporary)), Marks(whole));
      EXPECT_TRUE(taken.WasTold(kTaken));
      EXPECT_FALSE(taken.WasTold("UNFINISHED END"));
      if (testing::Test::HasFailure()) return;
    }
  }
}

TEST(RecoveredRows, StandOnTheirSideOfADrilledGap) {
  for (int above = 9; above <= 12; ++above) {
    for (const int drilled : {2000, 0}) {
      if (drilled == 0 && above != 10) continue;
      SCOPED_TRACE(std::to_string(above) + " rows above, mm drilled: " + std::to_string(drilled));
      ExpectEachLossMended(Drilled(above, 12, drilled));
    }
  }
}

TEST(RecoveredRows, AreFoundWhereTheDepthsBeginAnewBehindAGap) {
  for (const int above : {4, 8, 9, 10, 11}) {
    SCOPED_TRACE(above);
    ExpectEachLossMended(Drilled(above, 12, -40));
  }
}

/// The last row above the mark is gone, and no damaged line is left of it.
TEST(RecoveredRows, AreFoundWithoutATraceWhereTheDepthsBeginAnew) {
  const Depths depths = Drilled(kAligned, kRows, -60);
  TextLines lines = Lines(depths);
  lines.erase(lines.begin() + static_cast<std::ptrdiff_t>(LineOf(depths, kAligned)));
  TakenUp taken(JoinedLines(lines));
  taken.disk.Put(kCpt, Cpt(depths, kAligned));
  taken.TakeUp();
  EXPECT_EQ(taken.File(kCpt), Cpt(depths, kAligned));
  ExpectDepths(depths);
  EXPECT_EQ(taken.File(kTemporary), JoinedLines(Lines(depths)));
}

void ExpectEachLossOfFineStepsMended(int step_mm) {
  Depths depths;
  for (int n = 1; n <= kRows; ++n) depths.rows.push_back(step_mm * n);
  for (int one = 1; one <= kRows; ++one) {
    SCOPED_TRACE(std::to_string(one) + " in mm " + std::to_string(step_mm));
    TextLines lines = Lines(depths);
    lines[LineOf(depths, one)] = "\"torn\"";
    TakenUp taken(JoinedLines(lines));
    settings.DepthStep = static_cast<float>(step_mm) / 1000.0F;
    settings.DepthStepCounts = 1;
    taken.disk.Put(kCpt, Cpt(depths, kAligned));
    taken.TakeUp();
    EXPECT_EQ(taken.File(kCpt), Cpt(depths, kAligned));
    ExpectDepths(depths);
    EXPECT_TRUE(taken.WasTold(kTaken + "1, AT "));
    EXPECT_FALSE(taken.WasTold("UNFINISHED END"));
  }
}

TEST(RecoveredRows, OfStepsFinerThanAHundredthAreFound) {
  ExpectEachLossOfFineStepsMended(5);
  ExpectEachLossOfFineStepsMended(2);
}

/// The laptop's disk refuses behind the mark, the stick goes on: no row there has a depth yet.
TEST(RecoveredRows, AreNotPutBehindAMarkWhereTheirDepthsStandNowhere) {
  for (int behind = 1; behind <= kLag; ++behind) {
    for (const int drilled : {2000, 0}) {
      SCOPED_TRACE(behind);
      TextLines lines = StoredLines(kRows);
      lines.push_back(kMark);
      TakenUp taken(JoinedLines(lines));
      const std::string cpt = Cpt(Drilled(kRows, kRows + behind, drilled), kAligned + behind);
      taken.disk.Put(kCpt, cpt);
      taken.TakeUp();
      EXPECT_EQ(sounding.RowCount, kRows);
      EXPECT_EQ(taken.File(kTemporary), JoinedLines(lines));
      EXPECT_EQ(resume_depth.RowsAtGap, kRows) << "no second mark";
      EXPECT_FALSE(taken.WasTold(kTaken));
      EXPECT_FALSE(taken.WasTold("UNFINISHED END"));
      EXPECT_TRUE(taken.WasTold("LINES THAT THE TEMPORARY DATA DOES NOT HOLD TAKEN OUT: " +
                                PlainNumber(behind) + ".  COMPARE THE DEPTH WITH THE RODS"));
      EXPECT_EQ(taken.File("/data/s (2).cpt"), cpt);
    }
  }
}

TEST(RecoveredRows, BehindAMarkGoOnAtTheDepthOfTheFile) {
  for (const int drilled : {2000, 0, -40}) {
    for (int behind = kLag + 1; behind <= kLag + 3; ++behind) {
      SCOPED_TRACE(std::to_string(drilled) + " mm drilled, rows: " + std::to_string(behind));
      const Depths depths = Drilled(kRows, kRows + behind, drilled);
      TextLines lines = StoredLines(kRows);
      lines.push_back(kMark);
      TakenUp taken(JoinedLines(lines));
      taken.disk.Put(kCpt, Cpt(depths, kAligned + behind));
      taken.TakeUp();
      ExpectDepths(depths);
      EXPECT_EQ(taken.File(kCpt), Cpt(depths, kAligned + behind));
      EXPECT_TRUE(taken.File(kTemporary).starts_with(JoinedLines(lines)));
      EXPECT_EQ(resume_depth.RowsAtGap, kRows);
      EXPECT_TRUE(taken.WasTold(kTaken + PlainNumber(behind)));
    }
  }
}

/// The file of `Drilled(11, 12, -60)` with an end: the last row stands above those held back.
std::string CptWithEnd() {
  const Depths depths = Drilled(11, kRows, -60);
  std::string cpt = Cpt(depths, kAligned);
  for (int n = 10; n <= kRows; ++n) {
    cpt += DepthAndSpeed(true, depths.rows[static_cast<std::size_t>(n - 1)], StoredSpeed(n)) +
           StoredField(StoredValue(1, n)) + StoredField("-32768") +
           StoredField(n < kRows ? StoredValue(3, n) : "-32768") + "\r\n";
  }
  return cpt;
}

TEST(TakeUp, TellsAnUnfinishedEndWhereTheDepthsBeganAnew) {
  const Depths depths = Drilled(11, kRows, -60);
  TakenUp taken(JoinedLines(Lines(depths)));
  taken.disk.Put(kCpt, CptWithEnd());
  taken.TakeUp();
  EXPECT_EQ(taken.File(kCpt), Cpt(depths, kAligned));
  EXPECT_TRUE(taken.WasTold("LINES OF AN UNFINISHED END TAKEN OUT: 3."));
  EXPECT_FALSE(taken.WasTold("GOES DOWN TO"));
}

TEST(TakeUp, TakesNoRowsOfAnEndWithADamagedLineAndTellsOfIt) {
  const Depths depths = Drilled(11, kRows, -60);
  const Texts damaged[] = {{"1.00011", "1.99999"}, {"1.00012", "1.99999"}, {"  2.11", "  2.99"}};
  for (const Texts& change : damaged) {
    SCOPED_TRACE(change[0]);
    TakenUp taken(JoinedLines(Lines(depths)));
    std::string cpt = CptWithEnd();
    cpt.replace(cpt.rfind(change[0]), change[1].size(), change[1]);
    taken.disk.Put(kCpt, cpt);
    taken.TakeUp();
    EXPECT_EQ(sounding.RowCount, kRows);
    EXPECT_EQ(taken.File(kCpt), Cpt(depths, kAligned));
    EXPECT_EQ(taken.File(kTemporary), JoinedLines(Lines(depths)));
    EXPECT_TRUE(taken.WasTold("LINES THAT THE TEMPORARY DATA DOES NOT HOLD TAKEN OUT: 3."));
    EXPECT_EQ(taken.File("/data/s (2).cpt"), cpt);
  }
}

}  // namespace
}  // namespace penlog
