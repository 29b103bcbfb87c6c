// In which order the cone and its modules report their channels in a reading.
#pragma once

namespace penlog {

/// Fills `ReplyField`: walks the units that are present, the cone first, then modules 1 to 9, and
/// gives each present channel the next place by the fixed order of the letters. What the cone's
/// selection leaves out is not in its reading: it gets 0, as all other channels. Needs
/// `ModulePresent`, `ChannelPresent`, `ChannelModule`, `ChannelLetter` and `ConeId`.
void AssignReplyPositions();

}  // namespace penlog
