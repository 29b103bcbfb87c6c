// The files of a suspended sounding are taken up again. What they must hold is written here by
// hand, from the forms of the document, and not by the console's own writer.
#include "sounding/resumed_files.h"

#include <array>
#include <functional>

#include "core/box_answers.h"
#include "core/resume.h"
#include "core/settings_replaced.h"
#include "forms/start_up_form.h"
#include "platform/files.h"
#include "sounding/console.h"
#include "sounding/held_rows.h"
#include "sounding/sounding_end.h"
#include "sounding/sounding_files.h"
#include "support/temporary_lines.h"

namespace penlog {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kTemporary = "/data/TemporaryData.txt";
constexpr const char* kCpt = "/data/s.cpt";
constexpr const char* kTim = "/data/s.tim";
constexpr int kLag = 3;

/// Rows that channels 1, 2 and 3 lag behind the tip.
constexpr std::array<int, 3> kDelays = {0, kLag, 1};

std::string Right(const std::string& text, std::size_t width) {
  return std::string(text.size() < width ? width - text.size() : 0, ' ') + text;
}

std::string Column(const Texts& fields) {
  std::string line(13, ' ');
  for (const auto& field : fields) line += StoredField(field);
  return line + "\r\n";
}

/// The head as the console of another day left it.
std::string Head(bool new_form, const Texts& numbers = {"1", "2", "3"},
                 const std::string& cone_id = "DSE1234",
                 const std::string& date = "2026-06-15 09:30:00") {
  std::string text =
      new_form ? "KQ Sounding File ver. 2015.07.02.1\r\n" : "Dravenholtz Sounding File\r\n";
  for (const std::string& line : Texts{"Company, Ltd.", "Oper", cone_id, "Loc", "Job", "Hole", date,
                                       "Head", "Foot1", "Foot2", "GPS", " 1.5 ", "", ""}) {
    text += line + "\r\n";
  }
  text += Column(numbers) + Column({"C1", "C2", "C3"}) + Column({"1", "1", "1"}) +
          Column({"0.25310", "0.29880", "0.50070"}) + Column({"1 u1", "1 u2", "1 u3"}) +
          Column({"u1", "u2", "u3"}) + Column({"1", "1", "1"});
  return text + (new_form ? "    (m)(cm/s)\r\n" : "   (m) (cm/s)\r\n");
}

/// `mm` as metres with `places` decimals.
std::string Metres(int mm, int places) {
  const std::string sign = mm < 0 ? "-" : "";
  const int all = std::abs(mm);
  const std::string decimals = std::to_string(1000 + all % 1000).substr(1);
  return sign + std::to_string(all / 1000) + "." +
         decimals.substr(0, static_cast<std::size_t>(places));
}

std::string DepthAndSpeed(bool new_form, int mm, const std::string& speed) {
  return new_form ? Right(Metres(mm, 3), 7) + Right(speed, 6)
                  : Right(Metres(mm, 2), 6) + Right(speed, 7);
}

/// Row n of the `.cpt` file: each channel from the row where its sensor passed, the speed of the
/// row that made it complete.
std::string CptRow(int n, bool new_form = true, int sign = 1) {
  std::string row = DepthAndSpeed(new_form, sign * 20 * n, StoredSpeed(n + kLag));
  for (int channel = 1; channel <= 3; ++channel) {
    row += StoredField(StoredValue(channel, n + kDelays[static_cast<std::size_t>(channel - 1)]));
  }
  return row + "\r\n";
}

std::string CptRows(int last, bool new_form = true, int sign = 1) {
  std::string text;
  for (int n = 1; n <= last; ++n) text += CptRow(n, new_form, sign);
  return text;
}

constexpr int kRows = 12;
constexpr int kAligned = kRows - kLag;

std::string WholeCpt(bool new_form = true) {
  return Head(new_form) + CptRows(kAligned, new_form);
}

/// A console whose cone has answered, with the sounding of `kRows` rows read back.
struct TakenUp : Console {
  explicit TakenUp(const std::string& temporary = JoinedLines(StoredLines(kRows))) {
    replaced_settings = {};
    settings.DepthResolution = 0.005F;
    settings.DepthStepCounts = 4;
    disk.Put(kTemporary, temporary);
    disk.Put(kCpt, WholeCpt());
  }
  ~TakenUp() { DropCalls(this); }

