// Ports that come and go, and are moved, under a running sounding: panels, messages and rows.
#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <set>
#include <string>

#include "conelink/cone_state.h"
#include "core/settings.h"
#include "forms/main_form.h"
#include "forms/warning_form.h"
#include "platform/boxes.h"
#include "platform/numbers.h"
#include "scenarios/scenario.h"
#include "sounding/sounding_state.h"
#include "sounding/truck_interface.h"

namespace penlog {
namespace {

constexpr std::size_t kCptHeader = 23;
constexpr double kStep = 0.02;  // m between rows

/// Depths of the rows, m; a missing row is a gap in them.
std::vector<double> RowDepths(const Scenario& scenario) {
  std::vector<double> depths;
  const auto lines = LinesOf(scenario.File("/soundings/S1.cpt"));
  for (std::size_t i = kCptHeader; i < lines.size(); ++i) {
    depths.push_back(LeadingNumber(lines[i].substr(0, 7)));
  }
  return depths;
}

void ExpectAllRows(const Scenario& scenario, std::size_t count) {
  const auto depths = RowDepths(scenario);
  ASSERT_EQ(depths.size(), count);
  for (std::size_t i = 0; i < count; ++i) {
    EXPECT_NEAR(depths[i], kStep * static_cast<double>(i + 1), 0.0006) << i;
  }
}

/// The ASCII output on COM5, the overlay's board on COM6, COM7 free.
ScenarioSetup WithOutputs() {
  ScenarioSetup setup;
  setup.settings = {{setting::kASCIIOutSerialPort, "5"},
                    {setting::kVideoOverlaySerialPort, "6"},
                    {setting::kLumenProbePresent, "1"}};
  return setup;
}

struct PortScenario : Scenario {
  explicit PortScenario(const ScenarioSetup& setup = WithOutputs()) : Scenario(setup) {
    for (const int port : {5, 6, 7}) {
      session.ports.Wire(port).OnBytes = [this, port](std::string_view bytes) {
        heard[port] += bytes;
      };
      session.ports.Wire(port).OnOpened = [this, port](const PortSettings&) {
        opened[port] = true;
      };
      session.ports.Wire(port).OnClosed = [this, port] { opened[port] = false; };
    }
  }
  std::map<int, std::string> heard;
  std::map<int, bool> opened;
};

// The cone's port.

TEST(ConePort, LostAndBackUnderAnotherNumberRecordsOnWithNoOtherRowMissing) {
  PortScenario scenario;
  int number = 0;
  std::size_t rows_at_loss = 0;
  std::size_t rows_at_return = 0;
  scenario.At("rows at the loss",
              [&] { rows_at_loss = static_cast<std::size_t>(sounding.RowCount); });
  scenario.At("rows at the return", [&] {
    rows_at_return = static_cast<std::size_t>(sounding.RowCount);
    number = settings.ConeSerialPort;
  });
  scenario.Play(ScriptToRecording() + R"(rig push 0.9
wait 10
rig replug cone 9 5s
expect frmWarning.frmSerialWarning visible 5
expect frmWarning.frmSerialConnected hidden
expect frmWarning.frmModuleWarning visible
rig test rows at the loss
expect frmWarning.frmSerialConnected visible 30
expect frmWarning.frmSerialWarning hidden
expect frmWarning.frmModuleWarning hidden
expect frmWarning.frmModulesConnected visible
rig test rows at the return
wait 35
)" + ScriptToEnd());
  EXPECT_EQ(number, 9);
  const auto depths = RowDepths(scenario);
  ASSERT_GT(rows_at_loss, 5U);
  ASSERT_LE(rows_at_return, rows_at_loss + 1);
  ASSERT_GT(depths.size(), rows_at_loss + 10);
  int gaps = 0;
  for (std::size_t i = 1; i < depths.size(); ++i) {
    const double steps = (depths[i] - depths[i - 1]) / kStep;
    EXPECT_NEAR(steps, std::round(steps), 0.06) << "every row stands on the grid";
    if (steps < 1.5) continue;
    ++gaps;
    EXPECT_GE(i, rows_at_loss - 1);
    EXPECT_LE(i, rows_at_loss + 2) << "rows are missing where the cone was away, and nowhere else";
  }
  EXPECT_EQ(gaps, 1);
  EXPECT_NEAR(depths.back(), 0.9, 0.0006);
  EXPECT_TRUE(scenario.opened[5] && !scenario.opened[7]) << "the ASCII port was left alone";
}

// The truck interface.

struct TruckLoss : PortScenario {
  TruckLoss() {
    At("latch a quit", [] {
      sounding.QuitState = 1;
      RestoreQuitOutput();
    });
    At("look", [this] {
      rts.push_back(rig.truck.Rts());
      panels.push_back(frmWarning.frmEncoderWarning.Visible ? "lost" : "well");
      rows.push_back(sounding.RowCount);
    });
  }
  void Play(const std::string& before, const std::string& after) {
    Scenario::Play(ScriptToRecording() + before + R"(rig push 0.6
wait 10
rig test look
rig unplug truck
expect frmWarning.frmEncoderWarning visible 5
expect frmWarning.frmEncoderConnected hidden
rig test look
wait 5
rig plug truck
expect frmWarning.frmEncoderConnected visible 10
expect frmWarning.frmEncoderWarning hidden
rig test look
expect frmWarning.frmSteps "DEPTH STEPS MAY BE MISSING"
expect frmWarning.lblSteps "~THE TRUCK INTERFACE WAS AWAY AT 0\..* m\."
)" + after + "wait 30\n" +
                   ScriptToEnd());
  }
  std::vector<bool> rts;
  std::vector<std::string> panels;
  std::vector<int> rows;
};

TEST(TruckPort, LostAndBackCountsOnAndTellsWhere) {
  TruckLoss scenario;
  scenario.Play("", "");
  EXPECT_EQ(scenario.panels, (std::vector<std::string>{"well", "lost", "well"}));
  EXPECT_EQ(scenario.rts, (std::vector<bool>{false, false, false}));
  const auto depths = RowDepths(scenario);
  ASSERT_GT(depths.size(), 15U);
  ASSERT_LT(depths.size(), 30U) << "five seconds of depth were not counted";
  ExpectAllRows(scenario, depths.size());
  EXPECT_EQ(scenario.rows[2], scenario.rows[1]) << "none was made up while the port was away";
}

TEST(TruckPort, LostAndBackUnderALatchedQuitHoldsTheRigBeforeItsPanelChanges) {
  TruckLoss scenario;
  scenario.Play("rig test latch a quit\n", R"(wait 5
rig test look
press Main.cmdResetQuits
release Main.cmdResetQuits
)");
  EXPECT_EQ(scenario.panels, (std::vector<std::string>{"well", "lost", "well", "well"}));
  EXPECT_EQ(scenario.rts, (std::vector<bool>{true, false, true, true}));
  EXPECT_EQ(scenario.rows, (std::vector<int>{0, 0, 0, 0})) << "the rig stood, or was not seen";
  const auto depths = RowDepths(scenario);
  ASSERT_GT(depths.size(), 15U) << "the override lets the rig go";
  ASSERT_LT(depths.size(), 30U) << "what it moved without its stop line was not counted";
  ExpectAllRows(scenario, depths.size());
}

TEST(TruckPort, BackUnderAnotherNumberIsGivenItOnTheResetScreen) {
  PortScenario scenario;
  scenario.Play(ScriptToRecording() + R"(rig push 0.9
wait 10
rig replug truck 9 2s
expect frmWarning.frmEncoderWarning visible 5
wait 5
expect frmWarning.frmEncoderWarning visible
menu frmWarning.mnuResetComms
screen frmResetComms
expect frmResetComms.lblTruckInterfaceSerialPort "4, LOST"
select frmResetComms.cmbTruckInterfaceSerialPort 9
click frmResetComms.cmdOK
expect frmWarning.frmEncoderConnected visible 5
expect frmWarning.frmEncoderWarning hidden
wait 35
)" + ScriptToEnd());
  const auto depths = RowDepths(scenario);
  ASSERT_GT(depths.size(), 25U);
  ExpectAllRows(scenario, depths.size());
  EXPECT_EQ(LinesOf(scenario.DataFile("System Setup Values.txt"))[41], "9") << "for the next start";
}

TEST(TruckPort, WhoseNumberTheConeTookStaysLostUntilItIsGivenItsNewOne) {
  PortScenario scenario;
  scenario.Play(ScriptToRecording() + R"(rig push 0.9
wait 5
rig replug truck 9 1s
wait 3
rig replug cone 4 2s
expect frmWarning.frmSerialWarning visible 5
expect frmWarning.frmSerialConnected visible 60
expect frmWarning.frmEncoderWarning visible
expect frmWarning.frmEncoderConnected hidden
wait 5
click Main.cmdResetPorts
expect frmResetComms.lblConeSerialPort "4"
expect frmResetComms.lblTruckInterfaceSerialPort "4, LOST"
expect frmResetComms.cmbTruckInterfaceSerialPort ""
select frmResetComms.cmbTruckInterfaceSerialPort 9
click frmResetComms.cmdOK
expect frmWarning.frmEncoderConnected visible 5
expect frmWarning.frmEncoderWarning hidden
wait 40
)" + ScriptToEnd());
  const auto depths = RowDepths(scenario);
  ASSERT_GT(depths.size(), 15U);
  ExpectAllRows(scenario, depths.size());
}

TEST(TruckPort, SwitchedOffIsNotSupervisedAndItsPanelGoes) {
  PortScenario scenario;
  scenario.Play(ScriptToRecording() + R"(rig push 0.3
wait 5
click Main.cmdResetPorts
select frmResetComms.cmbTruckInterfaceSerialPort N/A
answer yes "THIS WILL DISABLE THE TRUCK INTERFACE. CONTINUE?"
click frmResetComms.cmdOK
wait 2
expect frmWarning.frmEncoderConnected hidden
rig unplug truck
wait 2
expect frmWarning.frmEncoderWarning hidden
)" + ScriptToEnd());
}

TEST(TruckPort, PutOnTheConesPortFollowsTheConeToItsNewNumber) {
  ScenarioSetup setup;
  setup.rig = "dcs-shared";
  setup.settings = {{setting::kTruckInterfaceSerialPort, "7"}};
  PortScenario scenario(setup);
  std::vector<int> truck;
  scenario.At("look", [&] { truck.push_back(settings.TruckInterfaceSerialPort); });
  scenario.Play(ScriptToRecording() + R"(click Main.cmdResetPorts
select frmResetComms.cmbTruckInterfaceSerialPort "SAME AS CONE"
click frmResetComms.cmdOK
wait 2
rig test look
rig replug cone 9 2s
expect frmWarning.frmSerialWarning visible 5
expect frmWarning.frmSerialConnected visible 30
rig test look
rig push 0.2
wait 15
)" + ScriptToEnd());
  EXPECT_EQ(truck, (std::vector<int>{3, 9}));
  EXPECT_NEAR(RowDepths(scenario).back(), 0.2, 0.0006);
}

// The outputs.

TEST(OutputPorts, ASCIIMovedDuringARecordingLosesNoRow) {
  PortScenario scenario;
  scenario.Play(ScriptToRecording() + R"(rig push 0.6
wait 10
click Main.cmdResetPorts
screen frmResetComms
select frmResetComms.cmbASCIIOutSerialPort 7
click frmResetComms.cmdOK
wait 2
expect frmWarning.frmASCIISerialConnected visible
expect frmWarning.frmASCIIOutWarning hidden
expect Main.lblDepth "0.600 m" 60
wait 2
)" + ScriptToEnd());
  ExpectAllRows(scenario, 30);
  EXPECT_TRUE(!scenario.opened[5]);
  const auto lines = LinesOf(scenario.DataFile("System Setup Values.txt"));
  EXPECT_EQ(lines[54], "7");
  EXPECT_EQ(lines[41], "4");
}

TEST(OutputPorts, ASCIIOnTheOverlaysPortMovesTheOverlayAndPaintsItAnew) {
  PortScenario scenario;
  scenario.At("forget", [&] { scenario.heard.clear(); });
  std::vector<int> ports;
  scenario.At("look", [&] {
    ports = {settings.ASCIIOutSerialPort, settings.VideoOverlaySerialPort};
    EXPECT_EQ(Main.ASCIIOutComm.CommPort(), 6);
    EXPECT_EQ(Main.VideoOverlayComm.CommPort(), 5);
    EXPECT_FALSE(Main.ASCIIOutComm.Gone() || Main.VideoOverlayComm.Gone());
    EXPECT_EQ(cone.ASCIIPortLost + cone.VideoPortLost, 0);
  });
  scenario.Play(ScriptToRecording() + R"(rig push 0.6
wait 5
rig test forget
click Main.cmdResetPorts
select frmResetComms.cmbASCIIOutSerialPort 6
answer yes "Port 6 is currently being used for the video overlay output."
click frmResetComms.cmdOK
wait 5
rig test look
expect Main.lblDepth "0.600 m" 60
wait 2
)" + ScriptToEnd());
  ExpectAllRows(scenario, 30);
  EXPECT_EQ(ports, (std::vector<int>{6, 5}));
  EXPECT_TRUE(scenario.heard[5].starts_with("{R{F0{MF{ML{F4{A17{C0101Sounding: S1{C0115"))
      << scenario.heard[5];
}

TEST(OutputPorts, WithNoPortFreeNothingMovesAndNoRowIsLost) {
  PortScenario scenario;
  scenario.At("no port is left", [&] {
    scenario.session.ports.Wire(5).SetPresent(false);
    scenario.session.ports.Wire(7).SetPresent(false);
  });
  std::vector<int> ports;
  scenario.At("look", [&] {
    ports = {settings.ASCIIOutSerialPort, settings.VideoOverlaySerialPort};
  });
  scenario.Play(ScriptToRecording() + R"(rig push 0.6
rig test no port is left
expect frmWarning.frmASCIIOutWarning visible 5
click Main.cmdResetPorts
select frmResetComms.cmbASCIIOutSerialPort 6
answer yes "Port 6 is currently being used for the video overlay output."
answer ok "No free ports. Cannot assign video overlay output port"
click frmResetComms.cmdOK
wait 2
rig test look
expect Main.lblDepth "0.600 m" 60
wait 2
)" + ScriptToEnd());
  ExpectAllRows(scenario, 30);
  EXPECT_EQ(ports, (std::vector<int>{5, 6}));
}

TEST(OutputPorts, ALostOverlayIsPaintedAnewWhenItIsBack) {
  PortScenario scenario;
  scenario.At("away", [&] {
    scenario.heard.clear();
    scenario.session.ports.Wire(6).SetPresent(false);
    scenario.session.ports.Wire(6).SetPresent(true);
  });
  scenario.Play(ScriptToRecording() + R"(rig test away
wait 5
expect frmWarning.frmFrameGrabberConnected visible
)" + ScriptToEnd());
  EXPECT_TRUE(scenario.heard[6].starts_with("{R{F0{MF{ML")) << scenario.heard[6];
}

TEST(OutputPorts, AnOverlayThatWasAwayDuringAScanForTheConeComesBackByItself) {
  PortScenario scenario;
  scenario.At("away", [&] { scenario.session.ports.Wire(6).SetPresent(false); });
  scenario.At("back", [&] {
    scenario.heard.clear();
    scenario.session.ports.Wire(6).SetPresent(true);
  });
  scenario.Play(ScriptToRecording() + R"(rig test away
rig replug cone 9 2s
expect frmWarning.frmSerialWarning visible 5
expect frmWarning.frmSerialConnected visible 30
expect frmWarning.frmSensorayWarning visible 5
rig test back
expect frmWarning.frmFrameGrabberConnected visible 5
expect frmWarning.frmSensorayWarning hidden
wait 5
)" + ScriptToEnd());
  EXPECT_TRUE(scenario.heard[6].starts_with("{R{F0{MF{ML")) << scenario.heard[6];
}

TEST(OutputPorts, MovedWhileTheConeIsAwayAreServedAndTold) {
  PortScenario scenario;
  std::vector<int> ports;
  scenario.At("look", [&] {
    ports = {settings.ASCIIOutSerialPort, Main.ASCIIOutComm.CommPort(), cone.ConeLinkUp};
  });
  scenario.Play(ScriptToRecording() + R"(rig push 0.3
wait 3
rig unplug cone
expect Main.lblState "LINK LOST" 20
click Main.cmdResetPorts
select frmResetComms.cmbASCIIOutSerialPort 7
click frmResetComms.cmdOK
wait 8
rig test look
expect frmWarning.frmASCIISerialConnected visible
rig plug cone
expect frmWarning.frmSerialConnected visible 60
click Main.cmdResetPorts
expect frmResetComms.lblASCIIOutSerialPort "7"
click frmResetComms.cmdCancel
wait 2
)" + ScriptToEnd());
  EXPECT_EQ(ports, (std::vector<int>{7, 7, 0}));
  EXPECT_EQ(LinesOf(scenario.DataFile("System Setup Values.txt"))[54], "7");
}

// Questions that stay open.

struct OpenQuestion {
  const char* list;
  const char* entry;
  const char* text;
  const char* answer;
  const char* before = "";  ///< what happens behind the opening of the screen
  std::set<int> gone = {};  ///< COM numbers that are not there
  const char* asked = "";   ///< a question that is answered with a yes before
  const char* rig = "dcs";
};

void PrintTo(const OpenQuestion& question, std::ostream* out) {
  *out << question.text;
}

/// The panels that are shown, as the status window's controls are named.
std::set<std::string> ShownPanels() {
  const auto& form = frmWarning;
  std::set<std::string> shown;
  for (const Frame* panel :
       {&form.frmEncoderConnected, &form.frmEncoderWarning, &form.frmSerialConnected,
        &form.frmSerialWarning, &form.frmModulesConnected, &form.frmModuleWarning,
        &form.frmASCIISerialConnected, &form.frmASCIIOutWarning, &form.frmFrameGrabberConnected,
        &form.frmSensorayWarning}) {
    if (panel->Visible) shown.insert(panel->Name());
  }
  return shown;
}

/// With the ASCII output's port lost where it is gone. The overlay's is looked for with a scan
/// alone, and none comes here.
std::set<std::string> PanelsOf(const OpenQuestion& question) {
  const bool ascii_lost = question.gone.contains(5);
  std::set<std::string> panels = {"frmSerialConnected", "frmModulesConnected",
                                  "frmFrameGrabberConnected",
                                  ascii_lost ? "frmASCIIOutWarning" : "frmASCIISerialConnected"};
  if (question.rig == std::string("dcs")) panels.insert("frmEncoderConnected");
  return panels;
}

std::string Quoted(const char* text) {
  return " \"" + std::string(text) + "\"\n";
}

std::string ScriptOf(const OpenQuestion& question) {
  std::string script = ScriptToRecording() +
                       "rig test ports go\nrig push 1.2\nclick Main.cmdResetPorts\n"
                       "screen frmResetComms\n" +
                       question.before + "select frmResetComms." + question.list +
                       Quoted(question.entry);
  if (*question.asked != '\0') script += "answer yes" + Quoted(question.asked);
  script += "expect Main.lblDepth \"1.200 m\" 200\nwait 2\nrig test look\nanswer ";
  return script + question.answer + Quoted(question.text) + "click frmResetComms.cmdCancel\n" +
         ScriptToEnd();
}

class OpenQuestions : public testing::TestWithParam<OpenQuestion> {};

TEST_P(OpenQuestions, StopNoRowForAMinuteOfPush) {
  const OpenQuestion& question = GetParam();
  ScenarioSetup setup = WithOutputs();
  setup.rig = question.rig;
  PortScenario scenario(setup);
  scenario.At("a port goes", [&] { scenario.session.ports.Wire(7).SetPresent(false); });
  scenario.At("ports go", [&] {
    for (const int port : question.gone) scenario.session.ports.Wire(port).SetPresent(false);
  });
  bool open_at_the_end = false;
  std::set<std::string> panels;
  scenario.At("look", [&] {
    open_at_the_end = FrontBox() != nullptr && FrontBox()->text.starts_with(question.text);
    panels = ShownPanels();
  });
  scenario.Play(ScriptOf(question));
  EXPECT_TRUE(open_at_the_end) << "it stood open all the time";
  EXPECT_EQ(panels, PanelsOf(question));
  ExpectAllRows(scenario, 60);
}

INSTANTIATE_TEST_SUITE_P(
    OfTheResetScreen, OpenQuestions,
    testing::Values(
        OpenQuestion{"cmbTruckInterfaceSerialPort", "N/A",
                     "THIS WILL DISABLE THE TRUCK INTERFACE. CONTINUE?", "no"},
        OpenQuestion{"cmbASCIIOutSerialPort", "N/A", "This will disable ASCII output.  Continue?",
                     "no"},
        OpenQuestion{"cmbVideoOverlaySerialPort", "N/A",
                     "This will disable video overlay.  Continue?", "no"},
        OpenQuestion{"cmbTruckInterfaceSerialPort", "6",
                     "PORT 6 IS CURRENTLY BEING USED FOR VIDEO OVERLAY.", "no"},
        OpenQuestion{"cmbTruckInterfaceSerialPort", "5",
                     "PORT 5 IS CURRENTLY BEING USED FOR ASCII OUTPUT.", "no"},
        OpenQuestion{"cmbASCIIOutSerialPort", "4",
                     "PORT 4 IS CURRENTLY BEING USED FOR THE TRUCK INTERFACE.", "ok"},
        OpenQuestion{"cmbASCIIOutSerialPort", "3",
                     "PORT 3 IS CURRENTLY BEING USED FOR THE CONE. CANNOT CONTINUE", "ok"},
        OpenQuestion{"cmbASCIIOutSerialPort", "6",
                     "Port 6 is currently being used for the video overlay output.", "yes"},
        OpenQuestion{"cmbVideoOverlaySerialPort", "4",
                     "Port 4 is currently being used for the truck interface.", "ok"},
        OpenQuestion{"cmbVideoOverlaySerialPort", "3",
                     "Port 3 is currently being used for the cone. Cannot continue", "ok"},
        OpenQuestion{"cmbVideoOverlaySerialPort", "5",
                     "Port 5 is currently being used for the ASCII output.", "yes"},
        OpenQuestion{"cmbASCIIOutSerialPort", "7", "SERIAL PORT VALUES HAVE CHANGED.", "ok",
                     "rig test a port goes\n"}));

// On the truck's list no port is free only where the truck interface rides on the cone's port: one
// of its own that still counts is free for the others as soon as it is left.
INSTANTIATE_TEST_SUITE_P(
    WithNoPortFree, OpenQuestions,
    testing::Values(OpenQuestion{"cmbTruckInterfaceSerialPort",
                                 "6",
                                 "No free ports. Cannot assign video overlay output port",
                                 "ok",
                                 "",
                                 {7},
                                 "PORT 6 IS CURRENTLY BEING USED FOR VIDEO OVERLAY.",
                                 "dcs-shared"},
                    OpenQuestion{"cmbTruckInterfaceSerialPort",
                                 "5",
                                 "NO FREE PORTS. CANNOT ASSIGN ASCII OUT PORT",
                                 "ok",
                                 "",
                                 {7},
                                 "PORT 5 IS CURRENTLY BEING USED FOR ASCII OUTPUT.",
                                 "dcs-shared"},
                    OpenQuestion{"cmbASCIIOutSerialPort",
                                 "6",
                                 "No free ports. Cannot assign video overlay output port",
                                 "ok",
                                 "",
                                 {5, 7},
                                 "Port 6 is currently being used for the video overlay output."},
                    OpenQuestion{"cmbVideoOverlaySerialPort",
                                 "5",
                                 "No free ports. Cannot assign ASCII output port",
                                 "ok",
                                 "",
                                 {6, 7},
                                 "Port 5 is currently being used for the ASCII output."},
                    OpenQuestion{"cmbASCIIOutSerialPort",
                                 "AUTO-DETECT",
                                 "NO FREE PORTS. CANNOT ASSIGN ASCII OUT PORT",
                                 "ok",
                                 "",
                                 {5, 7}},
                    OpenQuestion{"cmbVideoOverlaySerialPort",
                                 "AUTO-DETECT",
                                 "No free ports. Cannot assign video overlay output port",
                                 "ok",
                                 "",
                                 {6, 7}}));

}  // namespace
}  // namespace penlog
