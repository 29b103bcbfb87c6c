#include "forms/warning_form.h"

namespace penlog {

namespace {

constexpr char kGrabberLost[] =
    "FRAME GRABBER CONNECTION HAS BEEN LOST.  DO NOT CONTINUE PUSH! CHECK USB AND POWER "
    "CONNECTIONS.  THE PROGRAM WILL AUTOMATICALLY CONTINUE ONCE COMMUNICATION HAS BEEN "
    "RE-ESTABLISHED.";

}  // namespace

WarningForm::WarningForm() : Form("frmWarning", "CONNECTION STATUS") {
  lblASCIIOutWarning.Caption = kGrabberLost;  // these words stand on both panels
  lblSensorayWarning.Caption = kGrabberLost;
  const std::initializer_list<std::pair<Frame*, Label*>> connected = {
      {&frmSerialConnected, &lblSerialConnected},
      {&frmEncoderConnected, &lblEncoderConnected},
      {&frmASCIISerialConnected, &lblASCIISerialConnected},
      {&frmFrameGrabberConnected, &lblFrameGrabberConnected},
      {&frmModulesConnected, &lblModulesConnected}};
  for (const auto& [frame, label] : connected) {
    Hold(*frame, {label});
    frame->BackColor = kGreen;
  }
  const std::initializer_list<std::pair<Frame*, Label*>> warnings = {
      {&frmSerialWarning, &lblSerialWarning},
      {&frmEncoderWarning, &lblEncoderWarning},
      {&frmASCIIOutWarning, &lblASCIIOutWarning},
      {&frmSensorayWarning, &lblSensorayWarning},
      {&frmModuleWarning, &lblModuleWarning}};
  for (const auto& [frame, label] : warnings) {
    Hold(*frame, {label});
    frame->BackColor = kRed;
    frame->Visible = false;
  }
  Hold(frmSteps, {&lblSteps});
  mnuUncoupleWarningScreen.Visible = true;
  mnuCoupleWarningScreen.Visible = false;
  KeepFirstValues();
}

void WarningForm::Released() {
  Timer1.Stop();
  Timer2.Stop();
}

}  // namespace penlog
