#include "rig/window/rig_look.h"

#include <QGridLayout>
#include <QLayout>
#include <QVariant>
#include <QWidget>
#include <utility>

#include "platform/qt/look.h"

namespace penlog {

namespace {

constexpr char kMargin[] = "drawnMargin";
constexpr char kAcross[] = "drawnAcross";
constexpr char kDown[] = "drawnDown";

/// `{pixels}` is scaled, `@role` is a colour of the look.
constexpr char kSheet[] = R"(
  QLabel { font-size: {12}; }
  QLabel[role="caption"] { font-size: {11}; }
  QLabel[role="headline"], QLabel[role="held"] { font-size: {20}; font-weight: bold;
    padding: {4}; }
  QLabel[role="held"] { background: @alarm; color: @on_alarm; }
  QLabel[role="depth"] { font-size: {30}; font-weight: bold; }
  QLabel[role="hint"] { background: @panel; padding: {6}; font-size: {12}; }
  QLabel[role="refused"] { color: @red_text; font-size: {11}; font-weight: bold; }
  QLabel#lblHint { min-height: {45}; max-height: {45}; }
  QLabel#lblTold { min-height: {42}; max-height: {42}; }
  QPushButton { min-height: {28}; min-width: 0; font-size: {12}; }
  QPushButton[role="small"], QPushButton[role="fault"], QPushButton[role="fault-on"] {
    min-height: {24}; font-size: {11}; font-weight: normal; padding: 0; }
  QPushButton[role="fault-on"] { background: @lit; color: @ground; }
  QComboBox { min-height: {28}; font-size: {12}; }
  QTreeView { background: @field; color: @text; border: {1} solid @line; font-size: {12};
    selection-background-color: @accent; selection-color: @on_accent; }
  QHeaderView, QHeaderView::section { background: @raised; color: @text; border: 0;
    padding: {3}; font-size: {12}; }
  QToolButton { background: @raised; border: {1} solid @line; border-radius: {4};
    padding: {3}; }
  penlog--LineLamp { font-size: {11}; }
  penlog--ProfileView { font-size: {11}; }
)";

}  // namespace

QString RigSheet(double scale) {
  return StyleSheet(scale) + FilledSheet(kSheet, scale);
}

const std::vector<std::string>& KnownSoils() {
  static const std::vector<std::string> soils = {"sand", "silt", "clay", "peat"};
  return soils;
}

QColor SoilColour(const std::string& word) {
  const bool night = ChosenLook() == LookSet::Night;
  if (word == "sand") return night ? QColor(0x40, 0x3a, 0x1e) : QColor(0xf6, 0xeb, 0xc4);
  if (word == "silt") return night ? QColor(0x33, 0x3c, 0x38) : QColor(0xdd, 0xe6, 0xda);
  if (word == "clay") return night ? QColor(0x42, 0x30, 0x2a) : QColor(0xf0, 0xdd, 0xd2);
  if (word == "peat") return night ? QColor(0x2c, 0x26, 0x20) : QColor(0xe0, 0xd8, 0xcc);
  return Look().readout_ground;
}

void SetGaps(QLayout& layout, int margin, int across, int down) {
  layout.setProperty(kMargin, margin);
  layout.setProperty(kAcross, across);
  layout.setProperty(kDown, down);
}

void ScaleGaps(const QWidget& window, double scale) {
  for (QLayout* layout : window.findChildren<QLayout*>()) {
    if (!layout->property(kMargin).isValid()) continue;
    const int margin = Scaled(layout->property(kMargin).toInt(), scale);
    layout->setContentsMargins(margin, margin, margin, margin);
    const int across = Scaled(layout->property(kAcross).toInt(), scale);
    const int down = Scaled(layout->property(kDown).toInt(), scale);
    if (auto* grid = qobject_cast<QGridLayout*>(layout)) {
      grid->setHorizontalSpacing(across);
      grid->setVerticalSpacing(down);
    } else {
      layout->setSpacing(down);
    }
  }
}

}  // namespace penlog
