// The keys of a window. Enter presses the button that has the focus, or else the one on the main
// way; Escape the one that goes back. Buttons with the property "guarded" (start, stop, override,
// end) take neither: on the console no common key does any of that. F12 is the stop's own.
#pragma once

#include <QPushButton>
#include <QWidget>

namespace penlog {

/// The button that Enter presses now; null for none.
QPushButton* ButtonForEnter(const QWidget& window);
/// The button that Escape presses now: the first one in sight with the property "escape".
QPushButton* ButtonForEscape(const QWidget& window);
/// Serves Enter and Escape; false for other keys, and where no button is theirs.
bool PressedByKey(const QWidget& window, int key);

}  // namespace penlog
