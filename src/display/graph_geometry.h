// The geometry of a strip chart: which lines and segments, from where to where, in which colour.
// Places are fractions of the chart, across from its left and down from its top. Nothing is drawn
// here; the same numbers serve the console and the enlarged graph.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "forms/control.h"

namespace penlog {

/// Grid lines across a chart.
constexpr Colour kGridGrey{200, 200, 200};

/// What a segment belongs to; the later ones lie above the earlier.
enum class GraphSeries { Water, Main, Qt, PorePressure4, PorePressure5 };

struct GraphSegment {
  GraphSeries series = GraphSeries::Main;
  Colour colour;
  TracePoint from;
  TracePoint to;
  bool operator==(const GraphSegment&) const = default;
};

/// Place of a value on the shown value axis of graph `g` (1 to 4); no number on an axis without a
/// span.
float Across(int g, float value);
/// The same of Qt, whose axis always begins at 0.
float AcrossQt(int g, float value);
/// Place of a row's depth, in m, on the depth axis, for a sensor `distance` m above the tip.
float Down(float depth, float distance);

/// The axes of graph `g`: its zero line where the axis goes below 0, ticks, and grid lines with
/// `Gridlines` 1.
std::vector<DrawStep> AxisLines(int g);

/// All segments of graph `g`: the water line, then each series from row to row, the first segment
/// going to row 2.
std::vector<GraphSegment> AllSegments(int g);

/// The segments that the newest row adds: of the channel and of Qt, none before the second row. The
/// other pore pressures and the water line follow with the next full redraw.
std::vector<GraphSegment> NewSegments(int g);

/// The bar of a sensor: how much of its span is in use, 0 to 1, and its colour.
struct SensorBar {
  float fraction = 0;
  Colour colour = kGreen;
};
/// From the channel's raw value less its baseline.
SensorBar BarOf(int channel, float loaded);

/// The number at an end of the depth axis, negated for elevations.
std::string DepthAxisText(float depth);

}  // namespace penlog
