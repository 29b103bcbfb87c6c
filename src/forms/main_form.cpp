#include "forms/main_form.h"

#include "forms/notice_colours.h"

namespace penlog {

namespace {

/// A figure that must be read from across the truck: white on black.
void AsReadout(Label& label) {
  label.ForeColor = kWhite;
  label.BackColor = kBlack;
}

}  // namespace

MainForm::MainForm() : Form("Main", "PENLOG") {
  shpBubble.Container = &shpLevel;
  shpBubble.Where = {true, 0.4, 0.4, 0.2, 0.2};
  Hold(frmQuitWarning, {&lblQuitWarning, &lblQuitStop, &lblQuitForCaption, &lblQuitFor1,
                        &lblQuitFor2, &lblOverride});
  Hold(frmLocalWarning, {&lblWarning, &cmdWarningOK1, &cmdWarningOK2, &cmdWarningCancel});
  Hold(frmTakeFinalBaseline, {&lblTakeFinalBaseline, &Command2, &Command3});
  HoldCharts();
  ColourValues();

  for (Button* button : {&cmdWarningOK1, &cmdWarningOK2, &cmdWarningCancel, &cmdResetQuits}) {
    button->AlwaysUsable = true;
  }
  for (MenuEntry* entry : {&mnuDay, &mnuNight, &mnuAlarmTone}) entry->AlwaysUsable = true;
  for (Control* control : std::initializer_list<Control*>{&lblStepsSign,
                                                          &lblRowsHeldCaption,
                                                          &lblRowsHeld,
                                                          &lblStopKey,
                                                          &Shape1,
                                                          &lblBigDepth,
                                                          &shpUp,
                                                          &shpDown,
                                                          &lblUp,
                                                          &lblDown,
                                                          &lblBallTip,
                                                          &lblNoSeismicHardwareFound,
                                                          &frmGraphArea,
                                                          &cmdDissipation,
                                                          &cmdActivateSeismic,
                                                          &cmdChangeSeismicOptions,
                                                          &frmQuitWarning,
                                                          &lblOverride,
                                                          &cmdResetQuits,
                                                          &frmLocalWarning,
                                                          &frmTakeFinalBaseline}) {
    control->Visible = false;
  }
  for (Button* button : {&cmdStart, &cmdAuto, &cmdToggleClamp, &cmdDissipation, &cmdActivateSeismic,
                         &cmdChangeSeismicOptions}) {
    button->Enabled = false;
  }
  for (int channel = 1; channel <= 30; ++channel) {
    lblChanLabel(channel).Visible = false;
    lblChanValue(channel).Visible = false;
  }
  ClosingEnds = true;
  KeepFirstValues();
}

void MainForm::HoldCharts() {
  Hold(frmGraphArea, {&lblGraphYmin, &lblGraphYmax});
  for (int g = 1; g <= 4; ++g) {
    Hold(frmGraphArea, {&lblGraphTitle(g), &lblGraphValue(g), &lblGraphUnits(g), &lblGraphxMin(g),
                        &lblGraphxMax(g), &pctGraph(g), &shpBar(g), &lineBar(g), &frmKey(g)});
    Hold(frmKey(g), {&lblKeya(g), &lblKeyb(g), &lblKeyc(g)});
    for (Control* control : std::initializer_list<Control*>{
             &lblGraphTitle(g), &lblGraphValue(g), &lblGraphUnits(g), &lblGraphxMin(g),
             &lblGraphxMax(g), &pctGraph(g), &shpBar(g), &lineBar(g), &frmKey(g)}) {
      control->Visible = false;
    }
  }
}

void MainForm::ColourValues() {
  for (int channel = 1; channel <= 30; ++channel) AsReadout(lblChanValue(channel));
  for (int g = 1; g <= 4; ++g) AsReadout(lblGraphValue(g));
  for (Label* label : {&lblBigDepth, &lblDepth, &lblRebound, &lblSpeedValue, &lblInclination,
                       &lblDissipationValue, &lblNumberOfPictures}) {
    AsReadout(*label);
  }
  lblRowsHeld.BackColor = lblStepsSign.BackColor = kAmber;
  for (Label* label : {&lblQuitWarning, &lblQuitStop, &lblQuitFor1, &lblQuitFor2, &lblCommError}) {
    label->ForeColor = kRed;
  }
  frmQuitWarning.BackColor = kRed;
}

void MainForm::Released() {
  Timer1.Stop();
  for (SerialPort* port :
       {&ConeComm, &EncoderComm, &ASCIIOutComm, &VideoOverlayComm, &CalibratorComm}) {
    port->Close();
  }
  CommTick = 0;
}

}  // namespace penlog
