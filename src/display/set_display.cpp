#include "display/set_display.h"

#include <array>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/settings.h"
#include "display/display_state.h"
#include "display/graph_values.h"
#include "forms/main_form.h"

namespace penlog {

namespace {

constexpr double kGap = 0.02;  // between two graphs, of the area's width
constexpr int kMostGraphs = 4;

// Rows of the chart area, in fractions of its height.
constexpr double kTitleTop = 0.0;
constexpr double kTitleHeight = 0.075;
constexpr double kValueTop = 0.08;
constexpr double kValueHeight = 0.085;
constexpr double kUnitsTop = 0.165;
constexpr double kUnitsHeight = 0.078;
constexpr double kBarTop = 0.246;
constexpr double kBarHeight = 0.02;
constexpr double kChartTop = 0.27;
constexpr double kChartHeight = 0.65;
constexpr double kRangeTop = 0.925;
constexpr double kRangeHeight = 0.075;
constexpr double kValueAt = 0.55;  // of a graph's width; before it the key, below it the unit
constexpr double kEnd = 0.35;  // of a graph's width, for the figure at each end of its axis

std::string SelectedUnit(int channel) {
  return channels.UnitLabel(channels.ChannelUnits(channel), channel);
}

void ShowValueList() {
  for (int channel = 1; channel <= kChannels; ++channel) {
    const bool listed =
        channels.ChannelComputed(channel) == 0 && channels.ChannelPresent(channel) == kTrue;
    Main.lblChanLabel(channel).Visible = listed;
    Main.lblChanValue(channel).Visible = listed;
    if (!listed) continue;
    Main.lblChanLabel(channel).Caption =
        channels.ChannelLabel(1, channel) + "(" + SelectedUnit(channel) + ")";
  }
}

void HideGraphs() {
  for (int g = 1; g <= kMostGraphs; ++g) {
    for (Control* control : std::initializer_list<Control*>{
             &Main.lblGraphTitle(g), &Main.lblGraphValue(g), &Main.lblGraphUnits(g),
             &Main.lblGraphxMin(g), &Main.lblGraphxMax(g), &Main.pctGraph(g), &Main.shpBar(g),
             &Main.lineBar(g), &Main.frmKey(g)}) {
      control->Visible = false;
    }
  }
}

void Put(Control& control, double left, double top, double width, double height) {
  control.Where = {true, left, top, width, height};
  control.Visible = true;
}

/// The series names of a graph with more than one series; it stays hidden for one.
void ShowKey(int g) {
  const int channel = display.GraphChannel[static_cast<std::size_t>(g)];
  const bool tip = ShowsQt(channel);
  const bool pore_pressures = ShowsAllPorePressures(channel);
  Main.frmKey(g).Visible = tip || pore_pressures;
  Main.lblKeyc(g).Visible = pore_pressures;
  Main.lblKeya(g).ForeColor = kRed;
  if (tip) {
    Main.lblKeya(g).Caption = "Qc";
    Main.lblKeyb(g).Caption = "Qt";
    Main.lblKeyb(g).ForeColor = kBlue;
  } else if (pore_pressures) {
    Main.lblKeya(g).Caption = "U1";
    Main.lblKeyb(g).Caption = "U2";
    Main.lblKeyc(g).Caption = "U3";
    Main.lblKeyb(g).ForeColor = kGreen;
    Main.lblKeyc(g).ForeColor = kBlue;
  }
}

void LayOutGraph(int g, double left, double width) {
  const int channel = display.GraphChannel[static_cast<std::size_t>(g)];
  Put(Main.lblGraphTitle(g), left, kTitleTop, width, kTitleHeight);
  Put(Main.lblGraphValue(g), left + width * kValueAt, kValueTop, width * (1 - kValueAt),
      kValueHeight);
  Put(Main.lblGraphUnits(g), left + width * kValueAt, kUnitsTop, width * (1 - kValueAt),
      kUnitsHeight);
  Put(Main.pctGraph(g), left, kChartTop, width, kChartHeight);
  Put(Main.lblGraphxMin(g), left, kRangeTop, width * kEnd, kRangeHeight);
  Put(Main.lblGraphxMax(g), left + width * (1 - kEnd), kRangeTop, width * kEnd, kRangeHeight);
  Put(Main.shpBar(g), left, kBarTop, width, kBarHeight);
  Put(Main.lineBar(g), left, kBarTop, 0, kBarHeight);
  Main.shpBar(g).Visible = Main.lineBar(g).Visible = channel != 22;
  Main.frmKey(g).Where = {true, left, kValueTop, width * (kValueAt - kGap), kValueHeight};
  Main.lblGraphTitle(g).Caption = GraphTitle(g);
  Main.lblGraphUnits(g).Caption = SelectedUnit(channel);
  ShowKey(g);
}

void ClearRanges() {
  const DisplayState start;
  for (int g = 1; g <= kMostGraphs; ++g) Main.pctGraph(g).Cls();
  display.GraphMin = start.GraphMin;
  display.GraphMax = start.GraphMax;
  display.GraphShownMin = start.GraphShownMin;
  display.GraphShownMax = start.GraphShownMax;
  display.GraphStep = start.GraphStep;
  display.GraphDivisions = start.GraphDivisions;
  display.GraphTicks = start.GraphTicks;
  display.GraphShownStep = start.GraphShownStep;
  display.GraphShownDivisions = start.GraphShownDivisions;
  display.GraphShownTicks = start.GraphShownTicks;
  display.GraphDepthMin = 0;
  display.GraphDepthMax = 1;
}

}  // namespace

double GraphWidth(int count) {
  constexpr std::array<double, 5> kTotal = {0, 0.98, 0.96, 0.94, 0.92};
  return count < 1 || count > kMostGraphs ? 0 : kTotal[static_cast<std::size_t>(count)] / count;
}

std::string GraphTitle(int g) {
  const int channel = display.GraphChannel[static_cast<std::size_t>(g)];
  const std::string label = channels.ChannelLabel(1, channel);
  if (channel != 1 || settings.TipConfiguration != 1) return label + ":";
  if (display.GraphCount == 1) return label + " (BALL)";
  return (display.GraphCount == 3 ? "test" : "") + label + " (BALL):";
}

void SetDisplay() {
  Main.lblCommStatus.Caption = "Cone # " + cone.ConeId + " Found";
  ShowValueList();
  HideGraphs();
  const double width = GraphWidth(display.GraphCount);
  Main.frmGraphArea.Visible = width > 0;
  for (int g = 1; width > 0 && g <= display.GraphCount; ++g) {
    LayOutGraph(g, (g - 1) * (width + kGap), width);
  }
  ClearRanges();
}

}  // namespace penlog
