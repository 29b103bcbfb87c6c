#include "display/graph_values.h"

#include <cmath>
#include <cstddef>
#include <limits>

#include "core/channels.h"
#include "core/session.h"
#include "core/settings.h"
#include "display/display_state.h"
#include "sounding/reached.h"
#include "sounding/reading_values.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr float kAddition = 1e-06F;
constexpr float kKilopascalPerMetre = 9.817687F;  // of water

}  // namespace

float UnitFactorOf(int channel) {
  return channels.UnitFactor(channels.ChannelUnits(channel), channel);
}

float RowValue(int channel, std::int32_t row) {
  const float raw = sounding.Rows(row, channel);
  if (!IsReached(raw)) return std::numeric_limits<float>::quiet_NaN();
  const float loaded = raw - channels.Baselines(channel);
  const float value = loaded * channels.ChannelGain(channel) * UnitFactorOf(channel);
  return channel == 1 ? value * BallFactor() : value;
}

float GraphValue(int channel, std::int32_t row) {
  return RowValue(channel, row) + kAddition;
}

float QtValue(std::int32_t row) {
  return sounding.RowQt(row) * UnitFactorOf(1);
}

float WaterPressure(float depth) {
  return (depth - session.WaterTable) * kKilopascalPerMetre * UnitFactorOf(3);
}

bool ShowsQt(int channel) {
  return channel == 1 && settings.TipPlotValues == 1;
}

bool ShowsAllPorePressures(int channel) {
  return channel == 3 && settings.CombinePPPlots == 1;
}

bool ShowsWater(int channel) {
  return channel == 3 && session.WaterTable > 0;
}

void GrowRange(int g, std::int32_t row) {
  const auto at = static_cast<std::size_t>(g);
  const int channel = display.GraphChannel[at];
  const float value = ShowsQt(channel) ? QtValue(row) + kAddition : GraphValue(channel, row);
  if (!std::isfinite(value)) return;
  if (value > display.GraphMax[at]) display.GraphMax[at] = value;
  if (channel == 3 && value < display.GraphMin[at]) display.GraphMin[at] = value;
}

}  // namespace penlog
