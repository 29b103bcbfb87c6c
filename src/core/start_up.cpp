#include "core/start_up.h"

#include <algorithm>
#include <string>

#include "conelink/comm_tick.h"
#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/error_trap.h"
#include "core/message.h"
#include "core/session.h"
#include "core/settings.h"
#include "core/start_up_buttons.h"
#include "core/start_up_cone.h"
#include "core/start_up_ports.h"
#include "forms/start_up_form.h"
#include "platform/boxes.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/port_driver.h"
#include "platform/small_file.h"
#include "platform/texts.h"
#include "platform/value_reader.h"
#include "platform/yield.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr std::size_t kDots = 20;
constexpr std::int16_t kReadingsAveraged = 4;

/// A file that isn't ours may hold anything: printable, and short enough for a message.
std::string Printable(const std::string& line) {
  std::string text = Left(line, 250);
  std::replace_if(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; }, '?');
  return text;
}

/// The main file of a sounding that was suspended or cut off; empty if there is none.
std::string UnfinishedSounding() {
  std::string first_line;
  Trapped([&] {
    if (!TheDisk().FileExists(session.SoundingFiles[0])) return;
    ValueReader reader("TemporaryData.txt", ReadSmallFile(session.SoundingFiles[0]));
    first_line = reader.ReadLine();
  });
  return Trim(first_line) == "DONE" ? "" : Printable(first_line);
}

/// False when the operator would rather go back, to resume the last sounding.
bool LeavesUnfinishedSounding() {
  const std::string file = UnfinishedSounding();
  if (file.empty() || !session.ResumeConeId.empty()) return true;
  return MsgBox("THE LAST SOUNDING WAS NOT FINISHED: " + file +
                    ".  ITS TEMPORARY DATA ARE KEPT WHEN A NEW SOUNDING IS STARTED.  CANCEL GOES "
                    "BACK: RESUME LAST SOUNDING GOES ON WITH IT.",
                BoxButtons::OkCancel) == BoxAnswer::Ok;
}

void StartChecks() {
  sounding.ConsoleMode = 0;
  cone.ConeLinkUp = kFalse;
  KeepStartPorts();
  BeginStatus("");
  if (!LeavesUnfinishedSounding()) {
    EndStatus();
    EnableEveryButton();
    return;
  }
  if (ProveStartPorts()) LookForCone();
}

}  // namespace

void StartUp_cmdStart_Click() {
  // A calibration check may have been begun and have found no cone.
  session.ReadingsAveraged = kReadingsAveraged;
  session.CalibrationMode = kFalse;
  session.CalibrationPlaybackOnly = kFalse;
  StartChecks();
}

void StartUp_cmdCalibrate_Click() {
  if (settings.CalibratorSerialPort == 0) {
    Tell("CALIBRATOR SERIAL PORT NUMBER NOT SPECIFIED");
    return;
  }
  if (!EnumSerPorts(settings.CalibratorSerialPort)) {
    Tell("CALIBRATOR SERIAL PORT NUMBER INCORRECT OR NOT CONNECTED");
    return;
  }
  session.ReadingsAveraged = 1;
  session.CalibrationMode = kTrue;
  session.CalibrationPlaybackOnly = kFalse;
  StartChecks();
}

void StartUp_cmdExit_Click() {
  EndProgram();
}

void StartUp_Timer1_Timer() {
  std::string& dots = StartUp.lblStatusIndicator.Caption;
  dots = dots.size() < kDots ? dots + "." : "";
  const auto second = static_cast<std::int16_t>(TheClock().Wall().second);
  if (second != sounding.LastClockSecond) ++sounding.SecondsCounter;
  sounding.LastClockSecond = second;
  CountCommTick(StartUp.CommTick);
}

}  // namespace penlog
