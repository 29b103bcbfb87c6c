// The commands that tell the cone and its modules which channels a reading holds.
#pragma once

#include <string>

namespace penlog {

/// Whether the cone's selection leaves the channel out though it is present: the geophones and the
/// channels above 20 in the families "DSE" and "DDE".
bool IsLeftOut(int channel);

/// `ChannelSelectCommand`: the letters of the channels that are present and not left out.
/// `ReducedSelectCommand`: channels 1 and 2.
void BuildSelectCommands();

/// The selection of module `m`, 1 to 9: its channels 1 to 18, then every channel 21 to 30 that is
/// present, of whatever unit.
std::string ModuleSelection(int m);

}  // namespace penlog