  void ReadBack() {
    StartUp_cmdResume_Click();
    boxes.texts.clear();
    // As the cone's memory tells it.
    for (int channel = 1; channel <= 3; ++channel) {
      channels.ChannelDelayRows(channel) =
          static_cast<std::int16_t>(kDelays[static_cast<std::size_t>(channel - 1)]);
      channels.RecordMode(channel) = 0;
    }
    cone.DelayRows = 99;
  }
  void TakeUp() {
    ReadBack();
    TakeUpSounding();
  }
  /// The next row of the sounding, as a pass records it; channels read as their file tells.
  static void Row() {
    const int n = ++sounding.RowCount;
    sounding.CurrentDepth = 0.02F * static_cast<float>(n);
    sounding.RowSpeed(n - 1) = std::stof(StoredSpeed(n));
    for (int channel = 1; channel <= 3; ++channel) {
      sounding.Readings(channel) = std::stof(StoredValue(channel, n));
    }
    RecordRow();
  }
  std::string File(const std::string& path) { return disk.Read(path); }
  bool Has(const std::string& path) { return disk.FileExists(path); }
  /// Answers each file dialog with the next path; the last one again and again.
  void ChooseFile(Texts paths) {
    choices_ = std::move(paths);
    Look();
  }
  bool WasTold(const std::string& part) const {
    return std::any_of(boxes.texts.begin(), boxes.texts.end(), [&](const std::string& text) {
      return text.find(part) != std::string::npos;
    });
  }

  BoxAnswers boxes;
  int dialogs = 0;

 private:
  void Look() {
    PostCall(
        Now() + kMillisecond, this,
        [this] {
          if (const FileDialog* dialog = OpenFileDialog();
              dialog != nullptr && dialog->id != last_) {
            last_ = dialog->id;
            ++dialogs;
            AnswerFileDialog(dialog->id, choices_.front());
            if (choices_.size() > 1) choices_.erase(choices_.begin());
          }
          Look();
        },
        EventKind::RepeatingCall);
  }

