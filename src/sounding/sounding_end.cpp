#include "sounding/sounding_end.h"

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/data_directory.h"
#include "core/error_trap.h"
#include "core/instance_lock.h"
#include "core/message.h"
#include "forms/main_form.h"
#include "forms/restart_form.h"
#include "forms/setup_display_form.h"
#include "forms/setup_sounding_form.h"
#include "forms/warning_form.h"
#include "platform/boxes.h"
#include "platform/disk.h"
#include "platform/host.h"
#include "platform/numbers.h"
#include "platform/runtime_fault.h"
#include "platform/yield.h"
#include "sounding/held_rows.h"
#include "sounding/resume_depth.h"
#include "sounding/sounding_files.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

bool TellNotClosed(const std::string& reason) {
  PostBox(
      "THE SOUNDING IS NOT CLOSED YET, ITS FILES CANNOT BE WRITTEN.  NOTHING IS LOST.  FREE SOME "
      "ROOM ON THE DISK AND PRESS TAKE BASELINE OR NO BASELINE AGAIN.  " +
      reason);
  return false;
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
  if (cone.DelayRows > sounding.RowCount) {
    return WriteAllHeld() || TellNotClosed("");
  }
  const bool marks_stand = WriteHeld(kTimFile);
  if (!WriteClosingRows() || !marks_stand) return TellNotClosed("");
  try {
    RequireWhole(kCptFile);  // "DONE" would destroy the last copy
    MarkSoundingDone();
  } catch (const RuntimeFault& fault) {
    return TellNotClosed(fault.what());
  }
  return true;
}

void Main_QueryUnload() {
  if (WriteAllHeld()) EndProgram();
  PostBox("THE DISK REFUSES" + PrintNumber(sounding.RowsHeldBack) +
              "ROWS, WHICH STAND IN MEMORY ALONE AND WOULD BE LOST.  END THE PROGRAM ALL THE SAME?",
          BoxButtons::YesNoCareful, [](BoxAnswer answer) {
            if (answer == BoxAnswer::Yes) EndProgram();
          });
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
