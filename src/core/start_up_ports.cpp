#include "core/start_up_ports.h"

#include <string>

#include "conelink/cone_state.h"
#include "conelink/port_supervision.h"
#include "conelink/reconnect.h"
#include "core/channels.h"
#include "core/progress.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/settings_file.h"
#include "core/start_up_buttons.h"
#include "forms/start_up_form.h"
#include "platform/boxes.h"
#include "platform/numbers.h"
#include "screens/specify_ports.h"

namespace penlog {

namespace {

/// The steps of a start: the ports of cone, truck and outputs, then the cone itself.
void ShowStatus(const char* text, int step) {
  StartUp.lblLoad.Caption = text;
  ShowProgress("STEP", step, kStartSteps);
}

bool Ask(const char* question) {
  return MsgBox(question, BoxButtons::YesNo) == BoxAnswer::Yes;
}

bool PortsAreApart() {
  return settings.TruckInterfaceSerialPort != settings.ConeSerialPort;
}

bool ProveAnyPort() {
  if (ProbeAllPorts() > 0) return true;
  MsgBox("NO SERIAL PORTS FOUND. CHECK THE POWER AND USB CONNECTIONS AND TRY AGAIN");
  OfferSetupOrExit();
  return false;
}

bool ProveConePort(bool& changed) {
  ShowStatus("CHECKING CONE CONNECTION", 1);
  if (ProbePort(settings.ConeSerialPort)) return true;
  if (!Ask("CONE SERIAL PORT NOT DETECTED. WOULD YOU LIKE TO SEARCH FOR THE PORT?")) {
    MsgBox("PROGRAM CANNOT CONTINUE. CHECK THE POWER AND USB CONNECTIONS AND TRY AGAIN");
    OfferAnotherTry();
    return false;
  }
  changed = FindConePort();
  return changed;
}

/// Whether the operator is asked to choose the truck interface's port, and did not refuse.
bool WantsToSpecifyTruckPort(bool cone_port_changed) {
  if (cone_port_changed) {
    MsgBox("PRESS OK TO VERIFY TRUCK INTERFACE PORT");
    return true;
  }
  return Ask("TRUCK INTERFACE SERIAL PORT NOT DETECTED. WOULD YOU LIKE TO SPECIFY THE PORT?");
}

/// The chosen port; 0 for none. The dots rest while the operator chooses.
int Choose(int (*specify)()) {
  StartUp.Timer1.Stop();
  const int port = specify();
  StartUp.Timer1.Start();
  return port;
}

/// An output whose port is not there: chosen anew, or done without from now on.
struct OutputPort {
  std::int16_t SettingsState::*port;
  const char* status;
  int step;
  const char* question;
  int (*specify)();
  const char* set_to;
  const char* not_set;
};

constexpr OutputPort kASCIIOut{
    &SettingsState::ASCIIOutSerialPort,
    "CHECKING ASCII OUT PORT",
    3,
    "ASCII OUT SERIAL PORT NOT DETECTED. WOULD YOU LIKE TO SPECIFY THE PORT? IF 'NO', THEN PROGRAM "
    "WILL CONTINUE WITH ASCII OUT DISABLED",
    SpecifyASCIIOut,
    "ASCII OUT SERIAL PORT SET TO PORT ",
    "ASCII OUT SERIAL PORT NOT SET.  CHECK THE POWER AND USB CONNECTIONS AND TRY AGAIN",
};

constexpr OutputPort kVideoOverlay{
    &SettingsState::VideoOverlaySerialPort,
    "CHECKING VIDEO OVERLAY PORT",
    4,
    "VIDEO OVERLAY SERIAL PORT NOT DETECTED. WOULD YOU LIKE TO SPECIFY THE PORT? IF 'NO', THEN "
    "PROGRAM WILL CONTINUE WITH VIDEO OVERLAY DISABLED",
    SpecifyVideoOverlay,
    "VIDEO OVERLAY PORT SET TO PORT ",
    "VIDEO OVERLAY PORT NOT SET.  CHECK THE POWER AND USB CONNECTIONS AND TRY AGAIN",
};

void ProveOutputPort(const OutputPort& output, bool& changed) {
  std::int16_t& port = settings.*output.port;
  ShowStatus(output.status, output.step);
  if (ProbePort(port)) return;
  if (!Ask(output.question)) {
    port = 0;
    changed = true;
    return;
  }
  const int chosen = Choose(output.specify);
  if (chosen == 0) {
    MsgBox(output.not_set);
    return;
  }
  port = static_cast<std::int16_t>(chosen);
  ProbePort(chosen);  // it may have been plugged in only now
  changed = true;
  MsgBox(output.set_to + PlainNumber(chosen));
}

/// The board of the overlay hangs on a serial port only in these two.
bool HasOverlayBoard() {
  return settings.LumenProbePresent == 1 || settings.LumenProbePresent == 2;
}

}  // namespace

bool FindConePort() {
  const int port = ReconnectKQSerial();
  if (port == 0) {
    MsgBox(
        "CONE NOT DETECTED. PROGRAM CANNOT CONTINUE. CHECK THE POWER AND USB CONNECTIONS AND TRY "
        "AGAIN");
    OfferAnotherTry();
    return false;
  }
  settings.ConeSerialPort = static_cast<std::int16_t>(port);
  MsgBox("CONE DETECTED ON PORT " + PlainNumber(port));
  return true;
}

bool ProveTruckPort(bool cone_port_changed, bool& changed) {
  ShowStatus("CHECKING TRUCK INTERFACE CONNECTION", 2);
  if (ProbePort(settings.TruckInterfaceSerialPort) && !cone_port_changed) return true;
  const int port = WantsToSpecifyTruckPort(cone_port_changed) ? Choose(SpecifyTruckInterface) : 0;
  if (port == 0) {
    MsgBox(
        "TRUCK INTERFACE SERIAL PORT NOT SET. PROGRAM CANNOT CONTINUE. CHECK THE POWER AND USB "
        "CONNECTIONS AND TRY AGAIN");
    OfferAnotherTry();
    return false;
  }
  settings.TruckInterfaceSerialPort = static_cast<std::int16_t>(port);
  changed = true;
  MsgBox("TRUCK INTERFACE SERIAL PORT SET TO PORT " + PlainNumber(port));
  return true;
}

void GiveBackTrucksNumber() {
  if (!ConeTookTheTrucksNumber()) return;
  settings.ConeSerialPort = session.StartConePort;
  settings.TruckInterfaceSerialPort = session.StartTruckPort;
  cone.TruckPortLost = kFalse;
}

void KeepStartPorts() {
  GiveBackTrucksNumber();
  session.StartConePort = settings.ConeSerialPort;
  session.StartTruckPort = settings.TruckInterfaceSerialPort;
  session.StartASCIIPort = settings.ASCIIOutSerialPort;
  session.StartVideoPort = settings.VideoOverlaySerialPort;
}

bool ProveStartPorts() {
  bool cone_changed = false;
  bool changed = false;
  const bool were_apart = PortsAreApart();
  if (!ProveAnyPort()) return false;
  if (!ProveConePort(cone_changed)) return false;
  // Apart before counts too: a cone that comes up under the truck interface's number has moved it.
  const bool prove_truck = were_apart || PortsAreApart();
  if (prove_truck && !ProveTruckPort(cone_changed, changed)) return false;
  if (settings.ASCIIOutSerialPort > 0) ProveOutputPort(kASCIIOut, changed);
  if (settings.VideoOverlaySerialPort > 0 && HasOverlayBoard()) {
    ProveOutputPort(kVideoOverlay, changed);
  }
  if (cone_changed || changed) {
    SaveKQSettings();
    KeepStartPorts();
  }
  return true;
}

}  // namespace penlog
