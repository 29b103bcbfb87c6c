// Files of the project tree, read as they stand on the disk.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace penlog {

/// The whole file, `path` relative to the project; a missing file fails the test.
inline std::string ProjectFile(const std::string& path) {
  std::ifstream file(std::string(PENLOG_SOURCE_DIR) + "/" + path, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << path;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace penlog
