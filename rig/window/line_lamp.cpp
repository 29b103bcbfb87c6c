#include "rig/window/line_lamp.h"

#include <QPainter>

#include "platform/qt/look.h"

namespace penlog {

LineLamp::LineLamp(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QSize LineLamp::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 20, fontMetrics().height() + 2};
}

void LineLamp::Show(const PanelLine& line) {
  if (line == line_) return;
  const QString told = QString::fromStdString(line.name + ": " + line.word);
  if (told != accessibleName()) setAccessibleName(told);
  line_ = line;
  update();
}

void LineLamp::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QColor colour = line_.alarm ? Look().red_mark : Look().lit;
  const int size = fontMetrics().ascent();
  const QRect lamp(2, (height() - size) / 2, size, size);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(line_.on ? colour : Look().caption, 2));
  painter.setBrush(line_.on ? QBrush(colour) : QBrush(Qt::NoBrush));
  painter.drawEllipse(lamp.adjusted(1, 1, -1, -1));
  const int left = size + fontMetrics().averageCharWidth();
  const QRect texts(left, 0, width() - left, height());
  painter.setPen(Look().caption);
  painter.drawText(texts, Qt::AlignLeft | Qt::AlignVCenter, QString::fromStdString(line_.name));
  painter.setPen(line_.alarm ? Look().red_text : Look().text);
  painter.drawText(texts, Qt::AlignRight | Qt::AlignVCenter, QString::fromStdString(line_.word));
}

}  // namespace penlog
