#include "platform/number_scan.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>

namespace penlog {
namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsExponentMark(char c) {
  return c == 'E' || c == 'e' || c == 'D' || c == 'd';
}

std::size_t SkipDigits(std::string_view text, std::size_t at) {
  while (at < text.size() && IsDigit(text[at])) ++at;
  return at;
}

std::size_t SkipSign(std::string_view text, std::size_t at) {
  return at < text.size() && (text[at] == '+' || text[at] == '-') ? at + 1 : at;
}

// Behind the exponent at `at`; `at` itself if there is no whole exponent.
std::size_t SkipExponent(std::string_view text, std::size_t at) {
  if (at >= text.size() || !IsExponentMark(text[at])) return at;
  const std::size_t digits = SkipSign(text, at + 1);
  const std::size_t end = SkipDigits(text, digits);
  return end > digits ? end : at;
}

// The power of ten behind the exponent mark, limited where it can't matter any more.
long WrittenExponent(std::string_view number, std::size_t mark) {
  if (mark == std::string_view::npos) return 0;
  constexpr long kLimit = 1'000'000'000;
  const std::string_view text = number.substr(number[mark + 1] == '+' ? mark + 2 : mark + 1);
  long exponent = 0;
  const auto error = std::from_chars(text.data(), text.data() + text.size(), exponent).ec;
  if (error != std::errc{}) return text[0] == '-' ? -kLimit : kLimit;
  return std::clamp(exponent, -kLimit, kLimit);
}

// Whether a number that is out of range is too large; else it is too small.
bool IsLarge(std::string_view number) {
  const std::size_t mark = number.find('e');
  const std::string_view digits = number.substr(0, mark);
  const std::size_t first = digits.find_first_of("123456789");
  if (first == std::string_view::npos) return false;
  const std::size_t point = std::min(digits.find('.'), digits.size());
  return static_cast<long>(point) - static_cast<long>(first) + WrittenExponent(number, mark) > 0;
}

template <typename Float>
Float ConvertText(std::string_view number) {
  std::string text(number.starts_with('+') ? number.substr(1) : number);
  std::replace_if(text.begin(), text.end(), IsExponentMark, 'e');
  Float value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc::result_out_of_range) return value;
  if (!IsLarge(text)) return 0;
  return (text[0] == '-' ? -1 : 1) * std::numeric_limits<Float>::infinity();
}

}  // namespace

std::size_t NumberLength(std::string_view text) {
  const std::size_t start = SkipSign(text, 0);
  std::size_t end = SkipDigits(text, start);
  std::size_t digits = end - start;
  if (end < text.size() && text[end] == '.') {
    const std::size_t fraction = end + 1;
    end = SkipDigits(text, fraction);
    digits += end - fraction;
  }
  return digits == 0 ? 0 : SkipExponent(text, end);
}

float SingleOf(std::string_view number) {
  return ConvertText<float>(number);
}

double DoubleOf(std::string_view number) {
  return ConvertText<double>(number);
}

}  // namespace penlog
