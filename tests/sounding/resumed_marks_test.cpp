// The time marks of a sounding that is taken up again.
#include <gtest/gtest.h>

#include <string_view>

#include "forms/main_form.h"
#include "platform/runtime_fault.h"
#include "sounding/held_rows.h"
#include "sounding/main_loop.h"
#include "sounding/resume_rebuild.h"
#include "sounding/resumed_world.h"

namespace penlog {
namespace {

const std::string kTitle =
    "Lumen Probe Time File.  Each line a represents a 5mm depth increment.\r\n";
const std::string kTimHead = kTitle + " 34200.5 \r\n";
const std::string kMark = "-000.510 34262.75\r\n";  // at the last row
constexpr const char* kKept = "/data/s (2).tim";

/// Marks each 5 mm from `first` to `last`, mm of the tip, `seconds` since midnight.
std::string Marks(int first, int last, const std::string& seconds) {
  std::string text;
  for (int mm = first; mm <= last; mm += 5) {
    const std::string metres = MetresOf(mm - 750, 3);
    text += (mm < 750 ? "-00" + metres.substr(1) : "00" + metres) + " " + seconds + "\r\n";
  }
  return text;
}

/// With a camera, and its file as it stands.
struct WithMarks : TakenUp {
  explicit WithMarks(const std::string& tim, const std::string& temporary = {})
      : TakenUp(temporary.empty() ? JoinedLines(StoredLines(kRows)) : temporary) {
    settings.LumenProbePresent = 1;
    disk.Put(kTim, tim);
  }
  ~WithMarks() { ports.Wire(kConePort).OnBytes = {}; }

