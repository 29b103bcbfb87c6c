// The simulated rig as a program: in real time, on pseudo terminals and network ports. Orders come
// as lines from the input and from a control port, and with a display from its window; SIGTERM and
// the end of the window end it.
#include <unistd.h>

#include <QApplication>
#include <QPixmap>
#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/display_check.h"
#include "platform/files.h"
#include "platform/posix/end_signals.h"
#include "platform/posix/line_server.h"
#include "platform/posix/posix_disk.h"
#include "platform/posix/pty_wire.h"
#include "platform/qt/real_clock.h"
#include "platform/qt/rfc2217_server.h"
#include "platform/qt/screen_room.h"
#include "platform/runtime_fault.h"
#include "platform/yield.h"
#include "rig/ground_files.h"
#include "rig/rig.h"
#include "rig/rig_options.h"
#include "rig/rig_setups.h"
#include "rig/window/rig_desk.h"

namespace penlog {

namespace {

/// One wire of the rig with the COM number that the console knows it by.
struct NumberedWire {
  int number = 0;
  PtyWire* pty = nullptr;
  Rfc2217Server* server = nullptr;
  std::unique_ptr<WireEnd> end;

  std::string Device() const {
    return pty != nullptr ? pty->Link() : "rfc2217://127.0.0.1:" + std::to_string(server->Port());
  }
};

/// The wires by their names, and the list of ports for the console.
class RigWires {
 public:
  RigWires(RealClock& clock, const RigOptions& options) : clock_(clock), options_(options) {}

  WireEnd& Make(RigWire which, const WireOption& option, int number) {
    NumberedWire& wire = wires_[which];
    wire.number = number;
    if (option.network) {
      auto server = std::make_unique<Rfc2217Server>(clock_, option.port);
      wire.server = server.get();
      wire.end = std::move(server);
    } else {
      auto pty = std::make_unique<PtyWire>(clock_.io(), LinkName(number));
      wire.pty = pty.get();
      wire.end = std::move(pty);
    }
    return *wire.end;
  }

  void Renumber(RigWire which, int number) {
    NumberedWire& wire = wires_.at(wires_.contains(which) ? which : RigWire::Cone);
    // A number belongs to one adapter: another takes the one that falls free.
    for (auto& [other_which, other] : wires_) {
      if (&other == &wire || other.number != number) continue;
      other.number = wire.number;
      if (other.pty != nullptr) other.pty->SetLink(LinkName(other.number));
    }
    wire.number = number;
    if (wire.pty != nullptr) wire.pty->SetLink(LinkName(number));
    Tell();
  }

  RigNumbers Numbers() const {
    RigNumbers numbers;
    for (const auto& [which, wire] : wires_) {
      (which == RigWire::Cone ? numbers.cone : numbers.truck) = wire.number;
    }
    return numbers;
  }

  /// Prints where the ports are, and writes the list.
  void Tell() const {
    std::string list;
    for (const auto& [which, wire] : wires_) {
      const char* name = which == RigWire::Cone ? "cone" : "truck";
      std::printf("%s COM%d %s\n", name, wire.number, wire.Device().c_str());
      list += std::to_string(wire.number) + " " + wire.Device() + "\n";
    }
    std::fflush(stdout);
    if (!options_.ports_file.empty()) ReplaceFile(options_.ports_file, list);
  }

 private:
  std::string LinkName(int number) const {
    std::array<char, 4096> here{};
    const bool rooted = options_.links.starts_with('/');
    const std::string folder =
        rooted || ::getcwd(here.data(), here.size()) == nullptr
            ? options_.links
            : JoinPath(here.data(), options_.links == "." ? "" : options_.links);
    return JoinPath(folder, "COM" + std::to_string(number));
  }

  RealClock& clock_;
  const RigOptions& options_;
  std::map<RigWire, NumberedWire> wires_;
};

/// Appends to the log once a second: a push makes thousands of records a second.
class LogFile {
 public:
  LogFile(RigLog& log, const std::string& path) {
    log.KeepNothing();
    if (path.empty()) return;
    file_ = TheDisk().Create(path);
    log.on_added = [this](const RigRecord& record) { waiting_ += RigLogLine(record) + "\n"; };
    PostCall(
        Now() + kSecond, this, [this] { Flush(true); }, EventKind::RepeatingCall);
  }
  ~LogFile() {
    DropCalls(this);
    if (file_ > 0) Flush(false);
  }
  LogFile(const LogFile&) = delete;
  LogFile& operator=(const LogFile&) = delete;

 private:
  void Flush(bool again) {
    try {
      TheDisk().Write(file_, std::exchange(waiting_, ""));
    } catch (const RuntimeFault& fault) {
      std::fprintf(stderr, "penlog-rig: %s\n", fault.what());
    }
    if (again)
      PostCall(
          Now() + kSecond, this, [this] { Flush(true); }, EventKind::RepeatingCall);
  }

  Disk::Handle file_ = 0;
  std::string waiting_;
};

/// Lines from the standard input. Its end ends nothing: the rig may run in the background.
class InputLines {
 public:
  InputLines(IoWatcher& io, std::function<void(const std::string&)> take)
      : io_(io), take_(std::move(take)), watch_(io.Watch(STDIN_FILENO, [this] { Read(); })) {}
  ~InputLines() {
    DropCalls(this);
    io_.Unwatch(watch_);
  }
  InputLines(const InputLines&) = delete;
  InputLines& operator=(const InputLines&) = delete;

