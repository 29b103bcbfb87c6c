// The console while rows are recorded, with windows: its own is as large as the display.
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QRect>

#include "app/wiring.h"
#include "display/graph_world.h"
#include "forms/main_form.h"
#include "platform_qt/demo_values.h"
#include "platform_qt/room.h"

namespace penlog {

struct RecordingWindows : GraphWorld {
  RecordingWindows() : GraphWorld({1, 3}) {
    WireScreens();
    Main.Load = nullptr;
  }

  /// Two rows, and the console shown over a display of that size.
  void ShowConsole(const QSize& display_size) {
    Main.lblRowsHeld.Visible = Main.lblRowsHeldCaption.Visible = true;
    Record(0.25F, {{1, 4.5F}, {3, -2.5F}});
    Record(0.5F, {{1, 4.5F}, {3, 3}});
    Settle();
    mirror.WindowOf(Main).setGeometry(QRect(QPoint(0, 0), display_size));
    Settle();
    Yield();
  }

  /// The windows follow, and their layouts come to rest.
  void Settle() {
    for (int i = 0; i < 3; ++i) {
      mirror.Follow();
      QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
      QCoreApplication::processEvents();
    }
  }

  /// Where a control stands on the display, in pixels.
  QRect OnDisplay(const Control& control) {
    const QWidget* widget = mirror.WindowOf(control.Owner()).MirrorOf(control)->Widget();
    return {widget->mapToGlobal(QPoint()), widget->size()};
  }

  WindowMirror mirror;
};

}  // namespace penlog
