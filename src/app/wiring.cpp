#include "app/wiring.h"

#include "conelink/cone_settings_report.h"
#include "core/resume.h"
#include "core/start_up.h"
#include "core/start_up_load.h"
#include "display/enlarged_graph.h"
#include "display/setup_display.h"
#include "display/view_settings.h"
#include "forms/cone_settings_form.h"
#include "forms/create_new_directory_form.h"
#include "forms/enlarged_graph_form.h"
#include "forms/main_form.h"
#include "forms/reset_comms_form.h"
#include "forms/restart_form.h"
#include "forms/resume_depth_form.h"
#include "forms/setup_display_form.h"
#include "forms/setup_sounding_form.h"
#include "forms/specify_ascii_out_form.h"
#include "forms/specify_truck_interface_form.h"
#include "forms/specify_video_overlay_form.h"
#include "forms/start_up_form.h"
#include "forms/warning_form.h"
#include "platform/yield.h"
#include "screens/accept_sounding.h"
#include "screens/connection_status.h"
#include "screens/create_directory.h"
#include "screens/reset_comms.h"
#include "screens/setup_sounding.h"
#include "screens/specify_ports.h"
#include "sounding/auto_manual.h"
#include "sounding/main_load.h"
#include "sounding/main_loop.h"
#include "sounding/quits.h"
#include "sounding/resume_depth.h"
#include "sounding/sounding_end.h"
#include "sounding/sounding_start.h"
#include "sounding/stop_dialog.h"
#include "sounding/truck_interface.h"

