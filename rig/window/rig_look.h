// The look of the rig's window: the console's colours and style, with the sizes, the gaps and the
// soils that this window has besides. No other file of it names a colour or a size.
#pragma once

#include <QColor>
#include <QString>
#include <string>
#include <vector>

class QLayout;
class QWidget;

namespace penlog {

/// Steps of spacing at scale 1, of those that the console's arrangements keep to (`LookGaps()`).
constexpr int kRigMargin = 8;  ///< around the window, and between the picture and its side
constexpr int kRigGap = 6;     ///< between the parts of the window
constexpr int kRigCellGap = 4;
constexpr int kRigLineGap = 2;  ///< between lines of text

/// The style sheet of the window at `scale`, in the set of colours that is chosen now.
QString RigSheet(double scale);

/// The soils that have a ground of their own.
const std::vector<std::string>& KnownSoils();
/// The ground of a soil in the picture; a word that is none has the readout's. Every trace, line
/// and text of the picture keeps the least contrast against each.
QColor SoilColour(const std::string& word);

/// Gives a layout its margin and gaps at scale 1, in pixels.
void SetGaps(QLayout& layout, int margin, int across, int down);
/// Scales the gaps of all layouts below `window` that have got some.
void ScaleGaps(const QWidget& window, double scale);

}  // namespace penlog
