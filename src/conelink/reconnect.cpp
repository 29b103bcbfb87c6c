#include "conelink/reconnect.h"

#include <string>

#include "conelink/cone_state.h"
#include "conelink/main_exchange.h"
#include "conelink/plain_exchange.h"
#include "conelink/port_supervision.h"
#include "conelink/resync.h"
#include "core/channels.h"
#include "core/error_trap.h"
#include "core/progress.h"
#include "core/session.h"
#include "core/settings.h"
#include "forms/main_form.h"
#include "forms/start_up_form.h"
#include "platform/numbers.h"
#include "platform/yield.h"
#include "sounding/truck_interface.h"

namespace penlog {

namespace {

constexpr int kLastPort = 255;
constexpr int kBannerPauses = 10;

bool IsPresent(int port) {
  return cone.PortPresent[static_cast<std::size_t>(port)] == kTrue;
}

int PresentPorts() {
  int count = 0;
  for (int port = 1; port <= kLastPort; ++port) count += IsPresent(port) ? 1 : 0;
  return count;
}

bool IsBanner(const std::string& reply) {
  return reply.find("COPYRIGHT") != std::string::npos;
}

/// A port in good use for something else is not disturbed.
bool ServesAnOutput(int port) {
  return (port == settings.ASCIIOutSerialPort && cone.ASCIIPortLost == kFalse) ||
         (port == settings.VideoOverlaySerialPort && cone.VideoPortLost == kFalse);
}

/// Asks for the banner on `port`; the pauses let all of it come.
bool ConeAnswersOn(int port) {
  if (!Trapped([port] { OpenConePort(port); })) return false;
  std::string reply;
  Trapped([&] { reply = ReconnectCommStringCheck("Y"); });
  Main_CommPause(kBannerPauses);
  reply += Main.ConeComm.Input();
  return IsBanner(reply);
}

/// The truck's own port can't be opened twice, and its lines are to be counted on.
bool IsOpenTruckPort(int port) {
  const bool open = !TruckSharesConePort() && !Main.EncoderComm.Gone();
  return open && port == settings.TruckInterfaceSerialPort &&
         Main.EncoderComm.Settings() == kConeSettings;
}

/// Asks for the banner where the port is open. Only if the cone gives it the port changes hands.
bool ConeAnswersOnTruckPort() {
  Main.EncoderComm.ClearInBuffer();
  Main.EncoderComm.Output("Y\r");
  Main_CommPause(kBannerPauses);
  if (!IsBanner(Main.EncoderComm.Input())) return false;
  Main.EncoderComm.Close();
  return Trapped([] { OpenConePort(settings.TruckInterfaceSerialPort); });
}

void TakeOver(int port) {
  const bool shared_before = TruckSharesConePort();
  settings.ConeSerialPort = static_cast<std::int16_t>(port);
  if (session.StartConePort == session.StartTruckPort) {
    settings.TruckInterfaceSerialPort = static_cast<std::int16_t>(port);
  } else if (!shared_before && TruckSharesConePort()) {
    LoseTrucksNumber();
  }
  cone.ConePortLost = kFalse;
  ShowConeConnected();
  if (!TruckSharesConePort() || ConeTookTheTrucksNumber()) return;
  // Edges of the time in which the port was away or closed were not seen.
  RestoreQuitOutput();
  ReadTruckLines();
  NoteStepsMayBeMissing();
}

/// The COM number on which the cone answers, 0 if none. Its port is then open.
int ScanForCone() {
  const int present = PresentPorts();
  int tried = 0;
  for (int port = 1; port <= kLastPort; ++port) {
    Yield();
    if (!IsPresent(port)) continue;
    ShowProgress("LOOKING FOR THE CONE, PORT", ++tried, present);
    SuperviseBeforeScan();  // depth is not left uncounted until all ports were asked
    if (ServesAnOutput(port)) continue;
    if (IsOpenTruckPort(port) ? ConeAnswersOnTruckPort() : ConeAnswersOn(port)) return port;
    cone.ConePortLost = kTrue;
    Trapped([] { Main.ConeComm.Close(); });
  }
  return 0;
}

bool StartScreenConeAnswersOn(int port) {
  SerialPort& comm = StartUp.ConeComm;
  Trapped([&] { comm.Close(); });
  Trapped([&] { comm.SetCommPort(port); });
  Trapped([&] { comm.SetSettings(kConeSettings); });
  if (!Trapped([&] { comm.Open(); })) return false;
  std::string reply;
  Trapped([&] { reply = StartUp_CommStringCheck("Y"); });
  Trapped([&] { comm.Close(); });
  return IsBanner(reply);
}

}  // namespace

void ReconnectSerial() {
  SuperviseBeforeScan();
  Main_CommPause();
  ProbeAllPorts();
  const int port = ScanForCone();
  EndProgress();
  if (port == 0) {
    Yield();
    return;
  }
  TakeOver(port);
  Trapped([] { ResyncConeData(); });
  if (!ConeTookTheTrucksNumber()) Trapped([] { ReadTruckLines(); });
  Main.EncoderComm.SetDTREnable(false);
}

int ReconnectKQSerial() {
  ProbeAllPorts();
  const int present = PresentPorts();
  int tried = 0;
  for (int port = 1; port <= kLastPort; ++port) {
    if (!IsPresent(port)) continue;
    StartUp.frLoad.Visible = true;
    StartUp.lblLoad.Caption = "CHECKING FOR CONE ON PORT " + PlainNumber(port);
    ShowProgress("PORT", ++tried, present);
    StartUp_CommPause(2);
    if (StartScreenConeAnswersOn(port)) return port;
  }
  return 0;
}

}  // namespace penlog
