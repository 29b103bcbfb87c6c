#include "sounding/recording_pass.h"

#include "conelink/other_cone.h"
#include "sounding/fake_cone.h"
#include "sounding/record_grid.h"
#include "sounding/row_text.h"
#include "sounding/sounding_files.h"

namespace penlog {
namespace {

struct Recording : FakeCone {
  Recording() {
    CreateSoundingFiles();
    sounding.ConsoleMode = 2;
    sounding.NextRecordCount = 2;
    sounding.Readings(1) = 0.5f;
    ResetBoxes();
  }
};

TEST(DueRow, IsTakenOnce) {
  Recording recording;
  sounding.RecordPending = -1;
  TakeDueRow();
  TakeDueRow();
  EXPECT_EQ(sounding.RowCount, 1);
  EXPECT_EQ(sounding.RecordPending, 0);
}

TEST(DueRow, ExtendsTheCharts) {
  Recording recording;
  display.GraphCount = 1;
  display.GraphChannel[1] = 1;
  display.GraphAutoScale.fill(-1);
  for (const float depth : {0.1f, 0.2f, 0.3f}) {
    sounding.CurrentDepth = depth;
    sounding.RecordPending = -1;
    TakeDueRow();
  }
  ASSERT_EQ(Main.pctGraph(1).traces.size(), 1u);
  EXPECT_EQ(Main.pctGraph(1).traces[0].points.size(), 3u);
  EXPECT_EQ(Main.lblGraphValue(1).Caption, "0.50");
}

TEST(DueRow, WaitsDuringTheRestartTest) {
  Recording recording;
  sounding.RecordPending = -1;
  sounding.RestartTestActive = -1;
  TakeDueRow();
  EXPECT_EQ(sounding.RowCount, 0);
  EXPECT_EQ(sounding.RecordPending, -1);
}

TEST(DueRow, TwoDepthStepsBetweenPassesMakeOneRow) {
  Recording recording;
  recording.EncoderDown(4);
  MainloopPass();
  MainloopPass();
  EXPECT_EQ(sounding.RowCount, 1);
  EXPECT_NEAR(sounding.Rows(1, 0), 0.04f, 1e-6);
  EXPECT_EQ(sounding.NextRecordCount, 6);
}

TEST(DueRow, AfterTenThousandRowsTheOperatorIsToldOnceAndAllStays) {
  Recording recording;
  sounding.RowCount = kMostRows - 1;
  for (int i = 0; i < 3; ++i) {
    sounding.RecordPending = -1;
    TakeDueRow();
  }
  EXPECT_EQ(sounding.RowCount, kMostRows);
  EXPECT_EQ(sounding.RecordPending, 0);
  EXPECT_EQ(sounding.TableFull, -1);
  EXPECT_EQ(OpenBoxes().size(), 1u);
  MainloopPass();  // the console lives
  EXPECT_EQ(sounding.ConsoleMode, 2);
}

TEST(RecordingPass, AFaultInAStepIsToldOnceAndTheRowIsStillTaken) {
  Recording recording;
  sounding.CurrentDepth = 2.0f;
  settings.QuitsActive = 1;
  sounding.QuitSettleCount = 10;
  sounding.RowCount = 5;
  channels.ReplyField(1) = 31;
  for (int i = 0; i < 2; ++i) {
    sounding.RecordPending = -1;
    RecordingPass();
  }
  EXPECT_EQ(sounding.RowCount, 7);
  EXPECT_EQ(OpenBoxes().size(), 1u);
}

struct StaleCase {
  std::int32_t row_count;
  float reading1, reading2, reading3;
  bool stale;
};

// The row before the newest holds 1, 2, 3 in its channels 1, 2, 3.
TEST(Stale, ComparesChannelOneWithTheRowsChannelTwo) {
  const StaleCase cases[] = {
      {5, 2, 2, 3, true},  {5, 1, 2, 3, false}, {5, 2, 9, 3, false},
      {5, 2, 2, 9, false}, {1, 2, 2, 3, false}, {0, 2, 2, 3, false},
  };
  for (const auto& row : cases) {
    Recording recording;
    sounding.ReadingsFresh = -1;
    sounding.RowCount = row.row_count;
    for (const int channel : {1, 2, 3}) {
      sounding.Rows(4, channel) = static_cast<float>(channel);
      sounding.Rows(0, channel) = static_cast<float>(channel);
    }
    sounding.Readings(1) = row.reading1;
    sounding.Readings(2) = row.reading2;
    sounding.Readings(3) = row.reading3;
    EXPECT_EQ(ReadingsAreStale(), row.stale) << row.reading1 << " rows " << row.row_count;
  }
}

TEST(Stale, TakesTheLinkDownAndTheNextPassesBringItBack) {
  Recording recording;
  sounding.RowCount = 5;
  for (const int channel : {1, 2, 3}) {
    sounding.Rows(4, channel) = 7.0f;
    sounding.Readings(channel) = 7.0f;
  }
  sounding.QuitSettleCount = 10;
  sounding.ReadingsFresh = -1;
  MainloopPass();
  EXPECT_EQ(cone.ConeLinkUp, 0);
  MainloopPass();
  EXPECT_EQ(cone.ConeLinkUp, -1);
  MainloopPass();
  EXPECT_NE(sounding.Readings(1), 7.0f) << "readings are fresh again";
  EXPECT_EQ(sounding.QuitSettleCount, 0) << "quits wait again after a link loss";
}

TEST(Grid, NextRecordIsBroughtForwardAfterALoss) {
  struct Case {
    float counts;
    std::int32_t step, next, expected;
  };
  // Quotients are rounded, a half to the even neighbour; where that step lies ahead, `next` stays.
  const Case cases[] = {
      {20, 4, 12, 24}, {21, 4, 12, 24}, {22, 4, 12, 12}, {23, 4, 12, 12},
      {18, 4, 12, 20}, {19, 4, 16, 16}, {0, 4, 4, 4},    {7, 1, 3, 8},
  };
  for (const auto& row : cases) {
    EXPECT_EQ(NextRecordOnGrid(row.counts, row.step, row.next), row.expected) << row.counts;
  }
}

TEST(LostLink, NoRowIsTakenAndOneRowFollowsForTheGap) {
  Recording recording;
  recording.EncoderDown(2);
  cone.ConeLinkUp = 0;
  recording.silent = true;
  recording.EncoderDown(5);
  MainloopPass();
  EXPECT_EQ(cone.ConeLinkUp, 0);
  EXPECT_EQ(sounding.RowCount, 0);
  EXPECT_EQ(sounding.RecordPending, -1);
  recording.silent = false;
  for (int pass = 0; pass < 3; ++pass) MainloopPass();
  EXPECT_EQ(cone.ConeLinkUp, -1);
  EXPECT_EQ(sounding.RowCount, 1);
  EXPECT_NEAR(sounding.Rows(1, 0), 0.07f, 1e-6);
  EXPECT_GT(sounding.Rows(1, 1), 1.0f) << "of a reading since then";
}

TEST(LostLink, GoesBackOntoTheGridWhenTheConeAnswersAgain) {
  Recording recording;
  recording.EncoderDown(9);
  sounding.NextRecordCount = 4;
  cone.ConeLinkUp = 0;
  frmWarning.frmSerialWarning.Visible = true;
  LostLinkPass();
  EXPECT_EQ(cone.ConeLinkUp, -1);
  EXPECT_EQ(sounding.NextRecordCount, 10);
  EXPECT_FALSE(frmWarning.frmSerialWarning.Visible);
  EXPECT_TRUE(frmWarning.frmSerialConnected.Visible);
}

TEST(LostLink, PassWhoseScanFindsTheConeResynchronisesOnceMoreAndGoesBackOntoTheGrid) {
  Recording recording;
  recording.EncoderDown(9);
  sounding.NextRecordCount = 4;
  sounding.QuitSettleCount = 10;
  cone.ConeLinkUp = 0;
  MainloopPass();
  EXPECT_EQ(cone.ConeLinkUp, -1);
  EXPECT_EQ(recording.Count("C 3 7"), 2) << "by the scan, and once more";
  EXPECT_EQ(sounding.NextRecordCount, 10);
  EXPECT_EQ(sounding.QuitSettleCount, 0);
  EXPECT_EQ(sounding.RowCount, 0) << "that pass takes no row";
  MainloopPass();
  EXPECT_EQ(sounding.RowCount, 0) << "nor one of the readings before the loss";
  MainloopPass();
  EXPECT_EQ(sounding.RowCount, 1) << "one row for the gap";
  recording.EncoderDown();
  MainloopPass();
  EXPECT_EQ(sounding.RowCount, 2) << "the next at 10 counts";
  EXPECT_EQ(sounding.NextRecordCount, 12);
}

TEST(LostLink, PortThatReturnsWithinOnePassIsResynchronisedTooBeforeRowsGoOn) {
  Recording recording;
  recording.EncoderDown(9);
  sounding.NextRecordCount = 4;
  cone.ConePortLost = -1;  // the cone itself answers at once
  MainloopPass();
  EXPECT_EQ(cone.ConePortLost, 0);
  EXPECT_EQ(sounding.NextRecordCount, 10);
  EXPECT_EQ(sounding.RowCount, 0);
}

struct DistanceCase {
  float distance;
  const char* command;  // null: told, not written
};

TEST(DistancePushed, IsWrittenInThreeCharactersOrTold) {
  const DistanceCase cases[] = {
      {0.0f, "W 22 3 @@@"}, {12.9f, "W 22 3 @@L"}, {262143.0f, "W 22 3 \x7f\x7f\x7f"},
      {262144.0f, nullptr}, {-0.5f, nullptr},      {-100.0f, nullptr},
  };
  for (const auto& row : cases) {
    Recording recording;
    cone.DistancePushed = row.distance;
    cone.DistancePushedPending = -1;
    WriteDistancePushed();
    EXPECT_EQ(cone.DistancePushedPending, 0);
    EXPECT_EQ(recording.WroteDistance(), row.command != nullptr) << row.distance;
    if (row.command != nullptr) {
      ASSERT_FALSE(recording.commands.empty());
      EXPECT_EQ(recording.commands.back(), row.command);
    }
    EXPECT_EQ(OpenBoxes().size(), row.command != nullptr ? 0u : 1u) << row.distance;
  }
}

TEST(DistancePushed, IsNotWrittenToAnotherCone) {
  Recording recording;
  known_cone = {"DCS0001", "DCS0002"};
  cone.DistancePushed = 12.9f;
  cone.DistancePushedPending = -1;
  WriteDistancePushed();
  EXPECT_TRUE(recording.commands.empty());
  ASSERT_EQ(OpenBoxes().size(), 1U);
  EXPECT_EQ(OpenBoxes()[0].text.find("THE DISTANCE PUSHED IS NOT WRITTEN"), 0U);
}

TEST(DistancePushed, IsNotWrittenUnlessItIsPending) {
  Recording recording;
  WriteDistancePushed();
  EXPECT_TRUE(recording.commands.empty());
}

TEST(FiveMetres, SetTheWordOnce) {
  for (const float depth : {5.0f, 5.01f}) {
    Recording recording;
    sounding.CurrentDepth = depth;
    RecordingPass();
    EXPECT_EQ(sounding.FiveMetreWord, depth > 5.0f ? 1 : 0);
  }
}

TEST(Quits, BeginAfterTheFirstMetreAndTenPasses) {
  struct Case {
    float start, depth;
    int active;
    bool counted;
  };
  const Case cases[] = {{0, 1.0f, 1, false},
                        {0, 1.01f, 1, true},
                        {0, 2.0f, 0, false},
                        {5, 5.9f, 1, false},
                        {5, 6.1f, 1, true}};
  for (const auto& row : cases) {
    Recording recording;
    session.StartDepth = row.start;
    sounding.CurrentDepth = row.depth;
    settings.QuitsActive = static_cast<std::int16_t>(row.active);
    RecordingPass();
    EXPECT_EQ(sounding.QuitSettleCount, row.counted ? 1 : 0) << row.depth;
  }
  Recording recording;
  sounding.CurrentDepth = 2.0f;
  settings.QuitsActive = 1;
  channels.QuitLimitDeep(1) = 0.1f;
  for (int pass = 1; pass <= 10; ++pass) RecordingPass();
  EXPECT_EQ(sounding.QuitState, 0);
  RecordingPass();
  EXPECT_EQ(sounding.QuitState, 1);
}

TEST(RestartCommand, IsSentOnceWithAReading) {
  Recording recording;
  cone.ReducedSelectCommand = "Z TF";
  sounding.RestartCommandPending = -1;
  RecordingPass();
  EXPECT_EQ(recording.Count("Z TF"), 1);
  EXPECT_EQ(sounding.RestartCommandPending, 0);
}

}  // namespace
}  // namespace penlog
