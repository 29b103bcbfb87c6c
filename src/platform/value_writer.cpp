#include "platform/value_writer.h"

#include <algorithm>
#include <cmath>

#include "platform/numbers.h"
#include "platform/runtime_fault.h"

namespace penlog {
namespace {

// A CR LF pair becomes one blank, as it is one line end.
std::string OneLine(std::string_view text) {
  std::string line;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n' && i > 0 && text[i - 1] == '\r') continue;
    line += text[i] == '\r' || text[i] == '\n' ? ' ' : text[i];
  }
  return line;
}

}  // namespace

void ValueWriter::Integer(std::int64_t value) {
  PrintLine(PlainNumber(value));
}

void ValueWriter::Single(float value) {
  if (!std::isfinite(value)) throw RuntimeFault("Overflow");
  PrintLine(PlainNumber(value));
}

void ValueWriter::QuotedString(std::string_view text) {
  std::string line = OneLine(text);
  std::replace(line.begin(), line.end(), '"', '\'');
  PrintLine("\"" + line + "\"");
}

void ValueWriter::PrintLine(std::string_view text) {
  text_ += text;
  text_ += "\r\n";
}

void ValueWriter::PrintNumberLine(float value) {
  PrintLine(PrintNumber(value));
}

void ValueWriter::PrintNumberLine(double value) {
  PrintLine(PrintNumber(value));
}

void ValueWriter::PrintNumberLine(int value) {
  PrintLine(PrintNumber(value));
}

void ValueWriter::ListLine(std::initializer_list<std::int64_t> values) {
  std::string line;
  for (const std::int64_t value : values) line += (line.empty() ? "" : ",") + PlainNumber(value);
  PrintLine(line);
}

}  // namespace penlog
