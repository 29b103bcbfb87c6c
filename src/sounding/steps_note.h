// What may be missing in the depth, kept beside the recovery copy: the rows of a resume keep the
// doubt of those before.
#pragma once

#include <cstdint>
#include <string>

namespace penlog {

struct StepsNoteState {
  std::string Kept;               ///< as the note holds it
  std::int32_t RetrySecond = -1;  ///< SecondsCounter at the last attempt that failed
};

inline StepsNoteState steps_note;

/// Part of the console's timer: while rows are recorded, or a resume waits at the surface, writes
/// what has changed. A disk that refuses is told once and tried again each second. Never yields.
void KeepMissingSteps();

/// What was kept of the sounding that is resumed is known again; nothing without a resume.
void TakeUpMissingSteps();

/// The sounding is done: its note goes.
void RemoveMissingSteps();

}  // namespace penlog
