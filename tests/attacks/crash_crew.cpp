#include "attacks/crash_crew.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "app/console.h"
#include "attacks/hands.h"
#include "core/reset_state.h"
#include "forms/main_form.h"
#include "forms/resume_depth_form.h"
#include "forms/setup_display_form.h"
#include "forms/setup_sounding_form.h"
#include "forms/specify_truck_interface_form.h"
#include "forms/start_up_form.h"
#include "platform/boxes.h"
#include "platform/clock.h"
#include "platform/numbers.h"
#include "platform/yield.h"
#include "rig/rig_setups.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr Micros kPressAgain = 2 * kSecond;
constexpr Micros kLongestLife = 10 * 60 * kSecond;
constexpr double kStepMetres = 0.02;

/// Prints nothing but what the ground says, so that two runs can be compared to the last digit.
RigSetup SteadyRig() {
  RigSetup rig = MakeRigSetup("proximity");
  rig.cone.steady = true;
  rig.cone.decimals = 5;  // as many as the files hold
  rig.truck.push_speed = 5.0;
  // Each sensor reads another value in each row.
  rig.ground = Ground({{0.0, 1500.0, 20.0, 15.0}, {2.0, 5500.0, 90.0, 215.0}});
  return rig;
}

VirtualSessionSetup TimeOf(int hours) {
  VirtualSessionSetup setup;
  setup.start.hour += hours;
  return setup;
}

}  // namespace

std::size_t RowsStanding(const MemoryDisk& disk) {
  const std::size_t copy = StoredRows(ContentOf(disk, CrashTemporary())).size();
  const std::size_t lines = WholeLines(ContentOf(disk, CrashCpt())).size();
  if (lines <= kCptHead) return copy;
  const std::size_t shown = lines - kCptHead + static_cast<std::size_t>(kCrashDelay);
  return std::max(copy, std::min(shown, static_cast<std::size_t>(kCrashRows)));
}

CrashCrew::CrashCrew(const MemoryDisk& from, CrewTask task, int hours)
    : session(SteadyRig(), TimeOf(hours)), task_(task) {
  disk = from;
  session.ports.Wire(6);
  if (task != CrewTask::Resume) return;
  const auto rows = static_cast<double>(RowsStanding(disk));
  Order("at " + Format(rows * kStepMetres, "0.00") + " 0");
}

CrashCrew::~CrashCrew() {
  DropCalls(this);
}

void CrashCrew::Live() {
  ForgetEnd();
  ResetBoxes();
  ResetActions();
  ResetState();
  begun_ = Now();
  PostGlance(this, [this] { Look(); });
  RunConsole();
  DropCalls(this);
}

bool CrashCrew::WasTold(const std::string& part) const {
  return WasTold(part, 0, Now());
}

bool CrashCrew::WasTold(const std::string& part, Micros from, Micros limit) const {
  return std::any_of(told.begin(), told.end(), [&](const Told& one) {
    return one.time >= from && one.time <= from + limit && one.text.find(part) != part.npos;
  });
}

std::string CrashCrew::AllTold() const {
  std::string text;
  for (const Told& one : told) text += "  " + one.text.substr(0, 200) + "\n";
  return text;
}

void CrashCrew::Look() {
  PostGlance(this, [this] { Look(); });
  if (Now() - begun_ > kLongestLife) return RequestEnd();
  if (const FileDialog* dialog = OpenFileDialog()) AnswerFileDialog(dialog->id, CrashCpt());
  if (BoxIsOpen()) return Answer();
  ActOn(FrontScreen());
}

void CrashCrew::Answer() {
  const MessageBox* box = FrontBox();
  if (box == nullptr) return;
  told.push_back({Now(), box->text});
  const bool refuses = !says_no_to.empty() && box->text.find(says_no_to) != std::string::npos;
  if (refuses) return AnswerBox(box->id, BoxAnswer::No);
  TakeFrontBox();
}

void CrashCrew::Order(const std::string& words) {
  std::string reply;
  EXPECT_TRUE(session.rig.Command(words, reply)) << words << ": " << reply;
}

void CrashCrew::DoAgain(const std::string& control) {
  const auto [pressed, is_first] = pressed_.emplace(control, Now());
  if (!is_first && Now() - pressed->second < kPressAgain) return;
  pressed->second = Now();
  Do(control);
}

