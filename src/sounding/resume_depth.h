// A resume from the surface: nothing is recorded until the operator tells that the cone is back at
// the depth at which the sounding goes on.
#pragma once

#include <cstdint>

namespace penlog {

struct ResumeDepthState {
  std::int32_t RowsAtGap = -1;  ///< rows before the last mark of a drilled gap; -1: none stands
};

inline ResumeDepthState resume_depth;

/// Shows the screen with the depth to be reached, in the unit and sign of the console's depth.
void ShowResumeDepth();

/// Part of each tick while a resume waits: the depth as it is now, and what is still to go.
void FollowResumeDepth();

/// Writes the mark of the gap to the recovery copy, where none stands behind its last row yet, and
/// goes on recording; the depth stays as it was counted. Refused in words while another cone
/// answers than the sounding's. Nothing happens unless a resume waits.
void frmResumeDepthStatus_lblDepthReached_Click();

/// The sounding was stopped, suspended or ended while the resume waited.
void CloseResumeDepth();

}  // namespace penlog
