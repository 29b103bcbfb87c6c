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

}  // namespace

MemoryDisk::MemoryDisk() { folders_.insert("/"); }

void MemoryDisk::CountOperation(const std::string& path) {
  ++operations_;
  if (!read_only_.empty() && (path == read_only_ || IsBelow(path, read_only_))) {
    Fail(path, "Permission denied");
  }
}

Disk::Handle MemoryDisk::Create(const std::string& path) {
  CountOperation(path);
  if (!FolderExists(FolderOf(path))) Fail(path, "No such file or directory");
  if (FolderExists(path)) Fail(path, "Is a directory");
  files_[path].clear();
  open_[next_handle_] = path;
  return next_handle_++;
}

Disk::Handle MemoryDisk::OpenAppend(const std::string& path) {
  if (!FileExists(path)) return Create(path);
  CountOperation(path);
  open_[next_handle_] = path;
  return next_handle_++;
}

void MemoryDisk::Write(Handle handle, std::string_view bytes) {
  const std::string& path = open_.at(handle);
  CountOperation(path);
  const auto size = static_cast<std::int64_t>(bytes.size());
  if (room_ >= 0 && size > room_) Fail(path, "No space left on device");
  if (room_ >= 0) room_ -= size;
  files_[path] += bytes;
}

void MemoryDisk::Sync(Handle handle) { CountOperation(open_.at(handle)); }

void MemoryDisk::Close(Handle handle) {
  ++operations_;
  open_.erase(handle);
}

void MemoryDisk::SyncFolder(const std::string&) { ++operations_; }

void MemoryDisk::Rename(const std::string& from, const std::string& to) {
  CountOperation(to);
  const auto found = files_.find(from);
  if (found == files_.end()) Fail(from, "No such file or directory");
  if (from == to) return;
  files_[to] = std::move(found->second);
  files_.erase(from);
  for (auto& [handle, path] : open_) {
    if (path == from) path = to;
  }
}

void MemoryDisk::Remove(const std::string& path) {
  CountOperation(path);
  if (files_.erase(path) == 0) Fail(path, "No such file or directory");
}

void MemoryDisk::MakeFolder(const std::string& path) {
  CountOperation(path);
  for (std::string folder = path; folders_.insert(folder).second; folder = FolderOf(folder)) {
  }
}

std::string MemoryDisk::Read(const std::string& path) {
  const auto found = files_.find(path);
  if (found == files_.end()) Fail(path, "No such file or directory");
  return found->second;
}

bool MemoryDisk::FileExists(const std::string& path) { return files_.count(path) > 0; }

bool MemoryDisk::FolderExists(const std::string& path) {
  return folders_.count(IsRoot(path) || path.back() != '/' ? path
                                                           : path.substr(0, path.size() - 1)) > 0;
}

std::vector<DirectoryEntry> MemoryDisk::List(const std::string& folder) {
  std::map<std::string, bool> names;
  const auto add = [&](const std::string& path, bool is_folder) {
    if (path == folder || !IsBelow(path, folder)) return;
    const std::string rest = path.substr(IsRoot(folder) ? 1 : folder.size() + 1);
    if (rest.find('/') == std::string::npos) names.emplace(rest, is_folder);
  };
  for (const auto& path : folders_) add(path, true);
  for (const auto& file : files_) add(file.first, false);
  std::vector<DirectoryEntry> entries;
  for (const auto& [name, is_folder] : names) entries.push_back({name, is_folder});
  return entries;
}

std::int64_t MemoryDisk::FreeRoom(const std::string&) {
  return room_ >= 0 ? room_ : std::int64_t{1} << 40;
}

bool MemoryDisk::Lock(const std::string& path) { return locks_.insert(path).second; }

void MemoryDisk::Unlock(const std::string& path) { locks_.erase(path); }

std::vector<std::string> MemoryDisk::Drives() { return {"/"}; }

void MemoryDisk::Put(const std::string& path, std::string content) {
  for (std::string folder = FolderOf(path); folders_.insert(folder).second;
       folder = FolderOf(folder)) {
  }
  files_[path] = std::move(content);
}

}  // namespace penlog
