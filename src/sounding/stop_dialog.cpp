#include "sounding/stop_dialog.h"

#include "conelink/cone_state.h"
#include "conelink/other_cone.h"
#include "conelink/resync_state.h"
#include "core/channels.h"
#include "core/message.h"
#include "core/session.h"
#include "display/enlarged_graph.h"
#include "forms/enlarged_graph_form.h"
#include "forms/main_form.h"
#include "platform/boxes.h"
#include "platform/yield.h"
#include "sounding/distance_pushed.h"
#include "sounding/resume_depth.h"
#include "sounding/sounding_end.h"
#include "sounding/sounding_state.h"
#include "sounding/time_of_day.h"

namespace penlog {

namespace {

/// What the OK of the dialog does.
enum StopKind : std::int16_t { kStopSounding = 0, kDissipationCut = 1, kSeismicCut = 2 };

void ShowStopDialog() {
  if (Main.frmTakeFinalBaseline.Visible) return;  // stopped already
  sounding.StopWarningKind = kStopSounding;
  Main.lblWarning.Caption =
      "Press OK to stop the test (cannot resume later).  Press SUSPEND to suspend the test (can "
      "resume later).  Press CANCEL to continue with current sounding.";
  Main.cmdWarningOK1.Caption = "OK";
  Main.cmdWarningOK2.Caption = "SUSPEND";
  for (Button* button : {&Main.cmdWarningOK1, &Main.cmdWarningOK2, &Main.cmdWarningCancel}) {
    button->Visible = true;
  }
  Main.frmLocalWarning.Visible = true;
  if (EnlargedGraph.Visible) EnlargedGraph_Command1_Click();  // the question lies below it
}

void RequestStart() {
  if (cone.ConeLinkUp == kFalse) {
    Tell("SOUNDING CANNOT BE STARTED WHILE CONE IS DISCONNECTED");
    return;
  }
  if (cone.ConePortLost == kTrue) {
    Tell("SOUNDING CANNOT BE STARTED WHILE CONE SERIAL PORT IS DISCONNECTED");
    return;
  }
  if (IsOtherCone()) {
    Tell(
        "SOUNDING CANNOT BE STARTED WITH ANOTHER CONE THAN THE ONE WHOSE RECORDS WERE READ: CONE "
        "#" +
        RecordedConeNumber());
    return;
  }
  sounding.ConsoleMode = 8;
  sounding.TimeOriginMs = TimeToMillisecond();
  sounding.LastStepSeconds = sounding.ElapsedMs / 1000.0;
}

void StopSounding() {
  AddDistancePushed();
  CloseResumeDepth();
  Main.frmTakeFinalBaseline.Visible = true;
  Main.frmLocalWarning.Visible = false;
  Main.cmdStart.Enabled = false;  // neither it nor its key does anything from here on
  sounding.ConsoleMode = 1;
}

/// After an interrupted test. The dissipation's clock is started again here once it stands.
void Rearm() {
  Main.frmLocalWarning.Visible = false;
  sounding.WarningCounter = 0;
}

void Close(std::int16_t with_final_baseline) {
  sounding.CloseWithFinalBaseline = with_final_baseline;
  if (CloseSounding()) ExitProgram();
}

}  // namespace

void Main_cmdStart_Click() {
  if (Main.cmdStart.Caption == "STOP") {
    ShowStopDialog();
  } else {
    RequestStart();
  }
}

void Main_cmdWarningOK1_Click() {
  if (sounding.StopWarningKind == kStopSounding) return StopSounding();
  // The interrupted dissipation or seismic test is saved here once they stand.
  if (sounding.StopWarningKind == kSeismicCut) sounding.ConsoleMode = 2;
  Rearm();
}

void Main_cmdWarningOK2_Click() {
  SuspendSounding();
}

void Main_cmdWarningCancel_Click() {
  // A dissipation that was interrupted is started again here once it stands.
  Main.frmLocalWarning.Visible = false;
}

void Main_Command2_Click() {
  if (resync.UnderWay == kTrue && cone.ConeLinkUp == kTrue && cone.ConePortLost != kTrue) {
    PostBox(
        "FINAL BASELINE CANNOT BE TAKEN WHILE THE CONE REPEATS ITS READINGS.  PRESS TAKE BASELINE "
        "AGAIN WHEN THEY CHANGE, OR PRESS NO BASELINE.");
    return;
  }
  // The readings of before a loss are those of the ground, and no baseline.
  if (cone.ConeLinkUp != kTrue || cone.ConePortLost == kTrue || sounding.ReadingsFresh != kTrue) {
    PostBox(
        "FINAL BASELINE CANNOT BE TAKEN WHILE CONE IS DISCONNECTED.  RECONNECT THE CONE AND PRESS "
        "TAKE BASELINE AGAIN, OR PRESS NO BASELINE.");
    return;
  }
  if (sounding.ReadingsTaken < session.ReadingsAveraged) {
    PostBox(
        "FINAL BASELINE CANNOT BE TAKEN YET: THE AVERAGES ARE NOT FULL.  PRESS TAKE BASELINE AGAIN "
        "IN A MOMENT, OR PRESS NO BASELINE.");
    return;
  }
  Close(kTrue);
}

void Main_Command3_Click() {
  Close(kFalse);
}

void Main_cmdExit_Click() {
  EndProgram();
}

}  // namespace penlog
