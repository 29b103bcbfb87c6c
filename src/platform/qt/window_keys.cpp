#include "platform/qt/window_keys.h"

namespace penlog {

namespace {

bool CanPress(const QPushButton& button) {
  return button.isVisible() && button.isEnabled();
}

bool IsGuarded(const QPushButton& button) {
  return button.property("guarded").toBool();
}

/// The first such button in sight.
QPushButton* FirstWith(const QWidget& window, bool (*fits)(const QPushButton&)) {
  for (QPushButton* button : window.findChildren<QPushButton*>()) {
    if (CanPress(*button) && fits(*button)) return button;
  }
  return nullptr;
}

}  // namespace

QPushButton* ButtonForEnter(const QWidget& window) {
  if (auto* focused = qobject_cast<QPushButton*>(window.focusWidget())) {
    return CanPress(*focused) && !IsGuarded(*focused) ? focused : nullptr;
  }
  return FirstWith(window, [](const QPushButton& button) {
    return !IsGuarded(button) && button.property("role").toString() == "main";
  });
}

QPushButton* ButtonForEscape(const QWidget& window) {
  return FirstWith(window,
                   [](const QPushButton& button) { return button.property("escape").toBool(); });
}

bool PressedByKey(const QWidget& window, int key) {
  QPushButton* button = nullptr;
  if (key == Qt::Key_Return || key == Qt::Key_Enter) button = ButtonForEnter(window);
  if (key == Qt::Key_Escape) button = ButtonForEscape(window);
  if (button != nullptr) button->click();
  return button != nullptr;
}

}  // namespace penlog
