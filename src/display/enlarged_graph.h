// The enlarged graph: one strip chart at large size, drawn from the same rows and the same scale as
// on the console, and the range of its value axis set by hand.
#pragma once

namespace penlog {

/// A click on chart `g` (1 to 4) of the console: opens the enlarged graph, while rows are recorded.
/// It stands beside the console's depth and values and below its strip.
void Main_pctGraph_Click(int g);

/// Draws the graph `EnlargedGraphIndex` on the enlarged screen.
void EnlargedGraph_Graph();

/// A click on the plot: offers the range in force for a change.
void EnlargedGraph_pctGraph_Click();

/// Takes the typed range: it holds on the console too, until it is reset. A text that is no number
/// is told, and the range stays as it was. The smaller number may stand in either field.
void EnlargedGraph_cmdOK_Click();

/// The range follows the data again.
void EnlargedGraph_cmdResetScale_Click();

/// Draws the console's charts anew and leaves the screen.
void EnlargedGraph_Command1_Click();

}  // namespace penlog
