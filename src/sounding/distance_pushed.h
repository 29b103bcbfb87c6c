// What a sounding has added to the distance that its cone's memory counts. An end that was cut off
// behind its stop has added its depth already: the stop behind the resume adds the rest alone.
#pragma once

#include <cstdint>

namespace penlog {

struct DistancePushedState {
  float Depth = 0;  ///< m; of the sounding, as the last stop took it
  /// -1: it ended a resume that waited at the surface, where no recording pass sends it.
  std::int16_t WaitingPassSends = 0;
};

inline DistancePushedState distance_pushed;

/// What a stop adds, in metres: the depth, less what an earlier stop of this sounding has added. Of
/// a resume that waits at the surface the depth is that of the last row, until the cone is deeper.
float DistanceToAdd();

/// The sounding is stopped, and what waits at the surface still does: `DistancePushed` gains what
/// the stop adds, and is to be written.
void AddDistancePushed();

/// The cone has taken the whole metres of `DistancePushed`: keeps in the data directory how much of
/// the sounding they hold. A disk that refuses that is told.
void NoteDistanceAdded();

}  // namespace penlog
