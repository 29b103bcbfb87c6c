// The sounding of `crash_disk.h` as it is without a fault, and the judge of what a crash leaves.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "attacks/crash_crew.h"
#include "attacks/crash_disk.h"

namespace penlog {

/// The sounding without a fault.
struct WholeSounding {
  WholeSounding();
  /// The number of its `nth` work of that kind, from 1; a negative one counts from the end.
  std::int64_t StepOf(const DiskWork& work, int nth) const;

  MemoryDisk before;
  std::vector<DiskWork> works;  ///< in order
  std::string cpt;
  std::string tim;
  /// Each whole content that a file of the data directory ever had.
  std::map<std::string, std::set<std::string>> versions;
};

/// Where a life ends: at the work with that number, which must be this one.
struct CrashPoint {
  std::int64_t step;
  Fate stop;
  DiskWork work;
};

/// What a life leaves that ended so, by `kLosses`, and the rows promised so far.
struct LeftBehind {
  std::vector<MemoryDisk> disks;
  std::vector<std::string> synced;
};
LeftBehind DieAt(const MemoryDisk& from, CrewTask task, const CrashPoint& point,
                 std::vector<std::string> synced);

/// Which differences to the whole sounding are to be expected.
struct AllowedDifferences {
  bool date = false;  ///< the setup was accepted later
  /// Rows that stood when it was resumed: the next one's speed. With 0 its depths: it goes on one
  /// step below 0, as it tells.
  std::set<int> resumed_at;
  /// Rows that stood when the disk refused, which takes time: behind these the link's pace has
  /// another phase, and a speed may differ by 5 %.
  std::optional<int> refused_at;
  int ways_down = 0;                 ///< lives that may have marked depths of before once more
  std::set<std::string> marks_held;  ///< depths of marks that were held in memory at the crash
  /// Rows that the copy had lost, first and last: what the file does not tell of them is -32768.
  std::pair<int, int> taken_from_file{0, 0};
  bool no_file = false;  ///< the sounding's file was removed before it was resumed
};

/// Empty, or the first line that differs.
std::string CptDifference(const std::string& cpt, const WholeSounding& whole,
                          const AllowedDifferences& allowed);
/// The same for the marks of the camera: one for each row, in their order, on the way down those of
/// before once more. Times are those of the whole sounding up to the first resume or refusal, and
/// from there on go on.
std::string TimDifference(const std::string& tim, const WholeSounding& whole,
                          const AllowedDifferences& allowed);

/// What was found, counted over many cases.
struct CrashCount {
  std::int64_t cases = 0;
  std::int64_t played = 0;  ///< the others left what was played already
  std::int64_t rows_synced = 0;
  std::int64_t rows_lost = 0;
  void Add(const CrashCount& other);
  std::string Text() const;
};

/// Judges what is left of a disk after a crash: first as it lies there, then by letting the console
/// take it up and end the sounding. Each disk is played once.
class CrashJudge {
 public:
  explicit CrashJudge(const WholeSounding& whole) : whole_(whole) {}

  /// As it lies there; `synced` are the rows that were promised.
  void LookAt(const MemoryDisk& left, const std::vector<std::string>& synced,
              const AllowedDifferences& allowed = {});
  /// The same, and whether the console can go on with it, resumed by `resume`.
  void Judge(const MemoryDisk& left, const std::vector<std::string>& synced,
             const AllowedDifferences& allowed = {}, CrewTask resume = CrewTask::Resume);

  CrashCount count;

 private:
  std::string FilesAreWhole(const MemoryDisk& left) const;
  std::string RowsAreHeld(const MemoryDisk& left, const std::vector<std::string>& synced,
                          const AllowedDifferences& allowed);
  std::string PlayResume(const MemoryDisk& left, AllowedDifferences allowed, CrewTask resume) const;
  std::string PlayStart(const MemoryDisk& left) const;

  const WholeSounding& whole_;
  std::set<std::uint64_t> played_;
};

/// Of `count` steps those that part `part` of `parts` takes, from 1; with a stride in builds that
/// are slow (PENLOG_CRASH_STRIDE, or told).
std::vector<std::int64_t> StepsOfPart(std::int64_t count, int part, int parts);

}  // namespace penlog
