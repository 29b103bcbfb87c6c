#include "app/real_session.h"

#include <cstdlib>
#include <utility>

#include "app/console.h"
#include "core/data_directory.h"
#include "core/languages.h"
#include "core/reset_state.h"
#include "core/session.h"
#include "forms/operator_actions.h"
#include "platform/boxes.h"
#include "platform/files.h"
#include "platform/posix/line_server.h"
#include "platform/posix/pty_wire.h"
#include "platform/qt/rfc2217_server.h"
#include "platform/runtime_fault.h"
#include "platform/texts.h"
#include "platform/view.h"
#include "platform/yield.h"
#include "rig/rig_setups.h"

namespace penlog {

namespace {

constexpr int kFirstIdlePort = 11;

RealMachineSetup MachineSetup(const RealSessionSetup& setup) {
  // The data directory of a session is its own: the user's is never touched.
  setenv("allusersprofile", setup.folder.c_str(), 1);
  RealMachineSetup machine;
  machine.port_list = [] {
    return session.DataDirectory.empty() ? std::string() : DataPath("Serial Ports.txt");
  };
  machine.report = [](const std::string& text) { PostBox(text); };
  return machine;
}

std::string NetworkDevice(const Rfc2217Server& server) {
  return "rfc2217://127.0.0.1:" + std::to_string(server.Port());
}

}  // namespace

RealSession::RealSession(const RealSessionSetup& setup)
    : setup_(setup), machine_(MachineSetup(setup)) {
  UseHost(&host_);
  ResetActions();
  TheDisk().MakeFolder(DataFolder());
  if (setup_.rig_control == 0) MakeRig();
  UseView(&mirror_);
  UseTranslation(Translate);
}

RealSession::~RealSession() {
  UseView(nullptr);
  rig_.reset();
}

std::string RealSession::DataFolder() const {
  return JoinPath(setup_.folder, "PENLOG(KQ)");
}

void RealSession::MakeRig() {
  RigSetup rig_setup = MakeRigSetup(setup_.rig);
  rig_setup.seed = setup_.seed;
  if (setup_.change_rig) setup_.change_rig(rig_setup);
  rig_ = std::make_unique<Rig>(rig_setup);
  MakeWires();
  WritePortList();
}

void RealSession::MakeWires() {
  const std::string wires = JoinPath(setup_.folder, "wires");
  TheDisk().MakeFolder(wires);
  // A shared port carries the truck's lines too: a pseudo terminal has none.
  if (setup_.cone_on_network || rig_->setup.shared_port) {
    auto server = std::make_unique<Rfc2217Server>(machine_.clock());
    cone_device_ = NetworkDevice(*server);
    cone_wire_ = std::move(server);
  } else {
    cone_device_ = JoinPath(wires, "cone");
    cone_wire_ = std::make_unique<PtyWire>(machine_.clock().io(), cone_device_);
  }
  rig_->AttachCone(*cone_wire_);
  if (!rig_->setup.shared_port) {
    auto server = std::make_unique<Rfc2217Server>(machine_.clock());
    truck_device_ = NetworkDevice(*server);
    truck_wire_ = std::move(server);
    rig_->AttachTruck(*truck_wire_);
  }
  MakeIdleWires();
  rig_->on_renumber = [this](RigWire which, int number) {
    (which == RigWire::Cone ? setup_.cone_port : setup_.truck_port) = number;
    WritePortList();
  };
}

void RealSession::MakeIdleWires() {
  for (int port = kFirstIdlePort; port < kFirstIdlePort + setup_.idle_ports; ++port) {
    if (setup_.idle_on_network) {
      auto server = std::make_unique<Rfc2217Server>(machine_.clock());
      idle_devices_.push_back(NetworkDevice(*server));
      idle_wires_.push_back(std::move(server));
    } else {
      const std::string name = "wires/idle" + std::to_string(port);
      idle_devices_.push_back(JoinPath(setup_.folder, name));
      idle_wires_.push_back(std::make_unique<PtyWire>(machine_.clock().io(), idle_devices_.back()));
    }
  }
}

WireEnd& RealSession::IdleWire(int port) {
  return *idle_wires_.at(static_cast<std::size_t>(port - kFirstIdlePort));
}

void RealSession::WritePortList() {
  std::string text = std::to_string(setup_.cone_port) + " " + cone_device_ + "\n";
  if (!truck_device_.empty())
    text += std::to_string(setup_.truck_port) + " " + truck_device_ + "\n";
  int port = kFirstIdlePort;
  for (const std::string& device : idle_devices_) {
    text += std::to_string(port++) + " " + device + "\n";
  }
  ReplaceFile(JoinPath(DataFolder(), "Serial Ports.txt"), text);
}

/// Why the rig didn't carry the order out; empty if it did.
std::string RealSession::Order(const std::string& words) {
  std::string reply;
  if (rig_ != nullptr) {
    if (rig_->Command(words, reply)) return {};
    return reply.empty() ? "refused" : reply;
  }
  try {
    reply = AskLineServer(setup_.rig_control, words);
  } catch (const RuntimeFault& fault) {
    return fault.what();
  }
  return StartsWith(reply, "ok") ? "" : reply;
}

void RealSession::CompleteHands(PlayerHands& hands) {
  if (!hands.rig) {
    hands.rig = [this](const std::string& words) { return Order(words); };
  }
  if (!hands.act) {
    hands.act = [this](const OperatorAction& action) {
      std::string why;
      return mirror_.Act(action, why) ? std::string() : why;
    };
  }
  if (!hands.shot) {
    hands.shot = [](const std::string&, const std::string&) { return std::string(); };
  }
  if (!hands.answer) {
    hands.answer = [this](BoxAnswer answer) {
      std::string why;
      return mirror_.PressBoxButton(answer, why) ? std::string() : why;
    };
  }
  if (!hands.kill) hands.kill = [] { std::_Exit(0); };
}

int RealSession::Play(const Script& script, PlayerHands hands, std::string& report) {
  CompleteHands(hands);
  Player player(script, std::move(hands));
  player.Start();
  bool first = true;
  do {
    host_.started_anew = false;
    ForgetEnd();
    ResetBoxes();
    ResetState();
    if (std::exchange(first, false)) CountStampsFromHere();
    RunConsole();
  } while (host_.started_anew);
  const int code = player.Close();
  report = player.Report();
  return code;
}

}  // namespace penlog
