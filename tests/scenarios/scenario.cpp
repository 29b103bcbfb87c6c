#include "scenarios/scenario.h"

#include <iostream>

#include "core/first_run_data.h"
#include "core/settings.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "support/project_file.h"
#include "support/sounding_lines.h"

namespace penlog {

namespace {

constexpr const char* kSoundings = "/soundings";

/// The first-run settings with some of their lines replaced.
std::string ChangedSettings(std::string_view text, const std::map<int, std::string>& changes) {
  std::string changed;
  int number = 0;
  for (const std::string& line : LinesOf(std::string(text))) {
    const auto found = changes.find(++number);
    changed += (found == changes.end() ? line : found->second) + "\r\n";
  }
  return changed;
}

void LayDown(MemoryDisk& disk, std::map<int, std::string> changes, bool shared) {
  changes.emplace(setting::kConeSerialPort, "3");
  changes.emplace(setting::kTruckInterfaceSerialPort, shared ? "3" : "4");
  for (const FirstRunFile& file : FirstRunFiles()) {
    const bool is_setup = file.name == "System Setup Values.txt";
    disk.Put(JoinPath(VirtualSession::DataDirectory(), file.name),
             is_setup ? ChangedSettings(file.content, changes) : std::string(file.content));
  }
}

RigSetup RigOf(const ScenarioSetup& setup) {
  RigSetup rig = SeededRig(setup.rig, setup.seed);
  if (setup.change_rig) setup.change_rig(rig);
  return rig;
}

VirtualSessionSetup SessionOf(const ScenarioSetup& setup) {
  VirtualSessionSetup session;
  session.start = setup.start;
  session.seed = setup.seed;
  return session;
}

}  // namespace

RigSetup SeededRig(const std::string& name, std::uint32_t seed) {
  RigSetup rig = MakeRigSetup(name);
  rig.seed = seed;
  return rig;
}

Scenario::Scenario(const ScenarioSetup& setup)
    : seed(setup.seed), session(RigOf(setup), SessionOf(setup)) {
  if (!setup.first_run) LayDown(disk, setup.settings, rig.setup.shared_port);
  disk.PutFolder(kSoundings);
}

Scenario::~Scenario() {
  if (!testing::Test::HasFailure()) return;
  std::cout << "seed " << seed << ", hash of the run " << std::hex << hash_ << std::dec << "\n";
}

PlayerHands Scenario::Hands() {
  PlayerHands hands;
  hands.rig = [this](const std::string& words) -> std::string {
    if (words.starts_with("test ")) {
      const auto act = acts_.find(words.substr(5));
      if (act == acts_.end()) return "the test knows no \"" + words.substr(5) + "\"";
      act->second();
      return {};
    }
    std::string reply;
    if (rig.Command(words, reply)) return {};
    return reply.empty() ? "refused" : reply;
  };
  return hands;
}

SessionResult Scenario::TryPlay(const std::string& title, const std::string& script) {
  RunHash hash;
  const SessionResult result =
      session.Play(ParseScript(title, script), Hands(), [&hash] { hash.AddControls(); });
  hash.AddFiles(disk);
  hash_ = hash.Value();
  return result;
}

void Scenario::Play(const std::string& script) {
  const SessionResult result = TryPlay("script", script);
  const auto lines = LinesOf(script);
  std::string at;
  if (const auto colon = result.report.find(':'); colon != std::string::npos) {
    const auto number = static_cast<std::size_t>(LeadingNumber(result.report.substr(colon + 1)));
    if (number >= 1 && number <= lines.size()) at = "\n  " + lines[number - 1];
  }
  EXPECT_EQ(result.exit_code, 0) << result.report << at;
  EXPECT_EQ(result.standstill, "");
}

void Scenario::PlayFile(const std::string& name) {
  const std::string file = name + ".txt";
  const SessionResult result = TryPlay(file, ProjectFile("tests/scenarios/" + file));
  EXPECT_EQ(result.exit_code, 0) << result.report;
  EXPECT_EQ(result.standstill, "");
}

std::string Scenario::File(const std::string& path) const {
  const auto& files = session.disk.Files();
  const auto found = files.find(path);
  if (found != files.end()) return found->second;
  ADD_FAILURE() << path << " is missing";
  return {};
}

std::string Scenario::DataFile(const std::string& name) const {
  return File(JoinPath(VirtualSession::DataDirectory(), name));
}

std::string ScriptToMain() {
  return R"(screen StartUp
click StartUp.cmdStart
screen frmConeSettings 60
click frmConeSettings.cmdClose
answer ok "Last sounding parameters file missing. Default values loaded"
screen SetupSounding
select SetupSounding.Dir1 /soundings
type SetupSounding.txtFileName S1
click SetupSounding.Command2
screen SetupDisplay
click SetupDisplay.cmdDone
screen Main
expect Main.lblCommStatus "~Found$"
wait 3
)";
}

std::string ScriptToRecording() {
  return ScriptToMain() + R"(click Main.cmdTakeBaseline
click Main.cmdStart
expect Main.cmdStart "STOP"
)";
}

std::string ScriptToEnd() {
  return R"(click Main.cmdStart
expect Main.frmLocalWarning visible
click Main.cmdWarningOK1
expect Main.frmTakeFinalBaseline visible
click Main.Command3
screen frmZOLRestart
click frmZOLRestart.cmdNo
)";
}

std::string ScriptAgain(const std::string& box) {
  return R"(screen StartUp
click StartUp.cmdStart
)" + box +
         R"(screen frmConeSettings 60
click frmConeSettings.cmdClose
screen SetupSounding
type SetupSounding.txtFileName S2
click SetupSounding.Command2
screen SetupDisplay
click SetupDisplay.cmdDone
screen Main
expect Main.lblCommStatus "~Found$"
wait 3
click Main.cmdTakeBaseline
click Main.cmdStart
expect Main.cmdStart "STOP"
)";
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines = WholeLines(text);
  const std::string rest = UnfinishedLine(text);
  if (!rest.empty()) lines.push_back(rest);
  return lines;
}

}  // namespace penlog
