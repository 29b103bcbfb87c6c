#include "platform/numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

#include "platform/decimal.h"
#include "platform/number_pattern.h"
#include "platform/number_scan.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"

namespace penlog {
namespace {

template <typename Float>
std::string NotFiniteText(Float value) {
  if (std::isnan(value)) return "nan";
  return value < 0 ? "-inf" : "inf";
}

template <typename Float>
std::string FormatFloat(Float value, std::string_view pattern) {
  if (!std::isfinite(value)) return NotFiniteText(value);
  const NumberPattern parsed = ParsePattern(pattern);
  return parsed.has_places ? FormatDecimal(DecimalOf(value), parsed) : PlainNumber(value);
}

template <typename Float>
std::string PlainFloat(Float value) {
  if (!std::isfinite(value)) return NotFiniteText(value);
  const Decimal number = DecimalOf(value);
  const std::string sign = number.negative ? "-" : "";
  // 1E-05 has its point 4 places before the digits, 1E+16 behind the 17th.
  if (number.point < -4 || number.point > 16) return sign + ExponentDigits(number);
  const std::string whole = WholeDigits(number);
  const std::string fraction = FractionDigits(number);
  return sign + (whole.empty() ? "0" : whole) + (fraction.empty() ? "" : "." + fraction);
}

std::string Printed(const std::string& plain) {
  return (plain.starts_with('-') ? "" : " ") + plain + " ";
}

std::string InField(std::string_view text, std::size_t width, bool left) {
  const std::size_t count = CharacterCount(text);
  const std::string blanks(count < width ? width - count : 0, ' ');
  return left ? std::string(text) + blanks : blanks + std::string(text);
}

template <typename Float>
Float Convert(std::string_view number) {
  if constexpr (std::is_same_v<Float, float>)
    return SingleOf(number);
  else
    return DoubleOf(number);
}

std::string_view SkipWhiteSpace(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
}

template <typename Float>
Float LeadingFloat(std::string_view text) {
  const std::string_view rest = SkipWhiteSpace(text);
  const std::size_t length = NumberLength(rest);
  if (length == 0) return 0;
  constexpr Float kLargest = std::numeric_limits<Float>::max();
  return std::clamp(Convert<Float>(rest.substr(0, length)), -kLargest, kLargest);
}

template <typename Float>
std::optional<Float> WholeFloat(std::string_view text) {
  const std::string_view number = Trim(text);
  if (number.empty() || NumberLength(number) != number.size()) return std::nullopt;
  const Float value = Convert<Float>(number);
  return std::isfinite(value) ? std::optional<Float>(value) : std::nullopt;
}

template <typename Integer>
Integer ToInteger(double value) {
  const std::int64_t nearest = RoundHalfEven(value);
  if (nearest < std::numeric_limits<Integer>::min() ||
      nearest > std::numeric_limits<Integer>::max()) {
    throw RuntimeFault("Overflow");
  }
  return static_cast<Integer>(nearest);
}

}  // namespace

std::string Format(float value, std::string_view pattern) {
  return FormatFloat(value, pattern);
}
std::string Format(double value, std::string_view pattern) {
  return FormatFloat(value, pattern);
}

std::string Format(int value, std::string_view pattern) {
  return Format(std::int64_t{value}, pattern);
}

std::string Format(std::int64_t value, std::string_view pattern) {
  const NumberPattern parsed = ParsePattern(pattern);
  return parsed.has_places ? FormatDecimal(DecimalOf(value), parsed) : IntegerText(value);
}

std::string FormatText(std::string_view text, std::string_view pattern) {
  const auto width = std::count(pattern.begin(), pattern.end(), '@');
  return InField(text, static_cast<std::size_t>(width), pattern.starts_with('!'));
}

std::string RightField(std::string_view text, int width) {
  return InField(text, static_cast<std::size_t>(std::max(width, 0)), false);
}

std::string PlainNumber(float value) {
  return PlainFloat(value);
}
std::string PlainNumber(double value) {
  return PlainFloat(value);
}
std::string PlainNumber(int value) {
  return IntegerText(value);
}
std::string PlainNumber(long value) {
  return IntegerText(value);
}
std::string PlainNumber(long long value) {
  return IntegerText(value);
}

std::string PrintNumber(float value) {
  return Printed(PlainNumber(value));
}
std::string PrintNumber(double value) {
  return Printed(PlainNumber(value));
}
std::string PrintNumber(int value) {
  return Printed(PlainNumber(value));
}
std::string PrintNumber(long value) {
  return Printed(PlainNumber(value));
}
std::string PrintNumber(long long value) {
  return Printed(PlainNumber(value));
}

std::string LeadingBlankNumber(int value) {
  return (value < 0 ? "" : " ") + PlainNumber(value);
}

double LeadingNumber(std::string_view text) {
  return LeadingFloat<double>(text);
}

float ParseSingle(std::string_view text) {
  return LeadingFloat<float>(text);
}

std::optional<double> WholeNumberText(std::string_view text) {
  return WholeFloat<double>(text);
}

std::optional<float> WholeSingleText(std::string_view text) {
  return WholeFloat<float>(text);
}

std::int64_t RoundHalfEven(double value) {
  constexpr double kLimit = 9223372036854775808.0;  // 2^63, exact as a double
  const double below = std::floor(value);
  const double part = value - below;
  const bool up = part > 0.5 || (part == 0.5 && std::fmod(below, 2.0) != 0.0);
  const double nearest = up ? below + 1.0 : below;
  if (!(nearest >= -kLimit && nearest < kLimit)) throw RuntimeFault("Overflow");
  return static_cast<std::int64_t>(nearest);
}

std::int32_t ToInteger32(double value) {
  return ToInteger<std::int32_t>(value);
}

std::int16_t ToInteger16(double value) {
  return ToInteger<std::int16_t>(value);
}

double IntPart(double value) {
  return std::floor(value);
}

std::string LocaleNumberText(std::string_view text, bool comma_decimal) {
  std::string result(text);
  const std::size_t at = result.find(comma_decimal ? '.' : ',');
  if (at != std::string::npos) result[at] = comma_decimal ? ',' : '.';
  return result;
}

double LocaleNumber(std::string_view text, bool comma_decimal) {
  // Behind the first mark a second one ends the number, whichever it is.
  const std::string converted = LocaleNumberText(text, comma_decimal);
  return LeadingNumber(comma_decimal ? LocaleNumberText(converted, false) : converted);
}

}  // namespace penlog
