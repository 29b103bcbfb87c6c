#include "display/graph_geometry.h"

#include <gtest/gtest.h>

#include "display/graph_values.h"
#include "display/graph_world.h"

namespace penlog {
namespace {

void ExpectSegment(const GraphSegment& segment, Colour colour, TracePoint from, TracePoint to) {
  EXPECT_EQ(segment.colour, colour);
  EXPECT_NEAR(segment.from.x, from.x, 1e-5);
  EXPECT_NEAR(segment.from.y, from.y, 1e-5);
  EXPECT_NEAR(segment.to.x, to.x, 1e-5);
  EXPECT_NEAR(segment.to.y, to.y, 1e-5);
}

TEST(GraphValue, IsTheReadingLessItsBaselineInDisplayUnits) {
  struct Row {
    float raw, baseline, gain, factor, value;
  };
  for (const Row& row : {Row{3, 1, 10, 0.5F, 10}, Row{1, 3, 10, 0.5F, -10}, Row{2, 2, 10, 1, 0},
                         Row{0.25F, 0, 4, 1000, 1000}}) {
    GraphWorld world;
    channels.Baselines(2) = row.baseline;
    channels.ChannelGain(2) = row.gain;
    channels.UnitFactor(1, 2) = row.factor;
    world.AddRow(1, {{2, row.raw}});
    EXPECT_FLOAT_EQ(RowValue(2, 1), row.value);
    EXPECT_FLOAT_EQ(GraphValue(2, 1), row.value + 1e-06F);
  }
}

TEST(GraphValue, TakesTheSelectedUnit) {
  GraphWorld world;
  channels.ChannelUnits(2) = 3;
  channels.UnitFactor(3, 2) = 7;
  world.AddRow(1, {{2, 2}});
  EXPECT_FLOAT_EQ(RowValue(2, 1), 14);
}

TEST(GraphValue, OfABallTipIsScaledToTheBall) {
  GraphWorld world;
  channels.ChannelArea(1) = 1000;
  settings.BallTipArea = 10000;
  world.AddRow(1, {{1, 5}, {2, 5}});
  EXPECT_FLOAT_EQ(RowValue(1, 1), 5);
  settings.TipConfiguration = 1;
  EXPECT_FLOAT_EQ(RowValue(1, 1), 0.5F);
  EXPECT_FLOAT_EQ(GraphValue(1, 1), 0.5F + 1e-06F);
  EXPECT_FLOAT_EQ(RowValue(2, 1), 5);
}

TEST(GraphSegments, FirstRowHasNone) {
  GraphWorld world({1, 3});
  settings.TipPlotValues = settings.CombinePPPlots = 1;
  session.WaterTable = 0.01F;
  EXPECT_TRUE(AllSegments(1).empty());
  world.AddRow(0.02F, {{1, 5}});
  for (const int g : {1, 2}) {
    EXPECT_TRUE(AllSegments(g).empty());
    EXPECT_TRUE(NewSegments(g).empty());
  }
}

TEST(GraphSegments, GoFromRowToRow) {
  GraphWorld world;
  world.AddRow(1, {{1, 5}});
  world.AddRow(2, {{1, 10}});
  world.AddRow(4, {{1, 0}});
  world.Axes(1, 0, 20, 0, 5);
  const auto all = AllSegments(1);
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].series, GraphSeries::Main);
  ExpectSegment(all[0], kRed, {0.25F, 0.2F}, {0.5F, 0.4F});
  ExpectSegment(all[1], kRed, {0.5F, 0.4F}, {0, 0.8F});
  const auto added = NewSegments(1);
  ASSERT_EQ(added.size(), 1U);
  EXPECT_EQ(added[0], all[1]);
}

TEST(GraphSegments, PlaceIsTheShareOfTheShownRange) {
  GraphWorld world({2});
  world.AddRow(3, {{2, -2}});
  world.AddRow(4, {{2, 8}});
  world.Axes(1, -4, 16, 2, 6);
  ExpectSegment(AllSegments(1).at(0), kRed, {0.1F, 0.25F}, {0.6F, 0.5F});
}

