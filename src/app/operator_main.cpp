// penlog-operator SCRIPT [options]: plays an operator script on the console and its simulated rig.
#include <QApplication>
#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/console.h"
#include "app/display_check.h"
#include "app/real_session.h"
#include "app/telling_disk.h"
#include "core/languages.h"
#include "operator/run_hash.h"
#include "operator/virtual_session.h"
#include "platform/files.h"
#include "platform/posix/posix_disk.h"
#include "platform/qt/mirror.h"
#include "platform/runtime_fault.h"
#include "platform/view.h"
#include "rig/rig_setups.h"

namespace penlog {
namespace {

constexpr const char* kUsage =
    "usage: penlog-operator SCRIPT [--virtual] [--shots DIR] [--size WxH] [--out DIR]\n"
    "                       [--data DIR] [--setup NAME] [--seed N] [--cone pty|rfc2217]\n"
    "                       [--rig PORT] [--look day|night] [--hash] [--boxes] [--tell]\n"
    "  --virtual  in virtual time, on a disk in memory; else in real time\n"
    "  --shots    where the pictures go; without it none is taken\n"
    "  --size     of the display that the pictures stand for (1366x768)\n"
    "  --out      where the files go: the disk in memory is written out, or the data lie there;\n"
    "             in real time without it a new temporary folder, whose name is printed\n"
    "  --data     files that lie in the data directory before the start\n"
    "  --setup    the simulated rig (dcs)\n"
    "  --cone     how the cone is connected in real time (pty)\n"
    "  --rig      in real time: the control port of a penlog-rig that runs already and keeps its\n"
    "             list of ports in \"PENLOG(KQ)/Serial Ports.txt\" below --out\n"
    "  --look     the colours that the console starts with (day)\n"
    "  --hash     prints a number that is equal for equal runs\n"
    "  --boxes    boxes that the script does not answer are taken with YES or OK\n"
    "  --tell     prints at once \"at LINE\" as the turn of a line of the script comes,\n"
    "             \"box TEXT\" as one was taken by --boxes, and in real time \"row TEXT\" as a\n"
    "             row of the recovery copy has been synced\n"
    "exit: 0 played to its end, 1 something was not as expected, 2 the words or the script\n";

struct Options {
  std::string script;
  std::string shots;
  std::string out;
  std::string data;
  std::string setup = "dcs";
  std::string cone = "pty";
  std::string look;
  std::uint32_t seed = 1;
  int width = 1366;
  int height = 768;
  int rig_control = 0;
  bool is_virtual = false;
  bool hash = false;
  bool boxes = false;
  bool tell = false;
  bool help = false;
};

bool ToNumber(std::string_view text, int& number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc{} && end == text.data() + text.size() && number >= 0;
}

bool ToSize(const std::string& text, Options& options) {
  const auto cross = text.find('x');
  return cross != std::string::npos && ToNumber(text.substr(0, cross), options.width) &&
         ToNumber(text.substr(cross + 1), options.height);
}

/// Takes an option with a value; false for an unknown one or a bad value.
bool TakeValue(const std::string& name, const std::string& value, Options& options) {
  int seed = 0;
  if (name == "--shots")
    options.shots = value;
  else if (name == "--out")
    options.out = value;
  else if (name == "--data")
    options.data = value;
  else if (name == "--setup")
    options.setup = value;
  else if (name == "--cone")
    options.cone = value;
  else if (name == "--look")
    options.look = value;
  else if (name == "--size")
    return ToSize(value, options);
  else if (name == "--seed" && ToNumber(value, seed))
    options.seed = static_cast<std::uint32_t>(seed);
  else if (name == "--rig")
    return ToNumber(value, options.rig_control) && options.rig_control > 0;
  else
    return false;
  if (name == "--look") return value == "day" || value == "night";
  return !value.empty() && (options.cone == "pty" || options.cone == "rfc2217");
}

std::optional<Options> ParseWords(const std::vector<std::string>& words) {
  Options options;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (words[i] == "--virtual") {
      options.is_virtual = true;
    } else if (words[i] == "--hash") {
      options.hash = true;
    } else if (words[i] == "--boxes") {
      options.boxes = true;
    } else if (words[i] == "--tell") {
      options.tell = true;
    } else if (words[i] == "--help") {
      options.help = true;
      return options;
    } else if (words[i].rfind("--", 0) == 0) {
      if (i + 1 >= words.size() || !TakeValue(words[i], words[i + 1], options)) return std::nullopt;
      ++i;
    } else if (options.script.empty()) {
      options.script = words[i];
    } else {
      return std::nullopt;
    }
  }
  if (options.script.empty()) return std::nullopt;
  return options;
}

/// Pictures of the screens; the windows are made when the first one is taken.
void AddShots(PlayerHands& hands, const Options& options, View& view) {
  if (options.shots.empty()) return;
  hands.shot = [&options, &view](const std::string& file, const std::string& screen) {
    const std::string path = JoinPath(options.shots, file);
    if (view.Shot(screen, path, options.width, options.height)) return std::string();
    return "no picture of \"" + screen + "\" in " + path;
  };
}

std::string OneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
  return text;
}

