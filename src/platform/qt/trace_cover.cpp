#include "platform/qt/trace_cover.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace penlog {

namespace {

constexpr int kFull = 255;

int Mixed(int below, int above, int share) {
  return (below * (kFull - share) + above * share + kFull / 2) / kFull;
}

/// Of a number not below -1, without a call.
int Floor(double number) {
  const int whole = static_cast<int>(number);
  return number < whole ? whole - 1 : whole;
}

int Ceiling(double number) {
  const int whole = static_cast<int>(number);
  return number > whole ? whole + 1 : whole;
}

/// Each of the four bytes by itself.
QRgb Mixed(QRgb below, QRgb above, int share) {
  QRgb mixed = 0;
  for (int shift = 0; shift < 32; shift += 8) {
    const auto part = [shift](QRgb pixel) { return static_cast<int>(pixel >> shift & 0xFFU); };
    mixed |= static_cast<QRgb>(Mixed(part(below), part(above), share)) << shift;
  }
  return mixed;
}

}  // namespace

/// How much of each pixel of a row is covered: the sum of intervals, in ends and steps.
class TraceCover::RowShares {
 public:
  explicit RowShares(int width) : steps_(static_cast<std::size_t>(width) + 2) {}

  void Add(double left, double right) {
    const double end = static_cast<double>(steps_.size() - 2);
    left = std::clamp(left, 0.0, end);
    right = std::clamp(right, 0.0, end);
    if (left >= right) return;
    Begin(left, 1);
    Begin(right, -1);
    first_ = std::min(first_, static_cast<int>(left));
    last_ = std::max(last_, static_cast<int>(std::ceil(right)));
  }

  /// Calls `paint(pixel, behind, share)` for each run of pixels of one share, the share of one
  /// interval being 1; clears them.
  template <class PaintRun>
  void Take(PaintRun paint) {
    double share = 0;
    int begin = first_;
    for (int pixel = first_; pixel < last_; ++pixel) {
      double& step = steps_[static_cast<std::size_t>(pixel)];
      if (step == 0) continue;
      if (begin < pixel) paint(begin, pixel, share);
      begin = pixel;
      share += step;
      step = 0;
    }
    if (begin < last_) paint(begin, last_, share);
    if (last_ > 0) std::fill_n(steps_.begin() + last_, 2, 0.0);
    first_ = static_cast<int>(steps_.size());
    last_ = 0;
  }

 private:
  /// From `place` on all is covered (`sign` 1) or no longer (-1).
  void Begin(double place, double sign) {
    const auto pixel = static_cast<std::size_t>(place);
    const double behind = 1 - (place - static_cast<double>(pixel));
    steps_[pixel] += sign * behind;
    steps_[pixel + 1] += sign * (1 - behind);
  }

  std::vector<double> steps_;
  int first_ = static_cast<int>(steps_.size());
  int last_ = 0;
};

void PixelRows::Include(const PixelRows& other) {
  if (other.IsEmpty()) return;
  *this = IsEmpty() ? other : PixelRows{std::min(first, other.first), std::max(last, other.last)};
}

PixelRows TraceCover::Add(const QPointF& from, const QPointF& to, int height) {
  const int first = std::max(0, LineAbove(from.y() - radius_));
  const int last = std::min(height * lines_, LineBelow(to.y() + radius_));
  if (first >= last) return {};
  if (covered_.empty()) first_line_ = first;
  const int begin = std::max(first, first_line_);
  const auto needed = static_cast<std::size_t>(last - first_line_);
  if (covered_.size() < needed) covered_.resize(needed);
  if (from != stands_at_) AddDisc(from, begin, last);
  stands_at_ = to;
  if (to.y() > from.y()) {
    AddSweep(from, to, begin, last);
  } else {
    AddDisc(to, begin, last);  // level: the discs at its ends reach as far
  }
  return {first / lines_, (last - 1) / lines_ + 1};
}

