// What must hold at every moment of a run, whatever the operator, the rig and the disk do.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/event_queue.h"
#include "platform/memory_disk.h"

namespace penlog {

/// Looks on between the events of a run and keeps what it saw go wrong.
///
/// - "TemporaryData.txt" on the disk is the header and the rows so far, up to a line that is held
/// in
///   memory; with nothing held it is all of it. The same for the `.cpt` file.
/// - No content of a file below the sounding's folder ever goes, except that of a sounding that has
///   no row yet.
/// - No message tells of a fault that no routine took.
/// - The operator can always do something within a quarter of an hour.
class MonkeyWatch {
 public:
  explicit MonkeyWatch(MemoryDisk& disk) : disk_(disk) {}

  /// A new start of the program on the same disk.
  void BeginLife();
  /// Between two events.
  void Look();
  /// The program has ended; `power_lost`: as a machine that stops.
  void EndLife(bool power_lost);

  bool Good() const { return faults_.empty(); }
  const std::vector<std::string>& Faults() const { return faults_; }
  std::int64_t Rows() const { return rows_; }
  std::int64_t Soundings() const { return soundings_; }
  std::int64_t Closed() const { return closed_; }

 private:
  struct File {
    std::string path;
    std::string header;
    std::string rows;           ///< as they must stand behind the header
    std::int32_t next_row = 1;  ///< the next one to be added to `rows`
  };

  void LookAtSounding();
  void BeginSounding();
  void AddRows();
  void CompareFile(const File& file, int index, bool closing);
  void CheckDone();
  void LookAtHistory();
  bool LivesOnElsewhere(const std::string& content) const;
  void LookAtBoxes();
  void LookForWayOn();
  void Fail(const std::string& what);

  MemoryDisk& disk_;
  File temporary_;
  File cpt_;
  bool open_ = false;  ///< a sounding's files are watched
  bool done_ = false;
  std::map<std::string, std::string> history_;
  Micros last_way_on_ = 0;
  std::int64_t rows_ = 0;
  std::int64_t soundings_ = 0;
  std::int64_t closed_ = 0;
  std::vector<std::string> faults_;
};

}  // namespace penlog
