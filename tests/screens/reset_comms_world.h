// The port screen over running links, and hands to choose in its lists.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/wiring.h"
#include "core/settings.h"
#include "forms/main_form.h"
#include "forms/reset_comms_form.h"
#include "forms/warning_form.h"
#include "screens/reset_comms.h"
#include "sounding/sounding_state.h"
#include "support/state.h"

namespace penlog {

/// Cone 3, truck interface 4, ASCII output 5, overlay 6; port 7 is free.
class ResetCommsTest : public testing::Test {
 protected:
  ResetCommsTest() {
    WireScreens();
    settings.ConeSerialPort = 3;
    settings.TruckInterfaceSerialPort = 4;
    settings.ASCIIOutSerialPort = 5;
    settings.VideoOverlaySerialPort = 6;
    settings.LumenProbePresent = 1;
    for (const int port : {3, 4, 5, 6, 7}) world.ports.Wire(port);
  }

  void Open() {
    Unload(form);
    OpenResetComms();
  }

  void Choose(ComboBox& list, const std::string& text) {
    OperatorAction action;
    action.kind = ActionKind::Select;
    action.form = &form;
    action.control = &list;
    action.number = -1;
    for (std::size_t i = 0; i < list.List.size(); ++i) {
      if (list.List[i] == text) action.number = static_cast<int>(i);
    }
    ASSERT_GE(action.number, 0) << text;
    PostActionNow(action);
    Yield();
  }

  static void Press(Form& screen, Control& control) { World::Press(screen, control); }

  /// The text of the box in front; empty when none is open.
  static std::string Question() { return FrontBox() == nullptr ? "" : FrontBox()->text; }
  static void Answer(BoxAnswer answer) {
    ASSERT_NE(FrontBox(), nullptr);
    AnswerBox(FrontBox()->id, answer);
    Yield();
  }

  static std::vector<int> Requests() {
    std::vector<int> requests;
    for (const PortRequest* request :
         {&sounding.TruckPortRequest, &sounding.ASCIIPortRequest, &sounding.VideoPortRequest}) {
      requests.push_back(request->Requested != 0 ? request->NewPort : kNothing);
    }
    return requests;
  }
  static constexpr int kNothing = -99;

  ClearedWorld world;
  ResetCommsForm& form = frmResetComms;
  ComboBox& truck = frmResetComms.cmbTruckInterfaceSerialPort;
  ComboBox& ascii = frmResetComms.cmbASCIIOutSerialPort;
  ComboBox& overlay = frmResetComms.cmbVideoOverlaySerialPort;
};

}  // namespace penlog
