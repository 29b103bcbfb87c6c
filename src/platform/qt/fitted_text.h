// Labels and buttons whose text is longer than their room, as a translation's may be, are drawn
// smaller, never cut.
#pragma once

#include <QSize>
#include <QWidget>

namespace penlog {

/// The least share of its own size that a text is drawn with.
constexpr double kLeastShare = 0.55;

/// The room that a label or a button has for its text, and what the text needs there; empty sizes
/// for other widgets.
QSize TextRoom(const QWidget& widget);
QSize TextNeeds(const QWidget& widget);

/// Sets the property `kFittedPixels` to what fits now, none where its own size does. True when it
/// changed: the widget's style is to be set anew.
bool FitText(QWidget& widget);
/// Forgets it: the widget's own size has changed.
void ForgetFit(QWidget& widget);

}  // namespace penlog
