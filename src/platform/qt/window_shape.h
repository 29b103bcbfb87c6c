// What an arrangement does with the shape of its window. Properties of its areas and widgets:
// "narrow" ("down" or "across") turns the direction of a row or column on a narrow window, "wide"
// and "stretches" beside it say how the parts share the room; "keepsPlace" keeps the room of what
// is hidden.
#pragma once

#include <QWidget>

namespace penlog {

/// Width over height below which a window is narrow.
constexpr double kNarrowBelow = 1.5;

/// Once, for the properties that do not depend on the size.
void KeepPlaces(QWidget& window);
/// At each size.
void TurnAreas(QWidget& window);

}  // namespace penlog
