#include "rig/command_words.h"

#include <cmath>

#include "platform/numbers.h"
#include "platform/texts.h"

namespace penlog {

Words SplitWords(std::string_view text) {
  Words words;
  while (!(text = Trim(text)).empty()) {
    const bool quoted = text.front() == '"' && text.find('"', 1) != std::string_view::npos;
    const std::size_t end = quoted ? text.find('"', 1) : text.find_first_of(" \t");
    words.emplace_back(
        text.substr(quoted ? 1 : 0, end == std::string_view::npos ? end : end - (quoted ? 1 : 0)));
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return words;
}

double NumberWord(const Words& words, std::size_t index, double least, double most) {
  if (index >= words.size()) throw BadWords{"a number is missing"};
  const auto number = WholeNumberText(words[index]);
  if (!number || *number < least || *number > most) {
    throw BadWords{"\"" + words[index] + "\" is no number from " + PlainNumber(least) + " to " +
                   PlainNumber(most)};
  }
  return *number;
}

int WholeWord(const Words& words, std::size_t index, int least, int most) {
  const double number = NumberWord(words, index, least, most);
  if (number != std::floor(number)) throw BadWords{"\"" + words[index] + "\" is not whole"};
  return static_cast<int>(number);
}

bool OnOffWord(const Words& words, std::size_t index) {
  const std::string word = index < words.size() ? words[index] : "";
  if (word != "on" && word != "off") throw BadWords{"\"on\" or \"off\" is missing"};
  return word == "on";
}

std::optional<Micros> SecondsWord(const Words& words, std::size_t index) {
  if (index >= words.size() || !EndsWithNoCase(words[index], "s")) return std::nullopt;
  const std::string& word = words[index];
  const auto seconds = WholeNumberText(std::string_view(word).substr(0, word.size() - 1));
  if (!seconds || *seconds < 0.0 || *seconds > 1e6) return std::nullopt;
  return static_cast<Micros>(std::llround(*seconds * 1e6));
}

}  // namespace penlog
