#include "screens/reset_comms.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "conelink/cone_state.h"
#include "conelink/port_supervision.h"
#include "core/channels.h"
#include "core/settings.h"
#include "forms/reset_comms_form.h"
#include "forms/warning_form.h"
#include "platform/boxes.h"
#include "platform/numbers.h"
#include "platform/port_driver.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr int kLastPort = 255;
constexpr const char* kAutoDetect = "AUTO-DETECT";
constexpr const char* kSameAsCone = "SAME AS CONE";
constexpr const char* kSameAsTruck = "SAME AS TRUCK INT";
constexpr const char* kOff = "N/A";

/// One link of the screen: its list, what stands chosen in it, and its words.
struct PortList {
  ComboBox& box;
  PortChoice& choice;
  const char* off_question;
  const char* no_free_port;
};

PortList TruckList() {
  return {frmResetComms.cmbTruckInterfaceSerialPort, reset_comms.Truck,
          "THIS WILL DISABLE THE TRUCK INTERFACE. CONTINUE?",
          "NO FREE PORTS. CANNOT ASSIGN TRUCK INTERFACE PORT"};
}

PortList ASCIIList() {
  return {frmResetComms.cmbASCIIOutSerialPort, reset_comms.ASCIIOut,
          "This will disable ASCII output.  Continue?",
          "NO FREE PORTS. CANNOT ASSIGN ASCII OUT PORT"};
}

PortList OverlayList() {
  return {frmResetComms.cmbVideoOverlaySerialPort, reset_comms.Overlay,
          "This will disable video overlay.  Continue?",
          "No free ports. Cannot assign video overlay output port"};
}

/// The overlay has a port of its own.
bool OverlayHasPort() {
  return settings.LumenProbePresent == 1;
}

std::vector<int> ExistingPorts() {
  std::vector<int> ports;
  for (int port = 1; port <= kLastPort; ++port) {
    if (EnumSerPorts(port)) ports.push_back(port);
  }
  return ports;
}

/// COM number of an entry; 0 for one that is none.
int NumberOf(const std::string& text) {
  if (text == kSameAsCone) return settings.ConeSerialPort;
  return static_cast<int>(LeadingNumber(text));
}

bool IsOn(const PortList& list, int port) {
  return port > 0 && NumberOf(list.choice.Text) == port;
}

void ShowChosen(const PortList& list) {
  const auto& entries = list.box.List;
  const auto found = std::find(entries.begin(), entries.end(), list.choice.Text);
  list.box.ListIndex = found == entries.end() ? -1 : static_cast<int>(found - entries.begin());
  list.box.Text = list.choice.Text;
}

void Accept(const PortList& list, const std::string& text) {
  list.choice = {text, true};
  ShowChosen(list);
}

void Refuse(const PortList& list, const std::string& text) {
  PostBox(text);
  ShowChosen(list);
}

// The lists.

void FillList(ComboBox& box, const std::vector<std::string>& words, bool with_ports) {
  box.List = words;
  box.Beside.assign(words.size(), "");
  if (!with_ports) return;
  for (const int port : reset_comms.Ports) {
    box.List.push_back(PlainNumber(port));
    box.Beside.push_back(ThePorts().DeviceName(port));
  }
}

std::vector<std::string> OverlayWords() {
  if (OverlayHasPort()) return {kAutoDetect, kOff};
  return {settings.LumenProbePresent == 2 ? kSameAsTruck : kOff};
}

std::string PortText(int port) {
  return port > 0 ? PlainNumber(port) : kOff;
}

// What runs.

bool TruckIsOnConesPort() {
  return settings.TruckInterfaceSerialPort == settings.ConeSerialPort;
}

/// The list's entry of what runs; none for a truck interface whose number the cone has taken.
std::string RunningTruck() {
  if (ConeTookTheTrucksNumber()) return {};
  return TruckIsOnConesPort() ? kSameAsCone : PortText(settings.TruckInterfaceSerialPort);
}

