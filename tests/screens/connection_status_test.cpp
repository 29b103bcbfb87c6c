#include "screens/connection_status.h"

#include <gtest/gtest.h>

#include "app/wiring.h"
#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/session.h"
#include "core/settings.h"
#include "forms/main_form.h"
#include "forms/notice_colours.h"
#include "forms/warning_form.h"
#include "sounding/sounding_state.h"
#include "sounding/truck_interface.h"
#include "support/state.h"

namespace penlog {
namespace {

class ConnectionStatus : public ::testing::Test {
 protected:
  ConnectionStatus() {
    WireScreens();
    Main.Load = nullptr;
    settings.ConeSerialPort = 3;
    settings.TruckInterfaceSerialPort = 4;
    session.ScreenScaleX = 2.4f;  // 1920 by 1080
    session.ScreenScaleY = 1.8f;
  }

  /// The operator, or the window manager, puts the console's window there.
  static void Drag(Form& form, const WindowPlace& place) {
    OperatorAction moved;
    moved.kind = ActionKind::Move;
    moved.form = &form;
    moved.text = WindowPlaceText(place);
    PostActionNow(moved);
    Yield();
  }

  ClearedWorld world;
};

// The panels.

std::vector<const Frame*> Warnings() {
  return {&frmWarning.frmEncoderWarning, &frmWarning.frmSerialWarning, &frmWarning.frmModuleWarning,
          &frmWarning.frmASCIIOutWarning, &frmWarning.frmSensorayWarning};
}
std::vector<const Frame*> Connected() {
  return {&frmWarning.frmEncoderConnected, &frmWarning.frmSerialConnected,
          &frmWarning.frmModulesConnected, &frmWarning.frmASCIISerialConnected,
          &frmWarning.frmFrameGrabberConnected};
}

/// Letters of the green panels that are shown, from the top: t c m a g.
std::string ShownPanels() {
  const std::string letters = "tcmag";
  std::map<double, char> by_top;
  const auto panels = Connected();
  for (std::size_t i = 0; i < panels.size(); ++i) {
    if (panels[i]->Visible) by_top[panels[i]->Where.top] = letters[i];
  }
  std::string shown;
  for (const auto& [top, letter] : by_top) shown += letter;
  return shown;
}

TEST_F(ConnectionStatus, CaptionsAndTextsStandAsQuoted) {
  const char* const grabber_lost =
      "FRAME GRABBER CONNECTION HAS BEEN LOST.  DO NOT CONTINUE PUSH! CHECK USB AND POWER "
      "CONNECTIONS.  THE PROGRAM WILL AUTOMATICALLY CONTINUE ONCE COMMUNICATION HAS BEEN "
      "RE-ESTABLISHED.";
  const auto& form = frmWarning;
  const struct {
    const Frame& frame;
    const Label& label;
    const char* caption;
    const char* text;
  } rows[] = {
      {form.frmSerialConnected, form.lblSerialConnected, "SERIAL PORT CONNECTION: OK",
       "SERIAL PORT IS FUNCTIONING PROPERLY"},
      {form.frmEncoderConnected, form.lblEncoderConnected, "TRUCK INTERFACE CONNECTION: OK",
       "TRUCK INTERFACE (ENCODER) IS FUNCTIONING PROPERLY"},
      {form.frmASCIISerialConnected, form.lblASCIISerialConnected,
       "ASCII OUT SERIAL PORT CONNECTION: OK", "ASCII OUT SERIAL PORT IS FUNCTIONING PROPERLY"},
      {form.frmFrameGrabberConnected, form.lblFrameGrabberConnected, "FRAME GRABBER CONNECTION: OK",
       "FRAME GRABBER IS FUNCTIONING PROPERLY"},
      {form.frmModulesConnected, form.lblModulesConnected, "MODULE CONNECTION(S): OK", ""},
      {form.frmSerialWarning, form.lblSerialWarning, "WARNING: SERIAL PORT DISCONNECTED",
       "SERIAL PORT CONNECTION HAS BEEN LOST.  CHECK THE USB AND POWER CONNECTIONS.  THE PROGRAM "
       "WILL AUTOMATICALLY CONTINUE ONCE COMMUNICATION HAS BEEN RE-ESTABLISHED."},
      {form.frmEncoderWarning, form.lblEncoderWarning,
       "WARNING: TRUCK INTERFACE SERIAL PORT DISCONNECTED",
       "TRUCK INTERFACE CONNECTION HAS BEEN LOST.  DO NOT CONTINUE PUSH!  CHECK USB AND POWER "
       "CONNECTIONS.  THE PROGRAM WILL AUTOMATICALLY CONTINUE ONCE COMMUNICATION HAS BEEN "
       "RE-ESTABLISHED."},
      {form.frmASCIIOutWarning, form.lblASCIIOutWarning,
       "WARNING: ASCII OUT SERIAL PORT DISCONNECTED", grabber_lost},
      {form.frmSensorayWarning, form.lblSensorayWarning, "WARNING: FRAME GRABBER DISCONNECTED",
       grabber_lost},
      {form.frmModuleWarning, form.lblModuleWarning, "WARNING: MODULE DISCONNECTED",
       "CHECK CABLE CONNECTION TO DAS. THE PROGRAM WILL AUTOMATICALLY RECONNECT THE MODULE(S) "
       "ONCE COMMUNICATION HAS BEEN RE-ESTABLISHED."},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.frame.Caption, row.caption) << row.frame.Name();
    EXPECT_EQ(row.label.Caption, row.text) << row.label.Name();
  }
  EXPECT_EQ(form.Caption, "CONNECTION STATUS");
  EXPECT_EQ(form.Label6.Caption,
            "IF SERIAL CONNECTION WARNING DOES NOT DISAPPEAR 30 SECONDS AFTER RECONNECTING "
            "RESPECTIVE PORT, CLICK 'RESET COMMS'");
}

TEST_F(ConnectionStatus, TruckPanelStaysWhileTheConeSitsOnTheTrucksNumber) {
  settings.TruckInterfaceSerialPort = settings.ConeSerialPort = 4;
  session.StartConePort = 3;
  session.StartTruckPort = 4;
  cone.TruckPortLost = -1;
  EXPECT_EQ(PanelsOf(LinksInUse()).front(), LinkPanel::Truck);
  cone.TruckPortLost = 0;
  EXPECT_EQ(PanelsOf(LinksInUse()).front(), LinkPanel::Cone) << "shared";
}

TEST_F(ConnectionStatus, PanelsAreThoseOfTheSetUpInTheirOrder) {
  const struct {
    int truck, ascii, overlay, lumen_probe;
    const char* panels;
  } rows[] = {
      {3, 0, 0, 0, "cm"},    // the truck interface on the cone's own port
      {4, 0, 0, 0, "tcm"},   //
      {3, 5, 0, 0, "cma"},   //
      {4, 5, 0, 0, "tcma"},  //
      {0, 0, 0, 0, "cm"},    // no truck interface
      {4, 0, 7, 1, "tcmg"},  // a board on a port of its own
      {4, 0, 7, 2, "tcm"},   // a board on the truck's port
      {4, 0, 0, 3, "tcmg"}, {4, 0, 0, 4, "tcmg"}, {4, 5, 0, 5, "tcmag"},
      {3, 5, 7, 1, "cmag"}, {4, 5, 7, 0, "tcma"},  // a port, but no board
      {4, 5, 0, 1, "tcma"},                        // a board without a port: its place stays empty
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(::testing::Message() << row.truck << row.ascii << row.overlay << row.lumen_probe);
    settings.TruckInterfaceSerialPort = static_cast<std::int16_t>(row.truck);
    settings.ASCIIOutSerialPort = static_cast<std::int16_t>(row.ascii);
    settings.VideoOverlaySerialPort = static_cast<std::int16_t>(row.overlay);
    settings.LumenProbePresent = static_cast<std::int16_t>(row.lumen_probe);
    Show(frmWarning);
    EXPECT_EQ(ShownPanels(), row.panels);
    for (const Frame* warning : Warnings()) EXPECT_FALSE(warning->Visible) << warning->Name();
    Unload(frmWarning);
  }
}

TEST_F(ConnectionStatus, ASetUpWithoutAFrameGrabberHasNoPanelOfIt) {
  for (const int without : {0, 2}) {
    EXPECT_EQ(PanelsOf({3, 4, 5, 6, without}),
              (std::vector<LinkPanel>{LinkPanel::Truck, LinkPanel::Cone, LinkPanel::Modules,
                                      LinkPanel::ASCIIOut}));
  }
  for (const int with : {1, 3, 4, 5}) {
    EXPECT_EQ(PanelsOf({3, 4, 5, 6, with}).back(), LinkPanel::FrameGrabber) << with;
  }
}

TEST_F(ConnectionStatus, EachWarningLiesOverItsGreenPanel) {
  settings.ASCIIOutSerialPort = 5;
  settings.VideoOverlaySerialPort = 6;
  settings.LumenProbePresent = 1;
  Show(frmWarning);
  const auto green = Connected();
  const auto red = Warnings();
  for (std::size_t i = 0; i < green.size(); ++i) {
    EXPECT_TRUE(green[i]->Where.set);
    EXPECT_EQ(green[i]->Where, red[i]->Where) << green[i]->Name();
  }
}

TEST_F(ConnectionStatus, NoPanelOverlapsAnotherAndAllStandInTheWindow) {
  settings.ASCIIOutSerialPort = 5;
  settings.LumenProbePresent = 3;
  Show(frmWarning);
  std::vector<const Control*> below;
  for (const Frame* frame : Connected()) below.push_back(frame);
  below.push_back(&frmWarning.frmSteps);
  below.push_back(&frmWarning.Label6);
  double end = 0;
  for (const Control* control : below) {
    EXPECT_GT(control->Where.top, end) << control->Name();
    end = control->Where.top + control->Where.height;
  }
  EXPECT_LT(end, 1.0);
}

TEST_F(ConnectionStatus, HeightIsBuiltFromThePanels) {
  std::map<std::size_t, int> heights;
  for (const int ascii : {0, 5}) {
    for (const int truck : {3, 4}) {
      settings.ASCIIOutSerialPort = static_cast<std::int16_t>(ascii);
      settings.TruckInterfaceSerialPort = static_cast<std::int16_t>(truck);
      Show(frmWarning);
      heights[PanelsOf(LinksInUse()).size()] = frmWarning.DesignHeight;
      Unload(frmWarning);
    }
  }
  ASSERT_EQ(heights.size(), 3U);
  EXPECT_GT(heights[2], 0);
  EXPECT_EQ(heights[3] - heights[2], heights[4] - heights[3]);
  EXPECT_GT(heights[3], heights[2]);
}

TEST_F(ConnectionStatus, PanelsFollowAChangeOfThePorts) {
  Show(frmWarning);
  EXPECT_EQ(ShownPanels(), "tcm");
  settings.ASCIIOutSerialPort = 5;
  World::RunFor(250 * kMillisecond);
  EXPECT_EQ(ShownPanels(), "tcma");
  settings.ASCIIOutSerialPort = 0;
  frmWarning.frmASCIISerialConnected.Visible = false;
  frmWarning.frmASCIIOutWarning.Visible = true;
  World::RunFor(250 * kMillisecond);
  EXPECT_EQ(ShownPanels(), "tcm");
  EXPECT_FALSE(frmWarning.frmASCIIOutWarning.Visible);
}

TEST_F(ConnectionStatus, AChangeOfPortsLeavesAWarningThatStands) {
  Show(frmWarning);
  frmWarning.frmEncoderConnected.Visible = false;
  frmWarning.frmEncoderWarning.Visible = true;
  settings.ASCIIOutSerialPort = 5;
  World::RunFor(250 * kMillisecond);
  EXPECT_TRUE(frmWarning.frmEncoderWarning.Visible);
  EXPECT_FALSE(frmWarning.frmEncoderConnected.Visible);
}

// Coupling.

const WindowPlace kMainPlace{100, 50, 900, 700};

TEST_F(ConnectionStatus, FollowsTheConsolesWindowWithinItsTick) {
  Show(Main);
  Show(frmWarning);
  Drag(Main, kMainPlace);
  World::RunFor(200 * kMillisecond);
  EXPECT_EQ(frmWarning.Window.left, 1000);
  EXPECT_EQ(frmWarning.Window.top, 50);
  const WindowPlace places[] = {
      {120, 50, 900, 700}, {120, 60, 900, 700}, {120, 60, 800, 700}, {120, 60, 800, 650}};
  for (const WindowPlace& place : places) {
    const std::uint32_t moves = frmWarning.Moves();
    Drag(Main, place);
    World::RunFor(200 * kMillisecond);
    EXPECT_EQ(frmWarning.Moves(), moves + 1) << "left, top, width and height each move it";
    EXPECT_EQ(frmWarning.Window.left, place.left + place.width);
    EXPECT_EQ(frmWarning.Window.top, place.top);
  }
}

TEST_F(ConnectionStatus, AWindowThatStaysMovesNothing) {
  Show(frmWarning);
  Drag(Main, kMainPlace);
  World::RunFor(kSecond);
  const std::uint32_t moves = frmWarning.Moves();
  Drag(frmWarning, {5, 5, 300, 300});  // put aside by hand: left where it is
  World::RunFor(kSecond);
  EXPECT_EQ(frmWarning.Moves(), moves);
  EXPECT_EQ(frmWarning.Window.left, 5);
}

TEST_F(ConnectionStatus, UncoupledStaysWhereItIsAndInFront) {
  Show(Main);
  Show(frmWarning);
  Drag(Main, kMainPlace);
  World::RunFor(kSecond);
  World::Press(frmWarning, frmWarning.mnuUncoupleWarningScreen);
  EXPECT_FALSE(frmWarning.mnuUncoupleWarningScreen.Visible);
  EXPECT_TRUE(frmWarning.mnuCoupleWarningScreen.Visible);
  Drag(Main, {0, 0, 800, 600});
  frmWarning.Timer1.Start();
  World::RunFor(3 * kSecond);
  EXPECT_EQ(frmWarning.Window.left, 1000);
  EXPECT_EQ(ShownForms().back(), &frmWarning);
}

TEST_F(ConnectionStatus, CoupledAgainItSnapsToTheEdgeAtOnce) {
  Show(Main);
  Show(frmWarning);
  Drag(Main, kMainPlace);
  World::Press(frmWarning, frmWarning.mnuUncoupleWarningScreen);
  Drag(frmWarning, {5, 5, 300, 300});
  World::Press(frmWarning, frmWarning.mnuCoupleWarningScreen);
  EXPECT_EQ(frmWarning.Window.left, 1000);
  EXPECT_TRUE(frmWarning.mnuUncoupleWarningScreen.Visible);
  EXPECT_FALSE(frmWarning.mnuCoupleWarningScreen.Visible);
  World::RunFor(2 * kSecond);
  EXPECT_EQ(ShownForms().front(), &frmWarning) << "nobody holds it in front any more";
}

TEST_F(ConnectionStatus, MenuEntriesHaveTheirCaptions) {
  EXPECT_EQ(frmWarning.mnuUncoupleWarningScreen.Caption, "Uncouple Status Screen from Main");
  EXPECT_EQ(frmWarning.mnuCoupleWarningScreen.Caption, "Couple Status Screen To Main");
  EXPECT_EQ(frmWarning.mnuResetComms.Caption, "Reset Comms");
}

TEST_F(ConnectionStatus, StandsAtTheConsolesEdgeAndOnTheDisplay) {
  const struct {
    WindowPlace main;
    WindowPlace beside;
  } rows[] = {
      {{100, 50, 900, 700}, {1000, 50, 400, 500}},
      {{0, 0, 1920, 1080}, {618, 302, 845, 500}},     // no room at the right: over the charts
      {{100, 50, 1500, 900}, {583, 302, 660, 455}},   // which are smaller
      {{0, 0, 1700, 1280}, {714, 282, 969, 500}},     // a narrow console
      {{100, 700, 900, 300}, {1000, 580, 400, 500}},  // nor below
      {{-600, -40, 500, 700}, {0, 0, 400, 500}},      // the console half outside
      {{1900, 50, 900, 700}, {1407, 204, 513, 396}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(BesideMain(row.main, 400, 500, 1920, 1080), row.beside) << row.main.left;
  }
  EXPECT_EQ(BesideMain({0, 0, 100, 100}, 400, 500, 300, 200), (WindowPlace{42, 22, 57, 57}))
      << "larger than the display";
}

TEST_F(ConnectionStatus, UnloadEndsTheTimers) {
  Show(frmWarning);
  EXPECT_TRUE(frmWarning.Timer2.Running());
  EXPECT_FALSE(frmWarning.Timer1.Running());
  frmWarning.Timer1.Start();
  Unload(frmWarning);
  EXPECT_FALSE(frmWarning.Timer1.Running() || frmWarning.Timer2.Running());
}

// Stacking.

TEST_F(ConnectionStatus, GivesWayToAQuestionThatStandsInItsPlace) {
  session.ScreenScaleX = session.ScreenScaleY = 1;
  for (const bool narrow : {true, false}) {
    for (Frame* question : {&Main.frmLocalWarning, &Main.frmTakeFinalBaseline}) {
      SCOPED_TRACE(testing::Message() << narrow << question->Name());
      Show(Main);
      Show(frmWarning);
      cone.WarningShown = kTrue;
      Drag(Main, {0, 0, 800, narrow ? 600 : 450});
      World::RunFor(250 * kMillisecond);
      EXPECT_EQ(ShownForms().back(), &frmWarning);
      question->Visible = true;
      World::RunFor(250 * kMillisecond);
      EXPECT_EQ(ShownForms().back(), narrow ? static_cast<Form*>(&Main) : &frmWarning);
      question->Visible = false;
      World::RunFor(250 * kMillisecond);
      EXPECT_EQ(ShownForms().back(), &frmWarning) << "the link is still lost";
      Unload(frmWarning);
    }
  }
}

TEST_F(ConnectionStatus, GoesBehindTheConsoleOnceItsTimerFindsAllClear) {
  struct Row {
    std::int16_t shown;
    std::int16_t pinned;
    bool behind;
  };
  for (const Row& row : {Row{0, 0, true}, Row{-1, 0, false}, Row{0, -1, false}}) {
    Show(Main);
    Show(frmWarning);
    frmWarning.Timer1.Start();
    cone.WarningShown = row.shown;
    cone.WarningPinned = row.pinned;
    frmWarning_Timer1_Timer();
    EXPECT_EQ(ShownForms().front() == &frmWarning, row.behind) << row.shown << row.pinned;
    EXPECT_FALSE(frmWarning.Timer1.Running());
    Unload(frmWarning);
  }
}

// What is known of the edges.

TEST_F(ConnectionStatus, TellsWhatMayBeMissingInTheDepth) {
  const struct {
    EdgeHealth health;
    int units;
    int format;
    const char* text;
  } rows[] = {
      {{0, false, false, 0}, 0, 0, "NO STEP IS KNOWN TO BE MISSING."},
      {{3, false, false, 0}, 0, 0, "3 EDGES OF THE TRUCK INTERFACE WERE LOST."},
      {{1, false, false, 0}, 0, 0, "1 EDGE OF THE TRUCK INTERFACE WAS LOST."},
      {{0, true, false, 0}, 0, 0, "THE ADAPTER TELLS NO EDGES: ITS LINES ARE POLLED."},
      {{0, false, true, 12.5f}, 0, 0, "THE TRUCK INTERFACE WAS AWAY AT 12.500 m."},
      {{0, false, true, 12.5f}, 0, 1, "THE TRUCK INTERFACE WAS AWAY AT -12.500 m."},
      {{0, false, true, 10.0f}, 1, 0, "THE TRUCK INTERFACE WAS AWAY AT 32.810 ft."},
      {{0, false, true, 2.5f, 3, 1.0f},
       0,
       0,
       "THE TRUCK INTERFACE WAS AWAY 3 TIMES, FIRST AT 1.000 m, LAST AT 2.500 m."},
      {{2, true, true, 1.0f},
       0,
       0,
       "THE TRUCK INTERFACE WAS AWAY AT 1.000 m.\n2 EDGES OF THE TRUCK INTERFACE "
       "WERE LOST.\nTHE ADAPTER TELLS NO EDGES: ITS LINES ARE POLLED."},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(EdgeHealthText(row.health, row.units, row.format), row.text);
  }
}

TEST_F(ConnectionStatus, CountsLostEdgesThroughTheOpeningsOfThePort) {
  WireEnd& wire = world.ports.Wire(4);
  Show(frmWarning);
  EXPECT_EQ(frmWarning.frmSteps.Caption, "DEPTH STEPS: OK");
  const auto lose = [&wire] {
    wire.LoseNextEdge();
    wire.SetLines({!wire.Lines().cts, false, false});
    World::RunFor(250 * kMillisecond);
  };
  OpenTruckPort("19200,N,8,1");
  lose();
  lose();
  EXPECT_EQ(frmWarning.lblSteps.Caption, "2 EDGES OF THE TRUCK INTERFACE WERE LOST.");
  EXPECT_EQ(frmWarning.frmSteps.Caption, "DEPTH STEPS MAY BE MISSING");
  Main.EncoderComm.Close();
  OpenTruckPort("19200,N,8,1");
  World::RunFor(250 * kMillisecond);
  lose();
  EXPECT_EQ(frmWarning.lblSteps.Caption, "3 EDGES OF THE TRUCK INTERFACE WERE LOST.");
}

TEST_F(ConnectionStatus, CountsLostEdgesOfAPortThatIsOpenedAgainBetweenTwoLooks) {
  WireEnd& wire = world.ports.Wire(4);
  Show(frmWarning);
  const auto lose = [&wire] {
    wire.LoseNextEdge();
    wire.SetLines({!wire.Lines().cts, false, false});
    Yield();
  };
  OpenTruckPort("19200,N,8,1");
  lose();
  World::RunFor(250 * kMillisecond);
  EXPECT_EQ(frmWarning.lblSteps.Caption, "1 EDGE OF THE TRUCK INTERFACE WAS LOST.");
  lose();
  Main.EncoderComm.Close();
  OpenTruckPort("19200,N,8,1");
  for (int edge = 0; edge < 3; ++edge) lose();
  World::RunFor(250 * kMillisecond);
  EXPECT_EQ(frmWarning.lblSteps.Caption, "5 EDGES OF THE TRUCK INTERFACE WERE LOST.");
}

TEST_F(ConnectionStatus, LostEdgesOfTheConesPortCountWhileTheTruckInterfaceSharesIt) {
  WireEnd& wire = world.ports.Wire(3);
  Main.ConeComm.SetCommPort(3);
  Main.ConeComm.Open();
  Show(frmWarning);
  const auto lose = [&wire] {
    wire.LoseNextEdge();
    wire.SetLines({!wire.Lines().cts, false, false});
    World::RunFor(250 * kMillisecond);
  };
  lose();
  EXPECT_EQ(frmWarning.frmSteps.Caption, "DEPTH STEPS: OK") << "not the truck interface's";
  settings.TruckInterfaceSerialPort = 3;
  lose();
  EXPECT_EQ(frmWarning.lblSteps.Caption, "1 EDGE OF THE TRUCK INTERFACE WAS LOST.");
}

TEST_F(ConnectionStatus, TellsTheReturnOfTheTruckInterface) {
  Show(frmWarning);
  sounding.ConsoleMode = 2;
  sounding.CurrentDepth = 7.5f;
  NoteStepsMayBeMissing();
  World::RunFor(250 * kMillisecond);
  EXPECT_EQ(frmWarning.lblSteps.Caption, "THE TRUCK INTERFACE WAS AWAY AT 7.500 m.");
  EXPECT_EQ(frmWarning.frmSteps.BackColor, kAmber);
  sounding.CurrentDepth = 9.5f;
  NoteStepsMayBeMissing();
  World::RunFor(250 * kMillisecond);
  EXPECT_EQ(frmWarning.lblSteps.Caption,
            "THE TRUCK INTERFACE WAS AWAY 2 TIMES, FIRST AT 7.500 m, LAST AT 9.500 m.");
  ForgetMissingSteps();
  World::RunFor(250 * kMillisecond);
  EXPECT_EQ(frmWarning.frmSteps.Caption, "DEPTH STEPS: OK");
}

}  // namespace
}  // namespace penlog
