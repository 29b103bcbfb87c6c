#include "rig/coding.h"

#include <cmath>

#include "platform/numbers.h"
#include "platform/runtime_fault.h"

namespace penlog {

namespace {

constexpr std::int32_t kLargestMagnitude = (1 << 20) - 1;
constexpr int kMostPlaces = 7;

struct DecimalForm {
  bool negative = false;
  int places = 0;
  std::int32_t magnitude = 0;
};

double PowerOfTen(int exponent) {
  double power = 1.0;
  for (int i = 0; i < exponent; ++i) power *= 10.0;
  return power;
}

DecimalForm ToDecimalForm(double value) {
  const double size = std::abs(value);
  if (!(std::round(size) <= kLargestMagnitude)) {
    throw RuntimeFault("An instrument's memory can't hold " + PlainNumber(value));
  }
  DecimalForm form;
  form.negative = value < 0.0;
  for (int places = 0; places <= kMostPlaces; ++places) {
    const double scaled = size * PowerOfTen(places);
    if (std::round(scaled) > kLargestMagnitude) break;
    form.places = places;
    form.magnitude = static_cast<std::int32_t>(std::lround(scaled));
    if (std::abs(scaled - std::round(scaled)) < 1e-7 * std::max(1.0, scaled)) break;
  }
  return form;
}

char SixBits(std::int32_t bits) {
  return static_cast<char>(64 + (bits & 63));
}

}  // namespace

std::string EncodePlain(std::int32_t value, int characters) {
  if (value < 0 || characters < 1 || characters > 3 || (value >> (6 * characters)) != 0) {
    throw RuntimeFault("An instrument's memory can't hold " + PlainNumber(value) + " in " +
                       PlainNumber(characters) + " characters");
  }
  std::string text;
  for (int shift = 6 * (characters - 1); shift >= 0; shift -= 6) text += SixBits(value >> shift);
  return text;
}

std::string EncodeDecimal(double value) {
  const DecimalForm form = ToDecimalForm(value);
  const std::int32_t head = (form.negative ? 8 : 0) + form.places;
  const std::int32_t bits = (head << 20) | form.magnitude;
  std::string text;
  for (int shift = 18; shift >= 0; shift -= 6) text += SixBits(bits >> shift);
  return text;
}

std::int32_t DecodePlain(std::string_view text) {
  std::int32_t value = 0;
  for (const char character : text) {
    const int code = static_cast<unsigned char>(character);
    value = value * 64 + (code < 64 ? 0 : (code - 64) & 63);
  }
  return value;
}

double StoredDecimal(double value) {
  const DecimalForm form = ToDecimalForm(value);
  const double size = form.magnitude / PowerOfTen(form.places);
  return form.negative ? -size : size;
}

}  // namespace penlog
