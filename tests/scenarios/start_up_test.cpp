// The operator's ways through the start-up, on the simulated rig.
#include <gtest/gtest.h>

#include <string>

#include "conelink/cone_state.h"
#include "core/settings.h"
#include "forms/start_up_form.h"
#include "platform/yield.h"
#include "scenarios/scenario.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

const std::string kStart = "screen StartUp\nclick StartUp.cmdStart\n";
const std::string kToReport = "screen frmConeSettings 120\n";
const std::string kConeQuestion =
    "CONE SERIAL PORT NOT DETECTED. WOULD YOU LIKE TO SEARCH FOR THE PORT?";
const std::string kTruckQuestion =
    "TRUCK INTERFACE SERIAL PORT NOT DETECTED. WOULD YOU LIKE TO SPECIFY THE PORT?";
const std::string kNoCone =
    "CONE NOT DETECTED. PROGRAM CANNOT CONTINUE. CHECK THE POWER AND USB CONNECTIONS AND TRY AGAIN";

std::string Answer(const std::string& answer, const std::string& text) {
  return "answer " + answer + " \"" + text + "\"\n";
}

ScenarioSetup With(std::map<int, std::string> settings, const std::string& rig = "dcs") {
  ScenarioSetup setup;
  setup.rig = rig;
  setup.settings = std::move(settings);
  return setup;
}

/// A line of "System Setup Values.txt" as it stands now.
std::string SettingLine(const Scenario& scenario, int line) {
  return LinesOf(scenario.DataFile("System Setup Values.txt"))
      .at(static_cast<std::size_t>(line - 1));
}

int CountBanners(const Scenario& scenario) {
  int count = 0;
  for (const RigRecord& record : scenario.rig.log.Of(RigLogKind::Command)) {
    count += record.number == 0 && record.text == "Y" ? 1 : 0;
  }
  return count;
}

// The cone.

TEST(StartUpCone, ThatAnswersAfterABreakIsFoundOnAttempt2WithoutAnyBox) {
  Scenario scenario;
  scenario.Play("screen StartUp\nrig fault break-only\nclick StartUp.cmdStart\n" + kToReport +
                "expect frmConeSettings.lblReport \"~DCS0417\"\nend\n");
  EXPECT_EQ(CountBanners(scenario), 2);
  EXPECT_FALSE(scenario.rig.log.Of(RigLogKind::Break).empty());
}

TEST(StartUpCone, SilentForFiveAttemptsIsSearchedOnAllPortsAndThenTold) {
  Scenario scenario;
  scenario.Play("screen StartUp\nrig fault silent\nclick StartUp.cmdStart\n" +
                std::string("expect StartUp.lblLoad \"CHECKING FOR CONE ON PORT 3\" 120\n") +
                "expect StartUp.lblLoad \"CHECKING FOR CONE ON PORT 4\" 20\n" +
                Answer("ok", kNoCone) +
                "expect StartUp.cmdStart enabled\nexpect StartUp.cmdExit enabled\n"
                "expect StartUp.frLoad hidden\n"
                "rig clear\nclick StartUp.cmdStart\n" +
                kToReport + "end\n");
  EXPECT_EQ(CountBanners(scenario), 5 + 1 + 1) << "attempts, the search, the second start";
}

TEST(StartUpCone, WithoutAnyPortIsRefusedAtOnce) {
  Scenario scenario;
  scenario.Play("screen StartUp\nrig unplug cone\nrig unplug truck\nclick StartUp.cmdStart\n" +
                Answer("ok", "NO SERIAL PORTS FOUND. CHECK THE POWER AND USB CONNECTIONS") +
                "expect StartUp.cmdStart enabled\nclick StartUp.cmdExit\n");
  EXPECT_EQ(CountBanners(scenario), 0);
}

TEST(StartUpCone, UnpluggedWhileItsMemoryIsReadIsToldAndEndsTheProgram) {
  Scenario scenario;
  scenario.Play(kStart + "wait 1\nrig fault unplugged cone 3s\n" +
                Answer("ok", "Cone not detected.  Plug in a cone and restart the program."));
  EXPECT_TRUE(EndUnderWay());
}

