#include "platform/qt/widget_inputs.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>

#include "platform/qt/folder_view.h"
#include "platform/qt/picture_view.h"

namespace penlog {

namespace {

int buttons_held = 0;

/// Enter or the blank chooses the marked entry of an open list; the arrows only move the mark.
class EntryKeys : public QObject {
 public:
  EntryKeys(ControlMirror& mirror, QListWidget& list)
      : QObject(&mirror), mirror_(mirror), list_(list) {
    list.installEventFilter(this);
  }
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::KeyPress) return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool chooses =
        key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter || key->key() == Qt::Key_Space;
    if (!chooses || key->isAutoRepeat()) return false;
    mirror_.Post(ActionKind::Select, list_.currentRow());
    return true;
  }

 private:
  ControlMirror& mirror_;
  QListWidget& list_;
};

void JoinButton(ControlMirror& mirror, QAbstractButton& button) {
  new HoldWatcher(mirror);
  QObject::connect(&button, &QAbstractButton::clicked, &mirror, [&mirror, &button] {
    const Control& control = mirror.Mirrored();
    if (button.isCheckable()) {
      mirror.Post(ActionKind::Check, button.isChecked() ? 1 : 0);
    } else if (control.Click || !(control.Press || control.Release)) {
      mirror.Post(ActionKind::Click);
    }
  });
}

void PostText(ControlMirror& mirror, const QString& text) {
  OperatorAction action;
  action.kind = ActionKind::Type;
  action.text = text.toStdString();
  mirror.Post(std::move(action));
}

void JoinField(ControlMirror& mirror, QLineEdit& field) {
  QObject::connect(&field, &QLineEdit::textEdited, &mirror,
                   [&mirror](const QString& text) { PostText(mirror, text); });
}

void JoinList(ControlMirror& mirror, QListWidget& list) {
  new EntryKeys(mirror, list);
  QObject::connect(&list, &QListWidget::itemClicked, &mirror,
                   [&mirror, &list] { mirror.Post(ActionKind::Select, list.currentRow()); });
}

/// A path counts when it is complete, not letter by letter.
void JoinFolders(ControlMirror& mirror, FolderView& folders) {
  QLineEdit& path = folders.Path();
  QObject::connect(&path, &QLineEdit::returnPressed, &mirror,
                   [&mirror, &path] { PostText(mirror, path.text()); });
  JoinList(mirror, folders.Folders());
}

void JoinPicture(ControlMirror& mirror, PictureView& picture) {
  picture.on_point = [&mirror](double x, double y, bool clicked) {
    if (clicked && mirror.Mirrored().Click) mirror.Post(ActionKind::Click);
    if (!mirror.Mirrored().Point) return;
    OperatorAction action;
    action.kind = ActionKind::Point;
    action.x = x;
    action.y = y;
    action.number = clicked ? 1 : 0;
    mirror.Post(std::move(action));
  };
}

}  // namespace

void JoinInputs(ControlMirror& mirror) {
  if (mirror.Entry() != nullptr) {
    QObject::connect(mirror.Entry(), &QAction::triggered, &mirror, [&mirror] {
      QAction& entry = *mirror.Entry();
      if (entry.isCheckable()) entry.setChecked(mirror.Mirrored().Checked);
      mirror.Post(ActionKind::Click);
    });
    return;
  }
  QWidget* widget = mirror.Widget();
  if (auto* button = qobject_cast<QAbstractButton*>(widget)) JoinButton(mirror, *button);
  if (auto* field = qobject_cast<QLineEdit*>(widget)) JoinField(mirror, *field);
  if (auto* picture = qobject_cast<PictureView*>(widget)) JoinPicture(mirror, *picture);
  if (auto* box = qobject_cast<QComboBox*>(widget)) {
    QObject::connect(box, &QComboBox::activated, &mirror,
                     [&mirror](int entry) { mirror.Post(ActionKind::Select, entry); });
  }
  if (auto* list = qobject_cast<QListWidget*>(widget)) JoinList(mirror, *list);
  if (auto* folders = qobject_cast<FolderView*>(widget)) JoinFolders(mirror, *folders);
}

// A window that is destroyed closes behind its mirrors: the watcher goes with the mirror.
HoldWatcher::HoldWatcher(ControlMirror& mirror) : QObject(&mirror), mirror_(mirror) {
  mirror.Widget()->installEventFilter(this);
}

HoldWatcher::~HoldWatcher() {
  SetDown(false);
}

void HoldWatcher::SetDown(bool down) {
  if (down != down_) buttons_held += down ? 1 : -1;
  down_ = down;
}

bool AnyButtonHeld() {
  return buttons_held > 0;
}

bool HoldWatcher::Presses(const QEvent& event) const {
  if (event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonDblClick) {
    return static_cast<const QMouseEvent&>(event).button() == Qt::LeftButton;
  }
  if (event.type() != QEvent::KeyPress) return false;
  const auto& key = static_cast<const QKeyEvent&>(event);
  return key.key() == Qt::Key_Space && !key.isAutoRepeat();
}

bool HoldWatcher::Releases(const QEvent& event) const {
  switch (event.type()) {
    case QEvent::MouseButtonRelease:
      return static_cast<const QMouseEvent&>(event).button() == Qt::LeftButton;
    case QEvent::KeyRelease: {
      const auto& key = static_cast<const QKeyEvent&>(event);
      return key.key() == Qt::Key_Space && !key.isAutoRepeat();
    }
    case QEvent::MouseMove: {
      const auto& move = static_cast<const QMouseEvent&>(event);
      return !mirror_.Widget()->rect().contains(move.position().toPoint());
    }
    case QEvent::EnabledChange:
      return !mirror_.Widget()->isEnabled();
    case QEvent::Leave:
    case QEvent::FocusOut:
    case QEvent::Hide:
    case QEvent::WindowDeactivate:
      return true;
    default:
      return false;
  }
}

void HoldWatcher::Press() {
  const Control& control = mirror_.Mirrored();
  if (down_ || !(control.Press || control.Release)) return;
  SetDown(true);
  mirror_.Post(ActionKind::Press);
}

void HoldWatcher::Release() {
  if (!down_) return;
  SetDown(false);
  mirror_.Post(ActionKind::Release);
}

/// A letter can't be held down: it brings the focus, and the blank key then holds.
bool HoldWatcher::TakesFocusOnly(const QEvent& event) {
  const Control& control = mirror_.Mirrored();
  if (event.type() != QEvent::Shortcut || !(control.Press || control.Release)) return false;
  mirror_.Widget()->setFocus(Qt::ShortcutFocusReason);
  return true;
}

bool HoldWatcher::eventFilter(QObject*, QEvent* event) {
  if (TakesFocusOnly(*event)) return true;
  if (Presses(*event)) {
    if (mirror_.Widget()->isEnabled()) Press();
  } else if (Releases(*event)) {
    Release();
  }
  return false;
}

}  // namespace penlog
