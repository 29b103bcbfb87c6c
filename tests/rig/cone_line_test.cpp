#include "rig/cone_line.h"

#include "platform/numbers.h"
#include "rig/coding.h"
#include "rig/rig_world.h"

namespace penlog {
namespace {

TEST(LineTime, IsTenBitsACharacterAt19200Baud) {
  EXPECT_EQ(LineTime(1), 521);
  EXPECT_EQ(LineTime(2), 1042);
  EXPECT_EQ(LineTime(1920), kSecond);
}

TEST(Cone, BannerHoldsCopyrightAndTheVersion) {
  RigWorld rig("dcs");
  const std::string banner = rig.Exchange("Y");
  EXPECT_EQ(banner, "DCS0417 PENETROMETER V3.20 COPYRIGHT 2019\r\n");
  EXPECT_EQ(banner.substr(banner.find(" V") + 2, 4), "3.20");
}

TEST(Cone, AnswersXWithAText) {
  RigWorld rig("dcs");
  EXPECT_EQ(rig.Exchange("X"), "READY\r\n");
}

TEST(Cone, HeaderIsReadByteByByte) {
  RigWorld rig("dcs");
  EXPECT_EQ(rig.Exchange("C 1 2"), "03\r\n");
  EXPECT_EQ(rig.Exchange("C 3 7"), "DCS0417\r\n");
  EXPECT_EQ(rig.Exchange("C 10 6"), "120315\r\n");
  EXPECT_EQ(rig.Exchange("C 16 6"), "260302\r\n");
  EXPECT_EQ(rig.Exchange("C 22 3"), "@SR\r\n") << "1234 is 19 * 64 + 18";
  EXPECT_EQ(rig.Exchange("C 25 3"), "A@@\r\n");
}

TEST(Cone, RecordsFollowEachOtherFromAddress31) {
  RigWorld rig("dcs");
  // Tip 1 T: 100000 kPa at 4.75 V, 0.25 V at zero, 0 mm, area 1000 mm2.
  EXPECT_EQ(rig.Exchange("C 31 17"), "AT@XZ`H@G[H@@Y@@B\r\n");
  EXPECT_EQ(rig.Exchange("C 48 3"), "@Oh\r\n");
  const std::string sleeve = rig.Exchange("C 51 17");
  EXPECT_EQ(sleeve.substr(0, 2), "BF");
  EXPECT_EQ(sleeve.substr(14, 5), "AdC\r\n") << "100 mm, subtraction and area";
  const std::string subtraction = rig.Exchange("C 68 5");
  EXPECT_EQ(subtraction, "A" + EncodeDecimal(0.15) + "\r\n");
  EXPECT_EQ(DecodePlain(rig.Exchange("C 73 3").substr(0, 3)), 15000);
  EXPECT_EQ(rig.Exchange("C 76 17").substr(0, 2), "CP");
  EXPECT_EQ(rig.Exchange("C 127 17"), std::string(17, '@') + "\r\n") << "the end of the list";
}

TEST(Cone, StoresTheDistancePushed) {
  RigWorld rig("dcs");
  EXPECT_EQ(rig.Exchange("W 22 3 @Tx"), "OK\r\n");
  EXPECT_EQ(rig.Exchange("C 22 3"), "@Tx\r\n");
  EXPECT_EQ(rig.rig.cone.Memory().DistancePushed(), 20 * 64 + 56);
}

TEST(Cone, AnswersALineToZWAndO) {
  RigWorld rig("dse");
  for (const char* command : {"Z TF", "Z ", "W 22 3 @@A", "O0 .01", "O1 -0.5"}) {
    EXPECT_EQ(rig.Exchange(command), "OK\r\n") << command;
  }
}

TEST(Cone, AnswersQuestionMarkToWhatItDoesNotKnow) {
  RigWorld rig("dcs");
  for (const char* command : {"Q", "C", "C 1", "C x 2", "W 22 3 @@", "W 9000 1 A", "S", "O2 1"}) {
    EXPECT_EQ(rig.Exchange(command), "?\r\n") << command;
  }
}

TEST(Cone, WithoutSelectionAReadingIsAQuestionMark) {
  RigWorld rig("dcs");
  EXPECT_EQ(rig.Exchange("D"), "?\r\n");
  rig.Exchange("Z ");
  EXPECT_EQ(rig.Exchange("D"), "?\r\n");
}

TEST(Cone, ReportsSelectedChannelsInTheFixedOrderOfLetters) {
  RigWorld rig("dse");
  for (int channel : {1, 2, 3, 6, 7, 14}) rig.rig.surroundings.Set(channel, channel);
  rig.Exchange("Z JIEPFT");
  EXPECT_EQ(rig.rig.cone.ReportedChannels(), (std::vector<int>{1, 2, 3, 14, 6, 7}));
  const std::string reading = rig.Exchange("D");
  EXPECT_EQ(std::count(reading.begin(), reading.end(), ' '), 5);
  EXPECT_EQ(reading.substr(reading.size() - 2), "\r\n");
}

TEST(Cone, OutputIsZeroPlusSpanTimesValueOverFullScalePlusTheSubtractedLoad) {
  RigWorld rig("dcs");
  rig.rig.surroundings.Set(1, 50000.0);
  rig.rig.surroundings.Set(2, 200.0);
  rig.Do("shift 1 0");
  rig.Do("shift 2 0");
  rig.Exchange("Z TF");
  const std::string reading = rig.Exchange("D");
  const double tip = LeadingNumber(reading);
  const double sleeve = LeadingNumber(reading.substr(reading.find(' ')));
  EXPECT_NEAR(tip, 0.25 + 4.5 * 0.5, 1.01e-6);
  EXPECT_NEAR(sleeve, 0.3 + 4.2 * 0.2 + 0.15 * 0.5, 1.01e-6);
}

TEST(Cone, ZeroDriftShowsInTheReadingAndNotInTheMemory) {
  RigWorld rig("dcs");
  const std::string record = rig.Exchange("C 31 17");
  rig.Do("shift 1 0.02");
  rig.Exchange("Z T");
  EXPECT_NEAR(LeadingNumber(rig.Exchange("D")), 0.27, 1.01e-6);
  EXPECT_EQ(rig.Exchange("C 31 17"), "AT@XZ`H@G[H@@Y@@B\r\n");
}

TEST(Cone, TemperatureComesThroughItsPowerLaw) {
  RigWorld rig("dse");
  rig.Do("temperature 25");
  rig.Exchange("Z E");
  const double volts = LeadingNumber(rig.Exchange("D"));
  const double x = 5000.0 / (volts - 0.05) - 2000.0;
  EXPECT_NEAR(1000.0 * std::pow(x, -0.4), 25.0, 0.001);
}

TEST(Cone, ReadingsNeverStandStillAndStayWithinOneUnitOfTheLastPlace) {
  RigWorld rig("dcs");
  rig.Exchange("Z TFPIJ");
  std::string last;
  double sum = 0.0;
  for (int i = 0; i < 40; ++i) {
    const std::string reading = rig.Exchange("D");
    EXPECT_NE(reading.substr(0, 15), last.substr(0, 15));
    EXPECT_NEAR(LeadingNumber(reading), 0.2531, 1.01e-6);
    sum += LeadingNumber(reading);
    last = reading;
  }
  EXPECT_NEAR(sum / 40.0, 0.2531, 1e-6);
}

TEST(Cone, ASteadyOnePrintsTheNearestNumberAgainAndAgain) {
  RigSetup setup = MakeRigSetup("dcs-plain");
  setup.cone.steady = true;
  setup.cone.decimals = 4;
  RigWorld rig(setup);
  rig.Exchange("Z T");
  const struct {
    double drift;
    const char* reading;
  } rows[] = {{0.00304, "0.2530\r\n"}, {0.00306, "0.2531\r\n"}};
  for (const auto& row : rows) {
    rig.rig.cone.ShiftZero(1, row.drift);
    for (int i = 0; i < 20; ++i) EXPECT_EQ(rig.Exchange("D"), row.reading);
  }
}

TEST(Exchange, TakesTheTimeOfItsCharactersAndOfTheAnswerDelay) {
  RigWorld rig("dcs");
  for (const char* command : {"Y", "X", "C 31 17", "Z TFPIJ", "D"}) {
    World::RunFor(100 * kMillisecond);
    const Micros start = Now();
    const std::string reply = rig.Exchange(command);
    const std::string sent = std::string(command) + "\r";
    const Micros expected = LineTime(static_cast<std::int64_t>(sent.size())) +
                            AnswerDelay(command) +
                            LineTime(static_cast<std::int64_t>(reply.size()));
    EXPECT_EQ(rig.last_byte - start, expected) << command;
  }
}

TEST(Exchange, ArrivesInPiecesThatAnAdapterCollects) {
  RigWorld rig("dcs");
  rig.cone.Output("Y\r");
  World::RunFor(LineTime(2) + AnswerDelay("Y") + LineTime(16) - 1);
  EXPECT_EQ(rig.cone.InBufferCount(), 0);
  World::RunFor(1);
  EXPECT_EQ(rig.cone.InBufferCount(), 16);
}

TEST(Exchange, SecondCommandIsAnsweredBehindTheFirst) {
  RigWorld rig("dcs");
  rig.cone.Output("Y\rX\r");
  World::RunFor(200 * kMillisecond);
  EXPECT_EQ(rig.cone.Input(), "DCS0417 PENETROMETER V3.20 COPYRIGHT 2019\r\nREADY\r\n");
}

TEST(Exchange, AtAnotherSpeedIsNotHeard) {
  RigWorld rig("dcs");
  rig.cone.Close();
  rig.cone.SetSettings("9600,N,8,1");
  rig.cone.Open();
  Yield();
  EXPECT_EQ(rig.Exchange("Y"), "");
}

TEST(Break, ClearsTheSelectionAndTheInstrumentStartsAnew) {
  RigWorld rig("dcs");
  rig.Exchange("Z T");
  rig.cone.SetBreak(true);
  World::RunFor(100 * kMillisecond);
  rig.cone.SetBreak(false);
  World::RunFor(kMillisecond);
  EXPECT_EQ(rig.Exchange("D", 30 * kMillisecond), "") << "still starting";
  World::RunFor(kStartTime);
  EXPECT_EQ(rig.Exchange("D"), "?\r\n");
}

TEST(Module, IsAddressedByABlankAndItsNumber) {
  RigWorld rig("dcs-modules");
  EXPECT_EQ(rig.Exchange(" 5Y"), "MRF0007 PENETROMETER V1.10 COPYRIGHT 2019\r\n");
  EXPECT_EQ(rig.Exchange(" 5X"), "READY\r\n");
  EXPECT_EQ(rig.Exchange(" 5C 3 7"), "MRF0007\r\n");
  EXPECT_EQ(rig.Exchange(" 5C 31 17").substr(0, 2), "JR");
  EXPECT_EQ(rig.Exchange(" 2C 31 17").substr(0, 2), "WP");
}

TEST(Module, ThatIsNotThereKeepsSilent) {
  RigWorld rig("dcs-modules");
  for (const char* command : {" 1Y", " 3X", " 9C 1 2", "D4"}) {
    EXPECT_EQ(rig.Exchange(command, 200 * kMillisecond), "") << command;
  }
}

TEST(Module, ReadingBeginsWithOneCharacter) {
  RigWorld rig("dcs-modules");
  EXPECT_EQ(rig.Exchange("D5"), "?\r\n");
  rig.Exchange(" 5Z RV");
  const std::string reading = rig.Exchange("D5");
  EXPECT_EQ(reading[0], '5');
  EXPECT_EQ(std::count(reading.begin(), reading.end(), ' '), 1);
  const double resistivity = LeadingNumber(reading.substr(1));
  EXPECT_GT(resistivity, 0.2);
  EXPECT_LT(resistivity, 4.8);
}

TEST(Module, SelectionIsItsOwn) {
  RigWorld rig("dcs-modules");
  rig.Exchange("Z T");
  rig.Exchange(" 5Z R");
  EXPECT_EQ(rig.Exchange("D2"), "?\r\n");
  EXPECT_NE(rig.Exchange("D"), "?\r\n");
}

}  // namespace
}  // namespace penlog