 private:
  void Read() {
    std::array<char, 1024> part{};
    const ssize_t count = ::read(STDIN_FILENO, part.data(), part.size());
    if (count <= 0) {
      io_.Unwatch(std::exchange(watch_, 0));
      return;
    }
    text_.append(part.data(), static_cast<std::size_t>(count));
    for (std::size_t end = text_.find('\n'); end != std::string::npos; end = text_.find('\n')) {
      PostCall(Now(), this, [this, line = text_.substr(0, end)] { take_(line); });
      text_.erase(0, end + 1);
    }
  }

  IoWatcher& io_;
  std::function<void(const std::string&)> take_;
  std::string text_;
  int watch_;
};

/// "ok" or "no", and what the rig says to the order.
std::string CarryOut(Rig& rig, const std::string& words) {
  std::string reply;
  const bool done = rig.Command(words, reply);
  while (!reply.empty() && reply.back() == '\n') reply.pop_back();
  return (done ? "ok" : "no") + (reply.empty() ? "" : " " + reply);
}

/// "picture FILE day|night": what the window shows now.
std::string SavePicture(RigDesk* desk, const std::string& words) {
  const auto look = words.rfind(' ');
  if (desk == nullptr || look == words.find(' ')) return "no picture without a window and a look";
  ChooseLook(words.substr(look + 1) == "night" ? LookSet::Night : LookSet::Day);
  desk->Follow();
  const std::string file = words.substr(words.find(' ') + 1, look - words.find(' ') - 1);
  return desk->Window().grab().save(QString::fromStdString(file), "PNG") ? "ok" : "no " + file;
}

RigSetup SetupOf(const RigOptions& options) {
  RigSetup setup = MakeRigSetup(options.setup);
  setup.seed = options.seed;
  if (!options.ground.empty()) {
    setup.ground = LoadGround(options.ground);
    setup.ground_name = options.ground;
  }
  return setup;
}

bool ShowsWindow(const RigOptions& options) {
  return options.window == WindowOption::Yes ||
         (options.window == WindowOption::IfDisplay && HasDisplay());
}

void Serve(RealClock& clock, const RigOptions& options) {
  RigWires wires(clock, options);
  Rig rig(SetupOf(options));
  const LogFile log(rig.log, options.log);
  rig.AttachCone(wires.Make(RigWire::Cone, options.cone, options.cone_number));
  if (!rig.setup.shared_port) {
    rig.AttachTruck(wires.Make(RigWire::Truck, options.truck, options.truck_number));
  }
  rig.on_renumber = [&wires](RigWire which, int number) { wires.Renumber(which, number); };
  std::unique_ptr<RigDesk> desk;
  const auto answer = [&](const std::string& words) {
    return words.rfind("picture ", 0) == 0 ? SavePicture(desk.get(), words) : CarryOut(rig, words);
  };
  std::unique_ptr<LineServer> control;
  if (options.control) {
    control = std::make_unique<LineServer>(clock.io(), *options.control, answer);
    std::printf("control 127.0.0.1:%d\n", control->Port());
  }
  wires.Tell();
  const InputLines input(clock.io(), [&answer](const std::string& words) {
    std::printf("%s\n", answer(words).c_str());
    std::fflush(stdout);
  });
  if (ShowsWindow(options)) {
    desk = std::make_unique<RigDesk>(rig, [&wires] { return wires.Numbers(); });
    desk->Window().Open();
  }
  for (;;) WaitYield("the wires");
}

/// With windows where they are wanted: without a display the toolkit's windows can't begin.
std::unique_ptr<QCoreApplication> MakeApplication(const RigOptions& options, int& argc,
                                                  char** argv) {
  if (!ShowsWindow(options)) return std::make_unique<QCoreApplication>(argc, argv);
  UsePlace(options.place);
  return std::make_unique<QApplication>(argc, argv);
}

int RunRig(const RigOptions& options) {
  PosixDisk disk;
  UseDisk(&disk);
  RealClock clock;
  UseClock(&clock);
  UseIo(&clock.io());
  const EndSignals ending(clock.io());
  int result = 0;
  try {
    Serve(clock, options);
  } catch (const ProgramEnd&) {
  } catch (const RuntimeFault& fault) {
    std::fprintf(stderr, "penlog-rig: %s\n", fault.what());
    result = 1;
  }
  ResetYield();
  UseIo(nullptr);
  return result;
}

std::string SetupList() {
  std::string text = "\nrigs:";
  for (const auto& name : RigSetupNames()) text += " " + name;
  return text + "\n\norders, a line each:\n";
}

}  // namespace

}  // namespace penlog

int main(int argc, char** argv) {
  using namespace penlog;
  try {
    const RigOptions options = ParseRigOptions({argv + 1, argv + argc});
    if (options.help) {
      std::fputs((RigProgramUsage() + SetupList() + RigUsage()).c_str(), stdout);
      return 0;
    }
    MakeRigSetup(options.setup);
    const auto application = MakeApplication(options, argc, argv);
    return RunRig(options);
  } catch (const RuntimeFault& fault) {
    std::fprintf(stderr, "penlog-rig: %s\n\n%s", fault.what(), RigProgramUsage().c_str());
    return 2;
  }
}
