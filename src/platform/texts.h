#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace penlog {

// Text helpers. Texts are UTF-8; a character is a code point, and case is that of ASCII letters
// only, so that no result depends on the machine's locale.

// The text without blanks, tabs and line ends at both ends.
std::string_view Trim(std::string_view text);

// ASCII letters raised, all other bytes as they are.
std::string ToUpper(std::string_view text);

bool EqualNoCase(std::string_view a, std::string_view b);
bool StartsWith(std::string_view text, std::string_view start);
bool EndsWithNoCase(std::string_view text, std::string_view end);

// Whether a line end, a tab, a NUL or another character that isn't printed stands in it.
bool HasControlCharacter(std::string_view text);

// Number of characters; a byte that is no part of valid UTF-8 may count as one.
std::size_t CharacterCount(std::string_view text);

// The first, the last `count` characters; fewer if the text is shorter, none for a count below 1.
std::string Left(std::string_view text, int count);
std::string Right(std::string_view text, int count);

// `count` characters from character `start` on; the first character is 1, and a start below 1 is
// taken as 1. Without a count: all up to the end.
std::string Mid(std::string_view text, int start, int count);
std::string Mid(std::string_view text, int start);

// File bytes as UTF-8. Valid UTF-8 stays; each other byte is read as Windows-1252, in which older
// files were written. A byte order mark at the start is dropped.
std::string FromFileBytes(std::string_view bytes);

}  // namespace penlog
