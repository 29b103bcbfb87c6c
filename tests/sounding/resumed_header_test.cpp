// Lines of the recovery copy's header that are damaged, and what the head of the `.cpt` file makes
// of them.
#include "sounding/resumed_header.h"

#include <gtest/gtest.h>

#include "sounding/resumed_world.h"

namespace penlog {
namespace {

const std::string kAnew = "DAMAGED LINES OF THE TEMPORARY DATA WERE WRITTEN ANEW";

/// The copy with one line of its header in another form.
std::string WithLine(std::size_t line, const std::string& text) {
  TextLines lines = StoredLines(kRows);
  lines[line - 1] = text;
  return JoinedLines(lines);
}

std::string CptOf(const std::string& cone, const std::string& date) {
  return Head(true, {"1", "2", "3"}, cone, date) + CptRows(kAligned);
}

/// A file whose depths the copy doesn't hold: written anew it would lose them.
std::string WithMillimetres() {
  std::string cpt = WholeCpt();
  cpt.replace(cpt.find("  0.060"), 7, "  0.064");
  return cpt;
}

const std::string kSameDate = "2026-06-15 09:30:00";
const std::string kNoCone = std::string("DS\0\0\0\0\0", 7);

// The cone.

TEST(LostCone, IsThatOfTheHeadOfTheSameDate) {
  for (const std::string& line : {kNoCone,
                                  std::string("DSE1\x03"
                                              "34"),
                                  std::string()}) {
    TakenUp taken(WithLine(kStoredConeLine, line));
    const std::string cpt = WithMillimetres();
    taken.disk.Put(kCpt, cpt);
    StartUp_cmdResume_Click();
    EXPECT_EQ(session.ResumeConeId, "DSE1234");
    EXPECT_TRUE(taken.WasTold("; THE SOUNDING FILE NAMES DSE1234"));
    taken.boxes.texts.clear();
    taken.TakeUp();
    EXPECT_EQ(taken.File(kTemporary), JoinedLines(StoredLines(kRows)));
    EXPECT_EQ(taken.File("/data/TemporaryData (2).txt"), WithLine(kStoredConeLine, line));
    EXPECT_EQ(taken.File(kCpt), cpt) << "with its millimetres";
    ASSERT_EQ(taken.boxes.texts.size(), 1U);
    EXPECT_TRUE(taken.WasTold(kAnew));
    taken.TakeUp();
    EXPECT_EQ(taken.boxes.texts, Texts{}) << "told once";
  }
}

TEST(LostCone, ThatStandsNowhereSaysWhatCanBeDone) {
  struct Case {
    const char* what;
    std::string cpt;
    std::size_t also_damaged;
  };
  for (const Case& row :
       {Case{"no file", "", 0}, Case{"another day's", CptOf("DSE1234", "2026-06-14 08:00:00"), 0},
        Case{"damaged there too", CptOf(kNoCone, kSameDate), 0},
        Case{"empty there", CptOf("", kSameDate), 0},
        Case{"other columns", Head(true, {"1", "2", "4"}) + CptRows(kAligned), 0},
        Case{"the date is damaged too", WholeCpt(), kStoredDateLine}}) {
    SCOPED_TRACE(row.what);
    TextLines lines = StoredLines(kRows);
    lines[kStoredConeLine - 1] = kNoCone;
    if (row.also_damaged > 0) lines[row.also_damaged - 1][0] = '\0';
    TakenUp taken(JoinedLines(lines));
    if (row.cpt.empty()) {
      taken.disk.Remove(kCpt);
    } else {
      taken.disk.Put(kCpt, row.cpt);
    }
    StartUp_cmdResume_Click();
    EXPECT_EQ(taken.boxes.texts,
              Texts{"THE LAST SOUNDING CANNOT BE RESUMED.  /data/TemporaryData.txt: LINE 5 NAMES "
                    "NO CONE.  PLUG IN THE MEDIUM OF /data/s.cpt, WHICH NAMES IT, OR WRITE THE "
                    "CONE'S NUMBER INTO LINE 5, AND PRESS RESUME LAST SOUNDING AGAIN."});
    EXPECT_EQ(session.ResumeConeId, "");
    EXPECT_EQ(sounding.RowCount, 0);
    EXPECT_EQ(taken.File(kTemporary), JoinedLines(lines));
  }
}

TEST(DifferingCone, OfTheHeadOfTheSameDateIsAskedFor) {
  struct Case {
    const char* what;
    std::string of_copy;
    std::string of_head;
    bool of_head_is_right;
  };
  for (const Case& row : {Case{"the copy is damaged", "DSEq234", "DSE1234", true},
                          Case{"the head is damaged", "DSE1234", "DSEq234", false}}) {
    SCOPED_TRACE(row.what);
    TakenUp taken(WithLine(kStoredConeLine, row.of_copy));
    taken.disk.Put(kCpt, CptOf(row.of_head, kSameDate));
    const std::string question = "THE TEMPORARY DATA OF THE LAST SOUNDING NAMES CONE #" +
                                 row.of_copy + ", ITS SOUNDING FILE CONE #" + row.of_head + ".";
    taken.boxes.Answer(question, row.of_head_is_right ? BoxAnswer::Yes : BoxAnswer::No);
    StartUp_cmdResume_Click();
    EXPECT_TRUE(taken.WasTold(question));
    EXPECT_EQ(session.ResumeConeId, "DSE1234");
    taken.TakeUp();
    EXPECT_EQ(taken.File(kTemporary), JoinedLines(StoredLines(kRows)));
    EXPECT_EQ(taken.File(kCpt), WholeCpt());
    EXPECT_EQ(taken.WasTold(kAnew), row.of_head_is_right);
    EXPECT_EQ(taken.WasTold("ITS HEAD WAS WRITTEN ANEW."), !row.of_head_is_right);
  }
}

// The date and the other texts.

TEST(LostDate, IsThatOfTheHeadAndTheFileStaysAsItIs) {
  for (const char byte : {'\0', 'q', '\xB5'}) {
    std::string date = kSameDate;
    date[9] = byte;
    TakenUp taken(WithLine(kStoredDateLine, date));
    const std::string cpt = WithMillimetres();
    taken.disk.Put(kCpt, cpt);
    taken.TakeUp();
    EXPECT_EQ(taken.File(kCpt), cpt) << "with its millimetres";
    EXPECT_EQ(taken.File(kTemporary), JoinedLines(StoredLines(kRows)));
    EXPECT_EQ(session.SoundingDateTime, kSameDate);
    ASSERT_EQ(taken.boxes.texts.size(), 1U);
    EXPECT_TRUE(taken.WasTold(kAnew));
  }
}

TEST(LostDate, OfAFileOfAnotherDayIsNotTaken) {
  std::string date = kSameDate;
  date[9] = '\0';
  TakenUp taken(WithLine(kStoredDateLine, date));
  taken.disk.Put(kCpt, CptOf("DSE1234", "2026-06-14 08:00:00"));
  taken.TakeUp();
  EXPECT_EQ(taken.File(kCpt), CptOf("DSE1234", "2026-06-1? 09:30:00"));
  EXPECT_EQ(taken.File("/data/s (2).cpt"), CptOf("DSE1234", "2026-06-14 08:00:00"));
  EXPECT_EQ(taken.File(kTemporary), WithLine(kStoredDateLine, date)) << "it stays as it is";
  taken.TakeUp();
  EXPECT_EQ(taken.boxes.texts, Texts{}) << "the file is the sounding's the next time";
}

TEST(LostTexts, AreThoseOfTheHead) {
  for (std::size_t line = 3; line <= 13; ++line) {
    SCOPED_TRACE(line);
    TextLines lines = StoredLines(kRows);
    lines[line - 1][0] = '\x02';
    TakenUp taken(JoinedLines(lines));
    taken.TakeUp();
    EXPECT_EQ(taken.File(kTemporary), JoinedLines(StoredLines(kRows)));
    EXPECT_EQ(taken.File(kCpt), WholeCpt());
    EXPECT_TRUE(taken.WasTold(kAnew));
  }
  EXPECT_EQ(session.GPSPosition, "GPS") << "the session's follow";
  TextLines lines = StoredLines(kRows);
  lines[1][0] = '\x02';
  TakenUp taken(JoinedLines(lines));
  taken.TakeUp();
  EXPECT_EQ(taken.File(kTemporary), JoinedLines(lines)) << "the name stands in no head";
  EXPECT_EQ(session.SoundingName, "?AME");
  EXPECT_EQ(taken.boxes.texts, Texts{});
}

// Baselines of a file on a medium that is not plugged in.

/// The folder of the sounding is gone, and the copy's baselines are damaged.
struct WithoutStick : TakenUp {
  static std::string Copy(const std::string& zeros) {
    TextLines lines = StoredLines(kRows);
    lines[0] = "/stick/s.cpt";
    lines[16] = zeros;
    return JoinedLines(lines);
  }
  WithoutStick() : TakenUp(Copy("\"damaged\"")) {
    disk.Remove(kCpt);
    ReadBack();
    for (int channel = 1; channel <= 3; ++channel) {
      channels.ChannelKeepZero(channel) = 1;
      channels.Baselines(channel) = 0.75F;
    }
    boxes.Delay(2 * kSecond);
  }
};

TEST(LostBaselines, AreThoseOfTheHeadOnceItsMediumIsPluggedIn) {
  WithoutStick taken;
  PostCall(Now() + kSecond, &taken, [&] { taken.disk.Put("/stick/s.cpt", WholeCpt()); });
  taken.ChooseFile({""});
  EXPECT_TRUE(TakeUpSounding());
  ASSERT_FALSE(taken.boxes.texts.empty());
  EXPECT_NE(taken.boxes.texts[0].find("IF ITS MEDIUM IS NOT PLUGGED IN, PLUG IT IN, PRESS YES"),
            std::string::npos);
  EXPECT_EQ(taken.File(kTemporary),
            WithoutStick::Copy(StoredColumns({"0.25310", "0.29880", "0.50070"})));
  EXPECT_FLOAT_EQ(sounding.Rows(0, 2), 0.2988F);
  EXPECT_FLOAT_EQ(channels.Baselines(2), 0.2988F);
  EXPECT_EQ(taken.File("/stick/s.cpt"), WholeCpt());
}

TEST(LostBaselines, StayLostInTheCopyWhileItsRowsAreHeld) {
  WithoutStick taken;
  taken.boxes.Answer("THE SOUNDING FILE CANNOT BE WRITTEN.", BoxAnswer::No);
  EXPECT_TRUE(TakeUpSounding());
  EXPECT_EQ(taken.File(kTemporary), WithoutStick::Copy("\"damaged\""))
      << "the next resume finds them in the head";
  EXPECT_FLOAT_EQ(sounding.Rows(0, 2), 0.75F);
}

TEST(LostBaselines, AreThoseOfTheConesRecordWhereAFileWasWrittenWithThem) {
  WithoutStick taken;
  PostCall(Now() + kSecond, &taken, [&] { taken.disk.PutFolder("/stick"); });
  taken.ChooseFile({""});
  EXPECT_TRUE(TakeUpSounding());
  EXPECT_EQ(taken.File(kTemporary),
            WithoutStick::Copy(StoredColumns({"0.75000", "0.75000", "0.75000"})));
  EXPECT_NE(taken.File("/stick/s.cpt").find(Column({"0.75000", "0.75000", "0.75000"})),
            std::string::npos);
}

// A mark of a gap that was torn.

TEST(TornMark, BehindTheLastRowIsToldAsAWholeOneIs) {
  const std::string open =
      "THE LAST SOUNDING WAS RESUMED FROM THE SURFACE, AND NO ROW WAS TAKEN AFTER THAT.  ITS LAST "
      "ROW STANDS AT 0.24 m.  IF THE CONE STANDS AT ANOTHER DEPTH NOW, RESUME FROM THE SURFACE "
      "AGAIN.";
  for (const char* torn : {"D", "DRILLOUT***", "DRILLOUT********\r\n"}) {
    TakenUp taken(JoinedLines(StoredLines(kRows)) + torn);
    StartUp_cmdResume_Click();
    ASSERT_EQ(taken.boxes.texts.size(), 2U) << torn;
    EXPECT_NE(taken.boxes.texts[0].find("LINE 30: IT IS NO WHOLE ROW"), std::string::npos);
    EXPECT_EQ(taken.boxes.texts[1], open) << torn;
  }
}

// Rows of the file in which numbers touch.

TEST(CptRowOfTouchingValues, IsReadNumberByNumber) {
  const std::string most = "340282346638528859811704183484516925440.00000";
  struct Case {
    const char* what;
    std::string fields;
    std::vector<float> read;
  };
  const std::string none = StoredField("-32768");
  for (const Case& row :
       {Case{"plain", StoredField("1.5") + StoredField("2.5") + none, {1.5F, 2.5F, -32768.0F}},
        Case{"none before the largest",
             StoredField("1.5") + none + most,
             {1.5F, -32768.0F, 3.4028235e38F}},
        Case{"the largest before another",
             most + StoredField("2.5") + none,
             {3.4028235e38F, 2.5F, -32768.0F}},
        Case{"a field less", StoredField("1.5") + most, {}},
        Case{"a field more", none + none + none + none, {}},
        Case{"half a field", StoredField("1.5") + none + "   2.5", {}},
        Case{"text", StoredField("1.5") + none + StoredField("two"), {}}}) {
    SCOPED_TRACE(row.what);
    Console console;
    FoundCpt found;
    found.has_head = true;
    found.form = CptForm::New;
    found.rows = {"  0.020  2.00" + row.fields + "\r\n"};
    const auto read = ReadCptRow(found, 0);
    ASSERT_EQ(read.has_value(), !row.read.empty());
    if (read) {
      EXPECT_EQ(read->values, row.read);
    }
  }
}

}  // namespace
}  // namespace penlog