TEST(GraphSegments, DepthIsThatOfTheSensor) {
  GraphWorld world({2, 1});
  channels.ChannelDistance(2) = 0.5F;
  world.AddRow(2, {{2, 1}, {1, 1}});
  world.AddRow(3, {{2, 1}, {1, 1}});
  world.Axes(1, 0, 10, 0, 10);
  world.Axes(2, 0, 10, 0, 10);
  ExpectSegment(AllSegments(1).at(0), kRed, {0.1F, 0.15F}, {0.1F, 0.25F});
  ExpectSegment(AllSegments(2).at(0), kRed, {0.1F, 0.2F}, {0.1F, 0.3F});
}

TEST(GraphSegments, FeetMultiplyTheDifferenceToTheAxisThatIsInFeet) {
  GraphWorld world;
  settings.DepthUnits = 1;
  channels.ChannelDistance(1) = 0.5F;
  world.AddRow(4, {{1, 5}});
  world.AddRow(5, {{1, 5}});
  world.Axes(1, 0, 10, 1, 21);
  // (4 m - 0.5 m - 1 ft) * 3.281 over 20 ft
  ExpectSegment(AllSegments(1).at(0), kRed, {0.5F, 2.5F * 3.281F / 20}, {0.5F, 3.5F * 3.281F / 20});
}

TEST(GraphSegments, QtIsBlueAndItsAxisBeginsAtZero) {
  GraphWorld world;
  channels.UnitFactor(1, 1) = 0.5F;
  channels.ChannelDistance(1) = 1;
  world.AddRow(2, {{1, 8}}, 16);
  world.AddRow(3, {{1, 8}}, 4);
  world.Axes(1, -10, 10, 0, 10);
  EXPECT_TRUE(world.Of(AllSegments(1), GraphSeries::Qt).empty());
  settings.TipPlotValues = 1;
  const auto all = AllSegments(1);
  ASSERT_EQ(all.size(), 2U);
  ExpectSegment(all[0], kRed, {0.7F, 0.1F}, {0.7F, 0.2F});
  EXPECT_EQ(all[1].series, GraphSeries::Qt);
  ExpectSegment(all[1], kBlue, {0.8F, 0.1F}, {0.2F, 0.2F});
  EXPECT_EQ(NewSegments(1), all);
}

TEST(GraphSegments, QtStandsOnTheTipsGraphAlone) {
  GraphWorld world({2});
  settings.TipPlotValues = 1;
  world.AddRow(1, {}, 5);
  world.AddRow(2, {}, 5);
  EXPECT_TRUE(world.Of(AllSegments(1), GraphSeries::Qt).empty());
}

TEST(GraphSegments, CombinedPorePressuresComeWithAFullRedrawAlone) {
  GraphWorld world({3, 2});
  settings.CombinePPPlots = 1;
  channels.Baselines(4) = 1;
  channels.ChannelGain(5) = 2;
  channels.ChannelDistance(4) = 0.5F;
  channels.ChannelDistance(5) = 1;
  world.AddRow(2, {{3, 1}, {4, 3}, {5, 3}});
  world.AddRow(3, {{3, 2}, {4, 5}, {5, 4}});
  world.Axes(1, 0, 10, 0, 10);
  const auto all = AllSegments(1);
  ASSERT_EQ(all.size(), 3U);
  ExpectSegment(all[0], kRed, {0.1F, 0.2F}, {0.2F, 0.3F});
  EXPECT_EQ(all[1].series, GraphSeries::PorePressure4);
  ExpectSegment(all[1], kGreen, {0.2F, 0.15F}, {0.4F, 0.25F});
  EXPECT_EQ(all[2].series, GraphSeries::PorePressure5);
  ExpectSegment(all[2], kBlue, {0.6F, 0.1F}, {0.8F, 0.2F});
  EXPECT_EQ(NewSegments(1).size(), 1U);
  EXPECT_EQ(AllSegments(2).size(), 1U);
}

