#include "core/start_up_cone.h"

#include <string>

#include "conelink/cone_state.h"
#include "conelink/identification.h"
#include "conelink/plain_exchange.h"
#include "conelink/port_supervision.h"
#include "conelink/reconnect.h"
#include "conelink/reply_order.h"
#include "core/channels.h"
#include "core/error_trap.h"
#include "core/message.h"
#include "core/progress.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/settings_file.h"
#include "core/start_up_buttons.h"
#include "core/start_up_ports.h"
#include "forms/cone_settings_form.h"
#include "forms/start_up_form.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/yield.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr int kAttemptsBetweenScans = 5;
constexpr int kModules = 9;

void OpenStartUpPort() {
  Trapped([] { StartUp.ConeComm.Close(); });
  Trapped([] { StartUp.ConeComm.SetCommPort(settings.ConeSerialPort); });
  Trapped([] { StartUp.ConeComm.SetSettings(kConeSettings); });
  Trapped([] { StartUp.ConeComm.Open(); });
  StartUp.ConeComm.SetInputMode(InputModes::Text);
}

void ReadModules() {
  if (settings.DiscoverAddOnModules != 1) return;
  for (int module = 1; module <= kModules; ++module) {
    StartUp.lblLoad.Caption = "Looking For Module (" + LeadingBlankNumber(module) + ")";
    ShowProgress("MODULE", module, kModules);
    Trapped([&] { ReadModuleSettings(module); });
  }
}

/// One attempt; modules are asked once the cone was found, and never for a resume, also when that
/// was cancelled meanwhile. What it could not make of the cone's memory goes into `fault`.
void AskCone(int attempt, bool resumes, std::string& fault) {
  OpenStartUpPort();
  StartUp.lblLoad.Caption = attempt <= 2 ? "LOOKING FOR CONE" : "CONE NOT FOUND. CHECKING PORTS";
  ShowProgress("STEP", kStartSteps, kStartSteps);
  try {
    ReadConeSettings();
  } catch (const RuntimeFault& found) {
    fault = found.what();
  }
  // Without a cone every channel with a file counts as present: each module would be a duplicate.
  if (cone.ConeLinkUp == kTrue && !resumes) ReadModules();
  Trapped([] { AssignReplyPositions(); });
  Trapped([] { StartUp.ConeComm.Close(); });
}

/// The calibration screen, opened here for playback, isn't built yet.
void GoOnWithPlaybackOnly() {
  for (int channel = 1; channel <= 18; ++channel) channels.ChannelPresent(channel) = kFalse;
  Tell("No Cone Found. Press OK To Proceed To Cabilibration Check (Playback Only).");
  session.CalibrationPlaybackOnly = kTrue;
  OfferAnotherTry();
}

/// A resume that was given up on the page leads back.
void ShowReport(bool resumes) {
  ShowModal(frmConeSettings);
  EndStatus();
  if (!resumes || !session.ResumeConeId.empty()) Hide(StartUp);
}

/// A cone that answers and whose memory makes no sense is not asked again by itself.
void RefuseCone(const std::string& fault) {
  Tell("THE CONE'S SETTINGS CANNOT BE READ. PROGRAM CANNOT CONTINUE.  " + fault);
  sounding.ConsoleMode = 0;
  cone.ConeLinkUp = kFalse;
  OfferAnotherTry();
}

/// An interface on the cone's own port goes where the cone goes; another is proved again.
bool FollowConePort(int old_port, bool shared) {
  if (shared) {
    settings.TruckInterfaceSerialPort = settings.ConeSerialPort;
    return true;
  }
  bool changed = false;
  return ProveTruckPort(settings.ConeSerialPort != old_port, changed);
}

/// As the console does it: kept apart by the numbers at the start, and the truck's port counts as
/// lost. The file keeps the two numbers that it has: a pair of one would read as a shared port.
void TakeTrucksNumber() {
  settings.ConeSerialPort = settings.TruckInterfaceSerialPort;
  cone.TruckPortLost = kTrue;
  Tell("THE CONE WAS FOUND ON PORT " + PlainNumber(settings.ConeSerialPort) +
       ", THE TRUCK INTERFACE'S PORT OF BEFORE.  NO DEPTH IS COUNTED UNTIL THE TRUCK INTERFACE IS "
       "GIVEN ITS NEW PORT: PRESS RESET PORTS ON THE CONSOLE.");
}

/// A resume goes on without end: its cone may be plugged in yet, and the console itself finds the
/// truck interface again, or says that it is lost.
bool SearchForLastCone() {
  const int port = ReconnectKQSerial();
  const bool given_up = session.ResumeConeId.empty();
  if (port == 0 || port == settings.ConeSerialPort || given_up) return true;
  GiveBackTrucksNumber();  // the cone has moved on
  const int old_port = settings.ConeSerialPort;
  const bool shared = old_port > 0 && settings.TruckInterfaceSerialPort == old_port;
  if (!shared && settings.TruckInterfaceSerialPort == port) {
    TakeTrucksNumber();
    return true;
  }
  settings.ConeSerialPort = static_cast<std::int16_t>(port);
  if (shared) settings.TruckInterfaceSerialPort = settings.ConeSerialPort;
  SaveKQSettings();
  KeepStartPorts();
  return true;
}

bool SearchAllPorts(bool resumes) {
  if (resumes) return SearchForLastCone();
  const int old_port = settings.ConeSerialPort;
  const bool shared = settings.TruckInterfaceSerialPort == old_port;
  if (!FindConePort() || !FollowConePort(old_port, shared)) return false;
  SaveKQSettings();
  KeepStartPorts();
  return true;
}

void BreakLink() {
  Yield();
  StartUp_CommBreak();
  Trapped([] { StartUp.ConeComm.Close(); });
}

}  // namespace

void LookForCone() {
  const bool resumes = !session.ResumeConeId.empty();
  const auto given_up = [resumes] { return resumes && session.ResumeConeId.empty(); };
  std::string fault;
  for (int attempt = 1;; ++attempt) {
    AskCone(attempt, resumes, fault);
    if (given_up()) return;
    const bool found = cone.ConeLinkUp == kTrue;
    if (!found && session.CalibrationMode == kTrue) return GoOnWithPlaybackOnly();
    if (found && cone.ChannelCount == 0) return RefuseCone("Its memory lists no channel.");
    if (found) return ShowReport(resumes);
    if (sounding.ConsoleMode == 1) return RefuseCone(fault);
    BreakLink();
    if (attempt % kAttemptsBetweenScans == 0 && !SearchAllPorts(resumes)) return;
    if (given_up()) return;
  }
}

}  // namespace penlog
