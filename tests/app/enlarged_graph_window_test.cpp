// The enlarged graph over the console, with windows: whatever stands on it, the depth and the strip
// stay in sight.
#include <gtest/gtest.h>

#include <QApplication>

#include "app/recording_windows.h"
#include "display/display_state.h"
#include "forms/enlarged_graph_form.h"
#include "forms/main_form.h"
#include "platform/boxes.h"

namespace penlog {
namespace {

struct ConsoleWindows : RecordingWindows {
  explicit ConsoleWindows(const QSize& display_size) {
    Show(Main);
    FillMain();
    ShowConsole(display_size);
  }

  void Open() {
    Press(Main, Main.pctGraph(2));
    Settle();
    Yield();
  }

  void ExpectInSight(const QRect& above) {
    for (const Control* control : std::initializer_list<Control*>{
             &Main.lblBigDepth, &Main.lblDepth, &Main.lblState, &Main.lblRowsOnDisk,
             &Main.lblRowsHeld, &Main.lblLastRow, &Main.lblSoundingFile, &Main.cmdStart}) {
      const QRect place = OnDisplay(*control);
      EXPECT_FALSE(place.intersects(above))
          << control->Name() << " ends at " << place.right() << ", " << place.bottom()
          << ", what stands on it begins at " << above.left() << ", " << above.top();
    }
  }
};

/// With the title that a window manager adds, and without one.
TEST(EnlargedGraphWindow, LeavesTheDepthAndTheStripInSight) {
  for (const QSize& display : {QSize(800, 600), QSize(1366, 768)}) {
    for (const int title : {0, 32}) {
      for (const char* depth : {"0.00m", "-100.00m", "328.08ft"}) {
        SCOPED_TRACE(testing::Message()
                     << display.width() << "x" << display.height() << " " << depth << " " << title);
        ConsoleWindows world(display);
        Main.lblBigDepth.Caption = depth;
        ShowChannels(30);
        world.Settle();
        Main.Window.top -= title;
        Main.Window.height += title;
        const WindowPlace console = Main.Window;
        world.Open();
        const FormWindow& window = world.mirror.WindowOf(EnlargedGraph);
        const QRect place = window.frameGeometry();
        ASSERT_TRUE(window.isVisible());
        EXPECT_EQ(place.right() + 1, console.left + console.width);
        EXPECT_EQ(place.bottom() + 1, console.top + console.height);
        EXPECT_GE(2 * place.width(), console.width);
        EXPECT_GE(4 * place.height(), 3 * console.height);
        world.ExpectInSight(place);
      }
    }
  }
}

TEST(EnlargedGraphWindow, ABoxOnItLeavesThemInSightToo) {
  for (const QSize& display : {QSize(800, 600), QSize(1366, 768)}) {
    SCOPED_TRACE(testing::Message() << display.width() << "x" << display.height());
    ConsoleWindows world(display);
    world.Open();
    world.Press(EnlargedGraph, EnlargedGraph.pctGraph);
    SetText(EnlargedGraph.txtXmin, "x");
    world.Press(EnlargedGraph, EnlargedGraph.cmdOK);
    ASSERT_FALSE(OpenBoxes().empty());
    world.Settle();
    int boxes = 0;
    for (const QWidget* top : QApplication::topLevelWidgets()) {
      if (!top->isVisible() || qobject_cast<const QDialog*>(top) == nullptr) continue;
      ++boxes;
      world.ExpectInSight(top->frameGeometry());
    }
    EXPECT_EQ(boxes, 1);
  }
}

TEST(EnlargedGraphWindow, ItsTextsHaveRoomAtItsPlace) {
  for (const bool longer : {false, true}) {
    UseTranslation(longer ? Longer : nullptr);
    for (const QSize& display : kDisplays) {
      ConsoleWindows world(display);
      settings.CombinePPPlots = 1;
      channels.ChannelLabel(1, 3) = "Pore pressure behind tip";
      channels.UnitLabel(1, 3) = "MPa";
      world.Open();
      world.Press(EnlargedGraph, EnlargedGraph.pctGraph);
      world.Settle();
      FormWindow& window = world.mirror.WindowOf(EnlargedGraph);
      ExpectNothingCut(window, display);
      ExpectNoOverlap(window, display);
    }
  }
  UseTranslation(nullptr);
}

/// On a display with a window manager: there a press on the console would cover it.
TEST(EnlargedGraphWindow, BelongsToTheConsole) {
  ConsoleWindows world({1366, 768});
  world.Open();
  const QString above = world.mirror.WindowOf(EnlargedGraph).property("above").toString();
  EXPECT_EQ(FindForm(above.toStdString()), &Main);
}

}  // namespace
}  // namespace penlog
