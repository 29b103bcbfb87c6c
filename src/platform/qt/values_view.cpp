#include "platform/qt/values_view.h"

#include <QChildEvent>
#include <algorithm>

namespace penlog {

namespace {

constexpr int kMostColumns = 3;
constexpr double kShareOfName = 0.5;
constexpr int kMostLines = 5;  // that a row may be high: to be read from afar

}  // namespace

std::vector<std::pair<QWidget*, QWidget*>> ValuesView::ShownRows() const {
  std::vector<QWidget*> widgets;
  for (QObject* child : children()) {
    if (auto* widget = qobject_cast<QWidget*>(child)) widgets.push_back(widget);
  }
  std::vector<std::pair<QWidget*, QWidget*>> rows;
  for (std::size_t i = 0; i + 1 < widgets.size(); i += 2) {
    if (!widgets[i + 1]->isHidden()) rows.emplace_back(widgets[i], widgets[i + 1]);
  }
  return rows;
}

void ValuesView::Arrange() {
  const auto shown = ShownRows();
  const int count = static_cast<int>(shown.size());
  if (count == 0) return;
  const int line = fontMetrics().height();
  const int gap = std::max(2, line / 8);
  int columns = 1;
  const auto rows_of = [&] { return (count + columns - 1) / columns; };
  while (columns < kMostColumns && height() < rows_of() * line) ++columns;
  const int high = std::min(height() / rows_of(), kMostLines * line);
  const int wide = width() / columns;
  const int name = static_cast<int>(wide * kShareOfName);
  for (int i = 0; i < count; ++i) {
    const int left = i / rows_of() * wide;
    const int top = i % rows_of() * high;
    const auto& [label, value] = shown[static_cast<std::size_t>(i)];
    label->setGeometry(left, top, name - gap, std::max(1, high - gap));
    value->setGeometry(left + name, top, wide - name - (columns > 1 ? gap : 0),
                       std::max(1, high - gap));
  }
}

void ValuesView::resizeEvent(QResizeEvent*) {
  Arrange();
}

void ValuesView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) Arrange();
}

void ValuesView::childEvent(QChildEvent* event) {
  if (event->added()) event->child()->installEventFilter(this);
}

bool ValuesView::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::ShowToParent || event->type() == QEvent::HideToParent) Arrange();
  return false;
}

}  // namespace penlog
