// A world with windows: the mirror, and a record of what the operator's actions came to.
#pragma once

#include <QApplication>
#include <string>
#include <vector>

#include "platform/qt/mirror.h"
#include "support/world.h"

namespace penlog {

struct WindowWorld : World {
  WindowWorld() {
    OnActionServed([this](const OperatorAction& action, bool was_served) {
      (was_served ? served : refused).push_back(Named(action));
    });
  }

  static std::string Named(const OperatorAction& action) {
    static const char* kinds[] = {"click",  "press", "release", "type",
                                  "select", "check", "point",   "close"};
    std::string name = kinds[static_cast<int>(action.kind)];
    if (action.control != nullptr) name += " " + action.control->Name();
    if (action.kind == ActionKind::Type) name += " " + action.text;
    if (action.kind == ActionKind::Select || action.kind == ActionKind::Check) {
      name += " " + std::to_string(action.number);
    }
    return name;
  }

  /// The windows as of now, laid out.
  void Settle() {
    mirror.Follow();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QCoreApplication::processEvents();
    mirror.Follow();
  }

  template <class Widget>
  Widget& Find(Control& control) {
    auto* widget = mirror.WindowOf(control.Owner()).MirrorOf(control)->Widget();
    return *qobject_cast<Widget*>(widget);
  }
  QWidget& Find(Control& control) { return Find<QWidget>(control); }

  /// Does with the widget what a hand does, and serves it; why it failed, empty if it did not.
  std::string Hand(ActionKind kind, Control& control, int number = 0, std::string text = {}) {
    OperatorAction action;
    action.kind = kind;
    action.form = &control.Owner();
    action.control = &control;
    action.number = number;
    action.text = std::move(text);
    action.stamp = StampOf(*action.form, &control);
    std::string why;
    mirror.Act(action, why);
    Yield();
    return why;
  }

  WindowMirror mirror;
  std::vector<std::string> served;
  std::vector<std::string> refused;
};

using Names = std::vector<std::string>;

}  // namespace penlog
