#include "display/alarms.h"

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "display/enlarged_graph.h"
#include "display/view_settings.h"
#include "forms/enlarged_graph_form.h"
#include "platform/host.h"
#include "sounding/held_rows.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr int kToneHz = 880;
constexpr int kToneMs = 400;

/// A reconnect sets and clears its words within one tick: it is one loss.
AlarmSet StandingNow() {
  const bool cone_lost = cone.ConeLinkUp != kTrue || cone.ConePortLost == kTrue;
  return {sounding.QuitState == 1, cone_lost, cone.TruckPortLost == kTrue,
          LinesHeld(kTemporaryFile) > 0, LinesHeld(kCptFile) > 0};
}

bool IsOn(const AlarmSet& set, Alarm alarm) {
  return set[static_cast<std::size_t>(alarm)];
}

}  // namespace

int NewAlarms(const AlarmSet& before, const AlarmSet& now) {
  int count = 0;
  for (std::size_t i = 0; i < kAlarms; ++i) count += now[i] && !before[i] ? 1 : 0;
  const bool lags_anew = IsOn(now, Alarm::FileLags) && !IsOn(before, Alarm::FileLags);
  return lags_anew && IsOn(now, Alarm::RowsHeld) ? count - 1 : count;
}

void FollowAlarms() {
  const AlarmSet now = StandingNow();
  const int fresh = NewAlarms(alarms.On, now);
  const int tones = view_settings.AlarmTone == 1 ? fresh : 0;
  alarms.On = now;
  // Their notices stand on the console, below the enlarged graph.
  if (fresh > 0 && EnlargedGraph.Visible) EnlargedGraph_Command1_Click();
  for (int i = 0; i < tones; ++i) TheHost().Tone(kToneHz, kToneMs);
}

}  // namespace penlog
