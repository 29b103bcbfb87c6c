#include "rig/window/profile_view.h"

#include <QPainter>
#include <QPolygonF>
#include <algorithm>
#include <cmath>

#include "platform/numbers.h"
#include "platform/qt/look.h"
#include "rig/window/rig_look.h"

namespace penlog {

namespace {

constexpr char kLegendHead[] = "MPa at the edge";
constexpr int kLegendLines = 2;
constexpr int kLineOfText = 13;      // pixels that a line of text is high at scale 1
constexpr double kCurveWay = 0.025;  // m between the points of a curve

QString Text(const std::string& text) {
  return QString::fromStdString(text);
}

}  // namespace

ProfileView::ProfileView(QWidget* parent) : QWidget(parent), top_(ProfileTop(0.0)) {
  setMinimumSize(1, 1);
  setAccessibleName("ground profile with the cone");
}

QRect ProfileView::Picture() const {
  return {0, 0, width(), std::max(1, height() - kLegendLines * fontMetrics().height() - Unit())};
}

double ProfileView::Row(double depth) const {
  return ProfileRow(depth, top_, Picture().height());
}

int ProfileView::WholeRow(double depth) const {
  return static_cast<int>(std::lround(Row(depth)));
}

int ProfileView::Unit() const {
  return std::max(1, fontMetrics().height() / kLineOfText);
}

int ProfileView::Hole() const {
  return std::max(28 * Unit(), width() / 6);
}

void ProfileView::DrawAnew() {
  stale_ = true;
  update();
}

void ProfileView::Lay(const Ground& ground) {
  ground_ = ground;
  DrawAnew();
}

void ProfileView::SetDepth(double depth, double rod_length) {
  const double top = ProfileTop(depth);
  const bool page_turned = top != top_;
  const bool moved =
      page_turned || WholeRow(depth) != WholeRow(depth_) || rod_length != rod_length_;
  depth_ = depth;
  rod_length_ = rod_length;
  if (page_turned) {
    top_ = top;
    stale_ = true;
  }
  if (moved) update();
}

void ProfileView::paintEvent(QPaintEvent*) {
  const QSize pixels = size() * devicePixelRatioF();
  if (stale_ || page_.size() != pixels) DrawPage();
  QPainter painter(this);
  painter.drawPixmap(0, 0, page_);
  DrawRods(painter);
}

void ProfileView::DrawPage() {
  page_ = QPixmap(size() * devicePixelRatioF());
  page_.setDevicePixelRatio(devicePixelRatioF());
  page_.fill(Look().readout_ground);
  stale_ = false;
  scales_ = ScalesOf(ground_, top_, top_ + kProfileSpan);
  QPainter painter(&page_);
  painter.setFont(font());
  DrawBands(painter);
  painter.setRenderHint(QPainter::Antialiasing);
  DrawCurves(painter);
  painter.setRenderHint(QPainter::Antialiasing, false);
  DrawDepths(painter);
  DrawSoils(painter);
  DrawLegend(painter);
}

void ProfileView::DrawBands(QPainter& painter) const {
  for (const SoilBand& band : SoilBands(ground_, top_, top_ + kProfileSpan)) {
    const int row = WholeRow(band.top);
    painter.fillRect(0, row, width(), WholeRow(band.bottom) - row, SoilColour(band.word));
  }
}

/// On a ground of their own, so that no curve runs through them.
void ProfileView::DrawSoils(QPainter& painter) const {
  const int height = painter.fontMetrics().height();
  const int gap = 2 * Unit();
  painter.setPen(Look().readout_text);
  for (const SoilBand& band : SoilBands(ground_, top_, top_ + kProfileSpan)) {
    const int row = WholeRow(band.top);
    if (band.word.empty() || WholeRow(band.bottom) - row < height + gap) continue;
    const int across = painter.fontMetrics().horizontalAdvance(Text(band.word));
    const QRect place(width() - across - 2 * gap, row + gap, across, height);
    painter.fillRect(place.adjusted(-gap, 0, gap, 0), SoilColour(band.word));
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, Text(band.word));
  }
}

