// Appending to the files of a sounding so that no line is lost or doubled when the disk refuses:
// what can't be written stays in memory, in order, and goes out before what comes later.
//
// Fault model: a write fails whole (no room), fails in part (the medium goes away), or lands whole
// and its sync fails. After a failed write the file's content tells what landed. After a failed
// sync the system may have forgotten it, with no later sync to tell: the file is replaced as a
// whole by what earlier syncs had brought to the medium and all that came since. A file that is
// gone takes nothing: its medium may come back. Nor does one that holds something else than what
// was written to it, which its length tells before each append, and behind a failure, and at the
// end, its content: it is neither gone on with nor replaced. Zeros count as bytes of ours that a
// medium has lost, where they stand for bytes not known to be on it.
#pragma once

#include <array>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>

namespace penlog {

/// Places in `SoundingFiles`.
enum SoundingFile : int {
  kTemporaryFile = 0,
  kCptFile = 1,
  kDissipationFile = 2,
  kSeismicFile = 3,
  kTimFile = 4,
};

/// Where it stands.
const std::string& PathOf(SoundingFile file);

/// Why the last attempt on each file failed, by the index of `SoundingFiles`.
struct HeldReasonsState {
  std::array<std::string, 7> Why;
  std::array<std::set<std::string>, 7> Told;  ///< since the file was whole last
};
inline HeldReasonsState held_reasons;

/// Appends with one write and one sync, together with what is held for that file. True when all of
/// it is on the disk, or the file is given up; otherwise it is held, and the operator is told once,
/// and again when the file had been whole meanwhile.
/// A medium that takes long for it is told, too.
bool AppendOrHold(SoundingFile file, std::string_view text);

/// Tries to write what is held for one file; true when nothing is left.
bool WriteHeld(SoundingFile file);

/// Tries all files; true when nothing is left.
bool WriteAllHeld();

/// The same once a second at most, for the main loop.
void RetryHeld();

/// Why a file is not whole: why it took nothing of what is held for it, or that it is gone or
/// shorter than what was written to it. Empty for a whole file, and for one that was not begun.
std::string WhyNotWhole(SoundingFile file);

/// What helps a file that is not whole.
enum class Remedy {
  Disk,    ///< its disk takes nothing: room, a right, a sound medium
  Medium,  ///< it is gone
  Resume,  ///< it stands there changed: a resume mends it
};
Remedy RemedyFor(SoundingFile file);

/// Rows, or time marks, that are held for a file.
std::int32_t LinesHeld(SoundingFile file);

/// Whether this console has made the file, or goes on with it.
bool IsBegun(SoundingFile file);

/// The file was made anew, or taken up, with this content: nothing is held for it.
void StartFile(SoundingFile file, std::string_view content);

/// What stands there would have to be changed: it takes nothing before the next resume mends it,
/// and it is not whole.
void StartUnfitFile(SoundingFile file);

/// The start of the file was taken back: what stands under its name is no business of this console.
void ForgetFile(SoundingFile file);

/// The operator goes on without the file: what comes for it in this session is dropped.
void GiveUpFile(SoundingFile file);

}  // namespace penlog
