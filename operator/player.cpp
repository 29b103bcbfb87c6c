#include "operator/player.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <regex>
#include <utility>

#include "platform/boxes.h"
#include "platform/clock.h"
#include "platform/numbers.h"
#include "platform/texts.h"
#include "platform/yield.h"

namespace penlog {

namespace {

constexpr Micros kStep = 20 * kMillisecond;
constexpr double kScreenSeconds = 10;
constexpr double kAnswerSeconds = 30;

Micros Seconds(double seconds) {
  return static_cast<Micros>(seconds * static_cast<double>(kSecond));
}

/// The state words of `expect`; nothing for another word.
bool StateOf(const Control& control, const std::string& word, bool& holds) {
  if (word == "enabled") {
    holds = control.IsUsable();
  } else if (word == "disabled") {
    holds = !control.IsUsable();
  } else if (word == "visible") {
    holds = control.IsShown();
  } else if (word == "hidden") {
    holds = !control.IsShown();
  } else if (word == "checked") {
    holds = control.Checked;
  } else if (word == "unchecked") {
    holds = !control.Checked;
  } else if (word == "solid") {
    holds = control.Fill == FillStyle::Solid;
  } else if (word == "hollow") {
    holds = control.Fill == FillStyle::Hollow;
  } else {
    return false;
  }
  return true;
}

std::string Quoted(const std::string& text) {
  return "\"" + text + "\"";
}

BoxAnswer AnswerOf(const std::string& word) {
  if (word == "cancel") return BoxAnswer::Cancel;
  if (word == "yes") return BoxAnswer::Yes;
  if (word == "no") return BoxAnswer::No;
  return BoxAnswer::Ok;
}

/// The entry that `#2` or a text names; -1 if there is none. In quotes `#2` is a text.
int EntryOf(const Control& list, const std::string& word, bool quoted) {
  if (!quoted && word.size() > 1 && word[0] == '#') {
    const auto number = WholeNumberText(word.substr(1));
    const bool in_range = number && *number < static_cast<double>(list.List.size());
    return in_range ? static_cast<int>(*number) : -1;
  }
  for (std::size_t i = 0; i < list.List.size(); ++i) {
    if (list.List[i] == word) return static_cast<int>(i);
  }
  return -1;
}

/// What each verb does, and to which kinds of control.
struct VerbUse {
  const char* verb;
  ActionKind action;
  std::initializer_list<ControlKind> takes;
};

const VerbUse& UseOf(const std::string& verb) {
  using Kind = ControlKind;
  static const VerbUse uses[] = {
      {"click",
       ActionKind::Click,
       {Kind::Button, Kind::CheckBox, Kind::OptionButton, Kind::Picture}},
      {"menu", ActionKind::Click, {Kind::Menu}},
      {"press", ActionKind::Press, {Kind::Button}},
      {"release", ActionKind::Release, {Kind::Button}},
      {"type", ActionKind::Type, {Kind::TextBox}},
      {"select", ActionKind::Select, {Kind::ComboBox, Kind::ListBox}},
      {"check", ActionKind::Check, {Kind::CheckBox, Kind::OptionButton}},
      {"uncheck", ActionKind::Check, {Kind::CheckBox}},
      {"point", ActionKind::Point, {Kind::Picture}},
  };
  return *std::find_if(std::begin(uses), std::end(uses),
                       [&verb](const VerbUse& use) { return verb == use.verb; });
}

bool Takes(const Control& control, const VerbUse& use) {
  return std::find(use.takes.begin(), use.takes.end(), control.Kind()) != use.takes.end();
}

/// A click on what can be ticked ticks it.
void TickByClick(OperatorAction& act) {
  const ControlKind kind = act.control->Kind();
  if (act.kind != ActionKind::Click) return;
  if (kind != ControlKind::CheckBox && kind != ControlKind::OptionButton) return;
  act.kind = ActionKind::Check;
  act.number = kind == ControlKind::OptionButton || !act.control->Checked ? 1 : 0;
}

/// Nothing would happen: the control is as the action would make it.
bool StandsAsAsked(const OperatorAction& act) {
  if (act.kind == ActionKind::Type && act.control->Kind() == ControlKind::TextBox) {
    return act.control->Text == act.text;
  }
  return act.kind == ActionKind::Check && act.control->Checked == (act.number != 0);
}

/// The front one of the screens whose window ends the program; null if none is shown.
Form* MainWindow() {
  const auto& shown = ShownForms();
  const auto found = std::find_if(shown.rbegin(), shown.rend(),
                                  [](const Form* form) { return form->ClosingEnds; });
  return found == shown.rend() ? nullptr : *found;
}

}  // namespace

std::string ControlText(const Control& control) {
  switch (control.Kind()) {
    case ControlKind::TextBox:
    case ControlKind::ComboBox:
    case ControlKind::ListBox:
      return control.Text;
    default:
      return control.Caption;
  }
}

Player::Player(Script script, PlayerHands hands)
    : script_(std::move(script)), hands_(std::move(hands)) {}

Player::~Player() {
  DropCalls(this);
  OnActionServed({});
}

void Player::Start() {
  OnActionServed([this](const OperatorAction&, bool served) {
    if (!posted_) return;
    posted_ = false;
    refused_ = !served;
  });
  begun_ = Now();
  TellTurn();
  PostStep();
}

void Player::PostStep() {
  PostCall(
      Now() + kStep, this, [this] { Step(); }, EventKind::RepeatingCall);
}

void Player::Next() {
  ++next_;
  begun_ = Now();
  waits_ = false;
  expected_.clear();
  was_.clear();
  TellTurn();
}

void Player::TellTurn() const {
  if (hands_.turn && !Finished()) hands_.turn(script_.actions[next_]);
}

void Player::Fail() {
  failed_ = true;
  report_ = script_.title + ":" + std::to_string(script_.actions[next_].line) + ": expected " +
            expected_ + ", was " + was_;
  RequestEnd();
}

void Player::Step() {
  if (failed_) return;
  if (Finished()) {
    RequestEnd();
    return;
  }
  const ScriptAction& action = script_.actions[next_];
  // The next step first: an action may wait in a yield of its own.
  PostStep();
  if (TakeBox()) return;
  if (action.verb == "wait") return Wait(Seconds(LeadingNumber(action.words[0])));
  if (Try(action)) {
    Next();
  } else if (!failed_ && Now() - begun_ >= Patience(action)) {
    Fail();
  }
}

/// The end of a wait is an event to come: a script that waits for hours does not stand still.
void Player::Wait(Micros time) {
  if (Now() - begun_ >= time) return Next();
  if (std::exchange(waits_, true)) return;
  PostCall(begun_ + time, this, [] {});
}

Micros Player::Patience(const ScriptAction& action) const {
  if (action.verb == "answer" || action.verb == "file") return Seconds(kAnswerSeconds);
  if (action.verb == "screen" && action.words.size() == 2) {
    return Seconds(LeadingNumber(action.words[1]));
  }
  if (action.verb == "expect" && action.words.size() == 3) {
    return Seconds(LeadingNumber(action.words[2]));
  }
  return Seconds(kScreenSeconds);
}

bool Player::Try(const ScriptAction& action) {
  if (action.verb == "screen") return TryScreen(action);
  if (action.verb == "answer") return TryAnswer(action);
  if (action.verb == "file") return TryFile(action);
  if (action.verb == "expect") return TryExpect(action);
  if (action.verb == "end") return TryEnd();
  if (action.verb == "rig" || action.verb == "disk" || action.verb == "shot" ||
      action.verb == "kill") {
    return TryOutside(action);
  }
  return TryAct(action);
}

bool Player::FindControl(const std::string& name, Form*& form, Control*& control) {
  const auto dot = name.find('.');
  form = FindForm(name.substr(0, dot));
  control = form != nullptr ? form->Find(name.substr(dot + 1)) : nullptr;
  if (control != nullptr) return true;
  expected_ = name;
  was_ = form == nullptr ? "no such screen" : "no such control";
  Fail();
  return false;
}

bool Player::TryScreen(const ScriptAction& action) {
  const Form* form = FindForm(action.words[0]);
  expected_ = "the screen " + action.words[0];
  if (form == nullptr) {
    was_ = "no such screen";
    Fail();
    return false;
  }
  if (form->Visible) return true;
  was_ = ShownForms().empty() ? "no screen" : ShownForms().back()->Name();
  if (FrontBox() != nullptr) was_ += " with the box " + Quoted(FrontBox()->text);
  return false;
}

bool Player::Perform(const OperatorAction& action) {
  std::string why = WhyRefused(action);
  if (action.kind == ActionKind::Release) why.clear();
  if (why.empty() && hands_.act) why = hands_.act(action);
  if (!why.empty()) {
    was_ = why;
    return false;
  }
  if (!hands_.act) PostAction(action);
  posted_ = tried_ = true;
  return false;
}

bool Player::IsUnderWay(bool& done) {
  was_ = refused_ ? "refused as its turn came" : "not served";
  done = false;
  if (posted_) return true;
  if (!tried_ || std::exchange(refused_, false)) return false;
  tried_ = false;
  done = true;
  return true;
}

/// Fills in what the words ask for; false when the control has no such entry, or not yet.
bool Player::Asks(const ScriptAction& action, OperatorAction& act) {
  act.kind = UseOf(action.verb).action;
  act.stamp = StampOf(*act.form, act.control);
  act.number = action.verb == "check" ? 1 : 0;
  TickByClick(act);
  if (act.kind == ActionKind::Type) act.text = action.words[1];
  if (act.kind == ActionKind::Point) {
    act.x = LeadingNumber(action.words[1]);
    act.y = LeadingNumber(action.words[2]);
    act.number = action.words.size() == 4 ? 1 : 0;
  }
  if (act.kind != ActionKind::Select) return true;
  act.number = EntryOf(*act.control, action.words[1], action.quoted[1]);
  if (act.number >= 0) return true;
  was_ = "no entry " + Quoted(action.words[1]);
  if (act.control->Name() != "Dir1") return false;
  act.kind = ActionKind::Type;  // a folder is named by its path
  act.text = action.words[1];
  return true;
}

bool Player::TryAct(const ScriptAction& action) {
  OperatorAction act;
  if (!FindControl(action.words[0], act.form, act.control)) return false;
  expected_ = action.words[0] + " to take " + Quoted(action.verb);
  bool done = false;
  if (IsUnderWay(done)) return done;
  if (!Takes(*act.control, UseOf(action.verb))) {
    was_ = "a control of another kind";
    Fail();
    return false;
  }
  if (!Asks(action, act)) return false;
  return StandsAsAsked(act) || Perform(act);
}

bool Player::TryEnd() {
  OperatorAction act;
  act.kind = ActionKind::Close;
  act.form = MainWindow();
  expected_ = "the window to close";
  bool done = false;
  if (IsUnderWay(done)) return done;
  if (act.form == nullptr) {
    was_ = "no window that ends the program";
    return false;
  }
  act.stamp = StampOf(*act.form, nullptr);
  return Perform(act);
}

/// As an operator does who reads it and goes on.
bool Player::TakeBox() {
  const MessageBox* box = FrontBox();
  if (!hands_.takes_boxes || box == nullptr) return false;
  // It may stand before the turn of its answer has come.
  for (std::size_t at = next_; at < std::min(next_ + 2, script_.actions.size()); ++at) {
    if (script_.actions[at].verb == "answer") return false;
  }
  const BoxAnswer answer = Offers(box->buttons, BoxAnswer::Yes) ? BoxAnswer::Yes : BoxAnswer::Ok;
  const std::string text = box->text;
  if (!hands_.answer) {
    AnswerBox(box->id, answer);
  } else if (!hands_.answer(answer).empty()) {
    return false;
  }
  if (hands_.took_box) hands_.took_box(text);
  return true;
}

bool Player::TryAnswer(const ScriptAction& action) {
  const MessageBox* box = FrontBox();
  expected_ = "a box that begins with " + Quoted(action.words[1]);
  was_ = "no box";
  if (box == nullptr) return false;
  was_ = Quoted(box->text);
  const BoxAnswer answer = AnswerOf(action.words[0]);
  if (!StartsWith(box->text, action.words[1])) {
    Fail();
    return false;
  }
  if (!Offers(box->buttons, answer)) {
    was_ += " without the answer " + action.words[0];
    Fail();
    return false;
  }
  if (!hands_.answer) {
    AnswerBox(box->id, answer);
    return true;
  }
  const std::string why = hands_.answer(answer);
  if (!why.empty()) was_ += ": " + why;
  return why.empty();
}

bool Player::TryFile(const ScriptAction& action) {
  const FileDialog* dialog = OpenFileDialog();
  expected_ = "a file dialog";
  was_ = "none";
  if (dialog == nullptr) return false;
  const bool cancel = action.words[0] == "cancel" && !action.quoted[0];
  AnswerFileDialog(dialog->id, cancel ? "" : action.words[0]);
  return true;
}

bool Player::TryExpect(const ScriptAction& action) {
  Form* form = nullptr;
  Control* control = nullptr;
  if (!FindControl(action.words[0], form, control)) return false;
  const std::string& word = action.words[1];
  bool holds = false;
  if (!action.quoted[1] && StateOf(*control, word, holds)) {
    expected_ = action.words[0] + " " + word;
    was_ = "not so";
    return holds;
  }
  std::string text = ControlText(*control);
  if (!was_.empty() && text == judged_) return false;  // nothing new since the last look
  expected_ = action.words[0] + " " + Quoted(word);
  was_ = Quoted(text);
  judged_ = text;
  return word.starts_with('~') ? std::regex_search(text, action.pattern) : text == word;
}

bool Player::TryOutside(const ScriptAction& action) {
  expected_ = Quoted(action.verb + " " + action.rest) + " to succeed";
  if (action.verb == "kill") {
    if (hands_.kill) hands_.kill();
    return true;
  }
  std::string fault = "nothing to do it with";
  if (action.verb == "rig" && hands_.rig) fault = hands_.rig(action.rest);
  if (action.verb == "disk" && hands_.disk) fault = hands_.disk(action.words[0]);
  if (action.verb == "shot" && hands_.shot) {
    fault = hands_.shot(action.words[0], action.words.size() == 2 ? action.words[1] : "");
  }
  if (fault.empty()) return true;
  was_ = fault;
  Fail();
  return false;
}

int Player::Close() {
  DropCalls(this);
  if (failed_) return 1;
  // An action may have ended the program in its handler.
  if (tried_ && !posted_ && !refused_) Next();
  if (Finished()) return 0;
  if (expected_.empty()) expected_ = Quoted(script_.actions[next_].verb) + " to be played";
  was_ = "the end of the program";
  Fail();
  return 1;
}

}  // namespace penlog
