// What the readers of soundings share: lines, cells, units, and how a bad file is reported.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace penlog {

/// The lines of a text without their line ends (LF, CR LF or CR).
std::vector<std::string_view> TextLines(std::string_view text);

/// The cells between separators, without the blanks around them. ' ' as separator: any run of
/// blanks and tabs parts, none at the ends.
std::vector<std::string_view> Cells(std::string_view line, char separator);

enum class Measure { Length, Pressure };

/// How many m or kPa a unit is: "m", "mm", "MPa", "kPa", "bar" ...; 0 for one that is unknown or
/// measures something else. Letter case and what stands behind the first word do not count.
double UnitSize(std::string_view unit, Measure measure);

/// The number in a cell. Raises a `RuntimeFault` that names file, line (from 1) and text.
double CellNumber(std::string_view cell, const std::string& file, std::size_t line);

/// Raises "FILE, line N: WHAT"; without a line number for 0.
[[noreturn]] void BadFile(const std::string& file, std::size_t line, std::string_view what);

}  // namespace penlog
