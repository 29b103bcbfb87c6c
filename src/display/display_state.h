// What the console shows: the channels of the strip charts and their ranges.
#pragma once

#include <array>
#include <cstdint>

namespace penlog {

/// Entries 1 to 4 are the graphs; entry 0 is unused.
struct DisplayState {
  std::array<std::int16_t, 5> GraphChannel{};  ///< channel shown, 0 none
  std::int16_t GraphCount = 0;
  std::array<float, 5> GraphMin{};  ///< what the rows ask for, in display units; never above 0
  std::array<float, 5> GraphMax{};
  std::array<float, 5> GraphShownMin{};  ///< the ends of the value axis as drawn
  std::array<float, 5> GraphShownMax{};
  std::array<std::int16_t, 5> GraphAutoScale{};  ///< -1 the axis follows the data
  std::array<std::int16_t, 5> GraphRedraw{};     ///< -1 clear and redraw
  std::array<float, 5> GraphStep{};
  std::array<std::int16_t, 5> GraphDivisions{};
  std::array<std::int16_t, 5> GraphTicks{};
  std::array<float, 5> GraphShownStep{};  ///< of the axis as drawn
  std::array<std::int16_t, 5> GraphShownDivisions{};
  std::array<std::int16_t, 5> GraphShownTicks{};
  std::int16_t EnlargedGraphIndex = 0;  ///< the graph on the enlarged screen, 1 to 4
  // The depth axis, one for all charts; feet when `DepthUnits` is 1.
  float GraphDepthMin = 0;
  float GraphDepthMax = 1;
  float GraphDepthStep = 0;
  std::int16_t GraphDepthTicks = 0;
  std::int16_t GraphDepthDivisions = 0;
};

inline DisplayState display;

}  // namespace penlog
