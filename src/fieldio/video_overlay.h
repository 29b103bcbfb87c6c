// The text overlay board of a camera cone: texts and commands that begin with "{", sent as plain
// strings with no line end. What a screen holds is data; `overlay_output` sends it beside all else.
//
// Columns and rows of the board: name at 1,1, date at 1,15, depth up to column 36 and its unit from
// column 37 of row 15.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fieldio/paced_output.h"

namespace penlog {

constexpr const char* kOverlaySettings = "9600,N,8,1";

/// What the board shows beside its commands.
struct OverlayTexts {
  std::string sounding_name;
  std::string date;
  int depth_units = 0;         ///< 0 metres, else feet
  std::optional<float> depth;  ///< m, of the tip; none: no depth is written
};

/// "{C", the column in decimal, the row as two digits.
std::string OverlayCursor(int column, int row);
/// The camera's depth, 0.75 m above the tip: "000.00" in metres or feet.
std::string OverlayDepth(float depth, int depth_units);
/// Cursor and depth; its right end stays at column 35.
std::vector<PacedText> OverlayDepthTexts(float depth, int depth_units);
/// The screen build: reset, the first page erased and laid out with its pauses, name, date, unit
/// and, if there is one, the depth.
std::vector<PacedText> OverlayScreen(const OverlayTexts& texts);

/// The texts of the sounding in use: `SoundingName`, the clock's date, the unit and, once a cone
/// has been identified, `CurrentDepth`.
OverlayTexts TextsOfTheSounding();

/// Builds the screen anew on the port that carries the overlay: its own with `LumenProbePresent` 1
/// and a port set, the truck interface's with 2; on none in all other cases. Returns at once.
void ResendOverlayScreen(bool with_depth = true);

/// The one board's output.
PacedOutput& OverlayOutput();

}  // namespace penlog
