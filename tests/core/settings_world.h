// A data directory with first-run files, and settings texts to lay into it.
#pragma once

#include <string>
#include <vector>

#include "core/channels.h"
#include "core/data_directory.h"
#include "core/first_run.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/settings_replaced.h"
#include "support/world.h"
#include "tests/core/box_answers.h"

namespace penlog {

/// 62 values, each different from the first-run ones where it can be.
inline std::vector<std::string> SampleValues() {
  std::vector<std::string> values;
  for (int channel = 1; channel <= 18; ++channel) values.emplace_back("1");
  values[0] = "2";
  values.insert(values.end(), {"\"Ground Survey Ltd.\"", "0.01", "0.05"});         // 19 to 21
  values.insert(values.end(), {"2", "1", "1", "1", "1", "1", "1", "1", "0"});      // 22 to 30
  values.insert(values.end(), {"0", "1", "2", "0", "1", "0"});                     // 31 to 36
  values.insert(values.end(), {"5", "6", "7", "1", "3", "4", "8"});                // 37 to 43
  for (int channel = 21; channel <= 30; ++channel) values.emplace_back("1");       // 44 to 53
  values.insert(values.end(), {"1", "9", "10", "4", "1", "113", "11", "3", "2"});  // 54 to 62
  return values;
}

inline std::string Lines(const std::vector<std::string>& values, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += values[i] + "\r\n";
  return text;
}

/// A line of a settings text, from 1, without its end; empty if there is none.
inline std::string SetupLine(const std::string& text, std::size_t line) {
  std::size_t start = 0;
  for (std::size_t n = 1; n < line; ++n) {
    start = text.find("\r\n", start);
    if (start == std::string::npos) return {};
    start += 2;
  }
  return text.substr(start, text.find("\r\n", start) - start);
}

struct SettingsWorld : World {
  SettingsWorld() {
    channels = ChannelState{};
    settings = SettingsState{};
    replaced_settings = ReplacedSettingsState{};
    session = SessionState{};
    session.DataDirectory = "/data";
    disk.MakeFolder("/data");
    settings.LanguageCount = 2;
  }
  void PutSetup(const std::string& text) { disk.Put(SetupPath(), text); }
  std::string Setup() { return disk.Read(SetupPath()); }
  static std::string SetupPath() { return "/data/System Setup Values.txt"; }

  BoxAnswers boxes;
};

}  // namespace penlog
