// The files of a suspended sounding are made whole and taken up again: what a crash or a damage
// left is mended from the recovery copy before the first new row, and the operator is told.
#pragma once

namespace penlog {

/// The recorded columns of the sounding become this session's: record choices, charts, columns of
/// channels that are missing now, and the alignment. Then its files are made whole. Asks and tells:
/// not to be called while the rods are counted. False when the operator goes back to the start
/// screen. Raises a `RuntimeFault` where the recovery copy can no longer be read or is not what was
/// read into memory, before anything is written; another fault where the memory does not suffice.
/// In each of these cases the tables are as before, and the sounding can be resumed as before.
bool TakeUpSounding();

}  // namespace penlog
