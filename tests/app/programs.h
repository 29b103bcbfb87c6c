// What tests of whole programs share: a folder of their own, scripts in it, and waits.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "app/program.h"
#include "support/temp_folder.h"

namespace penlog {

/// Limits are generous: the machine may be busy.
struct Programs : testing::Test {
  using Clock = std::chrono::steady_clock;

  Programs() {
    setenv("allusersprofile", folder.Path().c_str(), 1);
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    std::filesystem::create_directories(data);
  }

  static bool Until(const std::function<bool()>& done, double seconds = 30) {
    const auto end = Clock::now() + std::chrono::duration<double>(seconds);
    while (!done() && Clock::now() < end) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return done();
  }
  static double SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
  }

  static std::string Content(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
  }
  std::string WriteScript(const std::string& text) const {
    const std::string path = folder / "script.txt";
    std::ofstream(path) << text;
    return path;
  }
  /// The operator with that script, to its end.
  int Play(const std::string& text, std::vector<std::string> words = {}) {
    words.insert(words.begin(), WriteScript(text));
    Program player("penlog-operator", words);
    EXPECT_TRUE(Until([&player] { return player.Ended(); }, 60)) << player.Printed();
    printed = player.Printed();
    return player.ExitCode();
  }
  std::string LastLine() const {
    const auto end = printed.find_last_not_of('\n');
    const auto begin = printed.rfind('\n', end);
    return printed.substr(begin == printed.npos ? 0 : begin + 1, end - begin);
  }

  TempFolder folder;
  const std::string data = folder / "PENLOG(KQ)";
  std::string printed;
};

}  // namespace penlog
