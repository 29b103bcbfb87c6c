// The machine beneath a program with windows.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/host.h"

namespace penlog {

class QtHost : public Host {
 public:
  /// `words` are the program's own, without its name: the toolkit takes some of them away from
  /// its list, and a restart needs all. Needs a QCoreApplication.
  explicit QtHost(std::vector<std::string> words) : words_(std::move(words)) {}

  void Tone(int frequency_hz, int length_ms) override;
  bool StartProgram(const std::string& path, const std::vector<std::string>& words) override;
  bool StartSelf() override;
  std::string UserName() override;
  /// None when it is not set, or empty.
  std::optional<std::string> Environment(const std::string& name) override;
  std::string ProgramFolder() override;
  std::string UserDataFolder() override;
  std::optional<int> SystemVersion() override;
  double LocaleReads(const std::string& text) override;
  /// Of the main screen; 1024 by 768 for a program without any.
  int ScreenWidth() override;
  int ScreenHeight() override;

 private:
  std::vector<std::string> words_;
};

/// How a locale with that decimal mark reads a text: the number at its head, the other mark ends
/// it.
double ReadWithMark(const std::string& text, const std::string& decimal_mark);

}  // namespace penlog