TEST(StartUpCone, FoundByASearchTakesItsNewPortIntoTheSettings) {
  Scenario scenario(With({{setting::kConeSerialPort, "7"}}));
  scenario.Play(kStart + Answer("yes", kConeQuestion) + Answer("ok", "CONE DETECTED ON PORT 3") +
                Answer("ok", "PRESS OK TO VERIFY TRUCK INTERFACE PORT") +
                "screen frmSpecifyTruckInterface\n"
                "expect frmSpecifyTruckInterface.lblConeSerialPort 3\n"
                "select frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort 4\n"
                "click frmSpecifyTruckInterface.cmdSavePort\n" +
                Answer("ok", "TRUCK INTERFACE SERIAL PORT SET TO PORT 4") + kToReport + "end\n");
  EXPECT_EQ(SettingLine(scenario, setting::kConeSerialPort), "3");
  EXPECT_EQ(SettingLine(scenario, setting::kTruckInterfaceSerialPort), "4");
}

// The questions about ports, each with Yes and No.

TEST(ConePortQuestion, NoIsToldAndTheOperatorMayTryAgain) {
  Scenario scenario(With({{setting::kConeSerialPort, "7"}}));
  scenario.Play(kStart + Answer("no", kConeQuestion) +
                Answer("ok", "PROGRAM CANNOT CONTINUE. CHECK THE POWER AND USB CONNECTIONS") +
                "expect StartUp.cmdStart enabled\nexpect StartUp.cmdExit enabled\n"
                "click StartUp.cmdStart\n" +
                Answer("no", kConeQuestion) + Answer("ok", "PROGRAM CANNOT CONTINUE.") +
                "click StartUp.cmdExit\n");
  EXPECT_EQ(SettingLine(scenario, setting::kConeSerialPort), "7");
  EXPECT_EQ(CountBanners(scenario), 0);
}

TEST(ConePortQuestion, YesWithoutAConeIsToldAndChangesNothing) {
  Scenario scenario(With({{setting::kConeSerialPort, "7"}}));
  scenario.Play("screen StartUp\nrig fault silent\nclick StartUp.cmdStart\n" +
                Answer("yes", kConeQuestion) + Answer("ok", kNoCone) +
                "expect StartUp.cmdStart enabled\nclick StartUp.cmdExit\n");
  EXPECT_EQ(SettingLine(scenario, setting::kConeSerialPort), "7");
}

TEST(TruckPortQuestion, YesTakesTheChosenPort) {
  Scenario scenario(With({{setting::kTruckInterfaceSerialPort, "8"}}));
  scenario.Play(kStart + Answer("yes", kTruckQuestion) +
                "screen frmSpecifyTruckInterface\n"
                "click frmSpecifyTruckInterface.cmdSavePort\n" +
                Answer("ok", "NO SERIAL PORT SELECTED") +
                "select frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort 4\n"
                "click frmSpecifyTruckInterface.cmdSavePort\n" +
                Answer("ok", "TRUCK INTERFACE SERIAL PORT SET TO PORT 4") + kToReport + "end\n");
  EXPECT_EQ(SettingLine(scenario, setting::kTruckInterfaceSerialPort), "4");
}

TEST(TruckPortQuestion, NoAndCancelBothEndTheStart) {
  for (const std::string& choice :
       {Answer("no", kTruckQuestion),
        Answer("yes", kTruckQuestion) +
            "screen frmSpecifyTruckInterface\nclick frmSpecifyTruckInterface.cmdCancel\n"}) {
    Scenario scenario(With({{setting::kTruckInterfaceSerialPort, "8"}}));
    scenario.Play(kStart + choice +
                  Answer("ok", "TRUCK INTERFACE SERIAL PORT NOT SET. PROGRAM CANNOT CONTINUE.") +
                  "expect StartUp.cmdStart enabled\nclick StartUp.cmdExit\n");
    EXPECT_EQ(SettingLine(scenario, setting::kTruckInterfaceSerialPort), "8");
    EXPECT_EQ(CountBanners(scenario), 0);
  }
}