/// The first scan line at or below a height, and the one behind the last at or above it.
int TraceCover::LineAbove(double height) const {
  return Ceiling(std::clamp(height * lines_ - 0.5, -1.0, 1e6));
}
int TraceCover::LineBelow(double height) const {
  return Floor(std::clamp(height * lines_ - 0.5, -1.0, 1e6)) + 1;
}

/// The pen where it stands at an end of the segment.
void TraceCover::AddDisc(const QPointF& centre, int first, int last) {
  Interval* at = From(first);
  for (int line = first; line < last; ++line) {
    CoverDisc(centre, HeightOf(line), *at++);
  }
}

inline void TraceCover::CoverDisc(const QPointF& centre, double y, Interval& interval) const {
  const double off = y - centre.y();
  const double inside = radius_ * radius_ - off * off;
  if (inside < 0) return;
  const double half = std::sqrt(inside);
  interval.left = std::min(interval.left, centre.x() - half);
  interval.right = std::max(interval.right, centre.x() + half);
}

/// The straight sides between the two ends, and the pen at the lower end.
void TraceCover::AddSweep(const QPointF& from, const QPointF& to, int first, int last) {
  const double across = to.x() - from.x();
  const double down = to.y() - from.y();
  const double length = std::sqrt(across * across + down * down);
  const QPointF side(radius_ * down / length, -radius_ * across / length);
  const double slope = across / down;
  const double least = std::min(from.x(), to.x()) - radius_;
  const double most = std::max(from.x(), to.x()) + radius_;
  Interval* at = From(first);
  for (int line = first; line < last; ++line) {
    Interval& interval = *at++;
    // Most of a dense trace lies inside what is covered already.
    if (interval.left <= least && interval.right >= most) continue;
    const double y = HeightOf(line);
    const double right = y - (from.y() + side.y());
    const double left = y - (from.y() - side.y());
    if (right >= 0 && right <= down) {
      const double x = from.x() + side.x() + right * slope;
      interval.right = std::max(interval.right, x);
      interval.left = std::min(interval.left, x);
    }
    if (left >= 0 && left <= down) {
      const double x = from.x() - side.x() + left * slope;
      interval.left = std::min(interval.left, x);
      interval.right = std::max(interval.right, x);
    }
    CoverDisc(to, y, interval);
  }
}

/// Without antialiasing from the first to the last pixel whose centre is covered.
void TraceCover::AddShares(int row, RowShares& shares) const {
  for (int line = row * lines_; line < (row + 1) * lines_; ++line) {
    const auto at = static_cast<std::size_t>(line - first_line_);
    if (line < first_line_ || at >= covered_.size()) continue;
    const Interval& interval = covered_[at];
    if (lines_ > 1) {
      shares.Add(interval.left, interval.right);
    } else if (interval.left <= interval.right) {
      shares.Add(std::ceil(interval.left - 0.5), std::floor(interval.right - 0.5) + 1);
    }
  }
}

void TraceCover::Paint(QImage& picture, const PixelRows& rows, const QColor& colour) const {
  const int first = std::max({rows.first, first_line_ / lines_, 0});
  const int behind = first_line_ + static_cast<int>(covered_.size());
  const int last = std::min({rows.last, (behind + lines_ - 1) / lines_, picture.height()});
  const QRgb above = colour.rgb();
  const double of_line = static_cast<double>(kFull) / lines_;
  RowShares shares(picture.width());
  for (int row = first; row < last; ++row) {
    auto* pixels = reinterpret_cast<QRgb*>(picture.scanLine(row));
    AddShares(row, shares);
    shares.Take([&](int begin, int behind, double share) {
      const int weight = std::min(kFull, static_cast<int>(share * of_line + 0.5));
      if (weight == kFull) {
        std::fill(pixels + begin, pixels + behind, above);
      } else {
        for (int pixel = begin; pixel < behind; ++pixel) {
          pixels[pixel] = Mixed(pixels[pixel], above, weight);
        }
      }
    });
  }
}

}  // namespace penlog
