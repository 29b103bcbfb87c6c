// The rest of the machine: tone, other programs, the user, the environment.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace penlog {

class Host {
 public:
  virtual ~Host() = default;
  /// Sounds a tone and returns at once; silent without a sound device.
  virtual void Tone(int frequency_hz, int length_ms) = 0;
  /// Starts a program that outlives this one. False when it can't be started.
  virtual bool StartProgram(const std::string& path, const std::vector<std::string>& words) = 0;
  /// Starts this program anew with the same words.
  virtual bool StartSelf() = 0;
  virtual std::string UserName() = 0;
  virtual std::optional<std::string> Environment(const std::string& name) = 0;
  /// The folder of the program file.
  virtual std::string ProgramFolder() = 0;
  /// Where the user's data lie when the system names no place for all users.
  virtual std::string UserDataFolder() = 0;
  /// Major version of the operating system where it has one of that kind (6 for Windows Vista);
  /// none elsewhere.
  virtual std::optional<int> SystemVersion() = 0;
  /// How the system's locale reads the text "2.1": the number, for the test of the decimal mark.
  virtual double LocaleReads(const std::string& text) = 0;
  /// Size of the screen in pixels.
  virtual int ScreenWidth() = 0;
  virtual int ScreenHeight() = 0;
};

Host& TheHost();
void UseHost(Host* host);

/// A host without a machine: it keeps what it was asked for.
class VirtualHost : public Host {
 public:
  void Tone(int frequency_hz, int length_ms) override {
    tones.push_back({frequency_hz, length_ms});
  }
  bool StartProgram(const std::string& path, const std::vector<std::string>& words) override;
  bool StartSelf() override;
  std::string UserName() override { return user; }
  std::optional<std::string> Environment(const std::string& name) override;
  std::string ProgramFolder() override { return program_folder; }
  std::string UserDataFolder() override { return "/user"; }
  std::optional<int> SystemVersion() override { return system_version; }
  double LocaleReads(const std::string& text) override;
  int ScreenWidth() override { return 1024; }
  int ScreenHeight() override { return 768; }

  struct Sounded {
    int frequency_hz;
    int length_ms;
  };
  std::vector<Sounded> tones;
  std::vector<std::string> started;  ///< "path word word", or "itself"
  bool can_start = true;
  std::string user = "operator";
  std::string all_users = "/allusers";
  std::string program_folder = "/program";
  std::optional<int> system_version;
  bool comma_decimal = false;
};

}  // namespace penlog
