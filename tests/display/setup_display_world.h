// The display setup in its surroundings: a cone with tip, sleeve, three pore pressures and two
// inclination axes, the operator's hands, and the console behind DONE.
#pragma once

#include <array>
#include <initializer_list>
#include <string>

#include "app/wiring.h"
#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/session.h"
#include "core/settings.h"
#include "display/display_state.h"
#include "forms/main_form.h"
#include "forms/setup_display_form.h"
#include "forms/setup_sounding_form.h"
#include "support/boxes.h"
#include "support/state.h"

namespace penlog {

class SetupDisplayTest : public testing::Test {
 protected:
  using Slots = std::array<std::int16_t, 5>;

  SetupDisplayTest() {
    WireScreens();
    session.DataDirectory = "/data";
    world.disk.MakeFolder("/data");
    cone.ConeId = "DCS0123";
    settings.ConeSerialPort = 3;
    settings.TruckInterfaceSerialPort = 4;
    const char* names[] = {"Qc", "Fs", "U2", "U1", "U3", "Ix", "Iy"};
    for (int channel = 1; channel <= 7; ++channel) Add(channel, names[channel - 1]);
    const char* computed[] = {"Incl", "Rf", "SBT", "N"};
    for (int channel = 19; channel <= 22; ++channel) {
      Add(channel, computed[channel - 19]);
      channels.ChannelPresent(channel) = kFalse;  // as the cone's records leave them
      channels.ChannelComputed(channel) = 1;
      channels.RecordMode(channel) = 0;
    }
    display.GraphChannel = {0, 1, 0, 0, 0};
  }

  /// A recorded channel that may be graphed.
  static void Add(int channel, const std::string& name) {
    channels.ChannelPresent(channel) = kTrue;
    channels.ChannelLabel(0, channel) = name;
    channels.ChannelLabel(1, channel) = name + " long";
    channels.RecordMode(channel) = 1;
    channels.ChannelGraphDefault(channel) = 1;
    channels.ChannelUnits(channel) = 1;
  }
  static void Remove(std::initializer_list<int> gone) {
    for (const int channel : gone) channels.ChannelPresent(channel) = kFalse;
  }
  /// A cone with a single pore pressure transducer, about which the operator is to be asked.
  static void AskAboutFilter() {
    Remove({4, 5});
    settings.QueryForPP = 1;
  }

  static void Open() { Show(SetupDisplay); }
  static CheckBox& Record(int channel) { return SetupDisplay.chkRecordChan(channel); }
  static CheckBox& Graph(int channel) { return SetupDisplay.chkGraphChan(channel); }

  /// The operator ticks a box or takes the tick away.
  static void Tick(CheckBox& box, bool ticked = true) {
    OperatorAction action;
    action.kind = ActionKind::Check;
    action.form = &SetupDisplay;
    action.control = &box;
    action.number = ticked ? 1 : 0;
    PostActionNow(action);
    Yield();
  }
  static void Press(Button& button) { World::Press(SetupDisplay, button); }

  static std::string Selections() {
    return SetupDisplay.lblGraph1Selection.Caption + "," + SetupDisplay.lblGraph2Selection.Caption +
           "," + SetupDisplay.lblGraph3Selection.Caption + "," +
           SetupDisplay.lblGraph4Selection.Caption;
  }

  ClearedWorld world;
  BoxAnswerer boxes;
};

}  // namespace penlog
