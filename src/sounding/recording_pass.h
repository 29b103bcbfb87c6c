// A pass of the main loop while a sounding is recorded. A step that fails is told once and must not
// keep the others from their work: above all a due row is taken.
#pragma once

namespace penlog {

/// With the link up: quits, a due row, the stale test, a reading, the distance pushed.
void RecordingPass();

/// With the link down: resynchronises the cone, and then goes back onto the grid of depth steps.
void LostLinkPass();

/// Takes a due row, the only place where a row comes into being. At the end of the row table the
/// operator is told and the sounding stays as it is.
void TakeDueRow();

/// A cone that answers but repeats itself; false until a reading was taken over the present link.
/// Channel 1 is compared with the row's channel 2, so only a cone whose tip and sleeve give one
/// value is found; any other is told by `sounding/repeated_reading.h` and goes on.
bool ReadingsAreStale();

/// Writes the distance pushed (m over the cone's life) into the cone, if that is pending. What
/// three characters can't hold is not written, and the operator is told.
void WriteDistancePushed();

}  // namespace penlog
