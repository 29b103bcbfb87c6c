// Whether the texts of a window have room, and whether its widgets keep off each other.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollArea>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <cmath>
#include <vector>

#include "platform/qt/columns_view.h"
#include "platform/qt/fitted_text.h"
#include "platform/qt/folder_view.h"
#include "platform/qt/frame_view.h"
#include "platform/qt/mirror.h"
#include "platform/qt/report_view.h"
#include "platform/qt/shape_view.h"
#include "platform/qt/text_view.h"
#include "platform/qt/widget_acts.h"
#include "platform/qt/widget_values.h"

namespace penlog {

inline const QSize kDisplays[] = {{800, 600}, {1024, 768}, {1366, 768}, {1920, 1080}, {3840, 2160}};

/// A translation that is 30 % longer: words get longer, sentences get more of them.
inline std::string Longer(std::string_view text) {
  if (text.find(".cpt") != std::string_view::npos) return std::string(text);  // a file's name
  if (text.find("\n\n") != std::string_view::npos) return std::string(text);  // a report
  std::size_t letters = 0;
  for (const char c : text) letters += (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ? 1 : 0;
  if (letters < 3 || 2 * letters < text.size()) return std::string(text);  // a value
  const std::size_t more = (3 * text.size() + 9) / 10;
  std::string longer(text);
  for (std::size_t i = 0; i < more; ++i) longer += more > 5 && i % 6 == 0 ? ' ' : 'e';
  return longer;
}

inline void LayOut(FormWindow& window, const QSize& display) {
  window.Follow();
  window.resize(window.SizeOn(display));
  for (int i = 0; i < 3; ++i) {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QCoreApplication::processEvents();
  }
  window.Follow();
}

/// A value of usual length stands in a field, a combo or a list without scrolling; a longer one may
/// scroll.
constexpr int kUsualLength = 24;
/// The least size of a number at an axis, in pixels.
constexpr int kLeastAxis = 8;

/// Empty if `needed` has its room; a pixel more is none that anybody misses.
inline QString CutBy(const QSize& needed, const QSize& room) {
  if (needed.width() <= room.width() + 1 && needed.height() <= room.height() + 1) return {};
  return QString("needs %1x%2, has %3x%4")
      .arg(needed.width())
      .arg(needed.height())
      .arg(room.width())
      .arg(room.height());
}

/// The part of a value that must be readable at once.
inline QSize NeededFor(const QWidget& widget, const QString& value) {
  const QFontMetrics metrics = widget.fontMetrics();
  return {metrics.horizontalAdvance(value.left(kUsualLength)), metrics.height()};
}

/// How much of the label's text there is no room for; empty if all is seen.
inline QString CutOfLabel(const QLabel& label) {
  if (label.text().isEmpty()) return {};
  const QRect room = label.contentsRect();
  const int flags = static_cast<int>(label.alignment()) | (label.wordWrap() ? Qt::TextWordWrap : 0);
  return CutBy(label.fontMetrics().boundingRect(room, flags, label.text()).size(), room.size());
}

inline QString CutOfButton(const QAbstractButton& button) {
  QStyleOptionButton option;
  option.initFrom(&button);
  const auto part =
      button.isCheckable() ? QStyle::SE_CheckBoxContents : QStyle::SE_PushButtonContents;
  return CutBy(button.fontMetrics().size(Qt::TextShowMnemonic, button.text()),
               button.style()->subElementRect(part, &option, &button).size());
}

inline QString CutOfField(const QLineEdit& field) {
  constexpr int kInset = 2;  // of the toolkit, at both sides of the text
  QStyleOptionFrame option;
  option.initFrom(&field);
  option.lineWidth = field.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &field);
  const QRect room = field.style()->subElementRect(QStyle::SE_LineEditContents, &option, &field);
  return CutBy(NeededFor(field, field.text()), room.adjusted(kInset, 0, -kInset, 0).size());
}

inline QString CutOfCombo(const QComboBox& combo) {
  QStyleOptionComboBox option;
  option.initFrom(&combo);
  option.currentText = combo.currentText();
  const QRect room = combo.style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                   QStyle::SC_ComboBoxEditField, &combo);
  return CutBy(NeededFor(combo, combo.currentText()), room.size());
}

