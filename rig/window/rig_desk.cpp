#include "rig/window/rig_desk.h"

#include <utility>

#include "platform/clock.h"
#include "platform/event_queue.h"
#include "platform/yield.h"

namespace penlog {

RigDesk::RigDesk(Rig& rig, std::function<RigNumbers()> numbers)
    : rig_(rig),
      numbers_(std::move(numbers)),
      first_(numbers_()),
      window_(State(), {[this](const std::string& order) {
                          PostCall(Now(), this, [this, order] { CarryOut(order); });
                        },
                        [] { RequestEnd(); }}) {
  rig_.log.on_added = [this, before = rig_.log.on_added](const RigRecord& record) {
    if (before) before(record);
    watch_.Take(record);
  };
  Follow();
  PostFrame();
}

RigDesk::~RigDesk() {
  DropCalls(this);
  rig_.log.on_added = nullptr;
}

RigState RigDesk::State() const {
  return StateOf(rig_, watch_, numbers_(), first_);
}

void RigDesk::CarryOut(const std::string& order) {
  std::string reply;
  const bool done = rig_.Command(order, reply);
  window_.Tell(done ? order + (reply.empty() ? "" : ": " + reply) : "Refused. " + reply, !done);
  Follow();
}

void RigDesk::Follow() {
  if (grounds_ != rig_.surroundings.grounds_laid) {
    grounds_ = rig_.surroundings.grounds_laid;
    window_.Lay(rig_.surroundings.ground);
  }
  window_.Follow(State());
}

void RigDesk::PostFrame() {
  PostCall(
      Now() + kRigFrameTime, this,
      [this] {
        Follow();
        PostFrame();
      },
      EventKind::RepeatingCall);
}

}  // namespace penlog
