// The two lists of the display setup and what follows from its boxes and slots.
#pragma once

namespace penlog {

/// Fills the record list and the graph list from the channels present, their `RecordMode` and the
/// graph slots. Inclination, friction ratio, soil type and N come up where their sources are.
/// A slot whose channel can't be graphed here gives it up.
void FillChannelLists();

/// The selection labels show the channels of the slots, a single pore pressure as the answer about
/// its filter names it; `GraphCount` is the filled slots 2 to 4, without the first graph: so it
/// stands until the screen is left by DONE.
void SelectionRule();

/// Which graph boxes can be pressed.
void LimitRule();

/// Whether the screen as it stands lets any channel be recorded.
bool AnyChannelRecorded();

}  // namespace penlog
