#include "screens/connection_status.h"

#include "conelink/cone_state.h"
#include "core/settings.h"
#include "forms/warning_form.h"

namespace penlog {

void frmWarning_Load() {
  const bool own_truck_port = settings.TruckInterfaceSerialPort != settings.ConeSerialPort;
  frmWarning.frmEncoderConnected.Visible = own_truck_port;
  frmWarning.frmASCIISerialConnected.Visible = settings.ASCIIOutSerialPort > 0;
  frmWarning.frmFrameGrabberConnected.Visible =
      settings.VideoOverlaySerialPort > 0 && settings.LumenProbePresent > 0;
}

void frmWarning_Timer1_Timer() {
  frmWarning.Timer1.Stop();
  if (cone.WarningShown == 0 && cone.WarningPinned == 0) SendBehind(frmWarning);
}

}  // namespace penlog
