// One control and its widget: the control's values go out to the widget where they differ, the
// widget's events come in as operator actions. Nothing else of the program hears of a widget.
#pragma once

#include <QAction>
#include <QObject>
#include <QWidget>
#include <utility>

#include "forms/operator_actions.h"

namespace penlog {

class ControlMirror : public QObject {
  Q_OBJECT

 public:
  ControlMirror(Control& control, QWidget* widget);
  ControlMirror(Control& control, QAction* entry);

  /// Brings the widget to what the control holds. `anew`: also what did not change.
  void Follow(bool anew);
  /// Whether a text, a lamp or what is in sight has changed since this was asked last.
  bool TakeChange() { return std::exchange(changed_, false); }
  Control& Mirrored() const { return control_; }
  QWidget* Widget() const { return widget_; }
  QAction* Entry() const { return entry_; }

  /// Queues what the operator did, with the stamp of what was shown last.
  void Post(OperatorAction action);
  void Post(ActionKind kind) { Post(kind, 0); }
  void Post(ActionKind kind, int number);

 private:
  void FollowFlags(bool anew);
  void FollowValues(bool anew);
  void FollowTexts(bool anew);
  void FollowEntry();
  bool ChangesRoom() const;
  void FollowInput();
  void FollowPlace();

  Control& control_;
  QWidget* widget_ = nullptr;
  QAction* entry_ = nullptr;
  ControlValues shadow_;  // what the widget shows
  bool visible_ = false;
  bool changed_ = true;
  bool enabled_ = false;
  bool touched_ = false;  // the operator changed the widget, so it may differ from the shadow
  ActionStamp stamp_;
};

}  // namespace penlog
