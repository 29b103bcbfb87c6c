// The start of a sounding: baselines, zero of depth and time, files, and the console's buttons.
#pragma once

namespace penlog {

/// TAKE BASELINE: the current readings become the baselines of the channels that keep a zero, and
/// START is enabled. Pressed before the averages are full (the console has just been entered, or
/// the cone doesn't answer) it is done as soon as they are: zeros would stand in them.
void Main_cmdTakeBaseline_Click();

/// Serves such a press once the averages are full; called after each reading of a waiting console.
void TakeAskedBaseline();

/// Turns a requested start (mode 8) into recording (mode 2). Where the files can't be made the
/// operator is told, and the console waits (mode 1) as before the start.
void StartRecording();

}  // namespace penlog
