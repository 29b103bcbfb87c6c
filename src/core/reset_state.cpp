#include "core/reset_state.h"

#include "conelink/cone_state.h"
#include "conelink/other_cone.h"
#include "conelink/resync_state.h"
#include "core/channels.h"
#include "core/languages.h"
#include "core/resumed_copy.h"
#include "core/resumed_zeros.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/settings_replaced.h"
#include "core/soil_tables.h"
#include "display/alarms.h"
#include "display/depth_word.h"
#include "display/display_state.h"
#include "display/status_strip.h"
#include "display/view_settings.h"
#include "fieldio/video_overlay.h"
#include "forms/form.h"
#include "forms/raises.h"
#include "platform/boxes.h"
#include "platform/serial_port.h"
#include "screens/connection_status.h"
#include "screens/reset_comms.h"
#include "screens/setup_sounding.h"
#include "screens/specify_ports.h"
#include "sounding/distance_pushed.h"
#include "sounding/held_rows.h"
#include "sounding/missing_steps.h"
#include "sounding/repeated_reading.h"
#include "sounding/resume_depth.h"
#include "sounding/sounding_state.h"
#include "sounding/steps_note.h"

namespace penlog {

void ResetState() {
  OverlayOutput().Drop();
  ResetForms();
  raises = RaiseState{};
  SerialPort::ResetAll();
  ResetBoxes();
  channels = ChannelState{};
  settings = SettingsState{};
  replaced_settings = ReplacedSettingsState{};
  session = SessionState{};
  resumed_copy = ResumedCopyState{};
  resumed_zeros = ResumedZerosState{};
  cone = ConeState{};
  known_cone = KnownConeState{};
  resync = ResyncState{};
  sounding = SoundingState{};
  held_reasons = HeldReasonsState{};
  missing_steps = MissingStepsState{};
  steps_note = StepsNoteState{};
  distance_pushed = DistancePushedState{};
  repeated_reading = RepeatedReadingState{};
  resume_depth = ResumeDepthState{};
  display = DisplayState{};
  view_settings = ViewSettingsState{};
  ChooseLook(view_settings.Look);
  depth_word = DepthWordState{};
  status_strip = StatusStripState{};
  alarms = AlarmState{};
  soil = SoilTables{};
  words = WordTables{};
  setup_sounding = SetupSoundingState{};
  specify_ports = SpecifyPortsState{};
  connection_status = ConnectionStatusState{};
  reset_comms = ResetCommsState{};
}

}  // namespace penlog
