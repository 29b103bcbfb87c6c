#include "display/graph_data.h"

#include <gtest/gtest.h>

#include "display/graph_world.h"

namespace penlog {
namespace {

std::uint32_t Clearings(int g) {
  return Main.pctGraph(g).clearings;
}

TEST(GraphData, FirstRowDrawsAxesAndNoSegment) {
  GraphWorld world;
  world.Record(0.02F, {{1, 5}});
  EXPECT_TRUE(Main.pctGraph(1).traces.empty());
  EXPECT_FALSE(Main.pctGraph(1).steps.empty());
  EXPECT_EQ(Main.lblGraphValue(1).Caption, "5.00");
  EXPECT_EQ(Main.lblGraphxMin(1).Caption, "0");
  EXPECT_EQ(Main.lblGraphxMax(1).Caption, "6");
}

TEST(GraphData, SecondRowBeginsTheTrace) {
  GraphWorld world;
  world.Record(0.25F, {{1, 4.5F}});
  const auto before = Clearings(1);
  world.Record(0.5F, {{1, 2.5F}});
  EXPECT_EQ(Clearings(1), before);
  const auto points = world.Drawn(1, GraphSeries::Main);
  ASSERT_EQ(points.size(), 2U);
  EXPECT_NEAR(points[0].x, 0.9, 1e-5);
  EXPECT_NEAR(points[0].y, 0.25, 1e-5);
  EXPECT_NEAR(points[1].x, 0.5, 1e-5);
  EXPECT_NEAR(points[1].y, 0.5, 1e-5);
}

TEST(GraphData, EachRowAddsOneSegmentWhileTheRangesHold) {
  GraphWorld world;
  world.Record(0.1F, {{1, 4.5F}});
  const auto before = Clearings(1);
  for (int row = 2; row <= 9; ++row) world.Record(0.1F * static_cast<float>(row), {{1, 3}});
  EXPECT_EQ(Clearings(1), before);
  ASSERT_EQ(Main.pctGraph(1).traces.size(), 1U);
  EXPECT_EQ(Main.pctGraph(1).traces[0].points.size(), 9U);
}

TEST(GraphData, GrowthPastALimitDrawsAllRowsAnew) {
  GraphWorld world;
  world.Record(0.25F, {{1, 4}});
  world.Record(0.5F, {{1, 4}});
  const auto before = Clearings(1);
  world.Record(0.75F, {{1, 12}});
  EXPECT_EQ(Clearings(1), before + 1);
  EXPECT_EQ(display.GraphShownMax[1], 14);  // a step of 2 up to a range of 20
  EXPECT_EQ(display.GraphShownDivisions[1], 1);
  EXPECT_EQ(display.GraphShownTicks[1], 7);
  EXPECT_EQ(Main.lblGraphxMax(1).Caption, "14");
  const auto points = world.Drawn(1, GraphSeries::Main);
  ASSERT_EQ(points.size(), 3U);
  EXPECT_NEAR(points[0].x, 4.0 / 14, 1e-5);
  EXPECT_NEAR(points[2].x, 12.0 / 14, 1e-5);
}

TEST(GraphData, GrowthInsideTheShownRangeRedrawsNothing) {
  GraphWorld world;
  world.Record(0.25F, {{1, 12.5F}});
  const auto before = Clearings(1);
  world.Record(0.5F, {{1, 13.5F}});
  EXPECT_EQ(Clearings(1), before);
  EXPECT_NEAR(display.GraphMax[1], 13.5, 1e-4);
  EXPECT_EQ(display.GraphShownMax[1], 14);
}

TEST(GraphData, AxisNeverShrinks) {
  GraphWorld world;
  world.Record(0.25F, {{1, 12.5F}});
  for (const float depth : {0.5F, 0.75F}) world.Record(depth, {{1, 0.5F}});
  EXPECT_EQ(display.GraphShownMax[1], 14);
}

TEST(GraphData, RangeOfExactlyOneHasTenDivisions) {
  GraphWorld world;
  world.Record(0.25F, {{1, 0.5F}});
  EXPECT_EQ(display.GraphShownMin[1], 0);
  EXPECT_EQ(display.GraphShownMax[1], 1);
  EXPECT_EQ(display.GraphShownDivisions[1], 10);
  EXPECT_EQ(display.GraphShownStep[1], 1);
}

TEST(GraphData, OnlyPorePressureGoesBelowZero) {
  GraphWorld world({1, 3});
  world.Record(0.25F, {{1, -2.5F}, {3, -2.5F}});
  world.Record(0.5F, {{1, 3}, {3, 3}});
  EXPECT_EQ(display.GraphMin[1], 0);
  EXPECT_EQ(display.GraphShownMin[1], 0);
  EXPECT_NEAR(display.GraphMin[2], -2.5, 1e-4);
  EXPECT_EQ(display.GraphShownMin[2], -3);
  EXPECT_EQ(Main.lblGraphxMin(1).Caption, "0");
  EXPECT_EQ(Main.lblGraphxMin(2).Caption, "-3");
  EXPECT_EQ(Main.lblGraphValue(2).Caption, "3.00");
  // The tip below 0 is drawn past the left edge; the pore pressure has its zero line.
  EXPECT_LT(world.Drawn(1, GraphSeries::Main).at(0).x, 0);
  const auto& lines = Main.pctGraph(2).steps;
  EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [](const DrawStep& line) {
    return line.kind == DrawStep::Kind::Line && line.colour == kBlack &&
           std::abs(line.x1 - 3.0 / 7) < 1e-6;
  }));
}

