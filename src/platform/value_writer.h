#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace penlog {

// Builds a sequential text in memory, each line ended by CR LF, so that a file is written in one
// piece. What `ValueReader` reads back is equal, but for the two cases told at `QuotedString`.
class ValueWriter {
 public:
  // One value a line.
  void Integer(std::int64_t value);

  // RuntimeFault("Overflow") for a value that isn't finite: no reader would take it back.
  void Single(float value);

  // The text in double quotes. The form has no way to hold a double quote or a line end: a double
  // quote within is written as a single one ('), a line end as a blank.
  void QuotedString(std::string_view text);

  // The text as it stands.
  void PrintLine(std::string_view text);

  // A line of one number in the form for printing: " 0.5 ".
  void PrintNumberLine(float value);
  void PrintNumberLine(double value);
  void PrintNumberLine(int value);

  // One line of numbers, each followed by a comma, the last by the line end: "3,0,0".
  void ListLine(std::initializer_list<std::int64_t> values);

  const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

}  // namespace penlog
