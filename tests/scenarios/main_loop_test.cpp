// The main loop's edge cases on the simulated rig.
#include "sounding/main_loop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "conelink/cone_state.h"
#include "core/session.h"
#include "forms/main_form.h"
#include "forms/operator_actions.h"
#include "platform/clock.h"
#include "platform/numbers.h"
#include "scenarios/scenario.h"
#include "sounding/sounding_state.h"

namespace penlog {
namespace {

constexpr std::size_t kCptHeader = 23;
constexpr int kEventsOfAYield = 64;

int CountCommands(const Scenario& scenario, const std::string& begin, Micros from = 0,
                  Micros to = 1'000'000 * kSecond) {
  int count = 0;
  for (const RigRecord& record : scenario.rig.log.Of(RigLogKind::Command)) {
    const bool fits = record.time >= from && record.time < to && record.text.starts_with(begin);
    count += fits ? 1 : 0;
  }
  return count;
}

/// Numbers of a column of the rows, `width` characters from `at` on, behind the header.
std::vector<double> Column(const std::string& file, std::size_t header, std::size_t at,
                           std::size_t width) {
  std::vector<double> column;
  const auto lines = LinesOf(file);
  for (std::size_t i = header; i < lines.size(); ++i) {
    column.push_back(LeadingNumber(lines[i].substr(at, width)));
  }
  return column;
}

std::vector<double> CptDepths(const Scenario& scenario) {
  return Column(scenario.File("/soundings/S1.cpt"), kCptHeader, 0, 7);
}

std::vector<double> CptSpeeds(const Scenario& scenario) {
  return Column(scenario.File("/soundings/S1.cpt"), kCptHeader, 7, 6);
}

// The OK of the stop question.

/// Presses OK behind so many other events of one moment that its turn comes `batches` yields
/// after the one that ends the reading: 1 at the foot of that pass, 2 at the head of the next.
void PressOkBehindTheReading(int batches) {
  const auto tick = Main.Timer1.OnTick;
  Main.Timer1.OnTick = [tick, batches, pressed = false]() mutable {
    tick();
    const bool ends_the_reading = Main.CommTick == 2 && Main.ConeComm.InBufferCount() == 0;
    if (pressed || !ends_the_reading) return;
    pressed = true;
    for (int i = 0; i < batches * kEventsOfAYield; ++i) PostCall(Now(), &Main, [] {});
    OperatorAction action;
    action.form = &Main;
    action.control = &Main.cmdWarningOK1;
    PostActionNow(action);
  };
}

struct Stopping : Scenario {
  Stopping() {
    At("ok at the foot", [] { PressOkBehindTheReading(1); });
    At("ok at the head", [] { PressOkBehindTheReading(2); });
  }
  void PushAndStop(const std::string& ok) {
    Play(ScriptToRecording() + R"(rig push 2.6
expect Main.lblDepth "2.600 m" 200
click Main.cmdStart
expect Main.frmLocalWarning visible
)" + ok + R"(
expect Main.frmTakeFinalBaseline visible
wait 3
click Main.Command3
screen frmZOLRestart
click frmZOLRestart.cmdNo
)");
  }
  long Pushed() { return static_cast<long>(rig.cone.Memory().DistancePushed()); }
};

TEST(StopOk, ServedDuringThatPassesReadingWritesTheDistancePushed) {
  Stopping scenario;
  scenario.PushAndStop("click Main.cmdWarningOK1");
  EXPECT_EQ(CountCommands(scenario, "W 22 3 "), 1);
  EXPECT_EQ(scenario.Pushed(), 1236) << "1234 and the whole metres of 2.6";
}

TEST(StopOk, ServedAtAFootYieldDoesNotWriteTheDistancePushed) {
  Stopping scenario;
  scenario.PushAndStop("rig test ok at the foot");
  EXPECT_EQ(CountCommands(scenario, "W 22 3 "), 0);
  EXPECT_EQ(scenario.Pushed(), 1234);
}

TEST(StopOk, ServedAtAHeadYieldDoesNotWriteTheDistancePushed) {
  Stopping scenario;
  scenario.PushAndStop("rig test ok at the head");
  EXPECT_EQ(CountCommands(scenario, "W 22 3 "), 0);
  EXPECT_EQ(scenario.Pushed(), 1234);
}

TEST(StopOk, ServedAnywhereLeavesTheSoundingWhole) {
  for (const std::string ok : {"click Main.cmdWarningOK1", "rig test ok at the foot"}) {
    Stopping scenario;
    scenario.PushAndStop(ok);
    EXPECT_EQ(CptDepths(scenario).size(), 130U);
    EXPECT_EQ(scenario.DataFile("TemporaryData.txt"), "DONE\r\n");
  }
}

// Midnight.

ScenarioSetup BeforeMidnight() {
  ScenarioSetup setup;
  setup.start = {2026, 12, 31, 23, 59, 30, 0};
  return setup;
}

TEST(Midnight, ASoundingPastItKeepsTimeAndSpeeds) {
  Scenario scenario(BeforeMidnight());
  std::int32_t elapsed = 0;
  scenario.At("look", [&elapsed] { elapsed = sounding.ElapsedMs; });
  scenario.Play(ScriptToRecording() + R"(rig push 0.9
wait 60
rig test look
)" + ScriptToEnd());
  EXPECT_NEAR(elapsed, 60'000, 1000);
  const auto speeds = CptSpeeds(scenario);
  ASSERT_EQ(speeds.size(), 45U);
  for (const double speed : speeds) EXPECT_NEAR(speed, 2.0, 0.15);
}

TEST(Midnight, ASecondOneIsNotSeen) {
  Scenario scenario(BeforeMidnight());
  std::vector<std::int32_t> elapsed;
  scenario.At("half a day", [&] { scenario.session.clock.StepWall(12 * 3600 * kSecond); });
  scenario.At("look", [&elapsed] { elapsed.push_back(sounding.ElapsedMs); });
  scenario.Play(ScriptToRecording() + R"(wait 1
rig test half a day
wait 1
rig test look
rig test half a day
wait 1
rig test look
)" + ScriptToEnd());
  ASSERT_EQ(elapsed.size(), 2U);
  EXPECT_NEAR(elapsed[0], 12 * 3'600'000, 3000);
  EXPECT_LT(elapsed[1], 5000) << "a whole day counts as none";
}

// The truck on the cone's port.

struct PortWatch {
  bool encoder_opened = false;
  void Look() { encoder_opened = encoder_opened || Main.EncoderComm.PortOpen(); }
};

TEST(SharedPort, NeverOpensEncoderCommAndCountsOnConeComm) {
  ScenarioSetup setup;
  setup.rig = "dcs-shared";
  Scenario scenario(setup);
  PortWatch watch;
  scenario.rig.log.on_added = [&watch](const RigRecord&) { watch.Look(); };
  scenario.session.ports.Wire(4);  // a port that the console could open by mistake
  scenario.Play(ScriptToRecording() + R"(rig push 1.2
expect Main.lblDepth "1.200 m" 100
wait 1
)" + ScriptToEnd());
  EXPECT_FALSE(watch.encoder_opened);
  const auto depths = CptDepths(scenario);
  ASSERT_EQ(depths.size(), 60U) << "the rod break's edges among them";
  for (std::size_t i = 0; i < depths.size(); ++i) {
    EXPECT_NEAR(depths[i], 0.02 * static_cast<double>(i + 1), 0.00051);
  }
}

TEST(SharedPort, TheProximityCounterCountsThereToo) {
  ScenarioSetup setup;
  setup.rig = "prox-shared";
  setup.settings = {{setting::kDepthResolution, "0.02"},
                    {setting::kDepthCounterType, "1"},
                    {setting::kPressureSwitchPresent, "1"}};
  Scenario scenario(setup);
  scenario.Play(ScriptToRecording() + R"(rig push 1.2
expect Main.lblDepth "1.200 m" 100
wait 1
)" + ScriptToEnd());
  EXPECT_EQ(CptDepths(scenario).size(), 60U);
}

TEST(SharedPort, ChatterWithinTwoTicksOfARowIsNotCounted) {
  for (const std::string rig : {"prox-shared", "proximity"}) {
    ScenarioSetup setup;
    setup.rig = rig;
    setup.settings = {{setting::kDepthResolution, "0.02"},
                      {setting::kDepthCounterType, "1"},
                      {setting::kPressureSwitchPresent, "1"}};
    Scenario scenario(setup);
    float depth = 0;
    scenario.At("look", [&depth] { depth = sounding.CurrentDepth; });
    // The first pulse of the chatter counts and makes a row due; the others are too close to it.
    scenario.Play(ScriptToRecording() + R"(rig pressure on
wait 1
rig fault edge-burst 5
wait 1
rig test look
)" + ScriptToEnd());
    EXPECT_FLOAT_EQ(depth, rig == "prox-shared" ? 0.02F : 0.1F) << rig;
  }
}

TEST(SharedPort, ItsQuitOutputStopsTheRig) {
  ScenarioSetup setup;
  setup.rig = "dcs-shared";
  Scenario scenario(setup);
  scenario.Play(ScriptToRecording() + R"(rig push 1.5
expect Main.lblDepth "~^1\.2" 100
rig tilt 12 0
expect Main.frmQuitWarning visible
wait 3
expect Main.lblDepth "~^1\.2" 1
)" + ScriptToEnd());
  EXPECT_TRUE(scenario.rig.truck.Busy()) << "the push waits";
}

// Quits.

struct QuitRun : Scenario {
  explicit QuitRun(const std::string& active) : Scenario(Setup(active)) {
    rig.log.on_added = [this](const RigRecord& record) {
      if (record.kind == RigLogKind::Output && (record.number & 2) != 0) raised.push_back(Now());
      if (beyond == 0 && sounding.CurrentDepth - kStart > 1.0F) beyond = Now();
    };
    Play(ScriptToRecording() + R"(rig tilt 12 0
rig push 1.3
wait 80
)" + ScriptToEnd());
  }
  static ScenarioSetup Setup(const std::string& active) {
    ScenarioSetup setup;
    setup.settings = {{setting::kQuitsActive, active}};
    setup.change_rig = [](RigSetup& rig) { rig.truck.rod_length = 3.0; };
    return setup;
  }
  static constexpr float kStart = 0;
  std::vector<Micros> raised;
  Micros beyond = 0;
};

TEST(Quits, BeginBeyondTheFirstMetreAndAfterTenPasses) {
  const QuitRun run("1");
  ASSERT_EQ(run.raised.size(), 1U) << "the limits were passed from the start on";
  ASSERT_GT(run.beyond, 0);
  // Each pass asks for one reading.
  EXPECT_NEAR(CountCommands(run, "D", run.beyond, run.raised[0]), 10, 1);
}

TEST(Quits, AreNotLookedForWhenTheyAreOff) {
  EXPECT_TRUE(QuitRun("0").raised.empty());
}

// The link.

/// Depths that a row every 2 cm would have.
bool OnGrid(double depth) {
  const double steps = depth / 0.02;
  return std::abs(steps - std::round(steps)) < 0.03;
}

TEST(LinkLoss, WhileRecordingTakesOneRowForTheGapAndThenTheGrid) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + R"(rig push 0.9
wait 10
rig fault silent 12s
wait 1
expect frmWarning.frmModuleWarning visible 20
expect frmWarning.frmModulesConnected visible 60
expect Main.lblDepth "0.900 m" 60
wait 2
)" + ScriptToEnd());
  const auto depths = CptDepths(scenario);
  int gaps = 0;
  for (std::size_t i = 1; i < depths.size(); ++i) {
    if (depths[i] - depths[i - 1] < 0.03) continue;
    ++gaps;
    EXPECT_GT(depths[i] - depths[i - 1], 0.2) << "the way of the gap is in one step";
    ASSERT_LT(i + 1, depths.size());
    EXPECT_TRUE(OnGrid(depths[i + 1])) << depths[i + 1];
  }
  EXPECT_EQ(gaps, 1);
  EXPECT_NEAR(depths.back(), 0.9, 0.0005);
  EXPECT_TRUE(std::is_sorted(depths.begin(), depths.end()));
}

TEST(LinkLoss, APulledConePortIsOpenedAgainAndTheSoundingGoesOn) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + R"(rig push 0.9
wait 10
rig fault unplugged cone 10s
expect frmWarning.frmSerialWarning visible 10
expect frmWarning.frmSerialConnected visible 60
expect Main.lblDepth "0.900 m" 60
wait 2
)" + ScriptToEnd());
  EXPECT_NEAR(CptDepths(scenario).back(), 0.9, 0.0005);
  EXPECT_EQ(scenario.DataFile("TemporaryData.txt"), "DONE\r\n");
}

