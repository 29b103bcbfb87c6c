#include "forms/operator_actions.h"

#include <algorithm>
#include <charconv>
#include <deque>
#include <map>
#include <set>
#include <string_view>
#include <utility>

#include "platform/box_askers.h"
#include "platform/boxes.h"
#include "platform/clock.h"
#include "platform/numbers.h"
#include "platform/yield.h"

namespace penlog {

namespace {

/// Takes the actions. An event holds the whole of one, so that one from a journal is served too.
class ActionTarget : public EventTarget {
 public:
  ActionTarget() : EventTarget("operator") {}
  void Post(const OperatorAction& action);
  void Handle(const Event& event) override;
  void Reset();
  bool Waits(const Control& control) const;
  /// The counts of a control, or of a screen alone, where the stamps in events begin.
  ActionStamp Origin(const void* of) const;
  void TakeOrigins();

  std::function<void(const OperatorAction&, bool)> listener;

 private:
  std::deque<const Control*> waiting_;  // in the order of posting
  std::set<Control*> pressed_;          // buttons whose press was served and whose release is owed
  std::map<const void*, ActionStamp> origins_;
  void NoLongerWaits(const Control* control);
  void Serve(const OperatorAction& action);
  bool OwesRelease(const OperatorAction& action) const;
};

ActionTarget& Actions() {
  static ActionTarget& target = *new ActionTarget;
  return target;
}

void Run(const std::function<void()>& handler) {
  const auto copy = handler;  // a handler may replace itself
  if (copy) copy();
}

bool IsList(ControlKind kind) {
  return kind == ControlKind::ComboBox || kind == ControlKind::ListBox;
}

void ServeSelect(Control& control, int number) {
  if (!IsList(control.Kind()) || number < -1 || number >= static_cast<int>(control.List.size())) {
    return;
  }
  control.ListIndex = number;
  if (number >= 0) control.Text = control.List[static_cast<std::size_t>(number)];
  Run(control.Click);
}

void ServeClose(Form& form) {
  if (form.QueryUnload) {
    Run(form.QueryUnload);
  } else if (form.ClosingEnds) {
    RequestEnd();
  }
}

/// A text that is no place changes nothing.
void ServeMove(Form& form, std::string_view text) {
  WindowPlace place;
  for (int* number : {&place.left, &place.top, &place.width, &place.height}) {
    const std::size_t begin = std::min(text.find_first_not_of(' '), text.size());
    text.remove_prefix(begin);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), *number);
    if (error != std::errc{}) return;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  }
  form.Window = place;
}

void ServeCheck(Control& control, bool checked) {
  if (control.Kind() == ControlKind::OptionButton && !checked) return;
  if (control.Checked == checked) return;
  control.Checked = checked;
  Run(control.Click);
}

}  // namespace

void ActionTarget::Post(const OperatorAction& action) {
  if (action.control != nullptr) waiting_.push_back(action.control);
  TheQueue().Post(Now(), EventOfAction(action));
}

ActionStamp ActionTarget::Origin(const void* of) const {
  const auto found = origins_.find(of);
  return found == origins_.end() ? ActionStamp{} : found->second;
}

void ActionTarget::TakeOrigins() {
  origins_.clear();
  for (const Form* form : AllForms()) {
    origins_[form] = StampOf(*form, nullptr);
    for (const Control* control : form->Controls()) origins_[control] = StampOf(*form, control);
  }
}

bool ActionTarget::OwesRelease(const OperatorAction& action) const {
  return action.kind == ActionKind::Release && pressed_.count(action.control) > 0;
}

/// Turns come in the order of posting: what was posted before has been dropped from the queue.
void ActionTarget::NoLongerWaits(const Control* control) {
  const auto found = std::find(waiting_.begin(), waiting_.end(), control);
  if (found != waiting_.end()) waiting_.erase(waiting_.begin(), found + 1);
}

void ActionTarget::Handle(const Event& event) {
  const auto read = ActionFromEvent(event);
  if (!read) return;
  const OperatorAction& action = *read;
  if (action.kind == ActionKind::Move) return ServeMove(*action.form, action.text);
  NoLongerWaits(action.control);
  // A release must reach a button that took the press: the override may never stay on.
  const bool served = OwesRelease(action) || WhyRefused(action).empty();
  if (listener) listener(action, served);
  if (served) Serve(action);
}

void ActionTarget::Serve(const OperatorAction& action) {
  const BoxAsker asker(action.form->Name());
  switch (action.kind) {
    case ActionKind::Click:
      Run(action.control->Click);
      break;
    case ActionKind::Press:
      if (!pressed_.insert(action.control).second) return;  // a key's repeat is no new press
      Run(action.control->Press);
      break;
    case ActionKind::Release:
      if (pressed_.erase(action.control) > 0) Run(action.control->Release);
      break;
    case ActionKind::Type:
      if (action.control->Text == action.text) return;
      action.control->Text = action.text;
      Run(action.control->Change);
      break;
    case ActionKind::Select:
      ServeSelect(*action.control, action.number);
      break;
    case ActionKind::Check:
      ServeCheck(*action.control, action.number != 0);
      break;
    case ActionKind::Point: {
      const auto point = action.control->Point;
      if (point) point(action.x, action.y, action.number != 0);
      break;
    }
    case ActionKind::Close:
      ServeClose(*action.form);
      break;
    case ActionKind::Move:
      break;  // served before: nobody acts on the screen by it
  }
}

