// Whether the texts of a window have room, and whether its widgets keep off each other.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QStyleOptionButton>
#include <vector>

#include "platform/qt/columns_view.h"
#include "platform/qt/frame_view.h"
#include "platform/qt/mirror.h"
#include "platform/qt/shape_view.h"
#include "platform/qt/text_view.h"
#include "platform/qt/widget_values.h"

namespace penlog {

inline const QSize kDisplays[] = {{800, 600}, {1024, 768}, {1366, 768}, {1920, 1080}, {3840, 2160}};

/// A translation that is 30 % longer: words get longer, sentences get more of them.
inline std::string Longer(std::string_view text) {
  if (text.find(".cpt") != std::string_view::npos) return std::string(text);  // a file's name
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

/// How much of the label's text there is no room for; empty if all is seen.
inline QString CutOfLabel(const QLabel& label) {
  const QRect room = label.contentsRect();
  const int flags = static_cast<int>(label.alignment()) | (label.wordWrap() ? Qt::TextWordWrap : 0);
  const QRect needed = label.fontMetrics().boundingRect(room, flags, label.text());
  if (needed.width() <= room.width() + 1 && needed.height() <= room.height() + 1) return {};
  return QString("needs %1x%2, has %3x%4")
      .arg(needed.width())
      .arg(needed.height())
      .arg(room.width())
      .arg(room.height());
}

inline QString CutOfButton(const QAbstractButton& button) {
  QStyleOptionButton option;
  option.initFrom(&button);
  const auto part =
      button.isCheckable() ? QStyle::SE_CheckBoxContents : QStyle::SE_PushButtonContents;
  const QRect room = button.style()->subElementRect(part, &option, &button);
  const QSize needed = button.fontMetrics().size(Qt::TextShowMnemonic, button.text());
  if (needed.width() <= room.width() + 1 && needed.height() <= room.height() + 1) return {};
  return QString("needs %1x%2, has %3x%4")
      .arg(needed.width())
      .arg(needed.height())
      .arg(room.width())
      .arg(room.height());
}

/// A text view draws smaller instead of cutting; below six tenths it would not be read. One that
/// fills its place has no size of its own.
inline QString CutOfView(const TextView& view) {
  const int drawn = view.FittingFont().pixelSize();
  const int wanted = view.font().pixelSize();
  const bool fills = view.property("fill").toBool();
  if (fills ? drawn >= 10 : 10 * drawn >= 6 * wanted) return {};
  return QString("is drawn with %1 pixels instead of %2").arg(drawn).arg(wanted);
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
  return {};
}

inline void ExpectNothingCut(FormWindow& window, const QSize& display) {
  LayOut(window, display);
  for (Control* control : window.Mirrored().Controls()) {
    const ControlMirror* mirror = window.MirrorOf(*control);
    if (mirror == nullptr || mirror->Widget() == nullptr || !control->IsShown()) continue;
    const bool lamp = qobject_cast<ShapeView*>(mirror->Widget()) != nullptr;
    if (!lamp && CaptionOf(*mirror->Widget()).isEmpty()) continue;
    const QString cut = CutOf(*mirror->Widget());
    EXPECT_TRUE(cut.isEmpty()) << window.Mirrored().Name() << "." << control->Name() << " at "
                               << display.width() << "x" << display.height() << ": "
                               << cut.toStdString();
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
