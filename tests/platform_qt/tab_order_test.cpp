// The tabulator on every screen: it reaches what can be used, in the order in which a person reads,
// and on the console Enter and Escape do nothing costly wherever it stands.
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QPushButton>
#include <algorithm>
#include <set>

#include "forms/enlarged_graph_form.h"
#include "forms/main_form.h"
#include "forms/restart_form.h"
#include "platform_qt/demo_values.h"
#include "platform_qt/room.h"
#include "platform_qt/window_world.h"

namespace penlog {
namespace {

void PressKey(QWidget& widget, int key) {
  QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
  QApplication::sendEvent(&widget, &event);
}

/// Where the tabulator stands, from the first place until it comes round.
std::vector<QWidget*> TabWalk(FormWindow& window) {
  constexpr int kMost = 200;
  std::vector<QWidget*> walk;
  if (window.focusWidget() != nullptr) window.focusWidget()->clearFocus();
  for (int i = 0; i < kMost; ++i) {
    QWidget* now = window.focusWidget();
    PressKey(now != nullptr ? *now : static_cast<QWidget&>(window), Qt::Key_Tab);
    QWidget* next = window.focusWidget();
    if (next == nullptr || std::find(walk.begin(), walk.end(), next) != walk.end()) break;
    walk.push_back(next);
  }
  // It comes round: the place that is read first begins.
  const auto first = std::find_if(walk.begin(), walk.end(), [&](QWidget* widget) {
    for (QWidget* other = window.nextInFocusChain(); other != &window;
         other = other->nextInFocusChain()) {
      if (std::find(walk.begin(), walk.end(), other) != walk.end()) return other == widget;
    }
    return true;
  });
  std::rotate(walk.begin(), first, walk.end());
  return walk;
}

QRect PlaceIn(const FormWindow& window, const QWidget& widget) {
  return {widget.mapTo(&window, QPoint()), widget.size()};
}

/// The widget and all above it, the window first.
std::vector<const QWidget*> PathTo(const FormWindow& window, const QWidget& widget) {
  std::vector<const QWidget*> path;
  for (const QWidget* up = &widget; up != &window; up = up->parentWidget()) path.push_back(up);
  std::reverse(path.begin(), path.end());
  return path;
}

/// A person reads `second` before `first`: it stands left of it in the same row, or above it. What
/// stands in one group (a frame, a column of the arrangement) is compared as that group, so that a
/// column is read to its end before the next one.
bool IsReadBefore(const FormWindow& window, const QWidget& second, const QWidget& first) {
  const auto one = PathTo(window, first);
  const auto other = PathTo(window, second);
  std::size_t fork = 0;
  while (fork + 1 < std::min(one.size(), other.size()) && one[fork] == other[fork]) ++fork;
  const QRect there = PlaceIn(window, *one[fork]);
  const QRect here = PlaceIn(window, *other[fork]);
  const int together =
      std::min(there.bottom(), here.bottom()) - std::max(there.top(), here.top()) + 1;
  const bool same_row = 2 * together > std::min(there.height(), here.height());
  if (same_row) return here.right() <= there.left();
  const bool right_of_it = here.left() >= there.right();
  return here.bottom() <= there.top() && !right_of_it;
}

std::string NameOf(const QWidget& widget) {
  return widget.objectName().toStdString();
}

void ExpectReadingOrder(FormWindow& window) {
  const std::vector<QWidget*> walk = TabWalk(window);
  for (std::size_t i = 0; i < walk.size(); ++i) {
    for (std::size_t j = i + 1; j < walk.size(); ++j) {
      EXPECT_FALSE(IsReadBefore(window, *walk[j], *walk[i]))
          << window.Mirrored().Name() << " at " << window.width() << ": " << NameOf(*walk[i])
          << " comes before " << NameOf(*walk[j]);
    }
  }
}

/// The widget that takes the focus for a control.
const QWidget* FocusOf(const QWidget& widget) {
  return widget.focusProxy() != nullptr ? widget.focusProxy() : &widget;
}

void ExpectAllReached(FormWindow& window) {
  const std::vector<QWidget*> walk = TabWalk(window);
  for (Control* control : window.Mirrored().Controls()) {
    if (!IsInput(*control) || !control->IsShown()) continue;
    const QWidget& widget = *window.MirrorOf(*control)->Widget();
    if (!widget.isEnabled()) continue;
    EXPECT_TRUE(std::find(walk.begin(), walk.end(), FocusOf(widget)) != walk.end())
        << window.Mirrored().Name() << "." << control->Name() << " at " << window.width();
  }
}

void FillAll() {
  FillMain();
  RaiseNotices();
  FillSetups();
  FillStartUp();
  Main.frmTakeFinalBaseline.Visible = true;
  EnlargedGraph.frmSetXAxis.Visible = true;
  SetupDisplay.frmSelectPPType.Visible = true;
}

struct Tab : testing::Test {
  void ForEachScreen(void (*look)(FormWindow& window)) {
    for (const bool full : {false, true}) {
      World world;
      if (full) FillAll();
      for (Form* form : AllForms()) {
        Show(*form);
        FormWindow window(*form);
        // A narrow and a wide one: areas turn.
        for (const QSize& display : {QSize(800, 600), QSize(1366, 768)}) {
          LayOut(window, display);
          look(window);
        }
      }
    }
  }
};

TEST_F(Tab, GoesInTheOrderOfReading) {
  ForEachScreen(ExpectReadingOrder);
}

TEST_F(Tab, ReachesAllThatCanBeUsed) {
  ForEachScreen(ExpectAllReached);
}

/// The test of the test.
TEST_F(Tab, AgainstTheOrderOfReadingIsFound) {
  World world;
  FillSetups();
  Show(SetupSounding);
  FormWindow window(SetupSounding);
  LayOut(window, {1366, 768});
  const QWidget& upper = *window.MirrorOf(SetupSounding.txtOperator)->Widget();
  const QWidget& lower = *window.MirrorOf(SetupSounding.txtLocation)->Widget();
  EXPECT_TRUE(IsReadBefore(window, upper, lower));
  EXPECT_FALSE(IsReadBefore(window, lower, upper));
  const QWidget& left = *window.MirrorOf(SetupSounding.Command1)->Widget();
  EXPECT_TRUE(IsReadBefore(window, left, upper));
  EXPECT_FALSE(IsReadBefore(window, upper, left));
}

TEST_F(Tab, OrderAgainstTheReadingIsToldByName) {
  World world;
  Show(frmZOLRestart);
  FormWindow window(frmZOLRestart);
  LayOut(window, {1366, 768});
  QWidget& yes = *window.MirrorOf(frmZOLRestart.cmdYes)->Widget();
  QWidget& no = *window.MirrorOf(frmZOLRestart.cmdNo)->Widget();
  const QRect left = yes.geometry();
  yes.setGeometry(no.geometry());
  no.setGeometry(left);
  EXPECT_NONFATAL_FAILURE(ExpectReadingOrder(window), "cmdYes comes before cmdNo");
}

TEST_F(Tab, AButtonThatIsPassedByIsToldByName) {
  World world;
  Show(frmZOLRestart);
  FormWindow window(frmZOLRestart);
  LayOut(window, {1366, 768});
  window.MirrorOf(frmZOLRestart.cmdNo)->Widget()->setFocusPolicy(Qt::NoFocus);
  EXPECT_NONFATAL_FAILURE(ExpectAllReached(window), "frmZOLRestart.cmdNo");
}

/// Whatever has the focus while a sounding runs: of all buttons Enter and Escape press only those
/// that neither stop, start nor override, and that end nothing.
TEST(ConsoleKeys, PressNothingCostlyFromAnyPlace) {
  WindowWorld world;
  FillMain();
  FillAll();
  Show(Main);
  world.Settle();
  FormWindow& window = world.mirror.WindowOf(Main);
  const std::vector<QWidget*> walk = TabWalk(window);
  EXPECT_GE(walk.size(), 8U);
  for (QWidget* place : walk) {
    for (const int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) {
      place->setFocus();
      PressKey(*place, key);
      Yield();
      world.Settle();
    }
  }
  const std::set<std::string> costly = {
      "click cmdStart",      "click cmdResetQuits", "press cmdResetQuits",
      "click cmdWarningOK1", "click cmdWarningOK2", "click Command2",
      "click Command3",      "click cmdExit",       "click cmdTakeBaseline"};
  for (const std::string& served : world.served) {
    EXPECT_FALSE(costly.contains(served)) << served;
  }
}

}  // namespace
}  // namespace penlog
