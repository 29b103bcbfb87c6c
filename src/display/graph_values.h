// What the strip charts show of the recorded rows: values in display units.
#pragma once

#include <cstdint>

namespace penlog {

/// Factor from base units to the channel's selected unit.
float UnitFactorOf(int channel);

/// Value of a row in display units: baseline taken off, gain and unit factor applied, the tip of a
/// ball scaled to the ball's area. Without the small addition that a graph makes to its own
/// channel. No number for a row that was recorded without the channel.
float RowValue(int channel, std::int32_t row);

/// The same as the graph of that channel shows it: 1e-06 higher, so that a zero rounds upward.
float GraphValue(int channel, std::int32_t row);

/// Corrected tip resistance of a row, in display units of channel 1.
float QtValue(std::int32_t row);

/// Hydrostatic pressure at `depth` m, in display units of channel 3.
float WaterPressure(float depth);

/// A graph of that channel also shows Qt.
bool ShowsQt(int channel);
/// A graph of that channel also shows the channels 4 and 5.
bool ShowsAllPorePressures(int channel);
/// A graph of that channel has a water line.
bool ShowsWater(int channel);

/// Raises the largest and lowers the smallest value of graph `g` (1 to 4) to what the row asks for:
/// Qt where it is shown. Only pore pressure goes below 0. A value that is no number is left out.
void GrowRange(int g, std::int32_t row);

}  // namespace penlog
