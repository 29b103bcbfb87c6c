#include "platform/decimal.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace penlog {
namespace {

void StripZeros(Decimal& number) {
  const std::size_t leading = std::min(number.digits.find_first_not_of('0'), number.digits.size());
  number.digits.erase(0, leading);
  number.point -= static_cast<int>(leading);
  while (number.digits.ends_with('0')) number.digits.pop_back();
  if (number.digits.empty()) number = Decimal{};
}

template <typename Float>
Decimal DecimalOfFloat(Float value) {
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

}  // namespace

Decimal DecimalOf(float value) {
  return DecimalOfFloat(value);
}
Decimal DecimalOf(double value) {
  return DecimalOfFloat(value);
}

Decimal DecimalOf(std::int64_t value) {
  std::string digits = IntegerText(value);
  if (value < 0) digits.erase(0, 1);
  Decimal number{value < 0, digits, static_cast<int>(digits.size())};
  StripZeros(number);
  return number;
}

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

std::string WholeDigits(const Decimal& number) {
  if (number.point <= 0) return {};
  std::string whole = number.digits.substr(0, static_cast<std::size_t>(number.point));
  whole.resize(static_cast<std::size_t>(number.point), '0');
  return whole;
}

std::string FractionDigits(const Decimal& number) {
  if (number.point >= static_cast<int>(number.digits.size())) return {};
  if (number.point >= 0) return number.digits.substr(static_cast<std::size_t>(number.point));
  return std::string(static_cast<std::size_t>(-number.point), '0') + number.digits;
}

std::string ExponentDigits(const Decimal& number) {
  std::string text = number.digits.substr(0, 1);
  if (number.digits.size() > 1) text += "." + number.digits.substr(1);
  const int exponent = number.point - 1;
  const std::string digits = IntegerText(std::abs(exponent));
  return text + (exponent < 0 ? "E-" : "E+") + (digits.size() < 2 ? "0" : "") + digits;
}

std::string IntegerText(long long value) {
  std::array<char, 32> buffer{};
  return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr};
}

}  // namespace penlog
