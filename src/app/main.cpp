// penlog: the console.
#include <QApplication>
#include <algorithm>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "app/console.h"
#include "app/display_check.h"
#include "core/data_directory.h"
#include "core/languages.h"
#include "core/session.h"
#include "forms/operator_actions.h"
#include "platform/boxes.h"
#include "platform/qt/mirror.h"
#include "platform/qt/real_machine.h"
#include "platform/qt/screen_room.h"
#include "platform/view.h"

namespace {

constexpr const char* kUsage =
    "usage: penlog [--place left|right|WIDTHxHEIGHT+X+Y]\n"
    "The console. Its data directory is \"PENLOG(KQ)\" in the folder that the environment names "
    "as\n"
    "\"allusersprofile\", or else among the user's data; \"Serial Ports.txt\" in it lists the "
    "ports.\n"
    "Words of the windows' toolkit (-platform, -style, -geometry ...) are passed on to it.\n";

bool Holds(const std::vector<std::string>& words, const char* word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

int Refuse(const std::string& why) {
  std::fprintf(stderr, "penlog: %s\n\n%s", why.c_str(), kUsage);
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  // Before the toolkit takes its own words away: a restart needs them all.
  const std::vector<std::string> words(argv + 1, argv + argc);
  if (Holds(words, "--help")) {
    std::fputs(kUsage, stdout);
    return 0;
  }
  if (!penlog::HasDisplay() && !penlog::PlatformIsNamed() && !Holds(words, "-platform")) {
    return Refuse("there is no display for its windows");
  }
  QApplication application(argc, argv);
  // What is left of the words: the toolkit has taken its own.
  const std::vector<std::string> own(argv + 1, argv + argc);
  if (!own.empty() && own[0] != "--place") return Refuse("unknown word \"" + own[0] + "\"");
  if (!own.empty()) {
    const auto place = own.size() == 2 ? penlog::ScreenPlaceOf(own[1]) : std::nullopt;
    if (!place) return Refuse("--place needs left, right, whole or WIDTHxHEIGHT+X+Y");
    penlog::UsePlace(*place);
  }
  penlog::RealMachineSetup setup;
  setup.words = words;
  setup.port_list = [] {
    // Known once the start screen has found its data directory.
    return penlog::session.DataDirectory.empty() ? std::string()
                                                 : penlog::DataPath("Serial Ports.txt");
  };
  setup.report = [](const std::string& text) { penlog::PostBox(text); };
  penlog::RealMachine machine(setup);
  penlog::WindowMirror mirror;
  penlog::UseView(&mirror);
  penlog::UseTranslation(penlog::Translate);
  penlog::CountStampsFromHere();
  penlog::RunConsole();
  penlog::UseView(nullptr);
  return 0;
}
