// All file work, in single operations, so that a disk in memory can fail or stop the world before,
// in or after any of them. `files.h` composes them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace penlog {

struct DirectoryEntry {
  std::string name;
  bool is_folder = false;
};

/// Failures raise a `RuntimeFault` whose text names the path and the reason.
class Disk {
 public:
  virtual ~Disk() = default;

  /// A handle for writing; above 0.
  using Handle = int;

  /// A new empty file, or an existing one emptied.
  virtual Handle Create(const std::string& path) = 0;
  /// Opens for appending; makes the file if it is missing.
  virtual Handle OpenAppend(const std::string& path) = 0;
  /// One write: all bytes or a fault.
  virtual void Write(Handle handle, std::string_view bytes) = 0;
  /// What was written is on the medium when this returns.
  virtual void Sync(Handle handle) = 0;
  virtual void Close(Handle handle) = 0;
  /// Names that were created, renamed or removed in the folder are on the medium.
  virtual void SyncFolder(const std::string& folder) = 0;
  /// Replaces an existing `to`.
  virtual void Rename(const std::string& from, const std::string& to) = 0;
  virtual void Remove(const std::string& path) = 0;
  /// Makes the folder and those above it; an existing one is no failure.
  virtual void MakeFolder(const std::string& path) = 0;

  virtual std::string Read(const std::string& path) = 0;
  virtual bool FileExists(const std::string& path) = 0;
  /// Bytes of a file, without a look at them; -1 where there is none.
  virtual std::int64_t SizeOf(const std::string& path) = 0;
  virtual bool FolderExists(const std::string& path) = 0;
  /// Entries of a folder, sorted by name; empty for a folder that can't be read.
  virtual std::vector<DirectoryEntry> List(const std::string& folder) = 0;
  /// Free room in bytes where `path` lies.
  virtual std::int64_t FreeRoom(const std::string& path) = 0;
  /// Takes an exclusive lock that the system drops with the process; false if another has it.
  virtual bool Lock(const std::string& path) = 0;
  virtual void Unlock(const std::string& path) = 0;
  /// The roots to choose from: drive letters, or the one root.
  virtual std::vector<std::string> Drives() = 0;
  /// '/' or '\\'.
  virtual char Separator() const { return '/'; }
};

/// The disk in use.
Disk& TheDisk();
void UseDisk(Disk* disk);

}  // namespace penlog
