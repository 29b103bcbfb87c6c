// Appending to the files of a sounding so that no line is lost or doubled when the disk refuses:
// what can't be written stays in memory, in order, and goes out before what comes later.
//
// Fault model: a write fails whole (no room), fails in part (the medium goes away), or lands whole
// and its sync fails. After a failure the file's length tells what landed. A file that is gone or
// shorter than what was written to it takes nothing: its medium may come back.
#pragma once

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

/// Appends with one write and one sync, together with what is held for that file. True when all of
/// it is on the disk; otherwise it is held, and the operator is told once.
bool AppendOrHold(SoundingFile file, std::string_view text);

/// Tries to write what is held for one file; true when nothing is left.
bool WriteHeld(SoundingFile file);

/// Tries all files; true when nothing is left.
bool WriteAllHeld();

/// The same once a second at most, for the main loop.
void RetryHeld();

/// Raises a `RuntimeFault` when the file is gone or shorter than what was written to it.
void RequireWhole(SoundingFile file);

/// Whether this console has made the file, or goes on with it.
bool IsBegun(SoundingFile file);

/// The file was made anew with `length` bytes: nothing is held for it.
void StartFile(SoundingFile file, std::size_t length);

/// The start of the file was taken back: what stands under its name is no business of this console.
void ForgetFile(SoundingFile file);

}  // namespace penlog
