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

#include "platform/qt/folder_view.h"
#include "platform/qt/frame_view.h"
#include "platform/qt/look.h"
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

/// The colours that the program gave; those that every control begins with are the look's own.
QString ColourRule(const Control& control) {
  QString rule;
  if (control.ForeColor != kBlack) rule += "color:" + Shown(control.ForeColor).name() + ";";
  const bool field = control.Kind() == ControlKind::TextBox ||
                     control.Kind() == ControlKind::ComboBox ||
                     control.Kind() == ControlKind::ListBox;
  if (control.BackColor != (field ? kWhite : kGrey)) {
    rule += "background:" + Shown(control.BackColor).name() + ";";
  }
  if (control.Bold) rule += "font-weight:bold;";
  return rule;
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
  } else if (auto* label = qobject_cast<QLabel*>(&widget)) {
    if (label->text() != caption) label->setText(caption);
  } else if (auto* button = qobject_cast<QAbstractButton*>(&widget)) {
    if (button->text() != ButtonText(caption)) button->setText(ButtonText(caption));
    ShowRole(*button, control);
  }
}

void ShowColours(QWidget& widget, const Control& control) {
  if (auto* view = qobject_cast<TextView*>(&widget)) {
    const bool own = control.ForeColor == kBlack;
    view->SetColours(own ? Look().text : Shown(control.ForeColor), Shown(control.BackColor));
    view->SetBold(control.Bold);
  } else if (auto* frame = qobject_cast<FrameView*>(&widget)) {
    frame->SetTone(control.BackColor == kGrey ? QColor() : Shown(control.BackColor));
  } else if (auto* shape = qobject_cast<ShapeView*>(&widget)) {
    shape->SetFill(control.Fill, control.FillColor);
  } else if (widget.styleSheet() != ColourRule(control)) {
    widget.setStyleSheet(ColourRule(control));
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
    return button->text().replace("&&", "&");
  }
  return {};
}

}  // namespace penlog
