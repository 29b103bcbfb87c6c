#include "platform/qt/report_view.h"

#include <QFontMetrics>
#include <QPainter>
#include <QRegularExpression>
#include <algorithm>

#include "platform/qt/look.h"

namespace penlog {

namespace {

constexpr qsizetype kMostColumns = 5;

/// Where columns begin, as fractions of the page: two columns hold a header, five a channel.
const std::vector<double>& Offsets(qsizetype columns) {
  static const std::vector<double> header = {0, 0.30};
  static const std::vector<double> channel = {0, 0.12, 0.24, 0.38, 0.55};
  return columns <= 2 ? header : channel;
}

}  // namespace

QStringList ReportView::Columns(const QString& line) {
  static const QRegularExpression gap(" {2,}");
  QStringList columns = line.trimmed().split(gap);
  // A number printed in plain form brings a blank of its own: it belongs to what stands before.
  while (columns.size() > kMostColumns) {
    const QString last = columns.takeLast();
    columns.last() += " " + last;
  }
  return columns;
}

void ReportView::SetText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  lines_.clear();
  QString plain = text;
  plain.remove('\r');
  for (const QString& line : plain.split('\n')) lines_.push_back(Columns(line));
  updateGeometry();
  update();
}

bool ReportView::IsHeading(const QString& line) const {
  return line == "Channels Available";
}

std::vector<int> ReportView::LeftEdges(qsizetype count, int width) const {
  const QFontMetrics metrics(font());
  const int gap = metrics.averageCharWidth() * 3;
  std::vector<int> lefts;
  int right = 0;  // of what stands left of the column, in all lines of that many columns
  for (qsizetype column = 0; column < count; ++column) {
    const auto& offsets = Offsets(count);
    const auto known = static_cast<std::size_t>(column) < offsets.size();
    const double offset = known ? offsets[static_cast<std::size_t>(column)] : 0;
    const int left = std::max(static_cast<int>(offset * width), column == 0 ? 0 : right + gap);
    lefts.push_back(left);
    for (const QStringList& line : lines_) {
      if (line.size() != count) continue;
      right = std::max(right, left + metrics.horizontalAdvance(line[column]));
    }
  }
  return lefts;
}

QSize ReportView::sizeHint() const {
  const QFontMetrics metrics(font());
  int width = 0;
  for (const QStringList& line : lines_) {
    const int left = LeftEdges(line.size(), 0).back();
    width = std::max(width, left + metrics.horizontalAdvance(line.back()));
  }
  const int height = static_cast<int>(lines_.size()) * metrics.lineSpacing() * 5 / 4;
  return {width + metrics.lineSpacing() * 2, height + metrics.lineSpacing()};
}

void ReportView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QFontMetrics metrics(font());
  const int margin = metrics.lineSpacing() / 2;
  int y = margin + metrics.ascent();
  for (const QStringList& line : lines_) {
    QFont drawn = font();
    drawn.setBold(line.size() == 1 && IsHeading(line[0]));
    painter.setFont(drawn);
    painter.setPen(Look().text);
    const auto lefts = LeftEdges(line.size(), width() - 2 * margin);
    for (qsizetype column = 0; column < line.size(); ++column) {
      painter.drawText(margin + lefts[static_cast<std::size_t>(column)], y, line[column]);
    }
    y += metrics.lineSpacing() * 5 / 4;
  }
}

}  // namespace penlog
