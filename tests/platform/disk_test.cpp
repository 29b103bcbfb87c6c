// One table of tests for every disk.
#include "platform/disk.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <memory>
#include <string>

#include "platform/files.h"
#include "platform/memory_disk.h"
#include "platform/posix/posix_disk.h"
#include "platform/runtime_fault.h"
#include "support/temp_folder.h"

namespace penlog {
namespace {

/// A disk with a folder to work in, and its ways to fail.
class DiskBed {
 public:
  virtual ~DiskBed() = default;
  virtual Disk& TheirDisk() = 0;
  virtual std::string Root() = 0;
  /// A path on which each write finds the disk full.
  virtual std::string FullPath() = 0;
  virtual void MakeReadOnly(const std::string& folder) = 0;
};

class MemoryBed : public DiskBed {
 public:
  MemoryBed() { disk_.MakeFolder(Root()); }
  Disk& TheirDisk() override { return disk_; }
  std::string Root() override { return "/a place"; }
  std::string FullPath() override {
    disk_.SetRoom(0);
    return Root() + "/full";
  }
  void MakeReadOnly(const std::string& folder) override { disk_.SetReadOnly(folder); }

 private:
  MemoryDisk disk_;
};

class PosixBed : public DiskBed {
 public:
  ~PosixBed() override {
    if (::getuid() == 0) (void)!::seteuid(0);
    if (!read_only_.empty()) ::chmod(read_only_.c_str(), 0755);
  }
  Disk& TheirDisk() override { return disk_; }
  std::string Root() override { return folder_.Path(); }
  std::string FullPath() override {
    (void)!::symlink("/dev/full", (folder_ / "full").c_str());
    return folder_ / "full";
  }
  void MakeReadOnly(const std::string& folder) override {
    read_only_ = folder;
    ::chmod(folder.c_str(), 0555);
    constexpr uid_t kNobody = 65534;  // the superuser may write anywhere
    if (::getuid() == 0) (void)!::seteuid(kNobody);
  }

 private:
  TempFolder folder_;
  std::string read_only_;
  PosixDisk disk_;
};

struct EachDisk : testing::TestWithParam<std::shared_ptr<DiskBed> (*)()> {
  std::string Path(const std::string& name) { return bed->Root() + "/" + name; }
  void Lay(const std::string& name, std::string_view content) {
    const auto handle = disk.Create(Path(name));
    disk.Write(handle, content);
    disk.Sync(handle);
    disk.Close(handle);
  }
  /// The text of the fault that `act` raises.
  template <class Act>
  static std::string Fault(Act act) {
    try {
      act();
    } catch (const RuntimeFault& fault) {
      return fault.what();
    }
    return "none";
  }

