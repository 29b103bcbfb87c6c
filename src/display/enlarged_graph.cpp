#include "display/enlarged_graph.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string>

#include "core/channels.h"
#include "core/message.h"
#include "core/session.h"
#include "core/settings.h"
#include "display/display_state.h"
#include "display/graph_data.h"
#include "display/graph_geometry.h"
#include "display/scale_axis.h"
#include "forms/enlarged_graph_form.h"
#include "forms/main_form.h"
#include "platform/numbers.h"
#include "platform/texts.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

// How much of the console's window stays in sight: the large depth and the values on the left; the
// strip and the exact depth above, with the window manager's title.
constexpr double kLeftOfConsole = 0.46;
constexpr double kTopOfConsole = 0.22;

int Graph() {
  return display.EnlargedGraphIndex;
}

std::size_t At() {
  return static_cast<std::size_t>(Graph());
}

int Channel() {
  return display.GraphChannel[At()];
}

/// "1,000" is a thousand to one operator and one to another.
bool HasThousands(const std::string& text) {
  const std::size_t comma = text.find(',');
  if (session.CommaDecimal == 1 || comma == std::string::npos) return false;
  return text.size() - comma == 4;
}

std::optional<float> TypedNumber(const std::string& text) {
  if (HasThousands(std::string(Trim(text)))) return std::nullopt;
  std::string typed = LocaleNumberText(Trim(text), session.CommaDecimal == 1);
  if (session.CommaDecimal == 1) std::replace(typed.begin(), typed.end(), ',', '.');
  return WholeSingleText(typed);
}

void ShowTexts() {
  const int channel = Channel();
  const bool ball = channel == 1 && settings.TipConfiguration == 1;
  EnlargedGraph.lblGraphLabel.Caption =
      channels.ChannelLabel(1, channel) + (ball ? " (BALL):" : ":");
  const std::string unit = channels.UnitLabel(channels.ChannelUnits(channel), channel);
  EnlargedGraph.lblGraphValue.Caption = GraphValueText(Graph()) + " " + unit;
  EnlargedGraph.lblGraphxMin.Caption = PlainNumber(display.GraphShownMin[At()]);
  EnlargedGraph.lblGraphxMax.Caption = PlainNumber(display.GraphShownMax[At()]);
  EnlargedGraph.lblGraphYmin.Caption = DepthAxisText(display.GraphDepthMin);
  EnlargedGraph.lblGraphYmax.Caption = DepthAxisText(display.GraphDepthMax);
}

void TakeEntry(const Label& from, Label& to) {
  to.Caption = from.Caption;
  to.ForeColor = from.ForeColor;
  to.Visible = static_cast<bool>(from.Visible);
}

/// The console's key of that graph.
void ShowKey() {
  EnlargedGraph.frmKey1.Visible = static_cast<bool>(Main.frmKey(Graph()).Visible);
  TakeEntry(Main.lblKeya(Graph()), EnlargedGraph.lblKeya);
  TakeEntry(Main.lblKeyb(Graph()), EnlargedGraph.lblKeyb);
  TakeEntry(Main.lblKeyc(Graph()), EnlargedGraph.lblKeyc);
}

void StandBesideDepth() {
  const WindowPlace& console = Main.Window;
  if (console.width <= 0) return;  // not shown yet
  const int left = static_cast<int>(std::lround(kLeftOfConsole * console.width));
  const int top = static_cast<int>(std::lround(kTopOfConsole * console.height));
  MoveWindow(EnlargedGraph,
             {console.left + left, console.top + top, console.width - left, console.height - top});
}

/// The typed ends hold as they are; only their step and ticks come from the rule of the axes.
void TakeTicksOfRange() {
  float max = display.GraphShownMax[At()];
  float min = display.GraphShownMin[At()];
  ScaleAxis(max, min, display.GraphStep[At()], display.GraphTicks[At()],
            display.GraphDivisions[At()]);
  display.GraphShownStep[At()] = display.GraphStep[At()];
  display.GraphShownTicks[At()] = display.GraphTicks[At()];
  display.GraphShownDivisions[At()] = display.GraphDivisions[At()];
}

}  // namespace

void Main_pctGraph_Click(int g) {
  if (sounding.ConsoleMode != 2 || g > display.GraphCount) return;
  // The fields hold the range of the graph that was there: OK would give it to this one.
  if (display.EnlargedGraphIndex != g) EnlargedGraph.frmSetXAxis.Visible = false;
  display.EnlargedGraphIndex = static_cast<std::int16_t>(g);
  Show(EnlargedGraph);
  StandBesideDepth();
  EnlargedGraph_Graph();
}

void EnlargedGraph_Graph() {
  FollowValueAxis(Graph());
  DrawGraph(Graph(), EnlargedGraph.pctGraph);
  ShowTexts();
  ShowKey();
}

void EnlargedGraph_pctGraph_Click() {
  SetText(EnlargedGraph.txtXmin, PlainNumber(display.GraphShownMin[At()]));
  SetText(EnlargedGraph.txtXmax, PlainNumber(display.GraphShownMax[At()]));
  EnlargedGraph.frmSetXAxis.Visible = true;
}

void EnlargedGraph_cmdOK_Click() {
  const auto min = TypedNumber(EnlargedGraph.txtXmin.Text);
  const auto max = TypedNumber(EnlargedGraph.txtXmax.Text);
  if (!min || !max) {
    const std::string field = min ? "X MAX" : "X MIN";
    Tell(field + " MUST BE A NUMBER.  THE RANGE STAYS AS IT WAS.");
    return;
  }
  display.GraphShownMin[At()] = *min;
  display.GraphShownMax[At()] = *max;
  display.GraphAutoScale[At()] = 0;
  display.GraphRedraw[At()] = kTrue;
  TakeTicksOfRange();
  EnlargedGraph.frmSetXAxis.Visible = false;
  EnlargedGraph_Graph();
}

void EnlargedGraph_cmdResetScale_Click() {
  display.GraphShownMin[At()] = display.GraphMin[At()];
  display.GraphShownMax[At()] = display.GraphMax[At()];
  display.GraphAutoScale[At()] = kTrue;
  display.GraphRedraw[At()] = kTrue;
  EnlargedGraph.frmSetXAxis.Visible = false;
  EnlargedGraph_Graph();  // rounds the range, as on the console
}

void EnlargedGraph_Command1_Click() {
  display.GraphRedraw.fill(kTrue);  // no row is new: nothing but a whole redraw may be added
  GraphData();
  Unload(EnlargedGraph);
}

}  // namespace penlog
