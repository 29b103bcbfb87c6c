#include "platform/qt/widget_values.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalBlocker>
#include <QStyle>
#include <QVariant>
#include <algorithm>

#include "forms/notice_colours.h"
#include "platform/qt/folder_view.h"
#include "platform/qt/frame_view.h"
#include "platform/qt/look.h"
#include "platform/qt/mnemonics.h"
#include "platform/qt/report_view.h"
#include "platform/qt/shape_view.h"
#include "platform/qt/text_view.h"
#include "platform/view.h"

namespace penlog {

namespace {

/// The field that holds a control's text; null for widgets without one.
QLineEdit* FieldOf(QWidget& widget) {
  if (auto* folders = qobject_cast<FolderView*>(&widget)) return &folders->Path();
  return qobject_cast<QLineEdit*>(&widget);
}

/// The open list that holds a control's entries; null for widgets without one.
QListWidget* ListOf(QWidget& widget) {
  if (auto* folders = qobject_cast<FolderView*>(&widget)) return &folders->Folders();
  return qobject_cast<QListWidget*>(&widget);
}

QString Text(const std::string& text) {
  return QString::fromStdString(text);
}

/// A "&" in a caption is a "&" and no mark of a short-cut.
QString ButtonText(QString caption) {
  return caption.replace("&", "&&");
}

/// The button of the main way on has two meanings, told apart by its caption: where it stops, it is
/// not shown as the way on.
void ShowRole(QWidget& button, const Control& control) {
  if (button.property("role").toString().isEmpty()) return;
  if (!button.property("firstRole").isValid()) {
    button.setProperty("firstRole", button.property("role"));
  }
  const QVariant role = control.Caption == "STOP" ? QVariant("stop") : button.property("firstRole");
  if (button.property("role") == role) return;
  button.setProperty("role", role);
  button.style()->unpolish(&button);
  button.style()->polish(&button);
}

/// What a list shows for an entry: the entry, and beside it the device or the like.
QString EntryText(const Control& control, std::size_t entry) {
  QString text = Text(control.List[entry]);
  if (entry < control.Beside.size() && !control.Beside[entry].empty()) {
    text += "   " + Text(control.Beside[entry]);
  }
  return text;
}

QStringList EntryTexts(const Control& control) {
  QStringList texts;
  for (std::size_t i = 0; i < control.List.size(); ++i) texts << EntryText(control, i);
  return texts;
}

/// The ground that a control's text stands on: its own, or that of the filled frame around it.
Colour GroundOf(const Control& control) {
  for (const Control* up = control.Container; up != nullptr; up = up->Container) {
    if (up->BackColor == kRed) return kRed;
  }
  return control.BackColor;
}

/// The colours that the program gave; those that every control begins with are the look's own.
QString ColourRule(const QWidget& widget, const Control& control) {
  QString rule;
  const Colour ground = GroundOf(control);
  const bool field = control.Kind() == ControlKind::TextBox ||
                     control.Kind() == ControlKind::ComboBox ||
                     control.Kind() == ControlKind::ListBox;
  const bool on_alarm = ground == kRed && control.Kind() == ControlKind::Label;
  if (control.ForeColor != kBlack || on_alarm) {
    rule += "color:" + TextOn(ground, control.ForeColor).name() + ";";
  }
  if (control.BackColor != (field ? kWhite : kGrey)) {
    rule += "background:" + GroundColour(control.BackColor).name() + ";";
  }
  if (control.Bold) rule += "font-weight:bold;";
  const int fitted = widget.property(kFittedPixels).toInt();
  if (fitted > 0) rule += QString("font-size:%1px;").arg(fitted);
  return rule;
}

/// A readout whose text is red is a quit's: its whole ground is the alarm, so that it is told
/// without its hue too. A coloured text on a common ground is the key of a trace.
void ShowReadout(TextView& view, const Control& control) {
  const bool quit = control.ForeColor == kRed && control.BackColor == kBlack;
  const Colour ground = quit || GroundOf(control) == kRed ? kRed : control.BackColor;
  const bool key = ground == kGrey && control.ForeColor != kBlack;
  view.SetColours(key ? Shown(control.ForeColor) : TextOn(ground, control.ForeColor),
                  GroundColour(ground));
  view.SetFilled(ground == kRed || ground == kGreen || ground == kBlue || ground == kAmber);
  view.SetBold(control.Bold);
}

}  // namespace

void ShowCaption(QWidget& widget, const Control& control) {
  const QString caption = Text(ShownText(control.Caption));
  if (auto* view = qobject_cast<TextView*>(&widget)) {
    view->SetText(caption);
  } else if (auto* report = qobject_cast<ReportView*>(&widget)) {
    report->SetText(caption);
  } else if (auto* frame = qobject_cast<FrameView*>(&widget)) {
    frame->SetCaption(caption);
  } else if (auto* shape = qobject_cast<ShapeView*>(&widget)) {
    shape->SetWord(caption);
  } else if (auto* label = qobject_cast<QLabel*>(&widget)) {
    if (label->text() != caption) label->setText(caption);
  } else if (auto* button = qobject_cast<QAbstractButton*>(&widget)) {
    if (WithoutMnemonic(button->text()) != caption) button->setText(ButtonText(caption));
    ShowRole(*button, control);
  }
}

void ShowColours(QWidget& widget, const Control& control) {
  if (auto* view = qobject_cast<TextView*>(&widget)) {
    ShowReadout(*view, control);
  } else if (auto* frame = qobject_cast<FrameView*>(&widget)) {
    frame->SetTone(control.BackColor);
  } else if (auto* shape = qobject_cast<ShapeView*>(&widget)) {
    shape->SetFill(control.Fill, control.FillColor);
  } else if (const QString rule = ColourRule(widget, control); widget.styleSheet() != rule) {
    widget.setStyleSheet(rule);
  }
}

void ShowText(QWidget& widget, const Control& control) {
  QLineEdit* field = FieldOf(widget);
  if (field == nullptr || field->text() == Text(control.Text)) return;
  const QSignalBlocker silent(field);
  const int cursor = field->cursorPosition();
  field->setText(Text(control.Text));
  field->setCursorPosition(std::min<int>(cursor, static_cast<int>(field->text().size())));
}

void ShowCheck(QWidget& widget, const Control& control) {
  auto* button = qobject_cast<QAbstractButton*>(&widget);
  if (button == nullptr || !button->isCheckable() || button->isChecked() == control.Checked) return;
  const QSignalBlocker silent(button);
  button->setChecked(control.Checked);
}

void ShowEntries(QWidget& widget, const Control& control) {
  if (auto* box = qobject_cast<QComboBox*>(&widget)) {
    const QSignalBlocker silent(box);
    box->clear();
    box->addItems(EntryTexts(control));
  } else if (QListWidget* list = ListOf(widget)) {
    const QSignalBlocker silent(list);
    list->clear();
    list->addItems(EntryTexts(control));
  }
}

void ShowChoice(QWidget& widget, const Control& control) {
  if (auto* box = qobject_cast<QComboBox*>(&widget)) {
    const QSignalBlocker silent(box);
    box->setCurrentIndex(control.ListIndex);
  } else if (QListWidget* list = ListOf(widget)) {
    const QSignalBlocker silent(list);
    list->setCurrentRow(control.ListIndex);
  }
}

QString CaptionOf(const QWidget& widget) {
  if (auto* view = qobject_cast<const TextView*>(&widget)) return view->Text();
  if (auto* report = qobject_cast<const ReportView*>(&widget)) return report->Text();
  if (auto* frame = qobject_cast<const FrameView*>(&widget)) return frame->Caption();
  if (auto* label = qobject_cast<const QLabel*>(&widget)) return label->text();
  if (auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
    return WithoutMnemonic(button->text());
  }
  return {};
}

}  // namespace penlog
