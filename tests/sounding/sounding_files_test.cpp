#include "sounding/sounding_files.h"

#include <algorithm>

#include "platform/files.h"
#include "sounding/console.h"
#include "sounding/held_rows.h"
#include "sounding/row_text.h"

namespace penlog {
namespace {

constexpr const char* kTemporary = "/data/TemporaryData.txt";
constexpr const char* kCpt = "/data/s.cpt";

struct Files : Console {
  Files() { CreateSoundingFiles(); }

  /// As a pass does: one row of readings 1, 2, 3 plus the row's number.
  static void Row() {
    ++sounding.RowCount;
    sounding.CurrentDepth += 0.02f;
    for (const int channel : {1, 2, 3}) {
      sounding.Readings(channel) = static_cast<float>(channel * 100 + sounding.RowCount);
    }
    RecordRow();
  }
  static void Rows(int count) {
    for (int i = 0; i < count; ++i) Row();
  }
  static std::string ExpectedCpt(int first, int last) {
    std::string text = CptHeader();
    for (int row = first; row <= last; ++row) text += AlignedRow(row);
    return text;
  }
  static std::string ExpectedTemporary(int last) {
    std::string text = TemporaryHeader(kCpt);
    for (int row = 1; row <= last; ++row) text += TemporaryRow(row);
    return text;
  }
};

TEST(RecordRow, CopiesReadingsOfPresentChannelsAndDepthIntoTheRow) {
  Files files;
  sounding.Readings(7) = 5.0f;  // absent
  Files::Row();
  EXPECT_EQ(sounding.Rows(1, 1), 101.0f);
  EXPECT_EQ(sounding.Rows(1, 3), 301.0f);
  EXPECT_EQ(sounding.Rows(1, 7), 0.0f);
  EXPECT_EQ(sounding.Rows(1, 0), 0.02f);
}

TEST(RecordRow, WritesEachRowAtOnceWithoutDelay) {
  Files files;
  Files::Rows(3);
  EXPECT_EQ(ReadFile(kCpt), Files::ExpectedCpt(1, 3));
  EXPECT_EQ(ReadFile(kTemporary), Files::ExpectedTemporary(3));
}

TEST(RecordRow, HoldsAlignedRowsBackByTheLargestDelay) {
  Files files;
  channels.ChannelDelayRows(2) = 2;
  cone.DelayRows = 2;
  Files::Rows(2);
  EXPECT_EQ(ReadFile(kCpt), CptHeader());
  Files::Row();
  EXPECT_EQ(ReadFile(kCpt), CptHeader() + AlignedRow(3));
  EXPECT_EQ(ReadFile(kTemporary), Files::ExpectedTemporary(3));
}

TEST(RecordRow, AnElevationIsNegatedInTheCptFileAndPositiveInTheTemporaryFile) {
  Files files;
  settings.DepthFormat = 1;
  Files::Row();
  EXPECT_EQ(ReadFile(kCpt).substr(CptHeader().size(), 7), " -0.020");
  EXPECT_EQ(ReadFile(kTemporary).substr(TemporaryHeader(kCpt).size(), 7), "\"  0.02");
}

TEST(RecordRow, IsOneWriteAndOneSyncToEachFile) {
  Files files;
  const auto before = files.disk.OperationCount();
  Files::Row();
  // Open, write, sync and close of two files.
  EXPECT_EQ(files.disk.OperationCount() - before, 8);
}

TEST(RecordRow, KeepsQtOfTheRow) {
  Files files;
  channels.ChannelGain(1) = 2.0f;
  channels.ChannelGain(3) = 10.0f;
  channels.Baselines(1) = 1.0f;
  channels.Baselines(3) = 201.0f;
  Files::Row();
  // (301 - 201) x 0.2 x 10 + (101 - 1) x 2
  EXPECT_FLOAT_EQ(sounding.RowQt(1), 400.0f);
}

TEST(RecordRow, QtTakesTheBallFactorWhereThereIsATip) {
  for (const bool with_tip : {true, false}) {
    Files files;
    settings.TipConfiguration = 1;
    channels.ChannelArea(1) = 1000;
    settings.BallTipArea = 4000;
    channels.ChannelPresent(1) = with_tip ? -1 : 0;
    channels.ChannelPresent(3) = 0;
    sounding.Rows(1, 1) = 100.0f;
    Files::Row();
    const float tip = sounding.Rows(1, 1);
    EXPECT_FLOAT_EQ(sounding.RowQt(1), with_tip ? tip / 4 : tip);
  }
}

TEST(RecordRow, KeepsThePresentChannelsThatAreNotRecordedToo) {
  Files files;
  channels.RecordMode(3) = 0;
  Files::Row();
  EXPECT_EQ(sounding.Rows(1, 3), sounding.Readings(3));
  EXPECT_NE(sounding.Rows(1, 3), 0.0f);
}

TEST(FullDisk, KeepsTheRowsInOrderAndWritesEachOnce) {
  Files files;
  Files::Rows(2);
  files.disk.SetRoom(0);
  Files::Rows(3);
  EXPECT_EQ(sounding.RowsHeldBack, 3);
  EXPECT_EQ(OpenBoxes().size(), 2u) << "one for each file, and no more with each row";
  EXPECT_EQ(ReadFile(kCpt), Files::ExpectedCpt(1, 2));
  files.disk.SetRoom(-1);
  Files::Row();
  EXPECT_EQ(sounding.RowsHeldBack, 0);
  EXPECT_EQ(ReadFile(kCpt), Files::ExpectedCpt(1, 6));
  EXPECT_EQ(ReadFile(kTemporary), Files::ExpectedTemporary(6));
}

TEST(FullDisk, RowsGoOutWithoutANewOneWhenThereIsRoomAgain) {
  Files files;
  files.disk.SetRoom(0);
  Files::Rows(2);
  files.disk.SetRoom(-1);
  sounding.SecondsCounter = 5;
  RetryHeld();
  EXPECT_EQ(sounding.RowsHeldBack, 0);
  EXPECT_EQ(ReadFile(kCpt), Files::ExpectedCpt(1, 2));
}

TEST(FullDisk, IsTriedOnceASecondBetweenRows) {
  Files files;
  files.disk.SetRoom(0);
  Files::Row();
  sounding.SecondsCounter = 5;
  RetryHeld();
  const auto after_first = files.disk.OperationCount();
  RetryHeld();
  EXPECT_EQ(files.disk.OperationCount(), after_first);
  sounding.SecondsCounter = 6;
  RetryHeld();
  EXPECT_GT(files.disk.OperationCount(), after_first);
}

TEST(FullDisk, ASecondTimeIsToldAgain) {
  Files files;
  files.disk.SetRoom(0);
  Files::Row();
  files.disk.SetRoom(-1);
  WriteAllHeld();
  ResetBoxes();
  files.disk.SetRoom(0);
  Files::Row();
  EXPECT_FALSE(OpenBoxes().empty());
}

/// A medium on which an append lands in part, or whole with its sync failing.
class TornDisk : public MemoryDisk {
 public:
  void Write(Handle handle, std::string_view bytes) override {
    if (part < 0) return MemoryDisk::Write(handle, bytes);
    MemoryDisk::Write(handle, bytes.substr(0, static_cast<std::size_t>(part)));
    throw RuntimeFault("Input/output error");
  }
  void Sync(Handle handle) override {
    if (fail_sync) throw RuntimeFault("Input/output error");
    MemoryDisk::Sync(handle);
  }
  int part = -1;
  bool fail_sync = false;
};

TEST(TornWrite, IsCompletedAndNeverDoubled) {
  for (const int part : {0, 1, 40, 74}) {
    Console console;
    TornDisk disk;
    UseDisk(&disk);
    disk.MakeFolder("/data");
    CreateSoundingFiles();
    Files::Row();
    disk.part = part;
    Files::Row();
    disk.part = -1;
    Files::Row();
    EXPECT_EQ(ReadFile(kCpt), Files::ExpectedCpt(1, 3)) << part;
    EXPECT_EQ(ReadFile(kTemporary), Files::ExpectedTemporary(3)) << part;
  }
}

TEST(TornWrite, ARowThatLandedThoughItsSyncFailedIsNotDoubled) {
  Console console;
  TornDisk disk;
  UseDisk(&disk);
  disk.MakeFolder("/data");
  CreateSoundingFiles();
  disk.fail_sync = true;
  Files::Rows(2);
  disk.fail_sync = false;
  EXPECT_TRUE(WriteAllHeld());
  EXPECT_EQ(ReadFile(kCpt), Files::ExpectedCpt(1, 2));
  EXPECT_EQ(ReadFile(kTemporary), Files::ExpectedTemporary(2));
}

TEST(CreateFiles, PutTheBaselinesIntoRowZero) {
  Console console;
  channels.Baselines(2) = 0.25f;
  channels.Baselines(9) = 4.0f;  // not recorded
  CreateSoundingFiles();
  EXPECT_EQ(sounding.Rows(0, 2), 0.25f);
  EXPECT_EQ(sounding.Rows(0, 9), 0.0f);
}

TEST(CreateFiles, AnUnfinishedSoundingIsRenamedBeside) {
  Console console;
  console.disk.Put(kTemporary, "/data/old.cpt\r\nrest\r\n");
  CreateSoundingFiles();
  EXPECT_EQ(ReadFile("/data/TemporaryData (2).txt"), "/data/old.cpt\r\nrest\r\n");
  EXPECT_EQ(ReadFile(kTemporary), TemporaryHeader(kCpt));
}

TEST(CreateFiles, AFinishedSoundingIsReplaced) {
  Console console;
  console.disk.Put(kTemporary, "DONE\r\n");
  CreateSoundingFiles();
  EXPECT_FALSE(console.disk.FileExists("/data/TemporaryData (2).txt"));
}

TEST(CreateFiles, ASoundingFileOfThatNameIsNotOverwritten) {
  Console console;
  console.disk.Put(kCpt, "measured");
  CreateSoundingFiles();
  EXPECT_EQ(ReadFile("/data/s (2).cpt"), "measured");
}

TEST(CreateFiles, ATimFileOfThatNameIsNotOverwritten) {
  Console console;
  settings.LumenProbePresent = 1;
  console.disk.Put("/data/s.tim", "marks of another sounding");
  CreateSoundingFiles();
  EXPECT_EQ(ReadFile("/data/s (2).tim"), "marks of another sounding");
  EXPECT_EQ(ReadFile("/data/s.tim"), TimHeader(34200.0f));
}

TEST(CreateFiles, AStartThatFailsGivesEachFileItsNameBack) {
  Console console;
  settings.LumenProbePresent = 1;
  console.disk.Put(kTemporary, "/data/s.cpt\r\n");
  console.disk.Put(kCpt, "suspended");
  console.disk.Put("/data/s.tim", "marks");
  const auto before = console.disk.Files();
  console.disk.before = [](std::string_view operation, const std::string& path) {
    if (operation == "create" && path.starts_with(kTemporary)) throw RuntimeFault("no");
  };
  EXPECT_THROW(CreateSoundingFiles(), RuntimeFault);
  EXPECT_EQ(console.disk.Files(), before);
}

TEST(CreateFiles, AStartThatFailsIsTakenBackOnTheMediumToo) {
  Console console;
  settings.LumenProbePresent = 1;
  console.disk.Put(kTemporary, "/data/s.cpt\r\n");
  console.disk.Put(kCpt, "suspended");
  const auto before = console.disk.Files();
  console.disk.before = [](std::string_view operation, const std::string& path) {
    if (operation == "create" && path.starts_with(kTemporary)) throw RuntimeFault("no");
  };
  EXPECT_THROW(CreateSoundingFiles(), RuntimeFault);
  EXPECT_EQ(console.disk.After(Loss::ContentsAndNames).Files(), before);
}

/// Whether a file of the disk holds just that.
bool Holds(const MemoryDisk& disk, const std::string& content) {
  return std::any_of(disk.Files().begin(), disk.Files().end(),
                     [&](const auto& file) { return file.second == content; });
}

TEST(CreateFiles, AtAnyCrashTheSuspendedSoundingIsOnTheMedium) {
  const std::string suspended = "/data/s.cpt\r\nsuspended\r\n";
  for (const Fate stop : {Fate::StopBefore, Fate::StopAmid, Fate::StopAfter}) {
    std::int64_t number = 0;
    for (bool stopped = true; stopped;) {
      ++number;
      Console console;
      console.disk.Put(kTemporary, suspended);
      console.disk.Put(kCpt, "measured before");
      console.disk.fate = [&](std::string_view, const std::string&, std::int64_t now) {
        return now == number ? stop : Fate::Done;
      };
      try {
        CreateSoundingFiles();
      } catch (const ProgramEnd&) {
        ForgetEnd();
      } catch (const RuntimeFault&) {  // behind a close that stopped it
        ForgetEnd();
      }
      stopped = console.disk.Stopped();
      for (const Loss loss :
           {Loss::Nothing, Loss::Contents, Loss::ContentsAndNames, Loss::HalfTail}) {
        const MemoryDisk left = console.disk.After(loss);
        EXPECT_TRUE(Holds(left, suspended)) << number << " " << static_cast<int>(loss);
        EXPECT_TRUE(Holds(left, "measured before")) << number << " " << static_cast<int>(loss);
      }
    }
    EXPECT_GT(number, 15) << "each step of the start was tried";
  }
}

TEST(CreateFiles, WriteTheTimFileWithTheFirstTwoProbes) {
  for (const int probe : {0, 1, 2, 3}) {
    Console console;
    settings.LumenProbePresent = static_cast<std::int16_t>(probe);
    CreateSoundingFiles();
    EXPECT_EQ(console.disk.FileExists("/data/s.tim"), probe == 1 || probe == 2) << probe;
  }
}

TEST(CreateFiles, AFullDiskLeavesTheUnfinishedSoundingInItsPlace) {
  Console console;
  console.disk.Put(kTemporary, "/data/old.cpt\r\n");
  console.disk.SetRoom(static_cast<std::int64_t>(CptHeader().size()) + 10);
  EXPECT_THROW(CreateSoundingFiles(), RuntimeFault);
  EXPECT_EQ(ReadFile(kTemporary), "/data/old.cpt\r\n");
  EXPECT_FALSE(console.disk.FileExists(kCpt));
}

TEST(ClosingRows, WithoutDelayAreNone) {
  Files files;
  Files::Rows(3);
  EXPECT_TRUE(WriteClosingRows());
  EXPECT_EQ(ReadFile(kCpt), Files::ExpectedCpt(1, 3));
}

TEST(ClosingRows, AreTheDelayedRowsAndTheFinalBaseline) {
  Files files;
  channels.ChannelDelayRows(2) = 2;
  cone.DelayRows = 2;
  Files::Rows(3);
  sounding.CloseWithFinalBaseline = -1;
  EXPECT_TRUE(WriteClosingRows());
  EXPECT_EQ(ReadFile(kCpt),
            Files::ExpectedCpt(3, 3) + FlushRow(2, 3) + FlushRow(3, 3) + FinalBaselineLine());
}

TEST(MarkedDone, GoesByTheFirstLine) {
  struct Case {
    const char* text;
    bool done;
  };
  const Case cases[] = {{"DONE\r\n", true},  {"DONE", true},        {"DONE\n", true},
                        {"", false},         {"/a.cpt\r\n", false}, {"/a.cpt\r\nDONE\r\n", false},
                        {"DONE2\r\n", false}};
  for (const auto& row : cases) {
    Console console;
    console.disk.Put(kTemporary, row.text);
    EXPECT_EQ(IsMarkedDone(kTemporary), row.done) << row.text;
  }
}

}  // namespace
}  // namespace penlog
