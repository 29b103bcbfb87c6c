#include "operator/script.h"

#include <algorithm>
#include <array>
#include <regex>

#include "platform/numbers.h"
#include "platform/texts.h"

namespace penlog {

namespace {

/// An action's grammar: what each word must be, and how many must and may stand.
struct Grammar {
  const char* verb;
  std::size_t least;
  std::size_t most;
  bool names_control;  // the first word is SCREEN.CONTROL
};

constexpr std::array kGrammars = {
    Grammar{"screen", 1, 2, false}, Grammar{"click", 1, 1, true},   Grammar{"press", 1, 1, true},
    Grammar{"release", 1, 1, true}, Grammar{"type", 2, 2, true},    Grammar{"select", 2, 2, true},
    Grammar{"check", 1, 1, true},   Grammar{"uncheck", 1, 1, true}, Grammar{"menu", 1, 1, true},
    Grammar{"point", 3, 4, true},   Grammar{"answer", 2, 2, false}, Grammar{"file", 1, 1, false},
    Grammar{"expect", 2, 3, true},  Grammar{"wait", 1, 1, false},   Grammar{"rig", 1, 100, false},
    Grammar{"disk", 1, 1, false},   Grammar{"shot", 1, 2, false},   Grammar{"kill", 0, 0, false},
    Grammar{"end", 0, 0, false},
};

struct Word {
  std::string text;
  bool quoted = false;
};

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\r';
}

/// Takes a quoted text that begins at `at`; false if its quote is not closed.
bool TakeQuoted(std::string_view line, std::size_t& at, std::string& text) {
  for (++at; at < line.size(); ++at) {
    if (line[at] != '"') {
      text += line[at];
    } else if (at + 1 < line.size() && line[at + 1] == '"') {
      text += line[++at];
    } else {
      ++at;
      return true;
    }
  }
  return false;
}

/// `#2` names a list entry where `select` has its entry; anywhere else `#` begins a comment.
bool IsEntryNumber(std::string_view text, const std::vector<Word>& before) {
  const bool is_entry = before.size() == 2 && before[0].text == "select";
  return is_entry && text.size() > 1 && text[1] >= '0' && text[1] <= '9';
}

bool SplitWords(std::string_view line, std::vector<Word>& words) {
  std::size_t at = 0;
  while (true) {
    while (at < line.size() && IsBlank(line[at])) ++at;
    if (at >= line.size()) return true;
    if (line[at] == '#' && !IsEntryNumber(line.substr(at), words)) return true;
    Word word;
    if (line[at] == '"') {
      word.quoted = true;
      if (!TakeQuoted(line, at, word.text)) return false;
    } else {
      while (at < line.size() && !IsBlank(line[at])) word.text += line[at++];
    }
    words.push_back(std::move(word));
  }
}

/// The word in its quotes again, if it stood in them.
std::string AsWritten(const Word& word) {
  if (!word.quoted) return word.text;
  std::string text = "\"";
  for (const char c : word.text) text += c == '"' ? "\"\"" : std::string(1, c);
  return text + "\"";
}

bool IsNumber(const std::string& text) {
  const auto number = WholeNumberText(text);
  return number && *number >= 0;
}

bool IsFraction(const std::string& text) {
  return IsNumber(text) && *WholeNumberText(text) <= 1;
}

/// Why the words don't fit the action; empty if they do.
std::string WordFault(const ScriptAction& action) {
  const auto& words = action.words;
  const auto found = std::find_if(kGrammars.begin(), kGrammars.end(),
                                  [&](const Grammar& g) { return action.verb == g.verb; });
  if (found == kGrammars.end()) return "unknown action \"" + action.verb + "\"";
  if (words.size() < found->least) return "\"" + action.verb + "\" needs more words";
  if (words.size() > found->most) return "\"" + action.verb + "\" has too many words";
  if (found->names_control && words[0].find('.') == std::string::npos) {
    return "\"" + words[0] + "\" is not SCREEN.CONTROL";
  }
  if (action.verb == "disk" && words[0] != "full" && words[0] != "free") {
    return "\"disk\" is \"full\" or \"free\"";
  }
  if (action.verb == "wait" && !IsNumber(words[0])) return "\"wait\" needs seconds";
  if (action.verb == "screen" && words.size() == 2 && !IsNumber(words[1])) {
    return "\"screen\" needs seconds behind the name";
  }
  if (action.verb == "expect" && words.size() == 3 && !IsNumber(words[2])) {
    return "\"expect\" needs seconds at its end";
  }
  if (action.verb == "point" && (!IsFraction(words[1]) || !IsFraction(words[2]))) {
    return "\"point\" needs two fractions from 0 to 1";
  }
  if (action.verb == "point" && words.size() == 4 && words[3] != "click") {
    return "\"point\" may end in \"click\" only";
  }
  if (action.verb == "answer" && words[0] != "ok" && words[0] != "cancel" && words[0] != "yes" &&
      words[0] != "no") {
    return "\"" + words[0] + "\" is no answer";
  }
  return {};
}

/// Makes the pattern of an `expect`; why it can't be made, empty if it can.
std::string MakePattern(ScriptAction& action) {
  if (action.verb != "expect" || !action.words[1].starts_with('~')) return {};
  try {
    action.pattern = std::regex(action.words[1].substr(1));
  } catch (const std::regex_error&) {
    return "\"" + action.words[1] + "\" is no pattern";
  }
  return {};
}

}  // namespace

Script ParseScript(const std::string& title, std::string_view text) {
  Script script{title, {}};
  int number = 0;
  while (!text.empty()) {
    const auto end = text.find('\n');
    const std::string line(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    ++number;
    const std::string where = title + ":" + std::to_string(number) + ": ";
    std::vector<Word> words;
    if (!SplitWords(line, words)) throw ScriptFault(where + "a quote is not closed");
    if (words.empty()) continue;
    ScriptAction action;
    action.line = number;
    action.verb = words[0].text;
    for (std::size_t i = 1; i < words.size(); ++i) {
      action.words.push_back(words[i].text);
      action.quoted.push_back(words[i].quoted);
      action.rest += (i > 1 ? " " : "") + AsWritten(words[i]);
    }
    std::string fault = WordFault(action);
    if (fault.empty()) fault = MakePattern(action);
    if (!fault.empty()) throw ScriptFault(where + fault);
    script.actions.push_back(std::move(action));
  }
  return script;
}

}  // namespace penlog
