// The start request, the stop dialog and the final baseline. The dialog is not modal: the console
// goes on recording behind it.
#pragma once

namespace penlog {

/// Captioned "STOP" it shows the stop dialog; else it requests the start of a sounding, or refuses
/// while the cone is away.
void Main_cmdStart_Click();
/// OK of the dialog: stops the sounding, or goes on after an interrupted test.
void Main_cmdWarningOK1_Click();
/// SUSPEND: the program ends, nothing is closed, the sounding can be resumed. Refused while rows
/// stand in memory alone.
void Main_cmdWarningOK2_Click();
void Main_cmdWarningCancel_Click();
/// TAKE BASELINE of the final baseline: closes the sounding with it. Refused in words while the
/// cone is away or the averages are not full.
void Main_Command2_Click();
/// NO BASELINE: closes the sounding without.
void Main_Command3_Click();
/// Ends the program at once; enabled only before a sounding is started.
void Main_cmdExit_Click();

}  // namespace penlog
