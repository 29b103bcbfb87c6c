#include "bench/sounding_script.h"

namespace penlog {

std::string ScriptToRecording(const std::string& folder) {
  const std::string choose =
      folder.empty() ? std::string() : "select SetupSounding.Dir1 \"" + folder + "\"\n";
  return R"(screen StartUp
click StartUp.cmdStart
answer yes "CONE SERIAL PORT NOT DETECTED. WOULD YOU LIKE TO SEARCH FOR THE PORT?"
answer ok "CONE DETECTED ON PORT 3"
answer ok "PRESS OK TO VERIFY TRUCK INTERFACE PORT"
screen frmSpecifyTruckInterface
select frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort 4
click frmSpecifyTruckInterface.cmdSavePort
answer ok "TRUCK INTERFACE SERIAL PORT SET TO PORT 4"
screen frmConeSettings 60
click frmConeSettings.cmdClose
answer ok "Last sounding parameters file missing. Default values loaded"
screen SetupSounding
)" + choose +
         R"(click SetupSounding.Command1
screen frmCreateNewDirectory
type frmCreateNewDirectory.txtNewDirectoryName soundings
click frmCreateNewDirectory.Command1
answer ok "SUCCESSFULLY CREATED soundings"
type SetupSounding.txtFileName B
click SetupSounding.Command2
screen SetupDisplay
check SetupDisplay.chkGraphChan_2
check SetupDisplay.chkGraphChan_3
check SetupDisplay.chkGraphChan_20
click SetupDisplay.cmdDone
screen Main
expect Main.lblCommStatus "~Found$"
wait 3
click Main.cmdTakeBaseline
expect Main.cmdStart enabled
click Main.cmdStart
expect Main.cmdStart "STOP"
)";
}

std::string ScriptToEnd() {
  return R"(click Main.cmdStart
expect Main.frmLocalWarning visible
click Main.cmdWarningOK1
expect Main.frmTakeFinalBaseline visible
click Main.Command3
screen frmZOLRestart
click frmZOLRestart.cmdNo
)";
}

}  // namespace penlog