PlayerHands HandsOf(const Options& options) {
  PlayerHands hands;
  hands.takes_boxes = options.boxes;
  if (options.tell) {
    hands.turn = [](const ScriptAction& action) {
      TellAtOnce("at " + std::to_string(action.line));
    };
    hands.took_box = [](const std::string& text) { TellAtOnce("box " + OneLine(text)); };
  }
  return hands;
}

int Report(const SessionResult& result) {
  if (!result.standstill.empty()) std::fprintf(stderr, "%s\n", result.standstill.c_str());
  if (!result.report.empty()) std::fprintf(stderr, "%s\n", result.report.c_str());  // the last line
  return result.exit_code;
}

/// The files of `--data` to the disk that the console will work on.
void LayIn(Disk& from, const Options& options, Disk& to, const std::string& folder) {
  if (options.data.empty()) return;
  if (!from.FolderExists(options.data)) throw RuntimeFault("no folder " + options.data);
  to.MakeFolder(folder);
  for (const auto& entry : from.List(options.data)) {
    if (entry.is_folder) continue;
    const Disk::Handle file = to.Create(folder + "/" + entry.name);
    to.Write(file, from.Read(options.data + "/" + entry.name));
    to.Sync(file);
    to.Close(file);
  }
}

/// The console finds its colours chosen, as by the menu of an earlier start.
void LayInLook(const Options& options, Disk& to, const std::string& folder) {
  if (options.look.empty()) return;
  to.MakeFolder(folder);
  const Disk::Handle file = to.Create(folder + "/View Settings.txt");
  to.Write(file, options.look == "night" ? "1\r\n1\r\n" : "0\r\n1\r\n");
  to.Sync(file);
  to.Close(file);
}

int PlayVirtual(const Script& script, const Options& options) {
  PosixDisk real_disk;
  RigSetup rig_setup = MakeRigSetup(options.setup);
  rig_setup.seed = options.seed;
  VirtualSessionSetup setup;
  setup.seed = options.seed;
  VirtualSession session(rig_setup, setup);
  LayIn(real_disk, options, session.disk, VirtualSession::DataDirectory());
  LayInLook(options, session.disk, VirtualSession::DataDirectory());
  std::unique_ptr<WindowMirror> mirror;
  PlayerHands hands = HandsOf(options);
  if (!options.shots.empty()) {
    real_disk.MakeFolder(options.shots);
    mirror = std::make_unique<WindowMirror>();
    UseTranslation(Translate);
    AddShots(hands, options, *mirror);
  }
  std::optional<RunHash> hash;
  if (options.hash) hash.emplace();
  const SessionResult result = session.Play(script, std::move(hands), [&hash] {
    if (hash) hash->AddControls();
  });
  if (hash) {
    hash->AddFiles(session.disk);
    std::printf("seed %u events %lld hash %016llx\n", options.seed,
                static_cast<long long>(hash->Events()),
                static_cast<unsigned long long>(hash->Value()));
  }
  if (!options.out.empty()) {
    UseDisk(&real_disk);
    WriteOut(session.disk, options.out);
  }
  return Report(result);
}

int PlayReal(const Script& script, const Options& options) {
  RealSessionSetup setup;
  setup.rig = options.setup;
  setup.seed = options.seed;
  setup.cone_on_network = options.cone == "rfc2217";
  setup.rig_control = options.rig_control;
  setup.folder = options.out.empty() ? MakeTemporaryFolder("penlog-operator-") : options.out;
  if (options.out.empty()) std::printf("files: %s\n", setup.folder.c_str());
  std::fflush(stdout);
  TellingDisk telling("TemporaryData.txt");
  RealSession session(setup);
  if (options.tell) UseDisk(&telling);
  LayIn(TheDisk(), options, TheDisk(), JoinPath(setup.folder, "PENLOG(KQ)"));
  LayInLook(options, TheDisk(), JoinPath(setup.folder, "PENLOG(KQ)"));
  PlayerHands hands = HandsOf(options);
  AddShots(hands, options, session.Windows());
  if (!options.shots.empty()) TheDisk().MakeFolder(options.shots);
  SessionResult result;
  result.exit_code = session.Play(script, std::move(hands), result.report);
  return Report(result);
}

int Run(int argc, char** argv) {
  const auto options = ParseWords({argv + 1, argv + argc});
  if (!options || options->help) {
    std::fputs(kUsage, options ? stdout : stderr);
    return options ? 0 : 2;
  }
  PosixDisk disk;
  UseDisk(&disk);
  try {
    const Script script = ParseScript(options->script, ReadTextFile(options->script));
    return options->is_virtual ? PlayVirtual(script, *options) : PlayReal(script, *options);
  } catch (const ScriptFault& fault) {
    std::fprintf(stderr, "%s\n", fault.what());
  } catch (const RuntimeFault& fault) {
    std::fprintf(stderr, "penlog-operator: %s\n", fault.what());
  }
  return 2;
}

}  // namespace
}  // namespace penlog

int main(int argc, char** argv) {
  if (!penlog::HasDisplay()) setenv("QT_QPA_PLATFORM", "offscreen", 0);
  QApplication application(argc, argv);
  return penlog::Run(argc, argv);
}
