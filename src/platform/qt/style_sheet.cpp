#include <QDir>
#include <utility>

#include "platform/qt/look.h"

/// Of a static library no resource is linked that nobody asks for.
inline void AddLookResource() {
  Q_INIT_RESOURCE(look);
}

namespace penlog {

namespace {

/// Each `{pixels}` becomes the scaled number with "px".
QString WithSizes(const QString& sheet, double scale) {
  QString result;
  for (const QString& part : sheet.split('{')) {
    const auto end = part.indexOf('}');
    bool is_size = false;
    const double pixels = end < 0 ? 0 : part.left(end).toDouble(&is_size);
    if (is_size) {
      result += QString::number(Scaled(pixels, scale)) + "px" + part.mid(end + 1);
    } else {
      result += (result.isEmpty() ? "" : "{") + part;
    }
  }
  return result;
}

/// Each `@role` becomes that role's colour.
QString WithColours(QString sheet, const LookColours& look) {
  const std::pair<const char*, QColor> roles[] = {{"@ground", look.ground},
                                                  {"@panel", look.panel},
                                                  {"@raised", look.raised},
                                                  {"@line", look.line},
                                                  {"@text", look.text},
                                                  {"@caption", look.caption},
                                                  {"@faint", look.faint},
                                                  {"@field", look.field},
                                                  {"@accent", look.accent},
                                                  {"@on_accent", look.on_accent},
                                                  {"@alarm", look.alarm},
                                                  {"@on_alarm", look.on_alarm},
                                                  {"@red_text", look.red_text},
                                                  {"@good", look.good},
                                                  {"@on_good", look.on_good},
                                                  {"@lit", look.lit},
                                                  {"@readout_ground", look.readout_ground},
                                                  {"@readout_text", look.readout_text}};
  for (const auto& [role, colour] : roles) sheet.replace(role, colour.name());
  sheet.replace("@tick", ChosenLook() == LookSet::Day ? "tick_day.png" : "tick.png");
  return sheet;
}

constexpr char kTexts[] = R"(
  QWidget { color: @text; font-family: "DejaVu Sans", "Segoe UI", sans-serif; font-size: {13}; }
  QMainWindow { background: @ground; }
  QDialog { background: @ground; border: {2} solid @line; }
  QLabel { background: transparent; }
  QLabel:disabled { color: @faint; }
  QLabel[role="caption"] { color: @caption; font-size: {12}; }
  QLabel[role="heading"] { color: @caption; font-size: {14}; font-weight: bold; }
  QLabel[role="title"] { font-size: {46}; font-weight: bold; }
  QLabel[role="alarm"] { color: @red_text; font-size: {15}; font-weight: bold; }
  QLabel[role="note"] { color: @lit; font-size: {13}; }
  QLabel[role="value"] { font-size: {16}; font-weight: bold; }
  QLabel[role="readout"] { font-size: {30}; font-weight: bold; }
  QLabel[role="question"] { font-size: {17}; }
  QLabel[role="notice"] { font-size: {14}; }
  QLabel[role="noticeAlarm"] { color: @red_text; font-size: {14}; font-weight: bold; }
  penlog--TextView { font-size: {15}; }
  penlog--TextView[role="value"] { font-size: {20}; font-weight: bold; }
  penlog--TextView[role="small"] { font-size: {13}; }
  penlog--TextView[role="strip"] { font-size: {15}; font-weight: bold; }
  penlog--TextView[role="sign"] { font-size: {13}; font-weight: bold; }
  penlog--TextView[role="state"] { font-size: {16}; font-weight: bold; }
  penlog--TextView[role="caption"] { color: @caption; font-size: {13}; }
  penlog--FrameView#frmGraphArea penlog--TextView { font-size: {12}; }
  penlog--FrameView#frmGraphArea penlog--TextView[role="value"] { font-size: {18}; }
  penlog--FrameView { font-size: {13}; }
  penlog--ReportView { font-size: {13}; }
)";

constexpr char kButtons[] = R"(
  QPushButton { background: @raised; border: {1} solid @line; border-radius: {5};
    font-size: {14}; font-weight: bold; min-height: {38}; min-width: {48};
    padding: 0 {6}; }
  QPushButton:hover { border-color: @accent; }
  QPushButton:focus { border: {2} solid @accent; }
  QPushButton:pressed { background: @accent; color: @on_accent; }
  QPushButton:disabled { background: @ground; color: @faint; border: {1} dashed @line; }
  QPushButton[role="main"] { background: @good; color: @on_good; border-color: @good; }
  QPushButton[role="main"]:focus { border: {3} solid @text; }
  QPushButton[role="main"]:pressed { background: @text; color: @ground; }
  QPushButton[role="main"]:disabled { background: @ground; color: @faint;
    border: {1} dashed @line; }
  QPushButton[role="stop"] { background: @alarm; color: @on_alarm; border-color: @alarm; }
  QPushButton[role="stop"]:focus { border: {3} solid @text; }
  QPushButton[role="stop"]:pressed { background: @text; color: @ground; }
  QPushButton[role="halt"] { color: @red_text; background: @panel; border: {2} solid @red_text; }
  QPushButton[role="halt"]:focus { border: {3} solid @text; }
  QPushButton[role="halt"]:pressed { background: @text; color: @ground; }
  QPushButton[role="stop"]:disabled, QPushButton[role="halt"]:disabled {
    background: @ground; color: @faint; border: {1} dashed @line; }
  QMainWindow#StartUp QPushButton { font-size: {19}; }
  QMainWindow#StartUp QLabel#lblProgress { font-size: {15}; }
  QCheckBox, QRadioButton { spacing: {8}; min-height: {26}; }
  QCheckBox:disabled, QRadioButton:disabled { color: @faint; }
  QCheckBox::indicator, QRadioButton::indicator { width: {20}; height: {20};
    border: {2} solid @caption; border-radius: {4}; background: @field; }
  QRadioButton::indicator { border-radius: {11}; }
  QCheckBox::indicator:checked, QRadioButton::indicator:checked { background: @accent;
    border-color: @accent; }
  QCheckBox::indicator:checked { image: url(:/look/@tick); }
  QCheckBox::indicator:disabled { border-color: @line; }
  QCheckBox::indicator:checked:disabled { background: @faint; border-color: @faint; }
  QCheckBox:focus, QRadioButton:focus { color: @accent; }
)";

