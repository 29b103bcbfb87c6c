// The texts of the strip, and when it is written.
#include "display/status_strip.h"

#include <gtest/gtest.h>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/reset_state.h"
#include "core/session.h"
#include "forms/main_form.h"
#include "platform/yield.h"
#include "sounding/held_rows.h"
#include "sounding/main_loop.h"
#include "sounding/sounding_state.h"
#include "support/world.h"

namespace penlog {
namespace {

TEST(StatusStrip, SaysTheStateInWords) {
  const struct {
    std::int16_t mode;
    bool cone_lost, truck_lost, ended;
    const char* word;
  } rows[] = {
      {1, false, false, false, "WAITING"},   {0, false, false, false, "WAITING"},
      {2, false, false, false, "RECORDING"}, {8, false, false, false, "RECORDING"},
      {5, false, false, false, "RECORDING"}, {1, false, false, true, "STOPPED"},
      {1, true, false, true, "STOPPED"},     {2, true, false, false, "LINK LOST"},
      {1, true, true, false, "LINKS LOST"},  {2, false, true, false, "TRUCK LINK LOST"},
  };
  for (const auto& row : rows) {
    StripValues values;
    values.ConsoleMode = row.mode;
    values.cone_lost = row.cone_lost;
    values.truck_lost = row.truck_lost;
    values.ended = row.ended;
    EXPECT_STREQ(WordOf(StateOf(values)), row.word);
  }
}

TEST(StatusStrip, TellsALatchedQuitUnlessALinkIsLostOrTheSoundingEnded) {
  const struct {
    bool cone_lost, truck_lost, ended;
    const char* word;
  } rows[] = {{false, false, false, "STOPPED BY QUIT"},
              {true, false, false, "LINK LOST"},
              {false, true, false, "TRUCK LINK LOST"},
              {false, false, true, "STOPPED"}};
  for (const auto& row : rows) {
    StripValues values;
    values.ConsoleMode = 2;
    values.quit = true;
    values.cone_lost = row.cone_lost;
    values.truck_lost = row.truck_lost;
    values.ended = row.ended;
    EXPECT_STREQ(WordOf(StateOf(values)), row.word);
  }
}

TEST(StatusStrip, WaitsWhileTheAveragesOfAResumeFillUnlessALinkIsLostOrItEnded) {
  const struct {
    bool cone_lost, quit, ended;
    const char* word;
  } rows[] = {{false, false, false, "WAITING"},
              {true, false, false, "LINK LOST"},
              {false, true, false, "STOPPED BY QUIT"},
              {false, false, true, "STOPPED"}};
  for (const auto& row : rows) {
    StripValues values;
    values.ConsoleMode = 2;
    values.fills = true;
    values.cone_lost = row.cone_lost;
    values.quit = row.quit;
    values.ended = row.ended;
    EXPECT_STREQ(WordOf(StateOf(values)), row.word);
  }
}

TEST(StatusStrip, TellsAnAge) {
  const struct {
    std::int64_t seconds;
    const char* text;
  } rows[] = {{-1, "-"},
              {0, "0 s"},
              {59, "59 s"},
              {60, "1 min 00 s"},
              {125, "2 min 05 s"},
              {3599, "59 min 59 s"},
              {3600, "1 h 00 min"},
              {36061, "10 h 01 min"}};
  for (const auto& row : rows) EXPECT_EQ(AgeText(row.seconds), row.text);
}

TEST(StatusStrip, CountsRowsOnTheDiskApartFromThoseInMemory) {
  StripValues values;
  values.RowCount = 12;
  values.file = "/data/HARBOUR(001).cpt";
  StripTexts texts = MakeStripTexts(values);
  EXPECT_EQ(texts.rows_on_disk, "12");
  EXPECT_EQ(texts.rows_held, "");
  EXPECT_EQ(texts.file, "HARBOUR(001).cpt");
  values.RowsInMemory = 5;
  values.file = "C:\\data\\A.cpt";
  texts = MakeStripTexts(values);
  EXPECT_EQ(texts.rows_on_disk, "7");
  EXPECT_EQ(texts.rows_held, "5");
  EXPECT_EQ(texts.file, "A.cpt");
  values.RowsInMemory = 20;  // the lines of more than one file
  values.file.clear();
  texts = MakeStripTexts(values);
  EXPECT_EQ(texts.rows_on_disk, "0");
  EXPECT_EQ(texts.file, "-");
}

struct Strip : testing::Test {
  Strip() {
    ResetState();
    Main.Timer1.OnTick = Main_Timer1_Timer;
    cone.ConeLinkUp = kTrue;
    sounding.ConsoleMode = 2;
    session.SoundingFiles[1] = "/data/HOLE.cpt";
    Main.Timer1.Start();
  }
  ~Strip() override {
    Main.Timer1.Stop();
    Main.Timer1.OnTick = nullptr;
  }
  static void Pass(Micros time) {
    const Micros end = Now() + time;
    while (Now() < end) WaitYield("the test");
  }
  World world;
};

TEST_F(Strip, ALostConeDimsWhatItToldLast) {
  for (const bool cone_lost : {true, false}) {
    cone.ConeLinkUp = cone_lost ? kFalse : kTrue;
    Pass(2 * kSecond);
    EXPECT_EQ(Main.lblChanValue(1).Enabled, !cone_lost);
    EXPECT_EQ(Main.lblChanValue(30).Enabled, !cone_lost);
    EXPECT_EQ(Main.lblInclination.Enabled, !cone_lost);
    EXPECT_EQ(Main.lblLastRow.BackColor, cone_lost ? kRed : kGrey);
  }
  cone.TruckPortLost = kTrue;
  Pass(2 * kSecond);
  EXPECT_TRUE(Main.lblChanValue(1).Enabled) << "the cone goes on telling";
  EXPECT_EQ(Main.lblLastRow.BackColor, kRed);
}

TEST_F(Strip, FollowsTheConsolesTimer) {
  Pass(2 * kSecond);
  EXPECT_EQ(Main.lblState.Caption, "RECORDING");
  EXPECT_EQ(Main.lblState.BackColor, kGreen);
  EXPECT_EQ(Main.lblSoundingFile.Caption, "HOLE.cpt");
  EXPECT_EQ(Main.lblLastRow.Caption, "-");
  sounding.RowCount = 3;
  Pass(10 * kSecond);
  EXPECT_EQ(Main.lblRowsOnDisk.Caption, "3");
  EXPECT_TRUE(Main.lblLastRow.Caption == "9 s" || Main.lblLastRow.Caption == "10 s")
      << Main.lblLastRow.Caption;
  EXPECT_FALSE(Main.lblRowsHeld.Visible);
  sounding.Held[kCptFile].Text = "a row\r\n";
  sounding.RowsHeldBack = 1;
  Pass(2 * kSecond);
  EXPECT_FALSE(Main.lblRowsHeld.Visible) << "the recovery copy holds it";
  EXPECT_EQ(Main.lblRowsOnDisk.Caption, "3");
  sounding.Held[kTemporaryFile].Text = "a row\r\n";
  Pass(2 * kSecond);
  EXPECT_EQ(Main.lblRowsOnDisk.Caption, "2");
  EXPECT_TRUE(Main.lblRowsHeld.Visible);
  EXPECT_EQ(Main.lblRowsHeld.Caption, "1");
}

TEST_F(Strip, WaitsUntilTheAveragesOfAResumeAreFull) {
  session.ReadingsAveraged = 4;
  struct Case {
    const char* resumed;
    std::int16_t taken;
    const char* word;
  };
  for (const Case& row :
       {Case{"DSE1234", 3, "WAITING"}, Case{"DSE1234", 4, "RECORDING"}, Case{"", 3, "RECORDING"}}) {
    session.ResumeConeId = row.resumed;
    sounding.ReadingsTaken = row.taken;
    Pass(60'000);
    EXPECT_EQ(Main.lblState.Caption, row.word) << row.resumed << row.taken;
  }
}

TEST_F(Strip, IsTheAlarmsWhileAQuitIsLatchedAndGreenUnderTheOverride) {
  Pass(kSecond);
  EXPECT_EQ(Main.lblState.BackColor, kGreen);
  sounding.QuitState = 1;
  Pass(60'000);
  EXPECT_EQ(Main.lblState.Caption, "STOPPED BY QUIT");
  EXPECT_EQ(Main.lblState.BackColor, kRed);
  sounding.QuitState = 3;
  Pass(60'000);
  EXPECT_EQ(Main.lblState.Caption, "RECORDING");
  EXPECT_EQ(Main.lblState.BackColor, kGreen);
}

TEST_F(Strip, TellsALostLinkAtOnce) {
  Pass(kSecond);
  cone.ConeLinkUp = kFalse;
  Pass(60'000);
  EXPECT_EQ(Main.lblState.Caption, "LINK LOST");
  EXPECT_EQ(Main.lblState.BackColor, kRed);
}

TEST_F(Strip, NamesTheKeyOfTheStopOnlyWhileItStops) {
  Main.cmdStart.Caption = "STOP";
  Main.cmdStart.Enabled = true;
  Pass(2 * kSecond);
  EXPECT_TRUE(Main.lblStopKey.Visible);
  Main.cmdStart.Enabled = false;
  Pass(2 * kSecond);
  EXPECT_FALSE(Main.lblStopKey.Visible);
  Main.cmdStart.Enabled = true;
  sounding.ConsoleMode = 1;
  Main.frmTakeFinalBaseline.Visible = true;
  Pass(2 * kSecond);
  EXPECT_FALSE(Main.lblStopKey.Visible);
}

TEST_F(Strip, RowsOfAResumeHaveNoAge) {
  sounding.ConsoleMode = 1;
  sounding.RowCount = 200;
  Pass(2 * kSecond);
  EXPECT_EQ(Main.lblRowsOnDisk.Caption, "200");
  EXPECT_EQ(Main.lblLastRow.Caption, "-");
}

TEST_F(Strip, WritesNothingBetweenTwoSeconds) {
  Pass(kSecond);
  Main.lblRowsOnDisk.Caption = "marked";
  const Micros second = Now() / kSecond;
  while (Now() / kSecond == second) {
    EXPECT_EQ(Main.lblRowsOnDisk.Caption, "marked");
    WaitYield("the test");
  }
}

}  // namespace
}  // namespace penlog