TEST(GraphData, HeldRangeIsChangedByNoValue) {
  GraphWorld world;
  world.Record(0.25F, {{1, 4}});
  display.GraphAutoScale[1] = 0;
  world.Axes(1, 2, 3, 0, 1);
  display.GraphRedraw[1] = -1;
  world.Record(0.5F, {{1, 0}});
  EXPECT_EQ(display.GraphShownMin[1], 2);
  EXPECT_EQ(display.GraphShownMax[1], 3);
  EXPECT_EQ(Main.lblGraphxMin(1).Caption, "2");
  EXPECT_EQ(Main.lblGraphxMax(1).Caption, "3");
  const auto before = Clearings(1);
  world.Record(0.75F, {{1, 50}});
  EXPECT_EQ(Clearings(1), before);
  EXPECT_EQ(display.GraphShownMax[1], 3);
  EXPECT_NEAR(display.GraphMax[1], 50, 1e-4);
}

TEST(GraphData, ValuesAboveAHeldRangeAreDrawnPastTheEdge) {
  GraphWorld world;
  world.Record(0.25F, {{1, 4}});
  display.GraphAutoScale[1] = 0;
  world.Axes(1, 0, 2, 0, 1);
  display.GraphRedraw[1] = -1;
  world.Record(0.5F, {{1, 5}});
  const auto points = world.Drawn(1, GraphSeries::Main);
  ASSERT_EQ(points.size(), 2U);
  EXPECT_NEAR(points[0].x, 2, 1e-5);
  EXPECT_NEAR(points[1].x, 2.5, 1e-5);
}

TEST(GraphData, RangeFollowsQtWhereItIsShown) {
  GraphWorld world;
  settings.TipPlotValues = 1;
  channels.UnitFactor(1, 1) = 0.5F;
  world.Record(0.25F, {{1, 4}}, 17);
  EXPECT_EQ(Main.lblGraphValue(1).Caption, "2.00");
  EXPECT_NEAR(display.GraphMax[1], 8.5, 1e-4);
  EXPECT_EQ(display.GraphShownMax[1], 9);
}

TEST(GraphData, ValueOnARoundNumberTakesTheNextStep) {
  GraphWorld tip;
  tip.Record(0.25F, {{1, 9}});
  EXPECT_EQ(display.GraphShownMax[1], 10);
  GraphWorld qt;
  settings.TipPlotValues = 1;
  qt.Record(0.25F, {{1, 4}}, 9);
  EXPECT_EQ(display.GraphShownMax[1], 10);
  EXPECT_EQ(Main.lblGraphxMax(1).Caption, "10");
}

TEST(GraphData, QtGetsASegmentWithEachRowAndTheOtherPorePressuresNone) {
  GraphWorld world({1, 3});
  settings.TipPlotValues = settings.CombinePPPlots = 1;
  for (const float depth : {0.25F, 0.5F, 0.75F}) {
    world.Record(depth, {{1, 4.5F}, {3, 4.5F}, {4, 1}, {5, 1}}, 4);
  }
  EXPECT_EQ(world.Drawn(1, GraphSeries::Main).size(), 3U);
  EXPECT_EQ(world.Drawn(1, GraphSeries::Qt).size(), 3U);
  EXPECT_EQ(world.Drawn(2, GraphSeries::Main).size(), 3U);
  EXPECT_TRUE(world.Drawn(2, GraphSeries::PorePressure4).empty());
  world.Record(1.5F, {{1, 4.5F}, {3, 4.5F}, {4, 1}, {5, 1}}, 4);  // the depth axis grows
  EXPECT_EQ(world.Drawn(2, GraphSeries::PorePressure4).size(), 4U);
  EXPECT_EQ(world.Drawn(2, GraphSeries::PorePressure5).size(), 4U);
}

