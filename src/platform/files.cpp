#include "platform/files.h"

#include <cstdlib>

#include "platform/runtime_fault.h"
#include "platform/texts.h"

namespace penlog {

namespace {

Disk* disk_in_use = nullptr;

/// Closes the handle on every way out.
struct HandleGuard {
  explicit HandleGuard(Disk::Handle opened) : handle(opened) {}
  ~HandleGuard() {
    try {
      TheDisk().Close(handle);
    } catch (const RuntimeFault&) {
      // What was synced stands; a failing close has nothing to add.
    }
  }
  HandleGuard(const HandleGuard&) = delete;
  HandleGuard& operator=(const HandleGuard&) = delete;
  Disk::Handle handle;
};

void WriteBeside(const std::string& path, std::string_view bytes) {
  const HandleGuard file(TheDisk().Create(path));
  TheDisk().Write(file.handle, bytes);
  TheDisk().Sync(file.handle);
}

void RemoveIfThere(const std::string& path) {
  try {
    if (TheDisk().FileExists(path)) TheDisk().Remove(path);
  } catch (const RuntimeFault&) {
    // The fault that led here is the one to report.
  }
}

bool IsSeparator(char c) {
  return c == '/' || (c == '\\' && TheDisk().Separator() == '\\');
}

/// Length of the root at the start of a path; 0 if it begins at none.
std::size_t RootLength(std::string_view path) {
  const bool has_drives = TheDisk().Separator() == '\\';
  if (has_drives && path.size() >= 3 && IsRoot(path.substr(0, 3))) return 3;
  return !path.empty() && IsSeparator(path.front()) ? 1 : 0;
}

}  // namespace

Disk& TheDisk() {
  if (disk_in_use == nullptr) std::abort();  // a program without a disk is mis-built
  return *disk_in_use;
}

void UseDisk(Disk* disk) {
  disk_in_use = disk;
}

void AppendToFile(const std::string& path, std::string_view bytes) {
  const bool is_new = !TheDisk().FileExists(path);
  const HandleGuard file(TheDisk().OpenAppend(path));
  TheDisk().Write(file.handle, bytes);
  TheDisk().Sync(file.handle);
  if (is_new) TheDisk().SyncFolder(FolderOf(path));
}

void ReplaceFile(const std::string& path, std::string_view bytes) {
  const std::string beside = path + ".new";
  try {
    WriteBeside(beside, bytes);
    TheDisk().Rename(beside, path);
  } catch (const RuntimeFault&) {
    RemoveIfThere(beside);  // on a full disk it holds the last room
    throw;
  }
  TheDisk().SyncFolder(FolderOf(path));
}

std::string ReadFile(const std::string& path) {
  return TheDisk().Read(path);
}

std::string ReadTextFile(const std::string& path) {
  return FromFileBytes(ReadFile(path));
}

void CopyFile(const std::string& from, const std::string& to) {
  ReplaceFile(to, ReadFile(from));
}

void SettleFile(const std::string& path) {
  const HandleGuard file(TheDisk().OpenAppend(path));
  TheDisk().Sync(file.handle);
  TheDisk().SyncFolder(FolderOf(path));
}

void MakeWholeFolder(const std::string& path) {
  const std::string above = FolderOf(path);
  if (TheDisk().FolderExists(path)) {
    try {
      TheDisk().SyncFolder(above);
    } catch (const RuntimeFault&) {
      // As a rule the folder above is another's, may not be read, and was synced long ago.
    }
    return;
  }
  if (above != path) MakeWholeFolder(above);
  TheDisk().MakeFolder(path);
  TheDisk().SyncFolder(above);
}

std::string JoinPath(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (!path.empty() && !IsSeparator(path.back())) path += TheDisk().Separator();
  return path += name;
}

bool IsRoot(std::string_view path) {
  return path == "/" || (path.size() == 3 && path[1] == ':' && (path[2] == '\\' || path[2] == '/'));
}

std::string ResolvedPath(std::string_view folder, std::string_view path) {
  const std::string whole = RootLength(path) > 0 ? std::string(path) : JoinPath(folder, path);
  std::size_t at = RootLength(whole);
  std::string resolved = whole.substr(0, at);
  while (at < whole.size()) {
    const std::size_t start = at;
    while (at < whole.size() && !IsSeparator(whole[at])) ++at;
    const std::string word = whole.substr(start, at++ - start);
    if (word == "..") {
      resolved = FolderOf(resolved);
    } else if (!word.empty() && word != ".") {
      resolved = JoinPath(resolved, word);
    }
  }
  return resolved;
}

std::string FolderOf(std::string_view path) {
  std::size_t at = path.size();
  while (at > 0 && path[at - 1] != '/' && path[at - 1] != '\\') --at;
  if (at == 0) return ".";
  const std::string_view with_separator = path.substr(0, at);
  return std::string(IsRoot(with_separator) ? with_separator : path.substr(0, at - 1));
}

std::string FreeNameBeside(const std::string& path) {
  const std::size_t dot = path.rfind('.');
  const std::size_t name = path.find_last_of("/\\");
  const bool has_extension = dot != std::string::npos && (name == std::string::npos || dot > name);
  const std::string stem = has_extension ? path.substr(0, dot) : path;
  const std::string extension = has_extension ? path.substr(dot) : "";
  std::string candidate = path;
  for (int n = 2; TheDisk().FileExists(candidate); ++n) {
    candidate = stem;
    candidate.append(" (").append(std::to_string(n)).append(")").append(extension);
  }
  return candidate;
}

}  // namespace penlog
