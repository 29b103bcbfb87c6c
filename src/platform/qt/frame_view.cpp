#include "platform/qt/frame_view.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>

#include "platform/qt/look.h"

namespace penlog {

namespace {

constexpr double kRadius = 6;

}  // namespace

void FrameView::SetCaption(const QString& caption) {
  if (caption == caption_) return;
  caption_ = caption;
  SetMargins();
  update();
}

void FrameView::SetTone(const QColor& tone) {
  tone_ = tone;
  update();
}

QFont FrameView::HeadFont() const {
  QFont bold = font();
  bold.setBold(true);
  return bold;
}

int FrameView::HeadHeight() const {
  return caption_.isEmpty() ? 0 : QFontMetrics(HeadFont()).height() * 3 / 2;
}

QRect FrameView::HeadRect() const {
  const int gap = QFontMetrics(HeadFont()).height() / 2;
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
  const QColor border = tone_.isValid() ? tone_ : Look().line;
  const QRectF ground = QRectF(rect()).adjusted(1, 1, -1, -1);
  QPainterPath outline;
  outline.addRoundedRect(ground, kRadius, kRadius);
  painter.fillPath(outline, Look().panel);
  if (!caption_.isEmpty()) {
    painter.save();
    painter.setClipPath(outline);
    painter.fillRect(QRect(0, 0, width(), HeadHeight()), border);
    painter.restore();
    painter.setPen(tone_.isValid() ? Look().ground : Look().text);
    painter.setFont(HeadFont());
    painter.drawText(HeadRect(), Qt::AlignLeft | Qt::AlignVCenter, caption_);
  }
  painter.setPen(QPen(border, tone_.isValid() ? 2 : 1));
  painter.drawPath(outline);
}

}  // namespace penlog
