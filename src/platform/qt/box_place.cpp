#include "platform/qt/box_place.h"

#include <QVariant>
#include <algorithm>
#include <limits>

namespace penlog {

namespace {

bool IsFree(const QRect& place, const std::vector<QRect>& kept) {
  return std::none_of(kept.begin(), kept.end(),
                      [&](const QRect& one) { return one.intersects(place); });
}

/// The middle of what lies below all that is kept; of the whole room where that is too little.
QPoint Aim(const QRect& room, const std::vector<QRect>& kept) {
  constexpr int kLeastPart = 3;
  QRect below = room;
  for (const QRect& one : kept) {
    if (one.intersects(room)) below.setTop(std::max(below.top(), one.bottom() + 1));
  }
  return below.height() * kLeastPart < room.height() ? room.center() : below.center();
}

/// Begins of a span of `length` that can be the nearest to `middle`: around it, or at an edge.
std::vector<int> Begins(int length, int middle, int first, int last) {
  return {std::clamp(middle - length / 2, first, std::max(first, last - length + 1)), first,
          last - length + 1};
}

}  // namespace

std::vector<QRect> AlwaysInSight(const QWidget& window) {
  std::vector<QRect> kept;
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (!widget->property("alwaysInSight").toBool()) continue;
    kept.emplace_back(widget->mapToGlobal(QPoint()), widget->size());
  }
  return kept;
}

std::optional<QRect> BoxPlace(const QSize& box, const QRect& room, const std::vector<QRect>& kept) {
  const QPoint aim = Aim(room, kept);
  std::vector<int> lefts = Begins(box.width(), aim.x(), room.left(), room.right());
  std::vector<int> tops = Begins(box.height(), aim.y(), room.top(), room.bottom());
  for (const QRect& one : kept) {
    lefts.insert(lefts.end(), {one.right() + 1, one.left() - box.width()});
    tops.insert(tops.end(), {one.bottom() + 1, one.top() - box.height()});
  }
  std::optional<QRect> best;
  int least = std::numeric_limits<int>::max();
  for (const int top : tops) {
    for (const int left : lefts) {
      const QRect place(QPoint(left, top), box);
      const int away = (place.center() - aim).manhattanLength();
      if (away >= least || !room.contains(place) || !IsFree(place, kept)) continue;
      least = away;
      best = place;
    }
  }
  return best;
}

QRect LargestFree(const QRect& room, const std::vector<QRect>& kept) {
  std::vector<int> across = {room.left(), room.right() + 1};
  std::vector<int> down = {room.top(), room.bottom() + 1};
  for (const QRect& one : kept) {
    across.insert(across.end(), {one.left(), one.right() + 1});
    down.insert(down.end(), {one.top(), one.bottom() + 1});
  }
  QRect largest;
  const auto area = [](const QRect& rect) { return rect.width() * rect.height(); };
  for (const int left : across) {
    for (const int right : across) {
      for (const int top : down) {
        for (const int bottom : down) {
          const QRect free = QRect(left, top, right - left, bottom - top);
          if (free.isEmpty() || area(free) <= area(largest)) continue;
          if (room.contains(free) && IsFree(free, kept)) largest = free;
        }
      }
    }
  }
  return largest;
}

}  // namespace penlog
