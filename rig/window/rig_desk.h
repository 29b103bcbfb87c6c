// The rig and its window together: the window follows the rig at most 20 times a second, and what
// is pressed there is carried out as an order of its own turn in the queue.
#pragma once

#include <functional>
#include <string>

#include "rig/console_watch.h"
#include "rig/rig.h"
#include "rig/rig_state.h"
#include "rig/window/rig_window.h"

namespace penlog {

/// Time between two looks at the rig.
constexpr Micros kRigFrameTime = kSecond / 20;

class RigDesk {
 public:
  /// Listens to the rig's log beside whoever does so already. `numbers` tells the COM numbers of
  /// now; those of the moment are the ones that a fault "replugged" goes back to.
  RigDesk(Rig& rig, std::function<RigNumbers()> numbers);
  ~RigDesk();
  RigDesk(const RigDesk&) = delete;
  RigDesk& operator=(const RigDesk&) = delete;

  RigWindow& Window() { return window_; }
  /// Brings the window to the state of now.
  void Follow();

 private:
  RigState State() const;
  void CarryOut(const std::string& order);
  void PostFrame();

  Rig& rig_;
  std::function<RigNumbers()> numbers_;
  RigNumbers first_;
  ConsoleWatch watch_;
  int grounds_ = -1;  // of the picture
  RigWindow window_;
};

}  // namespace penlog
