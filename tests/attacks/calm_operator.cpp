#include "attacks/calm_operator.h"

#include <algorithm>

#include "app/console.h"
#include "attacks/hands.h"
#include "core/first_run_data.h"
#include "core/reset_state.h"
#include "forms/main_form.h"
#include "forms/setup_display_form.h"
#include "forms/setup_sounding_form.h"
#include "forms/start_up_form.h"
#include "platform/boxes.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/yield.h"
#include "sounding/sounding_state.h"

namespace penlog {

namespace {

constexpr Micros kRetry = 30 * kSecond;

}  // namespace

CalmOperator::CalmOperator(const std::string& rig) : session(MakeRigSetup(rig), {}) {
  UseDisk(&disk);
  disk.PutFolder(folder);
}

CalmOperator::~CalmOperator() {
  DropCalls(this);
  UseDisk(&session.disk);
}

std::string CalmOperator::Data(const std::string& file) const {
  return JoinPath(VirtualSession::DataDirectory(), file);
}

void CalmOperator::LayDown() {
  for (const FirstRunFile& file : FirstRunFiles()) {
    const std::string path = Data(std::string(file.name));
    if (disk.FileExists(path) || disk.FolderExists(path)) continue;
    std::string content(file.content);
    if (file.name == "System Setup Values.txt") {
      std::size_t at = 0;
      for (int line = 1; line < 41; ++line) at = content.find('\n', at) + 1;
      content.replace(at, content.find('\n', content.find('\n', at) + 1) + 1 - at, "3\r\n4\r\n");
    }
    disk.Put(path, content);
  }
}

std::string CalmOperator::Told() const {
  std::string text;
  for (const auto& one : told) text += one.substr(0, 300) + "\n";
  return text;
}

bool CalmOperator::WasTold(const std::string& part) const {
  return std::any_of(told.begin(), told.end(),
                     [&](const std::string& text) { return text.find(part) != std::string::npos; });
}

void CalmOperator::Run(Micros limit) {
  ForgetEnd();
  ResetBoxes();
  ResetActions();
  ResetState();
  ended = false;
  moments_.clear();
  begun_ = Now();
  limit_ = limit;
  pushed_ = pressed_ = 0;
  PostGlance(this, [this] { Look(); });
  RunConsole([this] { rows = sounding.RowCount; });
  DropCalls(this);
  standstill = session.clock.StandstillReport();
}

void CalmOperator::Moment(const std::string& moment) {
  if (moments_.insert(moment).second && at) at(moment);
}

void CalmOperator::Look() {
  PostGlance(this, [this] { Look(); });
  if (Now() - begun_ > limit_) return RequestEnd();
  if (BoxIsOpen()) return Answer();
  const std::string screen = FrontScreen();
  if (!screen.empty()) ActOn(screen);
}

void CalmOperator::Answer() {
  if (FrontBox() != nullptr) told.push_back(TakeFrontBox());
}

void CalmOperator::SpecifyPort(const std::string& screen, const std::string& list,
                               const std::string& port) {
  const Control& ports = *FindForm(screen)->Find(list);
  if (ports.ListIndex >= 0) return Do(screen + ".cmdSavePort");
  Do(screen + "." + list, ActionKind::Select, "", EntryOf(ports, port));
}

void CalmOperator::ActOn(const std::string& screen) {
  Moment(screen);
  if (screen == "StartUp") return Do("StartUp.cmdStart");
  if (screen == "frmConeSettings") return Do("frmConeSettings.cmdClose");
  if (screen == "SetupSounding") return SetUpSounding();
  if (screen == "SetupDisplay") {
    const bool asks = SetupDisplay.frmSelectPPType.IsShown();
    return Do(asks ? "SetupDisplay.cmdU2PPFilter" : "SetupDisplay.cmdDone");
  }
  if (screen == "frmSpecifyTruckInterface") {
    return SpecifyPort(screen, "cmbTruckInterfaceSerialPort", "4");
  }
  if (screen == "frmSpecifyASCIIOut") return Do("frmSpecifyASCIIOut.cmdCancel");
  if (screen == "frmSpecifyVideoOverlay") return Do("frmSpecifyVideoOverlay.cmdCancel");
  if (screen == "frmZOLRestart") {
    ended = true;
    return Do("frmZOLRestart.cmdNo");
  }
  ActOnMain();
}

void CalmOperator::SetUpSounding() {
  if (SetupSounding.Dir1.Text != folder) {
    return Do("SetupSounding.Dir1", ActionKind::Type, folder);
  }
  if (SetupSounding.txtFileName.Text != name) {
    return Do("SetupSounding.txtFileName", ActionKind::Type, name);
  }
  Do("SetupSounding.Command2");
}

void CalmOperator::ActOnMain() {
  if (Main.frmTakeFinalBaseline.IsShown()) return Do("Main.Command3");
  if (Main.frmLocalWarning.IsShown()) {
    return Do(suspend ? "Main.cmdWarningOK2" : "Main.cmdWarningOK1");
  }
  if (Main.cmdStart.Caption != "STOP") {
    if (!Main.cmdStart.Enabled) return Do("Main.cmdTakeBaseline");
    if (pressed_ > 0 && Now() - pressed_ < kRetry) return;
    pressed_ = Now();
    Moment("START");
    return Do("Main.cmdStart");
  }
  std::string reply;
  if (pushed_ == 0) {
    pushed_ = Now();
    session.rig.Command("push " + PlainNumber(metres), reply);
  }
  Moment("recording");
  if (Now() - pushed_ < 20 * kSecond || session.rig.truck.Busy()) return;
  Moment("STOP");
  Do("Main.cmdStart");
}

}  // namespace penlog
