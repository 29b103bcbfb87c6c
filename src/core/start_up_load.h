// What happens before the operator sees the start screen.
#pragma once

namespace penlog {

/// The load of `StartUp`: finds and prepares the data directory, tests the locale, and reads the
/// channel files, languages, settings with their upgrades, word table and soil tables, in this
/// order. What can't be read or written is told, and the load goes on.
void StartUp_Load();

}  // namespace penlog
