// What a sounding has added to the distance that its cone's memory counts. An end that was cut off
// behind its stop has added its depth already: the stop behind the resume adds the rest alone.
#pragma once

namespace penlog {

/// What a stop adds, in metres: the depth, less what an earlier stop of this sounding has added.
float DistanceToAdd();

/// The cone has taken the whole metres of `DistancePushed`: keeps in the data directory how much of
/// the sounding they hold. A disk that refuses that is told.
void NoteDistanceAdded();

}  // namespace penlog
