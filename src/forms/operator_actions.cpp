#include "forms/operator_actions.h"

#include <algorithm>
#include <deque>
#include <set>
#include <utility>

#include "platform/boxes.h"
#include "platform/clock.h"
#include "platform/yield.h"

namespace penlog {

namespace {

/// Takes the actions in the order of their posting; the event holds only that there is one.
class ActionTarget : public EventTarget {
 public:
  ActionTarget() : EventTarget("operator") {}
  void Post(OperatorAction action);
  void Handle(const Event& event) override;
  void Reset();
  bool Waits(const Control& control) const;

  std::function<void(const OperatorAction&, bool)> listener;

 private:
  std::deque<OperatorAction> waiting_;
  std::set<Control*> pressed_;  // buttons whose press was served and whose release is owed
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

void ServeCheck(Control& control, bool checked) {
  if (control.Kind() == ControlKind::OptionButton && !checked) return;
  if (control.Checked == checked) return;
  control.Checked = checked;
  Run(control.Click);
}

}  // namespace

void ActionTarget::Post(OperatorAction action) {
  Event event;
  event.kind = EventKind::OperatorAction;
  event.target = this;
  event.number = static_cast<std::int64_t>(action.kind);
  event.text = action.form->Name() + (action.control ? "." + action.control->Name() : "");
  if (!action.text.empty()) event.text += " " + action.text;
  waiting_.push_back(std::move(action));
  TheQueue().Post(Now(), std::move(event));
}

bool ActionTarget::OwesRelease(const OperatorAction& action) const {
  return action.kind == ActionKind::Release && pressed_.count(action.control) > 0;
}

void ActionTarget::Handle(const Event&) {
  if (waiting_.empty()) return;
  const OperatorAction action = std::move(waiting_.front());
  waiting_.pop_front();
  // A release must reach a button that took the press: the override may never stay on.
  const bool served = OwesRelease(action) || WhyRefused(action).empty();
  if (listener) listener(action, served);
  if (served) Serve(action);
}

void ActionTarget::Serve(const OperatorAction& action) {
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
  }
}

bool ActionTarget::Waits(const Control& control) const {
  return std::any_of(waiting_.begin(), waiting_.end(),
                     [&](const OperatorAction& action) { return action.control == &control; });
}

void ActionTarget::Reset() {
  waiting_.clear();
  pressed_.clear();
  listener = nullptr;
  TheQueue().Drop(this);
}

ActionStamp StampOf(const Form& form, const Control* control) {
  ActionStamp stamp{form.Generation(), form.Visible.Falls() + form.Enabled.Falls()};
  for (; control != nullptr; control = control->Container) {
    stamp.falls += control->Visible.Falls() + control->Enabled.Falls();
  }
  return stamp;
}

void PostAction(OperatorAction action) {
  Actions().Post(std::move(action));
}

void PostActionNow(OperatorAction action) {
  action.stamp = StampOf(*action.form, action.control);
  PostAction(std::move(action));
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
