#include "operator/virtual_session.h"

#include <utility>

#include "app/console.h"
#include "core/reset_state.h"
#include "forms/operator_actions.h"
#include "platform/boxes.h"
#include "platform/files.h"
#include "platform/yield.h"
#include "rig/virtual_attach.h"

namespace penlog {

namespace {

/// The clock must be in use before the rig is made: its devices begin to live at once.
VirtualClock& InUse(VirtualClock& clock) {
  ResetYield();
  UseClock(&clock);
  return clock;
}

}  // namespace

VirtualSession::VirtualSession(const RigSetup& rig_setup, const VirtualSessionSetup& setup)
    : clock(setup.start, setup.seed), rig((InUse(clock), rig_setup)) {
  UseDisk(&disk);
  UsePorts(&ports);
  UseHost(&host);
  ResetBoxes();
  ResetActions();
  ResetState();
  AttachToPorts(rig, ports, setup.cone_port, setup.truck_port);
}

VirtualSession::~VirtualSession() {
  ResetState();
  ResetYield();
}

std::string VirtualSession::DataDirectory() {
  return "/allusers/PENLOG(KQ)";
}

void VirtualSession::CompleteHands(PlayerHands& hands) {
  if (!hands.rig) {
    hands.rig = [this](const std::string& words) {
      std::string reply;
      if (rig.Command(words, reply)) return std::string();
      return reply.empty() ? std::string("refused") : reply;
    };
  }
  if (!hands.disk) {
    hands.disk = [this](const std::string& word) {
      disk.SetRoom(word == "full" ? 0 : -1);
      return std::string();
    };
  }
  if (!hands.shot) {
    hands.shot = [](const std::string&, const std::string&) { return std::string(); };
  }
  if (!hands.kill) hands.kill = [this] { Kill(); };
}

/// A process that is gone writes nothing: what the console does on its way out finds no disk.
void VirtualSession::Kill() {
  RequestEnd();
  disk.Stop();
}

SessionResult VirtualSession::Play(const Script& script, PlayerHands hands,
                                   const std::function<void()>& at_end) {
  CompleteHands(hands);
  Player player(script, std::move(hands));
  player.Start();
  std::size_t started = 0;
  bool first = true;
  do {
    started = host.started.size();
    ForgetEnd();
    ResetBoxes();
    ResetState();
    if (std::exchange(first, false)) CountStampsFromHere();
    RunConsole(at_end);
    if (disk.Stopped()) disk.GoOn();  // for the next process
  } while (host.started.size() > started && host.started.back() == "itself");
  SessionResult result;
  result.exit_code = player.Close();
  result.report = player.Report();
  result.standstill = clock.StandstillReport();
  return result;
}

void WriteOut(const MemoryDisk& from, const std::string& folder) {
  for (const auto& [path, content] : from.Files()) {
    const std::string target = folder + path;
    TheDisk().MakeFolder(FolderOf(target));
    ReplaceFile(target, content);
  }
}

}  // namespace penlog
