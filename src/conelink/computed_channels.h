// The channels that have no record in the cone: 19 total inclination, 20 friction ratio, 21 soil
// behaviour type, 22 SPT N.
#pragma once

namespace penlog {

/// Fills their tables from those of channels 2 and 6, once the cone's list is complete.
void SetUpComputedChannels();

/// For a resumed sounding: channel 19 of each stored row by the calibration just read, as a
/// fraction of the tilt channels' span. Rows stay where channel 6 or 7 has no span.
void RecomputeStoredInclination();

}  // namespace penlog
