#include <map>

#include "platform/files.h"
#include "sounding/console.h"
#include "sounding/held_rows.h"
#include "sounding/row_text.h"
#include "sounding/sounding_end.h"
#include "sounding/sounding_files.h"
#include "sounding/sounding_start.h"

namespace penlog {
namespace {

constexpr const char* kTemporary = "/data/TemporaryData.txt";
constexpr const char* kCpt = "/data/s.cpt";
constexpr const char* kTim = "/data/s.tim";
constexpr int kRows = 12;

/// A medium that takes bytes and never says that they are safe.
class NoSyncDisk : public MemoryDisk {
 public:
  void Sync(Handle handle) override {
    if (refuses) throw RuntimeFault("the sync failed");
    MemoryDisk::Sync(handle);
  }
  bool refuses = false;
};

/// How an operation of the disk goes wrong.
enum class Fault { Before, After, Half };

/// A disk of which the operations from `first` on, `count` of them, fail: without effect, after
/// their effect, or with half of the bytes written.
class FaultyDisk : public MemoryDisk {
 public:
  FaultyDisk(int first, int count, Fault fault)
      : first_(first), last_(first + count), kind_(fault) {
    MakeFolder("/data");
  }
  Handle Create(const std::string& path) override {
    return Faulty([&] { return MemoryDisk::Create(path); });
  }
  Handle OpenAppend(const std::string& path) override {
    return Faulty([&] { return MemoryDisk::OpenAppend(path); });
  }
  void Write(Handle handle, std::string_view bytes) override {
    const bool half = kind_ == Fault::Half && IsNext();
    if (half) MemoryDisk::Write(handle, bytes.substr(0, bytes.size() / 2));
    Faulty([&] { MemoryDisk::Write(handle, bytes); });
  }
  void Sync(Handle handle) override {
    Faulty([&] { MemoryDisk::Sync(handle); });
  }
  /// What was synced stands, so that a failing close loses nothing and is not told.
  void Close(Handle handle) override {
    const int failures = Failures;
    try {
      Faulty([&] { MemoryDisk::Close(handle); });
    } catch (const RuntimeFault&) {
      Failures = failures;
      throw;
    }
  }
  void SyncFolder(const std::string& folder) override {
    Faulty([&] { MemoryDisk::SyncFolder(folder); });
  }
  void Rename(const std::string& from, const std::string& to) override {
    Faulty([&] { MemoryDisk::Rename(from, to); });
  }
  void Remove(const std::string& path) override {
    Faulty([&] { MemoryDisk::Remove(path); });
  }
  std::string Read(const std::string& path) override {
    return Faulty([&] { return MemoryDisk::Read(path); });
  }
  /// The faults are over, and all of them came.
  bool Over() const { return done_ >= last_; }
  int Failures = 0;  ///< operations that failed, but for closing

 private:
  bool IsNext() const { return done_ >= first_ && done_ < last_; }

  template <class Operation>
  auto Faulty(Operation operation) -> decltype(operation()) {
    const bool fails = IsNext();
    ++done_;
    if (fails && kind_ == Fault::After) operation();
    if (fails) ++Failures;
    if (fails) throw RuntimeFault("Input/output error");
    return operation();
  }

  int first_;
  int last_;
  Fault kind_;
  int done_ = 0;
};

/// A sounding of twelve rows with delayed channels, picture marks and a final baseline on such a
/// disk, beside a suspended one of the same name.
struct Sounding : Console {
  Sounding(int first, int count, Fault fault) : disk(first, count, fault) {
    UseDisk(&disk);
    disk.Put(kTemporary, "/data/s.cpt\r\nsuspended\r\n");
    disk.Put(kCpt, "measured before");
    disk.Put(kTim, "marks before");
    settings.LumenProbePresent = 1;
    channels.ChannelDelayRows(2) = cone.DelayRows = 3;
    channels.ChannelDelayRows(3) = 1;
    sounding.CloseWithFinalBaseline = -1;
    OpenPorts();
  }

