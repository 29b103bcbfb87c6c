// The report page on what the cone and its modules say of themselves.
#pragma once

namespace penlog {

/// The page opens: prints the report. The wrong cone for a resume is told and ends the program.
void ConeSettingsOpen();

/// Leaves the page: to the sounding's setup; in a calibration check or a resume to the console and
/// its loop, from which nothing returns.
void frmConeSettings_cmdClose_Click();

}  // namespace penlog
