#include "operator/player.h"

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

/// The entry that `#2` or a text names; -1 if there is none.
int EntryOf(const Control& list, const std::string& word) {
  if (word.size() > 1 && word[0] == '#') {
    const auto number = WholeNumberText(word.substr(1));
    const bool in_range = number && *number < static_cast<double>(list.List.size());
    return in_range ? static_cast<int>(*number) : -1;
  }
  for (std::size_t i = 0; i < list.List.size(); ++i) {
    if (list.List[i] == word) return static_cast<int>(i);
  }
  return -1;
}

ActionKind KindOf(const std::string& verb) {
  if (verb == "press") return ActionKind::Press;
  if (verb == "release") return ActionKind::Release;
  if (verb == "type") return ActionKind::Type;
  if (verb == "select") return ActionKind::Select;
  if (verb == "check" || verb == "uncheck") return ActionKind::Check;
  if (verb == "point") return ActionKind::Point;
  return ActionKind::Click;
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
  PostStep();
}

void Player::PostStep() {
  PostCall(
      Now() + kStep, this, [this] { Step(); }, EventKind::RepeatingCall);
}

void Player::Next() {
  ++next_;
  begun_ = Now();
  expected_.clear();
  was_.clear();
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
  if (action.verb == "wait") {
    if (Now() - begun_ >= Seconds(LeadingNumber(action.words[0]))) Next();
    return;
  }
  if (Try(action)) {
    Next();
  } else if (!failed_ && Now() - begun_ >= Patience(action)) {
    Fail();
  }
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
  if (action.verb == "rig" || action.verb == "shot" || action.verb == "kill" ||
      action.verb == "end") {
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

bool Player::TryAct(const ScriptAction& action) {
  OperatorAction act;
  if (!FindControl(action.words[0], act.form, act.control)) return false;
  expected_ = action.words[0] + " to take " + Quoted(action.verb);
  was_ = refused_ ? "refused as its turn came" : "not served";
  if (posted_) return false;
  if (tried_ && !std::exchange(refused_, false)) {
    tried_ = false;
    return true;
  }
  act.kind = KindOf(action.verb);
  act.stamp = StampOf(*act.form, act.control);
  act.number = action.verb == "check" ? 1 : 0;
  if (act.kind == ActionKind::Type) act.text = action.words[1];
  if (act.kind == ActionKind::Type && act.control->Text == act.text) return true;
  if (act.kind == ActionKind::Point) {
    act.x = LeadingNumber(action.words[1]);
    act.y = LeadingNumber(action.words[2]);
    act.number = action.words.size() == 4 ? 1 : 0;
  }
  if (act.kind == ActionKind::Select) {
    act.number = EntryOf(*act.control, action.words[1]);
    if (act.number < 0 && act.control->Name() == "Dir1") {
      act.kind = ActionKind::Type;  // a folder is named by its path
      act.text = action.words[1];
    } else if (act.number < 0) {
      was_ = "no entry " + Quoted(action.words[1]);
      return false;
    }
  }
  return Perform(act);
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
  AnswerBox(box->id, answer);
  return true;
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
  if (action.verb == "end") {
    RequestEnd();
    return true;
  }
  if (action.verb == "kill") {
    if (hands_.kill) hands_.kill();
    return true;
  }
  std::string fault = "nothing to do it with";
  if (action.verb == "rig" && hands_.rig) fault = hands_.rig(action.rest);
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
  // The last action may have ended the program in its handler.
  const bool last_was_served =
      next_ + 1 == script_.actions.size() && tried_ && !posted_ && !refused_;
  if (Finished() || last_was_served) return 0;
  if (expected_.empty()) expected_ = Quoted(script_.actions[next_].verb) + " to be played";
  was_ = "the end of the program";
  Fail();
  return 1;
}

}  // namespace penlog
