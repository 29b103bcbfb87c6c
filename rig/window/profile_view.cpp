#include "rig/window/profile_view.h"

#include <QPainter>
#include <QPolygonF>
#include <algorithm>
#include <cmath>

#include "platform/numbers.h"
#include "platform/qt/look.h"

namespace penlog {

namespace {

constexpr char kLegendHead[] = "MPa at the edge";
constexpr double kCurveWay = 0.025;  // m between the points of a curve

QColor SoilColour(const std::string& word) {
  const bool dark = Look().ground.lightness() < 128;
  if (word == "sand") return dark ? QColor(0x4a, 0x42, 0x20) : QColor(0xf2, 0xe2, 0xa8);
  if (word == "silt") return dark ? QColor(0x33, 0x3c, 0x38) : QColor(0xd5, 0xdf, 0xd2);
  if (word == "clay") return dark ? QColor(0x42, 0x30, 0x2a) : QColor(0xe6, 0xcc, 0xbc);
  if (word == "peat") return dark ? QColor(0x2c, 0x26, 0x20) : QColor(0xcf, 0xc0, 0xae);
  return Look().readout_ground;
}

QString Text(const std::string& text) {
  return QString::fromStdString(text);
}

}  // namespace

ProfileView::ProfileView(QWidget* parent) : QWidget(parent), top_(ProfileTop(0.0)) {
  setMinimumSize(1, 1);
  setAccessibleName("ground profile with the cone");
}

int ProfileView::Row(double depth) const {
  return static_cast<int>(std::lround(ProfileRow(depth, top_, height())));
}

int ProfileView::Hole() const {
  return std::max(28, width() / 6);
}

void ProfileView::Lay(const Ground& ground) {
  ground_ = ground;
  stale_ = true;
  update();
}

void ProfileView::SetDepth(double depth, double rod_length) {
  const double top = ProfileTop(depth);
  const bool page_turned = top != top_;
  const bool moved = page_turned || Row(depth) != Row(depth_) || rod_length != rod_length_;
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
    const int row = Row(band.top);
    painter.fillRect(0, row, width(), Row(band.bottom) - row, SoilColour(band.word));
  }
}

/// On a ground of their own, so that no curve runs through them.
void ProfileView::DrawSoils(QPainter& painter) const {
  const int height = painter.fontMetrics().height();
  painter.setPen(Look().readout_text);
  for (const SoilBand& band : SoilBands(ground_, top_, top_ + kProfileSpan)) {
    const int row = Row(band.top);
    if (band.word.empty() || Row(band.bottom) - row < height + 2) continue;
    const int across = painter.fontMetrics().horizontalAdvance(Text(band.word));
    const QRect place(width() - across - 5, row + 2, across, height);
    painter.fillRect(place.adjusted(-2, 0, 2, 0), SoilColour(band.word));
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
      curve << QPointF(left + 1 + share * room, ProfileRow(depth, top_, height()));
    }
    painter.setPen(QPen(colour, 1));
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
  painter.setPen(Look().caption);
  painter.drawLine(left, 0, left, height());
  for (int metre = static_cast<int>(std::ceil(top_)); metre < top_ + kProfileSpan; ++metre) {
    const int row = Row(metre);
    painter.drawLine(metre == 0 ? 0 : left, row, metre == 0 ? width() : left + 6, row);
    // Above the surface's own line, which a cone at rest would strike through.
    const int above = metre == 0 ? text_height : text_height / 2;
    const QRect place(left + 9, row - above, width(), text_height);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter,
                     metre == 0 ? QString("0 m") : QString::number(metre));
  }
}

void ProfileView::DrawLegend(QPainter& painter) const {
  struct Entry {
    QColor colour;
    std::string text;
  };
  const std::vector<Entry> entries = {
      {Look().lit, "tip " + PlainNumber(static_cast<float>(scales_.qc))},
      {Look().good, "sleeve " + PlainNumber(static_cast<float>(scales_.fs))},
      {Look().blue_mark, "u2 " + PlainNumber(static_cast<float>(scales_.u2))}};
  const int line = painter.fontMetrics().height();
  int row = height() - 4 - line * static_cast<int>(entries.size() + 1);
  int across = painter.fontMetrics().horizontalAdvance(kLegendHead) - 20;
  for (const Entry& entry : entries) {
    across = std::max(across, painter.fontMetrics().horizontalAdvance(Text(entry.text)));
  }
  const QRect box(width() - across - 34, row - 2, across + 32,
                  line * static_cast<int>(entries.size() + 1) + 4);
  painter.fillRect(box, Look().readout_ground);
  painter.setPen(Look().caption);
  painter.drawRect(box);
  painter.drawText(box.left() + 6, row + painter.fontMetrics().ascent(), kLegendHead);
  for (const Entry& entry : entries) {
    row += line;
    painter.fillRect(box.left() + 6, row + line / 2 - 1, 16, 3, entry.colour);
    painter.setPen(Look().readout_text);
    painter.drawText(box.left() + 28, row + painter.fontMetrics().ascent(), Text(entry.text));
  }
}

void ProfileView::DrawRods(QPainter& painter) const {
  painter.setRenderHint(QPainter::Antialiasing);
  const double middle = Hole() / 2.0;
  const double half = std::max(3.0, Hole() / 9.0);
  const double tip = ProfileRow(depth_, top_, height());
  const double shoulder = tip - 2.0 * half;
  painter.setPen(Qt::NoPen);
  painter.setBrush(Look().caption);
  painter.drawRect(QRectF(middle - half, 0, 2 * half, std::max(0.0, shoulder)));
  painter.setBrush(Look().readout_text);
  painter.drawPolygon(QPolygonF(
      {QPointF(middle - half, shoulder), QPointF(middle + half, shoulder), QPointF(middle, tip)}));
  painter.setPen(QPen(Look().readout_ground, 2));
  for (double joint = depth_ - rod_length_; joint > top_; joint -= rod_length_) {
    const double row = ProfileRow(joint, top_, height());
    painter.drawLine(QPointF(middle - half, row), QPointF(middle + half, row));
  }
  painter.setPen(QPen(Look().readout_text, 1, Qt::DashLine));
  painter.drawLine(QPointF(middle + half, tip), QPointF(width(), tip));
}

}  // namespace penlog
