#include "app/telling_disk.h"

#include <unistd.h>

namespace penlog {

namespace {

/// Whole lines, each with "row " in front.
std::string RowsOf(const std::string& lines) {
  std::string text;
  std::size_t at = 0;
  for (std::size_t end = lines.find("\r\n"); end != lines.npos; end = lines.find("\r\n", at)) {
    text += "row " + lines.substr(at, end - at) + "\n";
    at = end + 2;
  }
  return text;
}

void TellText(const std::string& text) {
  // Whoever listens may be gone: that is no concern of the console's.
  [[maybe_unused]] const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
}

}  // namespace

void TellAtOnce(const std::string& line) {
  TellText(line + "\n");
}

Disk::Handle TellingDisk::OpenAppend(const std::string& path) {
  const Handle handle = PosixDisk::OpenAppend(path);
  if (path.ends_with("/" + name_)) appended_[handle] = "";
  return handle;
}

void TellingDisk::Write(Handle handle, std::string_view bytes) {
  PosixDisk::Write(handle, bytes);
  const auto found = appended_.find(handle);
  if (found != appended_.end()) found->second += bytes;
}

void TellingDisk::Sync(Handle handle) {
  PosixDisk::Sync(handle);
  const auto found = appended_.find(handle);
  if (found == appended_.end()) return;
  TellText(RowsOf(found->second));
  found->second.clear();
}

void TellingDisk::Close(Handle handle) {
  appended_.erase(handle);
  PosixDisk::Close(handle);
}

}  // namespace penlog
