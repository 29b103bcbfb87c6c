// A disk in memory with the same calls, for virtual time; it can be written out to a folder. Beside
// what a program sees it keeps what the medium holds, and it can stop the world at any operation.
//
// Fault model of the medium: the content of a file is on it after a sync of the file, the names in
// a folder (those of folders too) after a sync of the folder. A rename is atomic: the old name, the
// new one or both lead to the file. Emptying a file is on the medium at once, the worst there is.
// A sync that failed is made good by the next one, but for a fate that says otherwise. A lock goes
// with its process.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/disk.h"

namespace penlog {

/// What is gone when a machine or a process stops.
enum class Loss {
  Nothing,           ///< the process alone died: all that was written stays
  Contents,          ///< each file holds what was synced; the names were quicker than the contents
  ContentsAndNames,  ///< the worst: names too are those of the last sync of their folder
  HalfTail,          ///< as `Contents`, but of what was not synced the first half has landed
};

/// How one operation goes.
enum class Fate {
  Done,
  StopBefore,    ///< the process dies before it
  StopAmid,      ///< in it: a half of the bytes, or of a folder's changed names; a file made, and
                 ///< no handle to it; the other operations have no middle and are as before them
  StopAfter,     ///< behind it, before it returned
  Refused,       ///< an input-output error, and nothing was done
  RefusedHalf,   ///< the same with a half done, as in `StopAmid`
  RefusedAfter,  ///< the same, and yet all was done
  RefusedAndForgotten,  ///< as `Refused`; of a sync: what it was to bring to the medium stays in
                        ///< sight, and no later sync brings it there, only writing it once more
};

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
  std::int64_t SizeOf(const std::string& path) override;
  bool FolderExists(const std::string& path) override;
  std::vector<DirectoryEntry> List(const std::string& folder) override;
  std::int64_t FreeRoom(const std::string& path) override;
  bool Lock(const std::string& path) override;
  void Unlock(const std::string& path) override;
  std::vector<std::string> Drives() override;

  /// Files by path, for tests: whole contents.
  const std::map<std::string, std::string>& Files() const { return files_; }
  /// Lays a file down on the medium, with the folders above it.
  void Put(const std::string& path, std::string content);
  /// The same with a folder.
  void PutFolder(const std::string& path);
  /// Bytes that may still be written before "disk full"; none is no limit.
  void SetRoom(std::int64_t bytes) { room_ = bytes; }
  /// Each write below this folder is refused ("permission denied"); empty for none.
  void SetReadOnly(const std::string& folder) { read_only_ = folder; }
  /// Operations so far (create, open, write, sync, close, rename, remove): a measure for tests.
  std::int64_t OperationCount() const { return operations_; }

  /// Runs before each of these, with "create", "append", "write", "sync", "close", "rename",
  /// "remove", "make folder" or "sync folder" and the path; what it throws fails the operation.
  std::function<void(std::string_view operation, const std::string& path)> before;
  /// Decides how each of them goes; `number` counts them from 1.
  std::function<Fate(std::string_view operation, const std::string& path, std::int64_t number)>
      fate;
  /// Runs behind each of them that was done and is about to return.
  std::function<void(std::string_view operation, const std::string& path)> after;

  /// The process is dead: no operation does anything any more, and each but a close raises a
  /// `RuntimeFault`. A fate that stops does the same and ends the program: by a `ProgramEnd` from
  /// the operation, behind a close (destructors call it) by the next yield.
  void Stop();
  bool Stopped() const { return stopped_; }
  /// The next process: handles and locks of the dead one are gone.
  void GoOn();
  /// The machine stops, and the next process begins with what is left.
  void LosePower(Loss loss = Loss::ContentsAndNames);
  /// The disk as the next process would find it: without hooks and limits.
  MemoryDisk After(Loss loss) const;

  /// Writes all files, with their folders, below `folder` of another disk.
  void WriteOut(Disk& disk, const std::string& folder) const;

 private:
  /// A part of an operation; a null one does nothing.
  using Part = std::function<void()>;

  void Perform(std::string_view operation, const std::string& path, const Part& whole,
               const Part& half = {}, const Part& forgets = {});
  void Die(std::string_view operation);
  void CheckWritable(const std::string& path) const;
  std::string PathOf(Handle handle) const;
  void EmptyFile(const std::string& path);
  void Append(const std::string& path, std::string_view bytes);
  void SyncTail(const std::string& path, bool half);
  void ForgetTail(const std::string& path);
  void Forget(const std::string& path);
  void AddFolders(const std::string& path);
  std::vector<std::string> ChangedNames(const std::string& folder) const;
  void SettleName(const std::string& path);
  bool IsOnMedium(const std::string& folder) const;
  std::string SyncedOf(int file) const;
  void FallBackToMedium();
  void FallBackToContents(bool half_tails);
  void SettleAll();

  /// What the medium holds, files by their number.
  struct Medium {
    std::map<int, std::string> contents;  // a file without one is empty
    std::map<std::string, int> names;
    std::set<std::string> folders;
  };

  std::map<std::string, std::string> files_;  // as a program sees them
  std::map<std::string, int> numbers_;        // of the same files
  std::set<std::string> folders_;
  Medium medium_;
  std::set<std::string> locks_;
  std::map<Handle, std::string> open_;
  Handle next_handle_ = 1;
  int next_file_ = 1;
  std::int64_t room_ = -1;
  std::int64_t operations_ = 0;
  std::string read_only_;
  bool stopped_ = false;
};

}  // namespace penlog
