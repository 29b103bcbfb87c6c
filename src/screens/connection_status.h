// The connection status window: which panels it has and where they stand, its place beside the
// console, and what it tells of the counting of depth. The green panels and the warnings are
// swapped by the link supervision.
//
// From the top: the truck interface, the cone's port, the modules, the ASCII output, the frame
// grabber: first what the depth hangs on, then the readings, last the outputs. Each warning lies
// over its green panel, so that nothing moves when one appears.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "forms/form.h"

namespace penlog {

enum class LinkPanel { Truck, Cone, Modules, ASCIIOut, FrameGrabber };

/// What decides the panels.
struct LinkSetup {
  int cone_port = 0;  ///< COM numbers; 0 none
  int truck_port = 0;
  int ascii_port = 0;
  int overlay_port = 0;
  int lumen_probe = 0;  ///< `LumenProbePresent`
  bool operator==(const LinkSetup&) const = default;
};
/// That of the settings.
LinkSetup LinksInUse();

/// The panels that a set-up needs, from the top. The truck interface has none on the cone's own
/// port and without a port, the ASCII output none without a port, the frame grabber one with
/// `LumenProbePresent` 1 and 3 or above.
std::vector<LinkPanel> PanelsOf(const LinkSetup& setup);

/// What is known of the edges of the truck interface.
struct EdgeHealth {
  std::int64_t lost = 0;  ///< counted by the adapter, told by no event; of the whole session
  bool polled = false;
  bool steps_may_be_missing = false;
  float missing_depth = 0;  ///< m; depth at the last return of the port
  int times_away = 1;
  float first_depth = 0;  ///< m; at the first return
  bool operator==(const EdgeHealth&) const = default;
};
/// A line each for what may be missing in the depth; a line that says that nothing is, else.
std::string EdgeHealthText(const EdgeHealth& health, int depth_units, int depth_format);

/// The status window of that size at the right edge of the console's. On a display of a size that
/// has no room for it there it stands over the console's charts, as large as they are at most: the
/// strip, the depth, the quits and the stop stay in sight. Pushed back onto the display.
WindowPlace BesideMain(const WindowPlace& main, int width, int height, int display_width,
                       int display_height);

struct ConnectionStatusState {
  std::int16_t Coupled = -1;   ///< -1 the window follows the console's
  bool GivesWay = false;       ///< behind a question of the console
  WindowPlace MainPlace;       ///< of the console's window, as the status window followed it last
  LinkSetup LaidOut;           ///< what the panels were laid out for
  std::int64_t EdgesLost = 0;  ///< of the truck interface, in all
  std::int64_t SeenOnTruckPort = 0;  ///< edges lost on `EncoderComm` as of the last look
  std::int64_t SeenOnConePort = 0;   ///< the same on `ConeComm`
};
inline ConnectionStatusState connection_status;

/// Lays out the panels that the set-up needs, green, and starts to follow the console's window.
void frmWarning_Load();
/// A second and a half after all is clear, or after a screen above was left: the window goes behind
/// the others, unless it stands for a loss or the operator holds it.
void frmWarning_Timer1_Timer();
/// Each 200 ms: follows the console's window while coupled, takes in changed ports, tells what is
/// known of the edges, and gives way to a question of the console in its place.
void frmWarning_Timer2_Timer();
/// The operator places the window himself; it then stays in front.
void frmWarning_mnuUncoupleWarningScreen_Click();
/// Back to the console's edge.
void frmWarning_mnuCoupleWarningScreen_Click();

}  // namespace penlog
