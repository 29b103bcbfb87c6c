// The one place of colours, type sizes and spacing. Widgets name a role; what a role looks like
// stands here and in style_sheet.cpp, once for the day and once for the night.
#pragma once

#include <QColor>
#include <QString>
#include <vector>

#include "forms/control.h"
#include "platform/view.h"

namespace penlog {

/// The colour roles. Each text and each mark keeps a contrast of at least 4.5 to 1 against each of
/// its grounds, disabled texts too.
struct LookColours {
  QColor ground;  ///< of a window
  QColor panel;   ///< of a frame on it
  QColor raised;  ///< of a button
  QColor line;    ///< borders
  QColor text;
  QColor caption;         ///< texts that name a value
  QColor faint;           ///< texts of what can't be used now
  QColor field;           ///< ground of what can be typed
  QColor readout_ground;  ///< of measured values and charts
  QColor readout_text;
  QColor accent;     ///< focus, choice
  QColor on_accent;  ///< texts on it
  QColor alarm;      ///< a filled area: quits, lost links and the stop button, nothing else
  QColor on_alarm;   ///< texts on it
  QColor red_text;   ///< a warning as words on a common ground
  QColor red_mark;   ///< a red trace, bar or lamp: another red than the alarm's
  QColor good;       ///< links that work, rods going down, the way on
  QColor on_good;    ///< texts on it
  QColor lit;        ///< a lamp that is on; a filled area: a notice that is no alarm
  QColor on_lit;     ///< texts on it
  QColor blue_mark;
  QColor cyan_mark;
};

/// The colours of one set.
const LookColours& LookOf(LookSet set);
/// Those of the set that is chosen now.
const LookColours& Look();

/// Contrast of two colours, 1 to 21: (L1 + 0.05) / (L2 + 0.05) of their relative luminances, the
/// lighter one above (WCAG 2, 1.4.3).
double Contrast(const QColor& one, const QColor& other);
/// The least contrast of a text or a mark against its ground.
constexpr double kLeastContrast = 4.5;
/// `colour` made darker or lighter until it stands out from `ground` by the least contrast.
QColor StandingOut(QColor colour, const QColor& ground);

/// What a colour of the program is shown as where it marks something on a readout's ground: a
/// trace, a bar, a lamp.
QColor Shown(Colour colour);
/// The same of a text on a window, a frame or a readout.
QColor TextColour(Colour colour);
/// The same of a filled ground: red is the alarm.
QColor GroundColour(Colour colour);
/// The text's colour on such a ground; `colour` where the ground is a common one.
QColor TextOn(Colour ground, Colour colour);

/// The style sheet of a window that is `scale` times as large as its arrangement, in the set that
/// is chosen now. Roles, by the property "role": labels "caption", "heading", "title", "alarm",
/// "note", "question"; buttons "main", "stop", "halt".
QString StyleSheet(double scale);

/// `sheet` with each `{pixels}` scaled and each `@role` as that colour of the set chosen now.
QString FilledSheet(const QString& sheet, double scale);

/// Width of a border or a gap of `pixels` at that scale, at least 1.
int Scaled(double pixels, double scale);

/// A text is never drawn with fewer pixels.
constexpr int kLeastTextPixels = 6;
/// Of the corners of frames and readouts, in pixels.
constexpr double kLookRadius = 6;
/// Between the parts of one widget, in pixels.
constexpr int kLookJoint = 2;
/// Lines of rings and of borders that are to stand out, in pixels.
constexpr double kFirmLine = 1.5;

/// Of a message box, in pixels at scale 1.
struct LookBox {
  int width = 440;   ///< where the text fits
  int margin = 16;   ///< around it all
  int gap = 16;      ///< between the text and the buttons
  int between = 14;  ///< two buttons
  int button = 44;   ///< height
  int title = 40;    ///< of the frame that the window manager adds; not scaled
};
inline constexpr LookBox kLookBox;

/// The steps that margins and gaps of the arrangements keep to, in pixels at scale 1.
const std::vector<int>& LookGaps();

}  // namespace penlog
