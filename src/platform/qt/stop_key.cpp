#include "platform/qt/stop_key.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPushButton>

#include "platform/qt/form_window.h"

namespace penlog {

namespace {

QPushButton* StopButton() {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    auto* form_window = qobject_cast<FormWindow*>(window);
    if (form_window == nullptr) continue;
    QPushButton* stop = form_window->StopButton();
    if (stop != nullptr && stop->isVisible() && stop->isEnabled()) return stop;
  }
  return nullptr;
}

}  // namespace

StopKey::StopKey() {
  qApp->installEventFilter(this);
}

bool StopKey::eventFilter(QObject*, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return false;
  const auto* key = static_cast<QKeyEvent*>(event);
  if (key->key() != kStopKey || key->modifiers() != Qt::NoModifier) return false;
  QPushButton* stop = key->isAutoRepeat() ? nullptr : StopButton();
  if (stop != nullptr) stop->click();
  return true;
}

}  // namespace penlog
