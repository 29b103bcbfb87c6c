#include "platform/qt/picture_view.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <cmath>

#include "platform/qt/look.h"

namespace penlog {

PictureView::PictureView(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void PictureView::Follow(const Picture& picture) {
  picture_ = &picture;
  const double ratio = devicePixelRatioF();
  canvas_.SetSize((QSizeF(size()) * ratio).toSize(), ratio);
  const PixelRows rows = canvas_.Follow(picture, font());
  if (rows.IsEmpty()) return;
  const int top = static_cast<int>(std::floor(rows.first / ratio));
  const int bottom = static_cast<int>(std::ceil(rows.last / ratio));
  update(0, top, width(), bottom - top);
}

void PictureView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.setClipRect(event->rect());
  if (canvas_.Image().isNull()) {
    painter.fillRect(rect(), Look().readout_ground);
    return;
  }
  painter.drawImage(0, 0, canvas_.Image());
  painter.setPen(Look().line);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void PictureView::resizeEvent(QResizeEvent*) {
  if (picture_ != nullptr) Follow(*picture_);
}

void PictureView::Point(const QPointF& place, bool clicked) const {
  if (!on_point || width() <= 0 || height() <= 0) return;
  on_point(place.x() / width(), place.y() / height(), clicked);
}

void PictureView::mouseMoveEvent(QMouseEvent* event) {
  Point(event->position(), false);
}

void PictureView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) Point(event->position(), true);
}

}  // namespace penlog
