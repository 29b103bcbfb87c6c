#include "display/set_display.h"

#include <gtest/gtest.h>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/settings.h"
#include "display/display_state.h"
#include "forms/main_form.h"
#include "support/world.h"

namespace penlog {
namespace {

class SetDisplayTest : public testing::Test {
 protected:
  SetDisplayTest() {
    channels = ChannelState{};
    settings = SettingsState{};
    display = DisplayState{};
    cone = ConeState{};
    cone.ConeId = "DCS0123";
    Define(1, "Tip resistance", "MPa");
    Define(2, "Sleeve friction", "kPa");
    Define(3, "Pore pressure", "kPa");
    Define(21, "Soil type", "zone");
    Define(22, "SPT N", "blows");
    channels.ChannelComputed(21) = channels.ChannelComputed(22) = 1;
  }
  ~SetDisplayTest() override {
    channels = ChannelState{};
    settings = SettingsState{};
    display = DisplayState{};
    cone = ConeState{};
  }

  static void Define(int channel, const char* label, const char* unit) {
    channels.ChannelPresent(channel) = kTrue;
    channels.ChannelLabel(1, channel) = label;
    channels.ChannelUnits(channel) = 2;
    channels.UnitLabel(1, channel) = "base";
    channels.UnitLabel(2, channel) = unit;
  }

  static void Graph(std::initializer_list<std::int16_t> shown) {
    display.GraphCount = static_cast<std::int16_t>(shown.size());
    std::copy(shown.begin(), shown.end(), display.GraphChannel.begin() + 1);
  }

  static double RightEnd(const Control& control) {
    return control.Where.left + control.Where.width;
  }

