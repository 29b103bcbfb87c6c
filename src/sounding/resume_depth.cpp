#include "sounding/resume_depth.h"

#include <algorithm>

#include "conelink/cone_state.h"
#include "conelink/other_cone.h"
#include "core/channels.h"
#include "core/feet.h"
#include "core/resume_waits.h"
#include "core/session.h"
#include "core/settings.h"
#include "forms/main_form.h"
#include "forms/resume_depth_form.h"
#include "platform/boxes.h"
#include "platform/numbers.h"
#include "sounding/held_rows.h"
#include "sounding/missing_steps.h"
#include "sounding/record_grid.h"
#include "sounding/row_text.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

std::string Shown(float metres) {
  const float depth = settings.DepthFormat == 1 ? -metres : metres;
  return Format(settings.DepthUnits == 1 ? depth * kFeetPerMetre : depth, "##0.00");
}

/// A distance has no sign of elevations.
std::string ShownDistance(float metres) {
  return Format(settings.DepthUnits == 1 ? metres * kFeetPerMetre : metres, "##0.00") +
         (settings.DepthUnits == 1 ? " ft" : " m");
}

/// Rods that moved while nobody counted stand elsewhere than is shown. What was missed before the
/// resume is not in a depth that is counted from the surface.
bool IsDepthInDoubt() {
  return missing_steps.EdgesLost > 0 || missing_steps.TimesAway > missing_steps.TimesAwayBefore ||
         cone.TruckPortLost == kTrue;
}

void ShowCurrent() {
  frmResumeDepthStatus.lblCurrentResumeDepth.Caption = Shown(sounding.CurrentDepth);
  frmResumeDepthStatus.lblDifference.Caption =
      ShownDistance(session.ResumeTargetDepth - sounding.CurrentDepth);
  frmResumeDepthStatus.lblDifferenceCaption.Caption =
      IsDepthInDoubt() ? "STILL TO GO (STEPS MISSING?):" : "STILL TO GO:";
}

}  // namespace

void ShowResumeDepth() {
  Show(frmResumeDepthStatus);
  frmResumeDepthStatus.lblTargetResumeDepth.Caption = Shown(session.ResumeTargetDepth);
  ShowCurrent();
}

void FollowResumeDepth() {
  if (ResumeWaits()) ShowCurrent();
}

void frmResumeDepthStatus_lblDepthReached_Click() {
  if (!ResumeWaits() || sounding.ConsoleMode != 1) return;
  if (IsOtherCone()) {
    PostBox(
        "SOUNDING CANNOT BE RESUMED WITH ANOTHER CONE THAN THE ONE WHOSE RECORDS WERE READ: CONE "
        "#" +
        RecordedConeNumber() + ".  IF IT IS THAT CONE, PULL ITS PLUG AND CONNECT IT AGAIN.");
    return;
  }
  if (resume_depth.RowsAtGap != sounding.RowCount) AppendOrHold(kTemporaryFile, GapRow());
  resume_depth.RowsAtGap = sounding.RowCount;
  session.ResumeDepthStatus = 0;
  sounding.LastStepSeconds = sounding.ElapsedMs / 1000.0;
  sounding.NextRecordCount =
      NextRecordOnGrid(sounding.DepthCounts, std::max<std::int32_t>(settings.DepthStepCounts, 1),
                       sounding.NextRecordCount);
  sounding.RecordPending = 0;
  sounding.ConsoleMode = 2;
  Unload(frmResumeDepthStatus);
}

void CloseResumeDepth() {
  session.ResumeDepthStatus = 0;
  Unload(frmResumeDepthStatus);
}

}  // namespace penlog
