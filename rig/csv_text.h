// Reads a sounding from comma-separated text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "rig/ground.h"

namespace penlog {

/// Lines before the heading are passed over (files begin with empty ones and with notes). The
/// heading is the first line with a cell that begins with "depth" and one that begins with "qc";
/// "fs" and "u2" may follow. Units stand in brackets behind the names; without one, m and MPa.
/// Cells are parted by what parts the heading: ',', ';' or a tab. An empty cell was not measured.
/// Raises a `RuntimeFault` for a file without heading or rows and for a cell that is no number.
std::vector<GroundSample> ParseGroundCsv(std::string_view text, const std::string& name);

}  // namespace penlog
