#include "platform/memory_disk.h"

#include <utility>

#include "platform/files.h"
#include "platform/runtime_fault.h"
#include "platform/yield.h"

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
  medium_.folders.insert("/");
}

// Operations.

void MemoryDisk::Perform(std::string_view operation, const std::string& path, const Part& whole,
                         const Part& half, const Part& forgets) {
  ++operations_;
  if (stopped_) {
    if (operation == "close") return;
    Fail(path, "the process is dead");
  }
  if (before) before(operation, path);
  const Fate how = fate ? fate(operation, path, operations_) : Fate::Done;
  const bool is_whole = how == Fate::Done || how == Fate::StopAfter || how == Fate::RefusedAfter;
  const bool is_half = how == Fate::StopAmid || how == Fate::RefusedHalf;
  if (is_whole && whole) whole();
  if (is_half && half) half();
  if (how == Fate::RefusedAndForgotten && forgets) forgets();
  if (how == Fate::StopBefore || how == Fate::StopAmid || how == Fate::StopAfter) {
    return Die(operation);
  }
  if (how != Fate::Done) Fail(path, "Input/output error");
  if (after) after(operation, path);
}

void MemoryDisk::Die(std::string_view operation) {
  Stop();
  RequestEnd();
  if (operation != "close") throw ProgramEnd{};
}

void MemoryDisk::CheckWritable(const std::string& path) const {
  if (!read_only_.empty() && (path == read_only_ || IsBelow(path, read_only_))) {
    Fail(path, "Permission denied");
  }
}

void MemoryDisk::EmptyFile(const std::string& path) {
  CheckWritable(path);
  if (!FolderExists(FolderOf(path))) Fail(path, "No such file or directory");
  if (FolderExists(path)) Fail(path, "Is a directory");
  std::string& content = files_[path];
  if (room_ >= 0) room_ += static_cast<std::int64_t>(content.size());
  content.clear();
  const auto [number, is_new] = numbers_.emplace(path, next_file_);
  if (is_new) ++next_file_;
  medium_.contents.erase(number->second);
}

Disk::Handle MemoryDisk::Create(const std::string& path) {
  const Part make = [&] { EmptyFile(path); };
  Perform("create", path, make, make);
  open_[next_handle_] = path;
  return next_handle_++;
}

Disk::Handle MemoryDisk::OpenAppend(const std::string& path) {
  if (!FileExists(path)) return Create(path);
  Perform("append", path, [&] { CheckWritable(path); });
  open_[next_handle_] = path;
  return next_handle_++;
}

void MemoryDisk::Append(const std::string& path, std::string_view bytes) {
  const auto size = static_cast<std::int64_t>(bytes.size());
  if (room_ >= 0 && size > room_) Fail(path, "No space left on device");
  if (room_ >= 0) room_ -= size;
  const auto file = files_.find(path);  // one that was removed meanwhile takes it nowhere
  if (file != files_.end()) file->second += bytes;
}

void MemoryDisk::Write(Handle handle, std::string_view bytes) {
  const std::string path = PathOf(handle);
  Perform(
      "write", path, [&] { Append(path, bytes); },
      [&] { Append(path, bytes.substr(0, bytes.size() / 2)); });
}

/// Files only grow: what was synced is their head.
void MemoryDisk::SyncTail(const std::string& path, bool half) {
  const auto file = files_.find(path);
  if (file == files_.end()) return;
  std::string& synced = medium_.contents[numbers_[path]];
  const std::size_t tail = file->second.size() - synced.size();
  synced.append(file->second, synced.size(), half ? tail / 2 : tail);
}

/// The medium has taken the length alone: a hole stands there, and later syncs go on behind it.
void MemoryDisk::ForgetTail(const std::string& path) {
  const auto file = files_.find(path);
  if (file != files_.end()) medium_.contents[numbers_[path]].resize(file->second.size());
}

void MemoryDisk::Sync(Handle handle) {
  const std::string path = PathOf(handle);
  Perform(
      "sync", path, [&] { SyncTail(path, false); }, [&] { SyncTail(path, true); },
      [&] { ForgetTail(path); });
}

void MemoryDisk::Close(Handle handle) {
  const std::string path = PathOf(handle);
  open_.erase(handle);
  Perform("close", path, {});
}

std::string MemoryDisk::PathOf(Handle handle) const {
  const auto found = open_.find(handle);
  if (found == open_.end()) throw RuntimeFault("Bad file handle");
  return found->second;
}

/// Entries of the folder that the medium does not have so. In the order that does most harm when
/// the sync is cut off: what takes the place of another file, what is new, what is gone.
std::vector<std::string> MemoryDisk::ChangedNames(const std::string& folder) const {
  std::vector<std::string> replaced;
  std::vector<std::string> added;
  std::vector<std::string> gone;
  const auto is_in = [&](const std::string& path) {
    return !IsRoot(path) && FolderOf(path) == folder;
  };
  for (const auto& [path, number] : numbers_) {
    if (!is_in(path)) continue;
    const auto name = medium_.names.find(path);
    if (name == medium_.names.end()) {
      added.push_back(path);
    } else if (name->second != number) {
      replaced.push_back(path);
    }
  }
  for (const std::string& path : folders_) {
    if (is_in(path) && medium_.folders.count(path) == 0) added.push_back(path);
  }
  for (const auto& [path, number] : medium_.names) {
    if (is_in(path) && numbers_.count(path) == 0) gone.push_back(path);
  }
  replaced.insert(replaced.end(), added.begin(), added.end());
  replaced.insert(replaced.end(), gone.begin(), gone.end());
  return replaced;
}

