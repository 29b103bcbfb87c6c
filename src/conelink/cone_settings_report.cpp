#include "conelink/cone_settings_report.h"

#include <exception>
#include <new>
#include <string>

#include "conelink/cone_settings_text.h"
#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/message.h"
#include "core/resume.h"
#include "core/session.h"
#include "forms/cone_settings_form.h"
#include "forms/main_form.h"
#include "forms/setup_sounding_form.h"
#include "forms/start_up_form.h"
#include "platform/boxes.h"
#include "platform/texts.h"
#include "platform/yield.h"
#include "sounding/resumed_files.h"

namespace penlog {

namespace {

/// The start screen's timer has nothing more to wait for.
void GoToConsole() {
  StartUp.Timer1.Stop();
  Hide(StartUp);
  Show(Main);
  frmConeSettings.RunMainloop();
}

/// Its files are made whole before the console opens. What can't be is told.
bool IsTakenUp() {
  try {
    if (TakeUpSounding()) return true;
    Tell(
        "THE LAST SOUNDING WAS NOT RESUMED.  NOTHING OF IT IS LOST, AND IT CAN BE RESUMED FROM THE "
        "START SCREEN AT ANY TIME.");
  } catch (const std::bad_alloc&) {
    Tell("THE LAST SOUNDING CANNOT BE RESUMED.  THERE IS NOT ENOUGH MEMORY.");
  } catch (const std::exception& fault) {
    Tell(std::string("THE LAST SOUNDING CANNOT BE RESUMED.  ") + fault.what());
  }
  return false;
}

/// The start screen stands below the page; its search for the cone ends as if it was cancelled.
void GoBackToStart() {
  Unload(frmConeSettings);
  StartUp_cmdCancel_Click();
}

}  // namespace

void ConeSettingsOpen() {
  if (!session.ResumeConeId.empty() && Trim(session.ResumeConeId) != Trim(cone.ConeId)) {
    MsgBox("Cone #" + session.ResumeConeId +
           " is required to resume the last sounding.  Please attach it and restart the program.");
    EndProgram();
  }
  frmConeSettings.lblReport.Caption = ConeSettingsReport();
}

void frmConeSettings_cmdClose_Click() {
  if (!session.ResumeConeId.empty() && !IsTakenUp()) return GoBackToStart();
  Unload(frmConeSettings);
  if (session.CalibrationMode == kTrue || !session.ResumeConeId.empty()) {
    GoToConsole();
  } else {
    if (Trim(cone.ConeId).empty()) {
      Tell(
          "THE CONE GIVES NO NUMBER.  A SOUNDING WITH IT CANNOT BE RESUMED: NOTHING COULD TELL "
          "WHETHER IT IS THE SAME CONE.");
    }
    Show(SetupSounding);
  }
}

}  // namespace penlog
