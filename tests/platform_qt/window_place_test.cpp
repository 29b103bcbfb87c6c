// Places of windows: the form's place moves the window, the window's place comes to the form.
#include <gtest/gtest.h>

#include "forms/restart_form.h"
#include "forms/warning_form.h"
#include "platform_qt/window_world.h"

namespace penlog {
namespace {

WindowPlace PlaceOf(const QWidget& window) {
  const QRect frame = window.frameGeometry();
  return {frame.left(), frame.top(), frame.width(), frame.height()};
}

TEST(WindowPlaces, AreToldToTheFormAsTheWindowOpens) {
  WindowWorld world;
  Show(frmZOLRestart);
  world.Settle();
  Yield();
  EXPECT_GT(frmZOLRestart.Window.width, 0);
  EXPECT_EQ(frmZOLRestart.Window, PlaceOf(world.mirror.WindowOf(frmZOLRestart)));
}

TEST(WindowPlaces, OfTheProgramMoveTheWindow) {
  WindowWorld world;
  Show(frmWarning);
  world.Settle();
  MoveWindow(frmWarning, {40, 30, 420, 380});
  world.Settle();
  EXPECT_EQ(PlaceOf(world.mirror.WindowOf(frmWarning)), (WindowPlace{40, 30, 420, 380}));
  Yield();
  EXPECT_EQ(frmWarning.Window, (WindowPlace{40, 30, 420, 380}));
}

TEST(WindowPlaces, OfTheOperatorComeToTheFormAndStay) {
  WindowWorld world;
  Show(frmWarning);
  MoveWindow(frmWarning, {40, 30, 420, 380});
  world.Settle();
  FormWindow& window = world.mirror.WindowOf(frmWarning);
  window.move(100, 90);
  window.resize(500, 400);
  world.Settle();
  Yield();
  world.Settle();
  EXPECT_EQ(frmWarning.Window, PlaceOf(window));
  EXPECT_EQ(frmWarning.Window.left, 100);
  EXPECT_EQ(frmWarning.Window.width, window.frameGeometry().width());
}

TEST(WindowPlaces, APictureAtAnotherSizeIsNone) {
  WindowWorld world;
  Show(frmWarning);
  MoveWindow(frmWarning, {40, 30, 420, 380});
  world.Settle();
  Yield();
  const WindowPlace before = frmWarning.Window;
  world.mirror.Shot("frmWarning", "/dev/null", 800, 600);
  Yield();
  EXPECT_EQ(frmWarning.Window, before);
}

TEST(WindowPlaces, AScreensOwnHeightKeepsTheSizeOfItsTexts) {
  WindowWorld world;
  Show(frmWarning);
  world.Settle();
  FormWindow& window = world.mirror.WindowOf(frmWarning);
  const double scale = window.Scale();
  const int height = window.SizeOn({800, 600}).height();
  frmWarning.DesignHeight = height + 90;
  world.Settle();
  EXPECT_EQ(window.SizeOn({800, 600}).height(), height + 90);
  EXPECT_NEAR(window.Scale(), scale, 0.051);
}

}  // namespace
}  // namespace penlog
