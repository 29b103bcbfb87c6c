// The end of a sounding and of the program.
#pragma once

namespace penlog {

/// Writes what alignment held back, with `CloseWithFinalBaseline` the final baselines, and marks
/// the sounding as done, the last only after the `.cpt` file is on the disk. With fewer rows than
/// the largest delay nothing is written, and the sounding counts as unfinished. False when the disk
/// refused: the operator is told, and the same call tries again.
bool CloseSounding();

/// The console's window is closed: the program ends and the sounding can be resumed. While rows
/// stand in memory alone the operator is asked first, and the console goes on meanwhile.
void Main_QueryUnload();

/// Stops the timers, unloads the screens and asks whether the console should start again.
void ExitProgram();

/// Starts the console anew and ends this one; tells where it could not be started.
[[noreturn]] void StartAgain();

void frmZOLRestart_cmdYes_Click();
/// Ends the program.
void frmZOLRestart_cmdNo_Click();

}  // namespace penlog
