#pragma once

#include <cstdint>
#include <string>

namespace penlog {

// A number as its decimal digits, without zeros at either end. The point stands behind the first
// `point` of them (0.5: "5", 0; 0.05: "5", -1; 500: "5", 3). Zero has no digits and no sign.
struct Decimal {
  bool negative = false;
  std::string digits;
  int point = 0;
};

// The digits of the shortest text that reads back to the same finite value of the same width.
Decimal DecimalOf(float value);
Decimal DecimalOf(double value);
Decimal DecimalOf(std::int64_t value);

// Rounds to `places` digits behind the point, half away from zero as the digits stand.
void RoundToPlaces(Decimal& number, int places);

// The digits before the point, none for a number below 1; those behind it, none for a whole one.
std::string WholeDigits(const Decimal& number);
std::string FractionDigits(const Decimal& number);

// "1.5E-07": one digit, the others behind a point, an exponent of at least two; no sign. The
// number isn't zero.
std::string ExponentDigits(const Decimal& number);

// The decimal text of an integer, "-" before a negative one.
std::string IntegerText(long long value);

}  // namespace penlog
