// What the main loop does once, before its first pass.
#pragma once

#include <cstdint>
#include <string>

namespace penlog {

/// Defaults, ports, layout, quit limits; with a resume the sounding is rebuilt in memory. A port
/// that doesn't open counts as lost, and the link supervision goes on with it.
void EnterMainloop();

/// The dual-axis seismic setting from the geophones present (channels 8 and 9) and the cone's
/// family: 2 where channel 8 stands alone, never 1 with a "DPG" cone that has both.
std::int16_t SettledDualAxis(std::int16_t setting, bool channel8, bool channel9,
                             const std::string& cone_id);

}  // namespace penlog
