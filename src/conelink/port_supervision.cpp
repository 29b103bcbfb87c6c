#include "conelink/port_supervision.h"

#include <functional>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/error_trap.h"
#include "core/settings.h"
#include "forms/main_form.h"
#include "forms/warning_form.h"
#include "platform/port_driver.h"
#include "sounding/truck_interface.h"

namespace penlog {

namespace {

/// One supervised port beside the cone's.
struct Link {
  int number;
  std::int16_t& lost;
  SerialPort& port;
  Frame& connected;
  Frame& warning;
  std::function<void()> open;
};

void Swap(Frame& shown, Frame& hidden) {
  shown.Visible = true;
  hidden.Visible = false;
}

/// The port was away though its number is there: the open port object has seen it go.
bool WasAway(const Link& link) {
  if (link.lost == kTrue) return true;
  return link.port.PortOpen() && link.port.Gone() && EnumSerPorts(link.number);
}

void OpenAgain(const Link& link) {
  if (link.port.PortOpen()) link.port.Close();
  link.open();
}

void Supervise(const Link& link, bool present) {
  if (present && !WasAway(link)) return;
  if (present && Trapped([&] { OpenAgain(link); })) {
    link.lost = kFalse;
    Swap(link.connected, link.warning);
    return;
  }
  link.lost = kTrue;
  Swap(link.warning, link.connected);
  RaiseWarning();
}

/// A port that is no longer in use can't be lost.
void Forget(const Link& link) {
  if (link.lost == kFalse) return;
  link.lost = kFalse;
  link.warning.Visible = false;
}

void OpenOutput(SerialPort& port, int number, std::string_view port_settings) {
  port.SetSettings(port_settings);
  port.SetCommPort(number);
  port.Open();
}

/// With a probe camera the truck's port also carries the overlay, at the overlay's speed.
const char* TruckSettings() {
  if (settings.LumenProbePresent < 2) return "19200,N,8,1";
  return settings.LumenProbePresent == 2 ? "9600,N,8,1" : "";
}

void OpenTruckAgain() {
  OpenTruckPort(TruckSettings());
  NoteStepsMayBeMissing();
}

void SuperviseTruck() {
  const Link link = {
      settings.TruckInterfaceSerialPort, cone.TruckPortLost,           Main.EncoderComm,
      frmWarning.frmEncoderConnected,    frmWarning.frmEncoderWarning, OpenTruckAgain};
  if (link.number <= 0 || link.number == settings.ConeSerialPort) return Forget(link);
  Supervise(link, ProbePort(link.number));
}

void SuperviseASCII() {
  const int number = settings.ASCIIOutSerialPort;
  const Link link = {number,
                     cone.ASCIIPortLost,
                     Main.ASCIIOutComm,
                     frmWarning.frmASCIISerialConnected,
                     frmWarning.frmASCIIOutWarning,
                     [number] { OpenOutput(Main.ASCIIOutComm, number, "19200,N,8,1"); }};
  if (number <= 0) return Forget(link);
  Supervise(link, ProbePort(number));
}

void SuperviseVideo() {
  const int number = settings.VideoOverlaySerialPort;
  // The overlay's screen is to be painted anew at the opening, once its texts stand.
  const Link link = {number,
                     cone.VideoPortLost,
                     Main.VideoOverlayComm,
                     frmWarning.frmFrameGrabberConnected,
                     frmWarning.frmSensorayWarning,
                     [number] { OpenOutput(Main.VideoOverlayComm, number, "9600,N,8,1"); }};
  if (number <= 0 || number > 255 || settings.LumenProbePresent != 1) return Forget(link);
  Supervise(link, cone.PortPresent[static_cast<std::size_t>(number)] == kTrue);
}

void SuperviseCone() {
  if (ProbePort(settings.ConeSerialPort)) return;
  cone.ConePortLost = kTrue;
  cone.ConeLinkUp = kFalse;
  Swap(frmWarning.frmSerialWarning, frmWarning.frmSerialConnected);
  ShowModulesLost();
  RaiseWarning();
}

}  // namespace

bool ProbePort(int number) {
  const bool present = EnumSerPorts(number);
  if (number >= 0 && number <= 255) {
    cone.PortPresent[static_cast<std::size_t>(number)] = present ? kTrue : kFalse;
  }
  return present;
}

int ProbeAllPorts() {
  int count = 0;
  for (int number = 1; number <= 255; ++number) count += ProbePort(number) ? 1 : 0;
  return count;
}

void SupervisePorts() {
  SuperviseTruck();
  SuperviseASCII();
  SuperviseVideo();
  cone.ConePortLost = kFalse;
  SuperviseCone();
}

void SuperviseBeforeScan() {
  SuperviseTruck();
  SuperviseASCII();
  SuperviseCone();
}

void RaiseWarning() {
  if (cone.WarningShown != kFalse) return;
  Show(frmWarning);
  cone.WarningShown = kTrue;
}

void LowerWarningIfClear() {
  const bool lost = cone.ConePortLost == kTrue || cone.TruckPortLost == kTrue ||
                    cone.ASCIIPortLost == kTrue || cone.VideoPortLost == kTrue;
  if (lost || cone.ConeLinkUp != kTrue) return;
  if (cone.WarningShown != kTrue || cone.WarningPinned != kFalse) return;
  cone.WarningShown = kFalse;
  frmWarning.Timer1.Start();
}

void ShowConeConnected() {
  Swap(frmWarning.frmSerialConnected, frmWarning.frmSerialWarning);
  Swap(frmWarning.frmModulesConnected, frmWarning.frmModuleWarning);
}

void ShowModulesLost() {
  Swap(frmWarning.frmModuleWarning, frmWarning.frmModulesConnected);
}

void OpenConePort(int number) {
  if (Main.ConeComm.PortOpen()) Main.ConeComm.Close();
  Main.ConeComm.SetSettings(kConeSettings);
  Main.ConeComm.SetCommPort(number);
  Main.ConeComm.Open();
  if (!TruckSharesConePort()) return;
  // A scan knows the truck's port under a new number only once the cone has answered there. Until
  // then any of them may be the one whose stop line holds the rig, but its lines say nothing.
  RestoreQuitOutput();
  if (number == settings.TruckInterfaceSerialPort) ReadTruckLines();
}

}  // namespace penlog