std::string RunningOverlay() {
  if (OverlayHasPort()) return PortText(settings.VideoOverlaySerialPort);
  return OverlayWords().front();
}

std::string InUseText(int port, std::int16_t lost) {
  return PortText(port) + (port > 0 && lost == kTrue ? ", LOST" : "");
}

std::string OverlayInUseText() {
  if (OverlayHasPort()) return InUseText(settings.VideoOverlaySerialPort, cone.VideoPortLost);
  if (settings.LumenProbePresent != 2) return kOff;
  return InUseText(settings.TruckInterfaceSerialPort, cone.TruckPortLost);
}

void ShowInUse() {
  auto& form = frmResetComms;
  form.lblConeSerialPort.Caption = InUseText(settings.ConeSerialPort, cone.ConePortLost);
  form.lblTruckInterfaceSerialPort.Caption =
      InUseText(settings.TruckInterfaceSerialPort, cone.TruckPortLost);
  form.lblASCIIOutSerialPort.Caption = InUseText(settings.ASCIIOutSerialPort, cone.ASCIIPortLost);
  form.lblVideoOverlaySerialPort.Caption = OverlayInUseText();
}

/// Links move while the screen is open: what the operator has not chosen follows them. `asked` is
/// the list whose new selection is still to be judged; none where it is a null pointer.
void FollowLinks(const ComboBox* asked) {
  const std::pair<PortList, std::string> links[] = {
      {TruckList(), RunningTruck()},
      {ASCIIList(), PortText(settings.ASCIIOutSerialPort)},
      {OverlayList(), RunningOverlay()}};
  for (const auto& [list, running] : links) {
    if (!list.choice.Chosen) list.choice.Text = running;
    if (&list.box != asked) ShowChosen(list);
  }
  ShowInUse();
}

void FillLists() {
  reset_comms.Ports = ExistingPorts();
  FillList(TruckList().box, {kAutoDetect, kSameAsCone, kOff}, true);
  FillList(ASCIIList().box, {kAutoDetect, kOff}, true);
  FillList(OverlayList().box, OverlayWords(), OverlayHasPort());
  FollowLinks(nullptr);
}

void TellThatPortsHaveChanged() {
  PostBox(
      "SERIAL PORT VALUES HAVE CHANGED. THE PROGRAM WILL NOW RE-DETECT THE SERIAL PORTS. TRY "
      "AGAIN");
  FillLists();
}

bool PortsHaveChanged() {
  return ExistingPorts() != reset_comms.Ports;
}

// Questions.

/// Asks, and acts on a Yes if the screen still stands as it was asked; else the selection goes
/// back.
void Ask(PortList (*list)(), const std::string& question, std::function<void()> on_yes) {
  const std::uint32_t generation = frmResetComms.Generation();
  PostBox(question, BoxButtons::YesNoCareful,
          [list, generation, on_yes = std::move(on_yes)](BoxAnswer answer) {
            if (generation != frmResetComms.Generation()) return;
            if (answer != BoxAnswer::Yes) return ShowChosen(list());
            if (PortsHaveChanged()) return TellThatPortsHaveChanged();
            on_yes();
          });
}

/// The port, in text, that the output of `list` can move to; empty when none is free.
std::string FreePortFor(const PortList& list) {
  PortsTaken taken;
  taken.cone_port = settings.ConeSerialPort;
  taken.chosen = {TruckList().box.Text, ASCIIList().box.Text};
  if (OverlayHasPort() && NumberOf(reset_comms.Overlay.Text) > 0) {
    taken.chosen.push_back(OverlayList().box.Text);
  }
  const int free = FreePortIn(list.box.List, taken);
  return free < 0 ? std::string() : list.box.List[static_cast<std::size_t>(free)];
}

/// `mover` goes to a free port, and its port to `taker`; with none free neither changes.
void TakeFrom(const PortList& taker, const PortList& mover, const char* no_free_port) {
  const std::string free = FreePortFor(mover);
  if (free.empty()) return Refuse(taker, no_free_port);
  Accept(mover, free);
  Accept(taker, taker.box.Text);
}

