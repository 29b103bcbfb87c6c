#include "platform/value_reader.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"

namespace penlog {
namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kLineEnds = "\r\n";
constexpr std::string_view kWhiteSpace = " \t\r\n";

std::size_t FindNot(std::string_view text, std::string_view characters, std::size_t from) {
  return std::min(text.find_first_not_of(characters, from), text.size());
}

std::size_t FindAny(std::string_view text, std::string_view characters, std::size_t from) {
  return std::min(text.find_first_of(characters, from), text.size());
}

// A CR, an LF, or both as a pair end one line.
int CountLineEnds(std::string_view text) {
  int count = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool second = text[i] == '\n' && i > 0 && text[i - 1] == '\r';
    if (kLineEnds.find(text[i]) != std::string_view::npos && !second) ++count;
  }
  return count;
}

// A damaged file may hold anything: short, and printable.
std::string Shown(std::string_view found) {
  std::string text = Left(found, 40);
  std::replace_if(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }, '?');
  return text.empty() ? "nothing" : "\"" + text + "\"";
}

}  // namespace

ValueReader::ValueReader(std::string_view title, std::string_view text)
    : title_(title), text_(FromFileBytes(text)) {}

bool ValueReader::AtEnd() const {
  return FindNot(text_, kWhiteSpace, at_) == text_.size();
}

int ValueReader::Line() const {
  return 1 + CountLineEnds(std::string_view(text_).substr(0, at_));
}

std::int16_t ValueReader::ReadInteger() {
  using Limits = std::numeric_limits<std::int16_t>;
  return static_cast<std::int16_t>(WholeNumber(Limits::min(), Limits::max()));
}

std::int32_t ValueReader::ReadLong() {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(WholeNumber(Limits::min(), Limits::max()));
}

std::int64_t ValueReader::WholeNumber(std::int64_t lowest, std::int64_t highest) {
  const Value value = NextNumber();
  const std::optional<double> number = WholeNumberText(value.text);
  if (!number || *number != std::floor(*number)) Fail("a whole number", value.text);
  if (*number < static_cast<double>(lowest) || *number > static_cast<double>(highest)) {
    Fail("a number from " + PlainNumber(lowest) + " to " + PlainNumber(highest), value.text);
  }
  at_ = value.end;
  return static_cast<std::int64_t>(*number);
}

float ValueReader::ReadSingle() {
  const Value value = NextNumber();
  const std::optional<float> number = WholeSingleText(value.text);
  if (!number) Fail("a number", value.text);
  at_ = value.end;
  return *number;
}

std::string ValueReader::ReadString() {
  Value value = NextString();
  at_ = value.end;
  return std::move(value.text);
}

std::string ValueReader::ReadLine() {
  if (at_ == text_.size()) FailEnd();
  const std::size_t end = FindAny(text_, kLineEnds, at_);
  std::string line = text_.substr(at_, end - at_);
  at_ = SkipLineEnd(end);
  return line;
}

ValueReader::Value ValueReader::NextNumber() const {
  if (AtEnd()) FailEnd();
  const std::size_t start = FindNot(text_, kWhiteSpace, at_);
  return text_[start] == '"' ? Quoted(start) : Unquoted(start, " \t,\r\n");
}

ValueReader::Value ValueReader::NextString() const {
  if (AtEnd()) FailEnd();
  const std::size_t start = FindNot(text_, kBlanks, at_);
  return text_[start] == '"' ? Quoted(start) : Unquoted(start, ",\r\n");
}

ValueReader::Value ValueReader::Quoted(std::size_t quote) const {
  const std::size_t end = FindAny(text_, "\"\r\n", quote + 1);
  if (end == text_.size() || text_[end] != '"') {
    Fail("a closing double quote", std::string_view(text_).substr(quote, end - quote));
  }
  return {text_.substr(quote + 1, end - quote - 1), SkipSeparator(end + 1)};
}

ValueReader::Value ValueReader::Unquoted(std::size_t start, std::string_view stops) const {
  const std::size_t end = FindAny(text_, stops, start);
  const std::string_view text = std::string_view(text_).substr(start, end - start);
  return {std::string(Trim(text)), SkipSeparator(end)};
}

// Blanks and one comma or line end; without one of these the next value follows at once.
std::size_t ValueReader::SkipSeparator(std::size_t at) const {
  const std::size_t next = FindNot(text_, kBlanks, at);
  if (next < text_.size() && text_[next] == ',') return next + 1;
  return SkipLineEnd(next);
}

std::size_t ValueReader::SkipLineEnd(std::size_t at) const {
  const std::string_view rest = std::string_view(text_).substr(at);
  if (rest.starts_with("\r\n")) return at + 2;
  return rest.starts_with('\r') || rest.starts_with('\n') ? at + 1 : at;
}

void ValueReader::FailEnd() const {
  throw RuntimeFault(title_ + " ends too early at line " + PlainNumber(Line()));
}

void ValueReader::Fail(std::string_view wanted, std::string_view found) const {
  const std::size_t start = FindNot(text_, kWhiteSpace, at_);
  const int line = Line() + CountLineEnds(std::string_view(text_).substr(at_, start - at_));
  throw RuntimeFault(title_ + ", line " + PlainNumber(line) + ": " + std::string(wanted) +
                     " was expected, found " + Shown(found));
}

}  // namespace penlog
