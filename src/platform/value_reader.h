#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace penlog {

// Reads a sequential text value by value. Values stand apart by commas or line ends (CR LF, LF or
// CR), blanks around them are skipped; a number also ends at a blank. A text in double quotes is
// taken whole up to the next double quote, which must stand on the same line; one without quotes
// goes up to the comma or line end. Numbers skip empty lines; for a text an empty line is an empty
// text.
//
// What doesn't fit raises RuntimeFault with the title, the line and what was found there; the
// place of reading then still stands before the value.
class ValueReader {
 public:
  // `title` names the text in messages, usually the file's name; `text` is taken as file bytes
  // (see FromFileBytes).
  ValueReader(std::string_view title, std::string_view text);

  // True if only white space is left.
  bool AtEnd() const;

  // A whole number of 16 or of 32 bits; "2.0" is whole, "2.5" isn't one.
  std::int16_t ReadInteger();
  std::int32_t ReadLong();

  // A number of 32-bit floating point; a number in quotes is read as well.
  float ReadSingle();

  std::string ReadString();

  // All up to the line end, blanks, commas and quotes included.
  std::string ReadLine();

  // Number of the line that is read next, from 1.
  int Line() const;

 private:
  struct Value {
    std::string text;
    std::size_t end = 0;  // behind the value and what parts it from the next
  };

  Value NextNumber() const;
  Value NextString() const;
  Value Quoted(std::size_t quote) const;
  Value Unquoted(std::size_t start, std::string_view stops) const;
  std::int64_t WholeNumber(std::int64_t lowest, std::int64_t highest);
  std::size_t SkipSeparator(std::size_t at) const;
  std::size_t SkipLineEnd(std::size_t at) const;
  [[noreturn]] void FailEnd() const;
  [[noreturn]] void Fail(std::string_view wanted, std::string_view found) const;

  std::string title_;
  std::string text_;
  std::size_t at_ = 0;
};

}  // namespace penlog
