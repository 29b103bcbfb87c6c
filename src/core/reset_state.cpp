#include "core/reset_state.h"

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/languages.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/settings_replaced.h"
#include "core/soil_tables.h"
#include "display/display_state.h"
#include "forms/form.h"
#include "platform/boxes.h"
#include "platform/serial_port.h"
#include "screens/setup_sounding.h"
#include "screens/specify_ports.h"
#include "sounding/sounding_state.h"

namespace penlog {

void ResetState() {
  ResetForms();
  SerialPort::ResetAll();
  ResetBoxes();
  channels = ChannelState{};
  settings = SettingsState{};
  replaced_settings = ReplacedSettingsState{};
  session = SessionState{};
  cone = ConeState{};
  sounding = SoundingState{};
  display = DisplayState{};
  soil = SoilTables{};
  words = WordTables{};
  setup_sounding = SetupSoundingState{};
  specify_ports = SpecifyPortsState{};
}

}  // namespace penlog
