// The languages that the screens can be shown in. A translation is shown and nothing else: what
// the program compares, writes and records stays English.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace penlog {

constexpr int kMostLanguages = 11;
constexpr int kMostWords = 1000;

/// The pairs of the word table in use; equal sizes, `WordCount` at most 1000.
struct WordTables {
  std::vector<std::string> EnglishWords;
  std::vector<std::string> TranslatedWords;
  int WordCount = 0;
};

inline WordTables words;

/// Reads "AvailableLanguages.txt". A missing or damaged file is told; the languages read up to
/// there are kept, and English is always one.
void LoadLanguages();

/// Reads the word table of `settings.Language`, "<its entry>.txt": none for English. A missing or
/// damaged table is told; what it doesn't hold is shown in English.
void LoadWordTable();

/// What is shown in place of an English text: its translation, or the text itself.
std::string Translate(std::string_view english);

}  // namespace penlog