void AskToTake(PortList (*taker)(), PortList (*mover)(), const std::string& question,
               const char* no_free_port) {
  Ask(taker, question, [taker, mover, no_free_port] { TakeFrom(taker(), mover(), no_free_port); });
}

bool StandsInAnother(const PortList& list, const std::string& text) {
  for (const PortList& other : {TruckList(), ASCIIList(), OverlayList()}) {
    if (&other.box != &list.box && other.choice.Text == text) return true;
  }
  return false;
}

/// Searches again: the link's own port if it is there, else the first free one.
void AutoDetect(PortList (*of)(), int own) {
  const PortList list = of();
  FillLists();
  const auto& entries = list.box.List;
  const bool on_cone = own > 0 && own == settings.ConeSerialPort;
  const bool may_share = std::find(entries.begin(), entries.end(), kSameAsCone) != entries.end();
  if (on_cone && may_share && !ConeTookTheTrucksNumber()) return Accept(list, kSameAsCone);
  const std::string text = on_cone ? std::string() : PlainNumber(own);
  const bool is_there = std::find(entries.begin(), entries.end(), text) != entries.end();
  if (is_there && !StandsInAnother(list, text)) return Accept(list, text);
  const std::string free = FreePortFor(list);
  if (free.empty()) return Refuse(list, list.no_free_port);
  Accept(list, free);
}

/// What all lists have in common; true when the selection is dealt with.
bool DealtWith(PortList (*of)(), int own) {
  const PortList list = of();
  FollowLinks(&list.box);
  if (list.box.Text == kAutoDetect) {
    AutoDetect(of, own);
    return true;
  }
  if (PortsHaveChanged()) {
    TellThatPortsHaveChanged();
    return true;
  }
  if (list.box.Text == kOff) {
    Ask(of, list.off_question, [of] { Accept(of(), kOff); });
    return true;
  }
  if (list.box.Text == kSameAsTruck || list.box.Text == kSameAsCone) {
    Accept(list, list.box.Text);
    return true;
  }
  return false;
}

bool OverlayIsOn(int port) {
  return OverlayHasPort() && IsOn(OverlayList(), port);
}

// Requests.

void Request(PortRequest& request, const PortChoice& choice, int number) {
  if (!choice.Chosen) return;
  request = {kTrue, static_cast<std::int16_t>(number)};
}

/// The chosen port has vanished, or the cone has come up on it meanwhile.
bool IsOutOfDate(const PortChoice& choice) {
  const int port = NumberOf(choice.Text);
  if (!choice.Chosen || port <= 0) return false;
  const bool is_cones = port == settings.ConeSerialPort && choice.Text != kSameAsCone;
  return is_cones || !EnumSerPorts(port);
}

/// Only a board on the truck interface's port keeps the number of a port of its own.
int OverlayNumber() {
  if (settings.LumenProbePresent == 2) return settings.VideoOverlaySerialPort;
  return NumberOf(reset_comms.Overlay.Text);
}

void LeaveRequests() {
  const ResetCommsState& chosen = reset_comms;
  const bool truck_off = chosen.Truck.Text == kOff;
  Request(sounding.TruckPortRequest, chosen.Truck,
          truck_off ? kNoTruckPort : NumberOf(chosen.Truck.Text));
  Request(sounding.ASCIIPortRequest, chosen.ASCIIOut, NumberOf(chosen.ASCIIOut.Text));
  Request(sounding.VideoPortRequest, chosen.Overlay, OverlayNumber());
}

/// The status window may have come to the front on the way here.
void Leave() {
  Unload(frmResetComms);
  frmWarning.Timer1.Start();
}

}  // namespace

int FreePortIn(const std::vector<std::string>& list, const PortsTaken& taken) {
  for (std::size_t entry = 0; entry < list.size(); ++entry) {
    const auto port = static_cast<int>(LeadingNumber(list[entry]));
    const auto& chosen = taken.chosen;
    if (port <= 0 || port == taken.cone_port) continue;
    if (std::find(chosen.begin(), chosen.end(), list[entry]) != chosen.end()) continue;
    return static_cast<int>(entry);
  }
  return -1;
}

