#include "real_time/played.h"

#include "app/real_session.h"
#include "core/first_run_data.h"
#include "operator/virtual_session.h"
#include "platform/files.h"
#include "platform/texts.h"
#include "rig/rig_setups.h"
#include "support/project_file.h"
#include "support/temp_folder.h"

namespace penlog {

namespace {

std::string Replaced(std::string text, std::string_view from, const std::string& to) {
  for (auto at = text.find(from); at != text.npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

Script ScriptOf(const SoundingPlan& plan, const std::string& folder) {
  const std::string text = ProjectFile("tests/real_time/" + plan.script);
  const std::string whole = Replaced(text, "@BODY@", plan.body);
  return ParseScript(plan.script, Replaced(whole, "@FOLDER@", folder));
}

std::string SettingsText(std::string_view first_run, const std::map<int, std::string>& settings) {
  std::string text;
  int position = 0;
  for (std::size_t at = 0; at < first_run.size();) {
    const std::size_t end = first_run.find('\n', at);
    const auto line = first_run.substr(at, end - at + 1);
    const auto own = settings.find(++position);
    text += own == settings.end() ? std::string(line) : own->second + "\r\n";
    at = end == first_run.npos ? end : end + 1;
  }
  return text;
}

void LayDownData(const std::string& folder, const SoundingPlan& plan) {
  TheDisk().MakeFolder(folder);
  if (plan.settings.empty()) return;
  for (const FirstRunFile& file : FirstRunFiles()) {
    const bool settings = file.name == "System Setup Values.txt";
    const std::string text =
        settings ? SettingsText(file.content, plan.settings) : std::string(file.content);
    ReplaceFile(JoinPath(folder, file.name), text);
  }
}

std::string ContentOf(const std::string& path) {
  return TheDisk().FileExists(path) ? ReadFile(path) : "no " + path;
}

/// The hands whose shot keeps the working copy.
PlayerHands KeepingHands(Played& played, const std::string& data) {
  PlayerHands hands;
  hands.shot = [&played, data](const std::string&, const std::string&) {
    played.temporary = ContentOf(JoinPath(data, "TemporaryData.txt"));
    return std::string();
  };
  return hands;
}

/// Orders to the session's own rig, and to the test.
std::function<std::string(const std::string&)> RigHand(const SoundingPlan& plan,
                                                       RealSession& session) {
  return [&plan, &session](const std::string& words) -> std::string {
    if (plan.test && words.starts_with("test ")) {
      plan.test(words.substr(5));
      return {};
    }
    std::string reply;
    if (session.TheRig().Command(words, reply)) return {};
    return reply.empty() ? "refused" : reply;
  };
}

void KeepFiles(Played& played, const std::string& data) {
  for (const auto& entry : TheDisk().List(played.folder)) {
    if (EndsWithNoCase(entry.name, ".cpt")) {
      played.cpt = ContentOf(JoinPath(played.folder, entry.name));
    }
  }
  played.temporary_end = ContentOf(JoinPath(data, "TemporaryData.txt"));
  played.parameters = ContentOf(JoinPath(data, "Last Sounding Parameters.txt"));
  played.settings = ContentOf(JoinPath(data, "System Setup Values.txt"));
}

}  // namespace

Played PlayVirtual(const SoundingPlan& plan) {
  Played played;
  RigSetup rig = MakeRigSetup(plan.rig);
  if (plan.change_rig) plan.change_rig(rig);
  VirtualSession session(rig, {});
  const std::string data = VirtualSession::DataDirectory();
  played.folder = "/soundings";
  TheDisk().MakeFolder(played.folder);
  LayDownData(data, plan);
  const SessionResult result =
      session.Play(ScriptOf(plan, played.folder), KeepingHands(played, data));
  played.exit_code = result.exit_code;
  played.report = result.report + result.standstill;
  KeepFiles(played, data);
  played.log = session.rig.log.Records();
  return played;
}

Played PlayReal(const SoundingPlan& plan, bool on_network) {
  const TempFolder place;
  Played played;
  RealSessionSetup setup;
  setup.rig = plan.rig;
  setup.cone_on_network = setup.idle_on_network = on_network;
  setup.folder = place.Path();
  setup.idle_ports = plan.idle_ports;
  setup.change_rig = plan.change_rig;
  RealSession session(setup);
  played.folder = place / "soundings";
  TheDisk().MakeFolder(played.folder);
  LayDownData(session.DataFolder(), plan);
  if (plan.begin) plan.begin(session);
  PlayerHands hands = KeepingHands(played, session.DataFolder());
  hands.rig = RigHand(plan, session);
  played.exit_code = session.Play(ScriptOf(plan, played.folder), std::move(hands), played.report);
  KeepFiles(played, session.DataFolder());
  played.log = session.TheRig().log.Records();
  return played;
}

}  // namespace penlog
