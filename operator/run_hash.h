// One number for a whole run: equal for equal runs of one seed, in any process and build.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace penlog {

class MemoryDisk;

/// FNV-1a, 64 bits, over the times and contents of all events, the texts of all screens and all
/// files.
class RunHash {
 public:
  /// Listens to the queue from now on.
  RunHash();
  ~RunHash();
  RunHash(const RunHash&) = delete;
  RunHash& operator=(const RunHash&) = delete;

  /// Takes in every text of every screen and of its controls, lists with them, screens by name.
  void AddControls();
  /// Takes in every file with its path.
  void AddFiles(const MemoryDisk& disk);
  std::uint64_t Value() const { return value_; }
  std::int64_t Events() const { return events_; }

 private:
  void Add(std::string_view bytes);
  void AddNumber(std::int64_t number);
  void AddTexts(const std::vector<std::string>& texts);

  std::uint64_t value_ = 14695981039346656037ULL;
  std::int64_t events_ = 0;
};

}  // namespace penlog
