#include "platform/memory_disk.h"

#include "platform/files.h"
#include "platform/runtime_fault.h"

namespace penlog {

namespace {

[[noreturn]] void Fail(const std::string& path, const char* reason) {
  throw RuntimeFault(path + ": " + reason);
}

bool IsBelow(const std::string& path, const std::string& folder) {
  return path.size() > folder.size() && path.compare(0, folder.size(), folder) == 0 &&
         (folder.back() == '/' || path[folder.size()] == '/');
}

// Folders are kept without the separator behind them.
std::string Plain(const std::string& folder) {
  std::string plain = folder;
  while (plain.size() > 1 && plain.back() == '/') plain.pop_back();
  return plain;
}

}  // namespace

MemoryDisk::MemoryDisk() {
  folders_.insert("/");
}

void MemoryDisk::CheckWritable(const std::string& path) const {
  if (!read_only_.empty() && (path == read_only_ || IsBelow(path, read_only_))) {
    Fail(path, "Permission denied");
  }
}

void MemoryDisk::CountOperation(std::string_view operation, const std::string& path) {
  ++operations_;
  if (before) before(operation, path);
}

Disk::Handle MemoryDisk::Create(const std::string& path) {
  CountOperation("create", path);
  CheckWritable(path);
  if (!FolderExists(FolderOf(path))) Fail(path, "No such file or directory");
  if (FolderExists(path)) Fail(path, "Is a directory");
  if (room_ >= 0) room_ += static_cast<std::int64_t>(files_[path].size());
  files_[path].clear();
  synced_.erase(path);
  open_[next_handle_] = path;
  return next_handle_++;
}

Disk::Handle MemoryDisk::OpenAppend(const std::string& path) {
  if (!FileExists(path)) return Create(path);
  CountOperation("append", path);
  CheckWritable(path);
  open_[next_handle_] = path;
  return next_handle_++;
}

void MemoryDisk::Write(Handle handle, std::string_view bytes) {
  const std::string path = PathOf(handle);
  CountOperation("write", path);
  const auto size = static_cast<std::int64_t>(bytes.size());
  if (room_ >= 0 && size > room_) Fail(path, "No space left on device");
  if (room_ >= 0) room_ -= size;
  const auto file = files_.find(path);  // one that was removed meanwhile takes it nowhere
  if (file != files_.end()) file->second += bytes;
}

void MemoryDisk::Sync(Handle handle) {
  const std::string path = PathOf(handle);
  CountOperation("sync", path);
  const auto file = files_.find(path);
  if (file == files_.end()) return;
  std::string& synced = synced_[path];  // files only grow: what was synced is their head
  synced.append(file->second, synced.size());
}

void MemoryDisk::Close(Handle handle) {
  const std::string path = PathOf(handle);
  open_.erase(handle);
  CountOperation("close", path);
}

std::string MemoryDisk::PathOf(Handle handle) const {
  const auto found = open_.find(handle);
  if (found == open_.end()) throw RuntimeFault("Bad file handle");
  return found->second;
}

void MemoryDisk::SyncFolder(const std::string& folder) {
  CountOperation("sync folder", folder);
  if (!FolderExists(folder)) Fail(folder, "No such file or directory");
}

void MemoryDisk::Rename(const std::string& from, const std::string& to) {
  CountOperation("rename", to);
  CheckWritable(from);
  CheckWritable(to);
  const auto found = files_.find(from);
  if (found == files_.end()) Fail(from, "No such file or directory");
  if (!FolderExists(FolderOf(to))) Fail(from, "No such file or directory");
  if (FolderExists(to)) Fail(from, "Is a directory");
  if (from == to) return;
  if (FileExists(to)) Forget(to);
  files_[to] = std::move(found->second);
  files_.erase(from);
  synced_[to] = synced_[from];
  synced_.erase(from);
  for (auto& [handle, path] : open_) {
    if (path == from) path = to;
  }
}

void MemoryDisk::Remove(const std::string& path) {
  CountOperation("remove", path);
  CheckWritable(path);
  if (FolderExists(path)) Fail(path, "Is a directory");
  if (!FileExists(path)) Fail(path, "No such file or directory");
  Forget(path);
}

// Its open handles stay, and lead nowhere.
void MemoryDisk::Forget(const std::string& path) {
  if (room_ >= 0) room_ += static_cast<std::int64_t>(files_[path].size());
  files_.erase(path);
  synced_.erase(path);
  for (auto& [handle, opened] : open_) {
    if (opened == path) opened += " (removed)";
  }
}

void MemoryDisk::MakeFolder(const std::string& path) {
  CountOperation("make folder", path);
  for (std::string folder = Plain(path); !FolderExists(folder); folder = FolderOf(folder)) {
    CheckWritable(folder);
    if (FileExists(folder)) Fail(folder, "Not a directory");
  }
  AddFolders(path);
}

void MemoryDisk::AddFolders(const std::string& path) {
  for (std::string folder = Plain(path); folders_.insert(folder).second;
       folder = FolderOf(folder)) {
  }
}

std::string MemoryDisk::Read(const std::string& path) {
  const auto found = files_.find(path);
  if (found == files_.end()) Fail(path, "No such file or directory");
  return found->second;
}

bool MemoryDisk::FileExists(const std::string& path) {
  return files_.count(path) > 0;
}

bool MemoryDisk::FolderExists(const std::string& path) {
  return folders_.count(Plain(path)) > 0;
}

std::vector<DirectoryEntry> MemoryDisk::List(const std::string& path) {
  const std::string folder = Plain(path);
  std::map<std::string, bool> names;
  const auto add = [&](const std::string& entry, bool is_folder) {
    if (entry == folder || !IsBelow(entry, folder)) return;
    const std::string rest = entry.substr(IsRoot(folder) ? 1 : folder.size() + 1);
    if (rest.find('/') == std::string::npos) names.emplace(rest, is_folder);
  };
  for (const auto& name : folders_) add(name, true);
  for (const auto& file : files_) add(file.first, false);
  std::vector<DirectoryEntry> entries;
  entries.reserve(names.size());
  for (const auto& [name, is_folder] : names) entries.push_back({name, is_folder});
  return entries;
}

std::int64_t MemoryDisk::FreeRoom(const std::string&) {
  return room_ >= 0 ? room_ : std::int64_t{1} << 40;
}

bool MemoryDisk::Lock(const std::string& path) {
  return locks_.insert(path).second;
}

void MemoryDisk::Unlock(const std::string& path) {
  locks_.erase(path);
}

std::vector<std::string> MemoryDisk::Drives() {
  return {"/"};
}

void MemoryDisk::Put(const std::string& path, std::string content) {
  AddFolders(FolderOf(path));
  synced_[path] = content;
  files_[path] = std::move(content);
}

void MemoryDisk::LosePower() {
  open_.clear();
  locks_.clear();
  for (auto& [path, content] : files_) content = synced_[path];
}

void MemoryDisk::WriteOut(Disk& disk, const std::string& folder) const {
  for (const auto& [path, content] : files_) {
    const std::string target = Plain(folder) + (path.front() == '/' ? "" : "/") + path;
    disk.MakeFolder(FolderOf(target));
    const Handle handle = disk.Create(target);
    disk.Write(handle, content);
    disk.Close(handle);
  }
}

}  // namespace penlog
