#include "platform/qt/shape_view.h"

#include <QPainter>
#include <algorithm>

#include "platform/qt/look.h"

namespace penlog {

namespace {

/// The largest circle inside, with room for its border.
QRectF Circle(const QWidget& widget) {
  const double side = std::min(widget.width(), widget.height()) - 2.0;
  const QPointF centre(widget.width() / 2.0, widget.height() / 2.0);
  return {centre.x() - side / 2, centre.y() - side / 2, side, side};
}

}  // namespace

void ShapeView::SetFill(FillStyle fill, Colour colour) {
  if (fill == fill_ && colour == colour_) return;
  fill_ = fill;
  colour_ = colour;
  update();
}

QSize ShapeView::sizeHint() const {
  const int line = fontMetrics().height();
  const int side = figure_ == "level" ? line * 3 : line * 3 / 2;
  return {side, side};
}

QColor ShapeView::FillColour() const {
  // Black is what a shape has that nobody gave a colour: a lamp then shines in its own.
  return colour_ == kBlack ? Look().lit : Shown(colour_);
}

void ShapeView::PaintLamp(QPainter& painter) const {
  const QRectF circle = Circle(*this);
  const double border = std::max(1.5, circle.width() / 10);
  painter.setPen(QPen(IsSolid() ? FillColour() : Look().caption, border));
  painter.setBrush(IsSolid() ? FillColour() : Look().readout_ground);
  painter.drawEllipse(circle.adjusted(border, border, -border, -border));
}

/// Not to be taken for a lamp that is on: a small square beside the word it explains.
void ShapeView::PaintKey(QPainter& painter) const {
  const double side = std::min(width(), height()) * 0.5;
  painter.setPen(Qt::NoPen);
  painter.setBrush(FillColour());
  painter.drawRect(QRectF((width() - side) / 2, (height() - side) / 2, side, side));
}

void ShapeView::PaintLevel(QPainter& painter) const {
  const QRectF ring = rect().adjusted(1, 1, -1, -1);
  painter.setPen(QPen(Look().caption, 1.5));
  painter.setBrush(Look().readout_ground);
  painter.drawEllipse(ring);
  painter.setPen(QPen(Look().line, 1));
  painter.drawLine(QPointF(ring.center().x(), ring.top()),
                   QPointF(ring.center().x(), ring.bottom()));
  painter.drawLine(QPointF(ring.left(), ring.center().y()),
                   QPointF(ring.right(), ring.center().y()));
}

void ShapeView::PaintBubble(QPainter& painter) const {
  painter.setPen(Qt::NoPen);
  painter.setBrush(Look().good);
  painter.drawEllipse(rect());
}

void ShapeView::PaintGround(QPainter& painter) const {
  painter.setPen(QPen(Look().line, 1));
  painter.setBrush(Look().readout_ground);
  painter.drawRoundedRect(rect().adjusted(0, 0, -1, -1), 6, 6);
}

void ShapeView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (figure_ == "level") {
    PaintLevel(painter);
  } else if (figure_ == "key") {
    PaintKey(painter);
  } else if (figure_ == "bubble") {
    PaintBubble(painter);
  } else if (figure_ == "ground") {
    PaintGround(painter);
  } else if (figure_ == "bar") {
    painter.fillRect(rect(), FillColour());
  } else {
    PaintLamp(painter);
  }
}

}  // namespace penlog
