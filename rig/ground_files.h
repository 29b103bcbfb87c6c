// Real soundings from files: GEF (the exchange format of Dutch ground surveys, version 1) and CSV
// with a heading line such as "Depth (m),qc (MPa),fs (MPa),u2 (MPa)". Bytes that aren't UTF-8 are
// taken as Windows-1252.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "rig/ground.h"

namespace penlog {

/// GEF or CSV, told by the content. `name` stands in the texts of faults. Raises a `RuntimeFault`
/// that names the file, the line where one is to blame, and what is wrong there.
Ground GroundFromText(std::string_view bytes, const std::string& name);
/// The same from a file on the disk in use.
Ground LoadGround(const std::string& path);

}  // namespace penlog
