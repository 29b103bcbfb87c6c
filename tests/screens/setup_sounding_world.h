// The sounding's setup with a disk, a cone and the file of the sounding before.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/session.h"
#include "core/settings.h"
#include "display/display_state.h"
#include "forms/operator_actions.h"
#include "forms/setup_display_form.h"
#include "forms/setup_sounding_form.h"
#include "screens/setup_sounding.h"
#include "support/boxes.h"
#include "support/state.h"

namespace penlog {

inline constexpr const char* kParameters = "/allusers/PENLOG(KQ)/Last Sounding Parameters.txt";
inline constexpr const char* kGraph1Alone = " 1 \r\n 0 \r\n 0 \r\n 0 \r\n";

class SetupSoundingTest : public testing::Test {
 protected:
  SetupSoundingTest() {
    session.DataDirectory = "/allusers/PENLOG(KQ)";
    cone.ConeId = "DCS0123";
    world.disk.MakeFolder("/soundings/today");
    world.disk.MakeFolder(session.DataDirectory);
    SetupDisplay.Load = nullptr;
    SetupSounding.txtFileName.Change = SetupSounding_txtFileName_Change;
    SetupSounding.txtJobNumber.Change = SetupSounding_txtJobOrHole_Change;
    SetupSounding.txtHoleNumber.Change = SetupSounding_txtJobOrHole_Change;
    SetupSounding.Dir1.Click = SetupSounding_Dir1_Click;
    SetupSounding.Dir1.Change = SetupSounding_Dir1_Change;
    SetupSounding.File1.Click = SetupSounding_File1_Click;
    SetupSounding.cmbFileNaming.Click = SetupSounding_cmbFileNaming_Click;
  }

  /// A parameter file with the name, the cone and one choice for all channels.
  static std::string Parameters(const std::string& name, const std::string& cone_id,
                                const std::string& choice, const std::string& graphs) {
    std::string text = "/soundings/today\r\n/\r\n" + name + "\r\n" + cone_id +
                       "\r\nAnna\r\nHarbour\r\nJ1\r\nH2\r\nhead\r\nfoot 1\r\nfoot 2\r\n";
    for (int i = 0; i < 28; ++i) text += choice + "\r\n";
    return text + graphs;
  }

  void Load(const std::string& file) {
    world.disk.Put(kParameters, file);
    SetupSounding_Load();
  }

  /// The operator chooses an entry of a list; -1: the key that chooses, with none marked.
  static void Select(Control& list, int entry) {
    OperatorAction action;
    action.kind = ActionKind::Select;
    action.form = &SetupSounding;
    action.control = &list;
    action.number = entry;
    PostActionNow(action);
    Yield();
  }
  static void Type(Control& box, const std::string& text) {
    OperatorAction action;
    action.kind = ActionKind::Type;
    action.form = &SetupSounding;
    action.control = &box;
    action.text = text;
    PostActionNow(action);
    Yield();
  }

  ClearedWorld world;
  BoxAnswerer boxes;
};

}  // namespace penlog