TEST(LinkLoss, APulledTruckPortIsOpenedAgainAndTellsAtWhichDepthStepsMayBeMissing) {
  Scenario scenario;
  float missing_at = -1;
  scenario.At("look", [&missing_at] {
    if (sounding.StepsMayBeMissing == -1) missing_at = sounding.StepsMayBeMissingDepth;
  });
  scenario.Play(ScriptToRecording() + R"(rig push 0.9
wait 10
rig fault unplugged truck 5s
expect frmWarning.frmEncoderWarning visible 10
expect frmWarning.frmEncoderConnected visible 60
rig test look
expect Main.lblDepth "~^0\.[78]" 60
wait 20
)" + ScriptToEnd());
  EXPECT_GT(missing_at, 0.1F);
  EXPECT_LT(missing_at, 0.3F);
  const auto depths = CptDepths(scenario);
  EXPECT_LT(depths.back(), 0.85) << "five seconds of push were not seen";
  EXPECT_GT(depths.back(), 0.75);
}

TEST(LinkLoss, OfAConeThatComesBackUnderAnotherNumberIsFollowed) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + R"(rig push 0.5
wait 5
rig fault replugged cone 9 3s
expect frmWarning.frmSerialWarning visible 10
expect frmWarning.frmSerialConnected visible 60
expect Main.lblDepth "0.500 m" 60
wait 2
)" + ScriptToEnd());
  EXPECT_NEAR(CptDepths(scenario).back(), 0.5, 0.0005);
}

