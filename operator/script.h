// Operator scripts: one action a line, words separated by blanks, texts with blanks in double
// quotes ("" for a quote), `#` at the beginning of a word starts a comment.
//
//   screen  NAME [seconds]                  wait until that screen is visible (10 s)
//   click / press / release  SCREEN.CONTROL
//   type    SCREEN.CONTROL TEXT             replace the content of a text field
//   select  SCREEN.CONTROL TEXT             list entry by text, `#2` by number (in
//                                           quotes a text); on Dir1 a path
//   check / uncheck / menu   SCREEN.CONTROL
//   point   SCREEN.CONTROL X Y [click]      pointer over a picture, fractions 0..1
//   answer  ok|cancel|yes|no "TEXT"         the box now or next (30 s) must begin with TEXT
//   file    PATH | file cancel              answer the file dialog now or next
//   expect  SCREEN.CONTROL "TEXT" [seconds] until its text equals (10 s); `~REGEX` for a pattern
//   expect  SCREEN.CONTROL enabled|disabled|visible|hidden|checked|unchecked|solid|hollow [seconds]
//   wait    SECONDS
//   rig     WORDS                           a command to the simulated rig
//   disk    full|free                       the console's disk takes nothing more, or again;
//                                           in virtual time alone
//   shot    FILE.png [SCREEN]
//   kill                                    the process ends at once, as in a crash
//   end                                     the window is closed
#pragma once

#include <regex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace penlog {

struct ScriptAction {
  int line = 0;
  std::string verb;
  std::vector<std::string> words;  ///< without the verb
  std::vector<bool> quoted;        ///< whether the word stood in quotes
  std::string rest;                ///< the line behind the verb, as written (for `rig`)
  std::regex pattern;              ///< of an `expect` with "~REGEX": made once, it is slow to make
};

struct Script {
  std::string title;
  std::vector<ScriptAction> actions;
};

/// A script that can't be read: "TITLE:LINE: reason".
class ScriptFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads a script; raises a `ScriptFault` for an unknown action or words that don't fit it.
Script ParseScript(const std::string& title, std::string_view text);

}  // namespace penlog
