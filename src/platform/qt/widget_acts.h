// Does with a widget what a hand does: events at its place on the window, so that a widget that is
// hidden, covered or too small is missed as a hand would miss it.
#pragma once

#include <string>

#include "platform/qt/form_window.h"

namespace penlog {

/// The least side of a widget that a finger or a pointer can hit, in pixels.
constexpr int kLeastTarget = 8;

/// Why a hand can't hit the widget on that window; empty if it can: at the centre and at four
/// inset corners.
std::string WhyMissed(const QWidget& window, const QWidget& widget);

/// Does `action` with the widget of its control; false with the reason in `why`.
bool ActOnWidget(FormWindow& window, ControlMirror& mirror, const OperatorAction& action,
                 std::string& why);

}  // namespace penlog