  /// As the operator does: again until it works. False when it never does.
  bool Start() {
    const auto before = disk.Files();
    for (int tries = 0; tries < 10; ++tries) {
      sounding.ConsoleMode = 8;
      StartRecording();
      if (sounding.ConsoleMode == 2) return true;
      EXPECT_FALSE(OpenBoxes().empty()) << "a refused start is told";
      refused_as_it_was = refused_as_it_was && disk.Files() == before;
      ResetBoxes();
    }
    return false;
  }
  void Push() {
    for (int row = 1; row <= kRows; ++row) {
      EncoderDown(2);
      for (const int channel : {1, 2, 3}) {
        sounding.Readings(channel) = static_cast<float>(100 * channel + row);
      }
      ++sounding.RowCount;
      RecordRow();
      ++sounding.SecondsCounter;
      RetryHeld();
    }
  }
  bool Close() {
    for (int tries = 0; tries < 10; ++tries) {
      ResetBoxes();
      if (CloseSounding()) return true;
      EXPECT_FALSE(OpenBoxes().empty()) << "a refused end is told";
    }
    return false;
  }
  static std::string ExpectedCpt() {
    std::string text = CptHeader();
    for (int row = 4; row <= kRows; ++row) text += AlignedRow(row);
    for (int row = kRows - 2; row <= kRows; ++row) text += FlushRow(row, kRows);
    return text + FinalBaselineLine();
  }
  static std::string ExpectedTemporary() {
    std::string text = TemporaryHeader(kCpt);
    for (int row = 1; row <= kRows; ++row) text += TemporaryRow(row);
    return text;
  }
  /// A content stands somewhere, under whatever name.
  bool Stands(const std::string& content) const {
    for (const auto& [path, text] : disk.Files()) {
      if (text == content) return true;
    }
    return false;
  }

