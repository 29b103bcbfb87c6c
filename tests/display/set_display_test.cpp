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
  SetDisplay();
  for (int g = 1; g <= 4; ++g) EXPECT_FALSE(Main.pctGraph(g).Visible);
  EXPECT_TRUE(Main.lblChanValue(1).Visible);
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

TEST_F(SetDisplayTest, ComputedChannelHasNoEntryInTheListButAGraph) {
  Graph({1, 22});
  SetDisplay();
  EXPECT_EQ(Main.lblGraphTitle(2).Caption, "SPT N:");
  EXPECT_EQ(Main.lblGraphUnits(2).Caption, "blows");
  EXPECT_FALSE(Main.shpBar(2).Visible);
  EXPECT_FALSE(Main.lineBar(2).Visible);
  EXPECT_TRUE(Main.shpBar(1).Visible);
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

TEST_F(SetDisplayTest, RangesStartAnew) {
  Graph({1});
  display.GraphMax[1] = 12;
  display.GraphDepthMax = 30;
  SetDisplay();
  EXPECT_EQ(display.GraphMax[1], 0);
  EXPECT_EQ(display.GraphDepthMin, 0);
  EXPECT_EQ(display.GraphDepthMax, 1);
}

}  // namespace
}  // namespace penlog
