#include "platform/qt/text_view.h"

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>

#include "platform/qt/look.h"

namespace penlog {

TextView::TextView(QWidget* parent) : QWidget(parent) {
  SetColours(Look().readout_text, Look().readout_ground);
}

void TextView::SetText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  update();
}

void TextView::SetColours(const QColor& text, const QColor& ground) {
  text_colour_ = text;
  ground_colour_ = ground;
  update();
}

void TextView::SetBold(bool bold) {
  bold_ = bold;
  update();
}

void TextView::SetFilled(bool filled) {
  filled_ = filled;
  update();
}

int TextView::Gap() const {
  return plain_ && !filled_ ? 0 : std::max(2, fontMetrics().height() / 4);
}

int TextView::Alignment() const {
  const int side = centred_ ? Qt::AlignHCenter : leading_ ? Qt::AlignLeft : Qt::AlignRight;
  return side | Qt::AlignVCenter | Qt::TextSingleLine;
}

QRect TextView::TextRect() const {
  return rect().adjusted(Gap(), 0, -Gap(), 0);
}

QFont TextView::FittingFont() const {
  QFont fitting = font();
  if (bold_) fitting.setBold(true);
  const QRect room = TextRect();
  int pixels = fitting.pixelSize() > 0 ? fitting.pixelSize() : QFontMetrics(fitting).ascent();
  if (fill_) pixels = std::max(8, room.height());
  const QString longest = fill_ && sample_.size() > text_.size() ? sample_ : text_;
  fitting.setPixelSize(pixels);
  const QFontMetrics metrics(fitting);
  const double wide =
      static_cast<double>(room.width()) / std::max(1, metrics.horizontalAdvance(longest));
  const double high = static_cast<double>(room.height() & ~1) / std::max(1, metrics.height());
  const double share = std::min({wide, high, 1.0});
  fitting.setPixelSize(std::max(kLeastTextPixels, static_cast<int>(pixels * share)));
  return fitting;
}

QSize TextView::sizeHint() const {
  const QFontMetrics metrics(font());
  return {metrics.horizontalAdvance(sample_) + 2 * Gap(), metrics.height() + 4};
}

/// Room for the sample with digits of a twelfth of the window's height.
QSize TextView::TallSize() const {
  constexpr int kProbe = 200;  // pixels; digits grow with the font
  constexpr int kShare = 12;
  QFont probe = font();
  probe.setBold(bold_);
  probe.setPixelSize(kProbe);
  const int digit = QFontMetrics(probe).tightBoundingRect("0").height();
  probe.setPixelSize(window()->height() * kProbe / (kShare * digit) + 2);
  const QFontMetrics metrics(probe);
  return {metrics.horizontalAdvance(sample_) + 2 * Gap(), metrics.height() + 2};
}

QSize TextView::minimumSizeHint() const {
  if (tall_) return TallSize();
  const QSize hint = sizeHint();
  // A text that fills its ground keeps its share; a row of thirty may become small.
  return {fill_ ? hint.width() / 2 : hint.width() * 17 / 20,
          fill_ ? 3 * hint.height() : hint.height() / 2};
}

void TextView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (!plain_ || filled_) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground_colour_);
    const double radius = std::min(kLookRadius, height() / kLookRadius);
    painter.drawRoundedRect(rect(), radius, radius);
  }
  painter.setFont(FittingFont());
  painter.setPen(isEnabled() ? text_colour_ : Look().faint);
  painter.drawText(TextRect(), Alignment(), text_);
}

}  // namespace penlog
