// The console's layout from the channels present and the chosen graphs, made once.
#pragma once

#include <string>

namespace penlog {

/// Lays out the value list and the strip charts, and clears the charts' ranges.
void SetDisplay();

/// The title of graph `g` (1 to 4), with a colon. With a ball tip that of channel 1 names the ball:
/// of one graph alone without the colon, among three with "test" before it.
std::string GraphTitle(int g);

/// Width of one of `count` graphs (1 to 4) as a fraction of the graph area; 0 without graphs.
double GraphWidth(int count);

}  // namespace penlog
