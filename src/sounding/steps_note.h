// What may be missing in the depth, kept beside the recovery copy: the rows of a resume keep the
// doubt of those before.
#pragma once

#include <string>

#include "platform/event_queue.h"

namespace penlog {

struct StepsNoteState {
  std::string Kept;       ///< as the note holds it
  bool HasTried = false;  ///< in the last tick
  Micros NotBefore = 0;   ///< time of the next attempt
};

inline StepsNoteState steps_note;

/// Part of the console's timer: while rows are recorded, or a resume waits at the surface, writes
/// what has changed, at most once in 10 s. A disk that refuses is told once and tried again. Never
/// yields.
void KeepMissingSteps();

/// What was kept of the sounding that is resumed is known again; nothing without a resume.
void TakeUpMissingSteps();

/// The sounding is done: its note goes.
void RemoveMissingSteps();

}  // namespace penlog
