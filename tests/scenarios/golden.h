// Files that a scenario must leave, compared whole with `tests/scenarios/expected/`.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "scenarios/scenario.h"
#include "support/project_file.h"

namespace penlog {

/// With the environment variable PENLOG_BLESS set, `text` becomes the expected file instead.
inline void ExpectGolden(const std::string& name, const std::string& text) {
  const std::string path = "tests/scenarios/expected/" + name;
  if (std::getenv("PENLOG_BLESS") != nullptr) {
    if (testing::Test::HasFailure()) return;  // a run that failed is no model
    const std::filesystem::path file = std::string(PENLOG_SOURCE_DIR) + "/" + path;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
    return;
  }
  const std::string expected = ProjectFile(path);
  if (text == expected) return;
  const auto was = LinesOf(text);
  const auto wanted = LinesOf(expected);
  for (std::size_t i = 0; i < std::max(was.size(), wanted.size()); ++i) {
    const std::string a = i < wanted.size() ? wanted[i] : "(no line)";
    const std::string b = i < was.size() ? was[i] : "(no line)";
    if (a == b) continue;
    ADD_FAILURE() << name << " differs at line " << i + 1 << "\nexpected " << a << "\nwas      "
                  << b;
    return;
  }
  ADD_FAILURE() << name << " differs in its line ends";
}

}  // namespace penlog
