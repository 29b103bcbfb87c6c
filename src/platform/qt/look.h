// The one place of colours and sizes: a dark field-instrument look with large targets. Widgets
// name a role; what a role looks like stands here.
#pragma once

#include <QColor>
#include <QString>

#include "forms/control.h"

namespace penlog {

/// The colour roles. Texts on their grounds keep a contrast of at least 4.5 to 1, also disabled.
struct LookColours {
  QColor ground;  ///< of a window
  QColor panel;   ///< of a frame on it
  QColor raised;  ///< of a button
  QColor line;    ///< borders
  QColor text;
  QColor caption;         ///< texts that name a value
  QColor faint;           ///< texts of what can't be used now
  QColor field;           ///< ground of what can be typed
  QColor readout_ground;  ///< of measured values
  QColor readout_text;
  QColor accent;  ///< focus, choice, the main way on
  QColor alarm;   ///< limits passed, links lost, the stop
  QColor good;    ///< links that work, rods going down
  QColor lit;     ///< a lamp that is on
};

const LookColours& Look();

/// What a colour of the program is shown as.
QColor Shown(Colour colour);

/// The style sheet of a window that is `scale` times as large as its arrangement. Roles, by the
/// property "role": labels "caption", "heading", "title", "alarm", "note"; buttons "main", "stop".
QString StyleSheet(double scale);

/// Width of a border or a gap of `pixels` at that scale, at least 1.
int Scaled(double pixels, double scale);

}  // namespace penlog