  std::shared_ptr<DiskBed> bed = GetParam()();
  Disk& disk = bed->TheirDisk();
};

std::shared_ptr<DiskBed> InMemory() {
  return std::make_shared<MemoryBed>();
}
std::shared_ptr<DiskBed> OnPosix() {
  return std::make_shared<PosixBed>();
}

INSTANTIATE_TEST_SUITE_P(Disks, EachDisk, testing::Values(InMemory, OnPosix),
                         [](const auto& disk) { return disk.index == 0 ? "Memory" : "Posix"; });

TEST_P(EachDisk, CreateMakesAFileAndEmptiesOneThatIsThere) {
  Lay("file", "long content");
  EXPECT_EQ(disk.Read(Path("file")), "long content");
  Lay("file", "short");
  EXPECT_EQ(disk.Read(Path("file")), "short");
}

TEST_P(EachDisk, AllBytesComeBack) {
  std::string all;
  for (int i = 0; i < 300'000; ++i) all += static_cast<char>(i);
  Lay("bytes", all);
  EXPECT_TRUE(disk.Read(Path("bytes")) == all);
}

TEST_P(EachDisk, AppendMakesAFileAndAddsToOneThatIsThere) {
  for (const char* row : {"one\r\n", "two\r\n"}) {
    const auto handle = disk.OpenAppend(Path("rows"));
    disk.Write(handle, row);
    disk.Close(handle);
  }
  EXPECT_EQ(disk.Read(Path("rows")), "one\r\ntwo\r\n");
}

TEST_P(EachDisk, WhatIsWrittenIsReadBeforeTheSync) {
  const auto handle = disk.Create(Path("file"));
  disk.Write(handle, "here");
  EXPECT_EQ(disk.Read(Path("file")), "here");
  disk.Close(handle);
}

TEST_P(EachDisk, HandlesAreAboveZeroAndApart) {
  const auto first = disk.Create(Path("a"));
  const auto second = disk.Create(Path("b"));
  EXPECT_GT(first, 0);
  EXPECT_NE(first, second);
  disk.Write(second, "b");
  disk.Write(first, "a");
  disk.Close(first);
  disk.Close(second);
  EXPECT_EQ(disk.Read(Path("a")), "a");
  EXPECT_EQ(disk.Read(Path("b")), "b");
}

TEST_P(EachDisk, AClosedHandleFaults) {
  const auto handle = disk.Create(Path("a"));
  disk.Close(handle);
  EXPECT_THROW(disk.Write(handle, "x"), RuntimeFault);
  EXPECT_THROW(disk.Sync(handle), RuntimeFault);
  EXPECT_THROW(disk.Close(handle), RuntimeFault);
}

TEST_P(EachDisk, RenameReplacesWhatIsThere) {
  Lay("new", "new content");
  Lay("old", "old content");
  disk.Rename(Path("new"), Path("old"));
  disk.SyncFolder(bed->Root());
  EXPECT_EQ(disk.Read(Path("old")), "new content");
  EXPECT_FALSE(disk.FileExists(Path("new")));
}

TEST_P(EachDisk, AnOpenHandleFollowsTheRenamedFile) {
  const auto handle = disk.Create(Path("before"));
  disk.Rename(Path("before"), Path("after"));
  disk.Write(handle, "follows");
  disk.Close(handle);
  EXPECT_EQ(disk.Read(Path("after")), "follows");
}

TEST_P(EachDisk, AFileRemovedWhileOpenTakesNothingMore) {
  const auto handle = disk.Create(Path("file"));
  disk.Remove(Path("file"));
  disk.Write(handle, "nowhere");
  disk.Close(handle);
  EXPECT_FALSE(disk.FileExists(Path("file")));
}

TEST_P(EachDisk, FaultsNamePathAndReason) {
  const std::string absent = Path("absent");
  const std::string deep = Path("no folder") + "/file";
  const std::string reason = ": No such file or directory";
  EXPECT_EQ(Fault([&] { disk.Read(absent); }), absent + reason);
  EXPECT_EQ(Fault([&] { disk.Remove(absent); }), absent + reason);
  EXPECT_EQ(Fault([&] { disk.Rename(absent, Path("x")); }), absent + reason);
  EXPECT_EQ(Fault([&] { disk.Create(deep); }), deep + reason);
  EXPECT_EQ(Fault([&] { disk.OpenAppend(deep); }), deep + reason);
  EXPECT_EQ(Fault([&] { disk.SyncFolder(absent); }), absent + reason);
}

TEST_P(EachDisk, AFolderIsNoFile) {
  disk.MakeFolder(Path("folder"));
  const std::string fault = Path("folder") + ": Is a directory";
  EXPECT_EQ(Fault([&] { disk.Create(Path("folder")); }), fault);
  EXPECT_EQ(Fault([&] { disk.Remove(Path("folder")); }), fault);
  EXPECT_FALSE(disk.FileExists(Path("folder")));
  EXPECT_TRUE(disk.FolderExists(Path("folder")));
}

TEST_P(EachDisk, AFileIsNoFolder) {
  Lay("file", "");
  EXPECT_EQ(Fault([&] { disk.MakeFolder(Path("file")); }), Path("file") + ": Not a directory");
  EXPECT_THROW(disk.MakeFolder(Path("file") + "/below"), RuntimeFault);
  EXPECT_FALSE(disk.FolderExists(Path("file")));
}

TEST_P(EachDisk, MakeFolderMakesThoseAboveAndTakesOneThatIsThere) {
  disk.MakeFolder(Path("a/b/c"));
  disk.MakeFolder(Path("a/b/c"));
  disk.MakeFolder(Path("a/b/d/"));
  EXPECT_TRUE(disk.FolderExists(Path("a")));
  EXPECT_TRUE(disk.FolderExists(Path("a/b/c")));
  EXPECT_TRUE(disk.FolderExists(Path("a/b/d")));
  EXPECT_TRUE(disk.FolderExists(Path("a/b/d/")));
  EXPECT_FALSE(disk.FolderExists(Path("b")));
}

TEST_P(EachDisk, AnEmptyPathNamesNothing) {
  EXPECT_FALSE(disk.FolderExists(""));
  EXPECT_FALSE(disk.FileExists(""));
}

TEST_P(EachDisk, ListIsSortedAndTellsFoldersFromFiles) {
  Lay("b file", "");
  Lay("C file", "");
  disk.MakeFolder(Path("a folder/below"));
  for (const auto& folder : {bed->Root(), bed->Root() + "/"}) {
    const auto entries = disk.List(folder);
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0].name, "C file");
    EXPECT_FALSE(entries[0].is_folder);
    EXPECT_EQ(entries[1].name, "a folder");
    EXPECT_TRUE(entries[1].is_folder);
    EXPECT_EQ(entries[2].name, "b file");
  }
}

TEST_P(EachDisk, ListOfNoFolderIsEmpty) {
  Lay("file", "");
  EXPECT_TRUE(disk.List(Path("absent")).empty());
  EXPECT_TRUE(disk.List(Path("file")).empty());
}

TEST_P(EachDisk, SizeIsThatOfTheContentAndBelowZeroWithoutAFile) {
  Lay("file", "seven b");
  EXPECT_EQ(disk.SizeOf(Path("file")), 7);
  Lay("empty", "");
  EXPECT_EQ(disk.SizeOf(Path("empty")), 0);
  EXPECT_EQ(disk.SizeOf(Path("absent")), -1);
  EXPECT_EQ(disk.SizeOf(bed->Root()), -1) << "a folder is no file";
}

TEST_P(EachDisk, FreeRoomIsKnownForFoldersAndFilesToCome) {
  EXPECT_GT(disk.FreeRoom(bed->Root()), 0);
  EXPECT_GT(disk.FreeRoom(Path("to come")), 0);
}

TEST_P(EachDisk, AFullDiskFaultsAndTheHandleClosesAllTheSame) {
  const std::string path = bed->FullPath();
  const auto handle = disk.OpenAppend(path);
  EXPECT_EQ(Fault([&] { disk.Write(handle, "row"); }), path + ": No space left on device");
  EXPECT_NO_THROW(disk.Close(handle));
}

TEST_P(EachDisk, AReadOnlyFolderFaultsAndStaysAsItWas) {
  disk.MakeFolder(Path("sealed"));
  Lay("sealed/file", "kept");
  bed->MakeReadOnly(Path("sealed"));
  const std::string denied = ": Permission denied";
  const std::string fresh = Path("sealed/fresh");
  EXPECT_EQ(Fault([&] { disk.Create(fresh); }), fresh + denied);
  EXPECT_EQ(Fault([&] { disk.OpenAppend(fresh); }), fresh + denied);
  EXPECT_THROW(disk.Remove(Path("sealed/file")), RuntimeFault);
  EXPECT_THROW(disk.Rename(Path("sealed/file"), Path("sealed/other")), RuntimeFault);
  EXPECT_THROW(disk.MakeFolder(Path("sealed/folder")), RuntimeFault);
  EXPECT_NO_THROW(disk.MakeFolder(Path("sealed")));
  EXPECT_EQ(disk.Read(Path("sealed/file")), "kept");
}

TEST_P(EachDisk, ALockIsTakenOnceAndFreeAgainAfterTheUnlock) {
  const std::string path = Path("lock");
  EXPECT_TRUE(disk.Lock(path));
  EXPECT_FALSE(disk.Lock(path));
  disk.Unlock(path);
  EXPECT_TRUE(disk.Lock(path));
  disk.Unlock(path);
  EXPECT_NO_THROW(disk.Unlock(path));
}

TEST_P(EachDisk, TakesWholeFolderAndWhatStandsInAFileToItsMedium) {
  UseDisk(&disk);
  for (int attempt = 0; attempt < 2; ++attempt) {
    MakeWholeFolder(Path("x/y/z"));
    EXPECT_TRUE(disk.FolderExists(Path("x/y/z")));
  }
  AppendToFile(Path("x/y/z/rows"), "one\r\n");
  SettleFile(Path("x/y/z/rows"));
  EXPECT_EQ(disk.Read(Path("x/y/z/rows")), "one\r\n");
  EXPECT_THROW(MakeWholeFolder(Path("x/y/z/rows/below")), RuntimeFault);
  UseDisk(nullptr);
}

TEST_P(EachDisk, DrivesHoldTheRoot) {
  ASSERT_FALSE(disk.Drives().empty());
  EXPECT_TRUE(disk.FolderExists(disk.Drives()[0]));
}

}  // namespace
}  // namespace penlog