TEST(GraphData, ABallTipDividesByItsLargerArea) {
  GraphWorld world;
  settings.TipConfiguration = 1;
  settings.BallTipArea = 10'000;
  channels.ChannelArea(1) = 1000;
  world.Record(0.25F, {{1, 22}});
  world.Record(0.5F, {{1, 42}});
  EXPECT_EQ(Main.lblGraphValue(1).Caption, "4.20");
  EXPECT_EQ(display.GraphShownMax[1], 5);
  const auto points = world.Drawn(1, GraphSeries::Main);
  ASSERT_EQ(points.size(), 2U);
  EXPECT_NEAR(points[0].x, 2.2 / 5, 1e-5);
  EXPECT_NEAR(points[1].x, 4.2 / 5, 1e-5);
}

TEST(GraphData, AChartThatIsDueIsDrawnWithoutANewRow) {
  GraphWorld world({1, 2});
  for (const float depth : {0.25F, 0.5F}) world.Record(depth, {{1, 4.5F}, {2, 4.5F}});
  const auto first = Clearings(1);
  const auto second = Clearings(2);
  display.GraphRedraw[2] = kTrue;
  for (int times = 0; times < 3; ++times) RedrawDueGraphs();
  EXPECT_EQ(Clearings(1), first);
  EXPECT_EQ(Clearings(2), second + 1);
  EXPECT_EQ(world.Drawn(1, GraphSeries::Main).size(), 2U);
  EXPECT_EQ(world.Drawn(2, GraphSeries::Main).size(), 2U);
}

// --- the depth axis ------------------------------------------------------------------------------

TEST(GraphDepthAxis, BeginsAtTheStartDepthWithOneMetre) {
  GraphWorld world;
  session.StartDepth = 3;
  StartDepthAxis();
  EXPECT_EQ(display.GraphDepthMin, 3);
  EXPECT_EQ(display.GraphDepthMax, 4);
  EXPECT_EQ(display.GraphDepthDivisions, 10);
  EXPECT_EQ(Main.lblGraphYmin.Caption, "3");
  EXPECT_EQ(Main.lblGraphYmax.Caption, "4");
}

TEST(GraphDepthAxis, ADeeperRowRedrawsAllGraphs) {
  GraphWorld world({1, 2});
  world.Record(0.5F, {{1, 4.5F}, {2, 4.5F}});
  world.Record(1.0F, {{1, 4.5F}, {2, 4.5F}});
  EXPECT_EQ(display.GraphDepthMax, 1);
  const auto first = Clearings(1);
  const auto second = Clearings(2);
  world.Record(1.02F, {{1, 4.5F}, {2, 4.5F}});
  EXPECT_EQ(display.GraphDepthMax, 2);
  EXPECT_EQ(Main.lblGraphYmax.Caption, "2");
  EXPECT_EQ(Clearings(1), first + 1);
  EXPECT_EQ(Clearings(2), second + 1);
  EXPECT_EQ(display.GraphRedraw[1], 0);
  EXPECT_EQ(display.GraphRedraw[2], 0);
  EXPECT_NEAR(world.Drawn(2, GraphSeries::Main).at(0).y, 0.25, 1e-5);
}

TEST(GraphDepthAxis, CountsInFeet) {
  GraphWorld world;
  settings.DepthUnits = 1;
  world.Record(0.25F, {{1, 4.5F}});
  EXPECT_EQ(display.GraphDepthMax, 1);
  world.Record(0.5F, {{1, 4.5F}});  // 1.64 ft
  EXPECT_EQ(display.GraphDepthMax, 2);
  EXPECT_EQ(Main.lblGraphYmax.Caption, "2");
  EXPECT_NEAR(world.Drawn(1, GraphSeries::Main).at(1).y, 0.5 * 3.281 / 2, 1e-5);
}

