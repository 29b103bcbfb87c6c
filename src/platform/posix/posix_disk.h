// The disk of a POSIX system. A write that fails in the middle takes back what it had written, so
// that a row is whole or absent on a full disk too.
#pragma once

#include <map>
#include <string>

#include "platform/disk.h"
#include "platform/posix/file_handle.h"

namespace penlog {

class PosixDisk : public Disk {
 public:
  Handle Create(const std::string& path) override;
  Handle OpenAppend(const std::string& path) override;
  void Write(Handle handle, std::string_view bytes) override;
  void Sync(Handle handle) override;
  void Close(Handle handle) override;
  void SyncFolder(const std::string& folder) override;
  void Rename(const std::string& from, const std::string& to) override;
  void Remove(const std::string& path) override;
  void MakeFolder(const std::string& path) override;
  std::string Read(const std::string& path) override;
  bool FileExists(const std::string& path) override;
  std::int64_t SizeOf(const std::string& path) override;
  bool FolderExists(const std::string& path) override;
  std::vector<DirectoryEntry> List(const std::string& folder) override;
  /// What this user may still use, not what the system keeps back.
  std::int64_t FreeRoom(const std::string& path) override;
  /// A lock file at `path`, made if it is missing and left behind. Programs started meanwhile don't
  /// inherit the lock.
  bool Lock(const std::string& path) override;
  void Unlock(const std::string& path) override;
  std::vector<std::string> Drives() override { return {"/"}; }

 private:
  struct OpenFile {
    FileHandle file;
    std::string path;
  };
  Handle Keep(const std::string& path, int flags);
  OpenFile& At(Handle handle);

  std::map<Handle, OpenFile> open_;
  std::map<std::string, FileHandle> locks_;
  Handle last_handle_ = 0;
};

/// The whole content of a file; a `RuntimeFault` if it can't be read.
std::string ReadPosixFile(const std::string& path);

/// Makes a new folder for this program alone, where the system keeps what is temporary: `name` and
/// six characters. Raises a `RuntimeFault` when none can be made.
std::string MakeTemporaryFolder(const std::string& name);

}  // namespace penlog
