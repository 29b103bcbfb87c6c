// The cone and its add-on modules describe themselves: a header and a list of channel records in
// their memory, from which the channel tables are built. By the start screen's exchange, on the
// port that it has opened.
//
// Fault model: silence (the start tries again), memory that names a channel above 30 or whose list
// doesn't end, a module that repeats a channel. There is no check of a record's content.
#pragma once

namespace penlog {

/// Reads the cone. When one answers, `ConsoleMode` is at least 1 and `ConeLinkUp` -1 at the end,
/// and its channels are selected; when none does, both stay as they were. Memory that can't be used
/// raises a `RuntimeFault` with a text for the operator, `ConsoleMode` at 1 and `ConeLinkUp` as it
/// was; memory that can't be read in ten attempts ends the program.
void ReadConeSettings();

/// Reads module `m`, 1 to 9. A silent one changes nothing. One that repeats a channel, or whose
/// list can't be used, is told to the operator; the channel tables then stay as they were, and the
/// module is not used.
void ReadModuleSettings(int m);

}  // namespace penlog
