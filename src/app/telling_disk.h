// The system's disk, which tells outside the program what it has promised: for tests that kill the
// program.
#pragma once

#include <map>
#include <string>

#include "platform/posix/posix_disk.h"

namespace penlog {

/// One line to the standard output, by one write of the system: it is out when this returns.
void TellAtOnce(const std::string& line);

class TellingDisk : public PosixDisk {
 public:
  /// Tells "row LINE" for each line that is appended to a file of that name, once its sync has
  /// returned.
  explicit TellingDisk(std::string name) : name_(std::move(name)) {}

  Handle OpenAppend(const std::string& path) override;
  void Write(Handle handle, std::string_view bytes) override;
  void Sync(Handle handle) override;
  void Close(Handle handle) override;

 private:
  std::string name_;
  std::map<Handle, std::string> appended_;  // and not synced yet
};

}  // namespace penlog
