#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/decimal.h"

namespace penlog {

// A number format taken apart: the characters before and behind its places, and how many digits
// it prints at least and at most. `before` and `behind` point into the format's text.
struct NumberPattern {
  std::string_view before;
  std::string_view behind;
  bool has_places = false;
  bool has_point = false;
  std::size_t whole_min = 0;
  std::size_t fraction_min = 0;
  std::size_t fraction_max = 0;
};

NumberPattern ParsePattern(std::string_view pattern);

// The number rounded to the places of the format, and printed in it.
std::string FormatDecimal(Decimal number, const NumberPattern& pattern);

}  // namespace penlog
