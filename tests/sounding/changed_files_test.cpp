// Files of a sounding that hold something else than was written to them: a stick that comes back
// with an older state, with another's file, cut or with holes. None is gone on with, replaced or
// called done; and what is refused, given up or slow is told.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "platform/boxes.h"
#include "platform/runtime_fault.h"
#include "platform/work_time.h"
#include "sounding/held_rows.h"
#include "sounding/resumed_world.h"
#include "sounding/sounding_end.h"

namespace penlog {
namespace {

const std::string kBefore = "THE SOUNDING COULD NOT BE WRITTEN TO THE DISK.";
const std::string kChanged = "THE SOUNDING FILE HAS CHANGED.";
const std::string kCopyChanged = "THE TEMPORARY DATA HAS CHANGED.";
const std::string kCopyGone = "THE TEMPORARY DATA IS GONE.";
const std::string kGivenUp = "THE FILE OF THE TIME MARKS CANNOT BE TAKEN UP AGAIN.";

/// Whose boxes stay open.
bool IsTold(const std::string& part) {
  const auto& boxes = OpenBoxes();
  return std::any_of(boxes.begin(), boxes.end(), [&](const MessageBox& box) {
    return box.text.find(part) != std::string::npos;
  });
}

std::string WithHole(std::string text, std::size_t at, std::size_t bytes) {
  return text.replace(at, bytes, bytes, '\0');
}

// A file that no resume could look at.

/// Taken up without its `.cpt` file, which stands on a stick that is away; two rows follow.
struct StickAway : TakenUp {
  StickAway() {
    disk.Remove(kCpt);
    disk.before = [](std::string_view work, const std::string& path) {
      if (work != "close" && path.starts_with("/data/s.")) throw RuntimeFault(path + ": No device");
    };
    boxes.Answer("THE SOUNDING FILE CANNOT BE WRITTEN.", BoxAnswer::No);
    TakeUp();
    Row();
    Row();
  }
  /// The stick is back, and six rows more are recorded.
  void BackWith(const std::string& cpt) {
    disk.before = {};
    disk.Put(kCpt, cpt);
    for (int i = 0; i < 6; ++i) Row();
  }
  static std::string Whole() { return Head(true) + CptRows(kAligned + 8); }
};

std::string ClosingLines(int lines) {
  std::string text;
  for (int i = 0; i < lines; ++i) {
    text += DepthAndSpeed(true, 200 + 20 * i, "2.10") + StoredField("1.00010") + "\r\n";
  }
  return text;
}

struct ReturnCase {
  const char* what;
  std::string cpt;
};

TEST(ChangedFile, SeenFirstBehindTheResumeIsGoneOnWithWhereItIsTheFrontOfWhatIsHeld) {
  const std::string three = Head(true) + CptRows(3);
  for (const ReturnCase& row :
       {ReturnCase{"three rows", three}, ReturnCase{"a torn row", three + CptRow(4).substr(0, 30)},
        ReturnCase{"all rows", WholeCpt()}, ReturnCase{"half a head", Head(true).substr(0, 400)},
        ReturnCase{"empty", ""},
        ReturnCase{"a hole at its end", three + std::string(CptRow(4).size(), '\0')}}) {
    SCOPED_TRACE(row.what);
    StickAway taken;
    taken.BackWith(row.cpt);
    EXPECT_EQ(taken.File(kCpt), StickAway::Whole());
    EXPECT_EQ(sounding.RowsHeldBack, 0);
    EXPECT_EQ(WhyNotWhole(kCptFile), "");
    EXPECT_FALSE(taken.Has("/data/s (2).cpt"));
  }
}

TEST(ChangedFile, SeenFirstBehindTheResumeIsLeftAsItIsWhereItHoldsSomethingElse) {
  const std::string whole = WholeCpt();
  const std::string cut = Head(true) + CptRows(4) + CptRow(5).substr(9) + CptRows(1);
  std::string other = whole;
  other.replace(other.find("2.00007"), 7, "9.99999");
  for (const ReturnCase& row :
       {ReturnCase{"an unfinished end", whole + ClosingLines(3)},
        ReturnCase{"a long unfinished end", whole + ClosingLines(200)},
        ReturnCase{"the other form", WholeCpt(false)}, ReturnCase{"a row cut by 9 bytes", cut},
        ReturnCase{"another value", other}, ReturnCase{"another's file", "measured before\r\n"}}) {
    SCOPED_TRACE(row.what);
    StickAway taken;
    ResetBoxes();
    taken.BackWith(row.cpt);
    EXPECT_EQ(taken.File(kCpt), row.cpt);
    EXPECT_TRUE(IsTold(kChanged));
    EXPECT_EQ(RemedyFor(kCptFile), Remedy::Resume);
    EXPECT_FALSE(CloseSounding()) << "it is not told as done";
    EXPECT_EQ(taken.File(kCpt), row.cpt);
    EXPECT_EQ(taken.File(kTemporary), JoinedLines(StoredLines(kRows + 8)));
    taken.TakeUp();
    const bool old_form = row.cpt == WholeCpt(false);
    EXPECT_EQ(taken.File(kCpt), Head(!old_form) + CptRows(kAligned + 8, !old_form));
    EXPECT_EQ(WhyNotWhole(kCptFile), "");
  }
}

// A file that changes under the sounding.

/// A sounding of twelve rows that was taken up and goes on.
struct GoesOn : TakenUp {
  GoesOn() {
    TakeUp();
    Row();
    ResetBoxes();
  }
};

TEST(ChangedFile, OfAnotherLengthIsToldAtTheNextRowAndTakesItOnceItIsBack) {
  struct Case {
    const char* what;
    const char* path;
    std::size_t cut;
    std::string added;
    const char* why;
  };
  for (const Case& row :
       {Case{"cut", kCpt, 9, "", ": shorter than what was written to it"},
        Case{"emptied", kCpt, 100'000, "", ": shorter than what was written to it"},
        Case{"a line added", kCpt, 0, "A REMARK\r\n", ": longer than what was written to it"},
        Case{"cut", kTemporary, 9, "", ": shorter than what was written to it"},
        Case{"a line added", kTemporary, 0, "X\r\n", ": longer than what was written to it"}}) {
    SCOPED_TRACE(std::string(row.path) + " " + row.what);
    GoesOn taken;
    const std::string before = taken.File(row.path);
    const std::string changed =
        before.substr(0, before.size() - std::min(row.cut, before.size())) + row.added;
    taken.disk.Put(row.path, changed);
    for (int again = 0; again < 2; ++again) {
      TakenUp::Row();
      EXPECT_TRUE(IsTold(row.path + std::string(row.why)));
      EXPECT_TRUE(IsTold(row.path == std::string(kCpt) ? kChanged : kCopyChanged));
      EXPECT_EQ(sounding.RowsHeldBack, again + 1);
      EXPECT_EQ(taken.File(row.path), changed) << "neither gone on with nor replaced";
    }
    taken.disk.Put(row.path, before);
    TakenUp::Row();
    EXPECT_EQ(sounding.RowsHeldBack, 0);
    EXPECT_EQ(taken.File(kCpt), Head(true) + CptRows(kAligned + 4));
    EXPECT_EQ(taken.File(kTemporary), JoinedLines(StoredLines(kRows + 4)));
  }
}

TEST(ChangedFile, OfTheSameLengthIsFoundBehindARefusalAndAtTheEnd) {
  for (const bool refused : {true, false}) {
    for (const std::size_t at : {std::size_t{0}, Head(true).size() + 200, WholeCpt().size() - 40}) {
      SCOPED_TRACE(std::to_string(at) + (refused ? ", pulled" : ", unseen"));
      GoesOn taken;
      const std::string before = taken.File(kCpt);
      if (refused) {
        taken.disk.Remove(kCpt);
        TakenUp::Row();
      }
      const std::string changed = WithHole(before, at, 30);
      taken.disk.Put(kCpt, changed);
      if (refused) {
        TakenUp::Row();
        EXPECT_EQ(taken.File(kCpt), changed) << "takes no row";
        EXPECT_TRUE(IsTold(kChanged));
      }
      EXPECT_FALSE(CloseSounding());
      EXPECT_TRUE(taken.File(kTemporary).starts_with(kCpt)) << "not done";
      EXPECT_TRUE(IsTold(": not what was written to it"));
      EXPECT_EQ(RemedyFor(kCptFile), Remedy::Resume);
      ResetBoxes();
      taken.TakeUp();
      EXPECT_EQ(taken.File(kCpt), Head(true) + CptRows(kAligned + (refused ? 3 : 1)));
    }
  }
}

// A recovery copy that is gone, or holds something else: what is left to do, and that it works.

const std::string kWayToClose = "END THE SOUNDING WITH TAKE BASELINE OR NO BASELINE";
const std::string kWayOut = "OR CLOSE THE WINDOW: A RESUME TAKES THE ROWS";

struct CopyCase {
  const char* what;
  void (*harm)(MemoryDisk& disk);
  bool resumes;
};

constexpr CopyCase kHarmedCopies[] = {
    {"cut",
     [](MemoryDisk& disk) {
       const std::string text = disk.Read(kTemporary);
       disk.Put(kTemporary, text.substr(0, text.size() - 9));
     },
     true},
    {"a line added",
     [](MemoryDisk& disk) { disk.Put(kTemporary, disk.Read(kTemporary) + "X\r\n"); }, true},
    {"an older state", [](MemoryDisk& disk) { disk.Put(kTemporary, JoinedLines(StoredLines(5))); },
     true},
    {"another sounding's",
     [](MemoryDisk& disk) {
       const std::string text = disk.Read(kTemporary);
       disk.Put(kTemporary, "/data/other.cpt" + text.substr(text.find("\r\n")));
     },
     false},
    {"emptied", [](MemoryDisk& disk) { disk.Put(kTemporary, ""); }, false},
    {"gone", [](MemoryDisk& disk) { disk.Remove(kTemporary); }, false},
};

constexpr int kMore = 6;

/// Harmed behind the first row of the resume; `kMore` rows follow.
struct HarmedCopy : GoesOn {
  explicit HarmedCopy(const CopyCase& harmed) {
    harmed.harm(disk);
    for (int i = 0; i < kMore; ++i) Row();
  }
  static std::string WholeRows() { return Head(true) + CptRows(kAligned + 1 + kMore); }
  static std::string SuspendedText() {
    ResetBoxes();
    SuspendSounding();
    return OpenBoxes().empty() ? "" : OpenBoxes().back().text;
  }
};

TEST(HarmedCopy, IsToldInWordsOfItsOwnAndNamesTheWaysThatAreLeft) {
  for (const CopyCase& row : kHarmedCopies) {
    SCOPED_TRACE(row.what);
    HarmedCopy harmed(row);
    const bool is_gone = std::string(row.what) == "gone";
    EXPECT_TRUE(IsTold(is_gone ? kCopyGone : kCopyChanged));
    EXPECT_TRUE(IsTold("STOPPED AND CLOSED"));
    EXPECT_FALSE(IsTold(kBefore)) << "room helps nothing";
    const std::string text = HarmedCopy::SuspendedText();
    EXPECT_TRUE(text.starts_with("THE SOUNDING CANNOT BE SUSPENDED.  IN MEMORY ALONE: 6 ROWS."));
    EXPECT_NE(text.find(kWayToClose), text.npos) << text;
    EXPECT_EQ(text.find(kWayOut) != text.npos, row.resumes) << text;
    Main_QueryUnload();
    const std::string out = OpenBoxes().back().text;
    EXPECT_TRUE(out.starts_with(row.resumes ? "A RESUME WOULD LACK ROWS: "
                                            : "THE SOUNDING COULD NOT BE RESUMED: "))
        << out;
    EXPECT_NE(out.find("IN MEMORY ALONE: 6 ROWS.  END THE PROGRAM ALL THE SAME?"), out.npos) << out;
  }
}

TEST(HarmedCopy, LeavesTheSoundingToBeClosedWhole) {
  for (const CopyCase& row : kHarmedCopies) {
    SCOPED_TRACE(row.what);
    HarmedCopy harmed(row);
    EXPECT_TRUE(CloseSounding());
    EXPECT_EQ(harmed.File(kTemporary), "DONE\r\n");
    const std::string cpt = harmed.File(kCpt);
    ASSERT_TRUE(cpt.starts_with(HarmedCopy::WholeRows()));
    const std::string closing = cpt.substr(HarmedCopy::WholeRows().size());
    EXPECT_EQ(std::count(closing.begin(), closing.end(), '\n'), kLag) << "the rows of the lag";
  }
}

TEST(HarmedCopy, OfAnEndedProgramIsTakenUpWithTheRowsOfTheFileWhereThatIsTold) {
  for (const CopyCase& row : kHarmedCopies) {
    if (!row.resumes) continue;
    SCOPED_TRACE(row.what);
    HarmedCopy harmed(row);
    ASSERT_EQ(harmed.File(kCpt), HarmedCopy::WholeRows());
    sounding.Held = {};  // the window was closed
    harmed.TakeUp();
    EXPECT_EQ(sounding.RowCount, kRows + 1 + kMore);
    EXPECT_EQ(harmed.File(kCpt), HarmedCopy::WholeRows());
  }
}

TEST(HarmedCopy, BesideAFileThatIsGoneTooNamesNoWayThatDoesNotWork) {
  HarmedCopy harmed(kHarmedCopies[0]);
  harmed.disk.Remove(kCpt);
  const std::string text = HarmedCopy::SuspendedText();
  EXPECT_EQ(text.find(kWayToClose), text.npos) << text;
  EXPECT_EQ(text.find(kWayOut), text.npos) << text;
}

// A stop can't be taken back: it is not named where it leads nowhere.
TEST(HarmedCopy, BesideAFileThatIsGoneOrWithTooFewRowsIsNotToldToBeClosed) {
  for (const bool too_few : {true, false}) {
    GoesOn taken;
    if (too_few) {
      cone.DelayRows = static_cast<std::int16_t>(sounding.RowCount + kMore);
    } else {
      taken.disk.Remove(kCpt);
    }
    taken.disk.Remove(kTemporary);
    TakenUp::Row();
    EXPECT_TRUE(IsTold(kCopyGone)) << too_few;
    EXPECT_TRUE(IsTold("UNTIL THEN THE SOUNDING CANNOT BE SUSPENDED.  ")) << too_few;
    EXPECT_FALSE(IsTold("STOPPED AND CLOSED")) << too_few;
  }
}

// What is refused, given up, or slow.

TEST(RefusedRow, OfTheCopyIsToldAgainThoughTheFileStillLags) {
  for (const bool unfit : {true, false}) {
    GoesOn taken;
    std::set<std::string> refused = {kCpt};
    taken.disk.before = [&refused](std::string_view work, const std::string& path) {
      if (work == "write" && refused.contains(path)) throw RuntimeFault(path + ": No space left");
    };
    if (unfit) StartUnfitFile(kCptFile);
    TakenUp::Row();
    for (int refusal = 1; refusal <= 3; ++refusal) {
      ResetBoxes();
      refused.insert(kTemporary);
      for (int i = 0; i < 2; ++i) TakenUp::Row();
      const auto is_of_copy = [](const MessageBox& box) {
        return box.text.starts_with(kBefore) && box.text.find(kTemporary) != std::string::npos;
      };
      EXPECT_EQ(std::count_if(OpenBoxes().begin(), OpenBoxes().end(), is_of_copy), 1) << refusal;
      EXPECT_EQ(LinesHeld(kTemporaryFile), 2);
      refused.erase(kTemporary);
      TakenUp::Row();
      EXPECT_EQ(LinesHeld(kTemporaryFile), 0);
      EXPECT_GT(LinesHeld(kCptFile), 0) << "the file still lags";
    }
  }
}

TEST(RefusedRow, IsToldAgainWhenTheDiskHadTakenRowsMeanwhile) {
  GoesOn taken;
  for (std::size_t refusals = 1; refusals <= 3; ++refusals) {
    taken.disk.before = [](std::string_view work, const std::string& path) {
      if (work == "write" && path == kCpt) throw RuntimeFault(path + ": No space left on device");
    };
    TakenUp::Row();
    TakenUp::Row();
    EXPECT_EQ(OpenBoxes().size(), refusals) << "once for a refusal, and once for each";
    taken.disk.before = {};
    TakenUp::Row();
    RetryHeld();
    EXPECT_EQ(sounding.RowsHeldBack, 0);
  }
}

TEST(TimeMarks, GivenUpAtTheResumeLeaveTheirFileAsItIs) {
  const std::string head =
      "Lumen Probe Time File.  Each line a represents a 5mm depth increment.\r\n 34200.5 \r\n";
  for (const std::string& before : {head + "-000.500 342", head.substr(0, 80), std::string()}) {
    SCOPED_TRACE(before);
    TakenUp taken;
    settings.LumenProbePresent = 1;
    if (!before.empty()) taken.disk.Put(kTim, before);
    taken.disk.before = [](std::string_view work, const std::string& path) {
      if (work == "create" && path.starts_with(kTim)) throw RuntimeFault("Permission denied");
    };
    taken.boxes.Answer(kGivenUp, BoxAnswer::Cancel);
    taken.OpenPorts();
    taken.TakeUp();
    ASSERT_EQ(taken.boxes.texts.size(), 1U);
    EXPECT_NE(taken.boxes.texts[0].find("THE MARKS OF THIS SESSION ARE NOT KEPT"),
              std::string::npos);
    for (const bool refuses : {true, false}) {
      if (!refuses) taken.disk.before = {};
      const std::int32_t marks = sounding.PictureCount;
      taken.EncoderDown(4);
      EXPECT_EQ(sounding.PictureCount, marks + 4);
      EXPECT_EQ(taken.Has(kTim), !before.empty());
      if (!before.empty()) {
        EXPECT_EQ(taken.File(kTim), before);
      }
      EXPECT_EQ(LinesHeld(kTimFile), 0) << "and nothing asks about them at the end";
    }
    EXPECT_TRUE(CloseSounding());
    EXPECT_EQ(taken.File(kTemporary), "DONE\r\n");
  }
}

TEST(SlowMedium, IsToldOnceWithItsTime) {
  for (const bool slow : {true, false}) {
    GoesOn taken;
    taken.disk.after = [slow](std::string_view work, const std::string& path) {
      if (work == "sync" && path == kCpt) AddWorkTime(slow ? 1240 * kMillisecond : kSecond / 2);
    };
    for (int i = 0; i < 3; ++i) TakenUp::Row();
    ASSERT_EQ(OpenBoxes().size(), slow ? 1U : 0U);
    if (!slow) continue;
    EXPECT_TRUE(
        OpenBoxes()[0].text.starts_with("THE MEDIUM OF /data/s.cpt IS SLOW: 1.2 s FOR A "
                                        "ROW.  DEPTH IS COUNTED ON, "));
    EXPECT_EQ(taken.File(kCpt), Head(true) + CptRows(kAligned + 4));
  }
}

}  // namespace
}  // namespace penlog
