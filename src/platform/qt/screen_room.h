// The room that this program's windows have on the screen.
#pragma once

#include <QRect>
#include <QScreen>

#include "platform/screen_place.h"

namespace penlog {

/// Where the windows stand from now on; the whole screen unless told.
void UsePlace(const ScreenPlace& place);

/// The part of the screen for this program's windows.
QRect PlaceRoom(const QScreen& screen);

}  // namespace penlog
