#include "conelink/channel_record.h"

#include <gtest/gtest.h>

#include "conelink/link_world.h"
#include "conelink/memory_image.h"
#include "conelink/value_coding.h"
#include "core/resumed_zeros.h"
#include "platform/runtime_fault.h"

namespace penlog {
namespace {

class Records : public ::testing::Test {
 protected:
  Records() {
    LinkWorld::ClearState();
    settings.DepthStep = 0.02f;
  }
  ~Records() override { LinkWorld::ClearState(); }

  static void Store(const RecordImage& image, int unit = 0) {
    StoreChannelRecord(DecodeChannelRecord(image.Text()), unit);
  }
};

TEST_F(Records, DecodesEachFieldAtItsPlace) {
  RecordImage image;
  image.number = 2;
  image.letter = "F";
  image.full_scale = Decimal(10000, 1);
  image.output_full = Decimal(4125, 3);
  image.output_zero = Decimal(-25, 2);
  image.millimetres = 85;
  image.flags = 0b101101;
  const ChannelRecord record = DecodeChannelRecord(image.Text());
  EXPECT_EQ(record.number, 2);
  EXPECT_EQ(record.letter, "F");
  EXPECT_EQ(record.full_scale, 1000);
  EXPECT_EQ(record.output_full, 4.125f);
  EXPECT_EQ(record.output_zero, -0.25f);
  EXPECT_EQ(record.distance, 0.085f);
  EXPECT_EQ(record.flags, "101101");
  EXPECT_TRUE(record.HasSubtraction());
  EXPECT_FALSE(record.HasArea());
}

TEST_F(Records, LastFlagIsTheSubtractionSecondLastTheArea) {
  for (int flags = 0; flags < 64; ++flags) {
    RecordImage image;
    image.flags = flags;
    const ChannelRecord record = DecodeChannelRecord(image.Text());
    EXPECT_EQ(record.HasSubtraction(), (flags & 1) != 0) << flags;
    EXPECT_EQ(record.HasArea(), (flags & 2) != 0) << flags;
  }
}

TEST_F(Records, CodeOf64OrBelowAndAnEmptyReplyEndTheList) {
  const struct {
    std::string text;
    bool ends;
  } rows[] = {{"@", true},  {"@TAAAAAAAAAAAAAAA", true},
              {"", true},   {"?", true},
              {"A", false}, {"^T", false},
              {"_", false}, {"\x7f", false}};
  for (const auto& row : rows) {
    EXPECT_EQ(DecodeChannelRecord(row.text).EndsList(), row.ends) << row.text;
  }
}

TEST_F(Records, ShortRecordDecodesToNothingWhereItIsMissing) {
  const ChannelRecord record = DecodeChannelRecord("CP@@Oh");
  EXPECT_EQ(record.number, 3);
  EXPECT_EQ(record.full_scale, 1000);
  EXPECT_EQ(record.output_full, 0);
  EXPECT_EQ(record.distance, 0);
  EXPECT_EQ(record.flags, "000000");
}

TEST_F(Records, StoresSpanZeroGainDistanceAndDelay) {
  RecordImage image;
  image.number = 3;
  image.letter = "P";
  image.full_scale = Decimal(2000);
  image.output_full = Decimal(45, 1);
  image.output_zero = Decimal(5, 1);
  image.millimetres = 35;
  image.flags = 0b000100;
  Store(image);
  EXPECT_EQ(channels.ChannelPresent(3), kTrue);
  EXPECT_EQ(channels.ChannelModule(3), 0);
  EXPECT_EQ(channels.ChannelLetter(3), "P");
  EXPECT_EQ(channels.ChannelFullScale(3), 2000);
  EXPECT_EQ(channels.ChannelSensitivity(3), 4);
  EXPECT_EQ(channels.Baselines(3), 0.5f);
  EXPECT_EQ(channels.ChannelGain(3), 500);
  EXPECT_EQ(channels.ChannelDistance(3), 0.035f);
  EXPECT_EQ(channels.ChannelDelayRows(3), 2) << "1.75 steps";
  EXPECT_EQ(channels.ChannelFlags(3), "000100");
  EXPECT_EQ(cone.DelayRows, 2);
}

TEST_F(Records, DelayRoundsAHalfToTheEvenNeighbour) {
  settings.DepthStep = 0.0625f;
  const struct {
    int millimetres;
    int rows;
  } rows[] = {{0, 0}, {125, 2}, {500, 8}, {1000, 16}, {4095, 66}};
  for (const auto& row : rows) {
    RecordImage image;
    image.millimetres = row.millimetres;
    Store(image);
    EXPECT_EQ(channels.ChannelDelayRows(1), row.rows) << row.millimetres;
  }
  settings.DepthStep = 0.25f;
  for (const auto& [millimetres, delay] : {std::pair{125, 0}, {375, 2}, {625, 2}, {875, 4}}) {
    RecordImage image;
    image.millimetres = millimetres;
    Store(image);
    EXPECT_EQ(channels.ChannelDelayRows(1), delay) << millimetres;
  }
}

TEST_F(Records, LargestDelayLeavesOutTiltGeophonesAndComputedChannelsOfTheCone) {
  for (const int channel : {6, 7, 8, 9, 19, 20}) {
    cone.DelayRows = 0;
    RecordImage image;
    image.number = channel;
    image.millimetres = 400;
    Store(image);
    EXPECT_EQ(channels.ChannelDelayRows(channel), 20) << channel;
    EXPECT_EQ(cone.DelayRows, 0) << channel;
    Store(image, 2);
    EXPECT_EQ(cone.DelayRows, 20) << "a module's channel " << channel << " counts";
  }
  RecordImage near;
  near.number = 5;
  near.millimetres = 40;
  cone.DelayRows = 7;
  Store(near);
  EXPECT_EQ(cone.DelayRows, 7) << "a smaller one changes nothing";
}

TEST_F(Records, Channel14TakesACoefficientPairInPlaceOfItsOutputs) {
  RecordImage image;
  image.number = 14;
  image.full_scale = Decimal(80);
  image.output_full = Decimal(123456, 2);
  image.output_zero = Decimal(-5, 1);
  Store(image);
  EXPECT_EQ(cone.TemperatureCoeffA, 1234.56f);
  EXPECT_EQ(cone.TemperatureCoeffB, -0.5f);
  EXPECT_EQ(channels.ChannelSensitivity(14), 1);
  EXPECT_EQ(channels.Baselines(14), 0);
  EXPECT_EQ(channels.ChannelGain(14), 80);
  EXPECT_EQ(cone.Channel14Present, kTrue);
}

TEST_F(Records, OtherChannelsLeaveTheCoefficientPairAlone) {
  Store(RecordImage{});
  EXPECT_EQ(cone.Channel14Present, kFalse);
  EXPECT_EQ(cone.TemperatureCoeffA, 0);
}

TEST_F(Records, ResumeKeepsTheBaselineOfAChannelThatSaysSoWhereItsFilesHadOne) {
  const struct {
    std::string resume;
    std::int16_t keep;
    std::int16_t restored;
    float baseline;
  } rows[] = {{"", 0, -1, 0.5f},         {"", 1, -1, 0.5f},       {"DCS0001", 0, -1, 0.5f},
              {"DCS0001", 1, -1, 0.75f}, {"DCS0001", 1, 0, 0.5f}, {"DCS0001", 0, 0, 0.5f}};
  for (const auto& row : rows) {
    session.ResumeConeId = row.resume;
    channels.ChannelKeepZero(1) = row.keep;
    resumed_zeros.Restored(1) = row.restored;
    channels.Baselines(1) = 0.75f;
    Store(RecordImage{});
    EXPECT_EQ(channels.Baselines(1), row.baseline) << row.resume << row.keep << row.restored;
    EXPECT_EQ(channels.ChannelSensitivity(1), 4.5f) << "the record's zero still makes the span";
  }
  resumed_zeros = {};
}

TEST_F(Records, RecordWithoutFlagsClearsSubtractionAndArea) {
  channels.SubtractChannel(1) = 5;
  channels.SubtractFactor(1) = 2;
  channels.ChannelHasArea(1) = 1;
  channels.ChannelArea(1) = 1000;
  Store(RecordImage{});
  EXPECT_EQ(channels.SubtractChannel(1), 0);
  EXPECT_EQ(channels.SubtractFactor(1), 0);
  EXPECT_EQ(channels.ChannelHasArea(1), 0);
  EXPECT_EQ(channels.ChannelArea(1), 0);
}

TEST_F(Records, ChannelNumberAbove30IsAFault) {
  for (const int number : {31, 32, 63}) {
    RecordImage image;
    image.number = number;
    EXPECT_THROW(Store(image), RuntimeFault) << number;
  }
  RecordImage last;
  last.number = 30;
  EXPECT_NO_THROW(Store(last));
}

TEST_F(Records, DepthStepOfZeroIsAFaultNotAnInfinity) {
  settings.DepthStep = 0;
  EXPECT_THROW(Store(RecordImage{}), RuntimeFault);
}

TEST_F(Records, DistanceOfMoreStepsThanAnIntegerHoldsIsAFaultThatNamesItsChannel) {
  settings.DepthStep = 0.0001f;
  RecordImage image;
  image.millimetres = 3276;
  EXPECT_NO_THROW(Store(image));
  EXPECT_EQ(channels.ChannelDelayRows(1), 32760);
  image.millimetres = 3277;
  try {
    Store(image);
    FAIL() << "no fault was raised";
  } catch (const RuntimeFault& fault) {
    EXPECT_STREQ(fault.what(),
                 "The sensor of channel 1 lies more than 32767 depth steps from the tip.");
  }
}

TEST_F(Records, ChannelWithoutSpanHasGainZeroAndIsNamed) {
  RecordImage image;
  image.output_full = image.output_zero;
  channels.ChannelLabel(1, 1) = "Tip Resistance";
  Store(image);
  EXPECT_EQ(channels.ChannelSensitivity(1), 0);
  EXPECT_EQ(channels.ChannelGain(1), 0);
  EXPECT_EQ(ChannelComplaints(0),
            "CHANNEL 1 (Tip Resistance) HAS NO SPAN: ITS OUTPUT AT FULL SCALE IS ITS OUTPUT AT "
            "ZERO.\n");
  EXPECT_EQ(ChannelComplaints(1), "");
}

TEST_F(Records, DecodesTheSubtraction) {
  const Subtraction subtraction = DecodeSubtraction(Coded(3, 1) + Decimal(-125, 3));
  EXPECT_EQ(subtraction.channel, 3);
  EXPECT_EQ(subtraction.factor, -0.125f);
}

TEST_F(Records, SubtractFactorIsTheRecordsOverTheSensitivityOfALaterRecord) {
  RecordImage first;
  first.number = 2;
  Store(first);
  channels.SubtractChannel(2) = 5;
  channels.SubtractFactor(2) = 3;
  RecordImage later;
  later.number = 5;
  later.output_full = Decimal(25, 1);
  Store(later);
  FormSubtractFactors(0);
  EXPECT_EQ(channels.SubtractFactor(2), 1.5f);
  EXPECT_EQ(channels.SubtractFactor(5), 0);
}

TEST_F(Records, SubtractFactorOfAnotherUnitIsLeftAlone) {
  Store(RecordImage{});
  RecordImage module;
  module.number = 23;
  Store(module, 2);
  channels.SubtractChannel(23) = 1;
  channels.SubtractFactor(23) = 9;
  FormSubtractFactors(0);
  EXPECT_EQ(channels.SubtractFactor(23), 9);
  FormSubtractFactors(2);
  EXPECT_EQ(channels.SubtractFactor(23), 2);
}

TEST_F(Records, SubtractedChannelWithoutSpanOrAbsentGivesFactorZero) {
  Store(RecordImage{});
  channels.SubtractChannel(1) = 5;
  channels.SubtractFactor(1) = 3;
  channels.ChannelSensitivity(5) = 2;
  FormSubtractFactors(0);
  EXPECT_EQ(channels.SubtractFactor(1), 0) << "absent";
  EXPECT_EQ(ChannelComplaints(0), "CHANNEL 1 SUBTRACTS CHANNEL 5 WHICH IS NOT PRESENT.\n");
  channels.ChannelPresent(5) = kTrue;
  channels.ChannelSensitivity(5) = 0;
  channels.SubtractFactor(1) = 3;
  FormSubtractFactors(0);
  EXPECT_EQ(channels.SubtractFactor(1), 0) << "no span";
}

TEST_F(Records, SubtractedChannelAbove30IsAFault) {
  Store(RecordImage{});
  channels.SubtractChannel(1) = 31;
  try {
    FormSubtractFactors(0);
    FAIL() << "no fault was raised";
  } catch (const RuntimeFault& fault) {
    EXPECT_STREQ(fault.what(), "Channel 1 subtracts channel 31 of 30.");
  }
}

TEST_F(Records, MissingAreaFollowsTheFullScaleOfChannelOne) {
  const struct {
    float full_scale;
    int tip;
    int sleeve;
  } rows[] = {{100000, 1000, 15000},   {66665, 0, 22500},       {66665.5f, 1500, 22500},
              {66666.6f, 1500, 22500}, {66667.9f, 1500, 22500}, {66668, 0, 22500},
              {50000, 0, 15000},       {0, 0, 22500},           {99999, 0, 22500}};
  for (const auto& row : rows) {
    channels.ChannelArea(1) = channels.ChannelArea(2) = 0;
    channels.ChannelFullScale(1) = row.full_scale;
    channels.ChannelFullScale(2) = 100000;  // has no say
    FillMissingArea(1);
    FillMissingArea(2);
    EXPECT_EQ(channels.ChannelArea(1), row.tip) << row.full_scale;
    EXPECT_EQ(channels.ChannelArea(2), row.sleeve) << row.full_scale;
  }
}

TEST_F(Records, FullScaleOfExactly66665Or66668OnChannelOneGivesNoArea) {
  for (const float full_scale : {66665.0f, 66668.0f}) {
    channels.ChannelArea(1) = 0;
    channels.ChannelFullScale(1) = full_scale;
    FillMissingArea(1);
    EXPECT_EQ(channels.ChannelArea(1), 0);
  }
}

TEST_F(Records, AreaThatIsThereStaysAndOtherChannelsGetNone) {
  channels.ChannelFullScale(1) = 100000;
  channels.ChannelArea(1) = 500;
  channels.ChannelArea(2) = 7500;
  for (int channel = 1; channel <= 30; ++channel) FillMissingArea(channel);
  EXPECT_EQ(channels.ChannelArea(1), 500);
  EXPECT_EQ(channels.ChannelArea(2), 7500);
  EXPECT_EQ(channels.ChannelArea(3), 0);
}

}  // namespace
}  // namespace penlog
