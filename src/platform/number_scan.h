#pragma once

#include <cstddef>
#include <string_view>

namespace penlog {

// Length of the number at the very start of `text`: sign, digits with a point, exponent behind E
// or D; 0 if there is none.
std::size_t NumberLength(std::string_view text);

// The value of `number`, a text of which `NumberLength` takes all, rounded once to the wanted
// width. Too large gives an infinity, too small 0.
float SingleOf(std::string_view number);
double DoubleOf(std::string_view number);

}  // namespace penlog