/// In feet what lies below the start is multiplied, and the start is not.
TEST(GraphDepthAxis, InFeetHoldsEveryRowWhateverTheStart) {
  struct Row {
    float depth, top, bottom, place;
  };
  const std::pair<float, std::vector<Row>> soundings[] = {
      {-12,
       {{-11.5F, -12, -10, 0.5F * 3.281F / 2},
        {-10, -12, -5, 2 * 3.281F / 7},
        {-4, -15, 25, 11 * 3.281F / 40},  // 14.2 ft move the start out, and so ask for 21.1
        {-2, -15, 30, 13 * 3.281F / 45}}},
      {-0.5F, {{0, -1, 3, 3.281F / 4}, {1.5F, -1, 8, 2.5F * 3.281F / 9}}},
      {3, {{3.25F, 3, 11, 0.25F * 3.281F / 8}, {5, 2, 18, 3 * 3.281F / 16}}},
  };
  for (const auto& [start, rows] : soundings) {
    GraphWorld world;
    settings.DepthUnits = 1;
    session.StartDepth = start;
    StartDepthAxis();
    world.AddRow(start, {{1, 4.5F}});
    for (const Row& row : rows) {
      SCOPED_TRACE(testing::Message() << row.depth << " m from " << start);
      world.Record(row.depth, {{1, 4.5F}});
      EXPECT_EQ(display.GraphDepthMin, row.top);
      EXPECT_EQ(display.GraphDepthMax, row.bottom);
      EXPECT_NEAR(world.Drawn(1, GraphSeries::Main).back().y, row.place, 1e-5);
    }
  }
}

TEST(GraphDepthAxis, TargetOfAResumeInFeetIsHeldFromAStartBelowZero) {
  GraphWorld world;
  settings.DepthUnits = 1;
  session.StartDepth = sounding.CurrentDepth = -3;
  StartDepthAxis();
  session.ResumeDepthStatus = 1;
  session.ResumeTargetDepth = 1;
  sounding.ConsoleMode = 1;
  GraphData();
  EXPECT_EQ(display.GraphDepthMin, -4);
  EXPECT_EQ(display.GraphDepthMax, 14);  // 5 m below the axis' start are 16.4 ft
}

TEST(GraphDepthAxis, IsNegatedForElevations) {
  GraphWorld world;
  settings.DepthFormat = 1;
  session.StartDepth = sounding.CurrentDepth = -12;
  StartDepthAxis();
  EXPECT_EQ(Main.lblGraphYmin.Caption, "12");
  world.Record(-11.5F, {{1, 4.5F}});
  EXPECT_EQ(Main.lblGraphYmax.Caption, "11");
  world.Record(-10.5F, {{1, 4.5F}});
  EXPECT_EQ(Main.lblGraphYmax.Caption, "10");
}

TEST(GraphDepthAxis, TakesTheTargetWhileAResumeWaits) {
  GraphWorld world;
  session.ResumeDepthStatus = 1;
  session.ResumeTargetDepth = 7.5F;
  sounding.ConsoleMode = 1;
  GraphData();
  EXPECT_EQ(display.GraphDepthMax, 8);
  EXPECT_EQ(Main.lblGraphYmax.Caption, "8");
  world.Record(9.5F, {{1, 1}});
  EXPECT_EQ(display.GraphDepthMax, 10);
}

TEST(GraphDepthAxis, TargetOfAResumeCountsInFeetToo) {
  GraphWorld world;
  settings.DepthUnits = 1;
  session.ResumeDepthStatus = 1;
  session.ResumeTargetDepth = 2;
  sounding.ConsoleMode = 1;
  GraphData();
  EXPECT_EQ(display.GraphDepthMax, 7);
}

TEST(GraphDepthAxis, TargetIsLeftOnceRowsAreRecorded) {
  GraphWorld world;
  session.ResumeDepthStatus = 1;
  session.ResumeTargetDepth = 7.5F;
  world.Record(0.5F, {{1, 1}});
  EXPECT_EQ(display.GraphDepthMax, 1);
}

// --- what can't be drawn -------------------------------------------------------------------------

TEST(GraphData, ReadingThatIsNoNumberLeavesTheAxis) {
  GraphWorld world;
  world.Record(0.25F, {{1, 4.5F}});
  world.Record(0.5F, {{1, std::numeric_limits<float>::quiet_NaN()}});
  world.Record(0.75F, {{1, std::numeric_limits<float>::infinity()}});
  world.Record(0.8F, {{1, 4}});
  world.Record(0.9F, {{1, 4}});
  EXPECT_EQ(display.GraphShownMax[1], 5);
  EXPECT_EQ(world.Drawn(1, GraphSeries::Main).size(), 2U);
}

TEST(GraphData, AxisWithoutASpanDrawsNoTrace) {
  GraphWorld world;
  world.Record(0.25F, {{1, 4.5F}});
  display.GraphAutoScale[1] = 0;
  world.Axes(1, 3, 3, 0, 1);
  world.Record(0.5F, {{1, 4.5F}});
  EXPECT_TRUE(world.Drawn(1, GraphSeries::Main).empty());
}

