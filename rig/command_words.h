// Words of the rig's control language and what they must be.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/event_queue.h"

namespace penlog {

using Words = std::vector<std::string>;

/// What is wrong with the words: becomes the reply. No `RuntimeFault`, since the usage is added.
struct BadWords {
  std::string text;
};

/// At blanks; a word in double quotes may hold blanks.
Words SplitWords(std::string_view text);

// Each raises `BadWords` when the word at `index` is missing or no such thing.
double NumberWord(const Words& words, std::size_t index, double least, double most);
int WholeWord(const Words& words, std::size_t index, int least, int most);
bool OnOffWord(const Words& words, std::size_t index);

/// "5s" or "0.2s"; none for other words.
std::optional<Micros> SecondsWord(const Words& words, std::size_t index);

}  // namespace penlog
