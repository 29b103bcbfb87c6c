// The buttons and the timer of the start screen.
#pragma once

namespace penlog {

/// START NEW SOUNDING: proves the serial ports, finds the cone and shows its report page.
void StartUp_cmdStart_Click();
/// CALIBRATION CHECK: the same with the flags of a calibration check, if the calibrator's port is
/// there.
void StartUp_cmdCalibrate_Click();
/// EXIT: ends the program.
void StartUp_cmdExit_Click();
/// Every 55 ms: the running dots, the seconds counter, the tick counter of the cone's link.
void StartUp_Timer1_Timer();

}  // namespace penlog