namespace penlog {

namespace {

void WireStartUp() {
  StartUp.Load = StartUp_Load;
  StartUp.cmdStart.Click = StartUp_cmdStart_Click;
  StartUp.cmdResume.Click = StartUp_cmdResume_Click;
  StartUp.cmdResumeAtLastDepth.Click = StartUp_cmdResumeAtLastDepth_Click;
  StartUp.cmdResumeAtSurface.Click = StartUp_cmdResumeAtSurface_Click;
  StartUp.cmdCancel.Click = StartUp_cmdCancel_Click;
  StartUp.cmdCalibrate.Click = StartUp_cmdCalibrate_Click;
  StartUp.cmdExit.Click = StartUp_cmdExit_Click;
  StartUp.mnuDay.Click = Main_mnuDay_Click;
  StartUp.mnuNight.Click = Main_mnuNight_Click;
  StartUp.mnuAlarmTone.Click = Main_mnuAlarmTone_Click;
  StartUp.Timer1.OnTick = StartUp_Timer1_Timer;
  StartUp.QueryUnload = EndProgram;
}

void WireConeSettings() {
  frmConeSettings.Load = ConeSettingsOpen;
  frmConeSettings.cmdClose.Click = frmConeSettings_cmdClose_Click;
  frmConeSettings.RunMainloop = Mainloop;
  frmConeSettings.QueryUnload = frmConeSettings_cmdClose_Click;
}

void WireSetupSounding() {
  SetupSounding.Load = SetupSounding_Load;
  SetupSounding.Drive1.Click = SetupSounding_Drive1_Click;
  SetupSounding.Dir1.Click = SetupSounding_Dir1_Click;
  SetupSounding.Dir1.Change = SetupSounding_Dir1_Change;
  SetupSounding.File1.Click = SetupSounding_File1_Click;
  SetupSounding.txtFileName.Change = SetupSounding_txtFileName_Change;
  SetupSounding.txtJobNumber.Change = SetupSounding_txtJobOrHole_Change;
  SetupSounding.txtHoleNumber.Change = SetupSounding_txtJobOrHole_Change;
  SetupSounding.cmbFileNaming.Click = SetupSounding_cmbFileNaming_Click;
  SetupSounding.Command1.Click = SetupSounding_Command1_Click;
  SetupSounding.Command2.Click = SetupSounding_Command2_Click;
  SetupSounding.QueryUnload = EndProgram;
  frmCreateNewDirectory.Load = frmCreateNewDirectory_Load;
  frmCreateNewDirectory.Command1.Click = frmCreateNewDirectory_Command1_Click;
  frmCreateNewDirectory.Command2.Click = frmCreateNewDirectory_Command2_Click;
  frmCreateNewDirectory.QueryUnload = frmCreateNewDirectory_Command2_Click;
}

void WireSetupDisplay() {
  SetupDisplay.Load = SetupDisplay_Load;
  for (int channel = 1; channel <= 30; ++channel) {
    SetupDisplay.chkRecordChan(channel).Click = [channel] {
      SetupDisplay_chkRecordChan_Click(channel);
    };
    SetupDisplay.chkGraphChan(channel).Click = [channel] {
      SetupDisplay_chkGraphChan_Click(channel);
    };
  }
  SetupDisplay.cmdClearSelection.Click = SetupDisplay_cmdClearSelection_Click;
  SetupDisplay.cmdPrevious.Click = SetupDisplay_cmdPrevious_Click;
  SetupDisplay.cmdDone.Click = SetupDisplay_cmdDone_Click;
  SetupDisplay.cmdU1PPFilter.Click = SetupDisplay_cmdU1PPFilter_Click;
  SetupDisplay.cmdU2PPFilter.Click = SetupDisplay_cmdU2PPFilter_Click;
  SetupDisplay.cmdDoNotRecordPP.Click = SetupDisplay_cmdDoNotRecordPP_Click;
  SetupDisplay.QueryUnload = EndProgram;
}

void WireMain() {
  Main.Load = Main_Load;
  Main.Timer1.OnTick = Main_Timer1_Timer;
  Main.EncoderComm.OnComm = Main_EncoderComm_OnComm;
  Main.ConeComm.OnComm = Main_ConeComm_OnComm;
  Main.mnuDay.Click = Main_mnuDay_Click;
  Main.mnuNight.Click = Main_mnuNight_Click;
  Main.mnuAlarmTone.Click = Main_mnuAlarmTone_Click;
  Main.cmdTakeBaseline.Click = Main_cmdTakeBaseline_Click;
  Main.cmdStart.Click = Main_cmdStart_Click;
  Main.cmdExit.Click = Main_cmdExit_Click;
  Main.cmdAuto.Click = Main_cmdAuto_Click;
  Main.cmdManual.Click = Main_cmdManual_Click;
  Main.cmdToggleClamp.Click = Main_cmdToggleClamp_Click;
  Main.cmdResetQuits.Press = Main_cmdResetQuits_Press;
  Main.cmdResetQuits.Release = Main_cmdResetQuits_Release;
  Main.cmdWarningOK1.Click = Main_cmdWarningOK1_Click;
  Main.cmdWarningOK2.Click = Main_cmdWarningOK2_Click;
  Main.cmdWarningCancel.Click = Main_cmdWarningCancel_Click;
  Main.Command2.Click = Main_Command2_Click;
  Main.Command3.Click = Main_Command3_Click;
  Main.cmdResetPorts.Click = OpenResetComms;
  // A window closed during a sounding leaves it resumable: nothing is marked as done.
  Main.QueryUnload = Main_QueryUnload;
}

void WireGraphs() {
  for (int g = 1; g <= 4; ++g) Main.pctGraph(g).Click = [g] { Main_pctGraph_Click(g); };
  EnlargedGraph.pctGraph.Click = EnlargedGraph_pctGraph_Click;
  EnlargedGraph.cmdOK.Click = EnlargedGraph_cmdOK_Click;
  EnlargedGraph.cmdResetScale.Click = EnlargedGraph_cmdResetScale_Click;
  EnlargedGraph.Command1.Click = EnlargedGraph_Command1_Click;
  EnlargedGraph.QueryUnload = EnlargedGraph_Command1_Click;
}

void WireResetComms() {
  auto& form = frmResetComms;
  form.Load = frmResetComms_Load;
  form.cmbTruckInterfaceSerialPort.Click = frmResetComms_cmbTruckInterfaceSerialPort_Click;
  form.cmbASCIIOutSerialPort.Click = frmResetComms_cmbASCIIOutSerialPort_Click;
  form.cmbVideoOverlaySerialPort.Click = frmResetComms_cmbVideoOverlaySerialPort_Click;
  form.cmdOK.Click = frmResetComms_cmdOK_Click;
  form.cmdCancel.Click = frmResetComms_cmdCancel_Click;
  form.QueryUnload = frmResetComms_cmdCancel_Click;
}

/// Each chooses a port, and proves it.
void WireSpecifyScreens() {
  auto& truck = frmSpecifyTruckInterface;
  truck.cmbTruckInterfaceSerialPort.Click =
      frmSpecifyTruckInterface_cmbTruckInterfaceSerialPort_Click;
  truck.EncoderComm.OnComm = frmSpecifyTruckInterface_EncoderComm_OnComm;
  truck.cmdSavePort.Click = frmSpecifyTruckInterface_cmdSavePort_Click;
  truck.cmdCancel.Click = frmSpecifyTruckInterface_cmdCancel_Click;
  truck.QueryUnload = frmSpecifyTruckInterface_cmdCancel_Click;
  auto& ascii = frmSpecifyASCIIOut;
  ascii.cmbASCIIOutSerialPort.Click = frmSpecifyASCIIOut_cmbASCIIOutSerialPort_Click;
  ascii.cmdTestPort.Click = frmSpecifyASCIIOut_cmdTestPort_Click;
  ascii.cmdSavePort.Click = frmSpecifyASCIIOut_cmdSavePort_Click;
  ascii.cmdCancel.Click = frmSpecifyASCIIOut_cmdCancel_Click;
  ascii.QueryUnload = frmSpecifyASCIIOut_cmdCancel_Click;
  auto& overlay = frmSpecifyVideoOverlay;
  overlay.cmbVideoOverlaySerialPort.Click = frmSpecifyVideoOverlay_cmbVideoOverlaySerialPort_Click;
  overlay.cmdTestPort.Click = frmSpecifyVideoOverlay_cmdTestPort_Click;
  overlay.cmdSavePort.Click = frmSpecifyVideoOverlay_cmdSavePort_Click;
  overlay.cmdCancel.Click = frmSpecifyVideoOverlay_cmdCancel_Click;
  overlay.QueryUnload = frmSpecifyVideoOverlay_cmdCancel_Click;
}

void WireSmallScreens() {
  frmWarning.Load = frmWarning_Load;
  frmWarning.Timer1.OnTick = frmWarning_Timer1_Timer;
  frmWarning.Timer2.OnTick = frmWarning_Timer2_Timer;
  frmWarning.mnuUncoupleWarningScreen.Click = frmWarning_mnuUncoupleWarningScreen_Click;
  frmWarning.mnuCoupleWarningScreen.Click = frmWarning_mnuCoupleWarningScreen_Click;
  frmWarning.mnuResetComms.Click = OpenResetComms;
  frmResumeDepthStatus.lblDepthReached.Click = frmResumeDepthStatus_lblDepthReached_Click;
  frmZOLRestart.cmdYes.Click = frmZOLRestart_cmdYes_Click;
  frmZOLRestart.cmdNo.Click = frmZOLRestart_cmdNo_Click;
  frmZOLRestart.QueryUnload = frmZOLRestart_cmdNo_Click;
}

}  // namespace

void WireScreens() {
  WireStartUp();
  WireConeSettings();
  WireSetupSounding();
  WireSetupDisplay();
  WireMain();
  WireGraphs();
  WireSmallScreens();
  WireResetComms();
  WireSpecifyScreens();
}

}  // namespace penlog
