// What the monkey does with its hands, and to the world around it.
#include <array>

#include "attacks/monkey.h"
#include "forms/main_form.h"
#include "forms/setup_display_form.h"
#include "platform/boxes.h"
#include "platform/clock.h"
#include "platform/yield.h"

namespace penlog {

namespace {

const std::vector<const char*> kOddTexts = {"",
                                            "0",
                                            "-1",
                                            "1e999",
                                            "nan",
                                            "-0",
                                            "1,5",
                                            "..",
                                            "/",
                                            "S1",
                                            "a\"b",
                                            "S1.cpt",
                                            "/soundings",
                                            "a,b,c",
                                            "a\nb",
                                            "x/y",
                                            " ",
                                            "(999)",
                                            "NAME(998)",
                                            "0x10",
                                            "CON",
                                            "\t",
                                            "\xFF\xFE",
                                            "99999999999999999999",
                                            "\xF0\x9F\x98\x80",
                                            "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D",
                                            "-",
                                            "."};

const std::vector<const char*> kRigOrders = {
    "push 0.5",    "push 1",   "push 2",    "push 0.02",    "stop",         "push 1",
    "rod-break",   "lift 0.3", "clamp on",  "clamp off",    "pressure on",  "push 2",
    "push 5",      "clamp on", "clamp on",  "pressure off", "hold 5 2",     "at 0",
    "speed 2",     "speed 20", "speed 400", "tilt 3 4",     "tilt -30 12",  "free 1",
    "set 1 90000", "set 1 0",  "strike",    "shift 2 0.4",  "temperature 5"};

const std::vector<const char*> kRigFaults = {"fault silent 3s",
                                             "fault silent 90s",
                                             "fault break-only",
                                             "fault garbled 20s",
                                             "fault half-reply 5s",
                                             "fault lost-selection",
                                             "fault frozen 15s",
                                             "fault edge-burst 500",
                                             "fault edge-burst 9000",
                                             "fault edge-lost 3",
                                             "unplug cone",
                                             "unplug truck",
                                             "fault unplugged cone 2s",
                                             "fault unplugged truck 2s",
                                             "replug cone 6 3s",
                                             "replug cone 3 1s",
                                             "replug truck 8 3s",
                                             "replug truck 4 1s",
                                             "fault garbled 1",
                                             "fault half-reply 1"};

const std::vector<const char*> kNoise = {"\r",
                                         "\n\n\n\n",
                                         "?\r\n",
                                         "T 1 2 3",
                                         "COPYRIGHT V9.99\r\n",
                                         "\xFF\xFF\xFF",
                                         "$GPGGA,,\r\n",
                                         " 9999999999999999999999 1e308 -1e308 nan inf\r\n"};

Form* FormOf(const std::string& name) {
  return FindForm(name.substr(0, name.find('.')));
}

}  // namespace

void Monkey::Post(OperatorAction action) {
  PostActionNow(action);
  if (Chance(5)) PostActionNow(std::move(action));  // the second click of a double click
}

void Monkey::Do(const std::string& name, ActionKind kind, const std::string& text, int number) {
  OperatorAction action;
  action.form = FormOf(name);
  action.control = action.form->Find(name.substr(name.find('.') + 1));
  action.kind = kind;
  action.text = text;
  action.number = number;
  Note("operator: " + name + " " + text);
  Post(std::move(action));
}

void Monkey::AnswerFrontBox() {
  const MessageBox* box = FrontBox();
  if (box == nullptr) return;
  constexpr std::array kAll = {BoxAnswer::Ok, BoxAnswer::Yes, BoxAnswer::No, BoxAnswer::Cancel};
  const BoxAnswer answer = Offers(box->buttons, BoxAnswer::Yes) && !Chance(4)
                               ? BoxAnswer::Yes
                               : kAll[Pick(static_cast<std::uint32_t>(kAll.size()))];
  Note("answers the box \"" + box->text + "\"");
  AnswerBox(box->id, Offers(box->buttons, answer) ? answer : BoxAnswer::Ok);
}

void Monkey::SetUpSounding() {
  const std::uint32_t dice = Pick(5);
  if (dice == 0) return Do("SetupSounding.Dir1", ActionKind::Type, "/soundings");
  if (dice == 1) {
    return Do("SetupSounding.txtFileName", ActionKind::Type, "M" + std::to_string(++names_));
  }
  if (dice == 2) return Do("SetupSounding.txtStartDepth", ActionKind::Type, "0");
  Do("SetupSounding.Command2");
}

void Monkey::ActOnMain() {
  if (Main.frmTakeFinalBaseline.IsShown()) {
    return Do(Chance(2) ? "Main.Command2" : "Main.Command3");
  }
  if (Main.frmLocalWarning.IsShown()) {
    if (Chance(6)) return Do("Main.cmdWarningOK1");
    if (Chance(8)) return Do("Main.cmdWarningOK2");
    return Do("Main.cmdWarningCancel");
  }
  if (Main.cmdStart.Caption == "STOP") {
    if (Chance(40)) return Do("Main.cmdStart");
    if (Chance(20)) return Do("Main.cmdAuto");
    if (Chance(2)) return PushOn();
    return OrderRig();
  }
  Do(Chance(2) ? "Main.cmdTakeBaseline" : "Main.cmdStart");
}

void Monkey::ActSensibly() {
  if (BoxIsOpen()) return AnswerFrontBox();
  if (ShownForms().empty()) return;
  const std::string front = ShownForms().back()->Name();
  if (front == "StartUp") return Do("StartUp.cmdStart");
  if (front == "frmConeSettings") return Do("frmConeSettings.cmdClose");
  if (front == "SetupSounding") return SetUpSounding();
  if (front == "SetupDisplay") {
    const bool asks = SetupDisplay.frmSelectPPType.IsShown();
    return Do(asks ? "SetupDisplay.cmdU2PPFilter" : "SetupDisplay.cmdDone");
  }
  if (front == "frmCreateNewDirectory") return Do("frmCreateNewDirectory.Command2");
  if (front == "frmZOLRestart")
    return Do(Chance(2) ? "frmZOLRestart.cmdYes" : "frmZOLRestart.cmdNo");
  if (front == "frmSpecifyTruckInterface") {
    if (Chance(3)) return Do("frmSpecifyTruckInterface.cmdSavePort");
    return Do("frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort", ActionKind::Select, "",
              Chance(5) ? static_cast<int>(Pick(3)) : 1);
  }
  if (Main.Visible) ActOnMain();
}

void Monkey::ActOnAnything() {
  const auto& forms = Chance(10) ? AllForms() : ShownForms();
  if (forms.empty()) return;
  Form& form = *forms[Pick(static_cast<std::uint32_t>(forms.size()))];
  OperatorAction action;
  action.form = &form;
  if (Chance(900)) {
    action.kind = ActionKind::Close;
    Note("operator closes " + form.Name());
    return Post(std::move(action));
  }
  std::vector<Control*> hittable;
  for (Control* control : form.Controls()) {
    if (Chance(20) || (control->IsShown() && control->IsUsable())) hittable.push_back(control);
  }
  if (hittable.empty()) return;
  action.control = hittable[Pick(static_cast<std::uint32_t>(hittable.size()))];
  // Leaving the program is for the sensible moments, or no run would come far.
  if (action.control->Name() == "cmdExit" && !Chance(20)) return;
  action.kind = static_cast<ActionKind>(Pick(static_cast<std::uint32_t>(ActionKind::Close)));
  action.text = PickWord(kOddTexts);
  if (Chance(50)) action.text = std::string(100'000, 'x');
  action.number = static_cast<int>(Pick(8)) - 2;
  Note("operator: any " + form.Name() + "." + action.control->Name());
  Post(std::move(action));
}

void Monkey::PushOn() {
  std::string reply;
  Note("rig: clamped, pushing on");
  session_.rig.Command("clamp on", reply);
  session_.rig.Command("pressure on", reply);
  session_.rig.Command("push 2", reply);
}

void Monkey::OrderRig() {
  std::string reply;
  const std::string order = PickWord(kRigOrders);
  Note("rig: " + order);
  session_.rig.Command(order, reply);
}

void Monkey::TroubleWire() {
  if (Chance(4)) return Chatter();
  std::string reply;
  const std::string order = PickWord(kRigFaults);
  Note("rig: " + order);
  session_.rig.Command(order, reply);
  HealLater();
}

void Monkey::Chatter() {
  Note("noise on the ports");
  const std::string noise = PickWord(kNoise);
  chatter_->Send(noise);
  session_.ports.Wire(3).Send(noise);
}

void Monkey::TroubleLines() {
  Note("lines flap");
  FlapLines(static_cast<int>(Pick(2000)));
}

void Monkey::FlapLines(int flips) {
  if (flips <= 0) return;
  const auto bits = Pick(8);
  session_.ports.Wire(4).SetLines({(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0});
  PostCall(
      Now() + kMillisecond, this, [this, flips] { FlapLines(flips - 1); },
      EventKind::RepeatingCall);
}

void Monkey::TroubleDisk() {
  const std::uint32_t dice = Pick(5);
  if (dice == 0) disk_.SetRoom(0);
  if (dice == 1) disk_.SetRoom(Pick(20'000));
  if (dice == 2) disk_.SetReadOnly(Chance(2) ? "/soundings" : VirtualSession::DataDirectory());
  if (dice == 3) disk_.Trouble(2 + Pick(30));
  if (dice == 4) disk_.Trouble(1);
  Note("disk trouble " + std::to_string(dice));
  HealLater();
}

void Monkey::TroubleClock() {
  const auto hours = static_cast<Micros>(Pick(60)) - 30;
  const Micros by = Chance(2) ? hours * 3600 * kSecond : hours * 100 * kMillisecond;
  Note("the clock steps by " + std::to_string(by / kMillisecond) + " ms");
  session_.clock.StepWall(by);
}

}  // namespace penlog
