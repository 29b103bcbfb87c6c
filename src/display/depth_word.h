// The word beside the depth lamp. The lamp's fill is that of one edge of the counter; the word says
// what the rods do: UP or DOWN while steps come, STILL once none came for half a second.
#pragma once

#include "platform/clock.h"
#include "sounding/depth_count.h"

namespace penlog {

/// Longer than between two steps of a push at 2 cm/s.
constexpr Micros kStillAfter = kSecond / 2;

struct DepthWordState {
  DepthStepKind Last = DepthStepKind::None;
  Micros StepAt = 0;  ///< of the last step
};

inline DepthWordState depth_word;

/// A step was counted, or `None`: an edge that is no step.
void NoteDepthStep(DepthStepKind step);

/// Part of the console's timer: writes the word as the lamp's caption. Never yields.
void FollowDepthWord();

}  // namespace penlog
