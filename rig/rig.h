// Everything at the far end of the wires: cone and modules on the cone's line, the truck on the
// lines of its port (or of the cone's), and the ground. Runs on the platform's clock, in virtual
// time inside a test or in real time in a program of its own. The same seed and the same orders at
// the same times give the same log.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "platform/wire_end.h"
#include "rig/cone_line.h"
#include "rig/faults.h"
#include "rig/ground.h"
#include "rig/rig_log.h"
#include "rig/sim_cone.h"
#include "rig/sim_module.h"
#include "rig/surroundings.h"
#include "rig/truck.h"

namespace penlog {

struct RigSetup {
  std::string name;
  UnitSetup cone;
  std::map<int, UnitSetup> modules;  ///< by number, 1 to 9
  TruckSetup truck;
  bool shared_port = false;  ///< the truck's lines are those of the cone's port
  Ground ground;
  std::string ground_name = "layered";
  std::uint32_t seed = 1;
  double depth_step = 0.02;  ///< m between rows: the step of "hold" unless told
};

/// The wires that can be plugged.
enum class RigWire { Cone, Truck };

class Rig {
 public:
  explicit Rig(const RigSetup& setup);
  ~Rig();
  Rig(const Rig&) = delete;
  Rig& operator=(const Rig&) = delete;

  /// Connects the console's end of the cone's wire, and of the truck's; with a shared port the
  /// second is not needed and refused. The wires must outlive the rig.
  void AttachCone(WireEnd& wire);
  void AttachTruck(WireEnd& wire);

  /// Carries out one line of the control language (see `RigUsage`). False: `reply` tells why it
  /// was not carried out. True: `reply` holds an answer, or nothing.
  bool Command(const std::string& words, std::string& reply);

  /// Whether the adapter is plugged; false for a wire that isn't attached.
  bool Present(RigWire which) const;
  /// Plugs an adapter in or out.
  void Plug(RigWire which, bool present);
  /// The adapter is pulled now and comes back under COM `number` after `away`. False without
  /// `on_renumber`, which knows how ports get their numbers.
  bool Replug(RigWire which, int number, Micros away);
  std::function<void(RigWire which, int number)> on_renumber;

  /// The hammer strikes; false when no cone is armed or DTR is not raised.
  bool Strike();

  const RigSetup setup;
  RigLog log;
  RigFaults faults;
  Surroundings surroundings;
  Truck truck;
  SimCone cone;
  std::map<int, std::unique_ptr<SimModule>> modules;

 private:
  WireEnd* WireOf(RigWire which) const;
  void LogPort(RigWire which, const std::string& what);
  void Listen(WireEnd& wire, RigWire which);
  void ListenForCone(WireEnd& wire);
  void ListenForTruck(WireEnd& wire);

  ConeLine line_;
  WireEnd* cone_wire_ = nullptr;
  WireEnd* truck_wire_ = nullptr;
};

/// The words of the control language, a line each.
std::string RigUsage();

}  // namespace penlog
