#include "core/start_up_buttons.h"

#include <initializer_list>

#include "core/progress.h"
#include "forms/start_up_form.h"

namespace penlog {

namespace {

void SetEveryButton(bool enabled) {
  for (Button* button : {&StartUp.cmdStart, &StartUp.cmdResume, &StartUp.cmdSystemSetup,
                         &StartUp.cmdCalibrate, &StartUp.cmdExit}) {
    button->Enabled = enabled;
  }
}

}  // namespace

void BeginStatus(const std::string& status) {
  DisableEveryButton();
  StartUp.lblLoad.Caption = status;
  StartUp.lblStatusIndicator.Caption.clear();
  StartUp.frLoad.Visible = true;
  StartUp.Timer1.Start();
}

void EndStatus() {
  StartUp.Timer1.Stop();
  StartUp.frLoad.Visible = false;
  EndProgress();
}

void DisableEveryButton() {
  SetEveryButton(false);
}

void EnableEveryButton() {
  SetEveryButton(true);
}

void OfferSetupOrExit() {
  EndStatus();
  StartUp.cmdSystemSetup.Enabled = true;
  StartUp.cmdExit.Enabled = true;
  StartUp.cmdStart.Enabled = true;
  StartUp.cmdResume.Enabled = true;
}

void OfferAnotherTry() {
  EndStatus();
  StartUp.cmdExit.Enabled = true;
  StartUp.cmdStart.Enabled = true;
  StartUp.cmdResume.Enabled = true;
  StartUp.cmdCalibrate.Enabled = true;
}

}  // namespace penlog
