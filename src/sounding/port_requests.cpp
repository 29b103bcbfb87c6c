#include "sounding/port_requests.h"

#include <string_view>
#include <utility>

#include "conelink/cone_state.h"
#include "conelink/port_supervision.h"
#include "core/channels.h"
#include "core/error_trap.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/settings_file.h"
#include "fieldio/ascii_out.h"
#include "fieldio/video_overlay.h"
#include "forms/main_form.h"
#include "sounding/sounding_state.h"
#include "sounding/truck_interface.h"

namespace penlog {

namespace {

/// Closes the port and opens its new number, unless that is 0. One that doesn't open counts as
/// lost, and the link supervision goes on with it.
void MovePort(SerialPort& port, int number, std::string_view port_settings, std::int16_t& lost) {
  port.Close();
  lost = kFalse;
  if (number <= 0) return;
  const bool opened = Trapped([&] {
    port.SetSettings(port_settings);
    port.SetCommPort(number);
    port.Open();
  });
  ProbePort(number);  // the overlay's presence is taken from the table
  if (!opened) lost = kTrue;
}

bool ServeASCII() {
  PortRequest& request = sounding.ASCIIPortRequest;
  if (request.Requested == 0) return false;
  request.Requested = 0;
  settings.ASCIIOutSerialPort = request.NewPort;
  MovePort(Main.ASCIIOutComm, request.NewPort, kASCIIOutSettings, cone.ASCIIPortLost);
  return true;
}

bool ServeOverlay() {
  PortRequest& request = sounding.VideoPortRequest;
  if (request.Requested == 0) return false;
  request.Requested = 0;
  settings.VideoOverlaySerialPort = request.NewPort;
  if (settings.LumenProbePresent == 1) {
    MovePort(Main.VideoOverlayComm, request.NewPort, kOverlaySettings, cone.VideoPortLost);
  }
  ResendOverlayScreen();
  return true;
}

/// Always at 9600 baud, whatever the camera. Rods may have moved while the port was closed; one
/// that refuses is not back yet.
void OpenTruckAgain() {
  const bool opened = Trapped([] { OpenTruckPort("9600,N,8,1"); });
  cone.TruckPortLost = opened ? kFalse : kTrue;
  if (opened) NoteStepsMayBeMissing();
  if (settings.LumenProbePresent == 2) ResendOverlayScreen();
}

/// The numbers tell from now on whether the operator runs both on one port: a scan for the cone
/// moves the truck interface with it only then.
void KeepAsAtTheStart() {
  session.StartConePort = settings.ConeSerialPort;
  session.StartTruckPort = settings.TruckInterfaceSerialPort;
}

void SwitchTruckOff() {
  settings.TruckInterfaceSerialPort = 0;
  cone.TruckPortLost = kFalse;
}

/// A port that one link gives up may be another's new one: all are closed before one is opened.
void CloseWhatMoves() {
  if (sounding.ASCIIPortRequest.Requested != 0) Main.ASCIIOutComm.Close();
  if (sounding.VideoPortRequest.Requested != 0) Main.VideoOverlayComm.Close();
}

void ServeTruck() {
  PortRequest& request = sounding.TruckPortRequest;
  if (request.Requested == 0) return;
  request.Requested = 0;
  TruckPort().SetRTSEnable(false);  // on a port that is left nobody would lower it any more
  Main.EncoderComm.Close();
  if (!ServeASCII()) ServeOverlay();
  const std::int16_t port = std::exchange(request.NewPort, std::int16_t{0});
  if (port > 0) settings.TruckInterfaceSerialPort = port;
  if (port == kNoTruckPort) {
    SwitchTruckOff();
  } else {
    OpenTruckAgain();
  }
  KeepAsAtTheStart();
}

}  // namespace

void ServePortRequests() {
  const bool asked = sounding.TruckPortRequest.Requested != 0 ||
                     sounding.ASCIIPortRequest.Requested != 0 ||
                     sounding.VideoPortRequest.Requested != 0;
  if (!asked) return;
  CloseWhatMoves();
  ServeTruck();
  ServeASCII();
  ServeOverlay();
  SavePortNumbers();
}

}  // namespace penlog
