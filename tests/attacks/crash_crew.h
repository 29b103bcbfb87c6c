// The crew that records the sounding of `crash_disk.h`, and resumes it, through the screens.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "attacks/crash_disk.h"
#include "operator/virtual_session.h"

namespace penlog {

/// Rows that a resume finds: those of the copy, or more that the sounding's file shows to have
/// been.
std::size_t RowsStanding(const MemoryDisk& disk);

/// What a crew is to do in one life of the console.
enum class CrewTask {
  Record,             ///< the whole sounding
  Resume,             ///< take up what "TemporaryData.txt" holds, and record the rest
  ResumeFromSurface,  ///< the same, by a way down and DEPTH REACHED at the last depth
  Look,               ///< start the console, and leave it
};

/// An operator and a rig. He takes each box with OK or YES, but for one that he is told to say NO
/// to, each file dialog with the sounding's own file, and presses again what was refused.
class CrashCrew {
 public:
  /// Works on a copy of `disk`, so many hours behind the begin of the first life. For a resume the
  /// tip stands where the last stored row was taken, or at the surface.
  CrashCrew(const MemoryDisk& disk, CrewTask task, int hours = 0);
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
  std::string says_no_to;       ///< a part of a question's text; empty for none
  bool ended = false;           ///< by the last NO behind a closed sounding
  bool left = false;            ///< by EXIT of the start screen
  int rows_taken_up = -1;       ///< that stood in memory as the console of a resume opened
  std::string files_at_resume;  ///< what was not whole then; empty if all was
  Micros resumed = -1;          ///< when that was

 private:
  void Look();
  void Answer();
  void ActOn(const std::string& screen);
  void ActOnStart();
  void ActOnMain();
  void ActOnResumeDepth();
  void SpecifyTruck();
  void SetUpSounding();
  void LookAtResumedFiles();
  void DoAgain(const std::string& control);
  void Order(const std::string& words);
  bool Resumes() const { return task_ == CrewTask::Resume || task_ == CrewTask::ResumeFromSurface; }

  CrewTask task_;
  bool asked_to_resume_ = false;
  bool goes_down_ = false;
  bool holds_ = false;
  Micros begun_ = 0;
  std::map<std::string, Micros> pressed_;
};

}  // namespace penlog
