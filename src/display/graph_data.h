// The strip charts of the console: drawn from the recorded rows, one segment a row, all anew when a
// range changes.
#pragma once

#include <string>

#include "forms/control.h"

namespace penlog {

/// Brings the charts to the newest row: once per recorded row, and at the entry of a resume. Works
/// on `RowCount`, `Rows` and `RowQt`.
void GraphData();

/// Draws anew the charts that wait for it, for when no row comes with which it would be done.
void RedrawDueGraphs();

/// The depth axis of a new sounding: from `StartDepth` to 1.0 below it, rounded, with its numbers.
void StartDepthAxis();

/// The range of graph `g` (1 to 4) from all rows, for a resumed sounding.
void RebuildRange(int g);

/// Rounds the range that the rows of graph `g` ask for and, while its axis follows the data, takes
/// it for the shown axis; a change asks for a redraw.
void FollowValueAxis(int g);

/// Clears the picture and draws graph `g` on it as it stands.
void DrawGraph(int g, Picture& picture);

/// The newest row's value of graph `g` in the form of its unit; "" before the first row, "-" for
/// one that was recorded without the channel.
std::string GraphValueText(int g);

}  // namespace penlog
