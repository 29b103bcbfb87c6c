// Numbers as an instrument stores them in its memory: printable characters of six bits each, the
// code being 64 plus the six bits, most significant first. Written apart from the console's own
// coding, so that an error in either shows.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace penlog {

/// Plain unsigned integer in 1 to 3 characters (up to 63, 4095, 262143). Raises a `RuntimeFault`
/// when the value doesn't fit.
std::string EncodePlain(std::int32_t value, int characters);

/// Decimal floating form in 4 characters: sign, 3 bits for the number of decimal places (0 to 7),
/// 20 bits of magnitude. Takes the fewest places that hold the value, or as many as the magnitude
/// (at most 1048575) allows. Raises a `RuntimeFault` when the value doesn't fit.
std::string EncodeDecimal(double value);

/// The integer in up to 3 characters; a character with a code below 64 counts as 0.
std::int32_t DecodePlain(std::string_view text);

/// The value as 4 characters of the decimal form hold it: what an instrument works with.
double StoredDecimal(double value);

}  // namespace penlog
