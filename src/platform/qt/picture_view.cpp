#include "platform/qt/picture_view.h"

#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "platform/qt/look.h"

namespace penlog {

namespace {

void DrawOn(QPainter& painter, const DrawStep& step, const QSizeF& size) {
  const QPointF from(step.x1 * size.width(), step.y1 * size.height());
  const QPointF to(step.x2 * size.width(), step.y2 * size.height());
  const double width = std::max(1.0, size.height() / 400);
  painter.setPen(QPen(Shown(step.colour), width));
  switch (step.kind) {
    case DrawStep::Kind::Line:
      painter.drawLine(from, to);
      break;
    case DrawStep::Kind::Text:
      painter.drawText(from, QString::fromStdString(step.text));
      break;
    case DrawStep::Kind::Dot:
      painter.setBrush(Shown(step.colour));
      painter.drawEllipse(from, 2 * width, 2 * width);
      break;
  }
}

}  // namespace

PictureView::PictureView(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

void PictureView::Clear() {
  store_ = QPixmap(size() * devicePixelRatioF());
  store_.setDevicePixelRatio(devicePixelRatioF());
  store_.fill(Look().readout_ground);
  drawn_ = 0;
  update();
}

void PictureView::Follow(const Picture& picture) {
  if (store_.isNull() || picture.clearings != clearings_ || picture.steps.size() < drawn_) {
    clearings_ = picture.clearings;
    Clear();
  }
  if (store_.isNull() || drawn_ == picture.steps.size()) return;
  QPainter painter(&store_);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setFont(font());
  for (; drawn_ < picture.steps.size(); ++drawn_) DrawOn(painter, picture.steps[drawn_], size());
  update();
}

void PictureView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (store_.isNull()) {
    painter.fillRect(rect(), Look().readout_ground);
  } else {
    painter.drawPixmap(0, 0, store_);
  }
}

void PictureView::resizeEvent(QResizeEvent*) {
  if (store_.deviceIndependentSize().toSize() != size()) Clear();
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
