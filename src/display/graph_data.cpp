#include "display/graph_data.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

#include "core/channels.h"
#include "core/feet.h"
#include "core/resume_waits.h"
#include "core/session.h"
#include "core/settings.h"
#include "display/display_state.h"
#include "display/graph_geometry.h"
#include "display/graph_values.h"
#include "display/scale_axis.h"
#include "forms/main_form.h"
#include "platform/numbers.h"
#include "sounding/reached.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr int kNoBar = 22;  // N has no sensor

std::size_t At(int g) {
  return static_cast<std::size_t>(g);
}

int ChannelOf(int g) {
  return display.GraphChannel[At(g)];
}

void ScaleDepthAxis() {
  ScaleAxis(display.GraphDepthMax, display.GraphDepthMin, display.GraphDepthStep,
            display.GraphDepthTicks, display.GraphDepthDivisions);
}

/// The end that the axis needs for a depth in m. In feet what lies below the start is multiplied
/// and the start is not: with a start below 0 the row needs more than its own depth in feet.
float AxisEndFor(float depth) {
  if (settings.DepthUnits != 1) return depth;
  const float start = display.GraphDepthMin;
  return std::max(depth * kFeetPerMetre, start + (depth - start) * kFeetPerMetre);
}

/// Rounding may move the start out, and the row may then need more: the axis is rounded again.
void HoldOnDepthAxis(float depth) {
  float start = 0;
  do {
    start = display.GraphDepthMin;
    display.GraphDepthMax = std::max(display.GraphDepthMax, AxisEndFor(depth));
    ScaleDepthAxis();
  } while (display.GraphDepthMin < start && display.GraphDepthMax < AxisEndFor(depth));
}

void FollowDepthAxis() {
  const float top = display.GraphDepthMin;
  const float bottom = display.GraphDepthMax;
  float deepest = sounding.CurrentDepth;
  if (ResumeWaits() && sounding.ConsoleMode == 1) {
    display.GraphDepthMax = AxisEndFor(session.ResumeTargetDepth);
    deepest = std::max(deepest, session.ResumeTargetDepth);
  }
  HoldOnDepthAxis(deepest);
  if (display.GraphDepthMin != top || display.GraphDepthMax != bottom) {
    display.GraphRedraw.fill(kTrue);
  }
}

bool IsPlace(const TracePoint& point) {
  return std::isfinite(point.x) && std::isfinite(point.y);
}

/// What has no place is left out: on an axis without a span, or for a reading that is no number.
void Draw(const std::vector<GraphSegment>& segments, Picture& picture) {
  for (const GraphSegment& segment : segments) {
    if (!IsPlace(segment.from) || !IsPlace(segment.to)) continue;
    picture.DrawSegment(static_cast<int>(segment.series), segment.colour, segment.from, segment.to);
  }
}

void ShowDepthAxis() {
  Main.lblGraphYmin.Caption = DepthAxisText(display.GraphDepthMin);
  Main.lblGraphYmax.Caption = DepthAxisText(display.GraphDepthMax);
}

void Redraw(int g) {
  DrawGraph(g, Main.pctGraph(g));
  Main.lblGraphxMax(g).Caption = PlainNumber(display.GraphShownMax[At(g)]);
  Main.lblGraphxMin(g).Caption = PlainNumber(display.GraphShownMin[At(g)]);
  ShowDepthAxis();
  display.GraphRedraw[At(g)] = 0;
}

/// The line fills its bar from the left; past the right end it is held there.
void ShowBar(int g) {
  const int channel = ChannelOf(g);
  if (channel == kNoBar) return;
  const float raw = sounding.Rows(sounding.RowCount, channel);
  const float loaded = IsReached(raw) ? raw - channels.Baselines(channel) : 0.0F;
  const SensorBar bar = BarOf(channel, loaded);
  const Place& track = Main.shpBar(g).Where;
  Main.lineBar(g).Where = {true, track.left, track.top,
                           static_cast<double>(bar.fraction) * track.width, track.height};
  Main.lineBar(g).FillColor = bar.colour;
}

void BringUpToDate(int g) {
  if (sounding.RowCount >= 1) {
    Main.lblGraphValue(g).Caption = GraphValueText(g);
    GrowRange(g, sounding.RowCount);
  }
  FollowValueAxis(g);
  if (display.GraphRedraw[At(g)] == kTrue) {
    Redraw(g);
  } else {
    Draw(NewSegments(g), Main.pctGraph(g));
  }
  if (sounding.RowCount >= 1) ShowBar(g);
}

}  // namespace

void GraphData() {
  FollowDepthAxis();
  for (int g = 1; g <= display.GraphCount; ++g) {
    if (ChannelOf(g) != 0) BringUpToDate(g);
  }
}

void RedrawDueGraphs() {
  for (int g = 1; g <= display.GraphCount; ++g) {
    if (ChannelOf(g) != 0 && display.GraphRedraw[At(g)] == kTrue) Redraw(g);
  }
}

void StartDepthAxis() {
  display.GraphDepthMin = session.StartDepth;
  display.GraphDepthMax = session.StartDepth + 1.0F;
  ScaleDepthAxis();
  ShowDepthAxis();
}

void RebuildRange(int g) {
  if (ChannelOf(g) == 0) return;
  display.GraphMin[At(g)] = display.GraphMax[At(g)] = 0;
  for (std::int32_t row = 1; row <= sounding.RowCount; ++row) GrowRange(g, row);
  display.GraphShownMin[At(g)] = display.GraphMin[At(g)];
  display.GraphShownMax[At(g)] = display.GraphMax[At(g)];
  display.GraphRedraw[At(g)] = kTrue;  // also where rounding changes neither end
}

void FollowValueAxis(int g) {
  const auto at = At(g);
  float max = display.GraphMax[at];
  float min = display.GraphMin[at];
  ScaleAxis(max, min, display.GraphStep[at], display.GraphTicks[at], display.GraphDivisions[at]);
  if (display.GraphAutoScale[at] != kTrue) return;
  if (display.GraphShownMax[at] != max || display.GraphShownMin[at] != min) {
    display.GraphShownMax[at] = max;
    display.GraphShownMin[at] = min;
    display.GraphRedraw[at] = kTrue;
  }
  display.GraphShownStep[at] = display.GraphStep[at];
  display.GraphShownTicks[at] = display.GraphTicks[at];
  display.GraphShownDivisions[at] = display.GraphDivisions[at];
}

void DrawGraph(int g, Picture& picture) {
  picture.Cls();
  for (DrawStep& line : AxisLines(g)) picture.Draw(std::move(line));
  Draw(AllSegments(g), picture);
}

std::string GraphValueText(int g) {
  if (sounding.RowCount < 1) return {};
  const int channel = ChannelOf(g);
  if (!IsReached(sounding.Rows(sounding.RowCount, channel))) return "-";
  return Format(GraphValue(channel, sounding.RowCount),
                channels.UnitFormat(channels.ChannelUnits(channel), channel));
}

}  // namespace penlog