  FaultyDisk disk;
  bool refused_as_it_was = true;
};

int MarksIn(const std::string& tim) {
  return static_cast<int>(std::count(tim.begin(), tim.end(), '\n')) - 2;
}

void CheckWhole(Sounding& run, const std::string& what) {
  EXPECT_EQ(run.disk.MemoryDisk::Read(kCpt), Sounding::ExpectedCpt()) << what;
  EXPECT_EQ(run.disk.MemoryDisk::Read(kTemporary), "DONE\r\n") << what;
  EXPECT_EQ(MarksIn(run.disk.MemoryDisk::Read(kTim)), 2 * kRows) << what;
  EXPECT_EQ(sounding.RowsHeldBack, 0) << what;
  for (const char* old : {"/data/s.cpt\r\nsuspended\r\n", "measured before", "marks before"}) {
    EXPECT_TRUE(run.Stands(old)) << what << ": a suspended sounding is never destroyed";
  }
  EXPECT_FALSE(run.disk.FileExists("/data/TemporaryData.txt.new")) << what;
}

struct FaultCase {
  const char* name;
  Fault fault;
  int length;  // operations that fail, one after the other
};

class DiskFaults : public ::testing::TestWithParam<FaultCase> {};

/// The fault is moved through the whole sounding, operation by operation.
TEST_P(DiskFaults, AtAnyOperationNothingIsLostOrDoubled) {
  const FaultCase& row = GetParam();
  bool reached = true;
  int first = 0;
  for (; reached; ++first) {
    Sounding run(first, row.length, row.fault);
    const std::string what = std::string(row.name) + " at operation " + std::to_string(first);
    ASSERT_TRUE(run.Start()) << what;
    const int failures = run.disk.Failures;
    run.Push();
    EXPECT_EQ(OpenBoxes().empty(), run.disk.Failures == failures) << what << ": a fault is told";
    ASSERT_TRUE(run.Close()) << what;
    CheckWhole(run, what);
    reached = run.disk.Over();
  }
  EXPECT_GT(first, 100) << "the fault went through the whole sounding";
}

INSTANTIATE_TEST_SUITE_P(Kinds, DiskFaults,
                         ::testing::Values(FaultCase{"nothing done", Fault::Before, 1},
                                           FaultCase{"done and yet refused", Fault::After, 1},
                                           FaultCase{"half written", Fault::Half, 1},
                                           FaultCase{"seven in a row", Fault::Before, 7},
                                           FaultCase{"seven done", Fault::After, 7}));

/// Each file as the machine's next start would find it.
void ExpectOnMedium(const Sounding& run) {
  const MemoryDisk left = run.disk.After(Loss::ContentsAndNames);
  for (const char* path : {kTemporary, kCpt, kTim}) {
    ASSERT_TRUE(left.Files().contains(path)) << path;
    EXPECT_TRUE(left.Files().at(path) == run.disk.Files().at(path)) << path;
  }
}

/// A system tells once that a sync failed, and forgets what it was to bring to the medium.
TEST(DiskFaults, ASyncThatFailedIsMadeGoodThoughTheNextOneReturns) {
  for (const int count : {1, 2, 5}) {
    bool struck = true;
    for (int first = 1; struck; ++first) {
      SCOPED_TRACE(std::to_string(count) + " syncs from " + std::to_string(first) + " on");
      Sounding run(0, 0, Fault::Before);
      ASSERT_TRUE(run.Start());
      int syncs = 0;
      run.disk.fate = [&](std::string_view work, const std::string&, std::int64_t) {
        if (work != "sync" || ++syncs < first || syncs >= first + count) return Fate::Done;
        return Fate::RefusedAndForgotten;
      };
      run.Push();
      EXPECT_EQ(OpenBoxes().empty(), syncs < first) << "a failed sync is told";
      for (int tries = 0; tries < count && !WriteAllHeld(); ++tries) {
      }
      EXPECT_EQ(sounding.RowsHeldBack, 0);
      EXPECT_TRUE(run.disk.MemoryDisk::Read(kTemporary) == Sounding::ExpectedTemporary());
      ExpectOnMedium(run);
      ASSERT_TRUE(run.Close());
      CheckWhole(run, "");
      ExpectOnMedium(run);
      struck = syncs >= first;
      if (HasFailure()) return;
    }
  }
}

TEST(DiskFaults, ARowWrittenToAFileThatIsRemovedMeanwhileIsHeld) {
  for (const char* work : {"append", "write", "sync", "close"}) {
    SCOPED_TRACE(work);
    Sounding run(0, 0, Fault::Before);
    ASSERT_TRUE(run.Start());
    std::string away;
    run.disk.before = [&](std::string_view operation, const std::string& path) {
      if (!away.empty() || operation != work || path != kCpt) return;
      away = run.disk.After(Loss::Contents).Files().at(kCpt);
      run.disk.Remove(kCpt);
    };
    run.Push();
    EXPECT_FALSE(run.disk.FileExists(kCpt));
    EXPECT_GE(sounding.RowsHeldBack, kRows - 4);
    run.disk.Put(kCpt, away);
    EXPECT_TRUE(CloseSounding());
    CheckWhole(run, "it is back");
  }
}

TEST(DiskFaults, ARefusedStartLeavesAllFilesAsTheyWere) {
  for (const Fault fault : {Fault::Before, Fault::After, Fault::Half}) {
    for (int first = 0; first < 40; ++first) {
      Sounding run(first, 1, fault);
      run.Start();
      EXPECT_TRUE(run.refused_as_it_was) << first << " kind " << static_cast<int>(fault);
    }
  }
}

TEST(DiskFaults, EachRowThatTheDiskRefusesIsTold) {
  Sounding run(0, 0, Fault::Before);
  ASSERT_TRUE(run.Start());
  run.disk.before = [](std::string_view operation, const std::string& path) {
    if (operation == "write" && path == kCpt) throw RuntimeFault("No space left on device");
  };
  run.Push();
  EXPECT_EQ(sounding.RowsHeldBack, kRows - 3);
  ASSERT_EQ(OpenBoxes().size(), 1u) << "once, not with each row";
  EXPECT_NE(OpenBoxes()[0].text.find("ITS ROWS STAND IN THE TEMPORARY DATA"), std::string::npos);
  EXPECT_NE(OpenBoxes()[0].text.find("No space left on device"), std::string::npos);
  EXPECT_EQ(ReadFile(kTemporary), Sounding::ExpectedTemporary()) << "the other file goes on";
  EXPECT_FALSE(CloseSounding());
  EXPECT_EQ(ReadFile(kTemporary), Sounding::ExpectedTemporary()) << "the copy stays";
  run.disk.before = {};
  EXPECT_TRUE(CloseSounding());
  CheckWhole(run, "room again");
}

TEST(DiskFaults, AFileThatIsGoneDoesNotComeBackWithoutItsHeader) {
  Sounding run(0, 0, Fault::Before);
  ASSERT_TRUE(run.Start());
  run.Push();
  const std::string before = ReadFile(kCpt);
  for (const std::string& instead : {std::string(), before.substr(0, before.size() / 2)}) {
    run.disk.Remove(kCpt);
    if (!instead.empty()) run.disk.Put(kCpt, instead);
    EXPECT_FALSE(CloseSounding());
    EXPECT_EQ(ReadFile(kTemporary), Sounding::ExpectedTemporary());
    if (instead.empty()) run.disk.Put(kCpt, "");
  }
  run.disk.Put(kCpt, before);  // the medium is back
  EXPECT_TRUE(CloseSounding());
  CheckWhole(run, "the medium is back");
}

TEST(DiskFaults, AWindowClosedWhileRowsStandInMemoryAloneAsksFirst) {
  for (const bool end : {true, false}) {
    Sounding run(0, 0, Fault::Before);
    ASSERT_TRUE(run.Start());
    run.disk.SetRoom(0);
    run.Push();
    ResetBoxes();
    Main_QueryUnload();
    ASSERT_EQ(OpenBoxes().size(), 1u);
    EXPECT_EQ(OpenBoxes()[0].text,
              "THE DISK REFUSES 12 ROWS AND 24 TIME MARKS, WHICH STAND IN MEMORY ALONE AND WOULD "
              "BE LOST.  END THE PROGRAM ALL THE SAME?");
    AnswerBox(OpenBoxes()[0].id, end ? BoxAnswer::Yes : BoxAnswer::No);
    if (end) {
      EXPECT_THROW(Yield(), ProgramEnd);
    } else {
      Yield();
      run.disk.SetRoom(-1);
      EXPECT_THROW(Main_QueryUnload(), ProgramEnd) << "all rows are on the disk";
      EXPECT_EQ(ReadFile(kTemporary), Sounding::ExpectedTemporary());
    }
  }
}

/// What a closed window says is true of what stands where.
TEST(DiskFaults, AWindowClosedWhileOneFileAloneIsRefusedSaysWhatIsLost) {
  struct Case {
    const char* refused;
    const char* text;
    BoxButtons buttons;
  };
  const std::string later =
      ".  ALL ITS ROWS STAND IN THE TEMPORARY DATA.  RESUME LAST SOUNDING "
      "COMPLETES IT, ALSO IN ANOTHER FOLDER.  PRESS OK TO END THE PROGRAM, OR CANCEL TO GO ON.";
  for (const Case& row :
       {Case{kTemporary, "THE DISK REFUSES 12 ROWS, WHICH STAND IN MEMORY ALONE",
             BoxButtons::YesNoCareful},
        Case{kTim, "THE DISK REFUSES 24 TIME MARKS, WHICH STAND IN MEMORY ALONE",
             BoxButtons::YesNoCareful},
        Case{kCpt, "THE SOUNDING FILE IS NOT COMPLETE YET: /data/s.cpt", BoxButtons::OkCancel}}) {
    SCOPED_TRACE(row.refused);
    Sounding run(0, 0, Fault::Before);
    ASSERT_TRUE(run.Start());
    run.disk.before = [&row](std::string_view, const std::string& path) {
      if (path == row.refused) throw RuntimeFault(path + ": No space left on device");
    };
    run.Push();
    ASSERT_FALSE(OpenBoxes().empty());
    const std::string told = OpenBoxes().front().text;
    EXPECT_EQ(told.find("ITS ROWS STAND IN THE TEMPORARY DATA") != std::string::npos,
              row.refused == kCpt)
        << told;
    EXPECT_EQ(told.find("DO NOT END THE PROGRAM") == std::string::npos, row.refused == kCpt);
    ResetBoxes();
    Main_QueryUnload();
    ASSERT_EQ(OpenBoxes().size(), 1u);
    EXPECT_TRUE(FrontBox()->text.starts_with(row.text)) << FrontBox()->text;
    EXPECT_EQ(FrontBox()->buttons, row.buttons);
    const bool asks = row.buttons == BoxButtons::YesNoCareful;
    EXPECT_EQ(FrontBox()->text.ends_with(later), !asks) << FrontBox()->text;
    AnswerBox(FrontBox()->id, asks ? BoxAnswer::Yes : BoxAnswer::Ok);
    EXPECT_THROW(Yield(), ProgramEnd);
  }
}

/// The recording goes on behind the question.
TEST(DiskFaults, AWindowClosedWithALaggingFileEndsWithNoRowInMemoryAlone) {
  for (const bool ends : {true, false}) {
    Sounding run(0, 0, Fault::Before);
    ASSERT_TRUE(run.Start());
    run.disk.before = [](std::string_view, const std::string& path) {
      if (path == kCpt) throw RuntimeFault(path + ": No space left on device");
    };
    run.Push();
    ResetBoxes();
    Main_QueryUnload();
    ASSERT_EQ(OpenBoxes().size(), 1u);
    const std::int32_t id = FrontBox()->id;
    run.disk.SetRoom(0);
    ++sounding.RowCount;
    RecordRow();
    const std::size_t told = OpenBoxes().size() - 1;  // behind the question
    AnswerBox(id, ends ? BoxAnswer::Ok : BoxAnswer::Cancel);
    EXPECT_NO_THROW(Yield());
    ASSERT_EQ(OpenBoxes().size(), told + (ends ? 1u : 0u));
    if (!ends) continue;
    const std::string text = OpenBoxes().back().text;
    EXPECT_TRUE(text.starts_with("THE DISK REFUSES 1 ROW, WHICH STAND IN MEMORY")) << text;
  }
}

TEST(DiskFaults, AWindowClosedWithoutTheRecoveryCopyOrTheFileSaysSo) {
  for (const char* gone : {kTemporary, kCpt}) {
    Sounding run(0, 0, Fault::Before);
    ASSERT_TRUE(run.Start());
    run.Push();
    run.disk.Remove(gone);
    Main_QueryUnload();
    ASSERT_EQ(OpenBoxes().size(), 1u);
    const std::string text = FrontBox()->text;
    EXPECT_TRUE(text.starts_with(gone == kCpt
                                     ? "THE SOUNDING FILE IS NOT COMPLETE YET: /data/s.cpt "
                                       "is no longer there."
                                     : "THE SOUNDING COULD NOT BE RESUMED: "
                                       "/data/TemporaryData.txt "
                                       "is no longer there."))
        << text;
  }
  Console console;
  EXPECT_THROW(Main_QueryUnload(), ProgramEnd) << "no sounding was begun";
}

TEST(RowsHeldBack, CountARowThatLandedUntilASyncOfItHasReturned) {
  Console console;
  NoSyncDisk disk;
  UseDisk(&disk);
  disk.MakeFolder("/data");
  console.OpenPorts();
  sounding.ConsoleMode = 8;
  StartRecording();
  disk.refuses = true;
  ++sounding.RowCount;
  RecordRow();
  EXPECT_EQ(sounding.RowsHeldBack, 1);
  EXPECT_FALSE(WriteAllHeld());
  EXPECT_EQ(sounding.RowsHeldBack, 1) << "it stands in the file, yet not for certain";
  ++sounding.RowCount;
  RecordRow();
  EXPECT_EQ(sounding.RowsHeldBack, 2);
  disk.refuses = false;
  EXPECT_TRUE(WriteAllHeld());
  EXPECT_EQ(sounding.RowsHeldBack, 0);
  UseDisk(&console.disk);
}

}  // namespace
}  // namespace penlog