bool ActionTarget::Waits(const Control& control) const {
  return std::find(waiting_.begin(), waiting_.end(), &control) != waiting_.end();
}

void ActionTarget::Reset() {
  waiting_.clear();
  pressed_.clear();
  listener = nullptr;
  TheQueue().Drop(this);
  TakeOrigins();
}

std::string WindowPlaceText(const WindowPlace& place) {
  std::string text;
  for (const int number : {place.left, place.top, place.width, place.height}) {
    text += (text.empty() ? "" : " ") + std::to_string(number);
  }
  return text;
}

ActionStamp StampOf(const Form& form, const Control* control) {
  ActionStamp stamp{form.Generation(), form.Visible.Falls() + form.Enabled.Falls()};
  for (; control != nullptr; control = control->Container) {
    stamp.falls += control->Visible.Falls() + control->Enabled.Falls();
  }
  return stamp;
}

void PostAction(const OperatorAction& action) {
  Actions().Post(action);
}

void PostActionNow(OperatorAction action) {
  action.stamp = StampOf(*action.form, action.control);
  Actions().Post(action);
}

void CountStampsFromHere() {
  Actions().TakeOrigins();
}

namespace {

/// What the counts of the action's stamp begin with.
ActionStamp OriginOf(const OperatorAction& action) {
  if (action.control != nullptr) return Actions().Origin(action.control);
  return Actions().Origin(action.form);
}

/// Takes the word up to the next blank off the front.
std::string_view TakeWord(std::string_view& text) {
  const std::string_view word = text.substr(0, text.find(' '));
  text.remove_prefix(std::min(word.size() + 1, text.size()));
  return word;
}

bool TakeCount(std::string_view& text, std::uint32_t& count) {
  const std::string_view word = TakeWord(text);
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), count);
  return error == std::errc{} && end == word.data() + word.size();
}

bool TakeFraction(std::string_view& text, double& fraction) {
  const auto number = WholeNumberText(TakeWord(text));
  fraction = number.value_or(0);
  return number.has_value();
}

bool IsOfTheWindow(ActionKind kind) {
  return kind == ActionKind::Close || kind == ActionKind::Move;
}

/// Takes "SCREEN.CONTROL", or the screen alone for its window.
bool TakeControl(std::string_view& text, OperatorAction& action) {
  const std::string name(TakeWord(text));
  const auto dot = name.find('.');
  action.form = FindForm(name.substr(0, dot));
  if (action.form == nullptr) return false;
  if (IsOfTheWindow(action.kind)) return dot == std::string::npos;
  if (dot != std::string::npos) action.control = action.form->Find(name.substr(dot + 1));
  return action.control != nullptr;
}

}  // namespace

Event EventOfAction(const OperatorAction& action) {
  const ActionStamp origin = OriginOf(action);
  Event event;
  event.kind = EventKind::OperatorAction;
  event.target = &Actions();
  event.number = static_cast<std::int64_t>(action.kind);
  event.lines = static_cast<std::uint32_t>(action.number);
  event.text = action.form->Name() + (action.control ? "." + action.control->Name() : "");
  // The differences wrap: an origin that has passed by is no fault.
  for (const std::uint32_t count :
       {action.stamp.generation - origin.generation, action.stamp.falls - origin.falls}) {
    event.text += " " + std::to_string(count);
  }
  event.text += " " + PlainNumber(action.x) + " " + PlainNumber(action.y) + " " + action.text;
  return event;
}

std::optional<OperatorAction> ActionFromEvent(const Event& event) {
  constexpr auto kLastKind = static_cast<std::int64_t>(ActionKind::Move);
  if (event.kind != EventKind::OperatorAction) return std::nullopt;
  if (event.number < 0 || event.number > kLastKind) return std::nullopt;
  OperatorAction action;
  action.kind = static_cast<ActionKind>(event.number);
  action.number = static_cast<int>(event.lines);
  std::string_view text = event.text;
  const bool read = TakeControl(text, action) && TakeCount(text, action.stamp.generation) &&
                    TakeCount(text, action.stamp.falls) && TakeFraction(text, action.x) &&
                    TakeFraction(text, action.y);
  if (!read) return std::nullopt;
  action.text = text;
  const ActionStamp origin = OriginOf(action);
  action.stamp.generation += origin.generation;
  action.stamp.falls += origin.falls;
  return action;
}

namespace {

/// The modal screen that lies above `form`, if one does.
const Form* ModalAbove(const Form& form) {
  bool above = false;
  for (const Form* shown : ShownForms()) {
    if (above && shown->Modal) return shown;
    if (shown == &form) above = true;
  }
  return nullptr;
}

}  // namespace

std::string WhyRefused(const OperatorAction& action) {
  const Form& form = *action.form;
  if (!form.Visible) return "the screen is not visible";
  if (StampOf(form, action.control) != action.stamp) return "the screen has changed since";
  if (action.control != nullptr) {
    if (!action.control->IsShown()) return "the control is not visible";
    if (!action.control->IsUsable()) return "the control is disabled";
    if (action.control->AlwaysUsable) return {};
  }
  if (BoxIsOpen()) return "a message box or a dialog is open";
  if (const Form* modal = ModalAbove(form)) return modal->Name() + " is open above";
  return {};
}

bool ActionWaits(const Control& control) {
  return Actions().Waits(control);
}

void OnActionServed(std::function<void(const OperatorAction&, bool)> listener) {
  Actions().listener = std::move(listener);
}

void ResetActions() {
  Actions().Reset();
}

}  // namespace penlog
