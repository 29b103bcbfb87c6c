#include "platform/qt/widget_acts.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <algorithm>

#include "platform/qt/folder_view.h"

namespace penlog {

namespace {

void SendMouse(QWidget& widget, QEvent::Type type, const QPoint& place) {
  const bool up = type == QEvent::MouseButtonRelease;
  const bool move = type == QEvent::MouseMove;
  QMouseEvent event(type, place, widget.mapToGlobal(place), move ? Qt::NoButton : Qt::LeftButton,
                    up || move ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(&widget, &event);
}

void Press(QWidget& widget, const QPoint& place) {
  if (widget.focusPolicy() & Qt::ClickFocus) widget.setFocus(Qt::MouseFocusReason);
  SendMouse(widget, QEvent::MouseButtonPress, place);
}

void Click(QWidget& widget, const QPoint& place) {
  Press(widget, place);
  SendMouse(widget, QEvent::MouseButtonRelease, place);
}

void Key(QWidget& widget, int key) {
  QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
  QApplication::sendEvent(&widget, &down);
  QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier);
  QApplication::sendEvent(&widget, &up);
}

/// The place on a check box that takes the click lies at its left.
QPoint Target(const QWidget& widget) {
  const auto* button = qobject_cast<const QAbstractButton*>(&widget);
  if (button != nullptr && button->isCheckable()) return {widget.height() / 2, widget.height() / 2};
  return widget.rect().center();
}

/// Replaces the content in one change, as a paste over the marked text does.
void Type(QLineEdit& field, const QString& text) {
  Click(field, field.rect().center());
  field.selectAll();
  if (field.text() == text) return;
  if (text.isEmpty()) {
    Key(field, Qt::Key_Backspace);
    return;
  }
  QInputMethodEvent event;
  event.setCommitString(text);
  QApplication::sendEvent(&field, &event);
}

bool TypeInto(QWidget& widget, const QString& text) {
  auto* folders = qobject_cast<FolderView*>(&widget);
  auto* field = folders != nullptr ? &folders->Path() : qobject_cast<QLineEdit*>(&widget);
  if (field == nullptr) return false;
  Type(*field, text);
  if (folders != nullptr) Key(*field, Qt::Key_Return);
  return true;
}

bool SelectInBox(QComboBox& box, int entry) {
  if (entry < 0 || entry >= box.count()) return false;
  box.showPopup();
  box.view()->setCurrentIndex(box.model()->index(entry, box.modelColumn()));
  Key(*box.view(), Qt::Key_Return);
  box.hidePopup();
  return true;
}

bool SelectInList(QListWidget& list, int entry) {
  if (entry < 0 || entry >= list.count()) return false;
  list.scrollToItem(list.item(entry));
  const QRect place = list.visualItemRect(list.item(entry));
  QWidget& port = *list.viewport();
  Click(port, place.intersected(port.rect()).center());
  return true;
}

bool Select(QWidget& widget, int entry) {
  if (auto* box = qobject_cast<QComboBox*>(&widget)) return SelectInBox(*box, entry);
  if (auto* list = qobject_cast<QListWidget*>(&widget)) return SelectInList(*list, entry);
  if (auto* folders = qobject_cast<FolderView*>(&widget)) {
    return SelectInList(folders->Folders(), entry);
  }
  return false;
}

bool Check(QWidget& widget, bool checked) {
  auto* button = qobject_cast<QAbstractButton*>(&widget);
  if (button == nullptr || !button->isCheckable()) return false;
  if (button->isChecked() != checked) Click(widget, Target(widget));
  return true;
}

bool PointAt(QWidget& widget, const OperatorAction& action) {
  const QPoint place(static_cast<int>(action.x * (widget.width() - 1)),
                     static_cast<int>(action.y * (widget.height() - 1)));
  if (action.number != 0) {
    Click(widget, place);
  } else {
    SendMouse(widget, QEvent::MouseMove, place);
  }
  return true;
}

bool Do(QWidget& widget, const OperatorAction& action) {
  switch (action.kind) {
    case ActionKind::Click:
      Click(widget, Target(widget));
      return true;
    case ActionKind::Press:
      Press(widget, Target(widget));
      return true;
    case ActionKind::Release:
      SendMouse(widget, QEvent::MouseButtonRelease, Target(widget));
      return true;
    case ActionKind::Type:
      return TypeInto(widget, QString::fromStdString(action.text));
    case ActionKind::Select:
      return Select(widget, action.number);
    case ActionKind::Check:
      return Check(widget, action.number != 0);
    case ActionKind::Point:
      return PointAt(widget, action);
    case ActionKind::Close:
    case ActionKind::Move:
      return false;
  }
  return false;
}

bool Choose(QAction& entry, std::string& why) {
  if (!entry.isVisible() || !entry.isEnabled()) {
    why = "the menu entry is hidden or disabled";
    return false;
  }
  entry.trigger();
  return true;
}

}  // namespace

std::string WhyMissed(const QWidget& window, const QWidget& widget) {
  if (!widget.isVisible()) return "the widget is hidden";
  if (widget.width() < kLeastTarget || widget.height() < kLeastTarget) {
    return "the widget is too small to hit";
  }
  const QRect inset = widget.rect().adjusted(2, 2, -3, -3);
  for (const QPoint& place : {inset.center(), inset.topLeft(), inset.topRight(), inset.bottomLeft(),
                              inset.bottomRight()}) {
    const QPoint on_window = widget.mapTo(&window, place);
    const QWidget* hit = window.childAt(on_window);
    if (hit == nullptr) return "the widget lies outside its window";
    if (hit != &widget && !widget.isAncestorOf(hit)) {
      return "the widget is covered by " + hit->objectName().toStdString();
    }
  }
  return {};
}

bool ActOnWidget(FormWindow& window, ControlMirror& mirror, const OperatorAction& action,
                 std::string& why) {
  if (mirror.Entry() != nullptr) return Choose(*mirror.Entry(), why);
  QWidget& widget = *mirror.Widget();
  why = WhyMissed(window, widget);
  if (why.empty() && !widget.isEnabled()) why = "the widget is disabled";
  // A finger that is down comes up wherever the button has gone meanwhile.
  if (action.kind == ActionKind::Release) why.clear();
  if (!why.empty()) return false;
  if (!Do(widget, action)) why = "the widget takes no such action";
  return why.empty();
}

}  // namespace penlog
