// Depths as the operator types them: in the unit of the caption, an elevation upward.
#pragma once

#include <string>

namespace penlog {

/// Whether the text is a number with either decimal mark, or nothing.
bool IsNumberOrEmpty(const std::string& text);

/// The depth in metres, negated in the elevation format; 0 for an empty text. Feet become metres
/// with 3.281 ft/m.
float DepthOfText(const std::string& text);

/// The text that would be typed for a depth in metres, to a thousandth of its unit.
std::string TextOfDepth(float depth);

}  // namespace penlog
