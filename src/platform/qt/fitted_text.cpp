#include "platform/qt/fitted_text.h"

#include <QAbstractButton>
#include <QFontMetrics>
#include <QLabel>
#include <QStyleOptionButton>
#include <QVariant>
#include <algorithm>

#include "platform/qt/look.h"
#include "platform/qt/widget_values.h"

namespace penlog {

namespace {

constexpr char kOwnPixels[] = "ownPixels";

QSize NeedsOfLabel(const QLabel& label, const QFont& font) {
  const int flags = static_cast<int>(label.alignment()) | (label.wordWrap() ? Qt::TextWordWrap : 0);
  return QFontMetrics(font).boundingRect(label.contentsRect(), flags, label.text()).size();
}

QSize NeedsWith(const QWidget& widget, const QFont& font) {
  if (auto* label = qobject_cast<const QLabel*>(&widget)) return NeedsOfLabel(*label, font);
  if (auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
    return QFontMetrics(font).size(Qt::TextShowMnemonic, button->text());
  }
  return {};
}

bool Fits(const QWidget& widget, int pixels) {
  QFont font = widget.font();
  font.setPixelSize(pixels);
  const QSize needs = NeedsWith(widget, font);
  const QSize room = TextRoom(widget);
  return needs.width() <= room.width() && needs.height() <= room.height();
}

}  // namespace

QSize TextRoom(const QWidget& widget) {
  if (auto* label = qobject_cast<const QLabel*>(&widget)) return label->contentsRect().size();
  auto* button = qobject_cast<const QAbstractButton*>(&widget);
  if (button == nullptr) return {};
  QStyleOptionButton option;
  option.initFrom(button);
  const auto part =
      button->isCheckable() ? QStyle::SE_CheckBoxContents : QStyle::SE_PushButtonContents;
  return button->style()->subElementRect(part, &option, button).size();
}

QSize TextNeeds(const QWidget& widget) {
  return NeedsWith(widget, widget.font());
}

bool FitText(QWidget& widget) {
  const bool holds_text = qobject_cast<QLabel*>(&widget) || qobject_cast<QAbstractButton*>(&widget);
  if (!holds_text || !widget.isVisible()) return false;
  if (!widget.property(kOwnPixels).isValid()) {
    widget.ensurePolished();
    widget.setProperty(kOwnPixels, widget.font().pixelSize());
  }
  const int own = widget.property(kOwnPixels).toInt();
  const int least = std::max(kLeastTextPixels, static_cast<int>(own * kLeastShare));
  int pixels = own;
  while (pixels > least && !Fits(widget, pixels)) --pixels;
  const int fitted = pixels == own ? 0 : pixels;
  if (widget.property(kFittedPixels).toInt() == fitted) return false;
  widget.setProperty(kFittedPixels, fitted);
  return true;
}

void ForgetFit(QWidget& widget) {
  widget.setProperty(kFittedPixels, 0);
  widget.setProperty(kOwnPixels, QVariant());
}

}  // namespace penlog