TEST(OutputPortQuestion, NoGoesOnWithTheOutputOffAndSavesThat) {
  Scenario scenario(With({{setting::kASCIIOutSerialPort, "11"},
                          {setting::kVideoOverlaySerialPort, "12"},
                          {setting::kLumenProbePresent, "1"}}));
  std::int16_t ascii = -1;
  std::int16_t overlay = -1;
  scenario.At("look", [&] {
    ascii = settings.ASCIIOutSerialPort;
    overlay = settings.VideoOverlaySerialPort;
  });
  scenario.Play(kStart + Answer("no", "ASCII OUT SERIAL PORT NOT DETECTED.") +
                Answer("no", "VIDEO OVERLAY SERIAL PORT NOT DETECTED.") + kToReport +
                "rig test look\nend\n");
  EXPECT_EQ(ascii, 0);
  EXPECT_EQ(overlay, 0);
  EXPECT_EQ(SettingLine(scenario, setting::kASCIIOutSerialPort), "0");
  EXPECT_EQ(SettingLine(scenario, setting::kVideoOverlaySerialPort), "0");
}

TEST(OutputPortQuestion, YesTakesTheChosenPort) {
  Scenario scenario(With({{setting::kASCIIOutSerialPort, "11"},
                          {setting::kVideoOverlaySerialPort, "12"},
                          {setting::kLumenProbePresent, "1"}}));
  scenario.session.ports.Wire(21);
  scenario.session.ports.Wire(22);
  scenario.Play(kStart + Answer("yes", "ASCII OUT SERIAL PORT NOT DETECTED.") +
                "screen frmSpecifyASCIIOut\n"
                "select frmSpecifyASCIIOut.cmbASCIIOutSerialPort 21\n"
                "click frmSpecifyASCIIOut.cmdSavePort\n" +
                Answer("ok", "ASCII OUT SERIAL PORT SET TO PORT 21") +
                Answer("yes", "VIDEO OVERLAY SERIAL PORT NOT DETECTED.") +
                "screen frmSpecifyVideoOverlay\n"
                "select frmSpecifyVideoOverlay.cmbVideoOverlaySerialPort 22\n"
                "click frmSpecifyVideoOverlay.cmdSavePort\n" +
                Answer("ok", "VIDEO OVERLAY PORT SET TO PORT 22") + kToReport + "end\n");
  EXPECT_EQ(SettingLine(scenario, setting::kASCIIOutSerialPort), "21");
  EXPECT_EQ(SettingLine(scenario, setting::kVideoOverlaySerialPort), "22");
}

TEST(OutputPortQuestion, CancelOfTheChoiceIsToldAndTheStartGoesOn) {
  Scenario scenario(With({{setting::kASCIIOutSerialPort, "11"}}));
  scenario.Play(kStart + Answer("yes", "ASCII OUT SERIAL PORT NOT DETECTED.") +
                "screen frmSpecifyASCIIOut\nclick frmSpecifyASCIIOut.cmdCancel\n" +
                Answer("ok", "ASCII OUT SERIAL PORT NOT SET.") + kToReport + "end\n");
}

// Modules.

TEST(Modules, AreFoundAndTheirChannelsRecorded) {
  Scenario scenario(With({{setting::kDiscoverAddOnModules, "1"}}, "dcs-modules"));
  std::string start = ScriptToRecording();
  start.insert(start.find("screen frmConeSettings"),
               "expect StartUp.lblLoad \"Looking For Module ( 9)\" 60\n");
  start.insert(start.find("click frmConeSettings.cmdClose"),
               "expect frmConeSettings.lblReport \"~MHP0012\"\n"
               "expect frmConeSettings.lblReport \"~MRF0007\"\n");
  const std::string done = "click SetupDisplay.cmdDone\n";
  start.insert(start.find(done),
               "check SetupDisplay.chkRecordChan_10\n"
               "check SetupDisplay.chkRecordChan_11\n"
               "check SetupDisplay.chkRecordChan_23\n");
  scenario.Play(start + "rig push 0.3\nwait 25\n" + ScriptToEnd());
  const auto lines = LinesOf(scenario.File("/soundings/S1.cpt"));
  EXPECT_EQ(lines.at(15).substr(13 + 5 * 20),
            "                  10                  11                  23");
  ASSERT_EQ(lines.size(), 23U + 15U);
  EXPECT_EQ(lines[23].size(), 13U + 8 * 20) << "a value in each column";
}

