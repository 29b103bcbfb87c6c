// The connection status window: its panels are set by the link supervision; here is its load and
// the timer that takes it behind the console once all is clear.
#pragma once

namespace penlog {

/// Green panels for the links in use; the warnings hidden.
void frmWarning_Load();
/// All clear for its 1500 ms: the window goes behind the others.
void frmWarning_Timer1_Timer();

}  // namespace penlog
