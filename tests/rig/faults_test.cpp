#include "rig/faults.h"

#include "rig/rig_world.h"

namespace penlog {
namespace {

TEST(Faults, LastUntilTheyAreSwitchedOff) {
  RigFaults faults;
  EXPECT_FALSE(faults.Strikes(FaultName::Silent, 0));
  faults.On(FaultName::Silent);
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(faults.Strikes(FaultName::Silent, i));
  EXPECT_FALSE(faults.Strikes(FaultName::Garbled, 5));
  faults.Off(FaultName::Silent);
  EXPECT_FALSE(faults.Strikes(FaultName::Silent, 6));
}

TEST(Faults, StrikeSoManyTimes) {
  RigFaults faults;
  faults.OnFor(FaultName::Garbled, 2);
  EXPECT_TRUE(faults.Active(FaultName::Garbled, 0));
  EXPECT_TRUE(faults.Strikes(FaultName::Garbled, 0));
  EXPECT_TRUE(faults.Strikes(FaultName::Garbled, 0));
  EXPECT_FALSE(faults.Strikes(FaultName::Garbled, 0));
}

TEST(Faults, EndAtTheirTime) {
  RigFaults faults;
  faults.OnUntil(FaultName::Frozen, 100);
  EXPECT_TRUE(faults.Strikes(FaultName::Frozen, 99));
  EXPECT_FALSE(faults.Strikes(FaultName::Frozen, 100));
}

TEST(Faults, NamesAreReadBack) {
  for (int i = 0; i < kFaultCount; ++i) {
    const auto name = static_cast<FaultName>(i);
    EXPECT_EQ(FaultFromText(FaultText(name)), name);
  }
  EXPECT_FALSE(FaultFromText("gremlin"));
}

TEST(Silent, NotAByteComesBack) {
  RigWorld rig("dcs");
  rig.Do("fault silent 2");
  EXPECT_EQ(rig.Exchange("Y"), "");
  EXPECT_EQ(rig.Exchange("X"), "");
  EXPECT_EQ(rig.Exchange("X"), "READY\r\n") << "after two times it is over";
}

TEST(Silent, LastsForItsTime) {
  RigWorld rig("dcs");
  rig.Do("fault silent 3s");
  EXPECT_EQ(rig.Exchange("X", 2 * kSecond), "");
  World::RunFor(kSecond);
  EXPECT_EQ(rig.Exchange("X"), "READY\r\n");
}

TEST(BreakOnly, AnswersAfterABreakAlone) {
  RigWorld rig("dcs");
  rig.Do("fault break-only");
  for (int i = 0; i < 5; ++i) EXPECT_EQ(rig.Exchange("Y", 200 * kMillisecond), "");
  rig.cone.SetBreak(true);
  World::RunFor(100 * kMillisecond);
  rig.cone.SetBreak(false);
  World::RunFor(100 * kMillisecond);
  EXPECT_NE(rig.Exchange("Y").find("COPYRIGHT"), std::string::npos);
}

TEST(Garbled, HoldsACarriageReturnInItsMiddleAndKeepsItsLength) {
  RigWorld rig("dcs");
  rig.Exchange("Z TFP");
  const std::string good = rig.Exchange("D");
  rig.Do("fault garbled 1");
  const std::string bad = rig.Exchange("D");
  EXPECT_EQ(bad.size(), good.size());
  EXPECT_EQ(bad.substr(bad.size() - 2), "\r\n");
  EXPECT_LT(bad.find('\r'), bad.size() - 2);
  EXPECT_EQ(rig.Exchange("D").find('\r'), good.size() - 2) << "once only";
}

TEST(HalfReply, StopsWithoutALineEnd) {
  RigWorld rig("dcs");
  rig.Do("fault half-reply 1");
  EXPECT_EQ(rig.Exchange("C 3 7"), "DCS0");
  EXPECT_EQ(rig.Exchange("C 3 7"), "DCS0417\r\n");
}

TEST(LostSelection, IsAQuestionMarkUntilTheNextSelection) {
  RigWorld rig("dcs");
  rig.Exchange("Z T");
  rig.Do("fault lost-selection");
  EXPECT_EQ(rig.Exchange("D"), "?\r\n");
  EXPECT_EQ(rig.Exchange("D"), "?\r\n");
  rig.Exchange("Z T");
  EXPECT_NE(rig.Exchange("D"), "?\r\n");
}

TEST(Frozen, RepeatsTheLastReading) {
  RigWorld rig("dcs");
  rig.Exchange("Z TFP");
  const std::string last = rig.Exchange("D");
  rig.Do("fault frozen");
  for (int i = 0; i < 4; ++i) EXPECT_EQ(rig.Exchange("D"), last);
  EXPECT_EQ(rig.Exchange("X"), "READY\r\n") << "it still answers";
  rig.Do("fault frozen off");
  EXPECT_NE(rig.Exchange("D"), last);
}

TEST(Unplugged, PortDoesNotExist) {
  RigWorld rig("dcs");
  rig.Do("fault unplugged cone 2s");
  World::RunFor(kMillisecond);
  EXPECT_FALSE(EnumSerPorts(3));
  EXPECT_TRUE(EnumSerPorts(4));
  EXPECT_TRUE(rig.cone.Gone());
  World::RunFor(2 * kSecond);
  EXPECT_TRUE(EnumSerPorts(3));
  rig.cone.Close();
  rig.cone.Open();
  Yield();
  EXPECT_EQ(rig.Exchange("X"), "READY\r\n");
}

TEST(Unplugged, TruckGoesAloneAndComesBackByPlug) {
  RigWorld rig("dcs");
  rig.Do("unplug truck");
  EXPECT_FALSE(EnumSerPorts(4));
  EXPECT_TRUE(EnumSerPorts(3));
  rig.Do("plug truck");
  EXPECT_TRUE(EnumSerPorts(4));
}

TEST(Replugged, ComesBackUnderItsNewNumber) {
  RigWorld rig("dcs");
  rig.Do("fault replugged cone 7");
  World::RunFor(500 * kMillisecond);
  EXPECT_FALSE(EnumSerPorts(3));
  EXPECT_FALSE(EnumSerPorts(7));
  World::RunFor(kSecond);
  EXPECT_FALSE(EnumSerPorts(3));
  EXPECT_TRUE(EnumSerPorts(7));
  rig.cone.Close();
  RigWorld::OpenAt(rig.cone, 7);
  Yield();
  EXPECT_EQ(rig.Exchange("X"), "READY\r\n");
  rig.Do("replug cone 3 0s");
  World::RunFor(kMillisecond);
  EXPECT_TRUE(EnumSerPorts(3));
  EXPECT_FALSE(EnumSerPorts(7));
}

TEST(Replugged, TheOtherAdapterTakesTheNumberThatFallsFree) {
  RigWorld rig("dcs");
  rig.Do("unplug truck");
  rig.Do("replug cone 4 0s");
  World::RunFor(kMillisecond);
  EXPECT_TRUE(EnumSerPorts(4));
  EXPECT_FALSE(EnumSerPorts(3)) << "the truck's adapter is still away";
  rig.cone.Close();
  RigWorld::OpenAt(rig.cone, 4);
  Yield();
  EXPECT_EQ(rig.Exchange("X"), "READY\r\n");
  rig.Do("plug truck");
  EXPECT_TRUE(EnumSerPorts(3));
  rig.Do("replug truck 9 0s");
  World::RunFor(kMillisecond);
  EXPECT_TRUE(EnumSerPorts(9));
  EXPECT_FALSE(EnumSerPorts(3));
}

TEST(Replugged, SharedPortTakesTheTruckAlong) {
  RigWorld rig("dcs-shared");
  rig.Do("replug truck 9 1s");
  World::RunFor(2 * kSecond);
  EXPECT_TRUE(EnumSerPorts(9));
  EXPECT_FALSE(EnumSerPorts(3));
}

TEST(EdgeBurst, FlipsTheDepthLineAndEndsAsItWas) {
  RigWorld rig("dcs");
  rig.Do("fault edge-burst 10");
  World::RunFor(100 * kMillisecond);
  ASSERT_EQ(rig.edges.size(), 20u);
  for (std::size_t i = 0; i < rig.edges.size(); ++i) {
    EXPECT_EQ(rig.edges[i].event, kCommCd);
    EXPECT_EQ(rig.edges[i].lines.cd, i % 2 == 0);
    EXPECT_EQ(rig.edges[i].time - rig.edges[0].time, static_cast<Micros>(i) * 200);
  }
}

TEST(EdgeLost, LineChangesAndNoEventTells) {
  RigWorld rig("dcs");
  rig.Do("fault edge-lost 2");
  rig.Do("push 0.005");
  rig.RunUntilStanding();
  EXPECT_EQ(rig.edges.size(), 2u) << "four changes, two of them lost";
  EXPECT_EQ(rig.truck.EdgesLostCount(), 2);
}

TEST(Clear, EndsEveryFault) {
  RigWorld rig("dcs");
  rig.Do("fault silent");
  rig.Do("unplug truck");
  rig.Do("clear");
  EXPECT_EQ(rig.Exchange("X"), "READY\r\n");
  EXPECT_TRUE(EnumSerPorts(4));
}

}  // namespace
}  // namespace penlog