TEST(GraphSegments, WaterLineIsHydrostaticBelowTheTable) {
  GraphWorld world({3});
  session.WaterTable = 2;
  channels.UnitFactor(1, 3) = 0.1F;
  channels.ChannelDistance(3) = 1;
  for (const float depth : {1.0F, 2.0F, 3.0F, 5.0F}) world.AddRow(depth, {{3, 0}});
  world.Axes(1, 0, 4, 0, 10);
  const auto water = world.Of(AllSegments(1), GraphSeries::Water);
  ASSERT_EQ(water.size(), 2U);
  const float metre = 0.9817687F / 4;
  ExpectSegment(water[0], kCyan, {0, 0.1F}, {metre, 0.2F});
  ExpectSegment(water[1], kCyan, {metre, 0.2F}, {3 * metre, 0.4F});
  EXPECT_TRUE(world.Of(NewSegments(1), GraphSeries::Water).empty());
}

TEST(GraphSegments, WaterLineBeginsAtTheTableBetweenTwoRows) {
  GraphWorld world({3});
  session.WaterTable = 2.5F;
  world.AddRow(2, {});
  world.AddRow(3, {});
  world.Axes(1, 0, 9.817687F, 0, 10);
  const auto water = world.Of(AllSegments(1), GraphSeries::Water);
  ASSERT_EQ(water.size(), 1U);
  ExpectSegment(water[0], kCyan, {0, 0.25F}, {0.5F, 0.3F});
}

TEST(GraphSegments, WithoutAWaterTableThereIsNoWaterLine) {
  GraphWorld world({3, 2});
  for (const float table : {0.0F, -1.0F}) {
    session.WaterTable = table;
    sounding.RowCount = 0;
    world.AddRow(2, {});
    world.AddRow(3, {});
    EXPECT_TRUE(world.Of(AllSegments(1), GraphSeries::Water).empty());
  }
  session.WaterTable = 1;
  EXPECT_FALSE(world.Of(AllSegments(1), GraphSeries::Water).empty());
  EXPECT_TRUE(world.Of(AllSegments(2), GraphSeries::Water).empty());
}

// --- the axes ------------------------------------------------------------------------------------

struct AxisWorld : GraphWorld {
  AxisWorld() {
    Axes(1, 0, 10, 0, 5);
    display.GraphShownDivisions[1] = 4;
    display.GraphDepthDivisions = 5;
  }
};

int Count(const std::vector<DrawStep>& lines, DrawStep::Kind kind, Colour colour) {
  return static_cast<int>(std::count_if(lines.begin(), lines.end(), [&](const DrawStep& line) {
    return line.kind == kind && line.colour == colour;
  }));
}

TEST(GraphAxes, HaveATickAtEachDivisionOnBothSides) {
  AxisWorld world;
  const auto lines = AxisLines(1);
  EXPECT_EQ(lines.size(), 2U * 4 + 2 * 5);
  EXPECT_EQ(Count(lines, DrawStep::Kind::Tick, kBlack), 2 * 4 + 2 * 5);
  const auto has = [&](double x1, double y1, double x2, double y2) {
    return std::any_of(lines.begin(), lines.end(), [&](const DrawStep& tick) {
      return tick.x1 == x1 && tick.y1 == y1 && tick.x2 == x2 && tick.y2 == y2;
    });
  };
  for (const double x : {0.25, 0.5, 0.75, 1.0}) {
    EXPECT_TRUE(has(x, 0, x, 1)) << x;
    EXPECT_TRUE(has(x, 1, x, 0)) << x;
  }
  for (const int i : {1, 2, 3, 4, 5}) {
    EXPECT_TRUE(has(0, i / 5.0, 1, i / 5.0)) << i;
    EXPECT_TRUE(has(1, i / 5.0, 0, i / 5.0)) << i;
  }
}

