#include "sounding/sounding_start.h"

#include "platform/files.h"
#include "sounding/console.h"
#include "sounding/missing_steps.h"
#include "sounding/reading_cycle.h"
#include "sounding/row_text.h"

namespace penlog {
namespace {

TEST(Baseline, TakesTheReadingsOfPresentChannelsThatKeepAZero) {
  struct Case {
    int channel, keep;
    bool present;
    float baseline;
  };
  const Case cases[] = {{1, 1, true, 5.0f},  {1, 0, true, 1.0f},  {1, 1, false, 1.0f},
                        {19, 1, true, 1.0f}, {20, 1, true, 1.0f}, {22, 1, true, 5.0f},
                        {1, -1, true, 1.0f}};
  for (const auto& row : cases) {
    Console console;
    channels.ChannelPresent(row.channel) = row.present ? -1 : 0;
    channels.ChannelKeepZero(row.channel) = static_cast<std::int16_t>(row.keep);
    channels.Baselines(row.channel) = 1.0f;
    sounding.Readings(row.channel) = 5.0f;
    Main_cmdTakeBaseline_Click();
    EXPECT_EQ(channels.Baselines(row.channel), row.baseline) << row.channel << " " << row.keep;
  }
}

TEST(Baseline, EnablesTheStart) {
  Console console;
  EXPECT_FALSE(Main.cmdStart.Enabled) << "no start without a baseline";
  Main_cmdTakeBaseline_Click();
  EXPECT_TRUE(Main.cmdStart.Enabled);
}

TEST(Baseline, BringsTheShownValuesToZeroWithTheNextReading) {
  Console console;
  session.ReadingsAveraged = 1;
  channels.ChannelKeepZero(1) = 1;
  channels.ChannelKeepZero(2) = 0;
  sounding.ReplyTokens = {"", "5 ", "6 "};
  TakeReadings();
  EXPECT_EQ(Main.lblChanValue(1).Caption, "5.00");
  Main_cmdTakeBaseline_Click();
  EXPECT_EQ(Main.lblChanValue(1).Caption, "5.00") << "nothing else is touched";
  TakeReadings();
  EXPECT_EQ(Main.lblChanValue(1).Caption, "0.00");
  EXPECT_EQ(Main.lblChanValue(2).Caption, "6.00") << "keeps the zero of the cone's record";
}

TEST(Baseline, AskedForBeforeTheAverageIsFullIsTakenWhenItIs) {
  Console console;
  session.ReadingsAveraged = 4;
  sounding.ReadingsTaken = 0;
  channels.ChannelKeepZero(1) = 1;
  Main_cmdTakeBaseline_Click();
  for (int reading = 1; reading <= 3; ++reading) {
    sounding.ReplyTokens = {"", "8 ", "6 ", "7 "};
    TakeReadings();
    TakeAskedBaseline();
    EXPECT_FALSE(Main.cmdStart.Enabled) << reading << ": zeros still stand in the average";
    EXPECT_EQ(channels.Baselines(1), 0.0f);
  }
  TakeReadings();
  TakeAskedBaseline();
  EXPECT_TRUE(Main.cmdStart.Enabled);
  EXPECT_EQ(channels.Baselines(1), 8.0f);
  sounding.ReplyTokens = {"", "9 ", "6 ", "7 "};
  TakeReadings();
  TakeAskedBaseline();
  EXPECT_EQ(channels.Baselines(1), 8.0f) << "once for a press";
}

TEST(Baseline, WaitsForReadingsWhileTheLinkIsDown) {
  Console console;
  session.ReadingsAveraged = 1;
  sounding.ReadingsTaken = 0;
  cone.ConeLinkUp = 0;
  Main_cmdTakeBaseline_Click();
  TakeReadings();
  TakeAskedBaseline();
  EXPECT_FALSE(Main.cmdStart.Enabled);
}

TEST(Start, ZeroesDepthAndTurnsToRecording) {
  Console console;
  console.OpenPorts();
  session.StartDepth = 1.5f;
  sounding.ConsoleMode = 8;
  sounding.DepthCounts = 77;
  sounding.RecordPending = -1;
  sounding.SecondsCounter = 9;
  sounding.PictureCount = 4;
  Main.cmdTakeBaseline.Enabled = true;
  StartRecording();
  EXPECT_EQ(sounding.PictureCount, 0);
  EXPECT_EQ(sounding.ConsoleMode, 2);
  EXPECT_EQ(sounding.CurrentDepth, 1.5f);
  EXPECT_EQ(sounding.Rows(0, 0), 1.5f);
  EXPECT_EQ(sounding.DepthCounts, 0.0f);
  EXPECT_EQ(sounding.NextRecordCount, 2);
  EXPECT_EQ(sounding.NextPictureCount, 1);
  EXPECT_EQ(sounding.RecordPending, 0);
  EXPECT_EQ(sounding.SecondsCounter, 0);
  EXPECT_EQ(Main.lblNumberOfPictures.Caption, "0");
  EXPECT_EQ(Main.cmdStart.Caption, "STOP");
  EXPECT_FALSE(Main.cmdExit.Enabled);
  EXPECT_TRUE(Main.cmdResetQuits.Visible);
  EXPECT_FALSE(Main.cmdTakeBaseline.Visible);
  EXPECT_FALSE(Main.cmdTakeBaseline.Enabled);
  EXPECT_TRUE(Main.lblBigDepth.Visible);
  EXPECT_TRUE(Main.Shape1.Visible);
  EXPECT_EQ(ReadFile("/data/s.cpt"), CptHeader());
  EXPECT_EQ(ReadFile("/data/TemporaryData.txt"), TemporaryHeader("/data/s.cpt"));
}

TEST(Start, ForgetsWhatWasMissingBefore) {
  Console console;
  sounding.ConsoleMode = 2;
  NoteStepsMayBeMissing();
  ASSERT_EQ(sounding.StepsMayBeMissing, -1);
  sounding.ConsoleMode = 8;
  StartRecording();
  EXPECT_EQ(sounding.StepsMayBeMissing, 0);
  EXPECT_EQ(missing_steps.TimesAway, 0);
}

TEST(Start, ShowsTheStartDepthInUnitsAndFormat) {
  struct Case {
    float start;
    int units, format;
    const char* depth;
    const char* big;
    const char* axis_min;
    const char* axis_max;
  };
  const Case cases[] = {
      {0.0f, 0, 0, "0.00 m", "0.00m", "0", "1"},
      {2.0f, 0, 0, "2.00 m", "2.00m", "2", "3"},
      {2.0f, 1, 0, "6.56 ft", "6.56ft", "2", "3"},
      {-100.0f, 0, 1, "100.00 m", "100.00m", "100", "99"},
      {-10.0f, 1, 1, "32.81 ft", "32.81ft", "10", "9"},
  };
  for (const auto& row : cases) {
    Console console;
    session.StartDepth = row.start;
    settings.DepthUnits = static_cast<std::int16_t>(row.units);
    settings.DepthFormat = static_cast<std::int16_t>(row.format);
    StartRecording();
    EXPECT_EQ(Main.lblDepth.Caption, row.depth);
    EXPECT_EQ(Main.lblBigDepth.Caption, row.big);
    EXPECT_EQ(Main.lblGraphYmin.Caption, row.axis_min);
    EXPECT_EQ(Main.lblGraphYmax.Caption, row.axis_max);
  }
}

TEST(Start, LowersTheTriggerOfTheRightPort) {
  struct Case {
    int counter_type;
    bool shared, encoder_port;
  };
  const Case cases[] = {{0, false, true}, {0, true, false}, {1, false, false}, {1, true, false}};
  for (const auto& row : cases) {
    Console console;
    settings.DepthCounterType = static_cast<std::int16_t>(row.counter_type);
    if (row.shared) settings.TruckInterfaceSerialPort = Console::kConePort;
    Main.EncoderComm.SetDTREnable(true);
    Main.ConeComm.SetDTREnable(true);
    StartRecording();
    EXPECT_EQ(Main.EncoderComm.DTREnable(), !row.encoder_port);
    EXPECT_EQ(Main.ConeComm.DTREnable(), row.encoder_port);
  }
}

TEST(Start, DoesNotYield) {
  Console console;
  console.OpenPorts();
  sounding.ConsoleMode = 8;
  console.truck().SetLines({true, true, false});
  console.truck().SetLines({false, true, false});
  StartRecording();
  EXPECT_EQ(sounding.DepthCounts, 0.0f) << "the queued count comes after the start";
  Yield();
  EXPECT_EQ(sounding.DepthCounts, 1.0f);
}

TEST(Start, WithoutAWritableFolderWaitsAsBeforeAndTellsTheOperator) {
  Console console;
  sounding.ConsoleMode = 8;
  console.disk.SetReadOnly("/data");
  StartRecording();
  EXPECT_EQ(sounding.ConsoleMode, 1);
  EXPECT_EQ(Main.cmdStart.Caption, "START");
  EXPECT_TRUE(Main.cmdExit.Enabled);
  EXPECT_TRUE(Main.cmdTakeBaseline.Visible);
  ASSERT_EQ(OpenBoxes().size(), 1u);
  EXPECT_NE(OpenBoxes()[0].text.find("Permission denied"), std::string::npos);
  console.disk.SetReadOnly("");
  StartRecording();
  EXPECT_EQ(sounding.ConsoleMode, 2);
}

}  // namespace
}  // namespace penlog
