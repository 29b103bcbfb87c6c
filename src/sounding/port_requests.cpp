#include "sounding/port_requests.h"

#include "conelink/cone_state.h"
#include "conelink/port_supervision.h"
#include "core/channels.h"
#include "core/error_trap.h"
#include "core/settings.h"
#include "forms/main_form.h"
#include "sounding/sounding_state.h"
#include "sounding/truck_interface.h"

namespace penlog {

namespace {

/// Closes the port and opens its new number, unless that is 0. One that doesn't open counts as
/// lost, and the link supervision goes on with it.
void MovePort(SerialPort& port, int number, const char* port_settings, std::int16_t& lost) {
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
  MovePort(Main.ASCIIOutComm, request.NewPort, "19200,N,8,1", cone.ASCIIPortLost);
  return true;
}

bool ServeOverlay() {
  PortRequest& request = sounding.VideoPortRequest;
  if (request.Requested == 0) return false;
  request.Requested = 0;
  settings.VideoOverlaySerialPort = request.NewPort;
  MovePort(Main.VideoOverlayComm, request.NewPort, "9600,N,8,1", cone.VideoPortLost);
  // The overlay's screen is sent again here once it stands.
  return true;
}

/// Always at 9600 baud, whatever the camera. Rods may have moved while the port was closed.
void OpenTruckAgain() {
  const bool opened = Trapped([] { OpenTruckPort("9600,N,8,1"); });
  cone.TruckPortLost = opened ? kFalse : kTrue;
  if (sounding.ConsoleMode == 2) NoteStepsMayBeMissing();
  // With the overlay on this port its screen is sent here once it stands.
}

void ServeTruck() {
  PortRequest& request = sounding.TruckPortRequest;
  if (request.Requested == 0) return;
  request.Requested = 0;
  TruckPort().SetRTSEnable(false);  // on a port that is left nobody would lower it any more
  Main.EncoderComm.Close();
  if (!ServeASCII()) ServeOverlay();
  if (request.NewPort > 0) settings.TruckInterfaceSerialPort = request.NewPort;
  request.NewPort = 0;
  OpenTruckAgain();
}

}  // namespace

void ServePortRequests() {
  ServeTruck();
  ServeASCII();
  ServeOverlay();
}

}  // namespace penlog
