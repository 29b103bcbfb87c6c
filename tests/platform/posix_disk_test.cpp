// What only the real disk does.
#include "platform/posix/posix_disk.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "platform/runtime_fault.h"
#include "support/temp_folder.h"

namespace penlog {
namespace {

/// Files may not grow beyond `bytes` while it stands: a write then ends in its middle.
class SizeLimit {
 public:
  explicit SizeLimit(rlim_t bytes) : old_handler_(::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &old_);
    const rlimit limit{bytes, old_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~SizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &old_);
    ::signal(SIGXFSZ, old_handler_);
  }
  SizeLimit(const SizeLimit&) = delete;
  SizeLimit& operator=(const SizeLimit&) = delete;

 private:
  void (*old_handler_)(int);
  rlimit old_{};
};

TEST(PosixDisk, AWriteThatFailsInItsMiddleLeavesTheFileAsItWas) {
  const TempFolder folder;
  PosixDisk disk;
  const auto handle = disk.OpenAppend(folder / "rows");
  disk.Write(handle, "first row\r\n");
  {
    const SizeLimit limit(20);
    EXPECT_THROW(disk.Write(handle, "second row, longer\r\n"), RuntimeFault);
  }
  EXPECT_EQ(disk.Read(folder / "rows"), "first row\r\n");
  disk.Write(handle, "third row\r\n");
  EXPECT_EQ(disk.Read(folder / "rows"), "first row\r\nthird row\r\n");
}

TEST(PosixDisk, ASecondDiskFindsTheLockTaken) {
  const TempFolder folder;
  PosixDisk disk;
  PosixDisk other;
  EXPECT_TRUE(disk.Lock(folder / "lock"));
  EXPECT_FALSE(other.Lock(folder / "lock"));
  disk.Unlock(folder / "lock");
  EXPECT_TRUE(other.Lock(folder / "lock"));
}

TEST(PosixDisk, TheLockGoesWithItsProcess) {
  const TempFolder folder;
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    PosixDisk disk;
    const char said = disk.Lock(folder / "lock") ? 'y' : 'n';
    (void)!::write(ready[1], &said, 1);
    ::pause();
    ::_exit(0);
  }
  char said = 0;
  ASSERT_EQ(::read(ready[0], &said, 1), 1);
  EXPECT_EQ(said, 'y');
  PosixDisk disk;
  EXPECT_FALSE(disk.Lock(folder / "lock"));
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  EXPECT_TRUE(disk.Lock(folder / "lock"));
  ::close(ready[0]);
  ::close(ready[1]);
}

TEST(PosixDisk, AStartedProgramDoesNotInheritTheLock) {
  const TempFolder folder;
  auto disk = std::make_unique<PosixDisk>();
  ASSERT_TRUE(disk->Lock(folder / "lock"));
  const pid_t child = ::fork();
  if (child == 0) {
    ::execlp("sleep", "sleep", "5", nullptr);
    ::_exit(1);
  }
  const std::string program = "/proc/" + std::to_string(child) + "/exe";
  std::error_code ignored;
  const auto self = std::filesystem::read_symlink("/proc/self/exe");
  for (int i = 0; i < 200 && std::filesystem::read_symlink(program, ignored) == self; ++i) {
    ::usleep(5000);
  }
  disk.reset();
  PosixDisk next;
  EXPECT_TRUE(next.Lock(folder / "lock"));
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
}

TEST(PosixDisk, ALockThatCannotBeMadeFaults) {
  const TempFolder folder;
  PosixDisk disk;
  EXPECT_THROW(disk.Lock(folder / "no folder/lock"), RuntimeFault);
}

TEST(PosixDisk, ALinkToAFolderIsListedAsAFolder) {
  const TempFolder folder;
  PosixDisk disk;
  disk.MakeFolder(folder / "real");
  ASSERT_EQ(::symlink("real", (folder / "link").c_str()), 0);
  ASSERT_EQ(::symlink("nowhere", (folder / "dangling").c_str()), 0);
  const auto entries = disk.List(folder.Path());
  ASSERT_EQ(entries.size(), 3u);
  EXPECT_FALSE(entries[0].is_folder);
  EXPECT_TRUE(entries[1].is_folder);
}

}  // namespace
}  // namespace penlog