TEST(Modules, WithADuplicateChannelAreToldAndNotUsed) {
  ScenarioSetup setup = With({{setting::kDiscoverAddOnModules, "1"}}, "dcs-modules");
  setup.change_rig = [](RigSetup& rig) {
    rig.modules[7] = rig.modules[5];
    rig.modules[7].header.id = "MRF0099";
  };
  Scenario scenario(setup);
  bool fifth = false;
  bool seventh = true;
  scenario.At("look", [&] {
    fifth = cone.ModulePresent[5] == -1;
    seventh = cone.ModulePresent[7] == -1;
  });
  scenario.Play(kStart +
                Answer("ok",
                       "Duplicate channels found on modules: MRF0007 MRF0099. Program cannot "
                       "continue.  Please remove one of the modules") +
                kToReport + "rig test look\nend\n");
  EXPECT_TRUE(fifth);
  EXPECT_FALSE(seventh);
}

TEST(Modules, WithAChannelOfTheConeAreToldAndNotUsed) {
  ScenarioSetup setup = With({{setting::kDiscoverAddOnModules, "1"}});
  setup.change_rig = [](RigSetup& rig) {
    rig.modules[3] = rig.cone;
    rig.modules[3].header.id = "MXX0003";
  };
  Scenario scenario(setup);
  scenario.Play(kStart +
                Answer("ok",
                       "Duplicate channels found on modules: DCS0417 MXX0003. Program cannot "
                       "continue.  Please remove module MXX0003") +
                kToReport + "end\n");
}

TEST(Modules, AreNotLookedForUnlessTheSettingsSay) {
  Scenario scenario(With({}, "dcs-modules"));
  scenario.Play(kStart + kToReport + "end\n");
  for (const RigRecord& record : scenario.rig.log.Of(RigLogKind::Command)) {
    EXPECT_EQ(record.number, 0) << record.text;
  }
}

// The data directory.

TEST(StartUpFiles, OfAnEmptyDirectoryAreLaidDownAndTheConeIsSearched) {
  ScenarioSetup setup;
  setup.first_run = true;
  Scenario scenario(setup);
  scenario.Play(kStart + Answer("yes", kConeQuestion) + Answer("ok", "CONE DETECTED ON PORT 3") +
                Answer("ok", "PRESS OK TO VERIFY TRUCK INTERFACE PORT") +
                "screen frmSpecifyTruckInterface\n"
                "select frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort 4\n"
                "click frmSpecifyTruckInterface.cmdSavePort\n" +
                Answer("ok", "TRUCK INTERFACE SERIAL PORT SET TO PORT 4") + kToReport + "end\n");
  EXPECT_TRUE(scenario.Has("/allusers/PENLOG(KQ)/intubc.asc"));
  scenario.Play(kStart + kToReport + "end\n");
}

TEST(StartUpFiles, ADamagedSettingsFileIsToldAndTheConsoleGoesOn) {
  Scenario scenario(With({{setting::kDepthStep, "\"two\""}}));
  scenario.Play(Answer("ok", "System Setup Values.txt") + kStart + Answer("yes", kConeQuestion) +
                Answer("ok", "CONE DETECTED ON PORT 3") +
                Answer("ok", "PRESS OK TO VERIFY TRUCK INTERFACE PORT") +
                "screen frmSpecifyTruckInterface\nclick frmSpecifyTruckInterface.cmdCancel\n" +
                Answer("ok", "TRUCK INTERFACE SERIAL PORT NOT SET.") + "end\n");
}

}  // namespace
}  // namespace penlog
