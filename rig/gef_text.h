// Reads a sounding in GEF 1: header lines "#NAME= value, value", "#EOH=", then rows.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "rig/ground.h"

namespace penlog {

/// The quantities are told by the last number of "#COLUMNINFO=": 1 penetration length (11, depth,
/// where that is missing), 2 tip resistance, 3 local friction, 6 pore pressure u2; other columns
/// are passed over. Separators from "#COLUMNSEPARATOR=" and "#RECORDSEPARATOR=", blanks without
/// them. A value equal to its column's "#COLUMNVOID=" was not measured. Raises a `RuntimeFault` for
/// a file without end of header, without length or tip resistance, with an unknown unit, a row that
/// is too short or not numeric, and for a dissipation.
std::vector<GroundSample> ParseGef(std::string_view text, const std::string& name);

}  // namespace penlog