/// Each row, and a room of two rows at least: fewer are none to choose from.
inline QString CutOfList(const QListWidget& list) {
  const QSize room = list.viewport()->size();
  for (int row = 0; row < list.count(); ++row) {
    const QListWidgetItem& item = *list.item(row);
    const QSize line(room.width(), list.visualItemRect(&item).height());
    const QString cut = CutBy(NeededFor(list, item.text()), line);
    if (!cut.isEmpty()) return "\"" + item.text() + "\" " + cut;
  }
  const int rows = std::min(list.count(), 2) * list.fontMetrics().height();
  return rows <= room.height() ? QString() : QString("shows less than two rows");
}

/// The report scrolls down, never aside, and no column runs into the next.
inline QString CutOfReport(const ReportView& report) {
  const QFontMetrics metrics = report.fontMetrics();
  const int margin = metrics.lineSpacing() / 2;
  int room = report.width();
  for (const QWidget* up = report.parentWidget(); up != nullptr; up = up->parentWidget()) {
    if (auto* area = qobject_cast<const QScrollArea*>(up))
      room = std::min(room, area->viewport()->width());
  }
  for (const QStringList& line : report.Lines()) {
    const auto lefts = report.LeftEdges(line.size(), report.width() - 2 * margin);
    for (qsizetype column = 0; column < line.size(); ++column) {
      const auto index = static_cast<std::size_t>(column);
      const int right = margin + lefts[index] + metrics.horizontalAdvance(line[column]);
      const int end = column + 1 < line.size() ? margin + lefts[index + 1] : room;
      if (right > end)
        return QString("\"%1\" ends at %2, not at %3").arg(line[column]).arg(right).arg(end);
    }
  }
  return {};
}

/// Axis numbers are of use only where they are read at a glance.
inline bool IsAxisNumber(const QWidget& widget) {
  const QString name = widget.objectName();
  return name.startsWith("lblGraphxM", Qt::CaseInsensitive) || name.startsWith("lblGraphYM");
}

/// A text view draws smaller instead of cutting; below the least share it would not be read. One
/// that fills its place has no size of its own.
inline QString CutOfView(const TextView& view) {
  if (view.Text().isEmpty()) return {};
  const QFont font = view.FittingFont();
  const int drawn = font.pixelSize();
  const int wanted = view.font().pixelSize();
  const int least =
      view.property("fill").toBool() ? 10 : static_cast<int>(std::ceil(kLeastShare * wanted));
  if (drawn < (IsAxisNumber(view) ? std::max(kLeastAxis, least) : least)) {
    return QString("is drawn with %1 pixels instead of %2").arg(drawn).arg(wanted);
  }
  const QFontMetrics metrics(font);
  return CutBy({metrics.horizontalAdvance(view.Text()), metrics.height()}, view.TextRect().size());
}

inline QString CutOfFrame(const FrameView& frame) {
  const int drawn = frame.HeadFont().pixelSize();
  if (!frame.Caption().isEmpty() && 2 * drawn < frame.font().pixelSize()) {
    return QString("is drawn with %1 pixels").arg(drawn);
  }
  const int needed = QFontMetrics(frame.HeadFont()).horizontalAdvance(frame.Caption());
  if (needed <= frame.HeadRect().width()) return {};
  return QString("needs %1, has %2").arg(needed).arg(frame.HeadRect().width());
}

inline QString CutOfLamp(const ShapeView& lamp) {
  if (lamp.Word().isEmpty()) return {};
  const QFontMetrics metrics(lamp.WordFont());
  const QRect room = lamp.WordRect();
  if (metrics.horizontalAdvance(lamp.Word()) <= room.width() && metrics.height() <= room.height()) {
    return {};
  }
  return QString("the word \"%1\" is cut").arg(lamp.Word());
}

