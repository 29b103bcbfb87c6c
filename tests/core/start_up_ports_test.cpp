#include "core/start_up_ports.h"

#include <gtest/gtest.h>

#include "conelink/cone_state.h"
#include "conelink/scripted_cone.h"
#include "core/settings_check.h"
#include "core/settings_file.h"
#include "core/start_up_buttons.h"
#include "tests/core/start_up_world.h"

namespace penlog {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kSearch =
    "CONE SERIAL PORT NOT DETECTED. WOULD YOU LIKE TO SEARCH FOR THE PORT?";
constexpr const char* kCannotContinue =
    "PROGRAM CANNOT CONTINUE. CHECK THE POWER AND USB CONNECTIONS AND TRY AGAIN";
constexpr const char* kNoCone =
    "CONE NOT DETECTED. PROGRAM CANNOT CONTINUE. CHECK THE POWER AND USB CONNECTIONS AND TRY "
    "AGAIN";
constexpr const char* kVerifyTruck = "PRESS OK TO VERIFY TRUCK INTERFACE PORT";
constexpr const char* kSpecifyTruck =
    "TRUCK INTERFACE SERIAL PORT NOT DETECTED. WOULD YOU LIKE TO SPECIFY THE PORT?";
constexpr const char* kTruckNotSet =
    "TRUCK INTERFACE SERIAL PORT NOT SET. PROGRAM CANNOT CONTINUE. CHECK THE POWER AND USB "
    "CONNECTIONS AND TRY AGAIN";
constexpr const char* kSpecifyASCII =
    "ASCII OUT SERIAL PORT NOT DETECTED. WOULD YOU LIKE TO SPECIFY THE PORT? IF 'NO', THEN PROGRAM "
    "WILL CONTINUE WITH ASCII OUT DISABLED";
constexpr const char* kSpecifyVideo =
    "VIDEO OVERLAY SERIAL PORT NOT DETECTED. WOULD YOU LIKE TO SPECIFY THE PORT? IF 'NO', THEN "
    "PROGRAM WILL CONTINUE WITH VIDEO OVERLAY DISABLED";

class StartUpPorts : public ::testing::Test {
 protected:
  StartUpPorts() {
    world.disk.Put(world.SetupPath(), "as it was");
    settings.ConeSerialPort = 3;
    settings.TruckInterfaceSerialPort = 4;
    settings.DepthResolution = 0.005F;
    settings.DepthStep = 0.02F;
  }
  void Plug(std::initializer_list<int> numbers) {
    for (const int number : numbers) world.ports.Wire(number);
  }
  /// A cone that gives its banner on that port.
  void PlugCone(int number) {
    cone_ = std::make_unique<ScriptedCone>(world.ports.Wire(number));
    cone_->On("Y", "COPYRIGHT 2009 V3.20\r\n");
  }
  bool Prove() {
    KeepStartPorts();
    BeginStatus("");
    return ProveStartPorts();
  }
  bool Saved() { return world.Setup() != "as it was"; }
  std::string SavedLine(std::size_t line) { return SetupLine(world.Setup(), line); }
  void ExpectAnotherTryIsOffered() {
    EXPECT_TRUE(StartUp.cmdExit.Enabled);
    EXPECT_TRUE(StartUp.cmdStart.Enabled);
    EXPECT_TRUE(StartUp.cmdCalibrate.Enabled);
    EXPECT_FALSE(StartUp.frLoad.Visible);
    EXPECT_FALSE(StartUp.Timer1.Running());
  }

