#include "rig/window/line_lamp.h"

#include <QPainter>
#include <algorithm>

#include "platform/qt/look.h"

namespace penlog {

LineLamp::LineLamp(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

int LineLamp::Edge() const {
  return std::max(2, fontMetrics().height() / 6);
}

QSize LineLamp::sizeHint() const {
  return {fontMetrics().averageCharWidth() * 20, fontMetrics().height() + Edge()};
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
  const QRect lamp(Edge(), (height() - size) / 2, size, size);
  const int inset = (Edge() + 1) / 2;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(line_.on ? colour : Look().caption, Edge()));
  painter.setBrush(line_.on ? QBrush(colour) : QBrush(Qt::NoBrush));
  painter.drawEllipse(lamp.adjusted(inset, inset, -inset, -inset));
  const int left = size + fontMetrics().averageCharWidth();
  const QRect texts(left, 0, width() - left, height());
  painter.setPen(Look().caption);
  painter.drawText(texts, Qt::AlignLeft | Qt::AlignVCenter, QString::fromStdString(line_.name));
  painter.setPen(line_.alarm ? Look().red_text : Look().text);
  painter.drawText(texts, Qt::AlignRight | Qt::AlignVCenter, QString::fromStdString(line_.word));
}

}  // namespace penlog