inline QString CutOf(const QWidget& widget) {
  if (auto* lamp = qobject_cast<const ShapeView*>(&widget)) return CutOfLamp(*lamp);
  if (auto* label = qobject_cast<const QLabel*>(&widget)) return CutOfLabel(*label);
  if (auto* button = qobject_cast<const QAbstractButton*>(&widget)) return CutOfButton(*button);
  if (auto* view = qobject_cast<const TextView*>(&widget)) return CutOfView(*view);
  if (auto* frame = qobject_cast<const FrameView*>(&widget)) return CutOfFrame(*frame);
  if (auto* field = qobject_cast<const QLineEdit*>(&widget)) return CutOfField(*field);
  if (auto* combo = qobject_cast<const QComboBox*>(&widget)) return CutOfCombo(*combo);
  if (auto* list = qobject_cast<const QListWidget*>(&widget)) return CutOfList(*list);
  if (auto* report = qobject_cast<const ReportView*>(&widget)) return CutOfReport(*report);
  if (auto* folders = qobject_cast<const FolderView*>(&widget)) {
    const QString cut = CutOfField(folders->Path());
    return cut.isEmpty() ? CutOfList(folders->Folders()) : cut;
  }
  return {};
}

inline void ExpectNothingCut(FormWindow& window, const QSize& display) {
  LayOut(window, display);
  for (Control* control : window.Mirrored().Controls()) {
    const ControlMirror* mirror = window.MirrorOf(*control);
    if (mirror == nullptr || mirror->Widget() == nullptr || !control->IsShown()) continue;
    const QString cut = CutOf(*mirror->Widget());
    EXPECT_TRUE(cut.isEmpty()) << window.Mirrored().Name() << "." << control->Name() << " at "
                               << display.width() << "x" << display.height() << ": "
                               << cut.toStdString();
  }
}

inline bool IsInput(const Control& control) {
  switch (control.Kind()) {
    case ControlKind::Button:
    case ControlKind::TextBox:
    case ControlKind::CheckBox:
    case ControlKind::OptionButton:
    case ControlKind::ComboBox:
    case ControlKind::ListBox:
      return true;
    default:
      return false;
  }
}

/// No input is covered, out of the window or too small for a finger.
inline void ExpectAllInReach(FormWindow& window, const QSize& display) {
  LayOut(window, display);
  for (Control* control : window.Mirrored().Controls()) {
    if (!IsInput(*control) || !control->IsShown()) continue;
    const std::string why = WhyMissed(window, *window.MirrorOf(*control)->Widget());
    EXPECT_EQ(why, "") << window.Mirrored().Name() << "." << control->Name() << " at "
                       << display.width() << "x" << display.height();
  }
}

/// What stands alone on its place: no ground of others, no mark on a scale.
inline bool StandsAlone(const QWidget& widget) {
  const QString figure = widget.property("figure").toString();
  if (!figure.isEmpty()) return figure == "lamp" || figure == "key";
  return qobject_cast<const FrameView*>(&widget) == nullptr;
}

inline void ExpectNoOverlap(FormWindow& window, const QSize& display) {
  std::vector<std::pair<const Control*, QWidget*>> widgets;
  for (Control* control : window.Mirrored().Controls()) {
    const ControlMirror* mirror = window.MirrorOf(*control);
    if (mirror == nullptr || mirror->Widget() == nullptr) continue;
    QWidget* widget = mirror->Widget();
    if (widget->isVisible() && StandsAlone(*widget)) widgets.emplace_back(control, widget);
  }
  const auto rect_of = [&](QWidget* widget) {
    return QRect(widget->mapTo(&window, QPoint()), widget->size());
  };
  for (std::size_t i = 0; i < widgets.size(); ++i) {
    for (std::size_t j = i + 1; j < widgets.size(); ++j) {
      auto [one, first] = widgets[i];
      auto [other, second] = widgets[j];
      if (first->isAncestorOf(second) || second->isAncestorOf(first)) continue;
      const QRect common = rect_of(first) & rect_of(second);
      EXPECT_TRUE(common.width() <= 1 || common.height() <= 1)
          << window.Mirrored().Name() << "." << one->Name() << " and " << other->Name() << " at "
          << display.width() << "x" << display.height() << " overlap by " << common.width() << "x"
          << common.height();
    }
  }
}

}  // namespace penlog