  World world;
};

TEST_F(SetDisplayTest, ListsChannelsThatArePresentAndNotComputed) {
  SetDisplay();
  EXPECT_TRUE(Main.lblChanLabel(1).Visible);
  EXPECT_EQ(Main.lblChanLabel(1).Caption, "Tip resistance(MPa)");
  EXPECT_TRUE(Main.lblChanValue(3).Visible);
  EXPECT_FALSE(Main.lblChanValue(4).Visible);
  EXPECT_FALSE(Main.lblChanLabel(21).Visible);
  EXPECT_FALSE(Main.lblChanValue(22).Visible);
  EXPECT_EQ(Main.lblCommStatus.Caption, "Cone # DCS0123 Found");
}

TEST_F(SetDisplayTest, GraphCountZeroShowsNoGraphAndTheRestWorks) {
  for (int g = 1; g <= 4; ++g) Main.pctGraph(g).Visible = true;
  display.GraphChannel = {0, 1, 3, 2, 22};
  SetDisplay();
  for (int g = 1; g <= 4; ++g) EXPECT_FALSE(Main.pctGraph(g).Visible);
  EXPECT_TRUE(Main.lblChanValue(1).Visible);
  EXPECT_EQ(Main.lblChanLabel(2).Caption, "Sleeve friction(kPa)");
  EXPECT_EQ(Main.lblCommStatus.Caption, "Cone # DCS0123 Found");
}

TEST_F(SetDisplayTest, ElementsHaveTheirCaptions) {
  const std::pair<const Control*, const char*> rows[] = {
      {&Main.lblReboundCaption, "REBOUND"},
      {&Main.lblSpeedCaption, "SPEED"},
      {&Main.Label10, "PRESSURE"},
      {&Main.lblClamp, "CLAMP"},
      {&Main.Label11, "DEPTH "},
      {&Main.lblOverrideCaption, "OVERRIDE"},
      {&Main.lblModeCaption, "MODE:"},
      {&Main.lblCommStatusCaption, "COMM STATUS"},
      {&Main.lblCommStatus, "No Cone Present"},
      {&Main.lblDissipationCaption, "DISSIPATION:"},
      {&Main.lblDissipationValue, "Inactive"},
      {&Main.lblNumberOfPicturesCaption, "Number Of Pictures"},
      {&Main.lblQuitForCaption, "QUIT FOR"},
  };
  for (const auto& [control, caption] : rows) EXPECT_EQ(control->Caption, caption);
}

TEST_F(SetDisplayTest, GraphWidthsFollowTheirCount) {
  const double widths[] = {0, 0.98, 0.96 / 2, 0.94 / 3, 0.92 / 4};
  for (int count = 0; count <= 4; ++count) EXPECT_DOUBLE_EQ(GraphWidth(count), widths[count]);
  Graph({1, 3, 2});
  SetDisplay();
  EXPECT_DOUBLE_EQ(Main.pctGraph(2).Where.left, 0.94 / 3 + 0.02);
  EXPECT_DOUBLE_EQ(Main.lblGraphValue(2).Where.left, 0.94 / 3 + 0.02 + 0.55 * 0.94 / 3);
  EXPECT_FALSE(Main.pctGraph(4).Visible);
}

TEST_F(SetDisplayTest, GraphsStandSideBySideWithTheirLabels) {
  constexpr double kGap = 0.02;  // of the area's width, between two graphs
  Graph({1, 3, 2, 22});
  for (std::int16_t count = 1; count <= 4; ++count) {
    display.GraphCount = count;
    SetDisplay();
    const double width = GraphWidth(count);
    for (int g = 1; g <= 4; ++g) {
      EXPECT_EQ(Main.pctGraph(g).Visible, g <= count);
      if (g > count) continue;
      const double left = (g - 1) * (width + kGap);
      EXPECT_DOUBLE_EQ(Main.pctGraph(g).Where.left, left);
      EXPECT_DOUBLE_EQ(Main.pctGraph(g).Where.width, width);
      EXPECT_DOUBLE_EQ(Main.lblGraphTitle(g).Where.left, left);
      EXPECT_DOUBLE_EQ(Main.lblGraphValue(g).Where.left, left + 0.55 * width);
      EXPECT_NEAR(RightEnd(Main.lblGraphUnits(g)), left + width, 1e-9);
      EXPECT_DOUBLE_EQ(Main.lblGraphxMin(g).Where.left, left);
      EXPECT_NEAR(RightEnd(Main.lblGraphxMax(g)), left + width, 1e-9);
      const double chart_end = Main.pctGraph(g).Where.top + Main.pctGraph(g).Where.height;
      EXPECT_GE(Main.lblGraphxMin(g).Where.top, chart_end);
      EXPECT_GE(Main.lblGraphxMax(g).Where.top, chart_end);
      EXPECT_LE(RightEnd(Main.pctGraph(g)), 1.0);
    }
  }
}

TEST_F(SetDisplayTest, GraphsOfAnEarlierLayoutAreHiddenWithAllTheirParts) {
  settings.TipPlotValues = 1;
  Graph({1, 3, 2, 20});
  SetDisplay();
  EXPECT_TRUE(Main.frmKey(1).Visible);
  display.GraphCount = 0;
  SetDisplay();
  for (int g = 1; g <= 4; ++g) {
    for (const Control* control : std::initializer_list<const Control*>{
             &Main.pctGraph(g), &Main.lblGraphTitle(g), &Main.lblGraphValue(g),
             &Main.lblGraphUnits(g), &Main.lblGraphxMin(g), &Main.lblGraphxMax(g), &Main.shpBar(g),
             &Main.lineBar(g), &Main.frmKey(g)}) {
      EXPECT_FALSE(control->Visible) << control->Name();
    }
  }
}

TEST_F(SetDisplayTest, ComputedChannelHasNoEntryInTheListButAGraph) {
  for (int channel = 19; channel <= 22; ++channel) {
    channels.ChannelPresent(channel) = kTrue;
    channels.ChannelComputed(channel) = 1;
  }
  Graph({1, 22});
  SetDisplay();
  EXPECT_EQ(Main.lblGraphTitle(2).Caption, "SPT N:");
  EXPECT_EQ(Main.lblGraphUnits(2).Caption, "blows");
  for (int channel = 19; channel <= 22; ++channel) {
    EXPECT_FALSE(Main.lblChanLabel(channel).Visible) << channel;
    EXPECT_FALSE(Main.lblChanValue(channel).Visible) << channel;
  }
  EXPECT_TRUE(Main.lblInclination.Visible) << "inclination has its own label";
}

TEST_F(SetDisplayTest, GraphOfChannel22HasNoBar) {
  Graph({1, 22, 21});
  SetDisplay();
  for (int g = 1; g <= 3; ++g) {
    EXPECT_EQ(Main.shpBar(g).Visible, g != 2);
    EXPECT_EQ(Main.lineBar(g).Visible, g != 2);
  }
}

TEST_F(SetDisplayTest, TitlesAndUnitsAreTheChannels) {
  Graph({1, 3});
  SetDisplay();
  EXPECT_EQ(Main.lblGraphTitle(1).Caption, "Tip resistance:");
  EXPECT_EQ(Main.lblGraphUnits(1).Caption, "MPa");
  EXPECT_EQ(Main.lblGraphTitle(2).Caption, "Pore pressure:");
  EXPECT_EQ(Main.lblGraphUnits(2).Caption, "kPa");
}

TEST_F(SetDisplayTest, ValuesAreWhiteInNormalUse) {
  SetDisplay();
  for (int channel = 1; channel <= 30; ++channel) {
    EXPECT_EQ(Main.lblChanValue(channel).ForeColor, kWhite) << channel;
  }
}

TEST_F(SetDisplayTest, BallTipWithThreeGraphsShowsTheWordTest) {
  settings.TipConfiguration = 1;
  const struct {
    std::initializer_list<std::int16_t> graphs;
    const char* title;
  } rows[] = {
      {{1}, "Tip resistance (BALL)"},
      {{1, 3}, "Tip resistance (BALL):"},
      {{1, 3, 2}, "testTip resistance (BALL):"},
      {{1, 3, 2, 21}, "Tip resistance (BALL):"},
  };
  for (const auto& row : rows) {
    Graph(row.graphs);
    SetDisplay();
    EXPECT_EQ(Main.lblGraphTitle(1).Caption, row.title);
  }
  Graph({1, 3, 2});
  EXPECT_EQ(GraphTitle(2), "Pore pressure:");
}

TEST_F(SetDisplayTest, KeysNameTheSeriesOfAGraphWithMoreThanOne) {
  Graph({1, 3});
  SetDisplay();
  EXPECT_FALSE(Main.frmKey(1).Visible);
  EXPECT_FALSE(Main.frmKey(2).Visible);
  settings.TipPlotValues = 1;
  settings.CombinePPPlots = 1;
  SetDisplay();
  EXPECT_TRUE(Main.frmKey(1).Visible);
  EXPECT_EQ(Main.lblKeya(1).Caption + Main.lblKeyb(1).Caption, "QcQt");
  EXPECT_FALSE(Main.lblKeyc(1).Visible);
  EXPECT_EQ(Main.lblKeya(2).Caption + Main.lblKeyb(2).Caption + Main.lblKeyc(2).Caption, "U1U2U3");
  EXPECT_TRUE(Main.lblKeyc(2).Visible);
}

TEST_F(SetDisplayTest, ChannelOutsideGraphs1And3HasNoKey) {
  settings.TipPlotValues = settings.CombinePPPlots = 1;
  Graph({2, 4});
  SetDisplay();
  EXPECT_FALSE(Main.frmKey(1).Visible);
  EXPECT_FALSE(Main.frmKey(2).Visible);
}

TEST_F(SetDisplayTest, RangesStartAnew) {
  Graph({1, 3, 2, 22});
  for (auto* range : {&display.GraphMin, &display.GraphMax, &display.GraphShownMin,
                      &display.GraphShownMax, &display.GraphStep}) {
    range->fill(12);
  }
  display.GraphDepthMin = 10;
  display.GraphDepthMax = 30;
  SetDisplay();
  for (std::size_t g = 1; g <= 4; ++g) {
    EXPECT_EQ(display.GraphMin[g], 0);
    EXPECT_EQ(display.GraphMax[g], 0);
    EXPECT_EQ(display.GraphShownMin[g], 0);
    EXPECT_EQ(display.GraphShownMax[g], 0);
    EXPECT_EQ(display.GraphStep[g], 0);
  }
  EXPECT_EQ(display.GraphDepthMin, 0);
  EXPECT_EQ(display.GraphDepthMax, 1);
}

}  // namespace
}  // namespace penlog
