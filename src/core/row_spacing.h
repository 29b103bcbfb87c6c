// How far apart the rows stand that were read back, and the step that they tell: the file is
// aligned by it already, whatever the settings say by now.
#pragma once

#include <optional>

namespace penlog {

struct RowSpacing {
  double metres = 0;           ///< from row to row, on the mean
  std::optional<float> step;   ///< m, in whole counts; none where it is that of the settings
  bool is_of_too_few = false;  ///< `step` is longer, and one or two distances may be a lost link's
  bool is_uneven = false;      ///< whole steps of the settings, several each, and no grid
};

/// Of the rows in `SoundingState`, by the gaps of the recovery copy and the step in use.
RowSpacing SpacingOfRows();

}  // namespace penlog