  Texts choices_;
  int last_ = 0;
};

// The `.cpt` file.

TEST(TakeUp, LeavesSoundFilesAlone) {
  TakenUp taken;
  taken.ReadBack();
  const auto before = taken.disk.OperationCount();
  TakeUpSounding();
  EXPECT_EQ(taken.disk.OperationCount(), before);
  EXPECT_EQ(taken.boxes.texts, Texts{});
  EXPECT_EQ(cone.DelayRows, kLag) << "by the recorded columns";
}

struct CptCase {
  const char* what;
  std::string before;
  std::string told;
  bool kept;
};

std::string WithoutLast(const std::string& text, std::size_t bytes) {
  return text.substr(0, text.size() - bytes);
}

TEST(TakeUp, MendsTheCptFileFromTheRecoveryCopy) {
  const std::string mended = "THE SOUNDING FILE WAS MENDED FROM THE TEMPORARY DATA.";
  const std::string anew = mended + "  ITS HEAD WAS WRITTEN ANEW.";
  std::string changed = WholeCpt();
  changed.replace(changed.find("2.00007"), 7, "9.99999");
  std::string faster = WholeCpt();
  faster.replace(faster.find(" 2.06"), 5, " 9.99");
  const std::string flush = DepthAndSpeed(true, 200, "2.10") + StoredField("1.00010") + "\r\n";
  const std::string baseline = Column({"0.25310", "0.29880", "0.50070"});
  const CptCase cases[] = {
      {"one row short", Head(true) + CptRows(kAligned - 1), mended + "  ROWS ADDED: 1.", false},
      {"all rows short", Head(true), mended + "  ROWS ADDED: 9.", false},
      {"half a line", Head(true) + CptRows(kAligned - 1) + CptRow(kAligned).substr(0, 40),
       mended + "  AN UNFINISHED LINE WAS TAKEN OUT.  ROWS ADDED: 1.", false},
      {"without its last line end", WithoutLast(WholeCpt(), 2),
       mended + "  AN UNFINISHED LINE WAS TAKEN OUT.  ROWS ADDED: 1.", false},
      {"half a line behind the last", WholeCpt() + "  0.2",
       mended + "  AN UNFINISHED LINE WAS TAKEN OUT.", false},
      {"another value", changed, mended + "  ROWS CHANGED: 1.", true},
      {"another speed", faster, mended + "  ROWS CHANGED: 1.", true},
      {"a row left out", Head(true) + CptRow(1) + CptRows(kAligned).substr(2 * CptRow(1).size()),
       mended + "  ROWS ADDED: 1.  ROWS CHANGED: 8.", true},
      {"an unfinished end", WholeCpt() + flush + flush + baseline,
       mended + "  LINES OF AN UNFINISHED END TAKEN OUT: 3.", true},
      {"half an unfinished end", WholeCpt() + flush + flush.substr(0, 20),
       mended + "  AN UNFINISHED LINE WAS TAKEN OUT.  LINES OF AN UNFINISHED END TAKEN OUT: 1.",
       true},
  };
  for (const CptCase& row : cases) {
    SCOPED_TRACE(row.what);
    TakenUp taken;
    taken.disk.Put(kCpt, row.before);
    taken.TakeUp();
    EXPECT_EQ(taken.File(kCpt), WholeCpt());
    const std::string kept = "  THE FILE OF BEFORE IS KEPT AS /data/s (2).cpt.";
    EXPECT_EQ(taken.boxes.texts, Texts{row.told + (row.kept ? kept : "")});
    ASSERT_EQ(taken.Has("/data/s (2).cpt"), row.kept);
    if (row.kept) {
      EXPECT_EQ(taken.File("/data/s (2).cpt"), row.before);
    }
    EXPECT_EQ(taken.File(kTemporary), JoinedLines(StoredLines(kRows)));
  }
}

TEST(TakeUp, WritesACptFileAnewWhoseHeadIsNotTheSoundings) {
  const std::string rows = CptRows(kAligned);
  const Texts other_columns = {"1", "2", "23"};
  struct Case {
    const char* what;
    std::string before;
  };
  for (const Case& row :
       {Case{"empty", ""}, Case{"half a head", Head(true).substr(0, 400)},
        Case{"a head without its last line end", WithoutLast(Head(true), 2)},
        Case{"something else", "measured before\r\n"}, Case{"bytes", std::string(5000, '\0')},
        Case{"no form", "Sounding\r\n" + Head(true).substr(Head(true).find("Company")) + rows},
        Case{"other columns", Head(true, other_columns) + rows},
        Case{"another cone", Head(true, {"1", "2", "3"}, "DSE9999") + rows},
        Case{"another day",
             Head(true, {"1", "2", "3"}, "DSE1234", "2026-06-14 08:00:00") + rows}}) {
    SCOPED_TRACE(row.what);
    TakenUp taken;
    taken.disk.Put(kCpt, row.before);
    taken.TakeUp();
    EXPECT_EQ(taken.File(kCpt), WholeCpt()) << "header, zeros and rows of the recovery copy";
    EXPECT_TRUE(taken.WasTold("ITS HEAD WAS WRITTEN ANEW."));
    EXPECT_TRUE(taken.WasTold("ROWS ADDED: 9."));
    EXPECT_EQ(taken.File("/data/s (2).cpt"), row.before);
  }
}

TEST(TakeUp, WritesAMissingCptFileAnew) {
  for (const bool new_form : {true, false}) {
    TakenUp taken;
    settings.DepthSignificantDigits = new_form ? 3 : 2;
    taken.disk.Remove(kCpt);
    taken.TakeUp();
    EXPECT_EQ(taken.File(kCpt), WholeCpt(new_form));
    EXPECT_EQ(taken.boxes.texts, Texts{"THE SOUNDING FILE WAS MENDED FROM THE TEMPORARY DATA.  ITS "
                                       "HEAD WAS WRITTEN ANEW.  ROWS ADDED: 9."});
    EXPECT_FALSE(taken.Has("/data/s (2).cpt"));
  }
}

/// A medium that doesn't give one of its files.
struct UnreadableCpt : MemoryDisk {
  std::string Read(const std::string& path) override {
    if (path == kCpt && refuses) throw RuntimeFault(path + ": Input/output error");
    return MemoryDisk::Read(path);
  }
  void Rename(const std::string& from, const std::string& to) override {
    MemoryDisk::Rename(from, to);
    if (to == kCpt) refuses = false;
  }
  bool refuses = true;
};

TEST(TakeUp, PutsACptFileThatCannotBeReadBesideAndWritesItAnew) {
  TakenUp taken;
  UnreadableCpt disk;
  UseDisk(&disk);
  disk.Put(kTemporary, JoinedLines(StoredLines(kRows)));
  disk.Put(kCpt, "what it was");
  taken.TakeUp();
  EXPECT_EQ(disk.Files().at(kCpt), WholeCpt());
  EXPECT_EQ(disk.Files().at("/data/s (2).cpt"), "what it was");
  UseDisk(&taken.disk);
}

TEST(TakeUp, KeepsDepthsOfMillimetresThatTheRecoveryCopyDoesNotHave) {
  TakenUp taken;
  std::string cpt = WholeCpt();
  cpt.replace(cpt.find("  0.060"), 7, "  0.064");
  cpt.replace(cpt.find("  0.120"), 7, "  0.115");
  taken.disk.Put(kCpt, cpt);
  taken.TakeUp();
  EXPECT_EQ(taken.File(kCpt), cpt);
  EXPECT_EQ(taken.boxes.texts, Texts{});
}

TEST(TakeUp, MendsADepthThatIsMoreThanAHalfHundredthOff) {
  TakenUp taken;
  std::string cpt = WholeCpt();
  cpt.replace(cpt.find("  0.060"), 7, "  0.067");
  taken.disk.Put(kCpt, cpt);
  taken.TakeUp();
  EXPECT_EQ(taken.File(kCpt), WholeCpt());
}

TEST(TakeUp, KeepsMillimetresOfALongElevation) {
  Texts lines = StoredHeader();
  std::string cpt = Head(true);
  for (int n = 1; n <= 5; ++n) {
    lines.push_back(StoredRowLine(Metres(-1'500'000 + 20 * n, 2), StoredSpeed(n),
                                  {StoredValue(1, n), StoredValue(2, n), StoredValue(3, n)}));
  }
  for (int n = 1; n <= 2; ++n) {
    cpt += Metres(1'500'000 - 20 * n + 4, 3) + Right(StoredSpeed(n + kLag), 6) +
           StoredField(StoredValue(1, n)) + StoredField(StoredValue(2, n + 3)) +
           StoredField(StoredValue(3, n + 1)) + "\r\n";
  }
  TakenUp taken(JoinedLines(lines));
  settings.DepthFormat = 1;
  taken.disk.Put(kCpt, cpt);
  taken.TakeUp();
  EXPECT_EQ(taken.File(kCpt), cpt);
  EXPECT_EQ(taken.boxes.texts, Texts{});
}

TEST(TakeUp, OnceMoreFindsNothingToMend) {
  TakenUp taken;
  taken.disk.Remove(kCpt);
  taken.TakeUp();
  taken.boxes.texts.clear();
  const auto before = taken.disk.OperationCount();
  TakeUpSounding();
  EXPECT_EQ(taken.disk.OperationCount(), before);
  EXPECT_EQ(taken.boxes.texts, Texts{});
}

TEST(TakeUp, IsFollowedByRowsThatGoOnWithTheAlignment) {
  for (const int stands : {0, 5, kAligned}) {
    TakenUp taken;
    taken.disk.Put(kCpt, Head(true) + CptRows(stands));
    taken.TakeUp();
    for (int i = 0; i < 6; ++i) TakenUp::Row();
    EXPECT_EQ(taken.File(kCpt), Head(true) + CptRows(kAligned + 6));
    EXPECT_EQ(taken.File(kTemporary), JoinedLines(StoredLines(kRows + 6)));
  }
}

TEST(TakeUp, OfFewerRowsThanTheDelayLeavesTheHeadAlone) {
  for (const int rows : {0, 1, kLag}) {
    TakenUp taken(JoinedLines(StoredLines(rows)));
    taken.disk.Put(kCpt, Head(true));
    taken.TakeUp();
    EXPECT_EQ(taken.File(kCpt), Head(true));
    EXPECT_EQ(taken.boxes.texts, Texts{});
    EXPECT_EQ(sounding.RowCount, rows);
  }
}

// The recovery copy.

TEST(TakeUp, KeepsADamagedRecoveryCopyBesideAndWritesItsSoundPartWhole) {
  const std::string sound = JoinedLines(StoredLines(kRows));
  for (const std::string& damage : {std::string("\"  0.26   2.1"), std::string(100, '\0'),
                                    std::string("\"  0.26   2.13    x\"\r\n")}) {
    TakenUp taken(sound + damage);
    taken.TakeUp();
    EXPECT_EQ(taken.File(kTemporary), sound);
    EXPECT_EQ(taken.File("/data/TemporaryData (2).txt"), sound + damage);
    TakenUp::Row();
    EXPECT_EQ(taken.File(kTemporary), JoinedLines(StoredLines(kRows + 1)));
  }
}

TEST(TakeUp, GivesAWholeLastLineItsEndAndKeepsNothingBeside) {
  const std::string sound = JoinedLines(StoredLines(kRows));
  TakenUp taken(WithoutLast(sound, 2));
  taken.TakeUp();
  EXPECT_EQ(taken.File(kTemporary), sound);
  EXPECT_FALSE(taken.Has("/data/TemporaryData (2).txt"));
  EXPECT_EQ(taken.File(kCpt), WholeCpt());
}

TEST(TakeUp, KeepsTheCptFileOfBeforeWhenTheRecoveryCopyHasLostARow) {
  TextLines lines = StoredLines(kRows);
  lines[17 + 4] = "\"torn\"";
  TakenUp taken(JoinedLines(lines));
  taken.TakeUp();
  EXPECT_EQ(taken.File("/data/s (2).cpt"), WholeCpt()) << "measured rows are not lost";
  EXPECT_EQ(sounding.RowCount, kRows - 1);
  EXPECT_TRUE(taken.WasTold("ROWS CHANGED:"));
}

TEST(TakeUp, KeepsGapRowsInTheRecoveryCopyAndOutOfTheCptFile) {
  TextLines lines = StoredLines(kRows);
  lines.insert(lines.begin() + 17 + 6, "DRILLOUT*****" + std::string(60, '*'));
  TakenUp taken(JoinedLines(lines));
  taken.TakeUp();
  EXPECT_EQ(taken.File(kTemporary), JoinedLines(lines));
  EXPECT_EQ(taken.File(kCpt), WholeCpt());
  EXPECT_EQ(taken.boxes.texts, Texts{});
}

TEST(TakeUp, RefusesARecoveryCopyThatIsNoneAnyMore) {
  for (const char* content : {"DONE\r\n", "", "/data/s.cpt\r\n"}) {
    TakenUp taken;
    taken.ReadBack();
    taken.disk.Put(kTemporary, content);
    EXPECT_THROW(TakeUpSounding(), RuntimeFault);
    EXPECT_EQ(taken.File(kCpt), WholeCpt());
  }
}

TEST(TakeUp, TakesBaselinesThatTheRecoveryCopyLostFromTheHead) {
  TextLines lines = StoredLines(kRows);
  lines[16] = StoredColumns({"0.25310", "x", "0.50070"});
  TakenUp taken(JoinedLines(lines));
  channels.Baselines(2) = 0;
  taken.TakeUp();
  EXPECT_FLOAT_EQ(channels.Baselines(2), 0.2988F);
  EXPECT_FLOAT_EQ(sounding.Rows(0, 2), 0.2988F);
  EXPECT_FLOAT_EQ(channels.Baselines(3), 0.5007F);
}

TEST(TakeUp, WaitsForADiskThatTakesTheRecoveryCopy) {
  TakenUp taken(JoinedLines(StoredLines(kRows)) + "\"torn");
  int refusals = 3;
  taken.disk.before = [&](std::string_view work, const std::string& path) {
    if (work == "write" && path.find("TemporaryData") != path.npos && --refusals > 0) {
      throw RuntimeFault("No space left on device");
    }
  };
  taken.TakeUp();
  EXPECT_EQ(taken.File(kTemporary), JoinedLines(StoredLines(kRows)));
  EXPECT_EQ(std::count_if(taken.boxes.texts.begin(), taken.boxes.texts.end(),
                          [](const std::string& text) {
                            return text.find("THE TEMPORARY DATA CANNOT BE WRITTEN.") == 0;
                          }),
            2);
  EXPECT_FALSE(taken.Has("/data/TemporaryData (3).txt")) << "kept beside once";
}

TEST(TakeUp, CanBeGivenUpWhereTheRecoveryCopyCannotBeWritten) {
  const std::string damaged = JoinedLines(StoredLines(kRows)) + "\"torn";
  TakenUp taken(damaged);
  taken.disk.SetRoom(0);
  taken.boxes.Answer("THE TEMPORARY DATA CANNOT BE WRITTEN.", BoxAnswer::Cancel);
  EXPECT_THROW(taken.TakeUp(), ProgramEnd);
  ForgetEnd();
  EXPECT_EQ(taken.File(kTemporary), damaged) << "it can be resumed as before";
  EXPECT_EQ(taken.File(kCpt), WholeCpt());
}

// A folder that refuses.

const std::string kRefused = "THE SOUNDING FILE CANNOT BE WRITTEN.";

TEST(TakeUp, MovesToAnotherFolderWhereTheOldOneRefuses) {
  for (const char* chosen : {"/stick/moved.cpt", "/stick/moved"}) {
    TakenUp taken(JoinedLines(StoredLines(kRows)));
    taken.disk.MakeFolder("/stick");
    taken.disk.Put("/stick/moved.dis", "");
    taken.ReadBack();
    taken.disk.Remove(kCpt);
    taken.disk.before = [](std::string_view work, const std::string& path) {
      if (work == "create" && path.starts_with(kCpt)) throw RuntimeFault("Permission denied");
    };
    taken.ChooseFile({"", chosen});
    TakeUpSounding();
    EXPECT_EQ(taken.dialogs, 2) << "a cancelled dialog tries the old place again";
    EXPECT_EQ(taken.File("/stick/moved.cpt"), WholeCpt());
    EXPECT_FALSE(taken.Has(kCpt));
    TextLines lines = StoredLines(kRows);
    lines[0] = "/stick/moved.cpt";
    EXPECT_EQ(taken.File(kTemporary), JoinedLines(lines)) << "the next resume finds it";
    EXPECT_EQ(session.SoundingFiles[1], "/stick/moved.cpt");
    EXPECT_EQ(session.SoundingFiles[4], "/stick/moved.tim");
    EXPECT_EQ(session.HasDissipationFile, kTrue);
    TakenUp::Row();
    EXPECT_EQ(taken.File("/stick/moved.cpt"), Head(true) + CptRows(kAligned + 1));
    lines.push_back(StoredRowNumber(kRows + 1));
    EXPECT_EQ(taken.File(kTemporary), JoinedLines(lines));
  }
}

/// Rows 4 to the last are missing, and the disk refuses everything that is not the recovery copy.
struct Refusing : TakenUp {
  explicit Refusing(const std::string& cpt) {
    disk.Put(kCpt, cpt);
    disk.before = [this](std::string_view work, const std::string& path) {
      const bool writes = work == "create" || work == "append" || work == "rename";
      if (refuses && writes && path.starts_with("/data/s")) {
        throw RuntimeFault("No space left on device");
      }
    };
    boxes.Answer(kRefused, BoxAnswer::No);
    TakeUp();
  }
  bool refuses = true;
};

TEST(TakeUp, WithoutAnotherFolderHoldsTheRowsUntilTheDiskTakesThem) {
  for (const std::string& before : {Head(true) + CptRows(3), Head(true) + CptRows(3) + "  0.0",
                                    Head(true) + CptRows(3) + CptRow(4).substr(0, 30)}) {
    Refusing taken(before);
    EXPECT_EQ(taken.File(kCpt), before);
    TakenUp::Row();
    EXPECT_GT(sounding.RowsHeldBack, 0);
    EXPECT_EQ(taken.File(kTemporary), JoinedLines(StoredLines(kRows + 1)));
    taken.refuses = false;
    if (before.ends_with("  0.0")) {
      continue;  // what stands there is no beginning of the row: see below
    }
    TakenUp::Row();
    EXPECT_EQ(sounding.RowsHeldBack, 0);
    EXPECT_EQ(taken.File(kCpt), Head(true) + CptRows(kAligned + 2));
  }
}

TEST(TakeUp, WithoutAnotherFolderAppendsNothingToAFileThatIsNotSound) {
  const std::string changed = Head(true) + CptRow(2) + CptRows(kAligned) + CptRows(kAligned);
  for (const std::string& before : {changed, std::string("measured before\r\n")}) {
    Refusing taken(before);
    taken.refuses = false;
    for (int i = 0; i < 5; ++i) TakenUp::Row();
    EXPECT_EQ(taken.File(kCpt), before);
    EXPECT_EQ(taken.File(kTemporary), JoinedLines(StoredLines(kRows + 5)));
    EXPECT_FALSE(CloseSounding()) << "and it is not told as done";
    EXPECT_NE(taken.File(kTemporary).substr(0, 4), "DONE");
  }
}

TEST(TakeUp, WithoutAnotherFolderAMissingFileIsMadeWholeLater) {
  Refusing taken("");
  taken.disk.Remove(kCpt);
  taken.TakeUp();
  EXPECT_FALSE(taken.Has(kCpt));
  taken.refuses = false;
  TakenUp::Row();
  EXPECT_EQ(taken.File(kCpt), Head(true) + CptRows(kAligned + 1));
}

TEST(TakeUp, OnADiskThatRefusesAnyOperationOnceMendsAllTheSame) {
  int operation = 1;
  for (bool refused = true; refused; ++operation) {
    SCOPED_TRACE(operation);
    ASSERT_LT(operation, 60);
    refused = false;
    TakenUp taken(JoinedLines(StoredLines(kRows)) + "\"torn");
    const std::string flush = DepthAndSpeed(true, 200, "2.10") + "\r\n";
    taken.disk.Put(kCpt, WholeCpt() + flush);
    settings.LumenProbePresent = 1;
    taken.ReadBack();
    taken.ChooseFile({""});
    taken.disk.before = [&, left = operation](std::string_view work, const std::string&) mutable {
      if (work == "close" || --left != 0) return;
      refused = true;
      throw RuntimeFault("Input/output error");
    };
    TakeUpSounding();
    taken.disk.before = nullptr;
    EXPECT_EQ(taken.File(kTemporary), JoinedLines(StoredLines(kRows)));
    EXPECT_EQ(taken.File(kCpt), WholeCpt());
    EXPECT_EQ(taken.File("/data/TemporaryData (2).txt"),
              JoinedLines(StoredLines(kRows)) + "\"torn");
    EXPECT_EQ(taken.File("/data/s (2).cpt"), WholeCpt() + flush);
  }
  EXPECT_GT(operation, 15);
}

// Columns, forms, tip and sign.

TEST(TakeUp, TheColumnsSayWhatIsRecordedAndTheGraphsWhatIsDrawn) {
  TakenUp taken;
  Console::AddChannel(6);
  Console::AddChannel(20);
  channels.RecordMode(6) = 2;
  display.GraphChannel = {0, 1, 20, 6, 0};
  TextLines lines = StoredLines(kRows);
  lines[14] = "3,23,2";
  taken.disk.Put(kTemporary, JoinedLines(lines));
  taken.TakeUp();
  for (const int channel : {1, 2, 3}) EXPECT_EQ(channels.RecordMode(channel), 1);
  EXPECT_EQ(channels.RecordMode(6), 0) << "no column: it would shift those behind it";
  EXPECT_EQ(channels.RecordMode(20), 1) << "not a column at any time";
  EXPECT_EQ(display.GraphChannel, (std::array<std::int16_t, 5>{0, 1, 3, 2, 0}))
      << "23 is not there; no gap stays";
  EXPECT_EQ(display.GraphCount, 3);
}

TEST(TakeUp, TheDelayIsFormedFromTheRecordedColumnsAlone) {
  TakenUp taken;
  Console::AddChannel(6);
  channels.ChannelDelayRows(6) = 40;
  taken.TakeUp();
  EXPECT_EQ(cone.DelayRows, kLag);
}

TEST(TakeUp, AChannelThatIsMissingNowKeepsItsColumnAndItsDelay) {
  struct Case {
    int channel;
    int delay;
  };
  for (const Case& row : {Case{2, kLag}, Case{3, 1}}) {
    for (const int stands : {kAligned, kAligned - 1, 5}) {
      SCOPED_TRACE(row.channel * 100 + stands);
      TakenUp taken;
      taken.disk.Put(kCpt, Head(true) + CptRows(stands));
      taken.ReadBack();
      channels.ChannelPresent(row.channel) = 0;
      channels.ChannelDelayRows(row.channel) = 0;  // its record was not read
      TakeUpSounding();
      ASSERT_FALSE(taken.boxes.texts.empty());
      EXPECT_EQ(taken.boxes.texts[0],
                "RECORDED CHANNELS ARE MISSING NOW.  THEIR COLUMNS STAY IN THE FILE, AND NEW ROWS "
                "HOLD -32768 THERE: " +
                    std::to_string(row.channel) + " (Channel " + std::to_string(row.channel) + ")");
      EXPECT_EQ(taken.File(kCpt), WholeCpt());
      EXPECT_EQ(channels.ChannelDelayRows(row.channel), row.delay);
      EXPECT_EQ(cone.DelayRows, kLag);
      for (int i = 0; i < 6; ++i) TakenUp::Row();
      std::string expected = WholeCpt();
      for (int n = kAligned + 1; n <= kAligned + 6; ++n) {
        std::string line = CptRow(n);
        const auto at = 13 + 20 * static_cast<std::size_t>(row.channel - 1);
        if (n + row.delay > kRows) line.replace(at, 20, StoredField("-32768"));
        expected += line;
      }
      EXPECT_EQ(taken.File(kCpt), expected);
      const std::string temporary = taken.File(kTemporary);
      EXPECT_NE(temporary.find(StoredField("-32768"), temporary.size() - 80), std::string::npos);
    }
  }
}

TEST(TakeUp, AMissingChannelKeepsItsColumnInTheEndTooAndInANewHead) {
  TakenUp taken;
  taken.disk.Remove(kCpt);
  taken.ReadBack();
  channels.ChannelPresent(3) = 0;
  TakeUpSounding();
  const std::string head = taken.File(kCpt).substr(0, Head(true).size());
  EXPECT_NE(head.find(Column({"1", "2", "3"})), std::string::npos);
  EXPECT_NE(head.find(Column({"0.25310", "0.29880", "0.50070"})), std::string::npos);
  sounding.CloseWithFinalBaseline = kTrue;
  sounding.Readings(3) = 7;
  EXPECT_TRUE(CloseSounding());
  const std::string cpt = taken.File(kCpt);
  const std::string last = cpt.substr(cpt.rfind('\n', cpt.size() - 2) + 1);
  EXPECT_EQ(last.size(), 13 + 3 * 20 + 2U);
  EXPECT_EQ(last.substr(13 + 40, 20), StoredField("-32768"));
}

TEST(TakeUp, ASecondTimeFindsTheEmptyColumnAgain) {
  TakenUp taken;
  taken.ReadBack();
  channels.ChannelPresent(2) = 0;
  TakeUpSounding();
  for (int i = 0; i < 6; ++i) TakenUp::Row();
  const std::string cpt = taken.File(kCpt);
  taken.TakeUp();
  channels.ChannelPresent(2) = 0;
  EXPECT_EQ(taken.File(kCpt), cpt);
  EXPECT_FALSE(taken.WasTold("MENDED"));
}

TEST(TakeUp, GoesOnInTheFormOfTheFile) {
  for (const bool new_form : {true, false}) {
    TakenUp taken;
    settings.DepthSignificantDigits = new_form ? 2 : 3;
    taken.disk.Put(kCpt, WholeCpt(new_form));
    taken.TakeUp();
    EXPECT_EQ(taken.boxes.texts,
              Texts{"THE SOUNDING FILE HAS ROWS OF THE " + std::string(new_form ? "NEW" : "OLD") +
                    " FORM, THE SETTINGS ASK FOR THE " + (new_form ? "OLD" : "NEW") +
                    " ONE.  THE FILE KEEPS ITS FORM."});
    TakenUp::Row();
    EXPECT_EQ(taken.File(kCpt), Head(new_form) + CptRows(kAligned + 1, new_form));
  }
}

TEST(TakeUp, TellsATipThatIsNotThatOfTheSettings) {
  for (const bool ball : {true, false}) {
    TakenUp taken;
    std::string cpt = WholeCpt();
    if (!ball) cpt.replace(cpt.find(StoredField("C1")), 20, StoredField("C1 BALL D mm  60"));
    settings.TipConfiguration = ball ? 1 : 0;
    settings.TipDiameter = ball ? 60 : 0;
    taken.disk.Put(kCpt, cpt);
    taken.TakeUp();
    EXPECT_EQ(taken.boxes.texts,
              Texts{ball ? "THE SOUNDING WAS BEGUN WITH THE TIP \"C1\", THE SETTINGS SAY \"C1 BALL "
                           "D mm  60\"."
                         : "THE SOUNDING WAS BEGUN WITH THE TIP \"C1 BALL D mm  60\", THE SETTINGS "
                           "SAY \"C1\"."});
    EXPECT_EQ(taken.File(kCpt), cpt);
  }
}

TEST(TakeUp, TheSameTipIsNotTold) {
  TakenUp taken;
  std::string cpt = WholeCpt();
  cpt.replace(cpt.find(StoredField("C1")), 20, StoredField("C1 BALL D mm  60"));
  settings.TipConfiguration = 1;
  settings.TipDiameter = 60;
  taken.disk.Put(kCpt, cpt);
  taken.TakeUp();
  EXPECT_EQ(taken.boxes.texts, Texts{});
}

TEST(TakeUp, GoesOnWithTheSignOfTheFileAndTheSettingsKeepTheirOwn) {
  for (const int sign : {1, -1}) {
    TakenUp taken;
    const std::string cpt = Head(true) + CptRows(kAligned, true, sign);
    settings.DepthFormat = sign == 1 ? 1 : 0;
    taken.disk.Put(kCpt, cpt);
    taken.ReadBack();
    session.ResumeDepthStatus = 1;
    TakeUpSounding();
    EXPECT_EQ(settings.DepthFormat, sign == 1 ? 0 : 1);
    EXPECT_EQ(sounding.CurrentDepth, 0.0F) << "at the surface, which is the start depth here";
    EXPECT_EQ(taken.boxes.texts.size(), 1U);
    EXPECT_TRUE(taken.WasTold(sign == 1 ? "BEGUN IN DEPTHS" : "BEGUN IN ELEVATIONS"));
    TakenUp::Row();
    EXPECT_EQ(taken.File(kCpt), Head(true) + CptRows(kAligned + 1, true, sign));
    ASSERT_EQ(replaced_settings.List.size(), 1U);
    EXPECT_EQ(replaced_settings.List[0].in_file,
              SettingValue(static_cast<std::int16_t>(sign == 1 ? 1 : 0)));
  }
}

// The time marks.

TEST(TakeUp, GoesOnWithTheTimeMarksAndCutsATornOne) {
  const std::string head =
      "Lumen Probe Time File.  Each line a represents a 5mm depth increment.\r\n 34200.5 \r\n";
  const std::string mark = "000.250 34262.75\r\n";
  struct Case {
    const char* what;
    std::string before;
    std::string after;
  };
  for (const Case& row :
       {Case{"whole", head + mark, head + mark}, Case{"torn", head + mark + "000.25", head + mark},
        Case{"head alone", head, head}}) {
    TakenUp taken;
    settings.LumenProbePresent = 1;
    taken.disk.Put(kTim, row.before);
    taken.TakeUp();
    EXPECT_EQ(taken.File(kTim), row.after) << row.what;
    EXPECT_TRUE(AppendOrHold(kTimFile, mark));
    EXPECT_EQ(taken.File(kTim), row.after + mark) << row.what;
    EXPECT_EQ(taken.boxes.texts, Texts{});
  }
}

TEST(TakeUp, MakesAMissingTimeFileWhereTheProbeMarks) {
  for (const int probe : {0, 1, 2, 3}) {
    TakenUp taken;
    settings.LumenProbePresent = static_cast<std::int16_t>(probe);
    taken.TakeUp();
    EXPECT_EQ(taken.Has(kTim), probe == 1 || probe == 2) << probe;
    if (!taken.Has(kTim)) continue;
    EXPECT_EQ(taken.File(kTim).find("Lumen Probe Time File."), 0U);
  }
}

TEST(TakeUp, ATimeFileThatRefusesIsToldAndHoldsNothingUp) {
  TakenUp taken;
  settings.LumenProbePresent = 1;
  taken.disk.before = [](std::string_view work, const std::string& path) {
    if (work == "create" && path.starts_with(kTim)) throw RuntimeFault("Permission denied");
  };
  taken.TakeUp();
  EXPECT_EQ(taken.boxes.texts,
            Texts{"THE FILE OF THE TIME MARKS CANNOT BE TAKEN UP AGAIN: /data/s.tim"});
}

}  // namespace
}  // namespace penlog
