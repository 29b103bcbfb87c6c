#include "platform/qt/window_shape.h"

#include <QBoxLayout>
#include <QVariant>

namespace penlog {

namespace {

/// "63,37" to the parts of a row or column.
void Share(QBoxLayout& layout, const QString& stretches) {
  const QStringList parts = stretches.split(',');
  for (int i = 0; i < parts.size() && i < layout.count(); ++i) {
    layout.setStretch(i, parts[i].toInt());
  }
}

}  // namespace

void KeepPlaces(QWidget& window) {
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    QSizePolicy policy = widget->sizePolicy();
    if (widget->property("keepsPlace").toBool()) policy.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(policy);
  }
}

void TurnAreas(QWidget& window) {
  const bool narrow = window.width() < kNarrowBelow * window.height();
  for (const QWidget* area : window.findChildren<QWidget*>()) {
    const QString turned = area->property("narrow").toString();
    auto* layout = qobject_cast<QBoxLayout*>(area->layout());
    if (turned.isEmpty() || layout == nullptr) continue;
    const bool down = (turned == "down") == narrow;
    layout->setDirection(down ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    Share(*layout, area->property(narrow ? "narrowStretch" : "wideStretch").toString());
  }
}

}  // namespace penlog
