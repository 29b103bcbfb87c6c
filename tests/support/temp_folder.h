// A folder of the real disk that goes with the test.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

namespace penlog {

class TempFolder {
 public:
  TempFolder() {
    path_ = testing::TempDir() + "penlog test XXXXXX";  // a path with blanks
    if (::mkdtemp(path_.data()) == nullptr) ADD_FAILURE() << "no folder for the test";
    ::chmod(path_.c_str(), 0755);
  }
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::string& Path() const { return path_; }
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

}  // namespace penlog
