#include "screens/connection_status.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "conelink/cone_state.h"
#include "conelink/port_supervision.h"
#include "core/channels.h"
#include "core/session.h"
#include "core/settings.h"
#include "forms/main_form.h"
#include "forms/notice_colours.h"
#include "forms/warning_form.h"
#include "platform/numbers.h"
#include "sounding/depth_count.h"
#include "sounding/missing_steps.h"
#include "sounding/sounding_state.h"
#include "sounding/truck_interface.h"

namespace penlog {

namespace {

// Sizes on a display of 800 by 600.
constexpr int kWidth = 480;
constexpr int kMenuHeight = 24;
constexpr int kMargin = 6;
constexpr int kGap = 4;
constexpr int kPanelHeight = 79;
constexpr int kLeastPanelHeight = 56;  // a narrower place draws the whole window smaller
constexpr int kProgressHeight = 20;
constexpr int kFooterHeight = 32;
constexpr double kShareOfDisplay = 0.9;  // as the other windows
constexpr int kDesignWidth = 800;
constexpr int kDesignHeight = 600;

/// Edges within the console's window, as shares of it.
struct FreeArea {
  double left;
  double top;
  double right;
  double bottom;
};
// What of the console the status window may cover, with the title that a window manager adds or
// without it: the charts, and nothing of the strip, the depth, the readings, the lamps and the
// buttons. On a wide window the quits and the questions stand beside the charts. On a narrow one
// they stand below: there the window leaves the quits free, and goes behind while a question is up.
constexpr FreeArea kWideFree = {0.322, 0.28, 0.762, 0.785};
constexpr FreeArea kNarrowFree = {0.42, 0.22, 0.99, 0.785};
constexpr double kNarrowBelow = 1.5;  // width by height
constexpr double kTitleShare = 0.07;  // of the window's height, at most

struct PanelFrames {
  LinkPanel panel;
  Frame& connected;
  Frame& warning;
};

std::vector<PanelFrames> AllPanels() {
  return {{LinkPanel::Truck, frmWarning.frmEncoderConnected, frmWarning.frmEncoderWarning},
          {LinkPanel::Cone, frmWarning.frmSerialConnected, frmWarning.frmSerialWarning},
          {LinkPanel::Modules, frmWarning.frmModulesConnected, frmWarning.frmModuleWarning},
          {LinkPanel::ASCIIOut, frmWarning.frmASCIISerialConnected, frmWarning.frmASCIIOutWarning},
          {LinkPanel::FrameGrabber, frmWarning.frmFrameGrabberConnected,
           frmWarning.frmSensorayWarning}};
}

/// The console's own arrangement turns with its shape without the title: this counts the largest.
bool IsNarrow(const WindowPlace& main) {
  return main.width < kNarrowBelow * (1 - kTitleShare) * main.height;
}

/// The part of the console that the window may cover, and no higher than it is drawn in full.
WindowPlace OverCharts(const WindowPlace& main, int height) {
  const FreeArea& free = IsNarrow(main) ? kNarrowFree : kWideFree;
  const auto part = [](double share, int whole) {
    return static_cast<int>(std::lround(share * whole));
  };
  const int room_down = part(free.bottom - free.top, main.height);
  return {main.left + part(free.left, main.width), main.top + part(free.top, main.height),
          part(free.right - free.left, main.width), std::min(height, room_down)};
}

/// Whether the questions may stand below the charts.
bool LiesOverQuestions() {
  const WindowPlace& main = Main.Window;
  const bool beside = frmWarning.Window.left >= main.left + main.width;
  return !beside && main.width < kNarrowBelow * main.height;
}

/// Stacks controls below each other, in fractions of the window below its menu.
class Stack {
 public:
  explicit Stack(int height) : height_(height) {}
  Place Next(int height) {
    const Place place{true, Part(kMargin, kWidth), Part(top_, height_),
                      Part(kWidth - 2 * kMargin, kWidth), Part(height, height_)};
    top_ += height + kGap;
    return place;
  }

