// The connection status beside the console: one panel for each link, green or a warning.
#pragma once

#include "forms/control.h"
#include "forms/form.h"
#include "platform/timer.h"

namespace penlog {

struct WarningForm : Form {
  WarningForm();
  void Released() override;

  Frame frmSerialConnected{*this, "frmSerialConnected", "SERIAL PORT CONNECTION: OK"};
  Label lblSerialConnected{*this, "lblSerialConnected", "SERIAL PORT IS FUNCTIONING PROPERLY"};
  Frame frmEncoderConnected{*this, "frmEncoderConnected", "TRUCK INTERFACE CONNECTION: OK"};
  Label lblEncoderConnected{*this, "lblEncoderConnected",
                            "TRUCK INTERFACE (ENCODER) IS FUNCTIONING PROPERLY"};
  Frame frmASCIISerialConnected{*this, "frmASCIISerialConnected",
                                "ASCII OUT SERIAL PORT CONNECTION: OK"};
  Label lblASCIISerialConnected{*this, "lblASCIISerialConnected",
                                "ASCII OUT SERIAL PORT IS FUNCTIONING PROPERLY"};
  Frame frmFrameGrabberConnected{*this, "frmFrameGrabberConnected", "FRAME GRABBER CONNECTION: OK"};
  Label lblFrameGrabberConnected{*this, "lblFrameGrabberConnected",
                                 "FRAME GRABBER IS FUNCTIONING PROPERLY"};
  Frame frmModulesConnected{*this, "frmModulesConnected", "MODULE CONNECTION(S): OK"};
  Label lblModulesConnected{*this, "lblModulesConnected"};

  Frame frmSerialWarning{*this, "frmSerialWarning", "WARNING: SERIAL PORT DISCONNECTED"};
  Label lblSerialWarning{
      *this, "lblSerialWarning",
      "SERIAL PORT CONNECTION HAS BEEN LOST.  CHECK THE USB AND POWER CONNECTIONS.  THE PROGRAM "
      "WILL AUTOMATICALLY CONTINUE ONCE COMMUNICATION HAS BEEN RE-ESTABLISHED."};
  Frame frmEncoderWarning{*this, "frmEncoderWarning",
                          "WARNING: TRUCK INTERFACE SERIAL PORT DISCONNECTED"};
  Label lblEncoderWarning{
      *this, "lblEncoderWarning",
      "TRUCK INTERFACE CONNECTION HAS BEEN LOST.  DO NOT CONTINUE PUSH!  CHECK USB AND POWER "
      "CONNECTIONS.  THE PROGRAM WILL AUTOMATICALLY CONTINUE ONCE COMMUNICATION HAS BEEN "
      "RE-ESTABLISHED."};
  Frame frmASCIIOutWarning{*this, "frmASCIIOutWarning",
                           "WARNING: ASCII OUT SERIAL PORT DISCONNECTED"};
  Label lblASCIIOutWarning{*this, "lblASCIIOutWarning"};  ///< the frame grabber's sentence
  Frame frmSensorayWarning{*this, "frmSensorayWarning", "WARNING: FRAME GRABBER DISCONNECTED"};
  Label lblSensorayWarning{*this, "lblSensorayWarning"};
  Frame frmModuleWarning{*this, "frmModuleWarning", "WARNING: MODULE DISCONNECTED"};
  Label lblModuleWarning{
      *this, "lblModuleWarning",
      "CHECK CABLE CONNECTION TO DAS. THE PROGRAM WILL AUTOMATICALLY RECONNECT THE MODULE(S) ONCE "
      "COMMUNICATION HAS BEEN RE-ESTABLISHED."};
  /// Of the counting of depth: what may be missing in it.
  Frame frmSteps{*this, "frmSteps"};
  Label lblSteps{*this, "lblSteps"};
  Label lblProgress{*this, "lblProgress"};  ///< of the search for a lost link: port n of how many
  Label Label6{*this, "Label6",
               "IF SERIAL CONNECTION WARNING DOES NOT DISAPPEAR 30 SECONDS AFTER RECONNECTING "
               "RESPECTIVE PORT, CLICK 'RESET COMMS'"};

  MenuEntry mnuUncoupleWarningScreen{*this, "mnuUncoupleWarningScreen",
                                     "Uncouple Status Screen from Main"};
  MenuEntry mnuCoupleWarningScreen{*this, "mnuCoupleWarningScreen", "Couple Status Screen To Main"};
  MenuEntry mnuResetComms{*this, "mnuResetComms", "Reset Comms"};

  Timer Timer1{"frmWarning.Timer1", 1500};  ///< puts the screen behind a modal one
  Timer Timer2{"frmWarning.Timer2", 200};   ///< follows the console's window
};

inline WarningForm frmWarning;

}  // namespace penlog
