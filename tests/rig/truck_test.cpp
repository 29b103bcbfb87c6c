#include "rig/truck.h"

#include "platform/numbers.h"
#include "rig/rig_world.h"

namespace penlog {
namespace {

/// Counts as the wiring of the lines has it, written apart from the console: a step down when the
/// contact that follows opens last, up when the one that leads does.
struct Counted {
  int down = 0;
  int up = 0;

  static Counted Encoder(const RigWorld& rig, int direction) {
    Counted counted;
    for (const auto& edge : rig.edges) {
      if (edge.lines.cd || edge.lines.cts || !edge.lines.dsr) continue;
      const int following = direction == 0 ? kCommCts : kCommCd;
      const int leading = direction == 0 ? kCommCd : kCommCts;
      if (edge.event == following) ++counted.down;
      if (edge.event == leading) ++counted.up;
    }
    return counted;
  }

  static Counted Proximity(const RigWorld& rig) {
    Counted counted;
    for (const auto& edge : rig.edges) {
      if (edge.event != kCommCd || !edge.lines.cd || !edge.lines.dsr) continue;
      ++(edge.lines.cts ? counted.down : counted.up);
    }
    return counted;
  }
};

TEST(DepthCounter, EncoderPassesFourChangesAStepAndIsOpenAtWholeSteps) {
  DepthCounter counter(CounterType::Encoder, 0, 5'000'000);
  const bool cd[] = {true, true, false, false};
  const bool cts[] = {false, true, true, false};
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(counter.NextDown(), 625'000 + i * 1'250'000);
    counter.PassDown();
    EXPECT_EQ(counter.Lines({}).cd, cd[i % 4]);
    EXPECT_EQ(counter.Lines({}).cts, cts[i % 4]);
    EXPECT_EQ(counter.NextUp(), 625'000 + i * 1'250'000);
  }
}

TEST(DepthCounter, GoesOnAboveItsStart) {
  DepthCounter counter(CounterType::Encoder, 0, 5'000'000);
  EXPECT_EQ(counter.NextUp(), -625'000);
  counter.PassUp();
  EXPECT_TRUE(counter.Lines({}).cts);
  EXPECT_FALSE(counter.Lines({}).cd);
  EXPECT_EQ(counter.NextUp(), -1'875'000);
}

TEST(DepthCounter, ProximityClosesOnceAStep) {
  DepthCounter counter(CounterType::Proximity, 0, 20'000'000);
  EXPECT_EQ(counter.NextDown(), 5'000'000);
  counter.PassDown();
  EXPECT_TRUE(counter.Lines({}).cd);
  EXPECT_EQ(counter.NextDown(), 15'000'000);
  counter.PassDown();
  EXPECT_FALSE(counter.Lines({}).cd);
}

struct CounterRow {
  const char* setup;
  int direction;
  double step;
};

class EachCounter : public testing::TestWithParam<CounterRow> {
 protected:
  Counted Count(const RigWorld& rig) const {
    return rig.rig.setup.truck.counter == CounterType::Proximity
               ? Counted::Proximity(rig)
               : Counted::Encoder(rig, GetParam().direction);
  }
};

TEST_P(EachCounter, CountsTheDepthPushed) {
  RigWorld rig(GetParam().setup);
  rig.Do("push 0.6");
  rig.RunUntilStanding();
  const Counted counted = Count(rig);
  EXPECT_EQ(counted.down, static_cast<int>(std::lround(0.6 / GetParam().step)));
  EXPECT_EQ(counted.up, 0);
  EXPECT_DOUBLE_EQ(rig.rig.truck.Depth(), 0.6);
}

TEST_P(EachCounter, CountsTheLiftUp) {
  RigWorld rig(GetParam().setup);
  rig.Do("push 0.4");
  rig.RunUntilStanding();
  rig.edges.clear();
  rig.Do("lift 0.2");
  rig.RunUntilStanding();
  const Counted counted = Count(rig);
  EXPECT_EQ(counted.down, 0);
  EXPECT_EQ(counted.up, static_cast<int>(std::lround(0.2 / GetParam().step)));
  EXPECT_DOUBLE_EQ(rig.rig.truck.Depth(), 0.2);
}

TEST_P(EachCounter, RodBreaksAddTheReboundBothWays) {
  RigWorld rig(GetParam().setup);
  rig.Do("push 2.4");
  rig.RunUntilStanding();
  const Counted counted = Count(rig);
  const double rebound = rig.rig.setup.truck.rebound;
  EXPECT_EQ(counted.up, 2 * static_cast<int>(std::lround(rebound / GetParam().step)));
  EXPECT_EQ(counted.down - counted.up, static_cast<int>(std::lround(2.4 / GetParam().step)));
  EXPECT_NEAR(rig.rig.truck.Depth(), 2.4, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(Counters, EachCounter,
                         testing::Values(CounterRow{"dcs", 0, 0.005},
                                         CounterRow{"dcs-swapped", 1, 0.005},
                                         CounterRow{"dcs-shared", 0, 0.005},
                                         CounterRow{"proximity", 0, 0.02},
                                         CounterRow{"prox-shared", 0, 0.02}));

TEST(Push, GoesAtTwoCentimetresASecondWithEvenEdges) {
  RigWorld rig("dcs");
  rig.Do("push 0.1");
  const Micros start = Now();
  rig.RunUntilStanding();
  ASSERT_EQ(rig.edges.size(), 80u);
  EXPECT_EQ(rig.edges[0].time - start, 31'250) << "an eighth of a step";
  for (std::size_t i = 1; i < rig.edges.size(); ++i) {
    EXPECT_NEAR(static_cast<double>(rig.edges[i].time - rig.edges[i - 1].time), 62'500.0, 1.0);
  }
}

TEST(Push, SpeedIsSet) {
  RigWorld rig("dcs");
  rig.Do("speed 4");
  rig.Do("push 0.1");
  World::RunFor(1250 * kMillisecond);
  EXPECT_NEAR(rig.rig.truck.Depth(), 0.05, 1e-6);
}

TEST(Push, AddsUpWhileItRuns) {
  RigWorld rig("dcs");
  rig.Do("push 0.1");
  World::RunFor(kSecond);
  rig.Do("push 0.1");
  rig.RunUntilStanding();
  EXPECT_DOUBLE_EQ(rig.rig.truck.Depth(), 0.2);
}

TEST(Push, StandsWhereItIsStopped) {
  RigWorld rig("dcs");
  rig.Do("push 1");
  World::RunFor(5 * kSecond);
  rig.Do("stop");
  const std::size_t edges = rig.edges.size();
  World::RunFor(10 * kSecond);
  EXPECT_EQ(rig.edges.size(), edges);
  EXPECT_NEAR(rig.rig.truck.Depth(), 0.1, 1e-6);
  EXPECT_FALSE(rig.rig.truck.Busy());
}

TEST(Push, EndsAStrokeWithoutARodBreakUntilItGoesOn) {
  RigWorld rig("dcs");
  rig.Do("push 1");
  rig.RunUntilStanding();
  EXPECT_TRUE(rig.rig.truck.Lines().dsr);
  EXPECT_EQ(rig.edges.size(), 800u);
  rig.Do("push 0.01");
  World::RunFor(2 * kSecond);
  EXPECT_FALSE(rig.rig.truck.Lines().dsr) << "the clamp opens for the next rod";
  rig.RunUntilStanding();
  EXPECT_DOUBLE_EQ(rig.rig.truck.Depth(), 1.01);
}

TEST(RodBreak, RodsComeUpClampedAndTheHeadGoesBackOpen) {
  RigWorld rig("dcs");
  rig.Do("push 0.5");
  rig.RunUntilStanding();
  rig.edges.clear();
  rig.Do("rod-break");
  rig.RunUntilStanding();
  std::vector<std::string> story;
  for (const auto& edge : rig.edges) {
    const std::string what = edge.event == kCommDsr ? (edge.lines.dsr ? "closes" : "opens")
                                                    : (edge.lines.dsr ? "clamped" : "open");
    if (story.empty() || story.back() != what) story.push_back(what);
  }
  EXPECT_EQ(story, (std::vector<std::string>{"clamped", "opens", "open", "closes", "clamped"}));
  EXPECT_DOUBLE_EQ(rig.rig.truck.Depth(), 0.5) << "pushed down again";
}

TEST(RodBreak, UnloadsTheTipWhileTheRodsAreUp) {
  RigWorld rig("dcs-plain");
  rig.Do("push 0.5");
  rig.RunUntilStanding();
  const double loaded = rig.rig.surroundings.Value(1, 0.0, 1.0);
  EXPECT_GT(loaded, 1000.0);
  rig.Do("rod-break");
  World::RunFor(3 * kSecond);
  EXPECT_LT(rig.rig.truck.Depth(), 0.5);
  EXPECT_EQ(rig.rig.surroundings.Value(1, 0.0, 1.0), 0.0);
  rig.RunUntilStanding();
  EXPECT_DOUBLE_EQ(rig.rig.surroundings.Value(1, 0.0, 1.0), loaded);
}

class StopOutput : public testing::TestWithParam<const char*> {};

TEST_P(StopOutput, HaltsThePushWithinOneEdgeAndLetsItGoOn) {
  RigWorld rig(GetParam());
  SerialPort& port = rig.rig.setup.shared_port ? rig.cone : rig.truck;
  rig.Do("push 0.8");
  World::RunFor(3 * kSecond);
  port.SetRTSEnable(true);
  const std::size_t edges = rig.edges.size();
  World::RunFor(20 * kSecond);
  EXPECT_LE(rig.edges.size(), edges + 1);
  EXPECT_NEAR(rig.rig.truck.Depth(), 0.06, 1e-4);
  EXPECT_TRUE(rig.rig.truck.Busy());
  port.SetRTSEnable(false);
  rig.RunUntilStanding();
  EXPECT_DOUBLE_EQ(rig.rig.truck.Depth(), 0.8);
  const auto outputs = rig.rig.log.Of(RigLogKind::Output);
  ASSERT_EQ(outputs.size(), 2u);
  EXPECT_EQ(outputs[0].number, 2);
  EXPECT_EQ(outputs[1].number, 0);
}

INSTANTIATE_TEST_SUITE_P(Ports, StopOutput, testing::Values("dcs", "dcs-shared", "proximity"));

TEST(StopOutputBeforeThePush, KeepsItFromBeginning) {
  RigWorld rig("dcs");
  rig.truck.SetRTSEnable(true);
  World::RunFor(kMillisecond);
  rig.Do("push 0.1");
  World::RunFor(10 * kSecond);
  EXPECT_EQ(rig.rig.truck.Depth(), 0.0);
  rig.truck.SetRTSEnable(false);
  rig.RunUntilStanding();
  EXPECT_DOUBLE_EQ(rig.rig.truck.Depth(), 0.1);
}

TEST(Pressure, IsOnWhileItPushesAndOffWhileItLifts) {
  RigWorld rig("proximity");
  EXPECT_FALSE(rig.rig.truck.Lines().cts);
  rig.Do("push 0.1");
  World::RunFor(kSecond);
  EXPECT_TRUE(rig.rig.truck.Lines().cts);
  rig.RunUntilStanding();
  EXPECT_FALSE(rig.rig.truck.Lines().cts);
}

TEST(Pressure, IsRefusedWhereAnEncoderUsesItsLine) {
  RigWorld rig("dcs");
  std::string reply;
  EXPECT_FALSE(rig.rig.Command("pressure on", reply));
  EXPECT_EQ(reply, "pressure: this truck has no pressure switch (pressure on|off)");
}

TEST(Hold, StandsForItsReadingsBeforeAndAfterTheLastStep) {
  RigWorld rig("dcs");
  rig.Exchange("Z T");
  rig.edges.clear();
  rig.Do("hold 3 5");
  for (int i = 0; i < 1000 && rig.rig.truck.Busy(); ++i) rig.Exchange("D");
  EXPECT_FALSE(rig.rig.truck.Busy());
  EXPECT_EQ(Counted::Encoder(rig, 0).down, 12) << "three times four steps of 5 mm";
  std::map<double, int> at;
  for (const auto& reply : rig.rig.log.Of(RigLogKind::Reply)) {
    if (reply.sampled > 0) ++at[std::round(reply.depth * 1e6) / 1e6];
  }
  for (const double depth : {0.02, 0.04, 0.06}) EXPECT_GE(at[depth], 7) << depth;
}

TEST(Hold, ReadingsAreTheGroundOfTheStepWithinTheLastPlace) {
  RigSetup setup = MakeRigSetup("dcs-plain");
  setup.ground = Ground({{0.0, 1000.0, 10.0, 0.0}, {0.5, 21000.0, 60.0, 0.0}});
  setup.cone.zero_shift = {};
  RigWorld rig(setup);
  rig.Exchange("Z TF");
  rig.Do("hold 10 5");
  while (rig.rig.truck.Busy()) rig.Exchange("D");
  int judged = 0;
  for (const auto& reply : rig.rig.log.Of(RigLogKind::Reply)) {
    const double steps = reply.depth / 0.02;
    if (reply.sampled == 0 || reply.depth == 0.0 || steps != std::round(steps)) continue;
    ++judged;
    const GroundValues ground = setup.ground.At(reply.depth);
    EXPECT_NEAR(LeadingNumber(reply.text), 0.25 + 4.5 * ground.qc / 100000.0, 1.01e-6);
    const double sleeve = LeadingNumber(reply.text.substr(reply.text.find(' ')));
    EXPECT_NEAR(sleeve, 0.3 + 4.2 * ground.fs / 1000.0, 1.01e-6);
  }
  EXPECT_GE(judged, 70);
}

TEST(Hold, CounterPassesTheStepBehindFiveReadings) {
  RigWorld rig("dcs");
  rig.Exchange("Z T");
  rig.Do("hold 1 5");
  while (rig.rig.truck.Busy()) rig.Exchange("D");
  int held = 0;
  Micros counted = 0;
  for (const auto& record : rig.rig.log.Records()) {
    if (record.kind == RigLogKind::Edge) counted = record.time;
  }
  for (const auto& record : rig.rig.log.Records()) {
    if (record.sampled > 0 && record.depth == 0.02 && record.time < counted) ++held;
  }
  EXPECT_GE(held, 5);
}

TEST(Hold, StandsOnTheGridOfTheStepsBehindARodBreakToo) {
  RigSetup setup = MakeRigSetup("dcs");
  setup.truck.rod_length = 0.1;
  RigWorld rig(setup);
  rig.Exchange("Z T");
  rig.Do("hold 12 2");
  for (int i = 0; i < 5000 && rig.rig.truck.Busy(); ++i) rig.Exchange("D");
  EXPECT_FALSE(rig.rig.truck.Busy());
  EXPECT_NEAR(rig.rig.truck.Depth(), 0.24, 1e-9);
  int breaks = 0;
  for (const auto& record : rig.rig.log.Of(RigLogKind::Motion))
    breaks += record.text == "rod added";
  EXPECT_EQ(breaks, 2);
  std::map<double, int> at;
  for (const auto& reply : rig.rig.log.Of(RigLogKind::Reply)) {
    if (reply.sampled > 0) ++at[std::round(reply.depth * 1e6) / 1e6];
  }
  for (int step = 1; step <= 12; ++step) EXPECT_GE(at[step * 0.02], 4) << step;
}

TEST(Hold, AStepLongerThanTheStrokeIsPushedInOne) {
  RigSetup setup = MakeRigSetup("dcs");
  setup.truck.rod_length = 0.1;
  RigWorld rig(setup);
  rig.Exchange("Z T");
  rig.Do("hold 1 2 0.2");
  for (int i = 0; i < 1000 && rig.rig.truck.Busy(); ++i) rig.Exchange("D");
  EXPECT_FALSE(rig.rig.truck.Busy()) << "no rod break without end";
  EXPECT_NEAR(rig.rig.truck.Depth(), 0.2, 1e-9);
}

TEST(Hold, StoppedInItsMiddleLeavesCounterAndTipTogether) {
  RigWorld rig("dcs");
  rig.Exchange("Z T");
  rig.edges.clear();
  rig.Do("hold 2 50");
  for (int i = 0; i < 70; ++i) rig.Exchange("D");
  rig.Do("stop");
  Yield();
  EXPECT_EQ(Counted::Encoder(rig, 0).down, 4);
  EXPECT_DOUBLE_EQ(rig.rig.truck.Depth(), 0.02);
}

TEST(Hold, StoppedOnItsWayLeavesCounterAndTipTogether) {
  RigWorld rig("proximity");
  rig.edges.clear();
  rig.Do("hold 1 5 0.1");
  World::RunFor(2500 * kMillisecond);
  rig.Do("stop");
  Yield();
  EXPECT_NEAR(rig.rig.truck.Depth(), 0.05, 1e-6);
  EXPECT_EQ(Counted::Proximity(rig).down, 3) << "closed at 5, 25 and 45 mm";
}

TEST(Push, GoesOnFromTheMiddleOfAStepWithoutLosingOne) {
  RigWorld rig("dcs");
  for (int i = 0; i < 20; ++i) {
    rig.Do("push 0.0137");
    World::RunFor(300 * kMillisecond);
    rig.Do("stop");
    rig.Do("push 0.0137");
    rig.RunUntilStanding();
  }
  const double depth = rig.rig.truck.Depth();
  EXPECT_EQ(Counted::Encoder(rig, 0).down, static_cast<int>(std::floor(depth / 0.005 + 0.125)));
  EXPECT_EQ(Counted::Encoder(rig, 0).up, 0);
}

TEST(At, PlacesTheTipInAnOpenHole) {
  RigWorld rig("dcs-plain");
  rig.Do("at 2");
  EXPECT_EQ(rig.rig.surroundings.Value(1, 0.0, 1.0), 0.0);
  rig.Do("push 0.1");
  rig.RunUntilStanding();
  EXPECT_DOUBLE_EQ(rig.rig.truck.Depth(), 2.1);
  EXPECT_GT(rig.rig.surroundings.Value(1, 0.0, 1.0), 0.0);
}

TEST(At, PlacesTheTipInAHoleThatWasPushedFromThere) {
  const auto sleeve = [](const char* order) {
    RigWorld rig("dcs");
    rig.Do(order);
    return rig.rig.surroundings.Value(2, 0.1, 1.0);  // 100 mm above the tip
  };
  EXPECT_EQ(sleeve("at 2"), 0.0) << "an open hole loads nothing";
  EXPECT_EQ(sleeve("at 2 1.95"), 0.0) << "nor where the sleeve stands above its start";
  const double placed = sleeve("at 2 1.5");
  EXPECT_GT(placed, 0.0);
  RigWorld pushed("dcs");
  pushed.Do("at 1.5");
  pushed.Do("push 0.5");
  pushed.RunUntilStanding();
  EXPECT_EQ(pushed.rig.surroundings.Value(2, 0.1, 1.0), placed);
  std::string reply;
  EXPECT_FALSE(pushed.rig.Command("at 2 2.5", reply)) << "a hole does not begin below its end";
}

TEST(Sensors, FeelTheGroundAtTheirOwnDepth) {
  RigSetup setup = MakeRigSetup("dcs");
  setup.ground = Ground({{0.0, 0.0, 0.0, 0.0}, {10.0, 10000.0, 100.0, 1000.0}});
  RigWorld rig(setup);
  rig.Do("at 1");
  rig.Do("push 0.5");
  rig.RunUntilStanding();
  EXPECT_NEAR(rig.rig.surroundings.Value(1, 0.0, 1.0), 1500.0, 1e-6);
  EXPECT_NEAR(rig.rig.surroundings.Value(2, 0.1, 1.0), 14.0, 1e-6);
  EXPECT_NEAR(rig.rig.surroundings.Value(3, 0.04, 1.0), 146.0, 1e-6);
}

}  // namespace
}  // namespace penlog
