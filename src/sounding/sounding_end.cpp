#include "sounding/sounding_end.h"

#include <cmath>
#include <string>

#include "conelink/cone_state.h"
#include "core/data_directory.h"
#include "core/error_trap.h"
#include "core/header_columns.h"
#include "core/instance_lock.h"
#include "core/message.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/temporary_data.h"
#include "forms/main_form.h"
#include "forms/restart_form.h"
#include "forms/setup_display_form.h"
#include "forms/setup_sounding_form.h"
#include "forms/warning_form.h"
#include "platform/boxes.h"
#include "platform/disk.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/yield.h"
#include "sounding/depth_count.h"
#include "sounding/held_rows.h"
#include "sounding/resume_depth.h"
#include "sounding/sounding_files.h"
#include "sounding/sounding_state.h"
#include "sounding/steps_note.h"

namespace penlog {

namespace {

const std::string kNotClosed = "THE SOUNDING IS NOT CLOSED YET.  ";

/// "3 ROWS", "1 ROW"; empty for none.
std::string Counted(std::int32_t count, const std::string& word) {
  if (count == 0) return {};
  return PlainNumber(count) + " " + word + (count == 1 ? "" : "S");
}

std::string HeldRows() {
  return Counted(LinesHeld(kTemporaryFile), "ROW");
}

std::string HeldMarks() {
  return Counted(LinesHeld(kTimFile), "TIME MARK");
}

std::string WhatHelps(SoundingFile file) {
  switch (RemedyFor(file)) {
    case Remedy::Medium:
      return "  IF ITS MEDIUM WAS PULLED OUT, PUT IT BACK.";
    case Remedy::Resume:
      return file == kCptFile ? "  A RESUME MENDS IT."
                              : "  SOMETHING ELSE HAS CHANGED IT: PUT IT BACK AS IT WAS.";
    case Remedy::Disk:
      break;
  }
  return "  FREE SOME ROOM ON ITS DISK, OR LET IT BE WRITTEN AGAIN.";
}

/// Why the `.cpt` file has to be made whole by a resume; empty for a whole one.
std::string WhyCompletedLater() {
  const std::string why = WhyNotWhole(kCptFile);
  if (why.empty()) return {};
  return "THE SOUNDING FILE IS NOT COMPLETE YET: " + why +
         ".  ALL ITS ROWS STAND IN THE TEMPORARY DATA.  RESUME LAST SOUNDING COMPLETES IT, ALSO IN "
         "ANOTHER FOLDER.";
}

/// Where the cone does not stand at the last row, at which a resume goes on: how far from it, and
/// what to do. The depth counts on while a lost link gives no rows, and rods that are drawn up
/// count as new depth behind a resume. Empty where they agree within a step, and without rows.
std::string WhereConeStands() {
  if (sounding.RowCount == 0) return {};
  const float last = sounding.Rows(sounding.RowCount, 0);
  const float below = sounding.CurrentDepth - sounding.Rebound - last;
  const float half_count = settings.DepthResolution / 2;
  if (below < settings.DepthStep - half_count && below > -settings.DepthStep / 2 - half_count) {
    return {};
  }
  const int units = settings.DepthUnits;
  const std::string distance = MakeStartTexts(std::abs(below), units, 0).depth;
  const std::string depth = MakeStartTexts(last, units, settings.DepthFormat).depth;
  return "THE CONE STANDS " + distance + (below > 0 ? " BELOW" : " ABOVE") +
         " THE LAST ROW.  BRING IT TO " + depth +
         " BEFORE YOU PRESS RESUME AT LAST DEPTH, WHICH GOES ON FROM THERE.  OR PULL IT OUT AND "
         "PRESS RESUME AT SURFACE" +
         (below > 0 ? ", WITH " + distance + " AS THE DISTANCE DRILLED." : ".");
}

void TellIfAny(const std::string& text) {
  if (!text.empty()) PostBox(text);
}

/// The sounding can be closed without its recovery copy.
bool CanBeClosed() {
  return cone.DelayRows <= sounding.RowCount && WhyNotWhole(kCptFile).empty();
}

/// What stands under the name of the recovery copy names the sounding, with its columns.
bool CanBeResumed() {
  bool can = false;
  Trapped([&can] {
    const auto stored = ReadTemporaryData(ReadFile(session.SoundingFiles[kTemporaryFile]),
                                          HasHeaderColumnOnly, kMostRows);
    const bool is_ours = stored.main_file == session.SoundingFiles[kCptFile];
    can = is_ours && !stored.done && stored.unreadable.empty();
  });
  return can;
}

/// What else is open while the recovery copy is gone or has changed: each way where it works.
std::string OtherWays() {
  const Remedy remedy = RemedyFor(kTemporaryFile);
  if (remedy == Remedy::Disk || !CanBeClosed()) return {};
  const std::string stopped = Main.frmTakeFinalBaseline.Visible ? "" : "PRESS OK AND ";
  const std::string close = "  OR " + stopped +
                            "END THE SOUNDING WITH TAKE BASELINE OR NO BASELINE: THAT NEEDS ITS "
                            "FILE ALONE.";
  if (remedy != Remedy::Resume || !CanBeResumed()) return close;
  return close +
         "  OR CLOSE THE WINDOW: A RESUME TAKES THE ROWS THAT THE TEMPORARY DATA LACKS FROM THE "
         "SOUNDING FILE, THE LAST ONES IN PART.";
}

/// Rows that no file holds are lost with the program: it isn't left. `again`: what is to be
/// pressed.
bool RefuseForHeldRows(const std::string& refusal, const std::string& again) {
  const std::string why = WhyNotWhole(kTemporaryFile);
  if (why.empty()) return false;
  const std::string rows = HeldRows();
  PostBox(refusal + (rows.empty() ? "" : "IN MEMORY ALONE: " + rows + ".  ") + why + "." +
          WhatHelps(kTemporaryFile) + "  THEN PRESS " + again + " AGAIN." + OtherWays());
  return true;
}

void LeaveUnfinished() {
  sounding.ConsoleMode = 1;
  ExitProgram();
}

/// `is_told`: that the sounding goes on at a resume alone.
void LeaveTelling(bool is_told) {
  if (!is_told) {
    TellIfAny(WhyCompletedLater());
    TellIfAny(WhereConeStands());
  }
  LeaveUnfinished();
}

void Suspend(bool is_told) {
  WriteAllHeld();
  const auto is_refused = [is_told] {  // told, it was asked at the final baseline
    return RefuseForHeldRows("THE SOUNDING CANNOT BE SUSPENDED.  ",
                             is_told ? "TAKE BASELINE OR NO BASELINE" : "SUSPEND");
  };
  if (is_refused()) return;
  const std::string marks = HeldMarks();
  if (!marks.empty()) {
    PostBox("IN MEMORY ALONE: " + marks + ", WHICH WOULD BE LOST.  " + WhyNotWhole(kTimFile) + "." +
                WhatHelps(kTimFile) + "  SUSPEND THE SOUNDING ALL THE SAME?",
            BoxButtons::YesNoCareful, [is_refused, is_told](BoxAnswer answer) {
              if (answer != BoxAnswer::Yes || sounding.ExitUnderWay == kTrue) return;
              if (is_refused()) return;  // rows came meanwhile
              LeaveTelling(is_told);
            });
    return;
  }
  LeaveTelling(is_told);
}

void TryAgainToClose() {
  if (CloseSounding()) ExitProgram();
}

/// `why`: what could not be written. All rows stand in the recovery copy, or a suspension would
/// lose some.
bool TellNotClosed(const std::string& why) {
  const std::string what_helps = WhatHelps(kCptFile);
  WriteHeld(kTemporaryFile);
  if (RefuseForHeldRows(kNotClosed + why + "." + what_helps + "  ",
                        "TAKE BASELINE OR NO BASELINE")) {
    return false;
  }
  const std::string baseline =
      sounding.FinalBaselineMade == kTrue ? "  THE FINAL BASELINE IS TAKEN ANEW THEN." : "";
  PostBox(kNotClosed + why + "." + what_helps +
              "  ALL ROWS STAND IN THE TEMPORARY DATA.  DO YOU WANT TO TRY AGAIN?  IF 'NO', THE "
              "SOUNDING IS SUSPENDED: RESUME LAST SOUNDING COMPLETES ITS FILE, ALSO IN ANOTHER "
              "FOLDER, AND IT IS ENDED BEHIND THAT." +
              baseline,
          BoxButtons::YesNo, [](BoxAnswer answer) {
            if (sounding.ExitUnderWay == kTrue) return;
            answer == BoxAnswer::Yes ? TryAgainToClose() : Suspend(true);
          });
  return false;
}

/// All of the sounding stands in its file, and the mark alone is missing.
bool TellNotMarked(const std::string& why) {
  PostBox("THE SOUNDING FILE IS WHOLE, BUT IT COULD NOT BE NOTED THAT THE SOUNDING IS DONE.  " +
              why +
              ".  DO YOU WANT TO TRY AGAIN?  IF 'NO', RESUME LAST SOUNDING MAY OFFER IT ONCE MORE.",
          BoxButtons::YesNo, [](BoxAnswer answer) {
            if (sounding.ExitUnderWay == kTrue) return;
            answer == BoxAnswer::Yes ? TryAgainToClose() : LeaveUnfinished();
          });
  return false;
}

/// `without`: what becomes of the sounding without them.
bool AskToLeaveOutMarks(const std::string& without) {
  PostBox(kNotClosed + WhyNotWhole(kTimFile) + "." + WhatHelps(kTimFile) +
              "  IN MEMORY ALONE: " + HeldMarks() +
              ".  DO YOU WANT TO TRY AGAIN?  IF 'NO', THE SOUNDING IS " + without + ".",
          BoxButtons::YesNo, [](BoxAnswer answer) {
            if (sounding.ExitUnderWay == kTrue) return;
            if (answer == BoxAnswer::No) GiveUpFile(kTimFile);
            TryAgainToClose();
          });
  return false;
}

/// Fewer rows than the largest delay: nothing is closed, and a resume goes on with them.
bool LeaveTooFewRows() {
  WriteAllHeld();
  if (RefuseForHeldRows(kNotClosed, "TAKE BASELINE OR NO BASELINE")) return false;
  if (!HeldMarks().empty()) return AskToLeaveOutMarks("LEFT UNFINISHED WITHOUT THEM");
  TellIfAny(WhyCompletedLater());
  return true;
}

/// What would be lost with the program, in words; empty for nothing.
std::string LostWithProgram() {
  const std::string rows = HeldRows();
  const std::string marks = HeldMarks();
  const std::string held = rows + (rows.empty() || marks.empty() ? "" : " AND ") + marks;
  const std::string why = WhyNotWhole(kTemporaryFile);
  if (!why.empty() && RemedyFor(kTemporaryFile) != Remedy::Disk) {
    return (CanBeResumed() ? "A RESUME WOULD LACK ROWS: " : "THE SOUNDING COULD NOT BE RESUMED: ") +
           why + "." + (held.empty() ? "" : "  IN MEMORY ALONE: " + held + ".");
  }
  if (!held.empty()) {
    return "THE DISK REFUSES " + held + ", WHICH STAND IN MEMORY ALONE AND WOULD BE LOST.";
  }
  return why.empty() ? "" : "A RESUME WOULD LACK ROWS: " + why + ".";
}

/// `is_told`: that a resume completes the file, and where the cone stands. The recording goes on
/// behind each question, and so the answer is no leave to lose what came meanwhile.
void EndUnlessLosing(bool is_told) {
  if (sounding.ExitUnderWay == kTrue) EndProgram();  // closed or suspended already
  WriteAllHeld();
  const std::string lost = LostWithProgram();
  if (!lost.empty()) {
    PostBox(lost + "  END THE PROGRAM ALL THE SAME?", BoxButtons::YesNoCareful,
            [](BoxAnswer answer) {
              if (answer == BoxAnswer::Yes) EndProgram();
            });
    return;
  }
  const std::string later = WhyCompletedLater();
  const std::string where = IsRecording() ? WhereConeStands() : "";
  if (is_told || (later.empty() && where.empty())) EndProgram();
  PostBox(later + (later.empty() || where.empty() ? "" : "  ") + where +
              "  PRESS OK TO END THE PROGRAM, OR CANCEL TO GO ON.",
          BoxButtons::OkCancel, [](BoxAnswer answer) {
            if (answer == BoxAnswer::Ok) EndUnlessLosing(true);
          });
}

/// A program "DoAgain" in the data directory, whose work it is to start the console again.
bool StartHelper() {
  for (const char* name : {"DoAgain.exe", "DoAgain"}) {
    const std::string path = DataPath(name);
    if (TheDisk().FileExists(path) && TheHost().StartProgram(path, {})) return true;
  }
  return false;
}

void CloseMainPorts() {
  for (SerialPort* port : {&Main.ConeComm, &Main.EncoderComm, &Main.ASCIIOutComm,
                           &Main.VideoOverlayComm, &Main.CalibratorComm}) {
    Trapped([port] { port->Close(); });
  }
}

}  // namespace

bool CloseSounding() {
  if (cone.DelayRows > sounding.RowCount) return LeaveTooFewRows();
  const bool marks_stand = WriteHeld(kTimFile);
  WriteClosingRows();
  // "DONE" would destroy the last copy.
  if (const std::string why = WhyNotWhole(kCptFile); !why.empty()) {
    return TellNotClosed(why);
  }
  if (!marks_stand) return AskToLeaveOutMarks("CLOSED WITHOUT THEM");
  try {
    MarkSoundingDone();
  } catch (const RuntimeFault& fault) {
    return TellNotMarked(fault.what());
  }
  RemoveMissingSteps();
  return true;
}

void SuspendSounding() {
  Suspend(false);
}

void Main_QueryUnload() {
  EndUnlessLosing(false);
}

void ExitProgram() {
  Main.Timer1.Stop();
  frmWarning.Timer1.Stop();
  frmWarning.Timer2.Stop();
  for (Form* form : {static_cast<Form*>(&frmWarning), static_cast<Form*>(&SetupDisplay),
                     static_cast<Form*>(&SetupSounding), static_cast<Form*>(&frmZOLRestart)}) {
    Unload(*form);
  }
  CloseResumeDepth();
  Show(frmZOLRestart);
  frmZOLRestart.Modal = true;  // the console behind it has nothing left to do
  sounding.ExitUnderWay = kTrue;
}

void StartAgain() {
  // The new console takes the data directory and the ports while this one is still ending.
  Trapped(ReleaseInstanceLock);
  CloseMainPorts();
  if (!StartHelper() && !TheHost().StartSelf())
    Tell("PENLOG COULD NOT BE STARTED AGAIN.  START IT BY HAND.");
  EndProgram();
}

void frmZOLRestart_cmdYes_Click() {
  StartAgain();
}

void frmZOLRestart_cmdNo_Click() {
  EndProgram();
}

}  // namespace penlog
