#include "platform/qt/shape_view.h"

#include <QPainter>
#include <algorithm>

#include "platform/qt/look.h"
#include "platform/view.h"

namespace penlog {

namespace {

/// The largest circle at the left, with room for its border.
QRectF Circle(const QWidget& widget) {
  const double side = std::min(widget.width(), widget.height()) - 2.0;
  return {1, (widget.height() - side) / 2, side, side};
}

QString Told(const QString& word) {
  return QString::fromStdString(ShownText(word.toStdString()));
}

}  // namespace

void ShapeView::SetFill(FillStyle fill, Colour colour) {
  if (fill == fill_ && colour == colour_) return;
  fill_ = fill;
  colour_ = colour;
  update();
}

void ShapeView::SetWord(const QString& word) {
  if (word == word_) return;
  word_ = word;
  update();
}

QString ShapeView::Word() const {
  if (!IsLamp()) return {};
  if (!word_.isEmpty()) return word_;
  if (!IsSolid()) return Told(word_off_);
  if (colour_ == kRed && !word_red_.isEmpty()) return Told(word_red_);
  if (colour_ == kGreen && !word_green_.isEmpty()) return Told(word_green_);
  return Told(word_on_);
}

int ShapeView::WidestWord(const QFont& font) const {
  int widest = 0;
  for (const QString& word : {word_on_, word_off_, word_red_, word_green_}) {
    widest = std::max(widest, QFontMetrics(font).horizontalAdvance(Told(word)));
  }
  return std::max(widest, QFontMetrics(font).horizontalAdvance(word_));
}

QRect ShapeView::WordRect() const {
  const int left = static_cast<int>(Circle(*this).right()) + fontMetrics().height() / 4;
  return rect().adjusted(left, 0, 0, 0);
}

QFont ShapeView::WordFont() const {
  QFont bold = font();
  bold.setBold(true);
  const int wide = WidestWord(bold);
  const double share = static_cast<double>(WordRect().width()) / std::max(1, wide);
  if (share < 1 && bold.pixelSize() > 0) {
    bold.setPixelSize(std::max(kLeastTextPixels, static_cast<int>(bold.pixelSize() * share)));
  }
  return bold;
}

QSize ShapeView::sizeHint() const {
  const int line = fontMetrics().height();
  const int side = figure_ == "level" ? line * 3 : line * 3 / 2;
  if (!IsLamp()) return {side, side};
  QFont bold = font();
  bold.setBold(true);
  return {side + line / 2 + WidestWord(bold), side};
}

QColor ShapeView::FillColour() const {
  // Black is what a shape has that nobody gave a colour: a lamp then shines in its own.
  return colour_ == kBlack ? Look().lit : Shown(colour_);
}

/// Off is a ring. Red is a ring with a small dot, no filled area: that is the alarm's.
void ShapeView::PaintLamp(QPainter& painter) const {
  const QRectF circle = Circle(*this);
  const double border = std::max(kFirmLine, circle.width() / 10);
  const bool full = IsSolid() && colour_ != kRed;
  painter.setPen(QPen(IsSolid() ? FillColour() : Look().caption, border));
  painter.setBrush(full ? FillColour() : Look().readout_ground);
  painter.drawEllipse(circle.adjusted(border, border, -border, -border));
  if (IsSolid() && !full) {
    painter.setBrush(FillColour());
    painter.drawEllipse(circle.center(), border, border);
  }
  painter.setFont(WordFont());
  painter.setPen(isEnabled() ? Look().text : Look().faint);
  painter.drawText(WordRect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, Word());
}

/// Not to be taken for a lamp that is on: a small open square beside the word it explains.
void ShapeView::PaintKey(QPainter& painter) const {
  const double side = std::min(width(), height()) * 0.5;
  painter.setPen(QPen(FillColour(), std::max(kFirmLine, side / 5)));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(QRectF((width() - side) / 2, (height() - side) / 2, side, side));
}

void ShapeView::PaintLevel(QPainter& painter) const {
  const QRectF ring = rect().adjusted(1, 1, -1, -1);
  painter.setPen(QPen(Look().caption, kFirmLine));
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
  painter.drawRoundedRect(rect().adjusted(0, 0, -1, -1), kLookRadius, kLookRadius);
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
    colour_ == kBlack ? PaintGround(painter) : painter.fillRect(rect(), FillColour());
  } else {
    PaintLamp(painter);
  }
}

}  // namespace penlog
