// What serves which event of which screen.
#include "app/wiring.h"

#include <set>

#include "conelink/cone_state.h"
#include "core/session.h"
#include "forms/cone_settings_form.h"
#include "forms/create_new_directory_form.h"
#include "forms/main_form.h"
#include "forms/reset_comms_form.h"
#include "forms/restart_form.h"
#include "forms/setup_display_form.h"
#include "forms/setup_sounding_form.h"
#include "forms/specify_ascii_out_form.h"
#include "forms/specify_truck_interface_form.h"
#include "forms/specify_video_overlay_form.h"
#include "forms/start_up_form.h"
#include "forms/warning_form.h"
#include "support/boxes.h"
#include "support/state.h"

namespace penlog {
namespace {

using Names = std::set<std::string>;

class Wiring : public testing::Test {
 protected:
  Wiring() {
    WireScreens();
    session.DataDirectory = "/data";
    world.disk.MakeFolder("/data");
  }

  /// Names of the controls of that kind for which `without` holds.
  static Names Those(ControlKind kind, bool (*without)(const Control&)) {
    Names names;
    for (const Form* form : AllForms()) {
      for (const Control* control : form->Controls()) {
        if (control->Kind() != kind || !without(*control)) continue;
        names.insert(form->Name() + "." + control->Name());
      }
    }
    return names;
  }

  static void Close(Form& form) {
    OperatorAction close;
    close.kind = ActionKind::Close;
    close.form = &form;
    PostActionNow(close);
    Yield();
  }

  ClearedWorld world;
  BoxAnswerer boxes;
};

TEST_F(Wiring, ServesEveryButtonButThoseOfWhatComesLater) {
  const Names unserved = Those(
      ControlKind::Button, [](const Control& button) { return !button.Click && !button.Press; });
  EXPECT_EQ(unserved, (Names{"Main.cmdActivateSeismic", "Main.cmdChangeSeismicOptions",
                             "Main.cmdDissipation", "SetupSounding.cmdEnterGPS",
                             "SetupSounding.cmdGetGPS", "StartUp.cmdSystemSetup"}));
}

TEST_F(Wiring, NoButtonWithoutAHandlerCanBePressed) {
  for (Form* form : AllForms()) {
    form->Load = nullptr;
    Show(*form);
    for (const Control* control : form->Controls()) {
      if (control->Kind() != ControlKind::Button || control->Click || control->Press) continue;
      EXPECT_FALSE(control->IsShown() && control->IsUsable())
          << form->Name() << "." << control->Name();
    }
    Hide(*form);
  }
}

TEST_F(Wiring, ServesEveryBoxOfTheDisplaySetup) {
  EXPECT_EQ(Those(ControlKind::CheckBox, [](const Control& box) { return !box.Click; }), Names{});
}

TEST_F(Wiring, ServesTheListsAndFieldsThatActAtOnce) {
  for (const Form* form : AllForms()) {
    for (const Control* control : form->Controls()) {
      if (control->Kind() != ControlKind::Menu) continue;
      EXPECT_TRUE(control->Click) << form->Name() << "." << control->Name();
    }
  }
  for (const ComboBox* list :
       {&frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort,
        &frmSpecifyASCIIOut.cmbASCIIOutSerialPort,
        &frmSpecifyVideoOverlay.cmbVideoOverlaySerialPort,
        &frmResetComms.cmbTruckInterfaceSerialPort, &frmResetComms.cmbASCIIOutSerialPort,
        &frmResetComms.cmbVideoOverlaySerialPort}) {
    EXPECT_TRUE(list->Click) << list->Name();
  }
  EXPECT_TRUE(SetupSounding.Drive1.Click);
  EXPECT_TRUE(SetupSounding.Dir1.Click);
  EXPECT_TRUE(SetupSounding.Dir1.Change);
  EXPECT_TRUE(SetupSounding.File1.Click);
  EXPECT_TRUE(SetupSounding.cmbFileNaming.Click);
  EXPECT_TRUE(SetupSounding.txtFileName.Change);
  EXPECT_TRUE(SetupSounding.txtJobNumber.Change);
  EXPECT_TRUE(SetupSounding.txtHoleNumber.Change);
}

TEST_F(Wiring, ServesTimersAndPorts) {
  EXPECT_TRUE(StartUp.Timer1.OnTick);
  EXPECT_TRUE(Main.Timer1.OnTick);
  EXPECT_TRUE(frmWarning.Timer1.OnTick);
  EXPECT_TRUE(frmWarning.Timer2.OnTick);
  EXPECT_TRUE(frmSpecifyTruckInterface.EncoderComm.OnComm);
  EXPECT_TRUE(Main.EncoderComm.OnComm);
  EXPECT_TRUE(Main.ConeComm.OnComm);
}

TEST_F(Wiring, RunsTheLoadOfEachScreenThatHasOne) {
  for (const Form* form : std::initializer_list<const Form*>{&StartUp, &frmConeSettings,
                                                             &SetupSounding, &frmCreateNewDirectory,
                                                             &SetupDisplay, &Main, &frmWarning}) {
    EXPECT_TRUE(form->Load) << form->Name();
  }
}

TEST_F(Wiring, ClosingAWindowOfTheMainWayEndsTheProgram) {
  for (Form* form : std::initializer_list<Form*>{&StartUp, &SetupSounding, &SetupDisplay, &Main}) {
    form->Load = nullptr;
    Show(*form);
    EXPECT_THROW(Close(*form), ProgramEnd) << form->Name();
    ForgetEnd();
    Unload(*form);
  }
}

TEST_F(Wiring, ClosingASideWindowLeavesItAsItsCancelDoes) {
  for (Form* form : std::initializer_list<Form*>{&frmSpecifyTruckInterface, &frmSpecifyASCIIOut,
                                                 &frmSpecifyVideoOverlay, &frmCreateNewDirectory,
                                                 &frmResetComms}) {
    Show(*form);
    Close(*form);
    EXPECT_FALSE(form->Visible) << form->Name();
    EXPECT_FALSE(EndUnderWay());
  }
}

TEST_F(Wiring, ClosingTheReportGoesOnToTheSoundingsSetup) {
  cone.ConeId = "DCS0123";
  Show(frmConeSettings);
  Close(frmConeSettings);
  EXPECT_FALSE(frmConeSettings.Visible);
  World::RunFor(kSecond);  // a missing parameter file is told
  EXPECT_TRUE(SetupSounding.Visible);
}

TEST_F(Wiring, StatusWindowStays) {
  Show(frmWarning);
  Close(frmWarning);
  EXPECT_TRUE(frmWarning.Visible);
}

}  // namespace
}  // namespace penlog
