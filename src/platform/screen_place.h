// Where on the screen a program's windows stand, for two programs side by side: a word of the
// command line, and the room that it gives. Pure; the windows' toolkit tells the screen.
#pragma once

#include <optional>
#include <string_view>

namespace penlog {

/// A rectangle of the screen, in its pixels.
struct ScreenRoom {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  bool operator==(const ScreenRoom&) const = default;
};

struct ScreenPlace {
  enum class Kind {
    Whole,  ///< the screen as a whole
    Left,   ///< the narrow side, 3/10 of the screen
    Right,  ///< what the narrow side leaves
    Exact,  ///< `room`
  };
  Kind kind = Kind::Whole;
  ScreenRoom room;
};

/// "left", "right", "whole", or "WIDTHxHEIGHT+X+Y" with 100 to 20000 pixels each way and a corner
/// from 0 on; none for other words.
std::optional<ScreenPlace> ScreenPlaceOf(std::string_view word);

/// The room on a screen. The narrow side is at least 360 wide, but never more than 45 of 100.
ScreenRoom RoomOn(const ScreenRoom& screen, const ScreenPlace& place);

}  // namespace penlog
