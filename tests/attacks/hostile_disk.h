// A disk that fails as media do: writes that stop halfway, syncs that fail after the bytes have
// landed, whole spells in which nothing works. All drawn from a seed.
#pragma once

#include <random>
#include <string>
#include <string_view>

#include "platform/memory_disk.h"
#include "platform/runtime_fault.h"

namespace penlog {

class HostileDisk : public MemoryDisk {
 public:
  explicit HostileDisk(std::uint32_t seed) : random_(seed) {}

  /// From now on one operation in `one_in` fails; 0: none does.
  void Trouble(std::uint32_t one_in) { one_in_ = one_in; }

  /// A file that exists and can't be read; empty for none.
  void SetUnreadable(const std::string& path) { unreadable_ = path; }

  void Write(Handle handle, std::string_view bytes) override {
    if (!Strikes()) return MemoryDisk::Write(handle, bytes);
    MemoryDisk::Write(handle, bytes.substr(0, bytes.size() * (random_() % 4) / 4));
    throw RuntimeFault("Input/output error");
  }
  void Sync(Handle handle) override {
    if (Strikes()) throw RuntimeFault("Input/output error");
    MemoryDisk::Sync(handle);
  }
  void SyncFolder(const std::string& folder) override {
    if (Strikes()) throw RuntimeFault(folder + ": Input/output error");
    MemoryDisk::SyncFolder(folder);
  }
  Handle Create(const std::string& path) override {
    if (Strikes()) throw RuntimeFault(path + ": Too many open files");
    return MemoryDisk::Create(path);
  }
  Handle OpenAppend(const std::string& path) override {
    if (Strikes()) throw RuntimeFault(path + ": Input/output error");
    return MemoryDisk::OpenAppend(path);
  }
  void Rename(const std::string& from, const std::string& to) override {
    if (Strikes()) throw RuntimeFault(from + ": Input/output error");
    MemoryDisk::Rename(from, to);
  }
  void Remove(const std::string& path) override {
    if (Strikes()) throw RuntimeFault(path + ": Input/output error");
    MemoryDisk::Remove(path);
  }
  std::string Read(const std::string& path) override {
    if (Strikes()) throw RuntimeFault(path + ": Input/output error");
    if (!unreadable_.empty() && path == unreadable_) {
      throw RuntimeFault(path + ": Permission denied");
    }
    return MemoryDisk::Read(path);
  }

 private:
  bool Strikes() { return one_in_ > 0 && random_() % one_in_ == 0; }

  std::mt19937 random_;
  std::uint32_t one_in_ = 0;
  std::string unreadable_;
};

}  // namespace penlog
