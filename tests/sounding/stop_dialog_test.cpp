#include "sounding/stop_dialog.h"

#include <array>

#include "conelink/other_cone.h"
#include "forms/restart_form.h"
#include "sounding/fake_cone.h"
#include "sounding/held_rows.h"
#include "sounding/row_text.h"
#include "sounding/sounding_end.h"
#include "sounding/sounding_files.h"
#include "sounding/sounding_start.h"

namespace penlog {
namespace {

TEST(StartRequest, AsksForTheStartAndTakesTheTime) {
  Console console;
  sounding.ConsoleMode = 1;
  sounding.ElapsedMs = 5000;
  Main_cmdStart_Click();
  EXPECT_EQ(sounding.ConsoleMode, 8);
  EXPECT_EQ(sounding.TimeOriginMs, (9 * 60 + 30) * 60 * 1000);
  EXPECT_EQ(sounding.LastStepSeconds, 5.0);
}

TEST(StartRequest, WithTheLinkLostReportsFirstTheConeEvenIfThePortIsGone) {
  struct Case {
    int link, port_lost;
    const char* message;
  };
  const Case cases[] = {
      {0, 0, "SOUNDING CANNOT BE STARTED WHILE CONE IS DISCONNECTED"},
      {0, -1, "SOUNDING CANNOT BE STARTED WHILE CONE IS DISCONNECTED"},
      {-1, -1, "SOUNDING CANNOT BE STARTED WHILE CONE SERIAL PORT IS DISCONNECTED"},
  };
  for (const auto& row : cases) {
    Console console;
    sounding.ConsoleMode = 1;
    cone.ConeLinkUp = static_cast<std::int16_t>(row.link);
    cone.ConePortLost = static_cast<std::int16_t>(row.port_lost);
    std::vector<std::string> told;
    PostCall(Now() + kSecond, &console, [&] {
      told.push_back(FrontBox()->text);
      AnswerBox(FrontBox()->id, BoxAnswer::Ok);
    });
    Main_cmdStart_Click();
    EXPECT_EQ(told, std::vector<std::string>{row.message});
    EXPECT_EQ(sounding.ConsoleMode, 1);
  }
}

TEST(StartRequest, WithAnotherConeThanTheOneThatWasReadIsRefused) {
  Console console;
  sounding.ConsoleMode = 1;
  cone.ConeLinkUp = kTrue;
  cone.ConePortLost = kFalse;
  known_cone = {"DCS0001", "DCS0002"};
  std::vector<std::string> told;
  PostCall(Now() + kSecond, &console, [&] {
    if (FrontBox() == nullptr) return;
    told.push_back(FrontBox()->text);
    AnswerBox(FrontBox()->id, BoxAnswer::Ok);
  });
  Main_cmdStart_Click();
  EXPECT_EQ(told, std::vector<std::string>{"SOUNDING CANNOT BE STARTED WITH ANOTHER CONE THAN THE "
                                           "ONE WHOSE RECORDS WERE READ: CONE #DCS0001"});
  EXPECT_EQ(sounding.ConsoleMode, 1);
}

TEST(StopDialog, IsShownAndTheConsoleGoesOnRecording) {
  Console console;
  sounding.ConsoleMode = 2;
  sounding.StopWarningKind = 2;
  Main.cmdStart.Caption = "STOP";
  Main_cmdStart_Click();
  EXPECT_EQ(sounding.ConsoleMode, 2);
  EXPECT_EQ(sounding.StopWarningKind, 0);
  EXPECT_TRUE(Main.frmLocalWarning.Visible);
  EXPECT_EQ(Main.lblWarning.Caption,
            "Press OK to stop the test (cannot resume later).  Press SUSPEND to suspend the test "
            "(can resume later).  Press CANCEL to continue with current sounding.");
  EXPECT_EQ(Main.cmdWarningOK1.Caption, "OK");
  EXPECT_EQ(Main.cmdWarningOK2.Caption, "SUSPEND");
  EXPECT_TRUE(Main.cmdWarningOK1.Visible && Main.cmdWarningOK2.Visible &&
              Main.cmdWarningCancel.Visible);
}

TEST(StopDialog, CancelContinues) {
  Console console;
  sounding.ConsoleMode = 2;
  Main.cmdStart.Caption = "STOP";
  Main_cmdStart_Click();
  Main_cmdWarningCancel_Click();
  EXPECT_FALSE(Main.frmLocalWarning.Visible);
  EXPECT_EQ(sounding.ConsoleMode, 2);
  EXPECT_EQ(cone.DistancePushedPending, 0);
}

TEST(StopDialog, OkAsksForTheFinalBaseline) {
  Console console;
  sounding.ConsoleMode = 2;
  sounding.CurrentDepth = 3.5f;
  cone.DistancePushed = 10.0f;
  Main.frmLocalWarning.Visible = true;
  Main.cmdStart.Enabled = true;
  Main_cmdWarningOK1_Click();
  EXPECT_FALSE(Main.cmdStart.Enabled) << "STOP would be red and dead";
  EXPECT_EQ(sounding.ConsoleMode, 1);
  EXPECT_FLOAT_EQ(cone.DistancePushed, 13.5f);
  EXPECT_EQ(cone.DistancePushedPending, -1);
  EXPECT_TRUE(Main.frmTakeFinalBaseline.Visible);
  EXPECT_FALSE(Main.frmLocalWarning.Visible);
}

TEST(StopDialog, AStoppedSoundingIsNotStoppedAgain) {
  Console console;
  Main.cmdStart.Caption = "STOP";
  sounding.ConsoleMode = 2;
  Main_cmdStart_Click();
  Main_cmdWarningOK1_Click();
  Main_cmdStart_Click();
  EXPECT_FALSE(Main.frmLocalWarning.Visible);
}

TEST(StopDialog, OkAfterAnInterruptedTestGoesOnRecording) {
  for (const int kind : {1, 2}) {
    Console console;
    sounding.ConsoleMode = kind == 2 ? 4 : 2;
    sounding.StopWarningKind = static_cast<std::int16_t>(kind);
    sounding.WarningCounter = 3;
    Main.frmLocalWarning.Visible = true;
    Main_cmdWarningOK1_Click();
    EXPECT_EQ(sounding.ConsoleMode, 2) << kind;
    EXPECT_FALSE(Main.frmLocalWarning.Visible);
    EXPECT_EQ(sounding.WarningCounter, 0);
    EXPECT_FALSE(Main.frmTakeFinalBaseline.Visible);
    EXPECT_EQ(cone.DistancePushedPending, 0);
  }
}

TEST(StopDialog, CountsTheRowsThatBecomeDueBehindIt) {
  Console console;
  console.OpenPorts();
  sounding.ConsoleMode = 2;
  sounding.NextRecordCount = 2;
  console.EncoderDown(2);
  EXPECT_EQ(sounding.WarningCounter, 0);
  Main.frmLocalWarning.Visible = true;
  console.EncoderDown(4);
  EXPECT_EQ(sounding.WarningCounter, 2);
}

TEST(Suspend, ClosesNothingAndAsksForTheRestart) {
  Console console;
  CreateSoundingFiles();
  const std::string temporary = ReadFile("/data/TemporaryData.txt");
  const std::string cpt = ReadFile("/data/s.cpt");
  sounding.ConsoleMode = 2;
  Main_cmdWarningOK2_Click();
  EXPECT_EQ(sounding.ConsoleMode, 1);
  EXPECT_TRUE(frmZOLRestart.Visible);
  EXPECT_EQ(ReadFile("/data/TemporaryData.txt"), temporary);
  EXPECT_EQ(ReadFile("/data/s.cpt"), cpt);
}

TEST(Suspend, IsRefusedWhileRowsStandInMemoryAlone) {
  Console console;
  CreateSoundingFiles();
  sounding.ConsoleMode = 2;
  console.disk.SetRoom(0);
  ++sounding.RowCount;
  RecordRow();
  ResetBoxes();
  Main_cmdWarningOK2_Click();
  EXPECT_EQ(sounding.ConsoleMode, 2);
  EXPECT_FALSE(frmZOLRestart.Visible);
  EXPECT_EQ(OpenBoxes().size(), 1u);
  console.disk.SetRoom(-1);
  Main_cmdWarningOK2_Click();
  EXPECT_TRUE(frmZOLRestart.Visible);
}

/// The recovery copy holds the rows, whatever has become of the sounding's file.
TEST(Suspend, GoesOnWithASoundingFileThatLagsAndSaysSo) {
  struct Case {
    const char* what;
    void (*harm)(MemoryDisk& disk);
  };
  for (const Case& row :
       {Case{"gone", [](MemoryDisk& disk) { disk.Remove("/data/s.cpt"); }},
        Case{"shorter", [](MemoryDisk& disk) { disk.Put("/data/s.cpt", "s"); }},
        Case{"refused", [](MemoryDisk& disk) { disk.SetReadOnly("/stick"); }},
        Case{"not to be changed", [](MemoryDisk&) { StartUnfitFile(kCptFile); }}}) {
    for (const bool with_row : {true, false}) {
      SCOPED_TRACE(row.what);
      Console console;
      console.disk.MakeFolder("/stick");
      const bool refused = std::string(row.what) == "refused";
      if (refused) session.SoundingFiles[1] = "/stick/s.cpt";
      CreateSoundingFiles();
      sounding.ConsoleMode = 2;
      row.harm(console.disk);
      if (with_row || refused) {
        ++sounding.RowCount;
        RecordRow();
      }
      const std::string temporary = ReadFile("/data/TemporaryData.txt");
      ResetBoxes();
      Main_cmdWarningOK2_Click();
      EXPECT_TRUE(frmZOLRestart.Visible);
      EXPECT_EQ(sounding.ConsoleMode, 1);
      EXPECT_EQ(ReadFile("/data/TemporaryData.txt"), temporary);
      ASSERT_FALSE(OpenBoxes().empty());
      const std::string text = OpenBoxes().back().text;
      EXPECT_TRUE(
          text.starts_with("THE SOUNDING FILE IS NOT COMPLETE YET: " + session.SoundingFiles[1]))
          << text;
      EXPECT_TRUE(text.ends_with("RESUME LAST SOUNDING COMPLETES IT, ALSO IN ANOTHER FOLDER."));
    }
  }
}

/// A last row at 10 m (or -10), in steps of 2 cm.
struct PlaceCase {
  const char* what;
  float last, depth, rebound;
  int units, format;
  const char* distance;  // null: nothing is told
  const char* bring_to = "";
};

constexpr PlaceCase kPlaces[] = {
    {"at the row", 10, 10, 0, 0, 0, nullptr},
    {"short of the next row", 10, 10.01f, 0, 0, 0, nullptr},
    {"a step on", 10, 10.02f, 0, 0, 0, "0.02 m BELOW", "10.00 m"},
    {"pushed on", 10, 10.5f, 0, 0, 0, "0.50 m BELOW", "10.00 m"},
    {"rebound of half a step", 10, 10, 0.01f, 0, 0, nullptr},
    {"drawn up", 10, 10, 0.3f, 0, 0, "0.30 m ABOVE", "10.00 m"},
    {"pushed on and drawn up to the row", 10, 10.3f, 0.3f, 0, 0, nullptr},
    {"feet", 10, 10.5f, 0, 1, 0, "1.64 ft BELOW", "32.81 ft"},
    {"elevations", -10, -9.5f, 0, 0, 1, "0.50 m BELOW", "10.00 m"},
    {"depths below datum shown upward", 10, 10.5f, 0, 0, 1, "0.50 m BELOW", "-10.00 m"},
};

std::string PlaceText(const PlaceCase& row) {
  const std::string distance = row.distance;
  const std::string drilled =
      ", WITH " + distance.substr(0, distance.rfind(' ')) + " AS THE DISTANCE DRILLED.";
  return "THE CONE STANDS " + distance + " THE LAST ROW.  BRING IT TO " + row.bring_to +
         " BEFORE YOU PRESS RESUME AT LAST DEPTH, WHICH GOES ON FROM THERE.  OR PULL IT OUT AND "
         "PRESS RESUME AT SURFACE" +
         (distance.ends_with("BELOW") ? drilled : ".");
}

const std::string kEndOrGoOn = "  PRESS OK TO END THE PROGRAM, OR CANCEL TO GO ON.";

TEST(Suspend, TellsHowFarTheConeStandsFromTheLastRowAndGoesOn) {
  for (const PlaceCase& row : kPlaces) {
    for (const bool by_button : {true, false}) {
      SCOPED_TRACE(row.what);
      Console console;
      settings.DepthUnits = static_cast<std::int16_t>(row.units);
      settings.DepthFormat = static_cast<std::int16_t>(row.format);
      CreateSoundingFiles();
      sounding.ConsoleMode = 2;
      sounding.RowCount = 1;
      sounding.Rows(1, 0) = row.last;
      sounding.CurrentDepth = row.depth;
      sounding.Rebound = row.rebound;
      ResetBoxes();
      if (by_button) {
        Main_cmdWarningOK2_Click();
        EXPECT_TRUE(frmZOLRestart.Visible);
        EXPECT_EQ(sounding.ConsoleMode, 1);
      } else if (row.distance == nullptr) {
        EXPECT_THROW(Main_QueryUnload(), ProgramEnd);
      } else {
        Main_QueryUnload();
      }
      ASSERT_EQ(OpenBoxes().size(), row.distance == nullptr ? 0u : 1u);
      if (row.distance == nullptr) continue;
      EXPECT_EQ(FrontBox()->text, PlaceText(row) + (by_button ? "" : kEndOrGoOn));
    }
  }
}

/// Without rows the resume tells itself where it goes on.
TEST(Suspend, WithoutRowsOrBehindTheStopTellsNothingOfThePlace) {
  for (const bool stopped : {true, false}) {
    Console console;
    CreateSoundingFiles();
    sounding.ConsoleMode = stopped ? 1 : 2;
    sounding.RowCount = stopped ? 1 : 0;
    sounding.CurrentDepth = 5;
    ResetBoxes();
    EXPECT_THROW(Main_QueryUnload(), ProgramEnd);
    EXPECT_TRUE(OpenBoxes().empty());
  }
}

TEST(Suspend, AsksAboutTimeMarksThatStandInMemoryAlone) {
  for (const bool leaves : {true, false}) {
    Console console;
    settings.LumenProbePresent = 1;
    CreateSoundingFiles();
    sounding.ConsoleMode = 2;
    console.disk.Remove("/data/s.tim");
    AppendOrHold(kTimFile, PictureMarkLine(1.0f, 1.0f));
    AppendOrHold(kTimFile, PictureMarkLine(2.0f, 2.0f));
    ResetBoxes();
    Main_cmdWarningOK2_Click();
    EXPECT_FALSE(frmZOLRestart.Visible);
    ASSERT_FALSE(OpenBoxes().empty());
    const MessageBox box = OpenBoxes().back();
    EXPECT_TRUE(box.text.starts_with("IN MEMORY ALONE: 2 TIME MARKS, WHICH WOULD BE LOST."))
        << box.text;
    EXPECT_EQ(box.buttons, BoxButtons::YesNoCareful);
    AnswerBox(box.id, leaves ? BoxAnswer::Yes : BoxAnswer::No);
    Yield();
    EXPECT_EQ(frmZOLRestart.Visible, leaves);
    EXPECT_EQ(sounding.ConsoleMode, leaves ? 1 : 2);
  }
}

TEST(Suspend, IsRefusedWhenTheRecoveryCopyIsGone) {
  Console console;
  CreateSoundingFiles();
  sounding.ConsoleMode = 2;
  console.disk.Remove("/data/TemporaryData.txt");
  Main_cmdWarningOK2_Click();
  EXPECT_FALSE(frmZOLRestart.Visible);
  ASSERT_EQ(OpenBoxes().size(), 1u);
  EXPECT_EQ(
      FrontBox()->text,
      "THE SOUNDING CANNOT BE SUSPENDED.  /data/TemporaryData.txt is no longer there.  IF ITS "
      "MEDIUM WAS PULLED OUT, PUT IT BACK.  THEN PRESS SUSPEND AGAIN.  OR PRESS OK AND END THE "
      "SOUNDING WITH TAKE BASELINE OR NO BASELINE: THAT NEEDS ITS FILE ALONE.");
}

TEST(FinalBaseline, ButtonsCloseWithAndWithoutIt) {
  for (const bool with_baseline : {true, false}) {
    Console console;
    CreateSoundingFiles();
    const std::string before = ReadFile("/data/s.cpt");
    sounding.ConsoleMode = 1;
    sounding.ReadingsFresh = kTrue;
    with_baseline ? Main_Command2_Click() : Main_Command3_Click();
    EXPECT_EQ(ReadFile("/data/TemporaryData.txt"), "DONE\r\n");
    EXPECT_EQ(ReadFile("/data/s.cpt") == before, !with_baseline);
    EXPECT_TRUE(frmZOLRestart.Visible);
  }
}

/// The link, the port's loss, whether a reading has come since the link came up.
TEST(FinalBaseline, IsRefusedInWordsFromReadingsOfBeforeALoss) {
  for (const auto& [link, port_lost, fresh] :
       {std::array{0, 0, -1}, std::array{-1, -1, -1}, std::array{-1, 0, 0}}) {
    Console console;
    CreateSoundingFiles();
    const std::string temporary = ReadFile("/data/TemporaryData.txt");
    sounding.ConsoleMode = 1;
    Main.frmTakeFinalBaseline.Visible = true;
    cone.ConeLinkUp = static_cast<std::int16_t>(link);
    cone.ConePortLost = static_cast<std::int16_t>(port_lost);
    sounding.ReadingsFresh = static_cast<std::int16_t>(fresh);
    Main_Command2_Click();
    ASSERT_EQ(OpenBoxes().size(), 1u);
    EXPECT_TRUE(FrontBox()->text.starts_with("FINAL BASELINE CANNOT BE TAKEN WHILE CONE IS"));
    EXPECT_TRUE(Main.frmTakeFinalBaseline.Visible) << "the question stays";
    EXPECT_FALSE(frmZOLRestart.Visible);
    EXPECT_EQ(ReadFile("/data/TemporaryData.txt"), temporary);
    Main_Command3_Click();
    EXPECT_EQ(ReadFile("/data/TemporaryData.txt"), "DONE\r\n");
  }
}

TEST(FinalBaseline, OnAFullDiskTheProgramIsNotLeft) {
  Console console;
  CreateSoundingFiles();
  sounding.ConsoleMode = 1;
  sounding.ReadingsFresh = kTrue;
  Main.frmTakeFinalBaseline.Visible = true;
  console.disk.SetRoom(0);
  Main_Command2_Click();
  EXPECT_FALSE(frmZOLRestart.Visible);
  EXPECT_TRUE(Main.frmTakeFinalBaseline.Visible);
  console.disk.SetRoom(-1);
  Main_Command2_Click();
  EXPECT_TRUE(frmZOLRestart.Visible);
}

/// The buttons, the mode and the files at each step of a sounding.
TEST(Course, OfASoundingFromTheBaselineToTheQuestionOfTheRestart) {
  Console console;
  console.OpenPorts();
  sounding.ConsoleMode = 1;
  EXPECT_TRUE(Main.cmdTakeBaseline.Visible);
  EXPECT_FALSE(Main.cmdStart.Enabled);
  EXPECT_TRUE(Main.cmdExit.Enabled);
  for (int press = 0; press < 3; ++press) Main_cmdTakeBaseline_Click();
  EXPECT_TRUE(Main.cmdStart.Enabled);
  EXPECT_EQ(Main.cmdStart.Caption, "START");
  Main_cmdStart_Click();
  EXPECT_FALSE(console.disk.FileExists("/data/s.cpt")) << "the next pass starts";
  StartRecording();
  EXPECT_FALSE(Main.cmdTakeBaseline.Visible || Main.cmdTakeBaseline.Enabled);
  EXPECT_EQ(Main.cmdStart.Caption, "STOP");
  EXPECT_FALSE(Main.cmdExit.Enabled);
  EXPECT_EQ(sounding.ConsoleMode, 2);
  Main_cmdStart_Click();
  const std::string temporary = ReadFile("/data/TemporaryData.txt");
  Main_cmdWarningOK1_Click();
  EXPECT_FALSE(Main.cmdTakeBaseline.Visible);
  EXPECT_EQ(Main.cmdStart.Caption, "STOP");
  EXPECT_FALSE(Main.cmdExit.Enabled);
  EXPECT_EQ(sounding.ConsoleMode, 1);
  EXPECT_EQ(Main.frmTakeFinalBaseline.Caption, "TAKE FINAL BASELINE?");
  EXPECT_EQ(Main.lblTakeFinalBaseline.Caption,
            "Sounding is ended.  Remove cone from ground and press TAKE BASELINE to record final "
            "baselines or press NO BASELINE to end without taking final baselines.");
  EXPECT_EQ(Main.Command2.Caption, "TAKE BASELINE");
  EXPECT_EQ(Main.Command3.Caption, "NO BASELINE");
  EXPECT_EQ(ReadFile("/data/TemporaryData.txt"), temporary) << "as before";
  Main_Command3_Click();
  EXPECT_EQ(ReadFile("/data/TemporaryData.txt"), "DONE\r\n");
  EXPECT_TRUE(frmZOLRestart.Visible);
}

TEST(FinalBaseline, IsThatOfTheRodsDrawnUpAfterTheStop) {
  FakeCone fake;
  CreateSoundingFiles();
  sounding.ConsoleMode = 2;
  fake.readings = {"7 8 9"};
  MainloopPass();
  Main_cmdWarningOK1_Click();
  fake.readings = {"0.25 0.5 0.75"};
  MainloopPass();
  Main_Command2_Click();
  EXPECT_EQ(ReadFile("/data/s.cpt"), CptHeader() + std::string(13, ' ') +
                                         "             0.25000             0.50000" +
                                         "             0.75000\r\n");
}

TEST(Exit, EndsTheProgramAtOnce) {
  Console console;
  EXPECT_THROW(Main_cmdExit_Click(), ProgramEnd);
}

}  // namespace
}  // namespace penlog
