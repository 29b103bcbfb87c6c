// The sounding that is crashed at every step, as its disk sees it.
//
// The sounding: 26 rows, proximity counter, 20 mm steps, elevations, sensors up to 100 mm above the
// tip (the files lag 5 rows), a mark of the camera for each row, an old unfinished sounding in its
// way, settings that the load upgrades and the start saves, a final baseline.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "platform/event_queue.h"
#include "platform/memory_disk.h"
#include "support/sounding_lines.h"

namespace penlog {

constexpr int kCrashRows = 26;
constexpr int kCrashDelay = 5;

/// The paths of the sounding.
const std::string& CrashTemporary();
const std::string& CrashCpt();
const std::string& CrashTim();

/// A path in the data directory.
std::string CrashData(std::string_view name);
/// A file's content; empty for none.
const std::string& ContentOf(const MemoryDisk& disk, const std::string& path);

/// The disk before the sounding, all of it on the medium.
MemoryDisk DiskBeforeCrash();
/// The unfinished sounding that stands there.
const std::string& OldSounding();

/// The lines whose sync has returned, rows and marks: the promise, as the disk saw it given. A copy
/// that was written anew promises what it holds once its name is synced.
struct SyncedRows {
  std::vector<std::string> rows;
  std::vector<std::string> beside = {};  ///< of a copy that has no name yet
  /// Listens to the disk's operations from now on.
  void Watch(MemoryDisk& disk);
  void Promise(std::vector<std::string> lines);
};

/// One operation of a disk.
struct DiskWork {
  std::string operation;
  std::string path;
  bool operator==(const DiskWork&) const = default;
  std::string Text() const { return operation + " " + path; }
};

/// What needs no word to the operator when it fails once: all was synced before a close, and a
/// folder that stood there before is synced as a precaution alone.
bool NeedsNoWord(const DiskWork& work);
constexpr Micros kToldAtOnce = 1500 * kMillisecond;

struct NamedStop {
  Fate fate;
  const char* name;
};
inline constexpr std::array kStops = {NamedStop{Fate::StopBefore, "before"},
                                      NamedStop{Fate::StopAmid, "in"},
                                      NamedStop{Fate::StopAfter, "behind"}};

struct NamedLoss {
  Loss loss;
  const char* name;
};
inline constexpr std::array kLosses = {
    NamedLoss{Loss::Nothing, "the process alone dies"},
    NamedLoss{Loss::Contents, "contents that were not synced are lost"},
    NamedLoss{Loss::ContentsAndNames, "contents and names are lost"},
    NamedLoss{Loss::HalfTail, "half of what was not synced is lost"}};

}  // namespace penlog
