#include "platform/posix/posix_disk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "platform/files.h"
#include "platform/runtime_fault.h"

namespace penlog {

namespace {

constexpr mode_t kFileMode = 0666;
constexpr mode_t kFolderMode = 0777;

FileHandle OpenPath(const std::string& path, int flags) {
  FileHandle file(Retried([&] { return ::open(path.c_str(), flags | O_CLOEXEC, kFileMode); }));
  if (!file) FailWithErrno(path);
  return file;
}

bool Stat(const std::string& path, struct stat& facts) {
  return ::stat(path.c_str(), &facts) == 0;
}

/// The number of bytes that the system took.
std::size_t WriteWhatFits(int fd, std::string_view bytes) {
  std::size_t written = 0;
  while (written < bytes.size()) {
    const auto rest = bytes.substr(written);
    const ssize_t count = Retried([&] { return ::write(fd, rest.data(), rest.size()); });
    if (count == 0) errno = ENOSPC;  // no system promises an error with it
    if (count <= 0) break;
    written += static_cast<std::size_t>(count);
  }
  return written;
}

/// A folder of that name, made or found.
void MakeOneFolder(const std::string& path) {
  if (::mkdir(path.c_str(), kFolderMode) == 0) return;
  const int error = errno;
  struct stat facts {};
  if (Stat(path, facts) && S_ISDIR(facts.st_mode)) return;
  errno = error == EEXIST ? ENOTDIR : error;
  FailWithErrno(path);
}

bool IsFolder(const std::string& folder, const dirent& entry) {
  if (entry.d_type == DT_DIR) return true;
  if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return false;
  struct stat facts {};
  return Stat(folder + "/" + entry.d_name, facts) && S_ISDIR(facts.st_mode);
}

}  // namespace

Disk::Handle PosixDisk::Keep(const std::string& path, int flags) {
  FileHandle file = OpenPath(path, flags);
  open_[++last_handle_] = OpenFile{std::move(file), path};
  return last_handle_;
}

PosixDisk::OpenFile& PosixDisk::At(Handle handle) {
  const auto found = open_.find(handle);
  if (found == open_.end()) throw RuntimeFault("Bad file handle");
  return found->second;
}

Disk::Handle PosixDisk::Create(const std::string& path) {
  return Keep(path, O_WRONLY | O_CREAT | O_TRUNC | O_APPEND);
}

Disk::Handle PosixDisk::OpenAppend(const std::string& path) {
  return Keep(path, O_WRONLY | O_CREAT | O_APPEND);
}

void PosixDisk::Write(Handle handle, std::string_view bytes) {
  const OpenFile& open = At(handle);
  const int fd = open.file.Get();
  struct stat before {};
  const bool known = ::fstat(fd, &before) == 0 && S_ISREG(before.st_mode);
  if (WriteWhatFits(fd, bytes) == bytes.size()) return;
  const int error = errno;
  // A part of a row must not stay; if even this fails, the first reason is the one to tell.
  if (known) (void)Retried([&] { return ::ftruncate(fd, before.st_size); });
  errno = error;
  FailWithErrno(open.path);
}

void PosixDisk::Sync(Handle handle) {
  const OpenFile& open = At(handle);
  const int result = Retried([&] { return ::fsync(open.file.Get()); });
  if (result != 0 && errno != EINVAL) FailWithErrno(open.path);  // EINVAL: no medium behind it
}

void PosixDisk::Close(Handle handle) {
  OpenFile& open = At(handle);
  const std::string path = open.path;
  const int fd = open.file.Release();
  open_.erase(handle);
  if (::close(fd) != 0 && errno != EINTR) FailWithErrno(path);
}

void PosixDisk::SyncFolder(const std::string& folder) {
  const FileHandle opened = OpenPath(folder, O_RDONLY | O_DIRECTORY);
  const int result = Retried([&] { return ::fsync(opened.Get()); });
  // Some file systems (network, FAT) know no sync of a folder.
  if (result != 0 && errno != EINVAL && errno != ENOTSUP) FailWithErrno(folder);
}

void PosixDisk::Rename(const std::string& from, const std::string& to) {
  if (std::rename(from.c_str(), to.c_str()) != 0) FailWithErrno(from);
}

void PosixDisk::Remove(const std::string& path) {
  if (::unlink(path.c_str()) != 0) FailWithErrno(path);
}

void PosixDisk::MakeFolder(const std::string& path) {
  for (std::size_t at = path.find('/', 1); at != std::string::npos; at = path.find('/', at + 1)) {
    MakeOneFolder(path.substr(0, at));
  }
  if (!path.empty() && path.back() != '/') MakeOneFolder(path);
}

std::string PosixDisk::Read(const std::string& path) {
  return ReadPosixFile(path);
}

std::string ReadPosixFile(const std::string& path) {
  const FileHandle file = OpenPath(path, O_RDONLY);
  std::string content;
  std::array<char, 65536> part;
  for (;;) {
    const ssize_t count = Retried([&] { return ::read(file.Get(), part.data(), part.size()); });
    if (count < 0) FailWithErrno(path);
    if (count == 0) return content;
    content.append(part.data(), static_cast<std::size_t>(count));
  }
}

bool PosixDisk::FileExists(const std::string& path) {
  struct stat facts {};
  return Stat(path, facts) && !S_ISDIR(facts.st_mode);
}

std::int64_t PosixDisk::SizeOf(const std::string& path) {
  struct stat facts {};
  return Stat(path, facts) && !S_ISDIR(facts.st_mode) ? static_cast<std::int64_t>(facts.st_size)
                                                      : -1;
}

bool PosixDisk::FolderExists(const std::string& path) {
  struct stat facts {};
  return Stat(path, facts) && S_ISDIR(facts.st_mode);
}

std::vector<DirectoryEntry> PosixDisk::List(const std::string& folder) {
  std::vector<DirectoryEntry> entries;
  const std::unique_ptr<DIR, int (*)(DIR*)> opened(::opendir(folder.c_str()), ::closedir);
  if (!opened) return entries;
  while (const dirent* entry = ::readdir(opened.get())) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") entries.push_back({name, IsFolder(folder, *entry)});
  }
  std::sort(entries.begin(), entries.end(),
            [](const auto& a, const auto& b) { return a.name < b.name; });
  return entries;
}

std::int64_t PosixDisk::FreeRoom(const std::string& path) {
  struct statvfs facts {};
  // A file that is still to be made lies where its folder lies.
  if (::statvfs(path.c_str(), &facts) != 0 && ::statvfs(FolderOf(path).c_str(), &facts) != 0) {
    FailWithErrno(path);
  }
  return static_cast<std::int64_t>(facts.f_bavail) * static_cast<std::int64_t>(facts.f_frsize);
}

bool PosixDisk::Lock(const std::string& path) {
  if (locks_.count(path) > 0) return false;
  FileHandle file = OpenPath(path, O_RDWR | O_CREAT);
  if (Retried([&] { return ::flock(file.Get(), LOCK_EX | LOCK_NB); }) != 0) {
    if (errno == EWOULDBLOCK) return false;
    FailWithErrno(path);
  }
  locks_[path] = std::move(file);
  return true;
}

void PosixDisk::Unlock(const std::string& path) {
  locks_.erase(path);
}

std::string MakeTemporaryFolder(const std::string& name) {
  const char* place = std::getenv("TMPDIR");
  std::string path =
      (place != nullptr && *place != '\0' ? std::string(place) : "/tmp") + "/" + name + "XXXXXX";
  if (::mkdtemp(path.data()) == nullptr) FailWithErrno(path);
  return path;
}

}  // namespace penlog
