// What the disk in memory does beyond a disk: its medium, its faults, the end of the world.
#include "platform/memory_disk.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"
#include "platform/runtime_fault.h"
#include "platform/yield.h"
#include "support/world.h"

namespace penlog {
namespace {

constexpr const char* kNone = "(none)";

std::string Content(const MemoryDisk& disk, const std::string& path) {
  const auto found = disk.Files().find(path);
  return found == disk.Files().end() ? kNone : found->second;
}

void Append(MemoryDisk& disk, const std::string& path, std::string_view bytes, bool sync) {
  const auto handle = disk.OpenAppend(path);
  disk.Write(handle, bytes);
  if (sync) disk.Sync(handle);
  disk.Close(handle);
}

/// What a file is after each kind of loss.
struct Remains {
  const char* what;
  std::function<void(MemoryDisk&)> work;  ///< on "/d", in which "/d/f" holds "old" and is synced
  const char* path;
  const char* nothing;
  const char* contents;
  const char* contents_and_names;
  const char* half_tail;
};

TEST(Medium, HoldsWhatWasSyncedAfterEachLoss) {
  const std::vector<Remains> rows = {
      {"new file, nothing synced", [](MemoryDisk& d) { Append(d, "/d/n", "1234", false); }, "/d/n",
       "1234", "", kNone, "12"},
      {"new file, synced", [](MemoryDisk& d) { Append(d, "/d/n", "1234", true); }, "/d/n", "1234",
       "1234", kNone, "1234"},
      {"new file, folder synced",
       [](MemoryDisk& d) {
         Append(d, "/d/n", "1234", false);
         d.SyncFolder("/d");
       },
       "/d/n", "1234", "", "", "12"},
      {"new file, both synced",
       [](MemoryDisk& d) {
         Append(d, "/d/n", "1234", true);
         d.SyncFolder("/d/");
       },
       "/d/n", "1234", "1234", "1234", "1234"},
      {"tail not synced", [](MemoryDisk& d) { Append(d, "/d/f", "+12345", false); }, "/d/f",
       "old+12345", "old", "old", "old+12"},
      {"tail synced", [](MemoryDisk& d) { Append(d, "/d/f", "+1", true); }, "/d/f", "old+1",
       "old+1", "old+1", "old+1"},
      {"emptied", [](MemoryDisk& d) { d.Close(d.Create("/d/f")); }, "/d/f", "", "", "", ""},
      {"removed", [](MemoryDisk& d) { d.Remove("/d/f"); }, "/d/f", kNone, kNone, "old", kNone},
      {"removed, folder synced",
       [](MemoryDisk& d) {
         d.Remove("/d/f");
         d.SyncFolder("/d");
       },
       "/d/f", kNone, kNone, kNone, kNone},
      {"renamed, the old name", [](MemoryDisk& d) { d.Rename("/d/f", "/d/g"); }, "/d/f", kNone,
       kNone, "old", kNone},
      {"renamed, the new name", [](MemoryDisk& d) { d.Rename("/d/f", "/d/g"); }, "/d/g", "old",
       "old", kNone, "old"},
      {"renamed, folder synced, the new name",
       [](MemoryDisk& d) {
         d.Rename("/d/f", "/d/g");
         d.SyncFolder("/d");
       },
       "/d/g", "old", "old", "old", "old"},
      {"replaced by a rename",
       [](MemoryDisk& d) {
         Append(d, "/d/n", "new", true);
         d.Rename("/d/n", "/d/f");
       },
       "/d/f", "new", "new", "old", "new"},
      {"replaced by a rename, nothing synced",
       [](MemoryDisk& d) {
         Append(d, "/d/n", "new!", false);
         d.Rename("/d/n", "/d/f");
         d.SyncFolder("/d");
       },
       "/d/f", "new!", "", "", "ne"},
      {"in a new folder that was not synced above",
       [](MemoryDisk& d) {
         d.MakeFolder("/d/new");
         Append(d, "/d/new/f", "1234", true);
         d.SyncFolder("/d/new");
       },
       "/d/new/f", "1234", "1234", kNone, "1234"},
      {"in a new folder that was synced above",
       [](MemoryDisk& d) {
         d.MakeFolder("/d/new");
         d.SyncFolder("/d");
         Append(d, "/d/new/f", "1234", true);
         d.SyncFolder("/d/new");
       },
       "/d/new/f", "1234", "1234", "1234", "1234"},
      {"the next file in a folder whose sync came first",
       [](MemoryDisk& d) {
         d.SyncFolder("/d");
         Append(d, "/d/n", "1", true);
       },
       "/d/n", "1", "1", kNone, "1"},
  };
  for (const Remains& row : rows) {
    SCOPED_TRACE(row.what);
    MemoryDisk disk;
    disk.Put("/d/f", "old");
    row.work(disk);
    EXPECT_EQ(Content(disk.After(Loss::Nothing), row.path), row.nothing);
    EXPECT_EQ(Content(disk.After(Loss::Contents), row.path), row.contents);
    EXPECT_EQ(Content(disk.After(Loss::ContentsAndNames), row.path), row.contents_and_names);
    EXPECT_EQ(Content(disk.After(Loss::HalfTail), row.path), row.half_tail);
    disk.LosePower();
    EXPECT_EQ(Content(disk, row.path), row.contents_and_names) << "the usual loss is the worst";
  }
}

TEST(Medium, FolderWhoseNameIsLostTakesItsFilesAlong) {
  MemoryDisk disk;
  disk.PutFolder("/d");
  disk.MakeFolder("/d/a/b");
  disk.SyncFolder("/d/a");  // the name of b, not that of a
  disk.LosePower();
  EXPECT_TRUE(disk.FolderExists("/d"));
  EXPECT_FALSE(disk.FolderExists("/d/a"));
  EXPECT_FALSE(disk.FolderExists("/d/a/b"));
}

TEST(Medium, IsWhatTheNextProcessSeesAndLosesNoMore) {
  MemoryDisk disk;
  disk.PutFolder("/d");
  Append(disk, "/d/f", "1234", false);
  disk.LosePower(Loss::HalfTail);
  disk.LosePower(Loss::ContentsAndNames);
  EXPECT_EQ(Content(disk, "/d/f"), "12") << "half of it had landed with its name";
  Append(disk, "/d/f", "56", true);
  disk.LosePower(Loss::ContentsAndNames);
  EXPECT_EQ(Content(disk, "/d/f"), "1256");
}

TEST(Medium, OfAProcessThatDiedAloneIsLostWithThePowerLater) {
  MemoryDisk disk;
  disk.PutFolder("/d");
  Append(disk, "/d/f", "1234", true);
  disk.LosePower(Loss::Nothing);
  EXPECT_EQ(Content(disk, "/d/f"), "1234");
  disk.LosePower(Loss::ContentsAndNames);
  EXPECT_EQ(Content(disk, "/d/f"), kNone) << "its folder was never synced";
}

TEST(Medium, LossFreesHandlesAndLocks) {
  for (const Loss loss : {Loss::Nothing, Loss::Contents, Loss::ContentsAndNames, Loss::HalfTail}) {
    MemoryDisk disk;
    disk.Put("/f", "");
    const auto handle = disk.OpenAppend("/f");
    EXPECT_TRUE(disk.Lock("/lock"));
    disk.LosePower(loss);
    EXPECT_THROW(disk.Write(handle, "x"), RuntimeFault);
    EXPECT_TRUE(disk.Lock("/lock"));
  }
}

TEST(Medium, LooksBehindTheLossWithoutChangingTheDisk) {
  MemoryDisk disk;
  disk.PutFolder("/d");
  disk.SetRoom(4);
  disk.before = [](std::string_view operation, const std::string&) {
    if (operation == "remove") throw RuntimeFault("refused");
  };
  Append(disk, "/d/f", "1234", false);
  MemoryDisk after = disk.After(Loss::Contents);
  EXPECT_EQ(Content(disk, "/d/f"), "1234");
  EXPECT_EQ(after.OperationCount(), 0);
  Append(after, "/d/f", "a disk without limits", true);
  after.Remove("/d/f");
  EXPECT_EQ(Content(disk, "/d/f"), "1234");
}

// Faults.

/// One operation, and what it leaves under each fate.
struct Outcome {
  const char* operation;
  std::function<void(MemoryDisk&)> work;  ///< ends with it; "/d/f" holds "old"
  const char* before;                     ///< as `Seen` tells
  const char* half;
  const char* after;
};

/// All files with their contents as synced and, where that differs, as seen.
std::string Seen(MemoryDisk& disk) {
  std::string text;
  const MemoryDisk medium = disk.After(Loss::ContentsAndNames);
  for (const auto& [path, content] : disk.Files()) {
    const std::string synced = Content(medium, path);
    text += path.substr(3) + "=" + content + (synced == content ? "" : "/" + synced) + " ";
  }
  for (const auto& [path, content] : medium.Files()) {
    if (disk.Files().count(path) == 0) text += path.substr(3) + " gone/" + content + " ";
  }
  if (disk.FolderExists("/d/new")) text += "new/ ";
  return text;
}

std::vector<Outcome> Outcomes() {
  return {
      {"create", [](MemoryDisk& d) { d.Create("/d/n"); }, "f=old ", "f=old n=/(none) ",
       "f=old n=/(none) "},
      {"append", [](MemoryDisk& d) { d.OpenAppend("/d/f"); }, "f=old ", "f=old ", "f=old "},
      {"write", [](MemoryDisk& d) { d.Write(d.OpenAppend("/d/f"), "12345"); }, "f=old ",
       "f=old12/old ", "f=old12345/old "},
      {"sync",
       [](MemoryDisk& d) {
         const auto handle = d.OpenAppend("/d/f");
         d.Write(handle, "12345");
         d.Sync(handle);
       },
       "f=old12345/old ", "f=old12345/old12 ", "f=old12345 "},
      {"close", [](MemoryDisk& d) { d.Close(d.OpenAppend("/d/f")); }, "f=old ", "f=old ", "f=old "},
      {"rename", [](MemoryDisk& d) { d.Rename("/d/f", "/d/g"); }, "f=old ", "f=old ",
       "g=old/(none) f gone/old "},
      {"remove", [](MemoryDisk& d) { d.Remove("/d/f"); }, "f=old ", "f=old ", "f gone/old "},
      {"make folder", [](MemoryDisk& d) { d.MakeFolder("/d/new"); }, "f=old ", "f=old ",
       "f=old new/ "},
      {"sync folder",
       [](MemoryDisk& d) {
         d.Rename("/d/f", "/d/a");  // a name that comes and one that goes
         d.SyncFolder("/d");
       },
       "a=old/(none) f gone/old ", "a=old f gone/old ", "a=old "},
  };
}

struct Faults : testing::Test {
  /// The work on a disk whose one operation goes that way; what it raised.
  std::string Do(const Outcome& row, Fate how) {
    disk = MemoryDisk();
    disk.Put("/d/f", "old");
    disk.fate = [&row, how](std::string_view operation, const std::string&, std::int64_t) {
      return operation == row.operation ? how : Fate::Done;
    };
    try {
      row.work(disk);
    } catch (const RuntimeFault& fault) {
      return fault.what();
    } catch (const ProgramEnd&) {
      return "end";
    }
    return "none";
  }
  World world;
  MemoryDisk disk;
};

TEST_F(Faults, OfInputAndOutputComeWithNothingAHalfOrAllDone) {
  for (const Outcome& row : Outcomes()) {
    SCOPED_TRACE(row.operation);
    EXPECT_EQ(Do(row, Fate::Done), "none");
    EXPECT_EQ(Seen(disk), row.after);
    EXPECT_NE(Do(row, Fate::Refused).find(": Input/output error"), std::string::npos);
    EXPECT_EQ(Seen(disk), row.before);
    EXPECT_NE(Do(row, Fate::RefusedHalf).find(": Input/output error"), std::string::npos);
    EXPECT_EQ(Seen(disk), row.half);
    EXPECT_NE(Do(row, Fate::RefusedAfter).find(": Input/output error"), std::string::npos);
    EXPECT_EQ(Seen(disk), row.after);
    EXPECT_FALSE(EndUnderWay());
    EXPECT_FALSE(disk.Stopped());
  }
}

TEST_F(Faults, ThatStopTheProcessEndTheProgramBeforeAmidOrBehindTheOperation) {
  for (const Outcome& row : Outcomes()) {
    SCOPED_TRACE(row.operation);
    const bool closes = std::string_view(row.operation) == "close";
    const struct {
      Fate how;
      const char* seen;
    } stops[] = {
        {Fate::StopBefore, row.before}, {Fate::StopAmid, row.half}, {Fate::StopAfter, row.after}};
    for (const auto& stop : stops) {
      EXPECT_EQ(Do(row, stop.how), closes ? "none" : "end") << "destructors close";
      EXPECT_EQ(Seen(disk), stop.seen);
      EXPECT_TRUE(disk.Stopped());
      EXPECT_TRUE(EndUnderWay());
      EXPECT_THROW(Yield(), ProgramEnd);
      ForgetEnd();
    }
  }
}

TEST_F(Faults, CutASyncOfAFolderWhereItHarmsMost) {
  disk.Put("/d/f", "old");
  disk.Rename("/d/f", "/d/f (2)");
  Append(disk, "/d/f.new", "new", true);
  disk.Rename("/d/f.new", "/d/f");
  disk.fate = [](std::string_view, const std::string&, std::int64_t) { return Fate::StopAmid; };
  EXPECT_THROW(disk.SyncFolder("/d"), ProgramEnd);
  disk.LosePower();
  EXPECT_EQ(Content(disk, "/d/f"), "new");
  EXPECT_EQ(Content(disk, "/d/f (2)"), kNone) << "what stood there is gone";
}

TEST_F(Faults, KnowTheNumberOfTheOperation) {
  std::vector<std::string> seen;
  disk.Put("/d/f", "old");
  disk.fate = [&](std::string_view operation, const std::string& path, std::int64_t number) {
    seen.push_back(std::to_string(number) + " " + std::string(operation) + " " + path);
    return Fate::Done;
  };
  Append(disk, "/d/f", "1", true);
  EXPECT_EQ(seen, (std::vector<std::string>{"1 append /d/f", "2 write /d/f", "3 sync /d/f",
                                            "4 close /d/f"}));
  EXPECT_EQ(disk.OperationCount(), 4);
}

TEST_F(Faults, AreNotSeenByTheHookBehindAnOperation) {
  disk.Put("/d/f", "old");
  int returned = 0;
  disk.after = [&](std::string_view operation, const std::string& path) {
    ++returned;
    EXPECT_EQ(operation, "remove");
    EXPECT_EQ(path, "/d/f");
    EXPECT_FALSE(disk.FileExists("/d/f")) << "it is done";
  };
  Fate next = Fate::Refused;
  disk.fate = [&](std::string_view, const std::string&, std::int64_t) { return next; };
  EXPECT_THROW(disk.Remove("/d/f"), RuntimeFault);
  EXPECT_EQ(returned, 0);
  next = Fate::Done;
  disk.Remove("/d/f");
  EXPECT_EQ(returned, 1);
  EXPECT_THROW(disk.Remove("/d/f"), RuntimeFault);
  EXPECT_EQ(returned, 1);
}

// The end.

TEST_F(Faults, LeaveADeadProcessNothingToDo) {
  disk.Put("/d/f", "old");
  const auto handle = disk.OpenAppend("/d/f");
  int hooks = 0;
  disk.before = [&](std::string_view, const std::string&) { ++hooks; };
  disk.Stop();
  EXPECT_THROW(disk.Write(handle, "late"), RuntimeFault);
  EXPECT_THROW(disk.Sync(handle), RuntimeFault);
  EXPECT_THROW(disk.Create("/d/n"), RuntimeFault);
  EXPECT_THROW(disk.OpenAppend("/d/f"), RuntimeFault);
  EXPECT_THROW(disk.Rename("/d/f", "/d/g"), RuntimeFault);
  EXPECT_THROW(disk.Remove("/d/f"), RuntimeFault);
  EXPECT_THROW(disk.MakeFolder("/d/new"), RuntimeFault);
  EXPECT_THROW(disk.SyncFolder("/d"), RuntimeFault);
  EXPECT_NO_THROW(disk.Close(handle));
  EXPECT_EQ(hooks, 0);
  EXPECT_EQ(Seen(disk), "f=old ");
  EXPECT_FALSE(EndUnderWay()) << "the caller ends the program";
  disk.GoOn();
  EXPECT_FALSE(disk.Stopped());
  Append(disk, "/d/f", "+", true);
  EXPECT_EQ(Seen(disk), "f=old+ ");
  EXPECT_EQ(hooks, 4);
}

TEST(MemoryDisk, WritesItselfOutBelowAFolderOfAnotherDisk) {
  MemoryDisk disk;
  MemoryDisk other;
  disk.Put("/data/a b/file", "content");
  disk.Put("/data/empty", "");
  disk.WriteOut(other, "/out/");
  EXPECT_EQ(other.Read("/out/data/a b/file"), "content");
  EXPECT_EQ(other.Read("/out/data/empty"), "");
}

}  // namespace
}  // namespace penlog
