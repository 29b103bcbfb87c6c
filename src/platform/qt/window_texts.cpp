#include "platform/qt/window_texts.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPushButton>
#include <algorithm>

#include "forms/form.h"
#include "platform/qt/fitted_text.h"
#include "platform/qt/mnemonics.h"
#include "platform/qt/shape_view.h"
#include "platform/qt/widget_values.h"
#include "platform/view.h"

namespace penlog {

namespace {

constexpr int kMostRounds = 4;  // a smaller text may give its neighbour room, and so on

bool FitOnce(const Mirrors& mirrors) {
  bool changed = false;
  for (const auto& mirror : mirrors) {
    if (mirror->Widget() == nullptr || !FitText(*mirror->Widget())) continue;
    ShowColours(*mirror->Widget(), mirror->Mirrored());
    changed = true;
  }
  return changed;
}

/// "lblChanValue_3" is named by "lblChanLabel_3".
const Control* LabelOfItsRow(const Control& control) {
  std::string name = control.Name();
  const auto at = name.find("Value_");
  return at == std::string::npos ? nullptr : control.Owner().Find(name.replace(at, 6, "Label_"));
}

/// "lblDSR" right behind "shpDSR".
const Control* LabelBehind(const Control& control) {
  const auto& all = control.Owner().Controls();
  const auto at = std::find(all.begin(), all.end(), &control);
  if (control.Kind() != ControlKind::Shape || at + 1 == all.end()) return nullptr;
  return (*(at + 1))->Name() == "lbl" + control.Name().substr(3) ? *(at + 1) : nullptr;
}

/// The caption that stands before the control in the order of its screen.
std::string CaptionBefore(const Control& control) {
  std::string caption;
  for (const Control* other : control.Owner().Controls()) {
    if (other == &control) break;
    const bool names = other->Kind() == ControlKind::Label || other->Kind() == ControlKind::Frame;
    if (names && !other->Caption.empty()) caption = other->Caption;
  }
  return caption;
}

QString NameOf(const Control& control) {
  const bool of_its_own = control.Kind() == ControlKind::Button ||
                          control.Kind() == ControlKind::CheckBox ||
                          control.Kind() == ControlKind::OptionButton;
  const Control* of_row = LabelOfItsRow(control);
  const Control* label = of_row != nullptr ? of_row : LabelBehind(control);
  const std::string name = of_its_own ? control.Caption
                           : label    ? label->Caption
                                      : CaptionBefore(control);
  return QString::fromStdString(ShownText(name));
}

}  // namespace

void FitTexts(const Mirrors& mirrors) {
  for (int round = 0; round < kMostRounds; ++round) {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    if (!FitOnce(mirrors)) return;
  }
}

void ForgetFits(const Mirrors& mirrors) {
  for (const auto& mirror : mirrors) {
    if (mirror->Widget() == nullptr) continue;
    ForgetFit(*mirror->Widget());
    ShowColours(*mirror->Widget(), mirror->Mirrored());
  }
}

void MarkButtons(const Mirrors& mirrors, const QString& taken) {
  std::vector<QPushButton*> buttons;
  std::vector<QString> captions;
  for (const auto& mirror : mirrors) {
    auto* button = qobject_cast<QPushButton*>(mirror->Widget());
    if (button == nullptr) continue;
    buttons.push_back(button);
    captions.push_back(WithoutMnemonic(button->text()));
  }
  const std::vector<QString> marked = WithMnemonics(captions, taken);
  for (std::size_t i = 0; i < buttons.size(); ++i) {
    if (buttons[i]->text() != marked[i]) buttons[i]->setText(marked[i]);
  }
}

void NameWidgets(const Mirrors& mirrors) {
  for (const auto& mirror : mirrors) {
    QWidget* widget = mirror->Widget();
    if (widget == nullptr) continue;
    QString name = NameOf(mirror->Mirrored());
    if (auto* shape = qobject_cast<ShapeView*>(widget)) {
      if (!shape->Word().isEmpty()) name += " " + shape->Word();
    }
    if (widget->accessibleName() != name) widget->setAccessibleName(name);
  }
}

}  // namespace penlog
