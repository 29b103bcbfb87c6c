// Fills the screens as in the middle of a sounding, for pictures and tests of room.
#pragma once

#include "forms/cone_settings_form.h"
#include "forms/create_new_directory_form.h"
#include "forms/main_form.h"
#include "forms/reset_comms_form.h"
#include "forms/resume_depth_form.h"
#include "forms/setup_display_form.h"
#include "forms/setup_sounding_form.h"
#include "forms/specify_ascii_out_form.h"
#include "forms/specify_truck_interface_form.h"
#include "forms/specify_video_overlay_form.h"
#include "forms/start_up_form.h"
#include "forms/warning_form.h"

namespace penlog {

inline void ShowChannels(int count) {
  const char* labels[] = {"Tip resistance(MPa)", "Sleeve friction(kPa)", "Pore pressure U2(kPa)",
                          "Inclination X(deg)",  "Inclination Y(deg)",   "Temperature(deg C)",
                          "Geophone X(mV)",      "Geophone Y(mV)"};
  const char* values[] = {"12.345", "104.2", "-23.7", "0.42", "-0.31", "11.8", "0.02", "-0.01"};
  for (int ch = 1; ch <= count; ++ch) {
    Main.lblChanLabel(ch).Visible = true;
    Main.lblChanLabel(ch).Caption = labels[(ch - 1) % 8];
    Main.lblChanValue(ch).Visible = true;
    Main.lblChanValue(ch).Caption = values[(ch - 1) % 8];
  }
}

inline void FillMain() {
  ShowChannels(8);
  Main.lblBigDepth.Caption = "12.34m";
  Main.lblBigDepth.Visible = true;
  Main.Shape1.Visible = true;
  Main.cmdTakeBaseline.Visible = false;
  Main.lblDepth.Caption = "12.340 m";
  Main.lblSpeedValue.Caption = "2.01 cm/s";
  Main.lblInclination.Caption = "  0.5 deg";
  Main.lblCommStatus.Caption = "Cone # DCS0123 Found";
  Main.lblBallTip.Caption = "TIP CONFIG: CONICAL, 1000mm^2 AREA";
  Main.lblBallTip.Visible = true;
  Main.cmdStart.Caption = "STOP";
  Main.cmdStart.Enabled = true;
  Main.cmdExit.Enabled = false;
  Main.cmdResetQuits.Visible = true;
  Main.shpPressure.Visible = false;
  Main.Label10.Visible = false;
  for (Control* control :
       std::initializer_list<Control*>{&Main.shpUp, &Main.lblUp, &Main.shpDown, &Main.lblDown}) {
    control->Visible = true;
  }
  Main.shpUp.Fill = Main.shpDown.Fill = FillStyle::Solid;
  Main.shpUp.FillColor = kRed;
  Main.shpDown.FillColor = kGreen;
  Main.shpClamp.Fill = FillStyle::Solid;
  Main.shpDepth.Fill = FillStyle::Solid;
  Main.shpDepth.FillColor = kGreen;
}

inline void RaiseNotices() {
  Main.frmQuitWarning.Visible = true;
  Main.lblOverride.Visible = true;
  Main.lblQuitFor1.Caption = "Tip resistanceSleeve friction";
  Main.lblQuitFor2.Caption = "Inclination,";
  Main.lblChanValue(1).ForeColor = kRed;
  Main.frmLocalWarning.Visible = true;
  Main.lblWarning.Caption =
      "Press OK to stop the test (cannot resume later).  Press SUSPEND to suspend the test (can "
      "resume later).  Press CANCEL to continue with current sounding.";
  Main.lblCommError.Caption =
      "Cone communication lost.  Check connection before continuing.  If this warning stays "
      "visible for more than 5 seconds, disconnect and reconnect the cone.";
}

inline void FillStartUp() {
  StartUp.frLoad.Visible = true;
  StartUp.lblLoad.Caption = "CHECKING TRUCK INTERFACE CONNECTION";
  StartUp.lblStatusIndicator.Caption = ".........";
  StartUp.lblLastSoundingCone.Caption = "DCS0123";
  StartUp.lblLastSoundingDepth.Caption = "12.34 m";
  StartUp.frmResume.Visible = true;
  StartUp.cmdSystemSetup.Visible = true;
  frmResumeDepthStatus.lblTargetResumeDepth.Caption = "-1012.34";
  frmResumeDepthStatus.lblCurrentResumeDepth.Caption = "-1008.86";
  frmResumeDepthStatus.lblDifferenceCaption.Caption = "STILL TO GO (STEPS MISSING?):";
  frmResumeDepthStatus.lblDifference.Caption = "1003.48 ft";
}

inline void FillSetups() {
  SetupSounding.Drive1.List = {"/"};
  SetupSounding.Drive1.ListIndex = 0;
  SetupSounding.Dir1.Text = "/srv/soundings";
  SetupSounding.Dir1.List = {"..", "2025", "2026", "2027"};
  SetupSounding.File1.List = {"CPT TEST(001).cpt", "CPT TEST(002).cpt", "HARBOUR 12.cpt"};
  SetupSounding.txtFileName.Text = "CPT TEST(003)";
  SetupSounding.lblFileName.Caption = "/srv/soundings/CPT TEST(003)";
  SetupSounding.txtOperator.Text = "J. Field";
  SetupSounding.txtLocation.Text = "Harbour basin 4";
  for (int ch = 1; ch <= 12; ++ch) {
    auto& record = SetupDisplay.chkRecordChan(ch);
    auto& graph = SetupDisplay.chkGraphChan(ch);
    record.Caption = graph.Caption = ch % 2 ? "Tip resistance" : "Sleeve friction";
    record.Visible = graph.Visible = true;
    record.Checked = ch < 6;
    graph.Checked = ch < 3;
    graph.Enabled = ch > 1;
  }
  SetupDisplay.lblGraph1Selection.Caption = "Tip resistance";
  SetupDisplay.lblGraph2Selection.Caption = "Sleeve friction";
  frmConeSettings.lblReport.Caption =
      "Cone #: DCS0123  Creation Date: 010118\nFirmware Version: 3.2  Last Calibration Date: "
      "120525\nMemory Size: 2048  Distance Pushed Since Last Calibration: 1234\nClock Frequency: "
      "16000\n\nChannels Available\nTip resistance  100000 kPa  0.005 m from tip  1000 mm^2 Area  "
      "No Subtraction\nSleeve friction  1000 kPa  0.105 m from tip  15000 mm^2 Area   Sub Channel "
      " 1\nPore pressure U2  3500 kPa  0.045 m from tip  0 mm^2 Area  No Subtraction";
  frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort.List = {"3", "7", "12"};
  frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort.Beside = {"/dev/ttyUSB0", "/dev/ttyUSB1",
                                                                 "rfc2217://192.168.0.20:4000"};
  frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort.ListIndex = 1;
  for (ComboBox* box : {&frmSpecifyASCIIOut.cmbASCIIOutSerialPort,
                        &frmSpecifyVideoOverlay.cmbVideoOverlaySerialPort,
                        &frmResetComms.cmbTruckInterfaceSerialPort}) {
    box->List = frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort.List;
    box->Beside = frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort.Beside;
    box->ListIndex = 2;
  }
  frmSpecifyTruckInterface.lblConeSerialPort.Caption = "4";
  frmSpecifyTruckInterface.lblASCIIOutSerialPort.Caption = "0";
  frmSpecifyTruckInterface.lblVideoOverlaySerialPort.Caption = "0";
  frmCreateNewDirectory.lblDrive.Caption = "/";
  frmCreateNewDirectory.lblDirectory.Caption = "/srv/soundings";
}

}  // namespace penlog
