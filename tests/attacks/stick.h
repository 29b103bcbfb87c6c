// The stick with the soundings, pulled and put back. What stands on it goes with it, and the empty
// folder in its place stays.
#pragma once

#include <map>
#include <string>

#include "platform/memory_disk.h"
#include "platform/runtime_fault.h"

namespace penlog {

class Stick {
 public:
  explicit Stick(MemoryDisk& disk) : disk_(disk) {}

  /// With what it holds behind that loss; none: all that was written to it.
  void Pull(Loss loss) {
    away_ = true;
    const MemoryDisk left = disk_.After(loss);
    for (const auto& [path, content] : left.Files()) {
      if (IsOnIt(path)) files_[path] = content;
    }
    pulling_ = true;
    const std::map<std::string, std::string> all = disk_.Files();
    for (const auto& [path, content] : all) {
      if (IsOnIt(path)) disk_.Remove(path);
    }
    pulling_ = false;
  }
  /// What was begun in its place is hidden by it, or gone.
  void PutBack() {
    away_ = false;
    for (const auto& [path, content] : files_) disk_.Put(path, content);
  }

  bool IsAway() const { return away_; }
  /// The disk's hooks see how its files go: no work of the console.
  bool IsBeingPulled() const { return pulling_; }
  /// For the disk's hook before each work: one on a stick that is away fails.
  void RefuseWork(const std::string& path) const {
    if (away_ && !pulling_ && (IsOnIt(path) || path == "/soundings")) {
      throw RuntimeFault(path + ": No such device");
    }
  }

 private:
  static bool IsOnIt(const std::string& path) { return path.starts_with("/soundings/"); }

  MemoryDisk& disk_;
  std::map<std::string, std::string> files_;
  bool away_ = false;
  bool pulling_ = false;
};

}  // namespace penlog
