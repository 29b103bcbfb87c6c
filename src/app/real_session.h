// The console and its rig together in real time: windows, the system's disk, pseudo terminals and
// network ports on loopback. What an operator script plays on without `--virtual`.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "operator/player.h"
#include "platform/qt/mirror.h"
#include "platform/qt/qt_host.h"
#include "platform/qt/real_machine.h"
#include "platform/wire_end.h"
#include "rig/rig.h"

namespace penlog {

struct RealSessionSetup {
  std::string rig = "dcs";
  std::uint32_t seed = 1;
  bool cone_on_network = false;  ///< else on a pseudo terminal
  /// Control port of a rig in a process of its own, which also keeps the list of ports below
  /// `folder`. 0: the session has a rig of its own.
  int rig_control = 0;
  std::string folder;  ///< the data directory and the wires lie below it
  int cone_port = 3;   ///< COM number
  int truck_port = 4;
  int idle_ports = 0;            ///< ports on which nobody answers, COM 11 and up
  bool idle_on_network = false;  ///< else on pseudo terminals
  std::function<void(RigSetup&)> change_rig;  ///< over the setup of that name; none: as it is
};

class RealSession {
 public:
  /// Needs a QApplication. Raises a `RuntimeFault` when a wire can't be made.
  explicit RealSession(const RealSessionSetup& setup);
  ~RealSession();
  RealSession(const RealSession&) = delete;
  RealSession& operator=(const RealSession&) = delete;

  /// Starts the console and plays the script to the end of the program; the player's exit code. A
  /// console that starts anew does so in this process, and the script goes on with it.
  int Play(const Script& script, PlayerHands hands, std::string& report);
  View& Windows() { return mirror_; }
  /// The session's own.
  Rig& TheRig() { return *rig_; }
  /// The far end of an idle port, by its COM number.
  WireEnd& IdleWire(int port);
  /// "PENLOG(KQ)" below the folder.
  std::string DataFolder() const;

 private:
  class SessionHost : public QtHost {
   public:
    SessionHost() : QtHost({}) {}
    bool StartSelf() override { return started_anew = true; }
    bool started_anew = false;
  };

  void MakeRig();
  void MakeWires();
  void MakeIdleWires();
  void WritePortList();
  void CompleteHands(PlayerHands& hands);
  std::string Order(const std::string& words);

  RealSessionSetup setup_;
  RealMachine machine_;
  SessionHost host_;
  WindowMirror mirror_;
  std::unique_ptr<WireEnd> cone_wire_;
  std::unique_ptr<WireEnd> truck_wire_;
  std::string cone_device_;
  std::string truck_device_;
  std::vector<std::unique_ptr<WireEnd>> idle_wires_;
  std::vector<std::string> idle_devices_;
  std::unique_ptr<Rig> rig_;
};

}  // namespace penlog
