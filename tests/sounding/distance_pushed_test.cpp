#include "sounding/distance_pushed.h"

#include "conelink/value_coding.h"
#include "platform/numbers.h"
#include "sounding/fake_cone.h"
#include "sounding/recording_pass.h"
#include "sounding/sounding_files.h"
#include "sounding/stop_dialog.h"

namespace penlog {
namespace {

constexpr const char* kNote = "/data/Distance Pushed.txt";

/// A sounding whose cone has counted 100 m before it.
struct Pushed : FakeCone {
  Pushed() {
    session.SoundingDateTime = "2026-06-15 09:30:00";
    cone.DistancePushed = 100;
    CreateSoundingFiles();
  }
  /// OK of the stop question at a depth, and the pass that writes.
  static void Stop(float depth) {
    sounding.CurrentDepth = depth;
    sounding.ConsoleMode = 2;
    Main_cmdWarningOK1_Click();
    WriteDistancePushed();
  }
  /// Another program reads what the cone holds.
  void ReadCone() {
    cone.DistancePushed = static_cast<float>(IntPart(static_cast<double>(cone.DistancePushed)));
    commands.clear();
  }
};

TEST(DistancePushed, IsAddedOnceWhenAnEndThatWasCutOffIsStoppedAgain) {
  struct Case {
    std::vector<float> stops;
    float whole;
  };
  for (const Case& row :
       {Case{{12.5F}, 112.5F}, Case{{12.5F, 12.5F}, 112.5F}, Case{{12.5F, 13.75F}, 113.75F},
        Case{{0.75F, 1.5F, 2.25F}, 102.25F}, Case{{12.5F, 3.0F}, 112.0F},
        Case{{12.5F, 3.0F, 14.0F}, 114.0F}, Case{{-9.5F}, 90.5F}, Case{{-9.5F, -8.0F}, 92.0F}}) {
    Pushed pushed;
    for (const float depth : row.stops) {
      pushed.ReadCone();
      Pushed::Stop(depth);
    }
    EXPECT_FLOAT_EQ(cone.DistancePushed, row.whole) << row.stops.size();
    auto written = static_cast<float>(IntPart(static_cast<double>(row.whole)));
    EXPECT_EQ(pushed.Count("W 22 3 " + SingleToBinary(written, 3)), 1);
    EXPECT_TRUE(OpenBoxes().empty());
  }
}

/// A resume that waits at the surface, with a last row at 20 m.
struct PushedAndWaiting : Pushed {
  PushedAndWaiting() {
    session.ResumeConeId = "DSE1234";
    session.ResumeDepthStatus = 1.0F;
    sounding.ConsoleMode = 1;
    sounding.RowCount = 3;
    sounding.Rows(3, 0) = 20.0F;
  }
};

TEST(DistancePushed, OfAResumeThatIsStoppedWhileItWaitsIsThatOfItsRowsUntilTheConeIsDeeper) {
  struct Case {
    float depth;
    const char* added_before;
    float whole;
    const char* noted;
  };
  for (const Case& row :
       {Case{0.05F, nullptr, 120, "20.000"}, Case{7.5F, nullptr, 120, "20.000"},
        Case{21.25F, nullptr, 121.25F, "21.000"}, Case{0.05F, "12.000", 108, "20.000"},
        Case{0.05F, "20.000", 100, "20.000"}}) {
    PushedAndWaiting pushed;
    sounding.CurrentDepth = row.depth;
    const std::string head = "2026-06-15 09:30:00\r\nDSE1234\r\n";
    if (row.added_before != nullptr) pushed.disk.Put(kNote, head + row.added_before + "\r\n");
    Main_cmdWarningOK1_Click();
    EXPECT_FLOAT_EQ(cone.DistancePushed, row.whole);
    EXPECT_FALSE(pushed.WroteDistance());
    for (int pass = 0; pass < 3; ++pass) MainloopPass();
    auto written = static_cast<float>(IntPart(static_cast<double>(row.whole)));
    EXPECT_EQ(pushed.Count("W 22 3 " + SingleToBinary(written, 3)), 1);
    EXPECT_EQ(ReadFile(kNote), head + row.noted + "\r\n");
  }
}

TEST(DistancePushed, OfAStopBehindTheDepthThatWasReachedIsThatOfTheConeAgain) {
  PushedAndWaiting pushed;
  session.ResumeDepthStatus = 0;
  Pushed::Stop(19.5F);
  EXPECT_FLOAT_EQ(cone.DistancePushed, 119.5F);
}

TEST(DistancePushed, OfAResumeThatWaitsWithItsConeAwayIsWrittenWhenItIsBack) {
  PushedAndWaiting pushed;
  sounding.CurrentDepth = 0;
  cone.ConeLinkUp = 1;  // neither up nor known as lost
  Main_cmdWarningOK1_Click();
  MainloopPass();  // brings it back
  EXPECT_FALSE(pushed.WroteDistance());
  MainloopPass();
  EXPECT_TRUE(pushed.WroteDistance());
}

TEST(DistancePushed, IsAddedAsAWholeWhereTheConeDidNotTakeIt) {
  for (const bool sent : {true, false}) {
    Pushed pushed;
    pushed.silent = true;
    sounding.CurrentDepth = 12.5F;
    Main_cmdWarningOK1_Click();
    if (sent) WriteDistancePushed();
    EXPECT_FALSE(pushed.disk.FileExists(kNote));
    cone.DistancePushed = 100;
    EXPECT_EQ(DistanceToAdd(), 12.5F);
  }
}

TEST(DistancePushed, OfAnotherSoundingOrConeIsAddedAsAWhole) {
  for (const bool other_cone : {true, false}) {
    Pushed pushed;
    Pushed::Stop(12.5F);
    EXPECT_EQ(DistanceToAdd(), 0.5F) << "the cone holds whole metres";
    (other_cone ? cone.ConeId : session.SoundingDateTime) = "DSE7777";
    EXPECT_EQ(DistanceToAdd(), 12.5F);
  }
}

TEST(DistancePushed, OfADamagedNoteIsAddedAsAWhole) {
  for (const char* note : {"", "x", "2026-06-15 09:30:00\r\nDSE1234\r\n",
                           "2026-06-15 09:30:00\r\nDSE1234\r\ndeep\r\n"}) {
    Pushed pushed;
    pushed.disk.Put(kNote, note);
    sounding.CurrentDepth = 12.5F;
    EXPECT_EQ(DistanceToAdd(), 12.5F) << note;
  }
}

TEST(DistancePushed, ThatCannotBeNotedIsToldAndTheEndGoesOn) {
  Pushed pushed;
  pushed.disk.SetRoom(0);
  Pushed::Stop(12.5F);
  ASSERT_EQ(OpenBoxes().size(), 1U);
  EXPECT_TRUE(FrontBox()->text.starts_with("THE CONE HAS ITS DISTANCE PUSHED, BUT THAT COULD NOT"));
  EXPECT_TRUE(Main.frmTakeFinalBaseline.Visible);
  EXPECT_TRUE(pushed.WroteDistance());
}

}  // namespace
}  // namespace penlog
