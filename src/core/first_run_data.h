// The files of data/, built into the program.
#pragma once

#include <string_view>
#include <vector>

namespace penlog {

struct FirstRunFile {
  std::string_view name;
  std::string_view content;  ///< bytes as they are laid down
};

/// All of them, by name; "Channel2.txt" before "Channel10.txt".
const std::vector<FirstRunFile>& FirstRunFiles();

}  // namespace penlog
