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
#include "forms/warning_form.h"
#include "platform/numbers.h"
#include "sounding/depth_count.h"
#include "sounding/sounding_state.h"
#include "sounding/truck_interface.h"

namespace penlog {

namespace {

// Sizes on a display of 800 by 600.
constexpr int kWidth = 480;
constexpr int kMenuHeight = 24;
constexpr int kMargin = 6;
constexpr int kGap = 5;
constexpr int kPanelHeight = 79;
constexpr int kStepsHeight = 78;
constexpr int kProgressHeight = 20;
constexpr int kFooterHeight = 32;
constexpr double kShareOfDisplay = 0.9;  // as the other windows
constexpr int kDesignWidth = 800;
constexpr int kDesignHeight = 600;

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

int ContentHeight(std::size_t panels) {
  return static_cast<int>(panels) * (kPanelHeight + kGap) + kStepsHeight + kGap + kProgressHeight +
         kGap + kFooterHeight + 2 * kMargin;
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
  const int height = ContentHeight(panels.size());
  Stack stack(height);
  for (const LinkPanel panel : panels) {
    const Place place = stack.Next(kPanelHeight);
    for (const PanelFrames& frames : AllPanels()) {
      if (frames.panel == panel) frames.connected.Where = frames.warning.Where = place;
    }
  }
  for (const PanelFrames& frames : AllPanels()) {
    const bool needed = std::find(panels.begin(), panels.end(), frames.panel) != panels.end();
    ShowPanel(frames, needed && IsShown(frames.panel, setup));
  }
  frmWarning.frmSteps.Where = stack.Next(kStepsHeight);
  frmWarning.lblProgress.Where = stack.Next(kProgressHeight);
  frmWarning.Label6.Where = stack.Next(kFooterHeight);
  frmWarning.DesignHeight = height + kMenuHeight;
  connection_status.LaidOut = setup;
}

void SnapToMain() {
  connection_status.MainPlace = Main.Window;
  if (Main.Window.width <= 0) return;  // not shown yet
  const auto across = static_cast<double>(session.ScreenScaleX);
  const auto down = static_cast<double>(session.ScreenScaleY);
  const double scale = kShareOfDisplay * std::min(across, down);
  const auto scaled = [scale](int size) { return static_cast<int>(std::lround(scale * size)); };
  const auto whole = [](double part, int size) {
    return static_cast<int>(std::lround(part * size));
  };
  MoveWindow(frmWarning, BesideMain(Main.Window, scaled(kWidth), scaled(frmWarning.DesignHeight),
                                    whole(across, kDesignWidth), whole(down, kDesignHeight)));
}

void FollowPorts() {
  if (connection_status.LaidOut == LinksInUse()) return;
  LayOut();
  if (connection_status.Coupled == kTrue) SnapToMain();
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
  health.lost = EdgesLostInAll();
  health.polled = TruckPort().PortOpen() && TruckPort().EdgesArePolled();
  health.steps_may_be_missing = sounding.StepsMayBeMissing == kTrue;
  health.missing_depth = sounding.StepsMayBeMissingDepth;
  const bool all_well = health.lost == 0 && !health.polled && !health.steps_may_be_missing;
  frmWarning.frmSteps.BackColor = all_well ? kGrey : kBlue;
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
    add("THE TRUCK INTERFACE WAS AWAY AND CAME BACK AT " +
        MakeDepthTexts(health.missing_depth, 0, depth_units, depth_format).depth + ".");
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
  const int left = std::min(main.left + main.width, display_width - width);
  const int top = std::min(main.top, display_height - height);
  return {std::max(left, 0), std::max(top, 0), width, height};
}

void frmWarning_Load() {
  LayOut();
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
