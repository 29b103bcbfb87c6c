#include "sounding/main_load.h"

#include "core/channels.h"
#include "core/settings.h"
#include "display/set_display.h"
#include "display/view_settings.h"
#include "forms/main_form.h"
#include "forms/warning_form.h"
#include "platform/boxes.h"
#include "platform/clock.h"
#include "platform/numbers.h"
#include "sounding/sounding_end.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

void ShowSeismicHardware() {
  const bool found = channels.ChannelPresent(8) == kTrue || channels.ChannelPresent(9) == kTrue;
  Main.lblNoSeismicHardwareFound.Visible = !found;
  // The seismic buttons are shown here once the seismic test stands.
}

/// With the encoder the pressure line carries a phase: the depth lamp takes the place of its lamp,
/// and a key of the two directions is shown.
void ShowEncoderLamps() {
  if (settings.DepthCounterType != 0) return;
  Main.Label10.Visible = Main.shpPressure.Visible = false;
  Main.Label11.Where = Main.Label10.Where;
  Main.shpDepth.Where = Main.shpPressure.Where;
  Main.shpUp.Visible = Main.lblUp.Visible = true;
  Main.shpDown.Visible = Main.lblDown.Visible = true;
  Main.shpUp.Fill = Main.shpDown.Fill = FillStyle::Solid;
  Main.shpUp.FillColor = kRed;
  Main.shpDown.FillColor = kGreen;
}

/// OK goes on; CANCEL starts the console anew, so that the tip can be set.
void WarnOfBallTip() {
  const std::string caution =
      "CAUTION: SYSTEM IS CONFIGURED TO INTERPERT TIP READINGS USING BALL TIP WITH A DIAMETER OF " +
      PlainNumber(int{settings.TipDiameter}) +
      " mm.  Fs / Fr / U2 READINGS MAY BE AFFECTED.  SPT AND SBT CORRELATIONS NOT ESTABLISHED."
      "\r\rENSURE THAT THE PROPER BALL TIP IS ATTACHED AND PRESS OK."
      "\r\rIF BALL TIP DIAMETER IS INCORRECT OR CONICAL TIP IS ATTACHED, PRESS CANCEL TO RESTART "
      "AND EDIT THE TIP CONFIGURATION IN SETUP";
  if (MsgBox(caution, BoxButtons::OkCancel) == BoxAnswer::Ok) return;
  StartAgain();
}

}  // namespace

std::string TipNote() {
  const std::string area = PlainNumber(settings.BallTipArea);
  if (settings.TipConfiguration != 1) return "TIP CONFIG: CONICAL, " + area + "mm^2 AREA";
  return "TIP CONFIG: BALL, " + area + "mm DIA, " + area + "mm^2 AREA";
}

void Main_Load() {
  sounding.PortsAtLoad = {settings.ConeSerialPort, settings.TruckInterfaceSerialPort,
                          settings.ASCIIOutSerialPort, settings.VideoOverlaySerialPort};
  sounding.LastClockSecond = static_cast<std::int16_t>(TheClock().Wall().second);
  Main.Timer1.Start();
  ShowViewSettings();
  SetDisplay();
  ShowSeismicHardware();
  ShowEncoderLamps();
  Main.lblDepthUnits.Caption = settings.DepthUnits == 0 ? "(m)" : "(ft)";
  // In calibration mode its screen is shown here once it stands.
  Main.lblBallTip.Caption = TipNote();
  if (settings.TipConfiguration == 1) {
    Main.lblBallTip.Visible = true;
    WarnOfBallTip();
  }
  Show(frmWarning);
  SendBehind(frmWarning);
}

}  // namespace penlog
