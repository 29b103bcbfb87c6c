// One sounding of 26 rows and everything that may befall its disk: the crew that records and
// resumes it through the screens, the sounding as it is without a fault, and the judge of what a
// crash leaves.
//
// The sounding: proximity counter, 20 mm steps, elevations, sensors up to 100 mm above the tip (the
// files lag 5 rows), a mark of the camera for each row, an old unfinished sounding in its way,
// settings that the load upgrades and the start saves, a final baseline.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "forms/operator_actions.h"
#include "operator/virtual_session.h"

namespace penlog {

constexpr int kCrashRows = 26;
constexpr int kCrashDelay = 5;

/// What a crew is to do in one life of the console.
enum class CrewTask {
  Record,  ///< the whole sounding
  Resume,  ///< take up what "TemporaryData.txt" holds, and record the rest
  Look,    ///< start the console, and leave it
};

/// An operator and a rig. He takes each box with OK or YES, each file dialog with the sounding's
/// own file, and presses again what was refused.
class CrashCrew {
 public:
  /// Works on a copy of `disk`. For a resume the tip stands where the last stored row was taken.
  CrashCrew(const MemoryDisk& disk, CrewTask task);
  ~CrashCrew();
  CrashCrew(const CrashCrew&) = delete;
  CrashCrew& operator=(const CrashCrew&) = delete;

  /// One life of the console, until it ends by itself, is stopped by its disk, or takes too long.
  void Live();

  bool WasTold(const std::string& part) const;
  /// Told within `limit` from `from` on.
  bool WasTold(const std::string& part, Micros from, Micros limit) const;
  std::string AllTold() const;

  struct Told {
    Micros time;
    std::string text;
  };

  VirtualSession session;
  MemoryDisk& disk = session.disk;
  std::vector<Told> told;
  bool ended = false;           ///< by the last NO behind a closed sounding
  bool left = false;            ///< by EXIT of the start screen
  int rows_taken_up = -1;       ///< that stood in memory as the console of a resume opened
  std::string files_at_resume;  ///< what was not whole then; empty if all was
  /// Runs at each glance of the operator.
  std::function<void()> at_glance;

 private:
  void PostLook();
  void Look();
  void Answer();
  void ActOn(const std::string& screen);
  void ActOnStart();
  void ActOnMain();
  void SpecifyTruck();
  void SetUpSounding();
  void LookAtResumedFiles();
  void Do(const std::string& control, ActionKind kind = ActionKind::Click,
          const std::string& text = {}, int number = 0);
  void DoAgain(const std::string& control);
  void Order(const std::string& words);

  CrewTask task_;
  bool asked_to_resume_ = false;
  bool holds_ = false;
  Micros begun_ = 0;
  std::map<std::string, Micros> pressed_;
};

/// The paths of the sounding.
const std::string& CrashTemporary();
const std::string& CrashCpt();
const std::string& CrashTim();

/// The disk before the sounding, all of it on the medium.
MemoryDisk DiskBeforeCrash();
/// The unfinished sounding that stands there.
const std::string& OldSounding();

/// Whole lines, without their ends; what stands behind the last line end is left out.
std::vector<std::string> WholeLines(const std::string& text);
/// The stored rows of a recovery copy, whole lines behind its header.
std::vector<std::string> StoredRows(const std::string& temporary);

/// The rows whose sync has returned: the promise, as the disk saw it given.
struct SyncedRows {
  /// Listens to the disk's operations from now on.
  void Watch(MemoryDisk& disk);
  std::vector<std::string> rows;
};

/// The sounding without a fault.
struct WholeSounding {
  WholeSounding();
  struct Work {
    std::string operation;
    std::string path;
  };
  MemoryDisk before;
  std::vector<Work> works;  ///< the disk's operations, in order
  std::string cpt;
  std::string tim;
  /// Each whole content that a file of the data directory ever had.
  std::map<std::string, std::set<std::string>> versions;
};

/// Which differences to the whole sounding are to be expected.
struct AllowedDifferences {
  bool date = false;           ///< the setup was accepted later
  std::set<int> resumed_at;    ///< rows that stood when it was resumed: the next one's speed
  bool speeds_nearly = false;  ///< the link's pace has another phase: 5 % of a speed
};

/// Empty, or the first line that differs.
std::string CptDifference(const std::string& cpt, const WholeSounding& whole,
                          const AllowedDifferences& allowed);
/// The same for the marks of the camera, but for their times. One may be there twice, none may be
/// missing.
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

  /// `synced` are the rows that were promised.
  void Judge(const MemoryDisk& left, const std::vector<std::string>& synced,
             const AllowedDifferences& allowed = {});

  CrashCount count;

 private:
  std::string FilesAreWhole(const MemoryDisk& left) const;
  std::string RowsAreHeld(const MemoryDisk& left, const std::vector<std::string>& synced,
                          const AllowedDifferences& allowed);
  std::string PlayResume(const MemoryDisk& left, AllowedDifferences allowed) const;
  std::string PlayStart(const MemoryDisk& left) const;

  const WholeSounding& whole_;
  std::set<std::uint64_t> played_;
};

/// Of `count` steps those that part `part` of `parts` takes, from 1; with a stride in builds that
/// are slow (PENLOG_CRASH_STRIDE, or told).
std::vector<std::int64_t> StepsOfPart(std::int64_t count, int part, int parts);

}  // namespace penlog
