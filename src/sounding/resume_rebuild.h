// A suspended sounding whose rows stand in memory again: the channels computed from them, the depth
// and the console's buttons follow.
#pragma once

namespace penlog {

/// Channels 20, 21 and 22 are there wherever 1 and 2 are.
void MarkComputedChannels();

/// The step of the main loop's entry for a resume. Yields: ten readings fill the averages.
void RebuildResumedSounding();

// A row that was recorded without a channel has none of what is computed from it: -32768.

/// Friction ratio of each row in percent, here with the ball tip's area ratio, which the live
/// reading leaves out; 0 for a row whose tip is not above its baseline.
void RebuildFrictionRatio();
/// Inclination of each row in degrees.
void RebuildInclination();
/// Soil behaviour type and N of each row.
void RebuildSoilType();
/// Corrected tip resistance of each row.
void RebuildQt();

}  // namespace penlog
