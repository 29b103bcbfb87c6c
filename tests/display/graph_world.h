// A console with a graph of each kind and hands to record rows, for the tests of the strip charts.
#pragma once

#include <initializer_list>
#include <vector>

#include "core/channels.h"
#include "core/session.h"
#include "core/settings.h"
#include "display/display_state.h"
#include "display/graph_data.h"
#include "display/graph_geometry.h"
#include "display/set_display.h"
#include "forms/main_form.h"
#include "sounding/sounding_state.h"
#include "support/state.h"

namespace penlog {

/// Raw values are display values, but for the baseline, gain and unit that a test sets.
struct GraphWorld : ClearedWorld {
  explicit GraphWorld(std::initializer_list<std::int16_t> shown = {1}) {
    for (int channel = 1; channel <= kChannels; ++channel) SetUp(channel);
    display.GraphCount = static_cast<std::int16_t>(shown.size());
    std::copy(shown.begin(), shown.end(), display.GraphChannel.begin() + 1);
    display.GraphAutoScale.fill(-1);
    SetDisplay();
    sounding.ConsoleMode = 2;
    StartDepthAxis();
  }

  static void SetUp(int channel) {
    channels.ChannelPresent(channel) = -1;
    channels.ChannelGain(channel) = 1;
    channels.ChannelSensitivity(channel) = 1;
    channels.ChannelUnits(channel) = 1;
    channels.UnitFactor(1, channel) = 1;
    channels.UnitFormat(1, channel) = "##0.00";
    channels.UnitLabel(1, channel) = "u";
    channels.ChannelLabel(1, channel) = "Long " + std::to_string(channel);
  }

  struct Raw {
    int channel;
    float value;
  };

  /// Records a row at `depth` m without drawing it.
  static void AddRow(float depth, std::initializer_list<Raw> values, float qt = 0) {
    ++sounding.RowCount;
    sounding.CurrentDepth = depth;
    sounding.Rows(sounding.RowCount, 0) = depth;
    for (const Raw& raw : values) sounding.Rows(sounding.RowCount, raw.channel) = raw.value;
    sounding.RowQt(sounding.RowCount) = qt;
  }

  /// The same, and brings the charts up to date as the console does.
  static void Record(float depth, std::initializer_list<Raw> values, float qt = 0) {
    AddRow(depth, values, qt);
    GraphData();
  }

  /// Shown axes as given, so that places can be told by hand.
  static void Axes(int g, float min, float max, float top, float bottom) {
    display.GraphShownMin[static_cast<std::size_t>(g)] = min;
    display.GraphShownMax[static_cast<std::size_t>(g)] = max;
    display.GraphDepthMin = top;
    display.GraphDepthMax = bottom;
  }

  static std::vector<GraphSegment> Of(const std::vector<GraphSegment>& all, GraphSeries series) {
    std::vector<GraphSegment> found;
    for (const GraphSegment& segment : all) {
      if (segment.series == series) found.push_back(segment);
    }
    return found;
  }

  /// Points of a series as drawn on the console, over all its traces.
  static std::vector<TracePoint> Drawn(int g, GraphSeries series) {
    std::vector<TracePoint> points;
    for (const Trace& trace : Main.pctGraph(g).traces) {
      if (trace.series != static_cast<int>(series)) continue;
      points.insert(points.end(), trace.points.begin(), trace.points.end());
    }
    return points;
  }
};

}  // namespace penlog
