#include "sounding/resume_depth.h"

#include <algorithm>

#include "core/session.h"
#include "core/settings.h"
#include "forms/resume_depth_form.h"
#include "platform/numbers.h"
#include "sounding/depth_count.h"
#include "sounding/held_rows.h"
#include "sounding/record_grid.h"
#include "sounding/row_text.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr float kWaits = 1.0f;

std::string Shown(float metres) {
  const float depth = settings.DepthFormat == 1 ? -metres : metres;
  return Format(settings.DepthUnits == 1 ? depth * kFeetPerMetre : depth, "##0.00");
}

/// A distance has no sign of elevations.
std::string ShownDistance(float metres) {
  return Format(settings.DepthUnits == 1 ? metres * kFeetPerMetre : metres, "##0.00") +
         (settings.DepthUnits == 1 ? " ft" : " m");
}

void ShowCurrent() {
  frmResumeDepthStatus.lblCurrentResumeDepth.Caption = Shown(sounding.CurrentDepth);
  frmResumeDepthStatus.lblDifference.Caption =
      ShownDistance(session.ResumeTargetDepth - sounding.CurrentDepth);
}

}  // namespace

void ShowResumeDepth() {
  Show(frmResumeDepthStatus);
  frmResumeDepthStatus.lblTargetResumeDepth.Caption = Shown(session.ResumeTargetDepth);
  ShowCurrent();
}

void FollowResumeDepth() {
  if (session.ResumeDepthStatus == kWaits) ShowCurrent();
}

void frmResumeDepthStatus_lblDepthReached_Click() {
  if (session.ResumeDepthStatus != kWaits || sounding.ConsoleMode != 1) return;
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
