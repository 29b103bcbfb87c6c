// The console: depth, channel values, lamps, quits, the stop dialog, the strip charts.
#pragma once

#include <cstdint>

#include "forms/control.h"
#include "forms/form.h"
#include "platform/serial_port.h"
#include "platform/timer.h"

namespace penlog {

struct MainForm : Form {
  MainForm();
  void Released() override;

  // Depth, rebound, speed.
  Shape Shape1{*this, "Shape1"};  ///< the ground behind the large depth
  Label Label72{*this, "Label72", "DEPTH"};
  Label lblBigDepth{*this, "lblBigDepth", "0.00m"};
  Label Label7{*this, "Label7", "DEPTH"};
  Label lblDepth{*this, "lblDepth", "0.000 m"};
  Label lblDepthUnits{*this, "lblDepthUnits", "(m)"};
  Label lblStepsSign{*this, "lblStepsSign", "STEPS MISSING?"};  ///< the depth is in doubt
  Label lblReboundCaption{*this, "lblReboundCaption", "REBOUND"};
  Label lblRebound{*this, "lblRebound", "0.000 m"};
  Label lblSpeedCaption{*this, "lblSpeedCaption", "SPEED"};
  Label lblSpeedValue{*this, "lblSpeedValue", "0.00 cm/s"};

  // Truck interface.
  Label Label10{*this, "Label10", "PRESSURE"};
  Shape shpPressure{*this, "shpPressure"};
  Label Label11{*this, "Label11", "DEPTH "};
  Shape shpDepth{*this, "shpDepth"};
  Label lblClamp{*this, "lblClamp", "CLAMP"};
  Shape shpClamp{*this, "shpClamp"};
  Label lblOverrideCaption{*this, "lblOverrideCaption", "OVERRIDE"};
  Shape shpOverride{*this, "shpOverride"};
  Label lblUp{*this, "lblUp", "UP"};
  Shape shpUp{*this, "shpUp"};
  Label lblDown{*this, "lblDown", "DOWN"};
  Shape shpDown{*this, "shpDown"};
  Label lblModeCaption{*this, "lblModeCaption", "MODE:"};
  Label lblAutoOrManual{*this, "lblAutoOrManual", "Auto"};
  Button cmdAuto{*this, "cmdAuto", "AUTO"};
  Button cmdManual{*this, "cmdManual", "MANUAL"};
  Button cmdToggleClamp{*this, "cmdToggleClamp", "TOGGLE CLAMP"};

  // Link and state.
  Label lblCommStatusCaption{*this, "lblCommStatusCaption", "COMM STATUS"};
  Label lblCommStatus{*this, "lblCommStatus", "No Cone Present"};
  Label lblCommError{*this, "lblCommError"};
  Label lblBallTip{*this, "lblBallTip"};
  Label lblInclinationCaption{*this, "lblInclinationCaption", "INCLINATION"};
  Label lblInclination{*this, "lblInclination"};
  Shape shpLevel{*this, "shpLevel"};
  Shape shpBubble{*this, "shpBubble"};  ///< placed in fractions of shpLevel
  Label lblDissipationCaption{*this, "lblDissipationCaption", "DISSIPATION:"};
  Label lblDissipationValue{*this, "lblDissipationValue", "Inactive"};
  Label lblNumberOfPicturesCaption{*this, "lblNumberOfPicturesCaption", "Number Of Pictures"};
  Label lblNumberOfPictures{*this, "lblNumberOfPictures", "0"};
  Label lblNoSeismicHardwareFound{*this, "lblNoSeismicHardwareFound", "NO SEISMIC HARDWARE FOUND"};

  // The strip that is always in sight, and the progress of long work.
  Label lblState{*this, "lblState", "WAITING"};
  Label lblRowsOnDiskCaption{*this, "lblRowsOnDiskCaption", "ROWS ON DISK"};
  Label lblRowsOnDisk{*this, "lblRowsOnDisk", "0"};
  Label lblRowsHeldCaption{*this, "lblRowsHeldCaption", "IN MEMORY"};
  Label lblRowsHeld{*this, "lblRowsHeld"};  ///< rows that the disk has not taken yet
  Label lblLastRowCaption{*this, "lblLastRowCaption", "LAST ROW"};
  Label lblLastRow{*this, "lblLastRow", "-"};  ///< time since then
  Label lblSoundingFileCaption{*this, "lblSoundingFileCaption", "FILE"};
  Label lblSoundingFile{*this, "lblSoundingFile", "-"};
  Label lblStopKey{*this, "lblStopKey", "F12 = STOP"};
  Label lblProgress{*this, "lblProgress"};

  MenuEntry mnuDay{*this, "mnuDay", "DAY COLOURS"};
  MenuEntry mnuNight{*this, "mnuNight", "NIGHT COLOURS"};
  MenuEntry mnuAlarmTone{*this, "mnuAlarmTone", "TONE AT A NEW ALARM"};

