// An operator who takes each message with OK or YES and goes on: through the start, the sounding's
// setup and the display's, records a little and ends the sounding. What was done to the console
// before or meanwhile must not keep him from it.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "attacks/hostile_disk.h"
#include "operator/virtual_session.h"
#include "rig/rig_setups.h"

namespace penlog {

class CalmOperator {
 public:
  explicit CalmOperator(const std::string& rig = "dcs");
  ~CalmOperator();
  CalmOperator(const CalmOperator&) = delete;
  CalmOperator& operator=(const CalmOperator&) = delete;

  /// One start of the program, until it ends by itself or `limit` of virtual time has passed.
  void Run(Micros limit = 30 * 60 * kSecond);

  /// A first-run data directory with the rig's ports; a file that stands there already is kept.
  void LayDown();
  std::string Data(const std::string& name) const;
  /// All messages as one text, a line each.
  std::string Told() const;
  bool WasTold(const std::string& part) const;

  /// Runs once, when the screen or moment of that name comes: "StartUp", "SetupSounding",
  /// "SetupDisplay", "Main", "START", "recording", "STOP".
  std::function<void(const std::string& moment)> at;

  VirtualSession session;
  HostileDisk disk{1};  ///< in place of the session's own
  std::string name = "S1";
  std::string folder = "/soundings";
  double metres = 0.3;
  bool suspend = false;           ///< ends by SUSPEND
  std::vector<std::string> told;  ///< texts of boxes, in order
  bool ended = false;             ///< the program ended by the operator's last NO
  int rows = 0;                   ///< of the sounding, at its end
  std::string standstill;

 private:
  void Look();
  void Answer();
  void ActOn(const std::string& screen);
  void SetUpSounding();
  void ActOnMain();
  void SpecifyPort(const std::string& screen, const std::string& list, const std::string& port);
  void Moment(const std::string& moment);

  std::set<std::string> moments_;
  Micros begun_ = 0;
  Micros limit_ = 0;
  Micros pushed_ = 0;
  Micros pressed_ = 0;
};

}  // namespace penlog
