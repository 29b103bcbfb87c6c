#include "sounding/main_entry.h"

#include <string_view>

#include "conelink/cone_state.h"
#include "conelink/port_supervision.h"
#include "core/channels.h"
#include "core/error_trap.h"
#include "core/session.h"
#include "core/settings.h"
#include "display/display_state.h"
#include "display/set_display.h"
#include "fieldio/ascii_out.h"
#include "fieldio/video_overlay.h"
#include "forms/main_form.h"
#include "platform/texts.h"
#include "sounding/auto_manual.h"
#include "sounding/quits.h"
#include "sounding/resume_rebuild.h"
#include "sounding/sounding_state.h"
#include "sounding/tell_once.h"
#include "sounding/truck_interface.h"

namespace penlog {

namespace {

constexpr std::string_view kCalibratorSettings = "19200,N,8,1";

void SetDefaults() {
  sounding.ManualClampState = 1;
  sounding.QuitSettleCount = 0;
  sounding.ReadingsTaken = 0;
  sounding.BaselinePending = 0;
  SetAutoMode();
  if (settings.DepthFormat == 1) {
    Main.Label7.Caption = "ELEVATION";
    Main.Label72.Caption = "ELEVATION";
  }
}

/// True when the port stands open afterwards.
bool OpenAnew(SerialPort& port, int number, std::string_view port_settings) {
  return Trapped([&] {
    port.Close();
    port.SetSettings(port_settings);
    port.SetCommPort(number);
    port.Open();
  });
}

void OpenConeAndOutputs() {
  Trapped([] { OpenConePort(settings.ConeSerialPort); });
  if (session.CalibrationMode == kTrue) {
    OpenAnew(Main.CalibratorComm, settings.CalibratorSerialPort, kCalibratorSettings);
  }
  if (settings.ASCIIOutSerialPort > 0 &&
      !OpenAnew(Main.ASCIIOutComm, settings.ASCIIOutSerialPort, kASCIIOutSettings)) {
    cone.ASCIIPortLost = kTrue;
  }
}

void LayOut() {
  display.GraphAutoScale.fill(-1);
  display.GraphRedraw.fill(0);
  SetDisplay();  // clears the ranges of the charts and their shown copies
}

/// Where the cone came up under the truck's number, its lines are not the truck's.
void OpenTruck() {
  if (ConeTookTheTrucksNumber()) return;
  const bool opened = Trapped([] {
    Main.EncoderComm.Close();
    OpenTruckPort(TruckSettings());
  });
  if (!opened) cone.TruckPortLost = kTrue;
}

/// The start-up screen of a resumed sounding also holds the depth.
void OpenOverlay() {
  if (settings.LumenProbePresent == 1 &&
      !OpenAnew(Main.VideoOverlayComm, settings.VideoOverlaySerialPort, kOverlaySettings)) {
    cone.VideoPortLost = kTrue;
  }
  ResendOverlayScreen(!session.ResumeConeId.empty());
}

}  // namespace

std::int16_t SettledDualAxis(std::int16_t setting, bool channel8, bool channel9,
                             const std::string& cone_id) {
  if (channel8 && channel9) return StartsWith(cone_id, "DPG") ? std::int16_t{0} : setting;
  return channel8 ? std::int16_t{2} : setting;
}

void EnterMainloop() {
  settings.DualAxisSeismic =
      SettledDualAxis(settings.DualAxisSeismic, channels.ChannelPresent(8) == kTrue,
                      channels.ChannelPresent(9) == kTrue, cone.ConeId);
  // In a calibration check the console makes way for that screen here once it stands; hidden now
  // it would leave the operator without any.
  Main.Timer1.Start();
  SetDefaults();
  OpenConeAndOutputs();
  LayOut();
  OpenTruck();
  if (!session.ResumeConeId.empty()) Step(RebuildResumedSounding);
  ScaleQuitLimits();
  OpenOverlay();
  // The calibration check gets its first step here once it stands.
  sounding.QuitState = 0;
}

}  // namespace penlog
