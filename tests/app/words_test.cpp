// The word table that comes with the program.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <set>

#include "platform/value_reader.h"
#include "support/project_file.h"
#include "support/state.h"

namespace penlog {
namespace {

std::map<std::string, std::string> GermanWords() {
  ValueReader reader("Deutsch.txt", ProjectFile("data/Deutsch.txt"));
  std::map<std::string, std::string> words;
  const int count = reader.ReadInteger();
  for (int i = 0; i < count; ++i) {
    const std::string english = reader.ReadString();
    words[english] = reader.ReadString();
  }
  return words;
}

/// Numbers with their units, names and versions are no words.
bool IsWord(const std::string& caption) {
  static const std::set<std::string> names = {
      "PENLOG", "Version: 2019.01.17.1", "(m)", "0.000 m", "0.00m", "0.00 cm/s"};
  const bool has_letter = std::any_of(caption.begin(), caption.end(), [](unsigned char c) {
    return c < 0x80 && std::isalpha(c) != 0;
  });
  return has_letter && !names.contains(caption);
}

TEST(GermanWords, AreThereForEveryCaption) {
  ClearedWorld world;
  const auto words = GermanWords();
  for (const Form* form : AllForms()) {
    if (IsWord(form->Caption)) {
      EXPECT_TRUE(words.contains(form->Caption)) << form->Name() << " " << form->Caption;
    }
    for (const Control* control : form->Controls()) {
      if (!IsWord(control->Caption)) continue;
      EXPECT_TRUE(words.contains(control->Caption))
          << form->Name() << "." << control->Name() << " \"" << control->Caption << '"';
    }
  }
}

TEST(GermanWords, AreNoneOfThemEmpty) {
  for (const auto& [english, german] : GermanWords()) EXPECT_NE(german, "") << english;
}

}  // namespace
}  // namespace penlog
