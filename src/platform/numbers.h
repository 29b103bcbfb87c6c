#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace penlog {

// Numbers to texts and back. Nothing here asks the locale: the decimal mark is a point, and only
// `LocaleNumber` knows of a comma. The decimal digits of a number are always those of its shortest
// text that reads back to the same value of the same width, so 2.675 as a 32-bit float has the
// digits 2675, though the float lies a little below.

// `value` in a number format: `0` a digit that is always printed, `#` one that is printed if it
// has something to say (no leading zero before the point, no trailing zero behind it), `.` the
// point. Rounds half away from zero; digits before the point are never cut; a negative number that
// rounds to zero has no sign. Characters before and behind the places are printed as they stand,
// the sign stands directly before the digits; a `,` among the places prints nothing. A format
// without places gives `PlainNumber`. A value that isn't finite gives "nan", "inf" or "-inf".
std::string Format(float value, std::string_view pattern);
std::string Format(double value, std::string_view pattern);
std::string Format(int value, std::string_view pattern);
std::string Format(std::int64_t value, std::string_view pattern);

// `text` in a text format: as many characters as the format has `@`, blanks at the left, or with
// a leading `!` at the right. Longer text stays whole. Characters, not bytes, are counted.
std::string FormatText(std::string_view text, std::string_view pattern);

// `text` right-aligned in `width` characters; longer text stays whole.
std::string RightField(std::string_view text, int width);

// The shortest text that reads back to the same number: "0.5", "-3", "123456.79". Magnitudes below
// 1E-05 and from 1E+16 on have an exponent: "1.5E-07", "1E+20". Not finite: as `Format`.
std::string PlainNumber(float value);
std::string PlainNumber(double value);
std::string PlainNumber(int value);
std::string PlainNumber(long value);
std::string PlainNumber(long long value);

// The plain form for printing: one blank before, unless negative, and one behind: " 0.5 ", "-3 ".
std::string PrintNumber(float value);
std::string PrintNumber(double value);
std::string PrintNumber(int value);
std::string PrintNumber(long value);
std::string PrintNumber(long long value);

// " 31" or "-3": a leading blank unless negative, none behind, as in the command "C 31 17".
std::string LeadingBlankNumber(int value);

// The number at the start of `text`: white space before it is skipped, then sign, digits with a
// point, exponent behind E or D. Stops at the first character that isn't part of it; 0 if there is
// none ("", "+?", "E5"). Too large for the type gives its largest finite value: what a disturbed
// line sends must neither end a routine nor put an infinity into a sum.
double LeadingNumber(std::string_view text);

// The same, rounded once to a 32-bit float.
float ParseSingle(std::string_view text);

// The number that the whole of `text`, but for white space around it, stands for; none if there is
// anything else in it, or if the number is too large for the type.
std::optional<double> WholeNumberText(std::string_view text);
std::optional<float> WholeSingleText(std::string_view text);

// Nearest integer, a half going to the even neighbour. RuntimeFault("Overflow") if the result
// doesn't fit or the value isn't a number.
std::int64_t RoundHalfEven(double value);
std::int32_t ToInteger32(double value);
std::int16_t ToInteger16(double value);

// The largest integer not above `value`.
double IntPart(double value);

// A number typed by the operator, with the decimal mark that the locale reads: where that is a
// comma the first "." becomes ",", where it is a point the first "," becomes ".". Any other text
// stays as it is.
std::string LocaleNumberText(std::string_view text, bool comma_decimal);

// The leading number of that text; with `comma_decimal` its decimal mark is the comma.
double LocaleNumber(std::string_view text, bool comma_decimal);

}  // namespace penlog
