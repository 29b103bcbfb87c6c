#include "sounding/reading_cycle.h"

#include "sounding/fake_cone.h"

namespace penlog {
namespace {

/// Channels 1 to 3 without averaging, fields given.
struct Fields : Console {
  Fields(std::initializer_list<const char*> fields) {
    session.ReadingsAveraged = 1;
    std::size_t place = 1;
    for (const char* field : fields) sounding.ReplyTokens[place++] = field;
  }
};

TEST(TakeReadings, ShowsEngineeringValuesInTheUnitFormat) {
  Fields fields{"3.0 ", "2.5 ", "-1 "};
  channels.Baselines(1) = 1.0f;
  channels.ChannelSensitivity(1) = 4.0f;
  channels.ChannelFullScale(1) = 100.0f;
  channels.UnitFormat(1, 2) = "#0.0000";
  TakeReadings();
  EXPECT_EQ(sounding.Readings(1), 3.0f);
  EXPECT_EQ(Main.lblChanValue(1).Caption, "50.00");
  EXPECT_EQ(Main.lblChanValue(2).Caption, "2.5000");
  EXPECT_EQ(Main.lblChanValue(3).Caption, "-1.00");
}

TEST(TakeReadings, MissingFieldsCountAsZero) {
  Fields fields{"3.0 "};
  sounding.Readings(2) = 9.0f;
  TakeReadings();
  EXPECT_EQ(sounding.Readings(2), 0.0f);
}

TEST(TakeReadings, SubtractsTheLoadOfAnotherChannelBeforeItShows) {
  Fields fields{"11 ", "5 ", "0 "};
  channels.Baselines(1) = 1.0f;
  channels.SubtractChannel(2) = 1;
  channels.SubtractFactor(2) = 0.2f;
  channels.ChannelFullScale(2) = 10.0f;
  TakeReadings();
  EXPECT_FLOAT_EQ(sounding.Readings(2), 3.0f);
  EXPECT_EQ(Main.lblChanValue(2).Caption, "30.00");
}

TEST(TakeReadings, WithANegativeSubtractChannelShowsNothing) {
  Fields fields{"1 ", "2 ", "3 "};
  channels.SubtractChannel(3) = -1;
  Main.lblChanValue(3).Caption = "as it was";
  TakeReadings();
  EXPECT_EQ(Main.lblChanValue(3).Caption, "as it was");
  EXPECT_EQ(sounding.Readings(3), 3.0f);
}

TEST(TakeReadings, TheBallCorrectsTheShownTipAndNotTheFrictionRatio) {
  Fields fields{"100 ", "2 ", "0 "};
  TakeReadings();
  const float ratio = sounding.Readings(20);
  EXPECT_FLOAT_EQ(ratio, 2.0f);
  settings.TipConfiguration = 1;
  channels.ChannelArea(1) = 1000;
  settings.BallTipArea = 4000;
  TakeReadings();
  EXPECT_EQ(Main.lblChanValue(1).Caption, "25.00");
  EXPECT_EQ(Main.lblChanValue(2).Caption, "2.00") << "of the tip alone";
  EXPECT_EQ(sounding.Readings(20), ratio);
}

TEST(TakeReadings, TheBallFactorIsLeftOutWithASubtraction) {
  Fields fields{"100 ", "2 ", "0 "};
  settings.TipConfiguration = 1;
  channels.ChannelArea(1) = 1000;
  settings.BallTipArea = 4000;
  channels.SubtractChannel(1) = 2;
  TakeReadings();
  EXPECT_EQ(Main.lblChanValue(1).Caption, "100.00");
}

TEST(TakeReadings, SkipsGeophonesComputedAndAbsentChannels) {
  Fields fields{"1 ", "2 ", "3 ", "4 "};
  for (const int channel : {8, 9, 21}) {
    Console::AddChannel(channel);
    channels.ReplyField(channel) = 4;
  }
  channels.ChannelComputed(21) = 1;
  channels.ReplyField(5) = 4;
  TakeReadings();
  for (const int channel : {8, 9, 5}) EXPECT_EQ(sounding.Readings(channel), 0.0f) << channel;
  EXPECT_EQ(sounding.ReadingWindow[1](21), 0.0f);
}

TEST(TakeReadings, WithTheLinkDownKeepsReadingsAndStillComputesTheRest) {
  Fields fields{"1 ", "2 ", "3 "};
  for (const int channel : {6, 7}) Console::AddChannel(channel);
  channels.ChannelFullScale(19) = 15.0f;
  sounding.Readings(1) = 50.0f;
  sounding.Readings(2) = 1.0f;
  sounding.Readings(6) = 3.0f;
  sounding.Readings(7) = 4.0f;
  cone.ConeLinkUp = 0;
  TakeReadings();
  EXPECT_EQ(sounding.Readings(1), 50.0f);
  EXPECT_EQ(sounding.Readings(2), 1.0f);
  EXPECT_FLOAT_EQ(sounding.Readings(19), 75.0f);
  EXPECT_FLOAT_EQ(sounding.Readings(20), 2.0f);
  EXPECT_EQ(Main.lblInclination.Caption, "75.00 deg");
}

TEST(TakeReadings, TheInclinationFillsFiveCharacters) {
  Fields fields{"1 ", "2 ", "3 ", "", "", "0 ", "0.2 "};
  for (const int channel : {6, 7}) Console::AddChannel(channel);
  channels.ChannelFullScale(19) = 15.0f;
  TakeReadings();
  EXPECT_EQ(Main.lblInclination.Caption, " 3.00 deg");
}

TEST(TakeReadings, SoilTypeAndNAreOfTheLoadsInBaseUnits) {
  Fields fields{"41 ", "11 ", "101 "};
  channels.Baselines(1) = 1.0f;
  channels.Baselines(2) = 1.0f;
  channels.Baselines(3) = 1.0f;
  channels.ChannelGain(1) = 20.0f;
  channels.ChannelGain(2) = 2.0f;
  channels.ChannelGain(3) = 10.0f;
  soil.FrictionRatioMax = 100;
  // Zone 5 from 9.9 bar up at 2.0 %, zone 7 at 1.9 % and below.
  for (std::size_t index = 0; index < soil.SbtTable.size(); ++index) {
    soil.SbtTable[index][1] = {index < 20 ? 7.0f : 5.0f, 0.99564f};
  }
  soil.SptDivisor.fill(3.0f);
  display.GraphChannel[2] = 21;
  TakeReadings();
  // 40 x 20 + 100 x 0.2 x 10 = 1000 kPa; 10 x 2 = 20 kPa: 2 %, 10 bar over 3
  EXPECT_EQ(sounding.Readings(21), 5.0f);
  EXPECT_EQ(sounding.Readings(22), 3.0f);
}

TEST(TakeReadings, AFrictionRatioWithoutTipLoadKeepsItsOldValue) {
  Fields fields{"0 ", "2 ", "3 "};
  sounding.Readings(20) = 1.5f;
  TakeReadings();
  EXPECT_EQ(sounding.Readings(20), 1.5f);
}

TEST(TakeReadings, ChannelFourteenAtFiveHundredthsReadsPointZeroFiftyOne) {
  Fields fields{"1 ", "2 ", "3 ", "0.05 "};
  Console::AddChannel(14);
  channels.ReplyField(14) = 4;
  cone.TemperatureCoeffA = 1.0f;
  cone.TemperatureCoeffB = 1.0f;
  TakeReadings();
  EXPECT_EQ(sounding.ReplyTokens[4], ".051");
  EXPECT_NEAR(sounding.Readings(14), 4998000.0f, 5.0f);
}

TEST(TakeReadings, ChannelFourteenWithoutAValueKeepsItsLastSample) {
  Fields fields{"1 ", "2 ", "3 ", "2.05 "};
  Console::AddChannel(14);
  channels.ReplyField(14) = 4;
  cone.TemperatureCoeffA = 1.0f;
  cone.TemperatureCoeffB = 0.5f;
  TakeReadings();
  const float before = sounding.Readings(14);
  sounding.ReplyTokens[4] = "4.9 ";
  TakeReadings();
  EXPECT_EQ(sounding.Readings(14), before);
}

TEST(TakeReadings, SoilIsZeroUnlessAGraphShowsIt) {
  Fields fields{"1000 ", "2 ", "3 "};
  sounding.Readings(21) = 7.0f;
  sounding.Readings(22) = 7.0f;
  TakeReadings();
  EXPECT_EQ(sounding.Readings(21), 0.0f);
  EXPECT_EQ(sounding.Readings(22), 0.0f);
  soil.FrictionRatioMax = 100;
  soil.SptDivisor.fill(2.0f);
  display.GraphChannel[2] = 21;
  TakeReadings();
  EXPECT_EQ(sounding.Readings(21), 2.0f);
}

TEST(Bubble, RisesAgainstTheTilt) {
  struct Case {
    const char* field6;
    const char* field7;
    double left, top;
  };
  // A level of width 1 with a bubble of 0.2: the middle is 0.4, one span of tilt moves it by 0.5.
  const Case cases[] = {
      {"0 ", "0 ", 0.4, 0.4}, {"1 ", "0 ", -0.1, 0.4}, {"0 ", "-0.5 ", 0.4, 0.65}};
  for (const auto& row : cases) {
    Fields fields{"1 ", "2 ", "3 ", "", "", row.field6, row.field7};
    for (const int channel : {6, 7}) Console::AddChannel(channel);
    Main.shpBubble.Where = {true, 0.4, 0.4, 0.2, 0.2};
    TakeReadings();
    EXPECT_NEAR(Main.shpBubble.Where.left, row.left, 1e-6);
    EXPECT_NEAR(Main.shpBubble.Where.top, row.top, 1e-6);
  }
}

TEST(Bubble, GoesByTheLoadOfEachAxisOverItsSensitivity) {
  Fields fields{"1 ", "2 ", "3 ", "", "", "0.9 ", "0.1 "};
  for (const int channel : {6, 7}) Console::AddChannel(channel);
  channels.Baselines(6) = 0.5f;
  channels.ChannelSensitivity(6) = 2.0f;
  channels.Baselines(7) = -0.3f;
  channels.ChannelSensitivity(7) = 4.0f;
  Main.shpBubble.Where = {true, 0.4, 0.4, 0.2, 0.2};
  TakeReadings();
  EXPECT_NEAR(Main.shpBubble.Where.left, 0.4 - 0.2 / 2, 1e-6);
  EXPECT_NEAR(Main.shpBubble.Where.top, 0.4 - 0.1 / 2, 1e-6);
}

TEST(Bubble, WithSensitivityZeroStaysWhereItIs) {
  Fields fields{"1 ", "2 ", "3 ", "", "", "1 ", "1 "};
  Console::AddChannel(6);
  channels.ChannelSensitivity(6) = 0.0f;
  Main.shpBubble.Where = {true, 0.4, 0.4, 0.2, 0.2};
  TakeReadings();
  EXPECT_EQ(Main.shpBubble.Where.left, 0.4);
}

TEST(ModuleReply, DropsItsFirstCharacterAndAppendsABlank) {
  EXPECT_EQ(ModuleReplyText("31.5 2.5", "7 "), "1.5 2.5 ");
  EXPECT_EQ(ModuleReplyText("", "7 "), " 7  ");
  EXPECT_EQ(ModuleReplyText("3", "7 "), " ");
}

TEST(GetConeData, TakesTheFieldsOfOneExchange) {
  FakeCone fake;
  fake.readings = {"1.5 2.5 3.5"};
  GetConeData();
  EXPECT_EQ(fake.commands, std::vector<std::string>{"D"});
  EXPECT_EQ(sounding.Readings(1), 1.5f);
  EXPECT_EQ(sounding.Readings(3), 3.5f);
}

TEST(GetConeData, ClearsTheQuitFlags) {
  FakeCone fake;
  sounding.QuitFlag(1) = sounding.QuitFlag(30) = -1;
  GetConeData();
  EXPECT_EQ(sounding.QuitFlag(1), 0);
  EXPECT_EQ(sounding.QuitFlag(30), 0);
}

TEST(GetConeData, AQuestionMarkLeadsToOneReselectionAndOneRetry) {
  FakeCone fake;
  fake.readings = {"? no channels", "1.5 2.5 3.5"};
  GetConeData();
  EXPECT_EQ(fake.commands, (std::vector<std::string>{"D", "Z TFP", "D"}));
  EXPECT_EQ(sounding.Readings(1), 1.5f);
  // An exchange ends 55 ms behind its line end; then the pause.
  EXPECT_GE(fake.times[1] - fake.times[0], (20 + 55 + 55) * kMillisecond);
}

TEST(GetConeData, AQuestionMarkDoesNotCountAgainstTheTenTries) {
  FakeCone fake;
  for (int i = 0; i < 9; ++i) {
    fake.readings.push_back("?");
    fake.readings.push_back("1\r2");
  }
  fake.readings.push_back("1.5 2.5 3.5");
  GetConeData();
  EXPECT_EQ(fake.Count("D"), 19);
  EXPECT_EQ(sounding.Readings(1), 1.5f);
}

TEST(GetConeData, AConeThatStaysWithoutASelectionGivesNoReading) {
  FakeCone fake;
  sounding.Readings(1) = 9.0f;
  fake.readings.assign(2, "?");
  GetConeData();
  EXPECT_EQ(fake.commands, (std::vector<std::string>{"D", "Z TFP", "D"}));
  EXPECT_EQ(sounding.Readings(1), 9.0f) << "a question mark is no zero";
  EXPECT_EQ(cone.ConeLinkUp, 0) << "rows must not repeat the readings of before";
}

TEST(GetConeData, AConeThatStaysWithoutASelectionGetsNoRows) {
  FakeCone fake;
  sounding.ConsoleMode = 8;
  MainloopPass();
  fake.EncoderDown(2);
  MainloopPass();
  EXPECT_EQ(sounding.RowCount, 1);
  fake.readings.assign(1000, "?");
  MainloopPass();
  EXPECT_TRUE(frmWarning.Visible);
  for (int step = 0; step < 5; ++step) {
    fake.EncoderDown(2);
    for (int pass = 0; pass < 3; ++pass) MainloopPass();
  }
  EXPECT_EQ(sounding.RowCount, 1);
  fake.readings.clear();
  for (int pass = 0; pass < 4; ++pass) MainloopPass();
  EXPECT_EQ(sounding.RowCount, 2) << "one row for the gap";
  EXPECT_GT(sounding.Rows(2, 1), 1.0f);
  fake.EncoderDown(2);
  MainloopPass();
  EXPECT_EQ(sounding.RowCount, 3);
}

TEST(GetConeData, ADamagedReplyAfterTheReselectionCountsAsATry) {
  FakeCone fake;
  fake.readings = {"?", "1\r2 3", "1.5 2.5 3.5"};
  GetConeData();
  EXPECT_EQ(fake.commands, (std::vector<std::string>{"D", "Z TFP", "D", "D"}));
  EXPECT_EQ(sounding.Readings(1), 1.5f);
}

TEST(GetConeData, ASilentModuleIsFilledWithTheFieldOfChannelSeven) {
  FakeCone fake;
  for (const int channel : {7, 10}) Console::AddChannel(channel);
  channels.ReplyField(7) = 3;
  channels.ReplyField(10) = 4;
  cone.ModulePresent[3] = -1;
  sounding.ReplyTokens[3] = "8.5 ";
  fake.readings = {"1 2 3"};
  fake.mute = "D3";
  GetConeData();
  EXPECT_EQ(sounding.ReplyTokens[4], "8.5 ") << "that of the reading before";
}

TEST(GetConeData, ADamagedReplyIsAskedForAgain) {
  FakeCone fake;
  fake.readings = {"1.5 2\r.5 3.5", "1.5 2.5 3.5"};
  GetConeData();
  EXPECT_EQ(fake.Count("D"), 2);
  EXPECT_EQ(sounding.Readings(2), 2.5f);
  EXPECT_GE(fake.times[1] - fake.times[0], (20 + 55 + 55) * kMillisecond) << "behind a pause";
  fake.readings = {"1.5 2\n.5 3.5", "4.5 5.5 6.5"};
  GetConeData();
  EXPECT_EQ(fake.Count("D"), 4) << "by a line feed too";
  EXPECT_EQ(sounding.Readings(1), 4.5f);
}

TEST(GetConeData, TenDamagedRepliesLeaveTheReadings) {
  FakeCone fake;
  sounding.Readings(1) = 9.0f;
  fake.readings.assign(20, "1.5\r2.5 3.5");
  GetConeData();
  EXPECT_EQ(fake.Count("D"), 10);
  EXPECT_EQ(sounding.Readings(1), 9.0f);
}

TEST(GetConeData, AsksEachPresentModuleAndJoinsTheFields) {
  FakeCone fake;
  cone.ModulePresent[3] = -1;
  Console::AddChannel(10);
  channels.ReplyField(10) = 4;
  fake.readings = {"1 2 3", "34.5"};
  GetConeData();
  EXPECT_EQ(fake.commands, (std::vector<std::string>{"D", "D3"}));
  EXPECT_EQ(sounding.Readings(10), 4.5f);
}

TEST(GetConeData, JoinsSeveralModulesInTheOrderOfTheirNumbers) {
  FakeCone fake;
  for (const std::size_t module : {2U, 5U}) cone.ModulePresent[module] = -1;
  for (const int channel : {10, 11, 12}) {
    Console::AddChannel(channel);
    channels.ReplyField(channel) = static_cast<std::int16_t>(channel - 6);
  }
  fake.readings = {"1 2 3", "24.5 5.5", "56.5"};
  GetConeData();
  EXPECT_EQ(fake.commands, (std::vector<std::string>{"D", "D2", "D5"}));
  EXPECT_EQ(sounding.Readings(10), 4.5f);
  EXPECT_EQ(sounding.Readings(11), 5.5f);
  EXPECT_EQ(sounding.Readings(12), 6.5f);
}

TEST(GetConeData, AModuleThatLostItsSelectionIsSelectedAgain) {
  FakeCone fake;
  cone.ModulePresent[3] = -1;
  cone.ModuleSelectCommand[3] = " 3Z R";
  Console::AddChannel(10);
  channels.ReplyField(10) = 4;
  fake.readings = {"1 2 3", "?", "34.5"};
  GetConeData();
  EXPECT_EQ(fake.commands, (std::vector<std::string>{"D", "D3", " 3Z R", "D3"}));
  EXPECT_EQ(sounding.Readings(10), 4.5f);
}

TEST(GetConeData, TheRestartTestTakesTipAndSleeveWithoutAverage) {
  FakeCone fake;
  session.ReadingsAveraged = 4;
  sounding.RestartTestActive = -1;
  channels.Baselines(1) = 1.0f;
  channels.SubtractChannel(2) = 1;
  channels.SubtractFactor(2) = 0.1f;
  sounding.Readings(3) = 9.0f;
  fake.readings = {"11 5 3"};
  GetConeData();
  EXPECT_EQ(sounding.Readings(1), 11.0f);
  EXPECT_FLOAT_EQ(sounding.Readings(2), 4.0f);
  EXPECT_EQ(sounding.Readings(3), 9.0f);
}

TEST(GetConeData, DepthIsCountedDuringTheWait) {
  FakeCone fake;
  PostCall(Now() + 10 * kMillisecond, &fake, [&] {
    fake.truck().SetLines({true, true, false});
    fake.truck().SetLines({false, true, false});
  });
  GetConeData();
  EXPECT_EQ(sounding.DepthCounts, 1.0f);
}

}  // namespace
}  // namespace penlog
