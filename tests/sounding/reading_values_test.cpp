#include "sounding/reading_values.h"

#include "sounding/console.h"

namespace penlog {
namespace {

TEST(Average, IsTheMeanOfTheWindowWithTheNewSampleLast) {
  Console console;
  session.ReadingsAveraged = 4;
  EXPECT_EQ(AverageWith(1, 4.0f), 1.0f);
  EXPECT_EQ(AverageWith(1, 8.0f), 3.0f);
  EXPECT_EQ(AverageWith(1, 12.0f), 6.0f);
  EXPECT_EQ(AverageWith(1, 16.0f), 10.0f);
  EXPECT_EQ(AverageWith(1, 20.0f), 14.0f);
  EXPECT_EQ(AverageWith(2, 8.0f), 2.0f) << "each channel has its own window";
  EXPECT_EQ(LastSample(1), 20.0f);
}

TEST(Average, OfOneReadingIsTheSampleItself) {
  Console console;
  session.ReadingsAveraged = 1;
  EXPECT_EQ(AverageWith(1, 4.0f), 4.0f);
  EXPECT_EQ(AverageWith(1, -8.5f), -8.5f);
}

TEST(Average, MixesOldSamplesAfterAChangeOfTheCount) {
  Console console;
  session.ReadingsAveraged = 2;
  AverageWith(1, 10.0f);
  AverageWith(1, 20.0f);
  session.ReadingsAveraged = 4;
  EXPECT_EQ(AverageWith(1, 40.0f), 15.0f);  // 20, 0, 0, 40
}

struct TemperatureCase {
  const char* field;
  float a, b;
  bool has_value;
  float value;
  const char* field_after;
};

TEST(Temperature, IsThePowerLawOfTheDivider) {
  const TemperatureCase cases[] = {
      {"2.05 ", 0.5f, 2.0f, true, 125000.0f, "2.05 "},
      {"0.55 ", 2.0f, 1.0f, true, 16000.0f, "0.55 "},
      {"0.05 ", 1.0f, 1.0f, true, 4998000.0f, ".051"},
      {"0.01 ", 1.0f, 1.0f, true, 4998000.0f, ".051"},
      {"-3 ", 1.0f, 1.0f, true, 4998000.0f, ".051"},
      {"", 1.0f, 1.0f, true, 4998000.0f, ".051"},
      {"3.05 ", 1.0f, 0.5f, false, 0.0f, "3.05 "},  // a root of a negative number
  };
  for (const auto& row : cases) {
    Console console;
    cone.TemperatureCoeffA = row.a;
    cone.TemperatureCoeffB = row.b;
    std::string field = row.field;
    const auto got = TemperatureSample(field);
    EXPECT_EQ(field, row.field_after);
    ASSERT_EQ(got.has_value(), row.has_value) << row.field;
    if (got) {
      EXPECT_NEAR(*got, row.value, row.value * 1e-6) << row.field;
    }
  }
}

TEST(EngineeringValue, IsTheShareOfTheSpanInTheSelectedUnit) {
  Console console;
  channels.Baselines(1) = 1.0f;
  channels.ChannelSensitivity(1) = 4.0f;
  channels.ChannelFullScale(1) = 100.0f;
  channels.UnitFactor(1, 1) = 1.0f;
  channels.UnitFactor(2, 1) = 0.5f;
  EXPECT_FLOAT_EQ(EngineeringValue(1, 3.0f), 50.0f);
  channels.ChannelUnits(1) = 2;
  EXPECT_FLOAT_EQ(EngineeringValue(1, 3.0f), 25.0f);
  EXPECT_FLOAT_EQ(EngineeringValue(1, 0.0f), -12.5f);
}

TEST(BallFactor, IsTheConeAreaOverTheBallArea) {
  Console console;
  channels.ChannelArea(1) = 1000;
  settings.BallTipArea = 4000;
  EXPECT_EQ(BallFactor(), 1.0f);
  settings.TipConfiguration = 1;
  EXPECT_FLOAT_EQ(BallFactor(), 0.25f);
}

TEST(Subtraction, TakesTheLoadOfTheOtherChannel) {
  Console console;
  channels.SubtractChannel(2) = 1;
  channels.SubtractFactor(2) = 0.2f;
  channels.Baselines(1) = 1.0f;
  sounding.Readings(1) = 11.0f;
  EXPECT_FLOAT_EQ(SubtractedLoad(2), 2.0f);
  channels.SubtractChannel(2) = 0;
  EXPECT_EQ(SubtractedLoad(2), 0.0f);
}

TEST(Inclination, UsesTheSensitivityOfChannelSevenForBothAxes) {
  Console console;
  channels.ChannelFullScale(19) = 15.0f;
  channels.ChannelSensitivity(6) = 100.0f;
  channels.ChannelSensitivity(7) = 2.0f;
  channels.Baselines(6) = 1.0f;
  channels.Baselines(7) = -1.0f;
  EXPECT_FLOAT_EQ(InclinationOf(7.0f, 7.0f), 75.0f);  // 6/2 and 8/2: 15 x 5
  EXPECT_FLOAT_EQ(InclinationOf(-5.0f, -1.0f), 45.0f);
}

TEST(Inclination, OfAConeWithoutItsChannelsIsZero) {
  Console console;
  EXPECT_EQ(channels.ChannelSensitivity(7), 0.0f);
  EXPECT_EQ(InclinationOf(0.0f, 0.0f), 0.0f);
  EXPECT_EQ(InclinationOf(1.0f, 0.0f), 0.0f);
}

TEST(FrictionRatio, IsSleeveOverTipInPercent) {
  Console console;
  channels.ChannelSensitivity(1) = 2.0f;
  channels.ChannelFullScale(1) = 100.0f;
  channels.Baselines(1) = 1.0f;
  channels.Baselines(2) = 0.5f;
  channels.ChannelSensitivity(2) = 40.0f;
  channels.ChannelFullScale(2) = 40.0f;
  ASSERT_TRUE(FrictionRatioOf(11.0f, 5.5f));
  EXPECT_FLOAT_EQ(*FrictionRatioOf(11.0f, 5.5f), 1.0f);  // 5 over 500
  EXPECT_FLOAT_EQ(*FrictionRatioOf(11.0f, 5.5f, 0.5f), 2.0f);
  EXPECT_FLOAT_EQ(*FrictionRatioOf(11.0f, -4.5f), -1.0f);
  channels.ChannelFullScale(2) = 10.0f;
  EXPECT_FLOAT_EQ(*FrictionRatioOf(11.0f, 5.5f), 0.25f);
  EXPECT_FALSE(FrictionRatioOf(1.0f, 5.5f));
  EXPECT_FALSE(FrictionRatioOf(0.5f, 5.5f));
}

/// One band of zone 5 above 10.01 bar at each friction ratio.
void LayOneBand() {
  soil.FrictionRatioMax = 100;
  for (auto& column : soil.SbtTable) column[1] = {5.0f, 1.00043f};
  soil.SptDivisor.fill(2.0f);
}

TEST(Soil, TheCorrectedTipTakesThePorePressureIfItIsThere) {
  Console console;
  LayOneBand();
  EXPECT_EQ(SoilOf(1000.0f, 1.0f, 0.0f).zone, 2.0f);
  EXPECT_EQ(SoilOf(1000.0f, 1.0f, 100.0f).zone, 5.0f);  // 10 bar and 0.2 x 100 kPa
  channels.ChannelPresent(3) = 0;
  EXPECT_EQ(SoilOf(1000.0f, 1.0f, 100.0f).zone, 2.0f);
}

TEST(Soil, IsWantedWithAGraphOfItAndBothSensors) {
  struct Case {
    int graph, channel;
    bool both, wanted;
  };
  const Case cases[] = {{1, 21, true, true},  {4, 22, true, true}, {2, 21, false, false},
                        {2, 20, true, false}, {3, 0, true, false}, {3, 22, true, true}};
  for (const auto& row : cases) {
    Console console;
    display.GraphChannel[static_cast<std::size_t>(row.graph)] =
        static_cast<std::int16_t>(row.channel);
    if (!row.both) channels.ChannelPresent(2) = 0;
    EXPECT_EQ(SoilIsWanted(), row.wanted) << row.graph << " " << row.channel;
  }
}

TEST(QtOfRow, AddsTheShareOfThePorePressureAndScalesTheBall) {
  Console console;
  channels.ChannelGain(1) = 2.0f;
  channels.ChannelGain(3) = 10.0f;
  channels.Baselines(1) = 1.0f;
  channels.Baselines(3) = 1.0f;
  sounding.Rows(4, 1) = 101.0f;
  sounding.Rows(4, 3) = 51.0f;
  EXPECT_FLOAT_EQ(QtOfRow(4), 300.0f);  // 50 x 0.2 x 10 + 100 x 2
  settings.TipConfiguration = 1;
  channels.ChannelArea(1) = 1000;
  settings.BallTipArea = 4000;
  EXPECT_FLOAT_EQ(QtOfRow(4), 150.0f);
  channels.ChannelPresent(3) = 0;
  sounding.Rows(4, 3) = 0.0f;
  EXPECT_FLOAT_EQ(QtOfRow(4), 48.0f) << "the pressure term stands without channel 3";
}

}  // namespace
}  // namespace penlog