  // Channel values, 1 to 30.
  ControlArray<Label> lblChanLabel{*this, "lblChanLabel", 1, 30};
  ControlArray<Label> lblChanValue{*this, "lblChanValue", 1, 30};

  // Strip charts, 1 to 4.
  Frame frmGraphArea{*this, "frmGraphArea"};
  ControlArray<Label> lblGraphTitle{*this, "lblGraphTitle", 1, 4};
  ControlArray<Label> lblGraphValue{*this, "lblGraphValue", 1, 4};
  ControlArray<Label> lblGraphUnits{*this, "lblGraphUnits", 1, 4};
  ControlArray<Label> lblGraphxMin{*this, "lblGraphxMin", 1, 4};
  ControlArray<Label> lblGraphxMax{*this, "lblGraphxMax", 1, 4};
  Label lblGraphYmin{*this, "lblGraphYmin", "0"};
  Label lblGraphYmax{*this, "lblGraphYmax", "1"};
  ControlArray<Picture> pctGraph{*this, "pctGraph", 1, 4};
  ControlArray<Shape> shpBar{*this, "shpBar", 1, 4};
  ControlArray<Shape> lineBar{*this, "lineBar", 1, 4};
  ControlArray<Frame> frmKey{*this, "frmKey", 1, 4};
  ControlArray<Label> lblKeya{*this, "lblKeya", 1, 4};
  ControlArray<Label> lblKeyb{*this, "lblKeyb", 1, 4};
  ControlArray<Label> lblKeyc{*this, "lblKeyc", 1, 4};

  // The course of a sounding.
  Button cmdTakeBaseline{*this, "cmdTakeBaseline", "TAKE BASELINE"};
  Button cmdStart{*this, "cmdStart", "START"};
  Button cmdExit{*this, "cmdExit", "EXIT"};
  Button cmdResetPorts{*this, "cmdResetPorts", "RESET PORTS"};
  Button cmdDissipation{*this, "cmdDissipation", "DISSIPATION"};
  Button cmdActivateSeismic{*this, "cmdActivateSeismic", "ACTIVATE SEISMIC"};
  Button cmdChangeSeismicOptions{*this, "cmdChangeSeismicOptions", "SEISMIC OPTIONS"};

  // Quits. The hold-to-override button stands beside the frame, so that the frame's coming and
  // going does not take it from under the operator's finger.
  Frame frmQuitWarning{*this, "frmQuitWarning"};
  Label lblQuitWarning{*this, "lblQuitWarning", "WARNING!!"};
  Label lblQuitStop{*this, "lblQuitStop",
                    "STOP!! QUITS ACTIVATED.  RECTIFY OR USE OVERRIDE TO CONTINUE"};
  Label lblQuitForCaption{*this, "lblQuitForCaption", "QUIT FOR"};
  Label lblQuitFor1{*this, "lblQuitFor1"};
  Label lblQuitFor2{*this, "lblQuitFor2"};
  Label lblOverride{*this, "lblOverride", "OVERRIDDEN"};
  Button cmdResetQuits{*this, "cmdResetQuits", "RESET QUITS / OVERRIDE"};

  // The stop dialog; recording goes on behind it.
  Frame frmLocalWarning{*this, "frmLocalWarning"};
  Label lblWarning{*this, "lblWarning"};
  Button cmdWarningOK1{*this, "cmdWarningOK1", "OK"};
  Button cmdWarningOK2{*this, "cmdWarningOK2", "SUSPEND"};
  Button cmdWarningCancel{*this, "cmdWarningCancel", "CANCEL"};

  Frame frmTakeFinalBaseline{*this, "frmTakeFinalBaseline", "TAKE FINAL BASELINE?"};
  Label lblTakeFinalBaseline{
      *this, "lblTakeFinalBaseline",
      "Sounding is ended.  Remove cone from ground and press TAKE BASELINE to record final "
      "baselines or press NO BASELINE to end without taking final baselines."};
  Button Command2{*this, "Command2", "TAKE BASELINE"};
  Button Command3{*this, "Command3", "NO BASELINE"};

  SerialPort ConeComm{"Main.ConeComm"};
  SerialPort EncoderComm{"Main.EncoderComm"};
  SerialPort ASCIIOutComm{"Main.ASCIIOutComm"};
  SerialPort VideoOverlayComm{"Main.VideoOverlayComm"};
  SerialPort CalibratorComm{"Main.CalibratorComm"};
  Timer Timer1{"Main.Timer1", 55};
  std::int16_t CommTick = 0;  ///< ticks of Timer1 behind the pauses of the cone link

 private:
  void HoldCharts();
  void ColourValues();
};

inline MainForm Main;

}  // namespace penlog
