// All state back to that of a program that has just begun.
#pragma once

namespace penlog {

/// Clears every table and scalar in place, unloads every screen and drops open boxes. Pointers and
/// references to state stay good. It neither yields nor tells anything.
void ResetState();

}  // namespace penlog
