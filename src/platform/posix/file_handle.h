// A file descriptor that closes itself, and the text of a failed system call.
#pragma once

#include <string>
#include <utility>

namespace penlog {

class FileHandle {
 public:
  FileHandle() = default;
  explicit FileHandle(int fd) : fd_(fd) {}
  FileHandle(FileHandle&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  FileHandle& operator=(FileHandle&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  FileHandle(const FileHandle&) = delete;
  FileHandle& operator=(const FileHandle&) = delete;
  ~FileHandle() { Reset(); }

  int Get() const { return fd_; }
  explicit operator bool() const { return fd_ >= 0; }
  void Reset();
  /// Hands the descriptor over.
  int Release() { return std::exchange(fd_, -1); }

 private:
  int fd_ = -1;
};

/// Calls again while a signal interrupted it. `call` gives -1 and sets errno when it fails.
template <class Call>
auto Retried(Call call) -> decltype(call());

/// Raises a `RuntimeFault`: "path: reason", the reason from errno.
[[noreturn]] void FailWithErrno(const std::string& path);
/// The system's text for an error number, in English whatever the locale.
std::string ErrnoText(int error);

/// True if errno says that a signal interrupted the call.
bool WasInterrupted();

template <class Call>
auto Retried(Call call) -> decltype(call()) {
  for (;;) {
    const auto result = call();
    if (result != -1 || !WasInterrupted()) return result;
  }
}

}  // namespace penlog
