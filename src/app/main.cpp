// penlog: the console.
#include <QApplication>
#include <string>

#include "app/console.h"
#include "core/data_directory.h"
#include "core/languages.h"
#include "core/session.h"
#include "platform/boxes.h"
#include "platform/qt/mirror.h"
#include "platform/qt/real_machine.h"
#include "platform/view.h"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  penlog::RealMachineSetup setup;
  setup.words.assign(argv + 1, argv + argc);
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
  penlog::RunConsole();
  penlog::UseView(nullptr);
  return 0;
}
