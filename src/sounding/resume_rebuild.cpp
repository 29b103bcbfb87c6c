#include "sounding/resume_rebuild.h"

#include "conelink/main_exchange.h"
#include "core/channels.h"
#include "core/resume_waits.h"
#include "core/settings.h"
#include "display/graph_data.h"
#include "display/status_strip.h"
#include "forms/main_form.h"
#include "platform/numbers.h"
#include "sounding/depth_count.h"
#include "sounding/reached.h"
#include "sounding/reading_cycle.h"
#include "sounding/reading_values.h"
#include "sounding/resume_depth.h"
#include "sounding/sounding_state.h"
#include "sounding/tell_once.h"
#include "sounding/time_of_day.h"

namespace penlog {

namespace {

constexpr int kFillingReadings = 10;

bool IsPresent(int channel) {
  return channels.ChannelPresent(channel) == kTrue;
}

void ShowDepth() {
  const DepthTexts texts =
      MakeDepthTexts(sounding.CurrentDepth, 0.0f, settings.DepthUnits, settings.DepthFormat);
  Main.lblDepth.Caption = texts.depth;
  Main.lblBigDepth.Caption = texts.big;
  Main.lblRebound.Caption = texts.rebound;
}

/// The depths of the rows are not negated, whatever the format shows.
void PlaceDepth() {
  if (ResumeWaits()) {
    sounding.ConsoleMode = 1;
    ShowResumeDepth();
  } else {
    sounding.ConsoleMode = 2;
    sounding.CurrentDepth = sounding.Rows(sounding.RowCount, 0);
  }
  ShowDepth();
}

/// Speeds are taken from here on, and rows of before have no age.
void SetTimes() {
  sounding.TimeOriginMs = TimeToMillisecond();
  sounding.ElapsedMs = 0;
  sounding.LastStepSeconds = 0;
  status_strip.RowsSeen = sounding.RowCount;
}

void SetButtons() {
  Main.cmdResetQuits.Visible = true;
  Main.cmdTakeBaseline.Enabled = false;
  Main.cmdTakeBaseline.Visible = false;
  Main.cmdExit.Enabled = false;
  Main.cmdStart.Caption = "STOP";
  Main.cmdStart.Enabled = true;
  Main.cmdStart.AlwaysUsable = true;
  Main.lblBigDepth.Visible = true;
  Main.Shape1.Visible = true;
  Main.lblNumberOfPictures.Caption = PlainNumber(sounding.PictureCount);
  // The seismic buttons follow channel 8 here once the seismic test stands.
}

std::int32_t CountsFromHere(std::int16_t step) {
  return ToInteger32(static_cast<double>(step) + static_cast<double>(sounding.DepthCounts));
}

void RebuildDerivedChannels() {
  if (IsPresent(1) && IsPresent(2)) RebuildFrictionRatio();
  if (IsPresent(6) && IsPresent(7)) RebuildInclination();
  if (SoilIsWanted()) RebuildSoilType();
}

}  // namespace

void RebuildFrictionRatio() {
  const float ball = BallFactor();
  for (std::int32_t row = 1; row <= sounding.RowCount; ++row) {
    const float tip = sounding.Rows(row, 1);
    const float sleeve = sounding.Rows(row, 2);
    const bool reached = IsReached(tip) && IsReached(sleeve);
    sounding.Rows(row, 20) =
        reached ? FrictionRatioOf(tip, sleeve, ball).value_or(0.0f) : kNoReading;
  }
}

void RebuildInclination() {
  for (std::int32_t row = 1; row <= sounding.RowCount; ++row) {
    const float x = sounding.Rows(row, 6);
    const float y = sounding.Rows(row, 7);
    sounding.Rows(row, 19) = IsReached(x) && IsReached(y) ? InclinationOf(x, y) : kNoReading;
  }
}

void RebuildSoilType() {
  for (std::int32_t row = 1; row <= sounding.RowCount; ++row) {
    const float tip = sounding.Rows(row, 1);
    const float sleeve = sounding.Rows(row, 2);
    const bool reached = IsReached(tip) && IsReached(sleeve);
    const SoilTypeAndN found =
        reached ? SoilOf(tip, sleeve, PorePressureOf(row)) : SoilTypeAndN{kNoReading, kNoReading};
    sounding.Rows(row, 21) = found.zone;
    sounding.Rows(row, 22) = found.n;
  }
}

void RebuildQt() {
  for (std::int32_t row = 1; row <= sounding.RowCount; ++row) sounding.RowQt(row) = QtOfRow(row);
}

void MarkComputedChannels() {
  if (!IsPresent(1) || !IsPresent(2)) return;
  for (const int channel : {20, 21, 22}) channels.ChannelPresent(channel) = kTrue;
}

void RebuildResumedSounding() {
  MarkComputedChannels();
  SetTimes();
  PlaceDepth();
  // The dissipation's start depth is set here once it stands.
  SetButtons();
  sounding.NextRecordCount = CountsFromHere(settings.DepthStepCounts);
  sounding.NextPictureCount = CountsFromHere(settings.PictureStepCounts);
  RebuildDerivedChannels();
  RebuildQt();
  StartDepthAxis();
  for (int g = 1; g <= 4; ++g) RebuildRange(g);
  sounding.SecondsCounter = 0;
  Step(GraphData);
  status_strip.ResumeFills = true;
  for (int reading = 0; reading < kFillingReadings; ++reading) {
    sounding.ElapsedMs = ElapsedSince(sounding.TimeOriginMs, TimeToMillisecond());
    Step(GetConeData);
    Step([] { Main_CommPause(); });
  }
  status_strip.ResumeFills = false;
}

}  // namespace penlog