void MemoryDisk::SettleName(const std::string& path) {
  if (folders_.count(path) > 0) medium_.folders.insert(path);
  const auto seen = numbers_.find(path);
  if (seen != numbers_.end()) {
    medium_.names[path] = seen->second;
  } else {
    medium_.names.erase(path);
  }
}

void MemoryDisk::SyncFolder(const std::string& folder) {
  const auto settle = [&](bool half) {
    if (!FolderExists(folder)) Fail(folder, "No such file or directory");
    const std::vector<std::string> changed = ChangedNames(Plain(folder));
    const std::size_t count = half ? changed.size() / 2 : changed.size();
    for (std::size_t i = 0; i < count; ++i) SettleName(changed[i]);
  };
  Perform(
      "sync folder", folder, [&] { settle(false); }, [&] { settle(true); });
}

void MemoryDisk::Rename(const std::string& from, const std::string& to) {
  Perform("rename", to, [&] {
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
    numbers_[to] = numbers_[from];
    numbers_.erase(from);
    for (auto& [handle, path] : open_) {
      if (path == from) path = to;
    }
  });
}

void MemoryDisk::Remove(const std::string& path) {
  Perform("remove", path, [&] {
    CheckWritable(path);
    if (FolderExists(path)) Fail(path, "Is a directory");
    if (!FileExists(path)) Fail(path, "No such file or directory");
    Forget(path);
  });
}

// Its open handles stay, and lead nowhere.
void MemoryDisk::Forget(const std::string& path) {
  if (room_ >= 0) room_ += static_cast<std::int64_t>(files_[path].size());
  files_.erase(path);
  numbers_.erase(path);
  for (auto& [handle, opened] : open_) {
    if (opened == path) opened += " (removed)";
  }
}

void MemoryDisk::MakeFolder(const std::string& path) {
  Perform("make folder", path, [&] {
    for (std::string folder = Plain(path); !FolderExists(folder); folder = FolderOf(folder)) {
      CheckWritable(folder);
      if (FileExists(folder)) Fail(folder, "Not a directory");
    }
    AddFolders(path);
  });
}

void MemoryDisk::AddFolders(const std::string& path) {
  for (std::string folder = Plain(path); folders_.insert(folder).second;
       folder = FolderOf(folder)) {
  }
}

// The end of a process, and what is left.

void MemoryDisk::Stop() {
  stopped_ = true;
}

void MemoryDisk::GoOn() {
  stopped_ = false;
  open_.clear();
  locks_.clear();
}

std::string MemoryDisk::SyncedOf(int file) const {
  const auto content = medium_.contents.find(file);
  return content == medium_.contents.end() ? std::string() : content->second;
}

/// A folder counts with all those above it.
bool MemoryDisk::IsOnMedium(const std::string& folder) const {
  if (medium_.folders.count(folder) == 0) return false;
  const std::string above = FolderOf(folder);
  return above == folder || IsOnMedium(above);
}

void MemoryDisk::FallBackToMedium() {
  files_.clear();
  numbers_.clear();
  folders_.clear();
  for (const std::string& folder : medium_.folders) {
    if (IsOnMedium(folder)) folders_.insert(folder);
  }
  for (const auto& [path, number] : medium_.names) {
    if (folders_.count(FolderOf(path)) == 0) continue;
    files_[path] = SyncedOf(number);
    numbers_[path] = number;
  }
}

void MemoryDisk::FallBackToContents(bool half_tails) {
  for (auto& [path, content] : files_) {
    std::string synced = SyncedOf(numbers_[path]);
    if (half_tails) {
      const std::size_t tail = content.size() - synced.size();
      synced.append(content, synced.size(), tail / 2);
    }
    content = std::move(synced);
  }
}

/// What is seen is what the medium holds.
void MemoryDisk::SettleAll() {
  medium_.folders = folders_;
  medium_.names.clear();
  medium_.contents.clear();
  next_file_ = 1;
  for (const auto& [path, content] : files_) {
    numbers_[path] = medium_.names[path] = next_file_;
    medium_.contents[next_file_++] = content;
  }
}

void MemoryDisk::LosePower(Loss loss) {
  GoOn();
  if (loss == Loss::Nothing) return;
  if (loss == Loss::ContentsAndNames) {
    FallBackToMedium();
  } else {
    FallBackToContents(loss == Loss::HalfTail);
  }
  SettleAll();
}

MemoryDisk MemoryDisk::After(Loss loss) const {
  MemoryDisk next = *this;
  next.before = {};
  next.fate = {};
  next.after = {};
  next.room_ = -1;
  next.read_only_.clear();
  next.operations_ = 0;
  next.LosePower(loss);
  return next;
}

// What is there.

std::string MemoryDisk::Read(const std::string& path) {
  const auto found = files_.find(path);
  if (found == files_.end()) Fail(path, "No such file or directory");
  return found->second;
}

bool MemoryDisk::FileExists(const std::string& path) {
  return files_.count(path) > 0;
}

std::int64_t MemoryDisk::SizeOf(const std::string& path) {
  const auto found = files_.find(path);
  return found == files_.end() ? -1 : static_cast<std::int64_t>(found->second.size());
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
  PutFolder(FolderOf(path));
  const auto [number, is_new] = numbers_.emplace(path, next_file_);
  if (is_new) ++next_file_;
  medium_.names[path] = number->second;
  medium_.contents[number->second] = content;
  files_[path] = std::move(content);
}

void MemoryDisk::PutFolder(const std::string& path) {
  AddFolders(path);
  std::string folder = Plain(path);
  for (std::string above = FolderOf(folder); above != folder; above = FolderOf(folder)) {
    medium_.folders.insert(std::exchange(folder, above));
  }
  medium_.folders.insert(folder);
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
