// The end of a sounding and of the program.
#pragma once

namespace penlog {

/// Writes what alignment held back, with `CloseWithFinalBaseline` the final baselines, and marks
/// the sounding as done, the last only after the `.cpt` file is on the disk. With fewer rows than
/// the largest delay nothing is written, and the sounding counts as unfinished. False when the disk
/// refused: the operator is told which file and asked whether to try again, to suspend the sounding
/// or, where time marks alone are refused, to do without them.
bool CloseSounding();

/// Leaves the sounding unfinished, to be resumed, and asks whether the console should start again.
/// Refused in words while rows stand in memory alone; time marks that do are asked about. A `.cpt`
/// file that could not be written is told: the recovery copy holds its rows. So is how far the cone
/// stands from the last row.
void SuspendSounding();

/// The console's window is closed: the program ends and the sounding can be resumed. While rows or
/// time marks stand in memory alone the operator is asked first, and the console goes on meanwhile;
/// so he is where a resume has to complete the `.cpt` file, or the cone stands away from the last
/// row. What he answers there ends it only while nothing is lost by then.
void Main_QueryUnload();

/// Stops the timers, unloads the screens and asks whether the console should start again.
void ExitProgram();

/// Starts the console anew and ends this one; tells where it could not be started.
[[noreturn]] void StartAgain();

void frmZOLRestart_cmdYes_Click();
/// Ends the program.
void frmZOLRestart_cmdNo_Click();

}  // namespace penlog
