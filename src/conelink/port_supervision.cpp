#include "conelink/port_supervision.h"

#include <functional>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/error_trap.h"
#include "core/session.h"
#include "core/settings.h"
#include "fieldio/ascii_out.h"
#include "fieldio/video_overlay.h"
#include "forms/main_form.h"
#include "forms/warning_form.h"
#include "platform/clock.h"
#include "platform/port_driver.h"
#include "sounding/sounding_state.h"
#include "sounding/truck_interface.h"

namespace penlog {

namespace {

/// How long a port is left alone that took its time to refuse: after the first time, after others.
struct Pauses {
  Micros first;
  Micros later;
};

constexpr Pauses kTruckPauses = {3 * kSecond, 3 * kSecond};  // without it there is no depth
constexpr Pauses kOutputPauses = {10 * kSecond, 30 * kSecond};
constexpr int kRodsRest = 91;  // ticks without a due row; 5 s

/// One supervised port beside the cone's.
struct Link {
  int number;
  std::int16_t& lost;
  SlowRefusals& refusals;
  Pauses pauses;
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

bool RowsAreComing() {
  return sounding.ConsoleMode == 2 && sounding.TicksSinceStep < kRodsRest;
}

/// A network port may take two seconds to refuse, in which rows would fall together.
bool MayBeTried(const Link& link) {
  const SlowRefusals& refusals = link.refusals;
  if (refusals.Count == 0 || refusals.Number != link.number) return true;
  return Now() >= refusals.NextTry && !RowsAreComing();
}

void CountRefusal(const Link& link) {
  SlowRefusals& refusals = link.refusals;
  if (refusals.Number != link.number) refusals = {};
  const Micros pause = refusals.Count == 0 ? link.pauses.first : link.pauses.later;
  refusals = {refusals.Count + 1, link.number, Now() + pause};
}

bool OpenedAgain(const Link& link) {
  if (!MayBeTried(link)) return false;
  const Micros start = Now();
  const bool opened = Trapped([&] {
    if (link.port.PortOpen()) link.port.Close();
    link.open();
  });
  if (!opened && Now() > start) {
    CountRefusal(link);
  } else {
    link.refusals = {};  // what refuses at once costs nothing
  }
  return opened;
}

void ShowFound(const Link& link) {
  link.lost = kFalse;
  Swap(link.connected, link.warning);
}

/// A window that the operator has placed stays up for good, and may lie behind by now.
void RaiseForLoss(bool is_new) {
  if (is_new && cone.WarningPinned == kTrue) cone.WarningShown = kFalse;
  RaiseWarning();
}

void ShowLost(const Link& link) {
  RaiseForLoss(link.lost != kTrue);  // first: its load sets the panels of what is in use
  link.lost = kTrue;
  Swap(link.warning, link.connected);
}

void Supervise(const Link& link, bool present) {
  if (present && (!WasAway(link) || OpenedAgain(link))) return ShowFound(link);
  ShowLost(link);
}

/// A port that is no longer in use can't be lost.
void Forget(const Link& link) {
  link.lost = kFalse;
  link.warning.Visible = false;
}

void OpenOutput(SerialPort& port, int number, std::string_view port_settings) {
  port.SetSettings(port_settings);
  port.SetCommPort(number);
  port.Open();
}

void OpenTruckAgain() {
  OpenTruckPort(TruckSettings());
  if (settings.LumenProbePresent == 2) ResendOverlayScreen();
  NoteStepsMayBeMissing();
}

Link TruckLink() {
  return {settings.TruckInterfaceSerialPort,
          cone.TruckPortLost,
          cone.TruckRefusals,
          kTruckPauses,
          Main.EncoderComm,
          frmWarning.frmEncoderConnected,
          frmWarning.frmEncoderWarning,
          OpenTruckAgain};
}

void SuperviseTruck() {
  const Link link = TruckLink();
  if (ConeTookTheTrucksNumber()) return ShowLost(link);
  if (link.number <= 0 || TruckSharesConePort()) return Forget(link);
  Supervise(link, ProbePort(link.number));
}

void SuperviseASCII() {
  const int number = settings.ASCIIOutSerialPort;
  const Link link = {number,
                     cone.ASCIIPortLost,
                     cone.ASCIIRefusals,
                     kOutputPauses,
                     Main.ASCIIOutComm,
                     frmWarning.frmASCIISerialConnected,
                     frmWarning.frmASCIIOutWarning,
                     [number] { OpenOutput(Main.ASCIIOutComm, number, kASCIIOutSettings); }};
  if (number <= 0) return Forget(link);
  Supervise(link, ProbePort(number));
}

void SuperviseVideo() {
  const int number = settings.VideoOverlaySerialPort;
  const Link link = {number,
                     cone.VideoPortLost,
                     cone.VideoRefusals,
                     kOutputPauses,
                     Main.VideoOverlayComm,
                     frmWarning.frmFrameGrabberConnected,
                     frmWarning.frmSensorayWarning,
                     [number] {
                       OpenOutput(Main.VideoOverlayComm, number, kOverlaySettings);
                       ResendOverlayScreen();
                     }};
  if (number <= 0 || number > 255 || settings.LumenProbePresent != 1) return Forget(link);
  const bool listed = cone.PortPresent[static_cast<std::size_t>(number)] == kTrue;
  Supervise(link, link.lost == kTrue ? ProbePort(number) : listed);
}

void SuperviseCone() {
  if (ProbePort(settings.ConeSerialPort)) return;
  const bool is_new = cone.ConeLinkUp == kTrue;
  cone.ConePortLost = kTrue;
  cone.ConeLinkUp = kFalse;
  Swap(frmWarning.frmSerialWarning, frmWarning.frmSerialConnected);
  ShowModulesLost();
  RaiseForLoss(is_new);
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

void LoseTrucksNumber() {
  Main.EncoderComm.Close();
  ShowLost(TruckLink());
}

bool ConeTookTheTrucksNumber() {
  const bool had_own_port = session.StartConePort != session.StartTruckPort;
  return had_own_port && TruckSharesConePort() && cone.TruckPortLost == kTrue;
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

const char* TruckSettings() {
  if (settings.LumenProbePresent < 2) return kTruckSettings;
  return settings.LumenProbePresent == 2 ? kOverlaySettings : "";
}

void OpenConePort(int number) {
  if (Main.ConeComm.PortOpen()) Main.ConeComm.Close();
  Main.ConeComm.SetSettings(kConeSettings);
  Main.ConeComm.SetCommPort(number);
  Main.ConeComm.Open();
  if (!TruckSharesConePort() || ConeTookTheTrucksNumber()) return;
  // A scan knows the truck's port under a new number only once the cone has answered there. Until
  // then any of them may be the one whose stop line holds the rig, but its lines say nothing.
  RestoreQuitOutput();
  if (number == settings.TruckInterfaceSerialPort) ReadTruckLines();
}

}  // namespace penlog