void ProfileView::DrawCurves(QPainter& painter) const {
  const double left = Hole();
  const double room = width() - left - 2;
  const auto draw = [&](const QColor& colour, auto value, double full) {
    QPolygonF curve;
    const double first = std::max(top_, ground_.Top());
    for (double depth = first; depth <= top_ + kProfileSpan; depth += kCurveWay) {
      const double share = std::clamp(value(ground_.At(depth)) / 1000.0 / full, 0.0, 1.0);
      curve << QPointF(left + 1 + share * room, Row(depth));
    }
    painter.setPen(QPen(colour, 1.5 * Unit()));
    painter.drawPolyline(curve);
  };
  draw(
      Look().blue_mark, [](const GroundValues& at) { return at.u2; }, scales_.u2);
  draw(
      Look().good, [](const GroundValues& at) { return at.fs; }, scales_.fs);
  draw(
      Look().lit, [](const GroundValues& at) { return at.qc; }, scales_.qc);
}

void ProfileView::DrawDepths(QPainter& painter) const {
  const int left = Hole();
  const int text_height = painter.fontMetrics().height();
  painter.setPen(QPen(Look().caption, Unit()));
  painter.drawLine(left, 0, left, Picture().bottom());
  for (int metre = static_cast<int>(std::ceil(top_)); metre < top_ + kProfileSpan; ++metre) {
    const int row = WholeRow(metre);
    painter.drawLine(metre == 0 ? 0 : left, row, metre == 0 ? width() : left + 6 * Unit(), row);
    // Above the surface's own line, which a cone at rest would strike through.
    const int above = metre == 0 ? text_height : text_height / 2;
    const QRect place(left + 9 * Unit(), row - above, width(), text_height);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter,
                     metre == 0 ? QString("0 m") : QString::number(metre));
  }
}

/// Entry behind entry, as many on a line as there is room for.
void ProfileView::DrawLegend(QPainter& painter) const {
  struct Entry {
    QColor colour;
    std::string text;
  };
  const std::vector<Entry> entries = {
      {Look().lit, "tip " + PlainNumber(static_cast<float>(scales_.qc))},
      {Look().good, "sleeve " + PlainNumber(static_cast<float>(scales_.fs))},
      {Look().blue_mark, "u2 " + PlainNumber(static_cast<float>(scales_.u2))}};
  const QFontMetrics metrics = painter.fontMetrics();
  const QRect ground(0, Picture().bottom() + 1, width(), height() - Picture().height());
  const int gap = 4 * Unit();
  const int mark = 10 * Unit();
  int line = ground.top() + Unit();
  int left = gap;
  painter.fillRect(ground, Look().readout_ground);
  painter.setPen(Look().caption);
  painter.drawText(left, line + metrics.ascent(), kLegendHead);
  left += metrics.horizontalAdvance(kLegendHead) + 2 * gap;
  for (const Entry& entry : entries) {
    const int across = mark + gap + metrics.horizontalAdvance(Text(entry.text));
    if (left + across > width() && left > gap) {
      line += metrics.height();
      left = gap;
    }
    painter.fillRect(left, line + metrics.height() / 2 - Unit(), mark, 3 * Unit(), entry.colour);
    painter.setPen(Look().readout_text);
    painter.drawText(left + mark + gap, line + metrics.ascent(), Text(entry.text));
    left += across + 2 * gap;
  }
}

void ProfileView::DrawRods(QPainter& painter) const {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setClipRect(Picture());
  const double middle = Hole() / 2.0;
  const double half = std::max(3.0 * Unit(), Hole() / 9.0);
  const double tip = Row(depth_);
  const double shoulder = tip - 2.0 * half;
  painter.setPen(Qt::NoPen);
  painter.setBrush(Look().caption);
  painter.drawRect(QRectF(middle - half, 0, 2 * half, std::max(0.0, shoulder)));
  painter.setBrush(Look().readout_text);
  painter.drawPolygon(QPolygonF(
      {QPointF(middle - half, shoulder), QPointF(middle + half, shoulder), QPointF(middle, tip)}));
  painter.setPen(QPen(Look().readout_ground, 2 * Unit()));
  for (double joint = depth_ - rod_length_; joint > top_; joint -= rod_length_) {
    const double row = Row(joint);
    painter.drawLine(QPointF(middle - half, row), QPointF(middle + half, row));
  }
  painter.setPen(QPen(Look().readout_text, Unit(), Qt::DashLine));
  painter.drawLine(QPointF(middle + half, tip), QPointF(width(), tip));
}

}  // namespace penlog
