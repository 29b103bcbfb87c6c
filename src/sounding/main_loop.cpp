#include "sounding/main_loop.h"

#include <exception>

#include "conelink/comm_tick.h"
#include "conelink/cone_state.h"
#include "conelink/port_supervision.h"
#include "conelink/reconnect.h"
#include "conelink/resync.h"
#include "core/channels.h"
#include "display/alarms.h"
#include "display/depth_word.h"
#include "display/status_strip.h"
#include "forms/main_form.h"
#include "platform/clock.h"
#include "platform/runtime_fault.h"
#include "platform/yield.h"
#include "sounding/distance_pushed.h"
#include "sounding/held_rows.h"
#include "sounding/main_entry.h"
#include "sounding/port_requests.h"
#include "sounding/reading_cycle.h"
#include "sounding/recording_pass.h"
#include "sounding/resume_depth.h"
#include "sounding/sounding_start.h"
#include "sounding/sounding_state.h"
#include "sounding/steps_note.h"
#include "sounding/tell_once.h"

namespace penlog {

namespace {

void TakeTime() {
  sounding.ElapsedMs = ElapsedSince(sounding.TimeOriginMs, TimeToMillisecond());
}

/// Whether the link was found lost: a pass that begins so resynchronises the cone once more, also
/// when the scan has brought it back, and takes neither reading nor row.
bool SuperviseLink() {
  const bool was_lost = cone.ConePortLost == kTrue || cone.ConeLinkUp == kFalse;
  if (cone.ConePortLost == kTrue) ReconnectSerial();
  if (cone.ConeLinkUp == kFalse) ReconnectSerial();
  return was_lost;
}

void ResynchronisingPass() {
  ResyncConeData();
  if (cone.ConeLinkUp != kTrue) return;
  sounding.ReadingsFresh = kFalse;
  sounding.ReadingsTaken = 0;  // a baseline waits until none of before the loss is averaged in
  ShowConeConnected();
}

void WaitingPass() {
  // In calibration mode the calibrator is read beside the cone here once its screen stands.
  GetConeData();
  TakeAskedBaseline();
  const bool sends = distance_pushed.WaitingPassSends == kTrue && cone.ConeLinkUp == kTrue;
  if (sends) Step(WriteDistancePushed);  // once: it is pending no more then
}

void WorkOfMode(bool link_was_lost) {
  const bool lost = link_was_lost || cone.ConeLinkUp != kTrue;
  switch (sounding.ConsoleMode) {
    case 1:
      return lost ? ResynchronisingPass() : WaitingPass();
    case 2:
      return lost ? LostLinkPass() : RecordingPass();
    case 8:
      return StartRecording();
    default:
      return;  // 0 and the seismic steps only keep events running until these stand
  }
}

}  // namespace

void Main_Timer1_Timer() {
  ++sounding.TicksSinceStep;
  const auto second = static_cast<std::int16_t>(TheClock().Wall().second);
  if (second != sounding.LastClockSecond) {
    ++sounding.SecondsCounter;
    sounding.LastClockSecond = second;
  }
  CountCommTick(Main.CommTick);
  FollowDepthWord();
  FollowStatusStrip();
  FollowAlarms();
  FollowResumeDepth();
  KeepMissingSteps();
}

void MainloopPass() {
  if (sounding.ExitUnderWay == kTrue) return WaitYield("the answer whether to start again");
  const std::int64_t waits = WaitCount();
  TakeTime();
  bool link_was_lost = false;
  Step([&] { link_was_lost = SuperviseLink(); });
  Step(ServePortRequests);
  Yield();
  RetryHeld();
  WorkOfMode(link_was_lost);
  if (WaitCount() == waits) {
    WaitYield("the main loop with nothing to do");
  } else {
    Yield();
  }
}

void Mainloop() {
  Step(TakeUpMissingSteps);  // before the first tick shows what is known of them
  EnterMainloop();
  for (;;) {
    try {
      MainloopPass();
    } catch (const std::exception& fault) {
      // Any fault, not only a RuntimeFault: a sounding must outlive a mistake in one pass.
      TellOnce(fault.what());
      WaitYield("the pass after a fault");
    }
  }
}

}  // namespace penlog
