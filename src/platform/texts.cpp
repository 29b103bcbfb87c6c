#include "platform/texts.h"

#include <algorithm>
#include <array>

namespace penlog {
namespace {

constexpr std::string_view kWhiteSpace = " \t\r\n";

// Windows-1252 from 0x80 to 0x9F; the five codes that it leaves open keep their number.
constexpr std::array<char16_t, 32> kWindows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

unsigned Byte(char c) {
  return static_cast<unsigned char>(c);
}

char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool IsContinuation(char c) {
  return (Byte(c) & 0xC0U) == 0x80U;
}

// Bytes up to the end of the first `count` characters.
std::size_t BytesOf(std::string_view text, int count) {
  std::size_t at = 0;
  for (; count > 0 && at < text.size(); --count) {
    ++at;
    while (at < text.size() && IsContinuation(text[at])) ++at;
  }
  return at;
}

// Smallest and largest second byte by the first one: they shut out long forms of short codes,
// surrogates and codes above 0x10FFFF.
bool SecondByteFits(unsigned first, unsigned second) {
  const unsigned low = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
  const unsigned high = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
  return second >= low && second <= high;
}

// Length of the valid UTF-8 sequence at the start of a text that isn't empty; 0 if there is none.
std::size_t SequenceLength(std::string_view text) {
  const unsigned first = Byte(text[0]);
  if (first < 0x80) return 1;
  if (first < 0xC2 || first > 0xF4) return 0;
  const std::size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
  if (text.size() < length || !SecondByteFits(first, Byte(text[1]))) return 0;
  for (std::size_t i = 2; i < length; ++i) {
    if (!IsContinuation(text[i])) return 0;
  }
  return length;
}

void AppendWindows1252(std::string& text, unsigned byte) {
  const unsigned code = byte < 0xA0 ? kWindows1252[byte - 0x80] : byte;
  if (code < 0x800) {
    text += static_cast<char>(0xC0U | (code >> 6U));
  } else {
    text += static_cast<char>(0xE0U | (code >> 12U));
    text += static_cast<char>(0x80U | ((code >> 6U) & 0x3FU));
  }
  text += static_cast<char>(0x80U | (code & 0x3FU));
}

}  // namespace

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kWhiteSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

std::string ToUpper(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) c = Upper(c);
  return upper;
}

bool EqualNoCase(std::string_view a, std::string_view b) {
  return ToUpper(a) == ToUpper(b);
}

bool StartsWith(std::string_view text, std::string_view start) {
  return text.starts_with(start);
}

bool EndsWithNoCase(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && EqualNoCase(text.substr(text.size() - end.size()), end);
}

bool HasControlCharacter(std::string_view text) {
  return std::any_of(text.begin(), text.end(), [](char c) {
    const auto code = static_cast<unsigned char>(c);
    return code < 0x20 || code == 0x7F;
  });
}

std::size_t CharacterCount(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); at += BytesOf(text.substr(at), 1)) ++count;
  return count;
}

std::string Left(std::string_view text, int count) {
  return std::string(text.substr(0, BytesOf(text, count)));
}

std::string Right(std::string_view text, int count) {
  if (count < 1) return {};
  const std::size_t all = CharacterCount(text);
  const std::size_t wanted = static_cast<std::size_t>(count);
  if (wanted >= all) return std::string(text);
  return std::string(text.substr(BytesOf(text, static_cast<int>(all - wanted))));
}

std::string Mid(std::string_view text, int start, int count) {
  return Left(text.substr(BytesOf(text, std::max(start, 1) - 1)), count);
}

std::string Mid(std::string_view text, int start) {
  return std::string(text.substr(BytesOf(text, std::max(start, 1) - 1)));
}

std::string FromFileBytes(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const std::size_t length = SequenceLength(bytes);
    if (length == 0) AppendWindows1252(text, Byte(bytes[0]));
    text += bytes.substr(0, length);
    bytes.remove_prefix(length == 0 ? 1 : length);
  }
  return text;
}

}  // namespace penlog
