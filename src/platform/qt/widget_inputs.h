// What the operator does with a widget, as actions of its control. The slots only queue.
#pragma once

#include <QObject>

#include "platform/qt/control_mirror.h"

namespace penlog {

/// Joins the widget's or the menu entry's events to the mirror.
void JoinInputs(ControlMirror& mirror);

/// Watches a button that acts on press and release. A press is the left button or the blank key
/// going down on it; a key's repeat is none. The release comes with the button or the key going
/// up, and also when the button loses the pointer, the focus or its window, is hidden or disabled:
/// held down is only what a finger holds down. Coming back with the pointer is no new press.
class HoldWatcher : public QObject {
  Q_OBJECT

 public:
  explicit HoldWatcher(ControlMirror& mirror);
  ~HoldWatcher() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool Presses(const QEvent& event) const;
  bool Releases(const QEvent& event) const;
  void Press();
  void Release();

  bool TakesFocusOnly(const QEvent& event);
  void SetDown(bool down);

  ControlMirror& mirror_;
  bool down_ = false;
};

/// True while a button is held down: what opens then must leave it the focus.
bool AnyButtonHeld();

}  // namespace penlog
