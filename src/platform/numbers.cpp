#include "platform/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

#include "platform/runtime_fault.h"
#include "platform/texts.h"

namespace penlog {
namespace {

// Decimal digits without zeros at the ends; the point stands behind the first `point` of them
// (0.5: "5", 0; 0.05: "5", -1; 500: "5", 3). Zero has no digits and no sign.
struct Decimal {
  bool negative = false;
  std::string digits;
  int point = 0;
};

void StripZeros(Decimal& number) {
  const std::size_t leading = std::min(number.digits.find_first_not_of('0'), number.digits.size());
  number.digits.erase(0, leading);
  number.point -= static_cast<int>(leading);
  while (number.digits.ends_with('0')) number.digits.pop_back();
  if (number.digits.empty()) number = Decimal{};
}

template <typename Float>
Decimal DecimalOf(Float value) {
  std::array<char, 64> buffer{};
  char* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::abs(value),
                                  std::chars_format::scientific)
                        .ptr;
  char* const mark = std::find(buffer.data(), end, 'e');
  const char* const exponent_text = mark[1] == '+' ? mark + 2 : mark + 1;
  int exponent = 0;
  std::from_chars(exponent_text, end, exponent);
  Decimal number{std::signbit(value), std::string(buffer.data(), mark), exponent + 1};
  std::erase(number.digits, '.');
  StripZeros(number);
  return number;
}

template <typename Integer>
std::string IntegerText(Integer value) {
  std::array<char, 32> buffer{};
  return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr};
}

Decimal DecimalOfInteger(std::int64_t value) {
  std::string digits = IntegerText(value);
  if (value < 0) digits.erase(0, 1);
  Decimal number{value < 0, digits, static_cast<int>(digits.size())};
  StripZeros(number);
  return number;
}

// Half away from zero, on the digits.
void RoundToPlaces(Decimal& number, int places) {
  const int kept = number.point + places;
  if (kept < 0) number = Decimal{};
  if (kept < 0 || kept >= static_cast<int>(number.digits.size())) return;
  const bool up = number.digits[static_cast<std::size_t>(kept)] >= '5';
  number.digits.erase(static_cast<std::size_t>(kept));
  if (up) {
    number.digits.insert(0, 1, '0');
    ++number.point;
    std::size_t at = number.digits.size() - 1;
    while (number.digits[at] == '9') number.digits[at--] = '0';
    ++number.digits[at];
  }
  StripZeros(number);
}

// Digits before the point, none for a number below 1.
std::string WholeDigits(const Decimal& number) {
  if (number.point <= 0) return {};
  std::string whole = number.digits.substr(0, static_cast<std::size_t>(number.point));
  whole.resize(static_cast<std::size_t>(number.point), '0');
  return whole;
}

// Digits behind the point, none for a whole number.
std::string FractionDigits(const Decimal& number) {
  if (number.point >= static_cast<int>(number.digits.size())) return {};
  if (number.point >= 0) return number.digits.substr(static_cast<std::size_t>(number.point));
  return std::string(static_cast<std::size_t>(-number.point), '0') + number.digits;
}

struct NumberPattern {
  std::string_view before;
  std::string_view behind;
  bool has_places = false;
  bool has_point = false;
  std::size_t whole_min = 0;
  std::size_t fraction_min = 0;
  std::size_t fraction_max = 0;
};

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

std::string ExponentText(const Decimal& number) {
  std::string text = number.digits.substr(0, 1);
  if (number.digits.size() > 1) text += "." + number.digits.substr(1);
  const int exponent = number.point - 1;
  const std::string digits = IntegerText(std::abs(exponent));
  return text + (exponent < 0 ? "E-" : "E+") + (digits.size() < 2 ? "0" : "") + digits;
}

template <typename Float>
std::string PlainFloat(Float value) {
  if (!std::isfinite(value)) return NotFiniteText(value);
  const Decimal number = DecimalOf(value);
  const std::string sign = number.negative ? "-" : "";
  // 1E-05 has its point 4 places before the digits, 1E+16 behind the 17th.
  if (number.point < -4 || number.point > 16) return sign + ExponentText(number);
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

// Length of the number at the very start of `text`, 0 if there is none.
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
  const std::size_t point = std::min(digits.find('.'), digits.size());
  return static_cast<long>(point) - static_cast<long>(first) + WrittenExponent(number, mark) > 0;
}

// `number` is the text of one number and nothing else. Too large gives an infinity.
template <typename Float>
Float Convert(std::string_view number) {
  std::string text(number.starts_with('+') ? number.substr(1) : number);
  std::replace_if(text.begin(), text.end(), IsExponentMark, 'e');
  Float value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc::result_out_of_range) return value;
  if (!IsLarge(text)) return 0;
  return (text[0] == '-' ? -1 : 1) * std::numeric_limits<Float>::infinity();
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
  return parsed.has_places ? FormatDecimal(DecimalOfInteger(value), parsed) : IntegerText(value);
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
