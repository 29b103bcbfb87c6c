#include "sounding/resume_depth.h"

#include "conelink/other_cone.h"
#include "fieldio/video_overlay.h"
#include "forms/restart_form.h"
#include "forms/resume_depth_form.h"
#include "platform/files.h"
#include "platform/runtime_fault.h"
#include "sounding/fake_cone.h"
#include "sounding/held_rows.h"
#include "sounding/main_entry.h"
#include "sounding/resume_rebuild.h"
#include "sounding/row_text.h"
#include "sounding/sounding_end.h"
#include "sounding/stop_dialog.h"

namespace penlog {
namespace {

constexpr const char* kTemporary = "/data/TemporaryData.txt";

/// A resumed sounding of three rows that waits at the surface for 0.5 m, its file begun.
struct Waiting : FakeCone {
  Waiting() {
    resume_depth = {};
    session.ResumeConeId = "DSE1234";
    session.ResumeDepthStatus = 1.0F;
    session.ResumeTargetDepth = 0.5F;
    sounding.RowCount = 3;
    sounding.DepthCounts = 6;
    sounding.NextRecordCount = 8;
    sounding.ConsoleMode = 1;
    disk.Put(kTemporary, "what it holds\r\n");
    StartFile(kTemporaryFile, "what it holds\r\n");
    ShowResumeDepth();
  }
  static const std::string& Target() { return frmResumeDepthStatus.lblTargetResumeDepth.Caption; }
  static const std::string& Current() { return frmResumeDepthStatus.lblCurrentResumeDepth.Caption; }
  static const std::string& ToGo() { return frmResumeDepthStatus.lblDifference.Caption; }
};

TEST(ResumeDepth, ShowsTargetDepthAndDifferenceInTheShownUnitAndSign) {
  struct Case {
    int units;
    int format;
    float target;
    float current;
    const char* shown_target;
    const char* shown_current;
    const char* to_go;
  };
  for (const Case& row : {Case{0, 0, 12.5F, 0.0F, "12.50", "0.00", "12.50 m"},
                          Case{0, 0, 12.5F, 12.624F, "12.50", "12.62", "-0.12 m"},
                          Case{1, 0, 10.0F, 0.0F, "32.81", "0.00", "32.81 ft"},
                          Case{0, 1, -4.0F, -5.0F, "4.00", "5.00", "1.00 m"},
                          Case{1, 1, 10.0F, 0.0F, "-32.81", "0.00", "32.81 ft"}}) {
    Waiting waiting;
    settings.DepthUnits = static_cast<std::int16_t>(row.units);
    settings.DepthFormat = static_cast<std::int16_t>(row.format);
    session.ResumeTargetDepth = row.target;
    sounding.CurrentDepth = row.current;
    ShowResumeDepth();
    EXPECT_TRUE(frmResumeDepthStatus.Visible);
    EXPECT_EQ(Waiting::Target(), row.shown_target);
    EXPECT_EQ(Waiting::Current(), row.shown_current);
    EXPECT_EQ(Waiting::ToGo(), row.to_go);
  }
}

TEST(ResumeDepth, FollowsTheDepthWithEachTickAndNeedsNoPass) {
  Waiting waiting;
  waiting.EncoderDown(30);
  EXPECT_EQ(Waiting::Current(), "0.00");
  World::RunFor(60 * kMillisecond);
  EXPECT_EQ(Waiting::Current(), "0.30");
  EXPECT_EQ(Waiting::ToGo(), "0.20 m");
  EXPECT_EQ(sounding.RowCount, 3) << "no row is taken on the way";
  EXPECT_EQ(sounding.RecordPending, 0);
}

TEST(ResumeDepth, DoesNotFollowOnceItIsReached) {
  Waiting waiting;
  session.ResumeDepthStatus = 0;
  sounding.CurrentDepth = 0.3F;
  FollowResumeDepth();
  EXPECT_EQ(Waiting::Current(), "0.00");
}

TEST(DepthReached, MarksTheGapAndGoesOnRecordingAtTheDepthAsCounted) {
  Waiting waiting;
  waiting.EncoderDown(47);
  sounding.RecordPending = kTrue;
  sounding.ElapsedMs = 61'500;
  frmResumeDepthStatus_lblDepthReached_Click();
  EXPECT_EQ(ReadFile(kTemporary),
            "what it holds\r\nDRILLOUT*****" + std::string(3 * 20, '*') + "\r\n");
  EXPECT_EQ(sounding.ConsoleMode, 2);
  EXPECT_EQ(session.ResumeDepthStatus, 0.0F);
  EXPECT_FALSE(frmResumeDepthStatus.Loaded);
  EXPECT_FLOAT_EQ(sounding.CurrentDepth, 0.47F);
  EXPECT_EQ(sounding.RecordPending, 0) << "a row that fell due on the way is none";
  EXPECT_EQ(sounding.NextRecordCount, 54) << "6 and 47 counts, rows each 2";
  EXPECT_EQ(sounding.LastStepSeconds, 61.5) << "the way down is no step to measure a speed by";
  EXPECT_EQ(sounding.RowCount, 3);
}

TEST(DepthReached, WithAnotherConeThanTheSoundingsIsRefusedUntilThatOneIsBack) {
  Waiting waiting;
  known_cone = {"DSE1234", "DSE7777"};
  frmResumeDepthStatus_lblDepthReached_Click();
  ASSERT_EQ(OpenBoxes().size(), 1U);
  EXPECT_EQ(FrontBox()->text,
            "SOUNDING CANNOT BE RESUMED WITH ANOTHER CONE THAN THE ONE WHOSE RECORDS WERE READ: "
            "CONE #DSE1234.  IF IT IS THAT CONE, PULL ITS PLUG AND CONNECT IT AGAIN.");
  EXPECT_EQ(ReadFile(kTemporary), "what it holds\r\n");
  EXPECT_EQ(sounding.ConsoleMode, 1);
  EXPECT_TRUE(frmResumeDepthStatus.Visible);
  ResetBoxes();
  known_cone.Answered.clear();
  frmResumeDepthStatus_lblDepthReached_Click();
  EXPECT_EQ(sounding.ConsoleMode, 2);
  EXPECT_TRUE(OpenBoxes().empty());
}

TEST(DepthReached, RefusedForAnotherConeLeavesSuspendOpen) {
  Waiting waiting;
  Show(Main);
  known_cone = {"DSE1234", "DSE7777"};
  frmResumeDepthStatus_lblDepthReached_Click();
  Main_cmdWarningOK2_Click();
  EXPECT_TRUE(frmZOLRestart.Visible);
  EXPECT_EQ(ReadFile(kTemporary), "what it holds\r\n");
}

TEST(DepthReached, PressedOnceIsEnough) {
  Waiting waiting;
  frmResumeDepthStatus_lblDepthReached_Click();
  const std::string once = ReadFile(kTemporary);
  sounding.NextRecordCount = 100;
  frmResumeDepthStatus_lblDepthReached_Click();
  EXPECT_EQ(ReadFile(kTemporary), once);
  EXPECT_EQ(sounding.NextRecordCount, 100);
}

TEST(DepthReached, BehindAMarkThatStandsAlreadyWritesNoOther) {
  struct Case {
    const char* what;
    int rows_at_gap;
    bool written;
  };
  for (const Case& row : {Case{"behind the last row", 3, false}, Case{"further up", 2, true},
                          Case{"nowhere", -1, true}}) {
    SCOPED_TRACE(row.what);
    Waiting waiting;
    resume_depth.RowsAtGap = row.rows_at_gap;
    frmResumeDepthStatus_lblDepthReached_Click();
    EXPECT_EQ(ReadFile(kTemporary) != "what it holds\r\n", row.written);
    EXPECT_EQ(sounding.ConsoleMode, 2) << "it goes on in any case";
  }
}

TEST(DepthReached, DoesNothingUnlessAResumeWaits) {
  struct Case {
    float status;
    int mode;
  };
  for (const Case& row : {Case{0.0F, 1}, Case{1.0F, 2}, Case{1.0F, 8}, Case{1.0F, 0}}) {
    Waiting waiting;
    session.ResumeDepthStatus = row.status;
    sounding.ConsoleMode = static_cast<std::int16_t>(row.mode);
    frmResumeDepthStatus_lblDepthReached_Click();
    EXPECT_EQ(ReadFile(kTemporary), "what it holds\r\n");
    EXPECT_EQ(sounding.ConsoleMode, row.mode);
  }
}

TEST(DepthReached, OnADiskThatRefusesHoldsTheMarkInItsPlace) {
  Waiting waiting;
  waiting.disk.SetRoom(0);
  frmResumeDepthStatus_lblDepthReached_Click();
  EXPECT_EQ(sounding.ConsoleMode, 2);
  AppendOrHold(kTemporaryFile, "a row\r\n");
  waiting.disk.SetRoom(-1);
  EXPECT_TRUE(WriteAllHeld());
  EXPECT_EQ(ReadFile(kTemporary),
            "what it holds\r\nDRILLOUT*****" + std::string(3 * 20, '*') + "\r\na row\r\n");
}

TEST(GapRow, HasAFieldForEachChannelThatIsThereAndRecorded) {
  struct Case {
    const char* what;
    int channel;
    int mode;
    bool present;
    int fields;
  };
  for (const Case& row : {Case{"recorded", 5, 1, true, 4}, Case{"always", 5, 2, true, 4},
                          Case{"a header column alone", 5, 3, true, 4},
                          Case{"not recorded", 5, 0, true, 3}, Case{"not there", 5, 1, false, 3},
                          Case{"computed", 19, 1, true, 4}, Case{"computed", 22, 1, true, 4}}) {
    Console console;
    channels.RecordMode(row.channel) = static_cast<std::int16_t>(row.mode);
    channels.ChannelPresent(row.channel) = row.present ? kTrue : kFalse;
    EXPECT_EQ(GapRow(), "DRILLOUT*****" +
                            std::string(20 * static_cast<std::size_t>(row.fields), '*') + "\r\n")
        << row.what << " " << row.channel;
  }
}

TEST(GapRow, LeavesOutAColumnThatIsOnlyKept) {
  Console console;
  channels.ChannelPresent(3) = 0;
  sounding.KeptColumn(3) = kTrue;
  EXPECT_EQ(GapRow(), "DRILLOUT*****" + std::string(40, '*') + "\r\n");
}

TEST(ResumeDepth, IsShownByTheRebuildThatWaitsAndByNoOther) {
  for (const float status : {1.0F, 0.0F}) {
    Waiting waiting;
    Unload(frmResumeDepthStatus);
    session.ResumeDepthStatus = status;
    RebuildResumedSounding();
    EXPECT_EQ(frmResumeDepthStatus.Visible, status == 1.0F);
    EXPECT_EQ(sounding.ConsoleMode, status == 1.0F ? 1 : 2);
  }
}

TEST(ResumeDepth, GoesWithTheStopAndWithTheExit) {
  for (const bool stopped : {true, false}) {
    Waiting waiting;
    Show(Main);
    if (stopped) {
      sounding.StopWarningKind = 0;
      Main_cmdWarningOK1_Click();
    } else {
      ExitProgram();
    }
    EXPECT_FALSE(frmResumeDepthStatus.Visible);
    frmResumeDepthStatus_lblDepthReached_Click();
    EXPECT_EQ(sounding.ConsoleMode, 1) << "a press that was on its way goes on with nothing";
  }
}

/// What the overlay board was sent last: cursor and text of its depth field.
struct OverlayBoard {
  explicit OverlayBoard(Waiting& waiting) {
    settings.LumenProbePresent = 1;
    settings.VideoOverlaySerialPort = 6;
    waiting.ports.Wire(6).OnBytes = [this](std::string_view bytes) { heard += bytes; };
  }
  std::string DepthField() {
    World::RunFor(5 * kSecond);
    return heard.substr(std::min(heard.size(), heard.rfind("{C")));
  }
  std::string heard;
};

TEST(ResumeDepth, OnTheOverlayIsTheDepthOfTheCameraAtTheSurfaceFirst) {
  struct Case {
    float status;
    int units;
    int format;
    float surface;
    const char* field;
  };
  for (const Case& row :
       {Case{1.0F, 0, 0, 0.0F, "{C2915-000.75"}, Case{1.0F, 1, 0, 0.0F, "{C2915-002.46"},
        Case{1.0F, 0, 1, -5.0F, "{C2915-005.75"}, Case{0.0F, 0, 0, 12.0F, "{C3015011.25"}}) {
    Waiting waiting;
    OverlayBoard board(waiting);
    settings.DepthUnits = static_cast<std::int16_t>(row.units);
    settings.DepthFormat = static_cast<std::int16_t>(row.format);
    session.ResumeDepthStatus = row.status;
    sounding.Rows(3, 0) = 12.0F;
    sounding.CurrentDepth = row.surface;
    EnterMainloop();
    EXPECT_EQ(board.DepthField(), row.field);
  }
}

TEST(ResumeDepth, OnAnOverlayThatIsBuiltAnewOnTheWayDownIsTheDepthAsCounted) {
  Waiting waiting;
  OverlayBoard board(waiting);
  EnterMainloop();
  EXPECT_EQ(board.DepthField(), "{C2915-000.75");
  waiting.EncoderDown(80);
  EXPECT_EQ(board.DepthField(), "{C2915-000.75") << "it follows rows, and there is none";
  ResendOverlayScreen();
  EXPECT_EQ(board.DepthField(), "{C3015000.05");
}

}  // namespace
}  // namespace penlog
