#include "forms/start_up_form.h"

namespace penlog {

StartUpForm::StartUpForm() : Form("StartUp", "PENLOG") {
  Hold(frLoad, {&lblLoad, &lblStatusIndicator, &lblProgress, &shpProgressGround});
  shpProgress.Container = &shpProgressGround;
  shpProgress.Where = {true, 0, 0, 0, 1};
  shpProgress.FillColor = kBlue;
  shpProgressGround.Visible = false;
  Hold(frmResume, {&lblLastSoundingConeCaption, &lblLastSoundingCone, &lblLastSoundingDepthCaption,
                   &lblLastSoundingDepth, &lblDistanceDrilledCaption, &txtDistanceDrilled,
                   &cmdResumeAtLastDepth, &cmdResumeAtSurface, &cmdCancel});
  lblTitle.Bold = true;
  for (MenuEntry* entry : {&mnuDay, &mnuNight, &mnuAlarmTone}) entry->AlwaysUsable = true;
  for (Control* control : std::initializer_list<Control*>{&cmdSystemSetup, &frLoad, &frmResume}) {
    control->Visible = false;
  }
  ClosingEnds = true;
  KeepFirstValues();
}

void StartUpForm::Released() {
  Timer1.Stop();
  ConeComm.Close();
  CommTick = 0;
}

}  // namespace penlog
