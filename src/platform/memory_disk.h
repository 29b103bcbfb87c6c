// A disk in memory with the same calls, for virtual time; it can be written out to a folder.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include "platform/disk.h"

namespace penlog {

class MemoryDisk : public Disk {
 public:
  MemoryDisk();

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
  bool FolderExists(const std::string& path) override;
  std::vector<DirectoryEntry> List(const std::string& folder) override;
  std::int64_t FreeRoom(const std::string& path) override;
  bool Lock(const std::string& path) override;
  void Unlock(const std::string& path) override;
  std::vector<std::string> Drives() override;

  /// Files by path, for tests: whole contents.
  const std::map<std::string, std::string>& Files() const { return files_; }
  /// Lays a file down, with the folders above it.
  void Put(const std::string& path, std::string content);
  /// Bytes that may still be written before "disk full"; none is no limit.
  void SetRoom(std::int64_t bytes) { room_ = bytes; }
  /// Each write below this folder is refused ("permission denied"); empty for none.
  void SetReadOnly(const std::string& folder) { read_only_ = folder; }
  /// Operations so far (create, open, write, sync, close, rename, remove): a measure for tests.
  std::int64_t OperationCount() const { return operations_; }
  /// Runs before each of these, with "create", "append", "write", "sync", "close", "rename",
  /// "remove", "make folder" or "sync folder" and the path; what it throws fails the operation.
  std::function<void(std::string_view operation, const std::string& path)> before;
  /// The machine stops: handles and locks are gone, and each file holds what was synced last.
  void LosePower();
  /// Writes all files, with their folders, below `folder` of another disk.
  void WriteOut(Disk& disk, const std::string& folder) const;

 private:
  void CountOperation(std::string_view operation, const std::string& path);
  void CheckWritable(const std::string& path) const;
  std::string PathOf(Handle handle) const;
  void Forget(const std::string& path);
  void AddFolders(const std::string& path);

  std::map<std::string, std::string> files_;
  std::map<std::string, std::string> synced_;  // as on the medium; a path without one is empty
  std::set<std::string> folders_;
  std::set<std::string> locks_;
  std::map<Handle, std::string> open_;
  Handle next_handle_ = 1;
  std::int64_t room_ = -1;
  std::int64_t operations_ = 0;
  std::string read_only_;
};

}  // namespace penlog
