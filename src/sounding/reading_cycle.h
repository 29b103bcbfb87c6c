// One reading of the whole instrument: asks cone and modules, averages, subtracts, shows, and
// computes the derived channels. `Readings` stay in raw cone units.
#pragma once

#include <string>

namespace penlog {

/// Blocks until the reply has been got or given up; yields meanwhile. A reply that is damaged ten
/// times over, or a cone that stays without a selection, leaves `Readings` as they were.
void GetConeData();

/// Takes the fields in `ReplyTokens` into `Readings` and onto the screen.
void TakeReadings();

/// The text of module `module`'s answer in the joined reply; `previous` is the field of channel 7
/// of the last reading, which stands in for a module that stays silent.
std::string ModuleReplyText(const std::string& answer, const std::string& previous);

}  // namespace penlog
