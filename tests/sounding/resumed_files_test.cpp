// The files of a suspended sounding are made whole before the first new row.
#include <gtest/gtest.h>

#include <utility>

#include "platform/files.h"
#include "platform/runtime_fault.h"
#include "sounding/held_rows.h"
#include "sounding/resumed_world.h"
#include "sounding/sounding_end.h"

namespace penlog {
namespace {

/// What the disk does from now on but for bringing to its medium what stands there already.
void NoteChanges(TakenUp& taken, Texts& changes) {
  taken.disk.before = [&changes](std::string_view work, const std::string& path) {
    if (work == "append" || work == "sync" || work == "close" || work == "sync folder") return;
    changes.push_back(std::string(work) + " " + path);
  };
}

// The `.cpt` file.

/// The works on the disk that change what stands there.
struct Changes {
  explicit Changes(MemoryDisk& disk) {
    disk.before = [this](std::string_view work, const std::string& path) {
      const bool settles = work == "append" || work == "sync" || work == "sync folder";
      if (!settles && work != "close") list.push_back(std::string(work) + " " + path);
      if (settles) settled += std::string(work) + " " + path + ";";
    };
  }
  Texts list;
  std::string settled;
};

TEST(TakeUp, LeavesSoundFilesAloneAndSeesThemOnTheMedium) {
  TakenUp taken;
  taken.ReadBack();
  const Changes changes(taken.disk);
  TakeUpSounding();
  taken.disk.before = nullptr;
  EXPECT_EQ(changes.list, Texts{});
  for (const char* path : {kTemporary, kCpt}) {
    EXPECT_NE(changes.settled.find(std::string("sync ") + path), std::string::npos)
        << "a process that died may have written it and not lived to sync it";
  }
  EXPECT_EQ(taken.boxes.texts, Texts{});
  EXPECT_EQ(taken.File(kCpt), WholeCpt());
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
       mended + "  ROWS ADDED: 1.  ROWS CHANGED: 7.", true},
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
        Case{"another cone's",
             Head(true, {"1", "2", "3"}, "DSE9999", "2026-06-14 08:00:00") + rows},
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

TEST(TakeUp, ANewHeadHasTheBaselinesOfTheSoundingAndNotThoseOfTheCone) {
  TakenUp taken;
  taken.disk.Remove(kCpt);
  taken.ReadBack();
  channels.Baselines(3) = 0.1F;  // a channel that keeps no zero has its record's
  TakeUpSounding();
  EXPECT_EQ(taken.File(kCpt), WholeCpt());
}

TEST(TakeUp, WritesAMissingCptFileAnew) {
  for (const bool new_form : {true, false}) {
    TakenUp taken;
    settings.DepthSignificantDigits = new_form ? 3 : 2;
    taken.disk.Remove(kCpt);
    taken.TakeUp();
    EXPECT_EQ(taken.File(kCpt), WholeCpt(new_form));
    EXPECT_EQ(taken.boxes.texts.size(), 2U) << "asked first";
    EXPECT_TRUE(taken.WasTold("THE SOUNDING FILE /data/s.cpt IS MISSING."));
    EXPECT_TRUE(
        taken.WasTold("THE SOUNDING FILE WAS MENDED FROM THE TEMPORARY DATA.  ITS HEAD WAS "
                      "WRITTEN ANEW.  ROWS ADDED: 9."));
    EXPECT_FALSE(taken.Has("/data/s (2).cpt"));
  }
}

TEST(TakeUp, AsksForAMissingCptFileWhoseRowsStandThereAlone) {
  for (const bool loses : {true, false}) {
    TextLines lines = StoredLines(0);
    for (int i = 0; loses && i < kRows; ++i) lines.emplace_back("\"damaged\"");
    TakenUp taken(JoinedLines(lines));
    taken.disk.Remove(kCpt);
    taken.ReadBack();
    taken.boxes.Answer("THE SOUNDING FILE /data/s.cpt IS MISSING.", BoxAnswer::No);
    taken.boxes.Delay(100 * kMillisecond);
    if (loses) PostCall(Now() + kSecond, &taken, [&] { taken.disk.Put(kCpt, WholeCpt()); });
    TakeUpSounding();
    EXPECT_EQ(taken.WasTold("IF IT STANDS ON A MEDIUM THAT IS NOT PLUGGED IN, PLUG IT IN"), loses);
    EXPECT_EQ(sounding.RowCount > 0, loses) << "what its file holds is taken";
    EXPECT_TRUE(taken.File(kCpt).starts_with(loses ? Head(true) + CptRows(3) : Head(true)));
    EXPECT_FALSE(taken.Has("/data/s (2).cpt"));
  }
}

TEST(TakeUp, TakesTheCptFileThatIsPluggedInWhileItAsksWhetherToWriteItAnew) {
  TakenUp taken;
  taken.disk.Remove(kCpt);
  taken.ReadBack();
  const std::string before = Head(true) + CptRow(2) + CptRows(kAligned);
  taken.boxes.Delay(100 * kMillisecond);
  PostCall(Now() + 50 * kMillisecond, &taken, [&] { taken.disk.Put(kCpt, before); });
  TakeUpSounding();
  EXPECT_EQ(taken.File(kCpt), WholeCpt());
  ASSERT_TRUE(taken.Has("/data/s (2).cpt")) << "seen, and kept";
  EXPECT_EQ(taken.File("/data/s (2).cpt"), before);
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
  EXPECT_TRUE(taken.WasTold("IT COULD NOT BE READ: /data/s.cpt: Input/output error."));
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
    lines.push_back(StoredRowLine(MetresOf(-1'500'000 + 20 * n, 2), StoredSpeed(n),
                                  {StoredValue(1, n), StoredValue(2, n), StoredValue(3, n)}));
  }
  for (int n = 1; n <= 2; ++n) {
    cpt += MetresOf(1'500'000 - 20 * n + 4, 3) + Aligned(StoredSpeed(n + kLag), 6) +
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
  TakenUp taken(JoinedLines(StoredLines(kRows)) + "\"torn");
  taken.disk.Remove(kCpt);
  taken.TakeUp();
  taken.boxes.texts.clear();
  Texts changes;
  NoteChanges(taken, changes);
  TakeUpSounding();
  EXPECT_EQ(changes, Texts{});
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

TEST(TakeUp, KeepsGapRowsInTheRecoveryCopyAndOutOfTheCptFile) {
  TextLines lines = StoredLines(kRows);
  lines.insert(lines.begin() + 17 + 6, "DRILLOUT*****" + std::string(60, '*'));
  TakenUp taken(JoinedLines(lines));
  taken.TakeUp();
  EXPECT_EQ(taken.File(kTemporary), JoinedLines(lines));
  EXPECT_EQ(taken.File(kCpt), WholeCpt());
  EXPECT_EQ(taken.boxes.texts, Texts{});
}

TEST(TakeUp, RefusesARecoveryCopyThatIsNotTheOneThatWasReadAndWritesNothing) {
  TextLines another = StoredLines(kRows);
  another[0] = "/data/other.cpt";
  another[8] = "2026-06-16 10:00:00";
  TextLines changed = StoredLines(kRows);
  changed.back().replace(changed.back().find("1.00012"), 7, "1.00013");
  for (const std::string& content :
       {std::string("DONE\r\n"), std::string(), std::string("/data/s.cpt\r\n"),
        JoinedLines(another), JoinedLines(changed), JoinedLines(StoredLines(kRows - 1)),
        JoinedLines(StoredLines(kRows + 1)), JoinedLines(StoredLines(kRows)) + "\"torn"}) {
    SCOPED_TRACE(content);
    TakenUp taken;
    taken.ReadBack();
    taken.disk.Put(kTemporary, content);
    taken.disk.Put(kCpt, Head(true));
    const auto files = taken.disk.Files();
    try {
      TakeUpSounding();
      ADD_FAILURE() << "taken up";
    } catch (const RuntimeFault& fault) {
      EXPECT_EQ(std::string(fault.what()), "TemporaryData.txt HAS CHANGED SINCE IT WAS READ.");
    }
    EXPECT_EQ(taken.disk.Files(), files);
    EXPECT_FALSE(IsBegun(kTemporaryFile));
  }
}

TEST(TakeUp, OfACopyThatWasPutThereIsOpenOnceItIsReadAgain) {
  TakenUp taken;
  taken.ReadBack();
  taken.disk.Put(kTemporary, JoinedLines(StoredLines(kRows + 1)));
  EXPECT_THROW(TakeUpSounding(), RuntimeFault);
  taken.TakeUp();
  EXPECT_EQ(taken.File(kCpt), Head(true) + CptRows(kAligned + 1));
}

TEST(TakeUp, WaitsForADiskThatTakesTheRecoveryCopy) {
  TakenUp taken(JoinedLines(StoredLines(kRows)) + "\"torn");
  int refusals = 3;
  taken.disk.before = [&](std::string_view work, const std::string& path) {
    if (work == "write" && path == "/data/TemporaryData.txt.new" && --refusals > 0) {
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
    TakenUp::Row();
    EXPECT_EQ(sounding.RowsHeldBack, 0);
    EXPECT_EQ(taken.File(kCpt), Head(true) + CptRows(kAligned + 2));
  }
}

TEST(TakeUp, WithoutAnotherFolderAppendsNothingToAFileThatIsNotSound) {
  const std::string changed = Head(true) + CptRow(2) + CptRows(kAligned) + CptRows(kAligned);
  const std::string torn = Head(true) + CptRows(3) + "  0.2";
  for (const std::string& before : {changed, torn, std::string("measured before\r\n")}) {
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

TEST(TakeUp, KeepsTheFileOfBeforeOnceHoweverOftenItTries) {
  TakenUp taken;
  const std::string before = Head(true) + CptRow(2) + CptRows(kAligned);
  taken.disk.Put(kCpt, before);
  taken.disk.before = [refusals = 3](std::string_view work, const std::string& path) mutable {
    if (work != "rename" || !path.starts_with("/data/s.cpt") || refusals-- <= 0) return;
    throw RuntimeFault("Input/output error");
  };
  taken.ReadBack();
  taken.ChooseFile({""});
  TakeUpSounding();
  EXPECT_EQ(taken.dialogs, 3);
  EXPECT_EQ(taken.File(kCpt), WholeCpt());
  EXPECT_EQ(taken.File("/data/s (2).cpt"), before);
  EXPECT_FALSE(taken.Has("/data/s (3).cpt"));
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

}  // namespace
}  // namespace penlog
