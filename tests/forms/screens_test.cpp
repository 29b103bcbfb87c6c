// Every screen: what it shows before anything has happened, and that it goes back to that.
#include <set>

#include "forms/cone_settings_form.h"
#include "forms/create_new_directory_form.h"
#include "forms/main_form.h"
#include "forms/reset_comms_form.h"
#include "forms/restart_form.h"
#include "forms/resume_depth_form.h"
#include "forms/setup_display_form.h"
#include "forms/setup_sounding_form.h"
#include "forms/specify_ascii_out_form.h"
#include "forms/specify_truck_interface_form.h"
#include "forms/specify_video_overlay_form.h"
#include "forms/start_up_form.h"
#include "forms/warning_form.h"
#include "support/world.h"

namespace penlog {
namespace {

const std::vector<Form*> kScreens = {&Main,
                                     &SetupDisplay,
                                     &SetupSounding,
                                     &StartUp,
                                     &frmConeSettings,
                                     &frmCreateNewDirectory,
                                     &frmResetComms,
                                     &frmResumeDepthStatus,
                                     &frmSpecifyASCIIOut,
                                     &frmSpecifyTruckInterface,
                                     &frmSpecifyVideoOverlay,
                                     &frmWarning,
                                     &frmZOLRestart};

TEST(Screens, AllStandInTheListInOrderOfNames) {
  EXPECT_EQ(AllForms(), kScreens);
  for (Form* form : kScreens) EXPECT_EQ(FindForm(form->Name()), form);
}

TEST(Screens, ControlNamesAreUniqueOnAScreen) {
  for (const Form* form : AllForms()) {
    std::set<std::string> names;
    for (const Control* control : form->Controls()) {
      EXPECT_TRUE(names.insert(control->Name()).second) << form->Name() << "." << control->Name();
    }
  }
}

TEST(Screens, ContainersBelongToTheSameScreen) {
  for (const Form* form : AllForms()) {
    for (const Control* control : form->Controls()) {
      if (control->Container == nullptr) continue;
      EXPECT_EQ(&control->Container->Owner(), form) << control->Name();
      EXPECT_NE(control->Container, control);
    }
  }
}

TEST(Screens, MainOffersNoStartBeforeABaseline) {
  World world;
  EXPECT_FALSE(Main.cmdStart.Enabled);
  EXPECT_EQ(Main.cmdStart.Caption, "START");
  EXPECT_TRUE(Main.cmdTakeBaseline.Visible);
  EXPECT_TRUE(Main.cmdExit.Enabled);
  EXPECT_EQ(Main.lblCommStatus.Caption, "No Cone Present");
  EXPECT_EQ(Main.lblDissipationValue.Caption, "Inactive");
}

TEST(Screens, MainHidesItsDialogsAtFirst) {
  World world;
  for (const Control* control : std::initializer_list<const Control*>{
           &Main.frmLocalWarning, &Main.frmQuitWarning, &Main.frmTakeFinalBaseline,
           &Main.cmdResetQuits, &Main.frmGraphArea, &Main.lblBigDepth}) {
    EXPECT_FALSE(control->Visible) << control->Name();
  }
}

/// And the colours and the tone, which must be at hand behind a question too.
TEST(Screens, StopDialogAndOverrideTakeActionsInAnyCase) {
  World world;
  std::set<std::string> usable;
  for (const Form* form : AllForms()) {
    for (const Control* control : form->Controls()) {
      if (control->AlwaysUsable) usable.insert(form->Name() + "." + control->Name());
    }
  }
  EXPECT_EQ(usable, (std::set<std::string>{
                        "Main.cmdResetQuits", "Main.cmdWarningCancel", "Main.cmdWarningOK1",
                        "Main.cmdWarningOK2", "Main.mnuAlarmTone", "Main.mnuDay", "Main.mnuNight",
                        "StartUp.mnuAlarmTone", "StartUp.mnuDay", "StartUp.mnuNight"}));
}

TEST(Screens, UnloadBringsBackFirstValues) {
  World world;
  LoadForm(Main);
  Main.lblDepth.Caption = "12.340 m";
  Main.lblChanValue(30).Caption = "1.0";
  Main.lblChanValue(30).Visible = true;
  Main.cmdStart.Enabled = true;
  Main.shpBubble.Where.left = 0.9;
  Main.pctGraph(1).Draw({});
  Main.CommTick = 7;
  Unload(Main);
  EXPECT_EQ(Main.lblDepth.Caption, "0.000 m");
  EXPECT_EQ(Main.lblChanValue(30).Caption, "");
  EXPECT_FALSE(Main.lblChanValue(30).Visible);
  EXPECT_FALSE(Main.cmdStart.Enabled);
  EXPECT_EQ(Main.shpBubble.Where.left, 0.4);
  EXPECT_TRUE(Main.pctGraph(1).steps.empty());
  EXPECT_EQ(Main.CommTick, 0);
}

TEST(Screens, UnloadStopsTimersAndClosesPorts) {
  World world;
  LoadForm(frmWarning);
  frmWarning.Timer2.Start();
  StartUp.Timer1.Start();
  Main.Timer1.Start();
  ResetForms();
  EXPECT_FALSE(frmWarning.Timer2.Running());
  EXPECT_FALSE(StartUp.Timer1.Running());
  EXPECT_FALSE(Main.Timer1.Running());
}

TEST(Screens, TimersHaveTheirIntervals) {
  EXPECT_EQ(Main.Timer1.Interval(), 55);
  EXPECT_EQ(StartUp.Timer1.Interval(), 55);
  EXPECT_EQ(frmWarning.Timer1.Interval(), 1500);
  EXPECT_EQ(frmWarning.Timer2.Interval(), 200);
  EXPECT_FALSE(frmWarning.Timer1.Running());
}

TEST(Screens, WarningPanelsBeginGreen) {
  World world;
  EXPECT_TRUE(frmWarning.frmSerialConnected.Visible);
  EXPECT_TRUE(frmWarning.frmModulesConnected.Visible);
  EXPECT_FALSE(frmWarning.frmSerialWarning.Visible);
  EXPECT_FALSE(frmWarning.frmModuleWarning.Visible);
}

TEST(Screens, ASCIIWarningKeepsTheFrameGrabbersWords) {
  World world;
  EXPECT_EQ(frmWarning.lblASCIIOutWarning.Caption, frmWarning.lblSensorayWarning.Caption);
  EXPECT_EQ(frmWarning.lblASCIIOutWarning.Caption.rfind("FRAME GRABBER CONNECTION HAS BEEN LOST.  "
                                                        "DO NOT CONTINUE PUSH! CHECK",
                                                        0),
            0u);
}

TEST(Screens, ClosingAMainWindowEndsTheProgram) {
  World world;
  Show(Main);
  OperatorAction close;
  close.kind = ActionKind::Close;
  close.form = &Main;
  PostActionNow(close);
  EXPECT_THROW(WaitYield("the end"), ProgramEnd);
}

TEST(Screens, ClosingASideWindowLeavesItThere) {
  World world;
  Show(frmWarning);
  OperatorAction close;
  close.kind = ActionKind::Close;
  close.form = &frmWarning;
  PostActionNow(close);
  Yield();
  EXPECT_FALSE(EndUnderWay());
  EXPECT_TRUE(frmWarning.Visible);
}

TEST(Screens, AnActionWaitsUntilItIsServed) {
  World world;
  Show(SetupSounding);
  OperatorAction type;
  type.kind = ActionKind::Type;
  type.form = &SetupSounding;
  type.control = &SetupSounding.txtOperator;
  type.text = "A";
  PostActionNow(type);
  EXPECT_TRUE(ActionWaits(SetupSounding.txtOperator));
  EXPECT_FALSE(ActionWaits(SetupSounding.txtLocation));
  Yield();
  EXPECT_FALSE(ActionWaits(SetupSounding.txtOperator));
  EXPECT_EQ(SetupSounding.txtOperator.Text, "A");
}

TEST(Screens, WhatComesLaterIsOutOfReach) {
  World world;
  for (const Control* control : std::initializer_list<const Control*>{
           &Main.cmdDissipation, &Main.cmdActivateSeismic, &Main.cmdChangeSeismicOptions,
           &StartUp.cmdSystemSetup, &SetupSounding.cmdGetGPS, &SetupSounding.cmdEnterGPS}) {
    EXPECT_FALSE(control->Visible && control->Enabled) << control->Name();
  }
  for (const Control* control :
       std::initializer_list<const Control*>{&Main.cmdResetPorts, &frmWarning.mnuResetComms}) {
    EXPECT_TRUE(control->Visible && control->Enabled) << control->Name();
  }
  EXPECT_TRUE(StartUp.cmdCalibrate.Visible && StartUp.cmdCalibrate.Enabled);
}

TEST(Screens, StartOffersToResumeAndHidesThePanelUntilThen) {
  World world;
  EXPECT_TRUE(StartUp.cmdResume.Visible && StartUp.cmdResume.Enabled);
  EXPECT_FALSE(StartUp.frmResume.Visible);
  for (const Control* control : std::initializer_list<const Control*>{
           &StartUp.lblLastSoundingCone, &StartUp.lblLastSoundingDepth, &StartUp.txtDistanceDrilled,
           &StartUp.cmdResumeAtLastDepth, &StartUp.cmdResumeAtSurface, &StartUp.cmdCancel}) {
    EXPECT_EQ(control->Container, &StartUp.frmResume) << control->Name();
  }
}

TEST(Screens, ResumeDepthHasItsCaptions) {
  World world;
  EXPECT_EQ(frmResumeDepthStatus.Caption, "RESUME DEPTH STATUS");
  EXPECT_EQ(frmResumeDepthStatus.lblDepthReached.Caption, "DEPTH REACHED");
}

TEST(Screens, ClosingTheResumeDepthLeavesItThere) {
  World world;
  Show(frmResumeDepthStatus);
  OperatorAction close;
  close.kind = ActionKind::Close;
  close.form = &frmResumeDepthStatus;
  PostActionNow(close);
  Yield();
  EXPECT_TRUE(frmResumeDepthStatus.Visible) << "no way round the press that goes on recording";
  EXPECT_FALSE(EndUnderWay());
}

}  // namespace
}  // namespace penlog
