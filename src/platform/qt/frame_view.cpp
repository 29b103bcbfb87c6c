#include "platform/qt/frame_view.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "platform/qt/look.h"

namespace penlog {

namespace {

/// Smaller where the text is longer than its room, as a translation's may be: never cut.
QFont Fitted(QFont font, const QString& text, int room) {
  const int needed = QFontMetrics(font).horizontalAdvance(text);
  if (needed > room && needed > 0) {
    const int size = QFontInfo(font).pixelSize() * room / needed;
    font.setPixelSize(std::max(size, kLeastTextPixels));
  }
  return font;
}

}  // namespace

void FrameView::SetCaption(const QString& caption) {
  if (caption == caption_) return;
  caption_ = caption;
  SetMargins();
  update();
}

void FrameView::SetTone(Colour tone) {
  tone_ = tone;
  update();
}

/// A caption that is too long is drawn smaller, never cut.
QFont FrameView::HeadFont() const {
  QFont bold = font();
  bold.setBold(true);
  const int wide = QFontMetrics(bold).horizontalAdvance(caption_);
  const double share = static_cast<double>(HeadRect().width()) / std::max(1, wide);
  if (share < 1 && bold.pixelSize() > 0) {
    bold.setPixelSize(std::max(kLeastTextPixels, static_cast<int>(bold.pixelSize() * share)));
  }
  return bold;
}

int FrameView::HeadHeight() const {
  return caption_.isEmpty() ? 0 : QFontMetrics(font()).height() * 3 / 2;
}

QRect FrameView::HeadRect() const {
  const int gap = QFontMetrics(font()).height() / 2;
  return QRect(0, 0, width(), HeadHeight()).adjusted(gap, 0, -gap, 0);
}

void FrameView::SetMargins() {
  const int gap = plain_ ? 0 : 2;
  setContentsMargins(gap, HeadHeight() + gap, gap, gap);
}

bool FrameView::event(QEvent* event) {
  if (event->type() == QEvent::Polish) SetMargins();
  return QWidget::event(event);
}

void FrameView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) SetMargins();
}

void FrameView::paintEvent(QPaintEvent*) {
  if (plain_) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool toned = tone_ != kGrey;
  const QColor border = toned ? GroundColour(tone_) : Look().line;
  QPainterPath outline;
  outline.addRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kLookRadius, kLookRadius);
  painter.fillPath(outline, tone_ == kRed ? border : Look().panel);
  if (!caption_.isEmpty()) PaintHead(painter, outline, toned ? border : Look().raised);
  painter.setPen(QPen(border, toned ? 2 : 1));
  painter.drawPath(outline);
}

void FrameView::PaintHead(QPainter& painter, const QPainterPath& outline,
                          const QColor& ground) const {
  painter.save();
  painter.setClipPath(outline);
  painter.fillRect(QRect(0, 0, width(), HeadHeight()), ground);
  painter.restore();
  painter.setPen(tone_ == kGrey ? Look().text : TextOn(tone_, kBlack));
  painter.setFont(Fitted(HeadFont(), caption_, HeadRect().width()));
  painter.drawText(HeadRect(), Qt::AlignLeft | Qt::AlignVCenter, caption_);
}

}  // namespace penlog
