#include "display/enlarged_graph.h"

#include <gtest/gtest.h>

#include "app/wiring.h"
#include "conelink/cone_state.h"
#include "display/alarms.h"
#include "display/graph_world.h"
#include "forms/enlarged_graph_form.h"
#include "sounding/quits.h"
#include "sounding/recording_pass.h"
#include "sounding/truck_interface.h"

namespace penlog {
namespace {

/// Two graphs, two rows; the second graph is enlarged.
struct EnlargedWorld : GraphWorld {
  EnlargedWorld() : GraphWorld({1, 3}) {
    WireScreens();
    Main.Load = nullptr;
    Show(Main);
    Record(0.25F, {{1, 4.5F}, {3, -2.5F}});
    Record(0.5F, {{1, 4.5F}, {3, 3}});
  }
  void Open() { Press(Main, Main.pctGraph(2)); }

  static void Type(const char* min, const char* max) {
    SetText(EnlargedGraph.txtXmin, min);
    SetText(EnlargedGraph.txtXmax, max);
  }
  void SetRange(const char* min, const char* max) {
    Press(EnlargedGraph, EnlargedGraph.pctGraph);
    Type(min, max);
    Press(EnlargedGraph, EnlargedGraph.cmdOK);
  }
};

TEST(EnlargedGraphScreen, OpensByAClickWhileRowsAreRecorded) {
  EnlargedWorld world;
  world.Open();
  EXPECT_TRUE(EnlargedGraph.Visible);
  EXPECT_EQ(display.EnlargedGraphIndex, 2);
  EXPECT_EQ(EnlargedGraph.lblGraphLabel.Caption, "Long 3:");
  EXPECT_EQ(EnlargedGraph.lblGraphValue.Caption, "3.00 u");
  EXPECT_EQ(EnlargedGraph.lblGraphxMin.Caption, "-3");
  EXPECT_EQ(EnlargedGraph.lblGraphxMax.Caption, "4");
  EXPECT_EQ(EnlargedGraph.lblGraphYmin.Caption, "0");
  EXPECT_EQ(EnlargedGraph.lblGraphYmax.Caption, "1");
  EXPECT_FALSE(EnlargedGraph.frmSetXAxis.Visible);
  EXPECT_EQ(EnlargedGraph.pctGraph.traces.at(0).points, Main.pctGraph(2).traces.at(0).points);
}

TEST(EnlargedGraphScreen, StandsBesideTheDepthAndBelowTheStrip) {
  EnlargedWorld world;
  const auto moves = EnlargedGraph.Moves();
  world.Open();
  EXPECT_EQ(EnlargedGraph.Moves(), moves) << "the console's place is not known yet";
  Unload(EnlargedGraph);
  Main.Window = {100, 50, 1000, 800};
  world.Open();
  EXPECT_EQ(EnlargedGraph.Window, (WindowPlace{560, 226, 540, 624}));
  EXPECT_EQ(EnlargedGraph.Moves(), moves + 1);
  Unload(EnlargedGraph);
  EnlargedGraph.Window = {0, 0, 900, 700};  // put elsewhere by hand
  world.Open();
  EXPECT_EQ(EnlargedGraph.Window, (WindowPlace{560, 226, 540, 624}));
}

TEST(EnlargedGraphScreen, OpensInNoOtherMode) {
  for (const int mode : {0, 1, 3, 4, 5, 8, 9}) {
    EnlargedWorld world;
    sounding.ConsoleMode = static_cast<std::int16_t>(mode);
    world.Open();
    EXPECT_FALSE(EnlargedGraph.Visible) << mode;
    EXPECT_EQ(display.EnlargedGraphIndex, 0) << mode;
  }
}

TEST(EnlargedGraphScreen, HiddenGraphOpensNothing) {
  EnlargedWorld world;
  Main_pctGraph_Click(3);
  EXPECT_FALSE(EnlargedGraph.Visible);
}

TEST(EnlargedGraphScreen, TitleNamesTheBallTip) {
  EnlargedWorld world;
  settings.TipConfiguration = 1;
  channels.ChannelArea(1) = settings.BallTipArea = 1000;
  world.Press(Main, Main.pctGraph(1));
  EXPECT_EQ(EnlargedGraph.lblGraphLabel.Caption, "Long 1 (BALL):");
  Unload(EnlargedGraph);
  world.Open();
  EXPECT_EQ(EnlargedGraph.lblGraphLabel.Caption, "Long 3:");
}

TEST(EnlargedGraphScreen, BeforeTheFirstRowThereIsNoValue) {
  GraphWorld world({1});
  display.EnlargedGraphIndex = 1;
  EnlargedGraph_Graph();
  EXPECT_TRUE(EnlargedGraph.pctGraph.traces.empty());
  EXPECT_EQ(EnlargedGraph.lblGraphxMax.Caption, "1");
}

TEST(EnlargedGraphScreen, ClickOnThePlotOffersTheRangeInForce) {
  EnlargedWorld world;
  world.Open();
  display.GraphShownMin[2] = -0.25F;
  display.GraphShownMax[2] = 12.5F;
  world.Press(EnlargedGraph, EnlargedGraph.pctGraph);
  EXPECT_TRUE(EnlargedGraph.frmSetXAxis.Visible);
  EXPECT_EQ(EnlargedGraph.txtXmin.Text, "-0.25");
  EXPECT_EQ(EnlargedGraph.txtXmax.Text, "12.5");
}

TEST(EnlargedGraphScreen, TypedRangeHoldsOnTheConsole) {
  EnlargedWorld world;
  world.Open();
  world.SetRange("0.5", "2.75");
  EXPECT_FALSE(EnlargedGraph.frmSetXAxis.Visible);
  EXPECT_EQ(EnlargedGraph.lblGraphxMin.Caption, "0.5");
  EXPECT_EQ(EnlargedGraph.lblGraphxMax.Caption, "2.75");
  EXPECT_EQ(display.GraphAutoScale[2], 0);
  EXPECT_EQ(display.GraphRedraw[2], -1);
  EXPECT_EQ(display.GraphShownStep[2], 1);
  EXPECT_EQ(display.GraphShownDivisions[2], 10);
  world.Press(EnlargedGraph, EnlargedGraph.Command1);
  EXPECT_FALSE(EnlargedGraph.Visible);
  EXPECT_EQ(Main.lblGraphxMax(2).Caption, "2.75");
  world.Record(0.75F, {{1, 4.5F}, {3, 30}});
  EXPECT_EQ(display.GraphShownMin[2], 0.5F);
  EXPECT_EQ(display.GraphShownMax[2], 2.75F);
  EXPECT_EQ(display.GraphShownMax[1], 5);
  EXPECT_NEAR(world.Drawn(2, GraphSeries::Main).at(1).x, 2.5 / 2.25, 1e-5);
}

TEST(EnlargedGraphScreen, TicksOfATypedRangeComeFromTheAxisRule) {
  EnlargedWorld world;
  world.Open();
  world.SetRange("0", "45");
  EXPECT_EQ(display.GraphShownStep[2], 5);
  EXPECT_EQ(display.GraphShownDivisions[2], 5);
  EXPECT_EQ(display.GraphShownTicks[2], 9);
  EXPECT_EQ(display.GraphShownMax[2], 45);
}

TEST(EnlargedGraphScreen, ResetScaleLetsTheRangeFollowTheDataAgain) {
  EnlargedWorld world;
  world.Open();
  world.SetRange("0", "50");
  world.Press(EnlargedGraph, EnlargedGraph.pctGraph);
  world.Press(EnlargedGraph, EnlargedGraph.cmdResetScale);
  EXPECT_EQ(display.GraphAutoScale[2], -1);
  EXPECT_EQ(display.GraphRedraw[2], -1);
  EXPECT_EQ(EnlargedGraph.lblGraphxMin.Caption, "-3");
  EXPECT_EQ(EnlargedGraph.lblGraphxMax.Caption, "4");
  EXPECT_FALSE(EnlargedGraph.frmSetXAxis.Visible);
  world.Press(EnlargedGraph, EnlargedGraph.Command1);
  world.Record(0.75F, {{3, 12.5F}});
  EXPECT_EQ(display.GraphShownMax[2], 14);
}

TEST(EnlargedGraphScreen, TextThatIsNoNumberIsToldAndTheRangeStays) {
  const std::pair<const char*, const char*> rows[] = {{"", "5"},    {"0", ""},     {"abc", "5"},
                                                      {"0", "5x"},  {"1 2", "5"},  {"0", "1e99"},
                                                      {"nan", "5"}, {"0", "1,000"}};
  for (const auto& [min, max] : rows) {
    EnlargedWorld world;
    world.Open();
    world.SetRange(min, max);
    EXPECT_TRUE(EnlargedGraph.frmSetXAxis.Visible) << min << " " << max;
    EXPECT_EQ(display.GraphShownMin[2], -3) << min << " " << max;
    EXPECT_EQ(display.GraphShownMax[2], 4) << min << " " << max;
    EXPECT_EQ(display.GraphAutoScale[2], -1) << min << " " << max;
    ASSERT_FALSE(OpenBoxes().empty()) << min << " " << max;
    EXPECT_NE(OpenBoxes().back().text.find("MUST BE A NUMBER"), std::string::npos);
  }
}

TEST(EnlargedGraphScreen, TypedNumbersTakeTheDecimalMarkOfTheLocale) {
  for (const bool comma : {false, true}) {
    EnlargedWorld world;
    session.CommaDecimal = comma ? 1 : 0;
    world.Open();
    world.SetRange(" -0,5 ", "2.5");
    EXPECT_EQ(display.GraphShownMin[2], -0.5F) << comma;
    EXPECT_EQ(display.GraphShownMax[2], 2.5F) << comma;
  }
}

TEST(EnlargedGraphScreen, ARangeTurnedRoundIsTaken) {
  EnlargedWorld world;
  world.Open();
  world.SetRange("4", "0");
  EXPECT_EQ(display.GraphShownMin[2], 4);
  EXPECT_EQ(display.GraphShownMax[2], 0);
  EXPECT_NEAR(EnlargedGraph.pctGraph.traces.at(0).points.at(1).x, 0.25, 1e-5);
  world.SetRange("3", "3");
  EXPECT_TRUE(EnlargedGraph.pctGraph.traces.empty());
}

TEST(EnlargedGraphScreen, LeavingDrawsTheChartsAnewAndNothingTwice) {
  EnlargedWorld world;
  world.Open();
  const auto before = Main.pctGraph(1).clearings;
  world.Press(EnlargedGraph, EnlargedGraph.Command1);
  EXPECT_EQ(Main.pctGraph(1).clearings, before + 1);
  EXPECT_EQ(world.Drawn(1, GraphSeries::Main).size(), 2U);
}

TEST(EnlargedGraphScreen, ClosingItsWindowLeavesIt) {
  EnlargedWorld world;
  world.Open();
  OperatorAction close;
  close.kind = ActionKind::Close;
  close.form = &EnlargedGraph;
  PostActionNow(close);
  Yield();
  EXPECT_FALSE(EnlargedGraph.Visible);
}

TEST(EnlargedGraphScreen, KeyIsThatOfTheConsole) {
  EnlargedWorld world;
  settings.CombinePPPlots = 1;
  SetDisplay();
  world.Open();
  EXPECT_TRUE(EnlargedGraph.frmKey1.Visible);
  EXPECT_EQ(EnlargedGraph.lblKeya.Caption, "U1");
  EXPECT_EQ(EnlargedGraph.lblKeyc.Caption, "U3");
  EXPECT_TRUE(EnlargedGraph.lblKeyc.Visible);
  EXPECT_EQ(EnlargedGraph.lblKeyb.ForeColor, kGreen);
}

TEST(EnlargedGraphScreen, ARowThatWasDueAlreadyIsDrawnOnIt) {
  EnlargedWorld world;
  world.Open();
  sounding.CurrentDepth = 0.75F;
  sounding.Readings(3) = 2;
  sounding.ReadingsFresh = sounding.RecordPending = -1;
  TakeDueRow();
  EXPECT_EQ(EnlargedGraph.pctGraph.traces.at(0).points.size(), 3U);
  EXPECT_EQ(EnlargedGraph.lblGraphValue.Caption, "2.00 u");
}

TEST(EnlargedGraphScreen, WithoutRoomForARowARangeIsStillDrawn) {
  EnlargedWorld world;
  display.GraphRedraw[1] = kTrue;
  const auto before = Main.pctGraph(1).clearings;
  const std::int32_t rows = std::exchange(sounding.RowCount, kMostRows);
  sounding.ReadingsFresh = sounding.RecordPending = kTrue;
  TakeDueRow();
  sounding.RowCount = rows;
  EXPECT_EQ(Main.pctGraph(1).clearings, before + 1);
  EXPECT_EQ(display.GraphRedraw[1], 0);
}

TEST(EnlargedGraphScreen, AnotherGraphClosesTheFieldsOfTheOneBefore) {
  EnlargedWorld world;
  world.Open();
  world.Press(EnlargedGraph, EnlargedGraph.pctGraph);
  world.Type("1", "2");
  world.Open();
  EXPECT_TRUE(EnlargedGraph.frmSetXAxis.Visible) << "the same graph: the fields are its own";
  world.Press(Main, Main.pctGraph(1));
  EXPECT_EQ(display.EnlargedGraphIndex, 1);
  EXPECT_FALSE(EnlargedGraph.frmSetXAxis.Visible);
  world.Press(EnlargedGraph, EnlargedGraph.pctGraph);
  EXPECT_EQ(EnlargedGraph.txtXmin.Text, "0");
  EXPECT_EQ(EnlargedGraph.txtXmax.Text, "5");
}

TEST(EnlargedGraphScreen, MakesWayForTheStopQuestion) {
  EnlargedWorld world;
  world.Open();
  Main.cmdStart.Caption = "STOP";
  Main.cmdStart.Enabled = true;
  display.GraphRedraw[1] = kTrue;  // a range was set on it
  world.Press(Main, Main.cmdStart);
  EXPECT_TRUE(Main.frmLocalWarning.Visible);
  EXPECT_FALSE(EnlargedGraph.Visible);
  EXPECT_EQ(display.GraphRedraw[1], 0) << "the console's chart has taken it over";
}

TEST(EnlargedGraphScreen, MakesWayForAQuitOnceAsItComesUp) {
  EnlargedWorld world;
  channels.QuitLimitShallow(2) = channels.QuitLimitDeep(2) = 1;
  sounding.Readings(2) = 5;
  world.Open();
  display.GraphRedraw[1] = kTrue;
  for (int pass = 0; pass < 15; ++pass) CheckQuits();
  EXPECT_TRUE(Main.frmQuitWarning.Visible);
  EXPECT_FALSE(EnlargedGraph.Visible);
  EXPECT_EQ(display.GraphRedraw[1], 0);
  world.Open();
  CheckQuits();
  EXPECT_TRUE(EnlargedGraph.Visible);
}

TEST(EnlargedGraphScreen, MakesWayForANewAlarm) {
  void (*const raised[])() = {
      [] { cone.ConeLinkUp = kFalse; },
      [] { cone.ConePortLost = kTrue; },
      [] { cone.TruckPortLost = kTrue; },
      [] { sounding.Held[0].Text = "a row\r\n"; },
      [] { sounding.Held[1].Text = "a row\r\n"; },
  };
  for (const auto raise : raised) {
    EnlargedWorld world;
    cone.ConeLinkUp = kTrue;
    FollowAlarms();
    world.Open();
    world.SetRange("0", "50");
    FollowAlarms();
    EXPECT_TRUE(EnlargedGraph.Visible);
    raise();
    FollowAlarms();
    EXPECT_FALSE(EnlargedGraph.Visible);
    EXPECT_EQ(Main.lblGraphxMax(2).Caption, "50") << "the console's chart has taken it over";
    world.Open();
    FollowAlarms();
    EXPECT_TRUE(EnlargedGraph.Visible) << "what stands on is not new";
  }
}

}  // namespace
}  // namespace penlog