  /// Each command by one reading.
  void LetConeAnswer() {
    ports.Wire(kConePort).OnBytes = [this](std::string_view bytes) {
      if (bytes.find('\r') == bytes.npos) return;
      PostCall(Now() + kMillisecond, this,
               [this] { ports.Wire(kConePort).Send("1.1 2.2 3.3\r\n"); });
    };
    Main.Timer1.OnTick = Main_Timer1_Timer;
    Main.Timer1.Start();
    Main.ConeComm.SetCommPort(kConePort);
    Main.ConeComm.Open();
  }
};

TEST(ResumedMarks, GoOnInTheirFileAndWhatIsCutOrBegunAnewIsTold) {
  const std::string anew = kTitle + " 34200 \r\n";  // the time of the resume
  const std::string no_head =
      "THE FILE OF THE TIME MARKS /data/s.tim HAS NO WHOLE HEAD.  IT IS "
      "BEGUN ANEW, WITHOUT MARKS OF BEFORE.";
  const std::string torn = "AN UNFINISHED TIME MARK WAS TAKEN OUT OF /data/s.tim.";
  const std::string kept = "  THE FILE OF BEFORE IS KEPT AS /data/s (2).tim.";
  struct Case {
    const char* what;
    std::string before;
    std::string after;
    std::string told;
    bool kept = false;
  };
  const Case cases[] = {
      {"whole", kTimHead + kMark, kTimHead + kMark, ""},
      {"head alone", kTimHead, kTimHead, ""},
      {"a mark without a head", kMark, kMark, ""},
      {"another's lines", "one\r\ntwo\r\n", "one\r\ntwo\r\n", ""},
      {"torn", kTimHead + kMark + "-000.50", kTimHead + kMark, torn},
      {"empty", "", anew, no_head},
      {"title alone", kTitle, anew, no_head},
      {"half a title", kTitle.substr(0, 14), anew, no_head},
      {"title and half a time", kTimHead.substr(0, kTimHead.size() - 4), anew, no_head},
      {"another's line", "measured before\r\n", anew, no_head + kept, true},
      {"another's half line", "measured bef", anew, no_head + kept, true},
      {"a title with something else", kTitle + "depths", anew, no_head + kept, true},
      {"zeros", std::string(50, '\0'), anew, no_head + kept, true},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    WithMarks taken(row.before);
    taken.TakeUp();
    EXPECT_EQ(taken.File(kTim), row.after);
    EXPECT_EQ(taken.boxes.texts, row.told.empty() ? Texts{} : Texts{row.told});
    ASSERT_EQ(taken.Has(kKept), row.kept);
    if (row.kept) {
      EXPECT_EQ(taken.File(kKept), row.before);
    }
    EXPECT_TRUE(AppendOrHold(kTimFile, kMark));
    EXPECT_EQ(taken.File(kTim), row.after + kMark);
  }
}

// The count goes on at the last row, as those of the rows do.
TEST(ResumedMarks, BelowTheLastRowStayAndTheirDepthsAreMarkedOnceMore) {
  const std::string before = kTimHead + Marks(5, 255, "34262.75");
  WithMarks taken(before);
  taken.LetConeAnswer();
  taken.OpenPorts();
  taken.TakeUp();
  EXPECT_EQ(taken.File(kTim), before);
  EXPECT_EQ(taken.boxes.texts, Texts{});
  RebuildResumedSounding();
  EXPECT_EQ(sounding.PictureCount, 51);
  EXPECT_EQ(Main.lblNumberOfPictures.Caption, "51");
  taken.EncoderDown(5);
  EXPECT_EQ(Main.lblNumberOfPictures.Caption, "56");
  const std::string text = taken.File(kTim);
  EXPECT_TRUE(text.starts_with(before));
  for (int mm = 5; mm <= 265; mm += 5) {
    const std::string mark = "\r\n" + Marks(mm, mm, "").substr(0, 9);
    const std::size_t at = text.find(mark);
    ASSERT_NE(at, std::string::npos) << mark;
    EXPECT_EQ(text.find(mark, at + 1) != std::string::npos, mm > 240 && mm <= 255) << mark;
  }
}

TEST(ResumedMarks, StayFromTheSurfaceAndWithoutAProbe) {
  const std::string before = kTimHead + Marks(5, 255, "34262.75");
  for (const bool from_surface : {true, false}) {
    WithMarks taken(before);
    if (!from_surface) settings.LumenProbePresent = 0;
    taken.ReadBack();
    session.ResumeDepthStatus = from_surface ? 1.0F : 0.0F;
    TakeUpSounding();
    EXPECT_EQ(taken.File(kTim), before) << (from_surface ? "from the surface" : "without a probe");
    EXPECT_FALSE(taken.Has(kKept));
    EXPECT_EQ(taken.boxes.texts, Texts{});
    EXPECT_EQ(sounding.PictureCount, 51);
  }
}

TEST(ResumedMarks, WhatStoodInTheirPlaceIsKeptBesideOnceHoweverOftenTheirFileRefuses) {
  const std::string before = "measured before\r\n";
  for (const Fate fate : {Fate::Refused, Fate::RefusedHalf, Fate::RefusedAfter}) {
    bool refused = true;
    for (int first = 1; refused; ++first) {
      SCOPED_TRACE(first);
      ASSERT_LT(first, 30);
      WithMarks taken(before);
      taken.ReadBack();
      refused = false;
      taken.disk.fate = [&, left = first](std::string_view work, const std::string& path,
                                          std::int64_t) mutable {
        if (work == "close" || path.find(".tim") == path.npos || --left != 0) return Fate::Done;
        refused = true;
        return fate;
      };
      TakeUpSounding();
      EXPECT_EQ(taken.File(kTim), kTitle + " 34200 \r\n");
      int whole = 0;
      const MemoryDisk medium = taken.disk.After(Loss::ContentsAndNames);
      for (const auto& [path, text] : medium.Files()) {
        whole += path.starts_with("/data/s (") && text == before ? 1 : 0;
      }
      EXPECT_TRUE(whole == 1 || (whole == 2 && fate == Fate::RefusedAfter)) << whole;
      ASSERT_FALSE(taken.boxes.texts.empty());
      EXPECT_TRUE(taken.WasTold("THE FILE OF THE TIME MARKS /data/s.tim HAS NO WHOLE HEAD."));
      EXPECT_EQ(sounding.PictureCount, 0);
    }
  }
}

TEST(ResumedMarks, ATimeFileThatGoesAwayIsNotBegunAnewWithoutItsHead) {
  TakenUp taken;
  settings.LumenProbePresent = 1;
  taken.TakeUp();
  taken.disk.Remove(kTim);
  EXPECT_FALSE(AppendOrHold(kTimFile, kMark));
  EXPECT_FALSE(taken.Has(kTim));
}

TEST(ResumedMarks, MakesAMissingTimeFileWhereTheProbeMarks) {
  for (const int probe : {0, 1, 2, 3}) {
    TakenUp taken;
    settings.LumenProbePresent = static_cast<std::int16_t>(probe);
    taken.TakeUp();
    EXPECT_EQ(taken.Has(kTim), probe == 1 || probe == 2) << probe;
    EXPECT_EQ(taken.WasTold("THE FILE OF THE TIME MARKS /data/s.tim IS MISSING.  IT IS BEGUN ANEW, "
                            "WITHOUT MARKS OF BEFORE."),
              taken.Has(kTim));
    if (!taken.Has(kTim)) continue;
    EXPECT_EQ(taken.File(kTim).find("Lumen Probe Time File."), 0U);
  }
}

TEST(ResumedMarks, ATimeFileThatRefusesCanBeTriedAgainOrLeft) {
  struct Case {
    BoxAnswer answer;
    int refusals;
    std::size_t told;
    bool made;
  };
  for (const Case& row : {Case{BoxAnswer::Ok, 2, 3, true}, Case{BoxAnswer::Cancel, 2, 1, false}}) {
    TakenUp taken;
    settings.LumenProbePresent = 1;
    taken.disk.before = [left = row.refusals](std::string_view work,
                                              const std::string& path) mutable {
      if (work != "create" || !path.starts_with(kTim) || left-- <= 0) return;
      throw RuntimeFault("Permission denied");
    };
    taken.boxes.Answer("THE FILE OF THE TIME MARKS CANNOT BE TAKEN UP AGAIN.", row.answer);
    taken.TakeUp();
    EXPECT_EQ(taken.boxes.texts.size(), row.told);
    EXPECT_EQ(taken.Has(kTim), row.made);
    TakenUp::Row();
    EXPECT_EQ(taken.File(kCpt), Head(true) + CptRows(kAligned + 1)) << "the sounding goes on";
  }
}

}  // namespace
}  // namespace penlog
