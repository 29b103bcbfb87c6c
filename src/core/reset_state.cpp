#include "core/reset_state.h"

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/languages.h"
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
#include "sounding/missing_steps.h"
#include "sounding/repeated_reading.h"
#include "sounding/sounding_state.h"

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
  cone = ConeState{};
  sounding = SoundingState{};
  missing_steps = MissingStepsState{};
  repeated_reading = RepeatedReadingState{};
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
