// The start of a sounding: baselines, zero of depth and time, files, and the console's buttons.
#pragma once

namespace penlog {

/// TAKE BASELINE: the current readings become the baselines of the channels that keep a zero.
void Main_cmdTakeBaseline_Click();

/// Turns a requested start (mode 8) into recording (mode 2). Where the files can't be made the
/// operator is told, and the console waits (mode 1) as before the start.
void StartRecording();

}  // namespace penlog