TEST(GraphData, EmptySlotAndNoGraphsAreNoFault) {
  GraphWorld world({1, 0});
  world.Record(0.25F, {{1, 4.5F}});
  EXPECT_FALSE(Main.pctGraph(1).steps.empty());
  EXPECT_TRUE(Main.pctGraph(2).steps.empty());
  display.GraphCount = 0;
  world.Record(0.5F, {{1, 4.5F}});
}

// --- the bar on the console ----------------------------------------------------------------------

TEST(GraphData, BarFillsFromTheLeftAndIsHeldAtTheRight) {
  GraphWorld world;
  channels.Baselines(1) = 1;
  channels.ChannelSensitivity(1) = 4;
  const Place track = Main.shpBar(1).Where;
  world.Record(0.25F, {{1, 3}});
  EXPECT_EQ(Main.lineBar(1).Where.left, track.left);
  EXPECT_NEAR(Main.lineBar(1).Where.width, track.width / 2, 1e-6);
  EXPECT_EQ(Main.lineBar(1).FillColor, kGreen);
  world.Record(0.5F, {{1, 9}});
  EXPECT_NEAR(Main.lineBar(1).Where.width, track.width, 1e-6);
  EXPECT_EQ(Main.lineBar(1).FillColor, kRed);
}

TEST(GraphData, ChannelWithoutASensorHasNoBar) {
  GraphWorld world({22});
  const Place before = Main.lineBar(1).Where;
  world.Record(0.25F, {{22, 30}});
  EXPECT_EQ(Main.lineBar(1).Where, before);
  EXPECT_FALSE(Main.lineBar(1).Visible);
}

TEST(GraphData, NewEntryOfTheConsoleClearsTheCharts) {
  GraphWorld world;
  for (const float depth : {0.25F, 0.5F}) world.Record(depth, {{1, 4.5F}});
  SetDisplay();
  EXPECT_TRUE(Main.pctGraph(1).traces.empty());
  EXPECT_EQ(display.GraphMax[1], 0);
  EXPECT_EQ(display.GraphShownMax[1], 0);
  EXPECT_TRUE(Main.frmGraphArea.Visible);
}

TEST(GraphData, RangeOfAResumedSoundingComesFromAllRows) {
  GraphWorld world({1, 3});
  world.AddRow(0.25F, {{1, 4.5F}, {3, -1.5F}});
  world.AddRow(0.5F, {{1, 2}, {3, 6.5F}});
  for (const int g : {1, 2, 3}) RebuildRange(g);
  EXPECT_EQ(display.GraphRedraw[1], kTrue) << "also where rounding changes neither end";
  EXPECT_NEAR(display.GraphShownMax[1], 4.5, 1e-4);
  EXPECT_EQ(display.GraphShownMin[1], 0);
  EXPECT_NEAR(display.GraphShownMin[2], -1.5, 1e-4);
  EXPECT_NEAR(display.GraphShownMax[2], 6.5, 1e-4);
  GraphData();
  EXPECT_EQ(display.GraphShownMax[1], 5);
  EXPECT_EQ(display.GraphShownMin[2], -2);
  EXPECT_EQ(world.Drawn(1, GraphSeries::Main).size(), 2U);
}

constexpr float kWithout = -32768.0F;  // a row that was recorded without the channel

TEST(GraphData, ARowWithoutTheChannelLeavesAGapAndTheRangeAlone) {
  GraphWorld world({1, 3});
  settings.CombinePPPlots = 1;
  channels.ChannelSensitivity(3) = -1;
  for (const int row : {1, 2, 3, 4, 5, 6}) {
    const bool without = row == 3 || row == 4;
    const float value = without ? kWithout : static_cast<float>(row);
    world.Record(0.1F * static_cast<float>(row), {{1, 2}, {3, value}, {4, value}, {5, 1}});
    EXPECT_EQ(Main.lblGraphValue(2).Caption == "-", without) << row;
    EXPECT_EQ(Main.lblGraphValue(1).Caption, "2.00");
    if (without) {
      EXPECT_EQ(Main.lineBar(2).Where.width, 0.0);
    }
  }
  EXPECT_EQ(display.GraphMin[2], 0.0F);
  EXPECT_NEAR(display.GraphMax[2], 6, 1e-4);
  display.GraphRedraw.fill(kTrue);
  RedrawDueGraphs();
  EXPECT_EQ(world.Drawn(1, GraphSeries::Main).size(), 6U);
  EXPECT_EQ(world.Drawn(2, GraphSeries::Main).size(), 4U);
  EXPECT_EQ(world.Drawn(2, GraphSeries::PorePressure4).size(), 4U);
  EXPECT_EQ(world.Drawn(2, GraphSeries::PorePressure5).size(), 6U);
}

}  // namespace
}  // namespace penlog
