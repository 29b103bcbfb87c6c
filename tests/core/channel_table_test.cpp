#include "core/channel_table.h"

#include <gtest/gtest.h>

#include "core/channels.h"

namespace penlog {
namespace {

TEST(ChannelTable, HasSubscripts0To30) {
  ChannelTable<std::int16_t> table;
  for (const int channel : {0, 1, 30}) {
    EXPECT_EQ(table(channel), 0);
    table(channel) = static_cast<std::int16_t>(channel + 1);
  }
  EXPECT_EQ(table(0), 1);
  EXPECT_EQ(table(30), 31);
  for (const int channel : {-1, 31, 32767}) EXPECT_THROW(table(channel), RuntimeFault) << channel;
}

TEST(OptionTable, HasItsOptionsForEachChannel) {
  OptionTable<float, 10> table;
  table(0, 0) = 1;
  table(10, 30) = 2;
  EXPECT_EQ(table(0, 0), 1);
  EXPECT_EQ(table(10, 30), 2);
  EXPECT_EQ(table(10, 0), 0);
  EXPECT_THROW(table(11, 1), RuntimeFault);
  EXPECT_THROW(table(-1, 1), RuntimeFault);
  EXPECT_THROW(table(1, 31), RuntimeFault);
}

TEST(OptionTable, HoldsTwoLabelsAndTenUnits) {
  EXPECT_NO_THROW(channels.ChannelLabel(1, 30));
  EXPECT_THROW(channels.ChannelLabel(2, 30), RuntimeFault);
  EXPECT_NO_THROW(channels.UnitFormat(10, 30));
  EXPECT_THROW(channels.UnitFormat(11, 30), RuntimeFault);
}

TEST(RowTable, HasRows0To10000OfChannels0To30) {
  RowTable table;
  table(0, 0) = 1;
  table(10000, 30) = 2;
  table(1, 0) = 3;
  EXPECT_EQ(table(0, 0), 1);
  EXPECT_EQ(table(10000, 30), 2);
  EXPECT_EQ(table(0, 30), 0) << "no row runs into the next";
  EXPECT_THROW(table(10001, 0), RuntimeFault);
  EXPECT_THROW(table(-1, 0), RuntimeFault);
  EXPECT_THROW(table(0, 31), RuntimeFault);
}

TEST(RowColumn, HasRows0To10000) {
  RowColumn column;
  column(10000) = 5;
  EXPECT_EQ(column(10000), 5);
  EXPECT_THROW(column(10001), RuntimeFault);
}

}  // namespace
}  // namespace penlog
