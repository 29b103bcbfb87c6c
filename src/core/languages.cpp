#include "core/languages.h"

#include <algorithm>

#include "core/data_directory.h"
#include "core/message.h"
#include "core/settings.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/value_reader.h"
#include "platform/view.h"

namespace penlog {

namespace {

constexpr std::string_view kListName = "AvailableLanguages.txt";

void AddLanguage(const std::string& name) {
  settings.AvailableLanguages[static_cast<std::size_t>(settings.LanguageCount)] = name;
  ++settings.LanguageCount;
}

/// A count from the file: how many to read; a fault afterwards if that is not what it says.
int Within(int told, int most) {
  return std::clamp(told, 0, most);
}

void CheckCount(std::string_view title, int told, int least, int most) {
  if (told >= least && told <= most) return;
  throw RuntimeFault(std::string(title) + ": " + PlainNumber(told) + " entries, there can be " +
                     PlainNumber(least) + " to " + PlainNumber(most));
}

void ReadLanguages() {
  ValueReader reader(kListName, ReadFile(DataPath(kListName)));
  const int told = reader.ReadInteger();
  for (int i = 0; i < Within(told, kMostLanguages); ++i) AddLanguage(reader.ReadString());
  CheckCount(kListName, told, 1, kMostLanguages);
}

void ReadWords(const std::string& name) {
  ValueReader reader(name, ReadFile(DataPath(name)));
  const int told = reader.ReadInteger();
  for (int i = 0; i < Within(told, kMostWords); ++i) {
    std::string english = reader.ReadString();
    words.TranslatedWords.push_back(reader.ReadString());
    words.EnglishWords.push_back(std::move(english));
    ++words.WordCount;
  }
  CheckCount(name, told, 0, kMostWords);
}

}  // namespace

void LoadLanguages() {
  settings.AvailableLanguages.fill({});
  settings.LanguageCount = 0;
  try {
    ReadLanguages();
  } catch (const RuntimeFault& fault) {
    Tell(std::string(fault.what()) + ".  THE LANGUAGES FROM THERE ON ARE NOT OFFERED.");
  }
  if (settings.LanguageCount == 0) AddLanguage("English");
}

void LoadWordTable() {
  words = WordTables{};
  UseTranslation(Translate);
  if (settings.Language <= 0 || settings.Language >= settings.LanguageCount) return;
  const auto entry = static_cast<std::size_t>(settings.Language);
  try {
    ReadWords(settings.AvailableLanguages[entry] + ".txt");
  } catch (const RuntimeFault& fault) {
    Tell(std::string(fault.what()) + ".  WHAT IS NOT IN THE TABLE IS SHOWN IN ENGLISH.");
  }
}

std::string Translate(std::string_view english) {
  if (settings.Language <= 0) return std::string(english);
  const auto found = std::find(words.EnglishWords.begin(), words.EnglishWords.end(), english);
  if (found == words.EnglishWords.end()) return std::string(english);
  return words.TranslatedWords[static_cast<std::size_t>(found - words.EnglishWords.begin())];
}

}  // namespace penlog