void CrashCrew::ActOn(const std::string& screen) {
  if (screen == "StartUp") return ActOnStart();
  if (screen == "frmSpecifyTruckInterface") return SpecifyTruck();
  if (screen == "frmConeSettings") return DoAgain("frmConeSettings.cmdClose");
  if (screen == "SetupSounding") return SetUpSounding();
  if (screen == "SetupDisplay") {
    const bool asks = SetupDisplay.frmSelectPPType.IsShown();
    return DoAgain(asks ? "SetupDisplay.cmdU2PPFilter" : "SetupDisplay.cmdDone");
  }
  if (screen == "frmZOLRestart") {
    ended = true;
    return Do("frmZOLRestart.cmdNo");
  }
  if (screen == "frmResumeDepthStatus") return ActOnResumeDepth();
  if (screen == "Main") ActOnMain();
}

void CrashCrew::ActOnStart() {
  if (task_ == CrewTask::Record) return DoAgain("StartUp.cmdStart");
  if (StartUp.frmResume.IsShown()) {
    return DoAgain(task_ == CrewTask::Resume ? "StartUp.cmdResumeAtLastDepth"
                                             : "StartUp.cmdResumeAtSurface");
  }
  if (Resumes() && !std::exchange(asked_to_resume_, true)) {
    return Do("StartUp.cmdResume");
  }
  left = true;
  Do("StartUp.cmdExit");
}

void CrashCrew::SpecifyTruck() {
  const Control& ports = frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort;
  if (ports.ListIndex >= 0) return DoAgain("frmSpecifyTruckInterface.cmdSavePort");
  Do("frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort", ActionKind::Select, "",
     EntryOf(ports, "4"));
}

void CrashCrew::SetUpSounding() {
  if (SetupSounding.Dir1.Text != "/soundings") {
    return Do("SetupSounding.Dir1", ActionKind::Type, "/soundings");
  }
  if (SetupSounding.txtFileName.Text != "S1") {
    return Do("SetupSounding.txtFileName", ActionKind::Type, "S1");
  }
  if (SetupSounding.txtStartDepth.Text != "12.34") {
    return Do("SetupSounding.txtStartDepth", ActionKind::Type, "12.34");
  }
  DoAgain("SetupSounding.Command2");
}

void CrashCrew::LookAtResumedFiles() {
  resumed = Now();
  rows_taken_up = sounding.RowCount;
  const auto rows = static_cast<std::size_t>(rows_taken_up);
  const std::size_t aligned = rows > kCrashDelay ? rows - kCrashDelay : 0;
  const std::vector<std::string> stored = StoredLines(ContentOf(disk, CrashTemporary()));
  const auto marks =
      static_cast<std::size_t>(std::count_if(stored.begin(), stored.end(), IsGapMark));
  const struct {
    const std::string& path;
    std::size_t lines;
  } files[] = {{CrashTemporary(), kTemporaryHead + rows + marks}, {CrashCpt(), kCptHead + aligned}};
  for (const auto& [path, lines] : files) {
    const std::string& text = ContentOf(disk, path);
    const std::size_t whole = WholeLines(text).size();
    if (whole != lines || !text.ends_with("\r\n")) {
      files_at_resume += path + " has " + std::to_string(whole) + " whole lines, not " +
                         std::to_string(lines) + ".  ";
    }
  }
  if (!ContentOf(disk, CrashTim()).ends_with("\r\n")) files_at_resume += "torn marks.  ";
}

/// Down to the last depth, in one push.
void CrashCrew::ActOnResumeDepth() {
  if (Main.cmdStart.Caption != "STOP") return;  // the console is not entered yet
  if (rows_taken_up < 0) LookAtResumedFiles();
  if (sounding.ReadingsTaken < 10) return;
  const double depth = kStepMetres * rows_taken_up;
  if (!std::exchange(goes_down_, true) && depth > 0) Order("push " + Format(depth, "0.00"));
  if (!session.rig.truck.Busy()) DoAgain("frmResumeDepthStatus.lblDepthReached");
}

void CrashCrew::ActOnMain() {
  if (Main.frmTakeFinalBaseline.IsShown()) return DoAgain("Main.Command2");
  if (Main.frmLocalWarning.IsShown()) return DoAgain("Main.cmdWarningOK1");
  if (Main.cmdStart.Caption != "STOP") {
    return DoAgain(Main.cmdStart.Enabled ? "Main.cmdStart" : "Main.cmdTakeBaseline");
  }
  if (Resumes() && rows_taken_up < 0) LookAtResumedFiles();
  if (sounding.ReadingsTaken < 10) return;
  if (!std::exchange(holds_, true) && sounding.RowCount < kCrashRows) {
    Order("hold " + std::to_string(kCrashRows - sounding.RowCount) + " 6");
  }
  if (session.rig.truck.Busy() || sounding.RowCount < kCrashRows) return;
  DoAgain("Main.cmdStart");
}

}  // namespace penlog
