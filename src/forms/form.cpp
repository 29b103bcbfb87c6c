#include "forms/form.h"

#include <algorithm>

#include "forms/raises.h"
#include "platform/yield.h"

namespace penlog {

namespace {

std::vector<Form*>& Forms() {
  static std::vector<Form*>& forms = *new std::vector<Form*>;
  return forms;
}

std::vector<Form*>& Shown() {
  static std::vector<Form*>& forms = *new std::vector<Form*>;
  return forms;
}

}  // namespace

// A control's ties to its screen stand here, so that controls know no screen.

Control::Control(Form& form, std::string name, ControlKind kind)
    : form_(form), name_(std::move(name)), kind_(kind) {
  form.Add(this);
}

bool Control::IsShown() const {
  if (!Visible || !form_.Visible) return false;
  return Container == nullptr || Container->IsShown();
}

bool Control::IsUsable() const {
  if (!Enabled || !form_.Enabled) return false;
  return Container == nullptr || Container->IsUsable();
}

Form::Form(std::string name, std::string caption)
    : Caption(caption), name_(std::move(name)), first_caption_(std::move(caption)) {
  const auto behind = std::find_if(Forms().begin(), Forms().end(),
                                   [&](const Form* form) { return form->name_ > name_; });
  Forms().insert(behind, this);
}

Form::~Form() {
  std::erase(Forms(), this);
  std::erase(Shown(), this);
}

Control* Form::Find(const std::string& name) const {
  const auto found = std::find_if(controls_.begin(), controls_.end(),
                                  [&](const Control* control) { return control->Name() == name; });
  return found == controls_.end() ? nullptr : *found;
}

void Form::KeepFirstValues() {
  first_caption_ = Caption;
  first_back_color_ = BackColor;
  for (Control* control : controls_) {
    control->first_values_ = *control;
    control->first_visible_ = control->Visible;
    control->first_enabled_ = control->Enabled;
    control->first_always_usable_ = control->AlwaysUsable;
  }
}

void Form::BackToFirstValues() {
  Caption = first_caption_;
  BackColor = first_back_color_;
  Enabled = true;
  for (Control* control : controls_) {
    static_cast<ControlValues&>(*control) = control->first_values_;
    control->Visible = control->first_visible_;
    control->Enabled = control->first_enabled_;
    control->AlwaysUsable = control->first_always_usable_;
    if (auto* picture = dynamic_cast<Picture*>(control)) picture->Cls();
  }
}

void Form::Hold(Frame& frame, const std::vector<Control*>& controls) {
  for (Control* control : controls) control->Container = &frame;
}

void LoadForm(Form& form) {
  if (form.Loaded) return;
  form.Loaded = true;
  const auto load = form.Load;
  if (load) load();
}

void Show(Form& form) {
  LoadForm(form);
  form.Visible = true;
  std::erase(Shown(), &form);
  Shown().push_back(&form);
  ++raises.Count;
}

void SendBehind(Form& form) {
  if (!form.Visible) return;
  std::erase(Shown(), &form);
  Shown().insert(Shown().begin(), &form);
}

void ShowModal(Form& form) {
  form.Modal = true;
  Show(form);
  while (form.Visible) WaitYield("the end of a modal screen");
  form.Modal = false;
}

void Hide(Form& form) {
  form.Visible = false;
  form.Modal = false;
  std::erase(Shown(), &form);
}

void Unload(Form& form) {
  Hide(form);
  form.Loaded = false;
  form.Released();
  ++form.generation_;
  form.BackToFirstValues();
}

void MoveWindow(Form& form, const WindowPlace& place) {
  form.Window = place;
  ++form.moves_;
}

const std::vector<Form*>& AllForms() {
  return Forms();
}

const std::vector<Form*>& ShownForms() {
  return Shown();
}

Form* FindForm(const std::string& name) {
  for (Form* form : Forms()) {
    if (form->Name() == name) return form;
  }
  return nullptr;
}

void ResetForms() {
  for (Form* form : Forms()) {
    Unload(*form);
    form->Window = {};
    form->DesignHeight = 0;
  }
}

}  // namespace penlog
