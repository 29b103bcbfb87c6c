#include "platform/posix/file_handle.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/runtime_fault.h"

namespace penlog {

void FileHandle::Reset() {
  // Not again after EINTR: on Linux the descriptor is gone by then.
  if (fd_ >= 0) ::close(fd_);
  fd_ = -1;
}

std::string ErrnoText(int error) {
  const char* text = ::strerrordesc_np(error);
  return text != nullptr ? text : "error " + std::to_string(error);
}

void FailWithErrno(const std::string& path) {
  throw RuntimeFault(path + ": " + ErrnoText(errno));
}

bool WasInterrupted() {
  return errno == EINTR;
}

}  // namespace penlog
