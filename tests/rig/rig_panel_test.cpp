#include "rig/rig_panel.h"

#include "platform/files.h"
#include "platform/numbers.h"
#include "rig/rig_world.h"

namespace penlog {
namespace {

struct PanelWorld : RigWorld {
  explicit PanelWorld(const char* setup = "dcs") : RigWorld(setup) {
    rig.log.on_added = [this](const RigRecord& record) { watch.Take(record); };
  }
  ~PanelWorld() { rig.log.on_added = nullptr; }

  RigState State() const { return StateOf(rig, watch, RigNumbers{3, 4}, RigNumbers{3, 4}); }
  std::string Head() const { return Headline(State()); }
  std::string Fact(const std::string& name) const {
    for (const PanelFact& fact : Facts(State())) {
      if (fact.name == name) return fact.value;
    }
    return "no such fact";
  }
  PanelLine Line(const std::string& name) const {
    for (const PanelLine& line : Lines(State())) {
      if (line.name == name) return line;
    }
    return {"no such line", "", false, false};
  }
  void Press(PanelButton button, double way = 1.0) { Do(ButtonOrder(button, State(), way)); }

  ConsoleWatch watch;
};

TEST(RigPanel, HeadlineSaysWhatIsUnderWay) {
  PanelWorld world;
  EXPECT_EQ(world.Head(), "STANDING");
  world.Press(PanelButton::Push);
  World::RunFor(kSecond);
  EXPECT_EQ(world.Head(), "PUSHING AT 2 cm/s");
  world.Press(PanelButton::RodBreak);
  EXPECT_EQ(world.Head(), "ROD BREAK");
  world.Press(PanelButton::Stop);
  EXPECT_EQ(world.Head(), "STANDING");
  world.Press(PanelButton::Lift, 0.5);
  EXPECT_EQ(world.Head(), "LIFTING");
  world.RunUntilStanding();
  world.Do("hold 2 3");
  EXPECT_EQ(world.Head(), "PUSHING STEP BY STEP");
}

TEST(RigPanel, HeadlineTellsTheSpeedThatWasOrdered) {
  PanelWorld world;
  world.Do("speed 1.25");
  world.Press(PanelButton::Push);
  EXPECT_EQ(world.Head(), "PUSHING AT 1.25 cm/s");
}

TEST(RigPanel, StopLineIsToldAboveAll) {
  PanelWorld world;
  world.Press(PanelButton::Push);
  World::RunFor(kSecond);
  EXPECT_FALSE(world.Line("RTS stop").alarm);
  world.truck.SetRTSEnable(true);
  World::RunFor(100 * kMillisecond);
  EXPECT_EQ(world.Head(), "HELD BY THE CONSOLE");
  EXPECT_TRUE(world.Line("RTS stop").alarm);
  EXPECT_EQ(world.Line("RTS stop").word, "STOP");
  EXPECT_EQ(Hint(world.State()).find("The console's stop line is on"), 0u);
  world.Press(PanelButton::Stop);
  EXPECT_EQ(world.Head(), "STANDING, STOP LINE ON");
  world.truck.SetRTSEnable(false);
  World::RunFor(100 * kMillisecond);
  EXPECT_EQ(world.Head(), "STANDING");
}

TEST(RigPanel, StrokeRodsAndEndOfThePushAreTold) {
  PanelWorld world;
  EXPECT_EQ(world.Fact("Stroke"), "0.00 of 1.00 m");
  EXPECT_EQ(world.Fact("Rods"), "0 in the ground");
  EXPECT_EQ(world.Fact("Push"), "none ordered");
  world.Press(PanelButton::Push, 2.0);
  World::RunFor(25 * kSecond);
  EXPECT_EQ(world.Fact("Stroke"), "0.50 of 1.00 m");
  EXPECT_EQ(world.Fact("Rods"), "1 in the ground");
  EXPECT_EQ(world.Fact("Push"), "to 2.000 m");
  world.RunUntilStanding();
  EXPECT_EQ(world.Fact("Rods"), "2 in the ground");
  EXPECT_EQ(world.Fact("Push"), "none ordered");
}

TEST(RigPanel, StrokeGoesBackWithTheHead) {
  PanelWorld world;
  world.Press(PanelButton::Push, 0.5);
  world.RunUntilStanding();
  world.Press(PanelButton::RodBreak);
  World::RunFor(2'500 * kMillisecond);  // settling, rebound and half of the way back
  EXPECT_LT(world.State().stroke, 0.4);
  EXPECT_GT(world.State().stroke, 0.0);
  world.RunUntilStanding();
  EXPECT_NEAR(world.State().stroke, 0.005, 1e-9) << "the rebound was pushed down again";
}

TEST(RigPanel, WhatTheConeFeelsIsInMegapascal) {
  PanelWorld world;
  world.Do("set 1 12346");
  world.Do("set 2 67.8");
  world.Do("set 3 -9");
  EXPECT_EQ(world.Fact("Tip"), "12.35 MPa");
  EXPECT_EQ(world.Fact("Sleeve"), "0.068 MPa");
  EXPECT_EQ(world.Fact("Pore u2"), "-0.009 MPa");
}

TEST(RigPanel, WiresAreToldAsTheConsoleHasThem) {
  PanelWorld world;
  EXPECT_EQ(world.Fact("Cone port"), "COM3 not opened by the console") << "opened before the watch";
  world.cone.Close();
  RigWorld::OpenAt(world.cone, 3);
  Yield();
  EXPECT_EQ(world.Fact("Cone port"), "COM3 opened by the console");
  world.Do("unplug truck");
  EXPECT_EQ(world.Fact("Truck port"), "COM4 unplugged");
}

TEST(RigPanel, ReadingsAreCountedAndTheLastOneShown) {
  PanelWorld world;
  EXPECT_EQ(world.Fact("Console"), "has not asked the cone yet");
  world.Exchange("Z TF");
  EXPECT_EQ(world.Fact("Console"), "asks the cone");
  for (int i = 0; i < 30; ++i) {
    world.Exchange("D");
    World::RunFor(60 * kMillisecond);
  }
  EXPECT_NE(world.Fact("Console").find(" readings a second"), std::string::npos);
  EXPECT_EQ(world.Fact("It reads, V"), world.watch.LastReading());
  World::RunFor(5 * kSecond);
  EXPECT_EQ(world.Fact("Console"), "silent for 5 s");
}

TEST(RigPanel, EncoderAndProximityHaveTheirLines) {
  PanelWorld encoder;
  ASSERT_EQ(Lines(encoder.State()).size(), 5u);
  EXPECT_EQ(encoder.Line("CTS encoder B").word, "free");
  PanelWorld proximity("proximity");
  EXPECT_EQ(proximity.Line("CTS pressure").word, "off");
  proximity.Press(PanelButton::Pressure);
  EXPECT_EQ(proximity.Line("CTS pressure").word, "on");
  EXPECT_EQ(proximity.Line("CD proximity").word, "free");
  proximity.Do("push 0.1");
  World::RunFor(500 * kMillisecond);  // 1 cm: the middle of a step of 2 cm
  EXPECT_TRUE(proximity.Line("CD proximity").on);
}

TEST(RigPanel, ClampButtonTurnsTheClampAbout) {
  PanelWorld world;
  EXPECT_EQ(ButtonCaption(PanelButton::Clamp, world.State()), "OPEN CLAMP");
  world.Press(PanelButton::Clamp);
  EXPECT_EQ(world.Line("DSR clamp").word, "open");
  EXPECT_EQ(ButtonCaption(PanelButton::Clamp, world.State()), "CLOSE CLAMP");
  world.Press(PanelButton::Clamp);
  EXPECT_EQ(world.Line("DSR clamp").word, "closed");
}

TEST(RigPanel, PressureButtonTurnsTheSwitchAboutAndIsRefusedWithoutOne) {
  PanelWorld proximity("proximity");
  EXPECT_EQ(ButtonCaption(PanelButton::Pressure, proximity.State()), "PRESSURE ON");
  proximity.Press(PanelButton::Pressure);
  EXPECT_EQ(ButtonCaption(PanelButton::Pressure, proximity.State()), "PRESSURE OFF");
  PanelWorld encoder;
  std::string reply;
  EXPECT_FALSE(
      encoder.rig.Command(ButtonOrder(PanelButton::Pressure, encoder.State(), 1.0), reply));
  EXPECT_EQ(reply, "pressure: this truck has no pressure switch (pressure on|off)");
}

TEST(RigPanel, EveryWayIsAnOrderThatTheRigTakes) {
  for (const double way : PanelWays()) {
    PanelWorld world;
    world.Press(PanelButton::Push, way);
    EXPECT_NEAR(world.State().target, way, 1e-9);
    EXPECT_EQ(WayText(way), PlainNumber(way) + " m");
  }
}

TEST(RigPanel, LiftEndsWhereTheTipLeavesTheGround) {
  PanelWorld world;
  EXPECT_FALSE(ButtonCanPress(PanelButton::Lift, world.State()));
  world.Do("push 0.4");
  world.RunUntilStanding();
  EXPECT_EQ(ButtonOrder(PanelButton::Lift, world.State(), 0.1), "lift 0.1");
  EXPECT_TRUE(ButtonCanPress(PanelButton::Lift, world.State()));
  world.Press(PanelButton::Lift, 30.0);
  world.RunUntilStanding();
  EXPECT_NEAR(world.State().depth, 0.0, 1e-9);
  EXPECT_FALSE(ButtonCanPress(PanelButton::Lift, world.State()));
}

TEST(RigPanel, HammerIsThereForSeismicConesOnly) {
  EXPECT_EQ(PanelButtons(PanelWorld("dcs").State()).size(), 6u);
  const auto seismic = PanelButtons(PanelWorld("dse").State());
  EXPECT_EQ(seismic.back(), PanelButton::Strike);
  for (const PanelButton button : seismic) EXPECT_FALSE(ButtonHint(button).empty());
}

TEST(RigPanel, HintLeadsFromTheStartToThePush) {
  RigState state;
  state.cone = {true, false, 3, 3};
  state.truck = {true, false, 4, 4};
  state.lines.dsr = true;
  EXPECT_EQ(
      Hint(state),
      "Press START NEW SOUNDING on the console. The cone is on COM3, the truck interface on COM4.");
  state.shared_port = true;
  EXPECT_NE(Hint(state).find("the truck interface on COM3"), std::string::npos);
  state.since_command = kSecond;
  EXPECT_NE(Hint(state).find("the port of the truck interface, choose 3."), std::string::npos);
  state.cone.open = true;
  EXPECT_EQ(Hint(state).find("Go on on the console"), 0u);
  state.readings_per_second = 9;
  EXPECT_NE(Hint(state).find("then PUSH here"), std::string::npos);
  state.lines.dsr = false;
  EXPECT_EQ(Hint(state).find("The clamp is open"), 0u);
}

TEST(RigPanel, HintNamesTheFaultThatIsOn) {
  PanelWorld world;
  world.Press(PanelButton::Push);
  EXPECT_EQ(Hint(world.State()).find("The depth on the console counts"), 0u);
  world.Do("fault frozen");
  EXPECT_EQ(Hint(world.State()).find("Fault frozen. "), 0u);
}

TEST(RigPanel, EveryWorkHasItsHint) {
  RigState state;
  for (const TruckWork work :
       {TruckWork::Push, TruckWork::RodBreak, TruckWork::Lift, TruckWork::Hold}) {
    state.cone = {true, true, 3, 3};
    state.truck = {true, true, 4, 4};
    state.work = work;
    EXPECT_EQ(Hint(state).find("Go on on the console"), std::string::npos);
  }
}

TEST(RigPanel, GroundOfAFileWithBlanksIsLaid) {
  EXPECT_EQ(GroundOrder("/my holes/a b.csv"), "ground \"/my holes/a b.csv\"");
  EXPECT_EQ(GroundOrder("/holes/a\"b.csv"), "ground /holes/a\"b.csv");
}

TEST(RigPanel, GroundIsChangedAndABadFileKeepsTheOldOne) {
  PanelWorld world;
  EXPECT_EQ(world.State().ground_name, "layered");
  TheDisk().MakeFolder("/my holes");
  ReplaceFile("/my holes/a b.csv", "depth (m),qc (MPa)\n0,1\n5,7\n");
  ReplaceFile("/my holes/bad.csv", "depth (m),qc (MPa)\n0,x\n");
  world.Do(GroundOrder("/my holes/a b.csv"));
  EXPECT_EQ(world.State().ground_name, "/my holes/a b.csv");
  EXPECT_EQ(world.Fact("Ground"), "a b.csv");
  EXPECT_NEAR(world.rig.surroundings.ground.At(5.0).qc, 7000.0, 1e-6);
  const int laid = world.rig.surroundings.grounds_laid;
  std::string reply;
  EXPECT_FALSE(world.rig.Command(GroundOrder("/my holes/bad.csv"), reply));
  EXPECT_NE(reply.find("/my holes/bad.csv"), std::string::npos) << reply;
  EXPECT_FALSE(world.rig.Command(GroundOrder("/my holes/none.gef"), reply));
  EXPECT_EQ(world.rig.surroundings.grounds_laid, laid);
  EXPECT_EQ(world.State().ground_name, "/my holes/a b.csv");
  world.Do(LayeredOrder());
  EXPECT_EQ(world.State().ground_name, "layered");
  EXPECT_NEAR(world.rig.surroundings.ground.At(5.0).qc, UsualGround().At(5.0).qc, 1e-9);
}

struct RodRow {
  double depth;
  int rods;
};

class EachRodDepth : public testing::TestWithParam<RodRow> {};

TEST_P(EachRodDepth, HasItsRods) {
  EXPECT_EQ(RodsInTheGround(GetParam().depth, 1.0), GetParam().rods);
}

INSTANTIATE_TEST_SUITE_P(RigPanel, EachRodDepth,
                         testing::Values(RodRow{-0.1, 0}, RodRow{0.0, 0}, RodRow{0.001, 1},
                                         RodRow{1.0, 1}, RodRow{1.001, 2}, RodRow{12.0, 12}));

}  // namespace
}  // namespace penlog
