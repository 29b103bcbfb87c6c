// How the values of a control are set in each class of widget. Each routine touches the widget
// only where it differs, and none makes a widget report a change of the operator's.
#pragma once

#include <QWidget>

#include "forms/control.h"

namespace penlog {

/// Property of a label or a button: the pixels that its text was fitted with; none in its own size.
constexpr char kFittedPixels[] = "fittedPixels";

/// Caption of a label, button, box or frame; in the operator's language.
void ShowCaption(QWidget& widget, const Control& control);
/// Colours and weight of the text, where the program asks for others than the look's own.
void ShowColours(QWidget& widget, const Control& control);
/// Content of a text field; the cursor keeps its place.
void ShowText(QWidget& widget, const Control& control);
/// Tick of a check box or an option button.
void ShowCheck(QWidget& widget, const Control& control);
/// Entries of a list, each with what stands beside it.
void ShowEntries(QWidget& widget, const Control& control);
/// The chosen entry.
void ShowChoice(QWidget& widget, const Control& control);
/// The caption as a widget shows it now, for tests; empty for those without.
QString CaptionOf(const QWidget& widget);

}  // namespace penlog
