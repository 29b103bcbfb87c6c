// What the view adds to the texts of a window: the size that lets each fit its room, a letter for
// each button, a name for each widget that a screen reader can tell.
#pragma once

#include <memory>
#include <vector>

#include "platform/qt/control_mirror.h"

namespace penlog {

using Mirrors = std::vector<std::unique_ptr<ControlMirror>>;

/// Lays the window out and makes what is too long smaller until all fits.
void FitTexts(const Mirrors& mirrors);
/// Back to the own sizes: the window's scale or its colours have changed.
void ForgetFits(const Mirrors& mirrors);
/// Letters for the buttons; `taken` are those of the menus.
void MarkButtons(const Mirrors& mirrors, const QString& taken);
/// A button's and a label's name is its caption, that of what shows or takes a value the caption
/// before it; a lamp tells its state too.
void NameWidgets(const Mirrors& mirrors);

}  // namespace penlog
