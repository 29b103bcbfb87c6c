#include "conelink/computed_channels.h"

#include <gtest/gtest.h>

#include "conelink/link_world.h"

namespace penlog {
namespace {

class Computed : public ::testing::Test {
 protected:
  Computed() { LinkWorld::ClearState(); }
  ~Computed() override { LinkWorld::ClearState(); }
};

TEST_F(Computed, SetUpFollowsItsTable) {
  channels.ChannelFullScale(6) = 20;
  channels.ChannelDistance(2) = 0.085f;
  channels.ChannelDelayRows(2) = 4;
  channels.ChannelDistance(19) = 0.3f;
  channels.ChannelFullScale(22) = 77;
  channels.ChannelSensitivity(22) = 88;
  channels.UnitFactor(1, 19) = 3;
  channels.UnitFactor(1, 20) = 3;
  for (const int channel : {19, 20, 21, 22}) {
    channels.Baselines(channel) = 5;
    channels.ChannelUnits(channel) = 0;
  }
  SetUpComputedChannels();
  const struct {
    int channel;
    float span, full_scale, factor, distance;
    int delay;
  } rows[] = {{19, 15, 20, 3, 0.3f, 0},
              {20, 100, 100, 3, 0.085f, 4},
              {21, 12, 12, 1, 0.085f, 4},
              {22, 88, 77, 1, 0.085f, 4}};
  for (const auto& row : rows) {
    EXPECT_EQ(channels.ChannelSensitivity(row.channel), row.span) << row.channel;
    EXPECT_EQ(channels.ChannelFullScale(row.channel), row.full_scale) << row.channel;
    EXPECT_EQ(channels.UnitFactor(1, row.channel), row.factor) << row.channel;
    EXPECT_EQ(channels.ChannelDistance(row.channel), row.distance) << row.channel;
    EXPECT_EQ(channels.ChannelDelayRows(row.channel), row.delay) << row.channel;
    EXPECT_EQ(channels.Baselines(row.channel), 0) << row.channel;
    EXPECT_EQ(channels.ChannelGain(row.channel), 1) << row.channel;
    EXPECT_EQ(channels.ChannelUnits(row.channel), 1) << row.channel;
  }
}

TEST_F(Computed, StoredInclinationIsTheRootOfBothTilts) {
  channels.ChannelSensitivity(6) = 2;
  channels.ChannelSensitivity(7) = 4;
  channels.Baselines(6) = 1;
  channels.Baselines(7) = 0.5f;
  sounding.RowCount = 2;
  sounding.Rows(1, 6) = 7;      // 3
  sounding.Rows(1, 7) = 16.5f;  // 4
  sounding.Rows(2, 6) = 1;
  sounding.Rows(2, 7) = -1.5f;  // -0.5
  sounding.Rows(3, 19) = 9;
  RecomputeStoredInclination();
  EXPECT_EQ(sounding.Rows(1, 19), 5);
  EXPECT_EQ(sounding.Rows(2, 19), 0.5f);
  EXPECT_EQ(sounding.Rows(3, 19), 9) << "behind the last row";
}

TEST_F(Computed, StoredInclinationStaysWhereATiltHasNoSpan) {
  sounding.RowCount = 1;
  sounding.Rows(1, 19) = 3;
  channels.ChannelSensitivity(6) = 2;
  RecomputeStoredInclination();
  EXPECT_EQ(sounding.Rows(1, 19), 3);
}

}  // namespace
}  // namespace penlog
