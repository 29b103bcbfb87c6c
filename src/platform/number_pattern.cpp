#include "platform/number_pattern.h"

namespace penlog {
namespace {

bool IsPlace(char c) {
  return c == '0' || c == '#';
}

// Where the places begin: at the first place, or at a point directly before it.
std::size_t PlacesStart(std::string_view pattern) {
  const std::size_t first = pattern.find_first_of("0#");
  if (first == std::string_view::npos || first == 0) return first;
  return pattern[first - 1] == '.' ? first - 1 : first;
}

void CountPlace(NumberPattern& result, char c) {
  if (!IsPlace(c)) {
    result.has_point = result.has_point || c == '.';
  } else if (!result.has_point) {
    if (c == '0' || result.whole_min > 0) ++result.whole_min;
  } else {
    ++result.fraction_max;
    if (c == '0') result.fraction_min = result.fraction_max;
  }
}

}  // namespace

NumberPattern ParsePattern(std::string_view pattern) {
  NumberPattern result;
  const std::size_t start = PlacesStart(pattern);
  if (start == std::string_view::npos) return result;
  result.has_places = true;
  result.before = pattern.substr(0, start);
  std::size_t at = start;
  for (; at < pattern.size(); ++at) {
    const char c = pattern[at];
    if (!IsPlace(c) && c != ',' && (c != '.' || result.has_point)) break;
    CountPlace(result, c);
  }
  result.behind = pattern.substr(at);
  return result;
}

std::string FormatDecimal(Decimal number, const NumberPattern& pattern) {
  RoundToPlaces(number, static_cast<int>(pattern.fraction_max));
  std::string whole = WholeDigits(number);
  if (whole.size() < pattern.whole_min) whole.insert(0, pattern.whole_min - whole.size(), '0');
  std::string fraction = FractionDigits(number);
  if (fraction.size() < pattern.fraction_min) fraction.resize(pattern.fraction_min, '0');
  std::string text(pattern.before);
  if (number.negative) text += '-';
  text += whole;
  if (pattern.has_point) text += '.';
  return text + fraction + std::string(pattern.behind);
}

}  // namespace penlog
