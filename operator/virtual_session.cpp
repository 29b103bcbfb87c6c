#include "operator/virtual_session.h"

#include "app/console.h"
#include "core/reset_state.h"
#include "forms/operator_actions.h"
#include "platform/boxes.h"
#include "platform/files.h"
#include "platform/yield.h"

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
  rig.AttachCone(ports.Wire(setup.cone_port));
  if (!rig_setup.shared_port) rig.AttachTruck(ports.Wire(setup.truck_port));
  rig.on_renumber = [this, cone = setup.cone_port, truck = setup.truck_port](RigWire which,
                                                                             int number) mutable {
    int& place = which == RigWire::Cone ? cone : truck;
    ports.Renumber(place, number);
    place = number;
  };
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
  if (!hands.shot) {
    hands.shot = [](const std::string&, const std::string&) { return std::string(); };
  }
  if (!hands.kill) hands.kill = [] { RequestEnd(); };
}

SessionResult VirtualSession::Play(const Script& script, PlayerHands hands,
                                   const std::function<void()>& at_end) {
  CompleteHands(hands);
  ForgetEnd();
  ResetBoxes();
  ResetState();
  Player player(script, std::move(hands));
  player.Start();
  RunConsole(at_end);
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
