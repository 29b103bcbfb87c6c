#include "forms/control.h"

#include <algorithm>

#include "platform/runtime_fault.h"

namespace penlog {

Label::Label(Form& form, std::string name, std::string caption)
    : Control(form, std::move(name), ControlKind::Label) {
  Caption = std::move(caption);
}

Button::Button(Form& form, std::string name, std::string caption)
    : Control(form, std::move(name), ControlKind::Button) {
  Caption = std::move(caption);
}

TextBox::TextBox(Form& form, std::string name, std::string text)
    : Control(form, std::move(name), ControlKind::TextBox) {
  Text = std::move(text);
  BackColor = kWhite;
}

CheckBox::CheckBox(Form& form, std::string name, std::string caption)
    : Control(form, std::move(name), ControlKind::CheckBox) {
  Caption = std::move(caption);
}

OptionButton::OptionButton(Form& form, std::string name, std::string caption)
    : Control(form, std::move(name), ControlKind::OptionButton) {
  Caption = std::move(caption);
}

ComboBox::ComboBox(Form& form, std::string name)
    : Control(form, std::move(name), ControlKind::ComboBox) {
  BackColor = kWhite;
}

ListBox::ListBox(Form& form, std::string name)
    : Control(form, std::move(name), ControlKind::ListBox) {
  BackColor = kWhite;
}

Shape::Shape(Form& form, std::string name) : Control(form, std::move(name), ControlKind::Shape) {}

Frame::Frame(Form& form, std::string name, std::string caption)
    : Control(form, std::move(name), ControlKind::Frame) {
  Caption = std::move(caption);
}

MenuEntry::MenuEntry(Form& form, std::string name, std::string caption)
    : Control(form, std::move(name), ControlKind::Menu) {
  Caption = std::move(caption);
}

Picture::Picture(Form& form, std::string name)
    : Control(form, std::move(name), ControlKind::Picture) {}

void Picture::Cls() {
  steps.clear();
  traces.clear();
  ++clearings;
}

void Picture::DrawSegment(int series, Colour colour, TracePoint from, TracePoint to) {
  const auto last = std::find_if(traces.rbegin(), traces.rend(),
                                 [&](const Trace& trace) { return trace.series == series; });
  if (last == traces.rend() || last->colour != colour || last->points.back() != from) {
    traces.push_back({series, colour, {from, to}});
  } else {
    last->points.push_back(to);
  }
}

void SubscriptFault(int subscript) {
  throw RuntimeFault("Subscript out of range: " + std::to_string(subscript));
}

void SetText(Control& box, const std::string& text) {
  if (box.Text == text) return;
  box.Text = text;
  const auto change = box.Change;
  if (change) change();
}

void SetChecked(Control& box, bool checked) {
  if (box.Checked == checked) return;
  box.Checked = checked;
  const auto click = box.Click;
  if (click) click();
}

}  // namespace penlog