constexpr char kFields[] = R"(
  QLineEdit, QComboBox, QListWidget, QListView { background: @field; border: {1} solid @line;
    border-radius: {4}; font-size: {14}; padding: 0 {6};
    selection-background-color: @accent; selection-color: @on_accent; }
  QLineEdit, QComboBox { min-height: {28}; }
  QLineEdit:focus, QComboBox:focus, QListWidget:focus { border: {2} solid @accent; }
  QLineEdit:disabled, QComboBox:disabled, QListWidget:disabled { background: @ground;
    color: @faint; border: {1} dashed @line; }
  QComboBox::drop-down { width: {30}; border-left: {1} solid @line; }
  QComboBox::down-arrow { width: 0; height: 0; border-left: {5} solid @field;
    border-right: {5} solid @field; border-top: {7} solid @text; }
  QComboBox QAbstractItemView::item { min-height: {30}; }
  QListWidget::item { min-height: {24}; }
  QListWidget::item:selected { background: @accent; color: @on_accent; }
  QScrollArea { border: {1} solid @line; background: @panel; }
  QScrollArea > QWidget > QWidget { background: @panel; }
  QScrollArea#areaBoxText, QScrollArea#areaBoxText > QWidget > QWidget { border: 0;
    background: @ground; }
  QScrollBar:vertical { background: @ground; width: {18}; }
  QScrollBar:horizontal { background: @ground; height: {18}; }
  QScrollBar::handle { background: @line; border-radius: {4}; min-height: {30};
    min-width: {30}; }
  QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
  QMenuBar { background: @panel; font-size: {13}; }
  QMenuBar::item { padding: {3} {12}; background: transparent; }
  QMenuBar::item:selected, QMenu::item:selected { background: @accent; color: @on_accent; }
  QMenu { background: @panel; border: {1} solid @line; }
  QMenu::item { padding: {8} {20}; }
  QMenu::item:disabled { color: @faint; }
)";

}  // namespace

QString StyleSheet(double scale) {
  AddLookResource();
  return FilledSheet(QString(kTexts) + kButtons + kFields, scale);
}

QString FilledSheet(const QString& sheet, double scale) {
  return WithColours(WithSizes(sheet, scale), Look());
}

}  // namespace penlog
