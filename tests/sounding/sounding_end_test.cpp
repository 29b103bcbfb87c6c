#include "sounding/sounding_end.h"

#include "core/instance_lock.h"
#include "forms/restart_form.h"
#include "forms/setup_display_form.h"
#include "forms/setup_sounding_form.h"
#include "forms/warning_form.h"
#include "platform/files.h"
#include "sounding/console.h"
#include "sounding/held_rows.h"
#include "sounding/row_text.h"
#include "sounding/sounding_files.h"

namespace penlog {
namespace {

constexpr const char* kTemporary = "/data/TemporaryData.txt";
constexpr const char* kCpt = "/data/s.cpt";

struct Ended : Console {
  explicit Ended(int rows, int delay = 0) {
    cone.DelayRows = channels.ChannelDelayRows(2) = static_cast<std::int16_t>(delay);
    CreateSoundingFiles();
    for (int i = 0; i < rows; ++i) {
      ++sounding.RowCount;
      RecordRow();
    }
    sounding.ConsoleMode = 1;
  }
};

TEST(CloseSounding, MarksTheSoundingDone) {
  Ended ended(3);
  EXPECT_TRUE(CloseSounding());
  EXPECT_EQ(ReadFile(kTemporary), "DONE\r\n");
  EXPECT_EQ(ReadFile(kCpt), CptHeader() + AlignedRow(1) + AlignedRow(2) + AlignedRow(3));
}

TEST(CloseSounding, WithDelayWritesTheRowsHeldBack) {
  Ended ended(3, 3);
  EXPECT_TRUE(CloseSounding());
  EXPECT_EQ(ReadFile(kCpt), CptHeader() + FlushRow(1, 3) + FlushRow(2, 3) + FlushRow(3, 3));
  EXPECT_EQ(ReadFile(kTemporary), "DONE\r\n");
}

TEST(CloseSounding, WithFewerRowsThanTheDelayWritesNothingAndStaysUnfinished) {
  Ended ended(2, 3);
  sounding.CloseWithFinalBaseline = -1;
  const std::string before = ReadFile(kTemporary);
  EXPECT_TRUE(CloseSounding());
  EXPECT_EQ(ReadFile(kCpt), CptHeader());
  EXPECT_EQ(ReadFile(kTemporary), before);
}

TEST(CloseSounding, TheFinalBaselineIsTheReadingsAndTheHeaderKeepsItsOwn) {
  Ended ended(1);
  sounding.Readings(1) = 7.0f;
  sounding.CloseWithFinalBaseline = -1;
  CloseSounding();
  EXPECT_EQ(ReadFile(kCpt), CptHeader() + AlignedRow(1) + FinalBaselineLine());
  EXPECT_EQ(channels.Baselines(1), 0.0f);
}

TEST(CloseSounding, OnAFullDiskIsNotDoneAndCanBeRepeatedWithoutDoubling) {
  Ended ended(3, 2);
  sounding.CloseWithFinalBaseline = -1;
  const std::string temporary = ReadFile(kTemporary);
  ended.disk.SetRoom(0);
  EXPECT_FALSE(CloseSounding());
  EXPECT_FALSE(CloseSounding());
  EXPECT_EQ(ReadFile(kTemporary), temporary);
  EXPECT_FALSE(OpenBoxes().empty());
  ended.disk.SetRoom(-1);
  EXPECT_TRUE(CloseSounding());
  EXPECT_EQ(ReadFile(kCpt),
            CptHeader() + AlignedRow(3) + FlushRow(2, 3) + FlushRow(3, 3) + FinalBaselineLine());
  EXPECT_EQ(ReadFile(kTemporary), "DONE\r\n");
}

TEST(CloseSounding, IsNotDoneWhileTheCptFileAloneRefuses) {
  Console console;
  console.disk.MakeFolder("/stick");
  session.SoundingFiles[1] = "/stick/s.cpt";
  CreateSoundingFiles();
  const std::string temporary = ReadFile(kTemporary);
  console.disk.SetReadOnly("/stick");
  sounding.CloseWithFinalBaseline = -1;
  EXPECT_FALSE(CloseSounding());
  EXPECT_EQ(ReadFile(kTemporary), temporary);
  console.disk.SetReadOnly("");
  EXPECT_TRUE(CloseSounding());
  EXPECT_EQ(ReadFile("/stick/s.cpt"), CptHeader() + FinalBaselineLine());
}

/// The operator may press the other button when the disk has refused the first time.
TEST(CloseSounding, AFinalBaselineAskedForAtAnyPressIsWrittenOnce) {
  struct Case {
    int first, second;
    bool baseline;
  };
  for (const auto& row : {Case{-1, 0, true}, {0, -1, true}, {-1, -1, true}, {0, 0, false}}) {
    Ended ended(3, 2);
    ended.disk.SetRoom(0);
    sounding.CloseWithFinalBaseline = static_cast<std::int16_t>(row.first);
    EXPECT_FALSE(CloseSounding());
    ended.disk.SetRoom(-1);
    sounding.CloseWithFinalBaseline = static_cast<std::int16_t>(row.second);
    EXPECT_TRUE(CloseSounding());
    EXPECT_EQ(ReadFile(kCpt), CptHeader() + AlignedRow(3) + FlushRow(2, 3) + FlushRow(3, 3) +
                                  (row.baseline ? FinalBaselineLine() : ""));
  }
}

// A file that is not whole.

constexpr const char* kCopyHolds = "  ALL ROWS STAND IN THE TEMPORARY DATA.  DO YOU WANT TO TRY";

/// A disk that takes nothing for one file.
void Refuse(MemoryDisk& disk, const std::string& path) {
  disk.before = [path](std::string_view work, const std::string& at) {
    if (at == path && work != "remove") throw RuntimeFault(at + ": No space left on device");
  };
}

/// Of the last box, once those before it are read.
void Answer(BoxAnswer answer) {
  while (OpenBoxes().size() > 1) {
    AnswerBox(FrontBox()->id, BoxAnswer::Ok);
    Yield();
  }
  AnswerBox(FrontBox()->id, answer);
  Yield();
}

/// All of it was synced, and nothing is left to write: what stands there is looked at.
TEST(CloseSounding, IsNeverDoneWithACptFileThatWasTakenAwayOrShortened) {
  const std::string room = "FREE SOME ROOM";
  for (const bool gone : {true, false}) {
    SCOPED_TRACE(gone ? "gone" : "shorter");
    Ended ended(3);
    const std::string temporary = ReadFile(kTemporary);
    const std::string cpt = ReadFile(kCpt);
    ended.disk.Remove(kCpt);
    if (!gone) ended.disk.Put(kCpt, cpt.substr(0, cpt.size() - 1));
    EXPECT_FALSE(CloseSounding());
    EXPECT_EQ(ReadFile(kTemporary), temporary) << "the last copy stays";
    ASSERT_EQ(OpenBoxes().size(), 1u);
    const std::string text = FrontBox()->text;
    EXPECT_TRUE(text.starts_with("THE SOUNDING IS NOT CLOSED YET.  /data/s.cpt")) << text;
    EXPECT_NE(text.find(gone ? "IF ITS MEDIUM WAS PULLED OUT, PUT IT BACK." : "A RESUME MENDS IT."),
              std::string::npos)
        << text;
    EXPECT_NE(text.find(kCopyHolds), std::string::npos) << text;
    EXPECT_EQ(text.find(room), std::string::npos) << text;
    Answer(BoxAnswer::Yes);
    EXPECT_FALSE(frmZOLRestart.Visible);
    EXPECT_EQ(ReadFile(kTemporary), temporary);
    ended.disk.Put(kCpt, cpt);
    Answer(BoxAnswer::Yes);
    EXPECT_TRUE(frmZOLRestart.Visible);
    EXPECT_EQ(ReadFile(kTemporary), "DONE\r\n");
    EXPECT_EQ(ReadFile(kCpt), cpt);
  }
}

TEST(CloseSounding, ThatCannotBeDoneCanBeSuspendedInstead) {
  struct Case {
    const char* what;
    void (*harm)(MemoryDisk& disk);
  };
  for (const Case& row :
       {Case{"gone", [](MemoryDisk& disk) { disk.Remove(kCpt); }},
        Case{"shorter", [](MemoryDisk& disk) { disk.Put(kCpt, "s"); }},
        Case{"longer",
             [](MemoryDisk& disk) { disk.Put(kCpt, ReadFile(kCpt) + std::string(2000, 's')); }},
        Case{"refused", [](MemoryDisk& disk) { Refuse(disk, kCpt); }},
        Case{"not to be changed", [](MemoryDisk&) { StartUnfitFile(kCptFile); }}}) {
    SCOPED_TRACE(row.what);
    const bool longer = std::string(row.what) == "longer";
    Ended ended(3, longer ? 2 : 0);
    const std::string temporary = ReadFile(kTemporary);
    if (longer) {  // found while the closing rows are refused
      Refuse(ended.disk, kCpt);
      EXPECT_FALSE(CloseSounding());
      ended.disk.before = {};
    }
    row.harm(ended.disk);
    ResetBoxes();
    sounding.CloseWithFinalBaseline = kTrue;
    EXPECT_FALSE(CloseSounding());
    const std::string text = OpenBoxes().back().text;
    EXPECT_TRUE(text.starts_with("THE SOUNDING IS NOT CLOSED YET.  /data/s.cpt")) << text;
    EXPECT_EQ(text.find("FREE SOME ROOM") != std::string::npos, std::string(row.what) == "refused");
    EXPECT_NE(text.find("IF 'NO', THE SOUNDING IS SUSPENDED"), std::string::npos) << text;
    EXPECT_NE(text.find("THE FINAL BASELINE IS TAKEN ANEW THEN."), std::string::npos) << text;
    Answer(BoxAnswer::No);
    EXPECT_TRUE(frmZOLRestart.Visible);
    EXPECT_EQ(ReadFile(kTemporary), temporary) << "it can be resumed";
    EXPECT_TRUE(OpenBoxes().empty()) << "it was said before";
  }
}

/// A suspension would lose them.
TEST(CloseSounding, OffersNoSuspensionWhileRowsStandInMemoryAlone) {
  Ended ended(3);
  ended.disk.SetRoom(0);
  ++sounding.RowCount;
  RecordRow();
  ResetBoxes();
  EXPECT_FALSE(CloseSounding());
  const MessageBox& box = OpenBoxes().back();
  EXPECT_EQ(box.buttons, BoxButtons::Ok);
  EXPECT_NE(box.text.find("IN MEMORY ALONE: 1 ROW."), std::string::npos) << box.text;
  EXPECT_NE(box.text.find("THEN PRESS TAKE BASELINE OR NO BASELINE AGAIN."), std::string::npos);
  EXPECT_FALSE(frmZOLRestart.Visible);
}

TEST(CloseSounding, WithFewerRowsThanTheDelayNeedsTheRecoveryCopyAlone) {
  Ended ended(2, 3);
  ended.disk.Remove(kCpt);
  EXPECT_TRUE(CloseSounding());
  ASSERT_EQ(OpenBoxes().size(), 1u);
  EXPECT_TRUE(
      FrontBox()->text.starts_with("THE SOUNDING FILE IS NOT COMPLETE YET: /data/s.cpt is"));
  ended.disk.SetRoom(0);
  ++sounding.RowCount;
  RecordRow();
  --sounding.RowCount;
  EXPECT_FALSE(CloseSounding());
}

TEST(CloseSounding, ThatCannotBeNotedAsDoneSaysThatItsFileIsWhole) {
  for (const bool again : {true, false}) {
    Ended ended(3);
    const std::string temporary = ReadFile(kTemporary);
    Refuse(ended.disk, std::string(kTemporary) + ".new");
    EXPECT_FALSE(CloseSounding());
    ASSERT_EQ(OpenBoxes().size(), 1u);
    EXPECT_TRUE(FrontBox()->text.starts_with("THE SOUNDING FILE IS WHOLE, BUT"))
        << FrontBox()->text;
    if (again) ended.disk.before = {};
    Answer(again ? BoxAnswer::Yes : BoxAnswer::No);
    EXPECT_TRUE(frmZOLRestart.Visible);
    EXPECT_EQ(ReadFile(kTemporary), again ? "DONE\r\n" : temporary);
  }
}

TEST(CloseSounding, AskedAtTheBaselineSaysWhichButtonTriesAgain) {
  Ended ended(3);
  ended.disk.Remove(kCpt);
  EXPECT_FALSE(CloseSounding());
  ended.disk.SetRoom(0);
  ++sounding.RowCount;
  RecordRow();
  AnswerBox(FrontBox()->id, BoxAnswer::No);
  Yield();
  ASSERT_FALSE(OpenBoxes().empty());
  const std::string text = OpenBoxes().back().text;
  EXPECT_TRUE(text.starts_with("THE SOUNDING CANNOT BE SUSPENDED.")) << text;
  EXPECT_TRUE(text.ends_with("THEN PRESS TAKE BASELINE OR NO BASELINE AGAIN.")) << text;
}

TEST(CloseSounding, WithoutTimeMarksSaysWhetherTheSoundingIsClosedOrLeftUnfinished) {
  for (const bool few : {true, false}) {
    Ended ended(2, few ? 3 : 2);
    Refuse(ended.disk, "/data/s.tim");
    AppendOrHold(kTimFile, PictureMarkLine(1.0f, 1.0f));
    EXPECT_FALSE(CloseSounding());
    const std::string text = OpenBoxes().back().text;
    EXPECT_TRUE(text.ends_with(few ? "THE SOUNDING IS LEFT UNFINISHED WITHOUT THEM."
                                   : "THE SOUNDING IS CLOSED WITHOUT THEM."))
        << text;
  }
}

TEST(CloseSounding, GoesWithoutTimeMarksThatNoDiskTakesIfTheOperatorSaysSo) {
  Ended ended(3);
  Refuse(ended.disk, "/data/s.tim");
  AppendOrHold(kTimFile, PictureMarkLine(1.0f, 1.0f));
  ResetBoxes();
  EXPECT_FALSE(CloseSounding());
  EXPECT_NE(
      OpenBoxes().back().text.find("IN MEMORY ALONE: 1 TIME MARK.  DO YOU WANT TO TRY AGAIN?"),
      std::string::npos)
      << OpenBoxes().back().text;
  Answer(BoxAnswer::Yes);
  EXPECT_FALSE(frmZOLRestart.Visible);
  Answer(BoxAnswer::No);
  EXPECT_TRUE(frmZOLRestart.Visible);
  EXPECT_EQ(ReadFile(kTemporary), "DONE\r\n");
}

TEST(CloseSounding, WaitsForThePictureMarksToo) {
  Ended ended(3);
  ended.disk.before = [](std::string_view, const std::string& path) {
    if (path == "/data/s.tim") throw RuntimeFault("No space left on device");
  };
  AppendOrHold(kTimFile, PictureMarkLine(1.0f, 1.0f));
  EXPECT_FALSE(CloseSounding());
  ended.disk.before = {};
  EXPECT_TRUE(CloseSounding());
  EXPECT_EQ(ReadFile("/data/s.tim"), PictureMarkLine(1.0f, 1.0f));
}

/// Notes the order in which files reach the disk.
class OrderedDisk : public MemoryDisk {
 public:
  Handle OpenAppend(const std::string& path) override {
    last_appended = path;
    return MemoryDisk::OpenAppend(path);
  }
  void Sync(Handle handle) override {
    order += "sync " + last_appended + ";";
    MemoryDisk::Sync(handle);
  }
  void Rename(const std::string& from, const std::string& to) override {
    order += "rename to " + to + ";";
    MemoryDisk::Rename(from, to);
  }
  std::string order;
  std::string last_appended;
};

TEST(CloseSounding, WritesDoneOnlyAfterTheCptFileIsSynced) {
  Console console;
  OrderedDisk disk;
  UseDisk(&disk);
  disk.MakeFolder("/data");
  CreateSoundingFiles();
  ++sounding.RowCount;
  RecordRow();
  disk.order.clear();
  sounding.CloseWithFinalBaseline = -1;
  CloseSounding();
  EXPECT_EQ(disk.order.find("sync /data/s.cpt;"), 0u) << disk.order;
  EXPECT_NE(disk.order.find("rename to /data/TemporaryData.txt;"), std::string::npos);
}

TEST(ExitProgram, StopsTheTimersUnloadsTheScreensAndAsks) {
  Ended ended(1);
  Show(Main);
  Show(frmWarning);
  LoadForm(SetupDisplay);
  LoadForm(SetupSounding);
  Main.Timer1.Start();
  frmWarning.Timer1.Start();
  frmWarning.Timer2.Start();
  ExitProgram();
  EXPECT_FALSE(Main.Timer1.Running());
  EXPECT_FALSE(frmWarning.Timer1.Running());
  EXPECT_FALSE(frmWarning.Timer2.Running());
  EXPECT_FALSE(frmWarning.Loaded);
  EXPECT_FALSE(SetupDisplay.Loaded);
  EXPECT_FALSE(SetupSounding.Loaded);
  EXPECT_TRUE(frmZOLRestart.Visible);
  EXPECT_EQ(frmZOLRestart.Caption, "RESTART PENLOG");
  EXPECT_EQ(frmZOLRestart.lblQuestion.Caption, "WOULD YOU LIKE TO RESTART PENLOG?");
  EXPECT_EQ(sounding.ExitUnderWay, -1);
  OperatorAction action;
  action.form = &Main;
  action.control = &Main.cmdExit;
  action.stamp = StampOf(Main, &Main.cmdExit);
  EXPECT_NE(WhyRefused(action), "") << "nothing behind the question takes an action";
}

/// What is free at the moment in which the new console is started.
struct LookingHost : VirtualHost {
  bool StartProgram(const std::string& path, const std::vector<std::string>& words) override {
    const bool is_helper = path.find("DoAgain") != std::string::npos;
    if (!is_helper || helper_starts) Look();
    return (!is_helper || helper_starts) && VirtualHost::StartProgram(path, words);
  }
  void Look() {
    lock_was_free = TheDisk().Lock("/data/penlog.lock");
    port_was_open = Main.ConeComm.PortOpen() || Main.EncoderComm.PortOpen();
  }
  bool helper_starts = true;
  bool lock_was_free = false;
  bool port_was_open = true;
};

struct StartingAgain : Console {
  StartingAgain() {
    session.DataDirectory = "/data";
    UseHost(&looking);
    TakeInstanceLock();
    Main.ConeComm.SetCommPort(kConePort);
    Main.ConeComm.Open();
    OpenPorts();
  }
  ~StartingAgain() { UseHost(&host); }
  LookingHost looking;
};

TEST(Restart, GivesLockAndPortsAwayBeforeTheNewConsoleStarts) {
  for (const bool helper : {true, false}) {
    StartingAgain again;
    EXPECT_FALSE(again.disk.Lock("/data/penlog.lock"));
    EXPECT_TRUE(Main.ConeComm.PortOpen() && Main.EncoderComm.PortOpen());
    if (helper) again.disk.Put("/data/DoAgain.exe", "a program");
    EXPECT_THROW(frmZOLRestart_cmdYes_Click(), ProgramEnd);
    EXPECT_TRUE(again.looking.lock_was_free);
    EXPECT_FALSE(again.looking.port_was_open);
  }
}

TEST(Restart, RunsTheHelperOfTheDataDirectoryElseItself) {
  struct Case {
    std::vector<std::string> files;
    bool helper_starts;
    const char* started;
  };
  for (const Case& row :
       {Case{{}, true, "itself"}, Case{{"/data/DoAgain.exe"}, true, "/data/DoAgain.exe"},
        Case{{"/data/DoAgain"}, true, "/data/DoAgain"},
        Case{{"/data/DoAgain", "/data/DoAgain.exe"}, true, "/data/DoAgain.exe"},
        Case{{"/data/DoAgain.exe"}, false, "itself"},
        Case{{"/program/DoAgain.exe"}, true, "itself"}}) {
    StartingAgain again;
    again.looking.helper_starts = row.helper_starts;
    for (const auto& file : row.files) again.disk.Put(file, "a program");
    EXPECT_THROW(StartAgain(), ProgramEnd);
    EXPECT_EQ(again.looking.started, std::vector<std::string>{row.started});
  }
}

TEST(Restart, NoEndsTheProgram) {
  Console console;
  EXPECT_THROW(frmZOLRestart_cmdNo_Click(), ProgramEnd);
  EXPECT_TRUE(console.host.started.empty());
}

TEST(Restart, AConsoleThatCannotBeStartedIsToldBeforeTheEnd) {
  Console console;
  console.host.can_start = false;
  std::string told;
  PostCall(Now() + kSecond, &console, [&] {
    told = FrontBox()->text;
    AnswerBox(FrontBox()->id, BoxAnswer::Ok);
  });
  EXPECT_THROW(frmZOLRestart_cmdYes_Click(), ProgramEnd);
  EXPECT_EQ(told, "PENLOG COULD NOT BE STARTED AGAIN.  START IT BY HAND.");
}

TEST(Restart, YesStartsTheConsoleAnewAndEnds) {
  Console console;
  EXPECT_THROW(frmZOLRestart_cmdYes_Click(), ProgramEnd);
  EXPECT_EQ(console.host.started, std::vector<std::string>{"itself"});
}

}  // namespace
}  // namespace penlog