  StartUpWorld world;
  std::unique_ptr<ScriptedCone> cone_;
};

TEST_F(StartUpPorts, AllThereAskNothing) {
  Plug({3, 4});
  EXPECT_TRUE(Prove());
  EXPECT_EQ(StartUp.lblLoad.Caption, "CHECKING TRUCK INTERFACE CONNECTION");
  EXPECT_EQ(world.boxes.texts, Texts{});
  EXPECT_FALSE(Saved());
}

TEST_F(StartUpPorts, FillTheTableOfPresentPorts) {
  Plug({3, 4, 255});
  cone.PortPresent.fill(7);
  EXPECT_TRUE(Prove());
  for (std::size_t port = 1; port <= 255; ++port) {
    const bool there = port == 3 || port == 4 || port == 255;
    EXPECT_EQ(cone.PortPresent[port], there ? kTrue : kFalse) << port;
  }
}

TEST_F(StartUpPorts, OverlayThatIsPluggedInWhileItIsAskedForIsPresentInTheTable) {
  Plug({3, 4});
  settings.LumenProbePresent = 1;
  settings.VideoOverlaySerialPort = 7;
  PostCall(Now() + 20 * kMillisecond, this, [this] { Plug({9}); });
  world.Choose(frmSpecifyVideoOverlay, 9);
  world.boxes.Delay(50 * kMillisecond);
  EXPECT_TRUE(Prove());
  EXPECT_EQ(settings.VideoOverlaySerialPort, 9);
  EXPECT_EQ(cone.PortPresent[9], kTrue);
}

TEST_F(StartUpPorts, NoneAtAllLeaveOnlyAWayOn) {
  EXPECT_FALSE(Prove());
  EXPECT_EQ(world.boxes.texts,
            Texts{"NO SERIAL PORTS FOUND. CHECK THE POWER AND USB CONNECTIONS AND TRY AGAIN"});
  EXPECT_TRUE(StartUp.cmdSystemSetup.Enabled);
  EXPECT_FALSE(StartUp.cmdSystemSetup.Visible) << "its screen isn't built yet";
  EXPECT_TRUE(StartUp.cmdExit.Enabled);
  EXPECT_TRUE(StartUp.cmdStart.Enabled) << "in its place";
  EXPECT_FALSE(StartUp.cmdCalibrate.Enabled);
  EXPECT_FALSE(StartUp.frLoad.Visible);
  EXPECT_FALSE(StartUp.Timer1.Running());
}

TEST_F(StartUpPorts, Port255IsFound) {
  Plug({255});
  settings.ConeSerialPort = settings.TruckInterfaceSerialPort = 255;
  EXPECT_TRUE(Prove());
}

TEST_F(StartUpPorts, WithoutTheConesPortAndNoSearchWaitForTheOperator) {
  Plug({4});
  world.boxes.Answer(kSearch, BoxAnswer::No);
  EXPECT_FALSE(Prove());
  EXPECT_EQ(world.boxes.texts, (Texts{kSearch, kCannotContinue}));
  EXPECT_EQ(world.boxes.buttons, (std::vector<BoxButtons>{BoxButtons::YesNo, BoxButtons::Ok}));
  ExpectAnotherTryIsOffered();
  EXPECT_FALSE(Saved());
}

TEST_F(StartUpPorts, SearchWithoutAConeWaitsForTheOperator) {
  Plug({4, 7});
  EXPECT_FALSE(Prove());
  EXPECT_EQ(world.boxes.texts, (Texts{kSearch, kNoCone}));
  EXPECT_EQ(settings.ConeSerialPort, 3);
  ExpectAnotherTryIsOffered();
}

TEST_F(StartUpPorts, SearchTakesThePortOfTheConeAndVerifiesTheTruckInterface) {
  Plug({4});
  PlugCone(9);
  world.Choose(frmSpecifyTruckInterface, 4);
  EXPECT_TRUE(Prove());
  EXPECT_EQ(world.boxes.texts, (Texts{kSearch, "CONE DETECTED ON PORT 9", kVerifyTruck,
                                      "TRUCK INTERFACE SERIAL PORT SET TO PORT 4"}));
  EXPECT_EQ(settings.ConeSerialPort, 9);
  EXPECT_EQ(settings.TruckInterfaceSerialPort, 4);
  EXPECT_TRUE(Saved());
  EXPECT_EQ(session.StartConePort, 9);
  EXPECT_EQ(session.StartTruckPort, 4);
}

TEST_F(StartUpPorts, OfAFirstRunAreBothAskedFor) {
  settings.ConeSerialPort = settings.TruckInterfaceSerialPort = 0;
  PlugCone(2);
  Plug({5});
  world.Choose(frmSpecifyTruckInterface, 5);
  EXPECT_TRUE(Prove());
  EXPECT_EQ(settings.ConeSerialPort, 2);
  EXPECT_EQ(settings.TruckInterfaceSerialPort, 5);
  EXPECT_EQ(session.StartConePort, 2) << "0 and 0 would say that they share a port";
  EXPECT_EQ(session.StartTruckPort, 5);
}

TEST_F(StartUpPorts, ConeUnderTheTruckInterfacesOldNumberVerifiesTheTruckInterface) {
  PlugCone(4);
  Plug({6});
  world.Choose(frmSpecifyTruckInterface, 6);
  EXPECT_TRUE(Prove());
  EXPECT_EQ(world.boxes.texts, (Texts{kSearch, "CONE DETECTED ON PORT 4", kVerifyTruck,
                                      "TRUCK INTERFACE SERIAL PORT SET TO PORT 6"}));
}

TEST_F(StartUpPorts, TruckInterfaceOnTheConesPortIsNotProved) {
  settings.TruckInterfaceSerialPort = 3;
  Plug({3});
  EXPECT_TRUE(Prove());
  EXPECT_EQ(world.boxes.texts, Texts{});
  EXPECT_EQ(StartUp.lblLoad.Caption, "CHECKING CONE CONNECTION") << "the last thing checked";
}

TEST_F(StartUpPorts, WithoutATruckInterfaceCannotGoOn) {
  Plug({3});
  world.boxes.Answer(kSpecifyTruck, BoxAnswer::No);
  EXPECT_FALSE(Prove());
  EXPECT_EQ(world.boxes.texts, (Texts{kSpecifyTruck, kTruckNotSet}));
  ExpectAnotherTryIsOffered();
  EXPECT_FALSE(Saved());
}

TEST_F(StartUpPorts, TruckInterfaceThatIsNotChosenCannotGoOn) {
  Plug({3});
  world.Choose(frmSpecifyTruckInterface, 0);
  EXPECT_FALSE(Prove());
  EXPECT_EQ(world.boxes.texts, (Texts{kSpecifyTruck, kTruckNotSet}));
  EXPECT_EQ(settings.TruckInterfaceSerialPort, 4);
  ExpectAnotherTryIsOffered();
}

TEST_F(StartUpPorts, ChosenTruckInterfaceIsTakenAndSaved) {
  Plug({3, 8});
  world.Choose(frmSpecifyTruckInterface, 8);
  EXPECT_TRUE(Prove());
  EXPECT_EQ(world.boxes.texts, (Texts{kSpecifyTruck, "TRUCK INTERFACE SERIAL PORT SET TO PORT 8"}));
  EXPECT_EQ(settings.TruckInterfaceSerialPort, 8);
  EXPECT_TRUE(Saved());
  EXPECT_FALSE(world.dots_ran_at_a_choice);
  EXPECT_TRUE(StartUp.Timer1.Running()) << "the cone is looked for next";
}

TEST_F(StartUpPorts, OutputsOfNumber0AreNotProved) {
  Plug({3, 4});
  settings.LumenProbePresent = 1;
  EXPECT_TRUE(Prove());
  EXPECT_EQ(world.boxes.texts, Texts{});
}

TEST_F(StartUpPorts, ASCIIOutputThatIsThereAsksNothing) {
  Plug({3, 4, 5});
  settings.ASCIIOutSerialPort = 5;
  EXPECT_TRUE(Prove());
  EXPECT_EQ(world.boxes.texts, Texts{});
}

TEST_F(StartUpPorts, MissingASCIIOutputIsDoneWithoutAndSavedAs0OnNo) {
  Plug({3, 4});
  settings.ASCIIOutSerialPort = 5;
  world.boxes.Answer(kSpecifyASCII, BoxAnswer::No);
  EXPECT_TRUE(Prove());
  EXPECT_EQ(world.boxes.texts, Texts{kSpecifyASCII});
  EXPECT_EQ(settings.ASCIIOutSerialPort, 0);
  EXPECT_EQ(session.StartASCIIPort, 0);
  ASSERT_TRUE(Saved());
  EXPECT_EQ(SavedLine(55), "0");
}

TEST_F(StartUpPorts, MissingASCIIOutputIsChosenAnewOnYes) {
  Plug({3, 4, 6});
  settings.ASCIIOutSerialPort = 5;
  world.Choose(frmSpecifyASCIIOut, 6);
  EXPECT_TRUE(Prove());
  EXPECT_EQ(world.boxes.texts, (Texts{kSpecifyASCII, "ASCII OUT SERIAL PORT SET TO PORT 6"}));
  EXPECT_EQ(settings.ASCIIOutSerialPort, 6);
  EXPECT_TRUE(Saved());
}

TEST_F(StartUpPorts, ASCIIOutputThatIsNotChosenIsToldAndTheStartGoesOn) {
  Plug({3, 4});
  settings.ASCIIOutSerialPort = 5;
  world.Choose(frmSpecifyASCIIOut, 0);
  EXPECT_TRUE(Prove());
  EXPECT_EQ(world.boxes.texts, (Texts{kSpecifyASCII,
                                      "ASCII OUT SERIAL PORT NOT SET.  CHECK THE POWER AND USB "
                                      "CONNECTIONS AND TRY AGAIN"}));
  EXPECT_EQ(settings.ASCIIOutSerialPort, 5);
  EXPECT_FALSE(Saved());
}

TEST_F(StartUpPorts, VideoPortWithLumenProbePresent0IsNotProved) {
  Plug({3, 4});
  settings.VideoOverlaySerialPort = 7;
  for (const int present : {0, 3, 4, 5}) {
    settings.LumenProbePresent = static_cast<std::int16_t>(present);
    EXPECT_TRUE(Prove());
    EXPECT_EQ(world.boxes.texts, Texts{}) << present;
    EXPECT_EQ(settings.VideoOverlaySerialPort, 7);
  }
}

TEST_F(StartUpPorts, MissingVideoOverlayIsAskedForWithEitherTextBoard) {
  Plug({3, 4, 9});
  for (const int present : {1, 2}) {
    world.boxes.texts.clear();
    settings.LumenProbePresent = static_cast<std::int16_t>(present);
    settings.VideoOverlaySerialPort = 7;
    world.Choose(frmSpecifyVideoOverlay, 9);
    EXPECT_TRUE(Prove());
    EXPECT_EQ(world.boxes.texts, (Texts{kSpecifyVideo, "VIDEO OVERLAY PORT SET TO PORT 9"}));
    EXPECT_EQ(settings.VideoOverlaySerialPort, 9);
  }
}

TEST_F(StartUpPorts, MissingVideoOverlayIsDoneWithoutAndSavedAs0OnNo) {
  Plug({3, 4});
  settings.LumenProbePresent = 1;
  settings.VideoOverlaySerialPort = 7;
  world.boxes.Answer(kSpecifyVideo, BoxAnswer::No);
  EXPECT_TRUE(Prove());
  EXPECT_EQ(settings.VideoOverlaySerialPort, 0);
  ASSERT_TRUE(Saved());
  EXPECT_EQ(SavedLine(56), "0");
}

TEST_F(StartUpPorts, VideoOverlayThatIsNotChosenIsTold) {
  Plug({3, 4});
  settings.LumenProbePresent = 2;
  settings.VideoOverlaySerialPort = 7;
  world.Choose(frmSpecifyVideoOverlay, 0);
  EXPECT_TRUE(Prove());
  EXPECT_EQ(world.boxes.texts, (Texts{kSpecifyVideo,
                                      "VIDEO OVERLAY PORT NOT SET.  CHECK THE POWER AND USB "
                                      "CONNECTIONS AND TRY AGAIN"}));
}

TEST_F(StartUpPorts, FoundAndChosenAreSavedAndOtherReplacedSettingsStayAsInTheFile) {
  auto values = SampleValues();
  values[20] = "0";    // step
  values[40] = "300";  // cone
  values[41] = "-4";   // truck interface
  values[54] = "256";  // ASCII output
  values[21] = "0";    // no overlay
  values[31] = "7";    // language
  world.PutSetup(Lines(values, 62));
  LoadSystemSetup();
  CheckSettings();
  world.boxes.texts.clear();
  PlugCone(9);
  Plug({6});
  world.Choose(frmSpecifyTruckInterface, 6);
  EXPECT_TRUE(Prove());
  EXPECT_EQ(SavedLine(21), "0");
  EXPECT_EQ(SavedLine(32), "7");
  EXPECT_EQ(SavedLine(41), "9");
  EXPECT_EQ(SavedLine(42), "6");
  EXPECT_EQ(SavedLine(55), "256");
  EXPECT_EQ(settings.DepthStep, 0.02F) << "the session goes on with the replacement";
}

TEST_F(StartUpPorts, ShowWhatIsCheckedInOrder) {
  settings.ASCIIOutSerialPort = 5;
  settings.VideoOverlaySerialPort = 7;
  settings.LumenProbePresent = 1;
  world.boxes.Answer(kSpecifyASCII, BoxAnswer::No);
  world.boxes.Answer(kSpecifyVideo, BoxAnswer::No);
  Plug({8});
  PlugCone(6);
  world.Choose(frmSpecifyTruckInterface, 8);
  EXPECT_TRUE(Prove());
  EXPECT_EQ(world.statuses, (Texts{"CHECKING CONE CONNECTION", "CHECKING FOR CONE ON PORT 6",
                                   "CHECKING TRUCK INTERFACE CONNECTION", "CHECKING ASCII OUT PORT",
                                   "CHECKING VIDEO OVERLAY PORT"}));
}

}  // namespace
}  // namespace penlog