void OpenResetComms() {
  Show(frmResetComms);
}

void frmResetComms_Load() {
  reset_comms = ResetCommsState{};
  FillLists();
}

void frmResetComms_cmbTruckInterfaceSerialPort_Click() {
  if (DealtWith(TruckList, settings.TruckInterfaceSerialPort)) return;
  const PortList list = TruckList();
  const int port = NumberOf(list.box.Text);
  const std::string head = "PORT " + PlainNumber(port) + " IS CURRENTLY BEING USED FOR ";
  if (port == settings.ConeSerialPort) return Accept(list, kSameAsCone);
  if (OverlayIsOn(port)) {
    return AskToTake(TruckList, OverlayList,
                     head +
                         "VIDEO OVERLAY. WOULD YOU LIKE TO CONTINUE? VIDEO OVERLAY WILL BE SET "
                         "TO AN ALTERNATE FREE PORT, IF AVAILABLE.",
                     OverlayList().no_free_port);
  }
  if (IsOn(ASCIIList(), port)) {
    return AskToTake(TruckList, ASCIIList,
                     head +
                         "ASCII OUTPUT. WOULD YOU LIKE TO CONTINUE? ASCII OUTPUT WILL BE SET TO "
                         "AN ALTERNATE FREE PORT, IF AVAILABLE.",
                     ASCIIList().no_free_port);
  }
  Accept(list, list.box.Text);
}

void frmResetComms_cmbASCIIOutSerialPort_Click() {
  if (DealtWith(ASCIIList, settings.ASCIIOutSerialPort)) return;
  const PortList list = ASCIIList();
  const int port = NumberOf(list.box.Text);
  const std::string head = "PORT " + PlainNumber(port) + " IS CURRENTLY BEING USED FOR THE ";
  if (IsOn(TruckList(), port)) return Refuse(list, head + "TRUCK INTERFACE. CANNOT CONTINUE");
  if (port == settings.ConeSerialPort) return Refuse(list, head + "CONE. CANNOT CONTINUE");
  if (OverlayIsOn(port)) {
    return AskToTake(ASCIIList, OverlayList,
                     "Port " + PlainNumber(port) +
                         " is currently being used for the video overlay output. Would you like to "
                         "continue? Video overlay port will be switched to a free port, if "
                         "available",
                     OverlayList().no_free_port);
  }
  Accept(list, list.box.Text);
}

void frmResetComms_cmbVideoOverlaySerialPort_Click() {
  if (DealtWith(OverlayList, settings.VideoOverlaySerialPort)) return;
  const PortList list = OverlayList();
  const int port = NumberOf(list.box.Text);
  const std::string head = "Port " + PlainNumber(port) + " is currently being used for the ";
  if (IsOn(TruckList(), port)) return Refuse(list, head + "truck interface. Cannot continue");
  if (port == settings.ConeSerialPort) return Refuse(list, head + "cone. Cannot continue");
  if (IsOn(ASCIIList(), port)) {
    return AskToTake(OverlayList, ASCIIList,
                     head +
                         "ASCII output. Would you like to continue? ASCII output port will be "
                         "switched to a free port.",
                     "No free ports. Cannot assign ASCII output port");
  }
  Accept(list, list.box.Text);
}

void frmResetComms_cmdOK_Click() {
  const ResetCommsState& chosen = reset_comms;
  if (IsOutOfDate(chosen.Truck) || IsOutOfDate(chosen.ASCIIOut) || IsOutOfDate(chosen.Overlay)) {
    reset_comms = ResetCommsState{};  // one choice may stand on another: all are made again
    return TellThatPortsHaveChanged();
  }
  LeaveRequests();
  Leave();
}

void frmResetComms_cmdCancel_Click() {
  Leave();
}

}  // namespace penlog
