#include "rig/rig.h"

#include "platform/runtime_fault.h"
#include "rig/rig_world.h"

namespace penlog {
namespace {

std::string Refusal(RigWorld& rig, const std::string& words) {
  std::string reply;
  EXPECT_FALSE(rig.rig.Command(words, reply)) << words;
  return reply;
}

TEST(Command, WrongWordsSayWhatIsWrong) {
  RigWorld rig("dcs");
  EXPECT_EQ(Refusal(rig, "dance"), "no such word: \"dance\" (help lists them)");
  EXPECT_EQ(Refusal(rig, "push"), "push: a number is missing (push METRES)");
  EXPECT_EQ(Refusal(rig, "push deep"),
            "push: \"deep\" is no number from 0.0001 to 200 (push METRES)");
  EXPECT_EQ(Refusal(rig, "push -1"), "push: \"-1\" is no number from 0.0001 to 200 (push METRES)");
  EXPECT_EQ(Refusal(rig, "clamp maybe"), "clamp: \"on\" or \"off\" is missing (clamp on|off)");
  EXPECT_EQ(Refusal(rig, "unplug printer"),
            "unplug: \"cone\" or \"truck\" is missing (unplug cone|truck)");
  EXPECT_EQ(Refusal(rig, "fault gremlin"),
            "fault: no such fault (fault NAME [on|off|TIMES|SECONDSs])");
  EXPECT_EQ(Refusal(rig, "hold 2.5 3"),
            "hold: \"2.5\" is not whole (hold STEPS READINGS [METRES])");
  EXPECT_NE(Refusal(rig, "ground /nowhere.gef").find("/nowhere.gef"), std::string::npos);
}

TEST(Command, EmptyLineDoesNothing) {
  RigWorld rig("dcs");
  EXPECT_EQ(rig.Do(""), "");
  EXPECT_EQ(rig.Do("   "), "");
}

TEST(Command, GroundIsReadFromTheDiskAlsoFromAPathWithBlanks) {
  RigWorld rig("dcs-plain");
  rig.world.disk.Put("/my holes/a.csv", "depth,qc\n0,1\n10,11\n");
  rig.Do("ground \"/my holes/a.csv\"");
  EXPECT_DOUBLE_EQ(rig.rig.surroundings.ground.At(5.0).qc, 6000.0);
}

TEST(Command, SetAndFreeHoldAChannel) {
  RigWorld rig("dcs");
  rig.Do("set 1 5000");
  EXPECT_EQ(rig.rig.surroundings.Value(1, 0.0, 1.0), 5000.0);
  rig.Do("free 1");
  EXPECT_EQ(rig.rig.surroundings.Value(1, 0.0, 1.0), 0.0);
}

TEST(Command, StatusTellsDepthAndMotion) {
  RigWorld rig("dcs");
  EXPECT_EQ(rig.Do("status"), "depth 0.000 standing clamped pushed 1234");
  rig.Do("push 0.1");
  World::RunFor(kSecond);
  EXPECT_EQ(rig.Do("status"), "depth 0.020 moving clamped pushed 1234");
}

TEST(Command, HelpListsEveryWord) {
  RigWorld rig("dcs");
  const std::string help = rig.Do("help");
  for (const char* word : {"push ", "rod-break ", "fault ", "replug ", "ground ", "hold "}) {
    EXPECT_NE(help.find(word), std::string::npos) << word;
  }
}

TEST(Setups, AreKnownByNameAndAnswer) {
  for (const auto& name : RigSetupNames()) {
    RigWorld rig(name);
    EXPECT_NE(rig.Exchange("Y").find("COPYRIGHT"), std::string::npos) << name;
    rig.Exchange("Z TFP");
    EXPECT_NE(rig.Exchange("D")[0], '?') << name;
  }
  EXPECT_THROW(MakeRigSetup("lathe"), RuntimeFault);
}

TEST(Setups, SharedPortHasNoWireForTheTruck) {
  RigWorld rig("dcs-shared");
  EXPECT_THROW(rig.rig.AttachTruck(rig.world.ports.Wire(9)), RuntimeFault);
}

TEST(Log, HoldsWhatWasSentWithItsTime) {
  RigWorld rig("dcs");
  rig.rig.log.Clear();
  World::RunFor(kSecond - Now());
  rig.Exchange("X");
  const auto& records = rig.rig.log.Records();
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(RigLogLine(records[0]), "      1.001042 command 0 0.0000 X");
  EXPECT_EQ(RigLogLine(records[1]), "      1.009688 reply 0 0.0000 READY\\r\\n");
}

std::pair<std::uint64_t, std::size_t> RunOnce(std::uint32_t seed) {
  RigWorld rig("dcs-modules", seed);
  rig.Exchange("Z TFPIJ");
  rig.Exchange(" 5Z RV");
  rig.Do("push 1.5");
  rig.Do("fault garbled 3");
  for (int i = 0; i < 300; ++i) {
    rig.Exchange("D");
    rig.Exchange("D5");
  }
  rig.RunUntilStanding();
  return {rig.rig.log.Hash(), rig.rig.log.Records().size()};
}

TEST(Seed, SameSeedGivesTheSameLogAndAnotherDoesNot) {
  const auto first = RunOnce(7);
  EXPECT_EQ(RunOnce(7), first);
  EXPECT_NE(RunOnce(8).first, first.first);
  EXPECT_GT(first.second, 2000u);
}

TEST(Seismic, ArmedConeKeepsSilentAndSendsALineWhenItsRecordIsFull) {
  RigWorld rig("dse");
  EXPECT_EQ(rig.Exchange("SK 12000 24", 300 * kMillisecond), "");
  EXPECT_EQ(rig.Exchange("Y", 300 * kMillisecond), "");
  std::string reply;
  EXPECT_FALSE(rig.rig.Command("strike", reply)) << "DTR is not raised";
  rig.truck.SetDTREnable(true);
  World::RunFor(kMillisecond);
  const Micros start = Now();
  rig.Do("strike");
  World::RunFor(kSecond);
  EXPECT_EQ(rig.cone.Input(), kRecordFull);
  EXPECT_NEAR(static_cast<double>(rig.last_byte - start), 12000 * 24 * 1.6275 + LineTime(11), 2.0);
}

TEST(Seismic, AnyOtherCommandEndsTheWaitForTheTrigger) {
  RigWorld rig("dse");
  rig.Exchange("SK 12000 24", 100 * kMillisecond);
  rig.Exchange("Z T");
  EXPECT_NE(rig.Exchange("D"), "");
  rig.truck.SetDTREnable(true);
  World::RunFor(kMillisecond);
  std::string reply;
  EXPECT_FALSE(rig.rig.Command("strike", reply));
}

TEST(Seismic, BlockHas128BytesOfPackedSamples) {
  RigWorld rig("dse");
  rig.Exchange("SKL 6000 24", 100 * kMillisecond);
  rig.cone.SetInputMode(InputModes::Binary);
  rig.cone.Output("B\r");
  World::RunFor(200 * kMillisecond);
  EXPECT_EQ(rig.cone.InBufferCount(), 128);
  const std::string block = rig.cone.Input();
  const auto byte = [&block](std::size_t i) {
    return static_cast<int>(static_cast<unsigned char>(block[i]));
  };
  const SeismicRecorder& recorder = rig.rig.cone.Recorder();
  for (std::size_t group = 0; group < 42; ++group) {
    const int first = ((byte(3 * group + 1) >> 4) << 8) + byte(3 * group);
    const int second = ((byte(3 * group + 1) & 15) << 8) + byte(3 * group + 2);
    EXPECT_EQ(first, recorder.Sample(1, static_cast<int>(group)));
    EXPECT_EQ(second, recorder.Sample(0, static_cast<int>(group)));
  }
}

}  // namespace
}  // namespace penlog
