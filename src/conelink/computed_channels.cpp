#include "conelink/computed_channels.h"

#include <cmath>

#include "core/channels.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

void SetUp(int channel) {
  channels.Baselines(channel) = 0;
  channels.ChannelGain(channel) = 1;
  channels.ChannelUnits(channel) = 1;
}

void SetSpan(int channel, float span, float full_scale) {
  channels.ChannelSensitivity(channel) = span;
  channels.ChannelFullScale(channel) = full_scale;
}

void PlaceAs(int channel, int other) {
  channels.ChannelDistance(channel) = channels.ChannelDistance(other);
  channels.ChannelDelayRows(channel) = channels.ChannelDelayRows(other);
}

float Tilt(std::int32_t row, int channel) {
  return (sounding.Rows(row, channel) - channels.Baselines(channel)) /
         channels.ChannelSensitivity(channel);
}

}  // namespace

void SetUpComputedChannels() {
  for (const int channel : {19, 20, 21, 22}) SetUp(channel);
  SetSpan(19, 15, channels.ChannelFullScale(6));
  SetSpan(20, 100, 100);
  SetSpan(21, 12, 12);
  channels.UnitFactor(1, 21) = 1;
  channels.UnitFactor(1, 22) = 1;
  PlaceAs(20, 2);
  PlaceAs(21, 2);
  PlaceAs(22, 21);
}

void RecomputeStoredInclination() {
  if (channels.ChannelSensitivity(6) == 0 || channels.ChannelSensitivity(7) == 0) return;
  for (std::int32_t row = 1; row <= sounding.RowCount; ++row) {
    const float x = Tilt(row, 7);
    const float y = Tilt(row, 6);
    sounding.Rows(row, 19) = std::sqrt(x * x + y * y);
  }
}

}  // namespace penlog
