#include "display/graph_geometry.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "core/channels.h"
#include "core/feet.h"
#include "core/session.h"
#include "core/settings.h"
#include "display/display_state.h"
#include "display/graph_values.h"
#include "platform/numbers.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr float kMostOfSpan = 0.9F;

std::size_t At(int g) {
  return static_cast<std::size_t>(g);
}

int ChannelOf(int g) {
  return display.GraphChannel[At(g)];
}

/// A series of a chart: what it draws of a row, and where.
struct Series {
  GraphSeries kind;
  Colour colour;
  int channel;

  TracePoint PointOf(int g, std::int32_t row) const {
    const float across = kind == GraphSeries::Qt     ? AcrossQt(g, QtValue(row))
                         : kind == GraphSeries::Main ? Across(g, GraphValue(channel, row))
                                                     : Across(g, RowValue(channel, row));
    return {across, Down(sounding.Rows(row, 0), channels.ChannelDistance(channel))};
  }
};

Series MainSeries(int g) {
  return {GraphSeries::Main, kRed, ChannelOf(g)};
}

constexpr Series kQtSeries{GraphSeries::Qt, kBlue, 1};
constexpr Series kSeries4{GraphSeries::PorePressure4, kGreen, 4};
constexpr Series kSeries5{GraphSeries::PorePressure5, kBlue, 5};

void AddSegments(int g, const Series& series, std::int32_t first, std::vector<GraphSegment>& to) {
  if (first < 2 || first > sounding.RowCount) return;
  TracePoint before = series.PointOf(g, first - 1);
  for (std::int32_t row = first; row <= sounding.RowCount; ++row) {
    const TracePoint here = series.PointOf(g, row);
    to.push_back({series.kind, series.colour, before, here});
    before = here;
  }
}

TracePoint WaterPoint(int g, float depth) {
  return {Across(g, WaterPressure(depth)), Down(depth, channels.ChannelDistance(3))};
}

/// The first segment begins at the water table.
void AddWaterLine(int g, std::vector<GraphSegment>& to) {
  for (std::int32_t row = 2; row <= sounding.RowCount; ++row) {
    const float depth = sounding.Rows(row, 0);
    if (!(depth > session.WaterTable)) continue;
    const float before = std::max(sounding.Rows(row - 1, 0), session.WaterTable);
    to.push_back({GraphSeries::Water, kCyan, WaterPoint(g, before), WaterPoint(g, depth)});
  }
}

void AddLine(std::vector<DrawStep>& to, double x1, double y1, double x2, double y2, Colour colour) {
  to.push_back({DrawStep::Kind::Line, x1, y1, x2, y2, colour, {}});
}

void AddTick(std::vector<DrawStep>& to, double x1, double y1, double x2, double y2) {
  to.push_back({DrawStep::Kind::Tick, x1, y1, x2, y2, kBlack, {}});
}

/// Grid lines come first, so that ticks lie above them.
void AddGridlines(int g, std::vector<DrawStep>& to) {
  if (settings.Gridlines != 1) return;
  const int across = display.GraphShownDivisions[At(g)];
  for (int i = 1; i <= across; ++i) {
    const double x = static_cast<double>(i) / across;
    AddLine(to, x, 0, x, 1, kGridGrey);
  }
  const int down = display.GraphDepthDivisions;
  for (int i = 1; i <= down; ++i) {
    const double y = static_cast<double>(i) / down;
    AddLine(to, 0, y, 1, y, kGridGrey);
  }
}

void AddTicks(int g, std::vector<DrawStep>& to) {
  const int across = display.GraphShownDivisions[At(g)];
  for (int i = 1; i <= across; ++i) {
    const double x = static_cast<double>(i) / across;
    AddTick(to, x, 0, x, 1);
    AddTick(to, x, 1, x, 0);
  }
  const int down = display.GraphDepthDivisions;
  for (int i = 1; i <= down; ++i) {
    const double y = static_cast<double>(i) / down;
    AddTick(to, 0, y, 1, y);
    AddTick(to, 1, y, 0, y);
  }
}

}  // namespace

float Across(int g, float value) {
  const float min = display.GraphShownMin[At(g)];
  return (value - min) / (display.GraphShownMax[At(g)] - min);
}

float AcrossQt(int g, float value) {
  return value / display.GraphShownMax[At(g)];
}

/// In feet what lies below the start is multiplied and the start is not: the axis begins in feet
/// with the number that the start has in metres.
float Down(float depth, float distance) {
  const float below = depth - distance - display.GraphDepthMin;
  const float span = display.GraphDepthMax - display.GraphDepthMin;
  return (settings.DepthUnits == 1 ? below * kFeetPerMetre : below) / span;
}

std::vector<DrawStep> AxisLines(int g) {
  std::vector<DrawStep> lines;
  AddGridlines(g, lines);
  if (display.GraphShownMin[At(g)] < 0) {
    const double zero = Across(g, 0);
    AddLine(lines, zero, 0, zero, 1, kBlack);
  }
  AddTicks(g, lines);
  return lines;
}

std::vector<GraphSegment> AllSegments(int g) {
  std::vector<GraphSegment> all;
  const int channel = ChannelOf(g);
  all.reserve(static_cast<std::size_t>(sounding.RowCount) * 2);
  if (ShowsWater(channel)) AddWaterLine(g, all);
  AddSegments(g, MainSeries(g), 2, all);
  if (ShowsQt(channel)) AddSegments(g, kQtSeries, 2, all);
  if (ShowsAllPorePressures(channel)) {
    AddSegments(g, kSeries4, 2, all);
    AddSegments(g, kSeries5, 2, all);
  }
  return all;
}

std::vector<GraphSegment> NewSegments(int g) {
  std::vector<GraphSegment> added;
  AddSegments(g, MainSeries(g), sounding.RowCount, added);
  if (ShowsQt(ChannelOf(g))) AddSegments(g, kQtSeries, sounding.RowCount, added);
  return added;
}

SensorBar BarOf(int channel, float loaded) {
  const float span = channels.ChannelSensitivity(channel);
  const float fraction = loaded / span;
  SensorBar bar;
  bar.fraction = std::isfinite(fraction) ? std::clamp(fraction, 0.0F, 1.0F) : 0.0F;
  if (channel != 20 && channel != 14 && loaded > kMostOfSpan * span) bar.colour = kRed;
  return bar;
}

std::string DepthAxisText(float depth) {
  return Format(settings.DepthFormat == 1 ? -depth : depth, "##0");
}

}  // namespace penlog
