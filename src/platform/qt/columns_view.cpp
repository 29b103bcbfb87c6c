#include "platform/qt/columns_view.h"

#include <QChildEvent>
#include <algorithm>

namespace penlog {

std::vector<QWidget*> ColumnsView::ShownWidgets() const {
  std::vector<QWidget*> shown;
  for (QObject* child : children()) {
    auto* widget = qobject_cast<QWidget*>(child);
    if (widget != nullptr && !widget->isHidden()) shown.push_back(widget);
  }
  return shown;
}

void ColumnsView::Arrange() {
  const std::vector<QWidget*> shown = ShownWidgets();
  const int count = static_cast<int>(shown.size());
  const int columns = std::max(1, (count + kRows - 1) / kRows);
  const int width_of_one = width() / columns;
  const int height_of_one = height() / kRows;
  for (int i = 0; i < count; ++i) {
    shown[static_cast<std::size_t>(i)]->setGeometry(
        i / kRows * width_of_one, i % kRows * height_of_one, width_of_one, height_of_one);
  }
}

void ColumnsView::resizeEvent(QResizeEvent*) {
  Arrange();
}

void ColumnsView::childEvent(QChildEvent* event) {
  if (event->added()) event->child()->installEventFilter(this);
}

bool ColumnsView::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent) Arrange();
  return false;
}

}  // namespace penlog