TEST(StartRefused, WithTheLinkLostTheConeIsNamedFirstEvenIfThePortIsGoneToo) {
  Scenario scenario;
  scenario.Play(ScriptToMain() + R"(click Main.cmdTakeBaseline
rig unplug cone
expect frmWarning.frmSerialWarning visible 10
click Main.cmdStart
answer ok "SOUNDING CANNOT BE STARTED WHILE CONE IS DISCONNECTED"
end
)");
  EXPECT_FALSE(scenario.Has("/soundings/S1.cpt"));
}

// A frozen cone.

TEST(FrozenCone, IsNotFoundWhereTipAndSleeveDiffer) {
  Scenario scenario;
  std::int16_t link = 0;
  scenario.At("look", [&link] { link = cone.ConeLinkUp; });
  scenario.Play(ScriptToRecording() + R"(rig push 0.5
wait 5
rig fault frozen 10s
wait 9
rig test look
expect Main.lblDepth "0.500 m" 60
wait 2
)" + ScriptToEnd());
  // The test compares the tip with the sleeve of the row before: they differ, so nothing is stale.
  EXPECT_EQ(link, -1);
  EXPECT_EQ(CptDepths(scenario).size(), 25U);
}

TEST(FrozenCone, IsFoundWhereTipAndSleeveAreTheSame) {
  ScenarioSetup setup;
  setup.rig = "dcs-plain";
  Scenario scenario(setup);
  // At half a volt the tip alternates between two numbers and the sleeve stands at one of them.
  scenario.At("freeze", [&scenario] {
    scenario.rig.log.on_added = [&scenario, done = false](const RigRecord& record) mutable {
      if (done || record.text != "0.500000 0.500000\r\n") return;
      done = true;
      scenario.rig.faults.OnUntil(FaultName::Frozen, Now() + 20 * kSecond);
    };
  });
  std::string start = ScriptToRecording();
  const std::string done = "click SetupDisplay.cmdDone\n";
  start.insert(start.find(done) + done.size(), "answer yes \"PP channel is not selected\"\n");
  // Zeros of 0.2531 and 0.2988 V, spans of 4.5 and 4.2 V. A living cone that reads so is taken for
  // frozen now and then, too, and is resynchronised twice each time: the last row waits for that.
  scenario.Play(start + R"(rig push 0.9
rig set 1 5486.6666667
rig set 2 47.9047619
wait 5
rig test freeze
expect Main.lblCommError "COMM ERR: duplicate" 20
expect Main.lblDepth "0.900 m" 60
wait 15
)" + ScriptToEnd());
  EXPECT_NEAR(CptDepths(scenario).back(), 0.9, 0.0005) << "it is asked again until it lives";
}

}  // namespace
}  // namespace penlog
