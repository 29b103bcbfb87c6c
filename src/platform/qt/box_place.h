// Where a message box stands: over the window that it concerns, never on what must stay in sight.
// Widgets of an arrangement that must have the property "alwaysInSight".
#pragma once

#include <QRect>
#include <QWidget>
#include <optional>
#include <vector>

namespace penlog {

/// All in the desktop's pixels.
struct BoxGround {
  QRect window;             ///< that the box concerns
  QRect display;            ///< that it stands on
  std::vector<QRect> kept;  ///< what no box may hide, of every window that is shown
  bool operator==(const BoxGround&) const = default;
};

/// What no box may hide on that window.
std::vector<QRect> AlwaysInSight(const QWidget& window);

/// A box of that size in the room, off all of `kept`: as near as it comes to the middle of what
/// lies below them. None where there is no place for it.
std::optional<QRect> BoxPlace(const QSize& box, const QRect& room, const std::vector<QRect>& kept);

/// The largest part of the room off all of `kept`; empty where there is none.
QRect LargestFree(const QRect& room, const std::vector<QRect>& kept);

}  // namespace penlog
