// What a pen covers of a picture when it draws a trace that only goes down, as a chart over depth
// does: one interval a scan line, however many segments there are. So a chart of 10,000 rows costs
// what its pixels cost, any width of the pen costs the same, and a new segment touches the few
// scan lines that it crosses.
//
// The pen is round. Its cover of a curve that never goes up is one interval on each scan line: the
// disc's own interval moves along without a gap while the pen moves. Keeping the least left and the
// greatest right end of the segments therefore loses nothing against drawing each of them.
#pragma once

#include <QColor>
#include <QImage>
#include <QPointF>
#include <vector>

namespace penlog {

/// Rows of pixels from `first` to before `last`.
struct PixelRows {
  int first = 0;
  int last = 0;
  bool IsEmpty() const { return first >= last; }
  void Include(const PixelRows& other);
};

/// Scan lines a row of pixels with antialiasing: an edge is right to a twelfth of a pixel.
constexpr int kLinesPerPixel = 6;

class TraceCover {
 public:
  /// `pen` in pixels; `lines` scan lines a row of pixels: 1 without antialiasing, where a pixel
  /// takes the colour if its centre is covered.
  TraceCover(double pen, int lines) : radius_(pen / 2), lines_(lines), apart_(1.0 / lines) {}

  /// A segment in pixels, its end not above its begin; `height` of the picture, what lies outside
  /// is left out. Returns the rows of pixels that it touches.
  PixelRows Add(const QPointF& from, const QPointF& to, int height);

  /// Lays the covered part of those rows over a picture of 32-bit pixels without transparency.
  void Paint(QImage& picture, const PixelRows& rows, const QColor& colour) const;

 private:
  struct Interval {
    double left = 1e30;
    double right = -1e30;
  };
  double HeightOf(int line) const { return (line + 0.5) * apart_; }
  Interval* From(int line) { return covered_.data() + (line - first_line_); }
  void AddDisc(const QPointF& centre, int first, int last);
  void AddSweep(const QPointF& from, const QPointF& to, int first, int last);
  void CoverDisc(const QPointF& centre, double y, Interval& interval) const;
  int LineAbove(double height) const;
  int LineBelow(double height) const;
  class RowShares;
  void AddShares(int row, RowShares& shares) const;

  double radius_;
  int lines_;
  double apart_;                     // two scan lines, in pixels
  int first_line_ = 0;               // of covered_
  QPointF stands_at_{1e300, 1e300};  // where the pen's disc was laid last
  std::vector<Interval> covered_;
};

}  // namespace penlog