TEST(GraphAxes, HaveGreyLinesAcrossWithGridlines) {
  AxisWorld world;
  settings.Gridlines = 1;
  const auto lines = AxisLines(1);
  EXPECT_EQ(Count(lines, DrawStep::Kind::Line, Colour{200, 200, 200}), 4 + 5);
  EXPECT_EQ(Count(lines, DrawStep::Kind::Tick, kBlack), 2 * 4 + 2 * 5);
  const auto expect_line = [](const DrawStep& line, double x1, double y1, double x2, double y2) {
    EXPECT_EQ(line.kind, DrawStep::Kind::Line);
    EXPECT_EQ(line.x1, x1);
    EXPECT_EQ(line.y1, y1);
    EXPECT_EQ(line.x2, x2);
    EXPECT_EQ(line.y2, y2);
  };
  for (std::size_t i = 1; i <= 4; ++i) {
    const double x = static_cast<double>(i) / 4;
    expect_line(lines[i - 1], x, 0, x, 1);
  }
  for (std::size_t i = 1; i <= 5; ++i) {
    const double y = static_cast<double>(i) / 5;
    expect_line(lines[i + 3], 0, y, 1, y);
  }
}

TEST(GraphAxes, ZeroLineStandsOnlyWhereTheAxisGoesBelow) {
  AxisWorld world;
  EXPECT_EQ(Count(AxisLines(1), DrawStep::Kind::Line, kBlack), 0);
  display.GraphShownMin[1] = -2;
  display.GraphShownMax[1] = 8;
  const auto lines = AxisLines(1);
  ASSERT_EQ(Count(lines, DrawStep::Kind::Line, kBlack), 1);
  EXPECT_EQ(lines[0].kind, DrawStep::Kind::Line);
  EXPECT_FLOAT_EQ(static_cast<float>(lines[0].x1), 0.2F);
  EXPECT_EQ(lines[0].x2, lines[0].x1);
  EXPECT_EQ(lines[0].y1, 0);
  EXPECT_EQ(lines[0].y2, 1);
}

TEST(GraphAxes, DepthNumberIsNegatedForElevations) {
  GraphWorld world;
  EXPECT_EQ(DepthAxisText(12), "12");
  settings.DepthFormat = 1;
  EXPECT_EQ(DepthAxisText(12), "-12");
  EXPECT_EQ(DepthAxisText(-12), "12");
  EXPECT_EQ(DepthAxisText(0), "0");
}

// --- the bar -------------------------------------------------------------------------------------

TEST(SensorBar, ShowsTheShareOfTheSpanAndGoesRedAboveNineTenths) {
  struct Row {
    int channel;
    float loaded, span, fraction;
    Colour colour;
  };
  const Row rows[] = {
      {1, 1, 4, 0.25F, kGreen},
      {1, 3.59F, 4, 0.8975F, kGreen},
      {1, 3.61F, 4, 0.9025F, kRed},
      {1, 4, 4, 1, kRed},
      {1, 9, 4, 1, kRed},
      {1, -1, 4, 0, kGreen},
      {20, 99, 100, 0.99F, kGreen},
      {14, 3.9F, 4, 0.975F, kGreen},
      {19, 14, 15, 14 / 15.0F, kRed},
      {1, 0, 0, 0, kGreen},
  };
  for (const Row& row : rows) {
    GraphWorld world;
    channels.ChannelSensitivity(row.channel) = row.span;
    const SensorBar bar = BarOf(row.channel, row.loaded);
    EXPECT_FLOAT_EQ(bar.fraction, row.fraction) << row.channel << " " << row.loaded;
    EXPECT_EQ(bar.colour, row.colour) << row.channel << " " << row.loaded;
  }
}

}  // namespace
}  // namespace penlog