 private:
  static double Part(int part, int whole) { return static_cast<double>(part) / whole; }
  int height_;
  int top_ = kMargin;
};

int OnDisplay(float scale, int size) {
  return static_cast<int>(std::lround(static_cast<double>(scale) * size));
}

/// Of the window on a display of 800 by 600, with one panel more for the depth steps.
int HeightWith(int panel_height, std::size_t panels) {
  return kMenuHeight + static_cast<int>(panels + 1) * (panel_height + kGap) + kProgressHeight +
         kGap + kFooterHeight + 2 * kMargin;
}

int FullHeight(std::size_t panels) {
  return HeightWith(kPanelHeight, panels);
}

/// Where the coupled window stands.
WindowPlace CoupledPlace(std::size_t panels) {
  const double scale =
      kShareOfDisplay * static_cast<double>(std::min(session.ScreenScaleX, session.ScreenScaleY));
  const auto scaled = [scale](int size) { return static_cast<int>(std::lround(scale * size)); };
  return BesideMain(Main.Window, scaled(kWidth), scaled(FullHeight(panels)),
                    OnDisplay(session.ScreenScaleX, kDesignWidth),
                    OnDisplay(session.ScreenScaleY, kDesignHeight));
}

/// Full, or what its place leaves it.
int HeightFor(std::size_t panels) {
  const int full = FullHeight(panels);
  if (Main.Window.width <= 0 || connection_status.Coupled != kTrue) return full;
  const WindowPlace place = CoupledPlace(panels);
  const double height = static_cast<double>(kWidth) * place.height / std::max(1, place.width);
  return std::clamp(static_cast<int>(std::lround(height)), HeightWith(kLeastPanelHeight, panels),
                    full);
}

/// Of each panel and that of the depth steps: they share what the rows below leave.
int PanelHeight(int content, std::size_t panels) {
  const int parts = static_cast<int>(panels) + 1;
  const int rows = kProgressHeight + kGap + kFooterHeight + 2 * kMargin;
  return std::min(kPanelHeight, (content - rows) / parts - kGap);
}

/// A frame grabber's board without a port keeps its place and shows nothing in it.
bool IsShown(LinkPanel panel, const LinkSetup& setup) {
  const bool no_port = setup.lumen_probe == 1 && setup.overlay_port <= 0;
  return panel != LinkPanel::FrameGrabber || !no_port;
}

void ShowPanel(const PanelFrames& frames, bool shown) {
  if (!shown) frames.connected.Visible = frames.warning.Visible = false;
  if (shown && !frames.warning.Visible) frames.connected.Visible = true;
}

void LayOut() {
  const LinkSetup setup = LinksInUse();
  const auto panels = PanelsOf(setup);
  const int height = HeightFor(panels.size()) - kMenuHeight;
  const int panel_height = PanelHeight(height, panels.size());
  Stack stack(height);
  for (const LinkPanel panel : panels) {
    const Place place = stack.Next(panel_height);
    for (const PanelFrames& frames : AllPanels()) {
      if (frames.panel == panel) frames.connected.Where = frames.warning.Where = place;
    }
  }
  for (const PanelFrames& frames : AllPanels()) {
    const bool needed = std::find(panels.begin(), panels.end(), frames.panel) != panels.end();
    ShowPanel(frames, needed && IsShown(frames.panel, setup));
  }
  frmWarning.frmSteps.Where = stack.Next(panel_height);
  frmWarning.lblProgress.Where = stack.Next(kProgressHeight);
  frmWarning.Label6.Where = stack.Next(kFooterHeight);
  frmWarning.DesignHeight = height + kMenuHeight;
  connection_status.LaidOut = setup;
}

void SnapToMain() {
  connection_status.MainPlace = Main.Window;
  LayOut();
  if (Main.Window.width <= 0) return;  // not shown yet
  MoveWindow(frmWarning, CoupledPlace(PanelsOf(LinksInUse()).size()));
}

/// A question of the console lies in the window's place on a narrow one, and comes first.
void GiveWay() {
  const bool asked = Main.frmLocalWarning.Visible || Main.frmTakeFinalBaseline.Visible;
  const bool gives = asked && connection_status.Coupled == kTrue && LiesOverQuestions();
  if (gives && ShownForms().front() != &frmWarning) SendBehind(frmWarning);
  const bool gave = std::exchange(connection_status.GivesWay, gives);
  if (gave && !gives && cone.WarningShown == kTrue) Show(frmWarning);
}

void FollowPorts() {
  if (connection_status.LaidOut == LinksInUse()) return;
  connection_status.Coupled == kTrue ? SnapToMain() : LayOut();
}

/// Edges that the port has lost since the last look.
std::int64_t NewlyLost(const SerialPort& port, std::int64_t& seen) {
  const std::int64_t now = port.EdgesLostCount();
  return now - std::exchange(seen, now);
}

/// The cone's port counts as long as it is the truck interface's too; what it lost before is not
/// the truck's.
std::int64_t EdgesLostInAll() {
  ConnectionStatusState& state = connection_status;
  state.EdgesLost += NewlyLost(Main.EncoderComm, state.SeenOnTruckPort);
  const std::int64_t on_cones_port = NewlyLost(Main.ConeComm, state.SeenOnConePort);
  if (TruckSharesConePort()) state.EdgesLost += on_cones_port;
  return state.EdgesLost;
}

void ShowEdgeHealth() {
  EdgeHealth health;
  missing_steps.EdgesLost = EdgesLostInAll() - missing_steps.EdgesLostAtStart;
  health.lost = missing_steps.EdgesLostBefore + missing_steps.EdgesLost;
  health.polled = TruckPort().PortOpen() && TruckPort().EdgesArePolled();
  health.steps_may_be_missing = sounding.StepsMayBeMissing == kTrue;
  health.missing_depth = sounding.StepsMayBeMissingDepth;
  health.times_away = missing_steps.TimesAway;
  health.first_depth = missing_steps.FirstDepth;
  const bool all_well = health.lost == 0 && !health.polled && !health.steps_may_be_missing;
  frmWarning.frmSteps.BackColor = all_well ? kGrey : kAmber;
  frmWarning.frmSteps.Caption = all_well ? "DEPTH STEPS: OK" : "DEPTH STEPS MAY BE MISSING";
  Main.lblStepsSign.Visible = health.lost > 0 || health.steps_may_be_missing;
  frmWarning.lblSteps.Caption = EdgeHealthText(health, settings.DepthUnits, settings.DepthFormat);
}

void ShowCoupling(bool coupled) {
  frmWarning.mnuUncoupleWarningScreen.Visible = coupled;
  frmWarning.mnuCoupleWarningScreen.Visible = !coupled;
  connection_status.Coupled = coupled ? kTrue : kFalse;
  cone.WarningPinned = coupled ? kFalse : kTrue;
}

}  // namespace

LinkSetup LinksInUse() {
  // A cone that came up under the truck interface's number shares nothing with it: its panel stays.
  const std::int16_t cone_port = ConeTookTheTrucksNumber() ? 0 : settings.ConeSerialPort;
  return {cone_port, settings.TruckInterfaceSerialPort, settings.ASCIIOutSerialPort,
          settings.VideoOverlaySerialPort, settings.LumenProbePresent};
}

std::vector<LinkPanel> PanelsOf(const LinkSetup& setup) {
  std::vector<LinkPanel> panels;
  if (setup.truck_port > 0 && setup.truck_port != setup.cone_port) {
    panels.push_back(LinkPanel::Truck);
  }
  panels.push_back(LinkPanel::Cone);
  panels.push_back(LinkPanel::Modules);
  if (setup.ascii_port > 0) panels.push_back(LinkPanel::ASCIIOut);
  if (setup.lumen_probe == 1 || setup.lumen_probe >= 3) panels.push_back(LinkPanel::FrameGrabber);
  return panels;
}

std::string EdgeHealthText(const EdgeHealth& health, int depth_units, int depth_format) {
  std::string text;
  const auto add = [&text](const std::string& line) { text += (text.empty() ? "" : "\n") + line; };
  if (health.steps_may_be_missing) {
    const auto at = [=](float depth) {
      return "AT " + MakeDepthTexts(depth, 0, depth_units, depth_format).depth;
    };
    const std::string times = PlainNumber(static_cast<long long>(health.times_away));
    add("THE TRUCK INTERFACE WAS AWAY " +
        (health.times_away < 2 ? at(health.missing_depth)
                               : times + " TIMES, FIRST " + at(health.first_depth) + ", LAST " +
                                     at(health.missing_depth)) +
        ".");
  }
  if (health.lost > 0) {
    const std::string count = PlainNumber(static_cast<long long>(health.lost));
    add(count + (health.lost == 1 ? " EDGE OF THE TRUCK INTERFACE WAS LOST."
                                  : " EDGES OF THE TRUCK INTERFACE WERE LOST."));
  }
  if (health.polled) add("THE ADAPTER TELLS NO EDGES: ITS LINES ARE POLLED.");
  return text.empty() ? "NO STEP IS KNOWN TO BE MISSING." : text;
}

WindowPlace BesideMain(const WindowPlace& main, int width, int height, int display_width,
                       int display_height) {
  WindowPlace place{main.left + main.width, main.top, width, height};
  if (place.left + width > display_width) place = OverCharts(main, height);
  place.left = std::max(0, std::min(place.left, display_width - place.width));
  place.top = std::max(0, std::min(place.top, display_height - place.height));
  return place;
}

void frmWarning_Load() {
  ShowCoupling(true);
  ShowEdgeHealth();
  SnapToMain();
  frmWarning.Timer2.Start();
}

void frmWarning_Timer1_Timer() {
  frmWarning.Timer1.Stop();
  if (cone.WarningShown == 0 && cone.WarningPinned == 0) SendBehind(frmWarning);
}

void frmWarning_Timer2_Timer() {
  FollowPorts();
  ShowEdgeHealth();
  GiveWay();
  if (connection_status.Coupled != kTrue || Main.Window == connection_status.MainPlace) return;
  SnapToMain();
}

void frmWarning_mnuUncoupleWarningScreen_Click() {
  ShowCoupling(false);
}

void frmWarning_mnuCoupleWarningScreen_Click() {
  ShowCoupling(true);
  SnapToMain();
  frmWarning.Timer1.Start();
}

}  // namespace penlog
