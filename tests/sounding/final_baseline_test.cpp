// TAKE BASELINE at the end of a sounding waits for readings that are all the sensors' own.
#include <string>

#include "conelink/resync_state.h"
#include "forms/restart_form.h"
#include "sounding/fake_cone.h"
#include "sounding/recording_pass.h"
#include "sounding/row_text.h"
#include "sounding/sounding_files.h"
#include "sounding/stop_dialog.h"

namespace penlog {
namespace {

constexpr const char* kNotFull =
    "FINAL BASELINE CANNOT BE TAKEN YET: THE AVERAGES ARE NOT FULL.  PRESS TAKE BASELINE AGAIN IN "
    "A "
    "MOMENT, OR PRESS NO BASELINE.";

/// A stopped sounding whose averages take four readings.
struct Stopped : FakeCone {
  Stopped() {
    CreateSoundingFiles();
    session.ReadingsAveraged = 4;
    sounding.ConsoleMode = 1;
    Main.frmTakeFinalBaseline.Visible = true;
    temporary = ReadFile("/data/TemporaryData.txt");
    cpt = ReadFile("/data/s.cpt");
    ResetBoxes();
  }
  void ExpectRefused(const std::string& text) {
    ASSERT_EQ(OpenBoxes().size(), 1U);
    EXPECT_TRUE(FrontBox()->text.starts_with(text)) << FrontBox()->text;
    EXPECT_TRUE(Main.frmTakeFinalBaseline.Visible) << "the question stays";
    EXPECT_FALSE(frmZOLRestart.Visible);
    EXPECT_EQ(ReadFile("/data/TemporaryData.txt"), temporary);
    EXPECT_EQ(ReadFile("/data/s.cpt"), cpt);
    ResetBoxes();
  }
  std::string temporary;
  std::string cpt;
};

TEST(TakeFinalBaseline, WaitsUntilTheAveragesAreFullWithAndWithoutAResume) {
  for (const char* resumed : {"", "DSE1234"}) {
    for (const int taken : {0, 3, 4}) {
      Stopped stopped;
      session.ResumeConeId = resumed;
      sounding.ReadingsTaken = static_cast<std::int16_t>(taken);
      Main_Command2_Click();
      if (taken < 4) {
        stopped.ExpectRefused(kNotFull);
        Main_Command3_Click();
        EXPECT_EQ(ReadFile("/data/s.cpt"), stopped.cpt) << "no baseline was asked for";
      } else {
        EXPECT_EQ(ReadFile("/data/s.cpt"), stopped.cpt + FinalBaselineLine());
      }
      EXPECT_EQ(ReadFile("/data/TemporaryData.txt"), "DONE\r\n") << taken;
      EXPECT_TRUE(frmZOLRestart.Visible);
    }
  }
}

TEST(TakeFinalBaseline, BehindALossWaitsUntilNoReadingOfBeforeItIsAveragedIn) {
  Stopped stopped;
  cone.ConeLinkUp = 1;  // neither up nor known as lost
  MainloopPass();
  ASSERT_EQ(cone.ConeLinkUp, kTrue);
  Main_Command2_Click();
  stopped.ExpectRefused("FINAL BASELINE CANNOT BE TAKEN WHILE CONE IS DISCONNECTED.");
  for (int reading = 1; reading <= 3; ++reading) {
    MainloopPass();
    Main_Command2_Click();
    stopped.ExpectRefused(kNotFull);
  }
  MainloopPass();
  Main_Command2_Click();
  EXPECT_EQ(ReadFile("/data/TemporaryData.txt"), "DONE\r\n");
}

/// A frozen cone is asked again and again within one pass, and STOP is served meanwhile.
TEST(TakeFinalBaseline, OfASoundingStoppedWhileItsConeIsBroughtBackTakesNoReadingOfTheGround) {
  Stopped stopped;
  Main.frmTakeFinalBaseline.Visible = false;
  sounding.ConsoleMode = 2;
  cone.ConeLinkUp = 1;  // neither up nor known as lost
  stopped.readings.assign(40, "1.000 2.000 3.000");
  bool is_frozen = false;
  PostCall(Now() + 4 * kSecond, &stopped, [&] {
    is_frozen = !stopped.readings.empty() && resync.UnderWay == kTrue;
    Main_cmdWarningOK1_Click();
  });
  MainloopPass();
  ASSERT_TRUE(is_frozen);
  ASSERT_EQ(sounding.ConsoleMode, 1);
  for (int reading = 0; reading <= 3; ++reading) {
    if (reading > 0) MainloopPass();
    ResetBoxes();
    Main_Command2_Click();
    stopped.ExpectRefused(
        reading == 0 ? "FINAL BASELINE CANNOT BE TAKEN WHILE CONE IS DISCONNECTED." : kNotFull);
  }
  MainloopPass();
  Main_Command2_Click();
  EXPECT_EQ(ReadFile("/data/TemporaryData.txt"), "DONE\r\n");
}

TEST(TakeFinalBaseline, OfAConeThatRepeatsItselfSaysSo) {
  Stopped stopped;
  struct Case {
    std::int16_t link_up;
    const char* text;
  };
  for (const Case& row :
       {Case{kTrue, "FINAL BASELINE CANNOT BE TAKEN WHILE THE CONE REPEATS ITS READINGS."},
        Case{kFalse, "FINAL BASELINE CANNOT BE TAKEN WHILE CONE IS DISCONNECTED."}}) {
    resync.UnderWay = kTrue;
    sounding.ReadingsFresh = kFalse;
    cone.ConeLinkUp = row.link_up;
    Main_Command2_Click();
    stopped.ExpectRefused(row.text);
  }
  resync.UnderWay = kFalse;
}

}  // namespace
}  // namespace penlog
