#include "platform/files.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/memory_disk.h"
#include "platform/runtime_fault.h"
#include "support/world.h"

namespace penlog {
namespace {

struct Files : testing::Test {
  Files() { world.disk.PutFolder("/data"); }
  /// The nth call of that operation from now on fails.
  void FailAt(std::string_view operation, int nth = 1) {
    world.disk.before = [=, count = 0](std::string_view done, const std::string& path) mutable {
      if (done == operation && ++count == nth) throw RuntimeFault(path + ": Input/output error");
    };
  }
  World world;
};

TEST_F(Files, ReplacePutsTheNewContentInPlace) {
  ReplaceFile("/data/settings", "old");
  ReplaceFile("/data/settings", "new");
  EXPECT_EQ(ReadFile("/data/settings"), "new");
  EXPECT_EQ(world.disk.List("/data").size(), 1u) << "nothing is left beside it";
}

TEST_F(Files, ReplaceSyncsBeforeItRenamesAndTheFolderAfterwards) {
  std::vector<std::string> done;
  world.disk.before = [&](std::string_view operation, const std::string&) {
    done.emplace_back(operation);
  };
  ReplaceFile("/data/settings", "new");
  EXPECT_EQ(done, (std::vector<std::string>{"create", "write", "sync", "close", "rename",
                                            "sync folder"}));
}

TEST_F(Files, AFailedReplaceLeavesTheOldContentAndNothingBeside) {
  for (const char* operation : {"create", "write", "sync", "rename"}) {
    SCOPED_TRACE(operation);
    world.disk.Put("/data/settings", "old");
    FailAt(operation);
    EXPECT_THROW(ReplaceFile("/data/settings", "new"), RuntimeFault);
    world.disk.before = nullptr;
    EXPECT_EQ(ReadFile("/data/settings"), "old");
    EXPECT_EQ(world.disk.List("/data").size(), 1u);
  }
}

TEST_F(Files, APowerLossDuringAReplaceLeavesOldOrNew) {
  struct PowerLoss {};
  for (int stop = 1; stop <= 6; ++stop) {
    SCOPED_TRACE(stop);
    world.disk.Put("/data/settings", "old");
    int operations = 0;
    world.disk.before = [&](std::string_view operation, const std::string&) {
      if (operation != "close" && ++operations == stop) throw PowerLoss{};
    };
    try {
      ReplaceFile("/data/settings", "new");
    } catch (const PowerLoss&) {
    }
    world.disk.before = nullptr;
    world.disk.LosePower();
    const std::string found = ReadFile("/data/settings");
    EXPECT_EQ(found, stop <= 5 ? "old" : "new") << "new once the folder is synced";
  }
}

TEST_F(Files, AFullDiskKeepsTheOldContentAndItsRoom) {
  ReplaceFile("/data/settings", "old");
  world.disk.SetRoom(3);
  EXPECT_THROW(ReplaceFile("/data/settings", "longer"), RuntimeFault);
  EXPECT_EQ(ReadFile("/data/settings"), "old");
  EXPECT_EQ(world.disk.FreeRoom("/data"), 3);
  ReplaceFile("/data/settings", "new");
  EXPECT_EQ(ReadFile("/data/settings"), "new");
}

TEST_F(Files, AnAppendIsOneWriteAndOneSync) {
  AppendToFile("/data/rows", "one\r\n");
  const auto before = world.disk.OperationCount();
  std::vector<std::string> done;
  world.disk.before = [&](std::string_view operation, const std::string&) {
    done.emplace_back(operation);
  };
  AppendToFile("/data/rows", "two\r\n");
  EXPECT_EQ(done, (std::vector<std::string>{"append", "write", "sync", "close"}));
  EXPECT_EQ(world.disk.OperationCount() - before, 4);
  EXPECT_EQ(ReadFile("/data/rows"), "one\r\ntwo\r\n");
}

TEST_F(Files, AnAcknowledgedRowOutlivesAPowerLoss) {
  AppendToFile("/data/rows", "one\r\n");
  AppendToFile("/data/rows", "two\r\n");
  const auto handle = world.disk.OpenAppend("/data/rows");
  world.disk.Write(handle, "never synced\r\n");
  world.disk.LosePower();
  EXPECT_EQ(ReadFile("/data/rows"), "one\r\ntwo\r\n");
}

TEST_F(Files, AFailedAppendKeepsTheRowsBeforeIt) {
  AppendToFile("/data/rows", "one\r\n");
  for (const char* operation : {"append", "write"}) {
    FailAt(operation);
    EXPECT_THROW(AppendToFile("/data/rows", "two\r\n"), RuntimeFault);
    world.disk.before = nullptr;
    EXPECT_EQ(ReadFile("/data/rows"), "one\r\n");
  }
}

TEST_F(Files, AFailingCloseIsNoFault) {
  FailAt("close");
  EXPECT_NO_THROW(AppendToFile("/data/rows", "one\r\n"));
  EXPECT_EQ(ReadFile("/data/rows"), "one\r\n");
}

TEST_F(Files, CopyTakesTheWholeContent) {
  world.disk.Put("/data/from", std::string("a\0b\xFF", 4));
  CopyFile("/data/from", "/data/to");
  EXPECT_EQ(ReadFile("/data/to"), std::string("a\0b\xFF", 4));
}

TEST_F(Files, TextIsUtf8AndOtherBytesAreWindows1252) {
  world.disk.Put("/data/text", "20\xB0 \xC3\xA9");
  EXPECT_EQ(ReadTextFile("/data/text"), "20\xC2\xB0 \xC3\xA9");
}

TEST(Paths, JoinDoublesNoSeparator) {
  World world;
  EXPECT_EQ(JoinPath("/data", "file"), "/data/file");
  EXPECT_EQ(JoinPath("/data/", "file"), "/data/file");
  EXPECT_EQ(JoinPath("/", "file"), "/file");
  EXPECT_EQ(JoinPath("", "file"), "file");
}

TEST(Paths, FolderOfAPath) {
  const struct {
    const char* path;
    const char* folder;
  } rows[] = {{"/a/b/c", "/a/b"}, {"/a", "/"},           {"/", "/"},
              {"name", "."},      {"C:\\a\\b", "C:\\a"}, {"C:\\a", "C:\\"}};
  for (const auto& row : rows) EXPECT_EQ(FolderOf(row.path), row.folder) << row.path;
}

TEST(Paths, RootsOfBothSystems) {
  for (const char* root : {"/", "C:\\", "d:/"}) EXPECT_TRUE(IsRoot(root)) << root;
  for (const char* other : {"", "/a", "C:", "C:\\a"}) EXPECT_FALSE(IsRoot(other)) << other;
}

TEST(Paths, ResolvedBeginAtARoot) {
  World world;
  const struct {
    const char* path;
    const char* resolved;
  } rows[] = {
      {"/a/b", "/a/b"},
      {"x", "/from/here/x"},
      {".", "/from/here"},
      {"..", "/from"},
      {"/", "/"},
      {"//", "/"},
      {"/a/b/", "/a/b"},
      {"//a///b//", "/a/b"},
      {"/a/..", "/"},
      {"/a/../../b/.", "/b"},
      {"../x/", "/from/x"},
      {"../../..", "/"},
      {"", "/from/here"},
      {"/.a/b..", "/.a/b.."},
      {"C:/x", "/from/here/C:/x"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(ResolvedPath("/from/here", row.path), row.resolved) << row.path;
  }
}

TEST(Paths, ResolvedBeginAtADriveWhereThereAreDrives) {
  struct DiskOfDrives : MemoryDisk {
    char Separator() const override { return '\\'; }
  };
  World world;
  DiskOfDrives disk;
  UseDisk(&disk);
  const struct {
    const char* path;
    const char* resolved;
  } rows[] = {{"D:\\", "D:\\"},
              {"D:\\a\\.\\b\\", "D:\\a\\b"},
              {"D:\\a\\..\\..\\b", "D:\\b"},
              {"x\\y/z", "C:\\from\\x\\y\\z"}};
  for (const auto& row : rows) {
    EXPECT_EQ(ResolvedPath("C:\\from", row.path), row.resolved) << row.path;
  }
}

TEST(Paths, AFreeNameStandsBeforeTheExtension) {
  World world;
  EXPECT_EQ(FreeNameBeside("/d/hole.cpt"), "/d/hole.cpt");
  world.disk.Put("/d/hole.cpt", "");
  EXPECT_EQ(FreeNameBeside("/d/hole.cpt"), "/d/hole (2).cpt");
  world.disk.Put("/d/hole (2).cpt", "");
  EXPECT_EQ(FreeNameBeside("/d/hole.cpt"), "/d/hole (3).cpt");
  world.disk.Put("/d.e/name", "");
  EXPECT_EQ(FreeNameBeside("/d.e/name"), "/d.e/name (2)");
}

TEST_F(Files, AFileThatAnotherProcessWroteIsOnTheMediumOnceItIsSettled) {
  const auto handle = world.disk.Create("/data/rows");
  world.disk.Write(handle, "one\r\n");
  world.disk.LosePower(Loss::Nothing);  // that process died
  EXPECT_EQ(world.disk.After(Loss::ContentsAndNames).Files().count("/data/rows"), 0U);
  SettleFile("/data/rows");
  world.disk.LosePower();
  EXPECT_EQ(ReadFile("/data/rows"), "one\r\n");
}

// Folders.

/// What the medium holds of the folder and of a file that was synced in it.
bool OutlivesAPowerLoss(World& world, const std::string& folder) {
  AppendToFile(JoinPath(folder, "rows"), "one\r\n");
  world.disk.LosePower();
  return world.disk.FileExists(JoinPath(folder, "rows"));
}

TEST_F(Files, AFolderMadeHereOutlivesAPowerLossWithWhatIsInIt) {
  for (const char* folder : {"/data/new", "/data/a/b/c", "/data/d/e/", "/top"}) {
    SCOPED_TRACE(folder);
    MakeWholeFolder(folder);
    EXPECT_TRUE(OutlivesAPowerLoss(world, folder));
  }
  world.disk.MakeFolder("/data/plain");
  EXPECT_FALSE(OutlivesAPowerLoss(world, "/data/plain")) << "the disk's own call syncs no name";
}

TEST_F(Files, AFolderWhoseMakingWasCutOffIsOnTheMediumAfterASecondAttempt) {
  FailAt("sync folder", 2);  // the first is that of the folder above "/data"
  EXPECT_THROW(MakeWholeFolder("/data/new"), RuntimeFault);
  EXPECT_TRUE(world.disk.FolderExists("/data/new"));
  world.disk.before = nullptr;
  MakeWholeFolder("/data/new");
  EXPECT_TRUE(OutlivesAPowerLoss(world, "/data/new"));
}

TEST_F(Files, AFolderThatStandsIsNoFaultThoughTheOneAboveCannotBeSynced) {
  FailAt("sync folder");
  EXPECT_NO_THROW(MakeWholeFolder("/data"));
  world.disk.before = nullptr;
  EXPECT_NO_THROW(MakeWholeFolder("/"));
}

TEST_F(Files, AFileInThePlaceOfAFolderIsAFault) {
  world.disk.Put("/data/file", "");
  for (const char* folder : {"/data/file", "/data/file/below"}) {
    EXPECT_THROW(MakeWholeFolder(folder), RuntimeFault) << folder;
  }
}

}  // namespace
}  // namespace penlog
