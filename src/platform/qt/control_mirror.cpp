#include "platform/qt/control_mirror.h"

#include <QAbstractButton>
#include <QLabel>
#include <cmath>
#include <utility>

#include "platform/qt/picture_view.h"
#include "platform/qt/widget_values.h"
#include "platform/view.h"

namespace penlog {

namespace {

/// A place in fractions of the container, as pixels.
QRect Placed(const Place& place, const QSize& container) {
  const auto pixels = [](double fraction, int whole) {
    return static_cast<int>(std::lround(fraction * whole));
  };
  return {pixels(place.left, container.width()), pixels(place.top, container.height()),
          std::max(1, pixels(place.width, container.width())),
          std::max(1, pixels(place.height, container.height()))};
}

}  // namespace

ControlMirror::ControlMirror(Control& control, QWidget* widget)
    : control_(control), widget_(widget) {
  Follow(true);
}

ControlMirror::ControlMirror(Control& control, QAction* entry) : control_(control), entry_(entry) {
  Follow(true);
}

void ControlMirror::Follow(bool anew) {
  FollowFlags(anew);
  FollowValues(anew);
  if (widget_ != nullptr) {
    FollowInput();
    FollowPlace();
  }
  if (auto* picture = qobject_cast<PictureView*>(widget_)) {
    picture->Follow(static_cast<const Picture&>(control_));
  }
  stamp_ = StampOf(control_.Owner(), &control_);
}

void ControlMirror::FollowFlags(bool anew) {
  const bool visible = control_.Visible;
  const bool enabled = control_.Enabled;
  if (visible != visible_ || anew) {
    visible_ = visible;
    changed_ = true;
    widget_ != nullptr ? widget_->setVisible(visible) : entry_->setVisible(visible);
  }
  if (enabled != enabled_ || anew) {
    enabled_ = enabled;
    widget_ != nullptr ? widget_->setEnabled(enabled) : entry_->setEnabled(enabled);
  }
}

void ControlMirror::FollowValues(bool anew) {
  const ControlValues& values = control_;
  if (!anew && values == shadow_) return;
  if (entry_ != nullptr) {
    FollowEntry();
  } else {
    FollowTexts(anew);
  }
  shadow_ = values;
}

/// An entry that is chosen ticks itself: only the program says what is ticked.
void ControlMirror::FollowEntry() {
  entry_->setText(QString::fromStdString(ShownText(control_.Caption)).replace("&", "&&"));
  if (entry_->isCheckable() && entry_->isChecked() != control_.Checked) {
    entry_->setChecked(control_.Checked);
  }
}

/// Labels and buttons take the room of their text, lamps say their state; a value has its room.
bool ControlMirror::ChangesRoom() const {
  const bool has_text = qobject_cast<QLabel*>(widget_) != nullptr ||
                        qobject_cast<QAbstractButton*>(widget_) != nullptr;
  if (has_text) return control_.Caption != shadow_.Caption;
  return control_.Fill != shadow_.Fill || control_.FillColor != shadow_.FillColor ||
         (control_.Kind() == ControlKind::Shape && control_.Caption != shadow_.Caption);
}

void ControlMirror::FollowTexts(bool anew) {
  changed_ = changed_ || anew || ChangesRoom();
  if (anew || control_.Caption != shadow_.Caption) ShowCaption(*widget_, control_);
  ShowColours(*widget_, control_);
  if (anew || control_.List != shadow_.List || control_.Beside != shadow_.Beside) {
    ShowEntries(*widget_, control_);
    touched_ = true;
  }
  touched_ = touched_ || anew || control_.Text != shadow_.Text ||
             control_.Checked != shadow_.Checked || control_.ListIndex != shadow_.ListIndex;
}

void ControlMirror::FollowInput() {
  // While an action waits the widget is ahead of the control: it keeps what the operator did.
  if (!touched_ || ActionWaits(control_)) return;
  ShowText(*widget_, control_);
  ShowCheck(*widget_, control_);
  ShowChoice(*widget_, control_);
  touched_ = false;
}

void ControlMirror::FollowPlace() {
  const QWidget* parent = widget_->parentWidget();
  if (!control_.Where.set || parent == nullptr) return;
  const QRect placed = Placed(control_.Where, parent->size());
  if (widget_->geometry() != placed) widget_->setGeometry(placed);
}

void ControlMirror::Post(OperatorAction action) {
  action.form = &control_.Owner();
  action.control = &control_;
  action.stamp = stamp_;
  touched_ = true;
  PostAction(std::move(action));
}

void ControlMirror::Post(ActionKind kind, int number) {
  OperatorAction action;
  action.kind = kind;
  action.number = number;
  Post(std::move(action));
}

}  // namespace penlog
