// Enter, Escape, the stop's own key and the letters of buttons.
#include "platform/qt/window_keys.h"

#include <QKeyEvent>
#include <QShortcutEvent>

#include "forms/create_new_directory_form.h"
#include "forms/main_form.h"
#include "forms/restart_form.h"
#include "forms/resume_depth_form.h"
#include "forms/start_up_form.h"
#include "platform/qt/form_window.h"
#include "platform/qt/stop_key.h"
#include "platform_qt/demo_values.h"
#include "platform_qt/window_world.h"

namespace penlog {
namespace {

void Key(QWidget& widget, int key, bool repeat = false) {
  QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, {}, repeat);
  QApplication::sendEvent(&widget, &event);
  Yield();
}

struct Keys : testing::Test {
  FormWindow& Open(Form& form) {
    Show(form);
    world.Settle();
    return world.mirror.WindowOf(form);
  }
  WindowWorld world;
};

TEST_F(Keys, EnterGoesOnAndEscapeGoesBack) {
  FormWindow& window = Open(frmZOLRestart);
  Key(window, Qt::Key_Return);
  Key(window, Qt::Key_Enter);
  Key(window, Qt::Key_Escape);
  EXPECT_EQ(world.served, (Names{"click cmdYes", "click cmdYes", "click cmdNo"}));
}

TEST_F(Keys, EnterPressesTheButtonThatHasTheFocus) {
  FormWindow& window = Open(frmCreateNewDirectory);
  world.Find(frmCreateNewDirectory.Command2).setFocus();
  Key(window, Qt::Key_Return);
  EXPECT_EQ(world.served, Names{"click Command2"});
}

TEST_F(Keys, ARepeatedEnterCountsOnce) {
  FormWindow& window = Open(frmZOLRestart);
  Key(window, Qt::Key_Return, true);
  EXPECT_EQ(world.served, Names{});
}

TEST_F(Keys, ADisabledButtonTakesNone) {
  frmZOLRestart.cmdYes.Enabled = false;
  Key(Open(frmZOLRestart), Qt::Key_Return);
  EXPECT_NE(world.served, Names{"click cmdYes"});
}

TEST_F(Keys, OnTheConsoleNoCommonKeyStopsStartsOrOverrides) {
  FillMain();
  RaiseNotices();
  Main.frmTakeFinalBaseline.Visible = true;
  FormWindow& window = Open(Main);
  Main.cmdWarningCancel.Visible = false;
  world.Settle();
  for (Control* control :
       std::initializer_list<Control*>{&Main.cmdStart, &Main.cmdResetQuits, &Main.cmdWarningOK1,
                                       &Main.cmdWarningOK2, &Main.Command2, &Main.Command3}) {
    world.Find(*control).setFocus();
    for (const int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) Key(window, key);
  }
  if (window.focusWidget() != nullptr) window.focusWidget()->clearFocus();
  for (const int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) Key(window, key);
  EXPECT_EQ(world.served, Names{});
}

/// A depth at which rows are taken can't be unsaid.
TEST_F(Keys, ToldTheDepthOfAResumeByNoCommonKey) {
  FormWindow& window = Open(frmResumeDepthStatus);
  for (const int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) Key(window, key);
  world.Find(frmResumeDepthStatus.lblDepthReached).setFocus();
  for (const int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape}) Key(window, key);
  EXPECT_EQ(world.served, Names{});
}

/// Who types what was drilled and presses Enter does not mean the last depth.
TEST_F(Keys, EnterInTheDistanceDrilledResumesNothingAndEscapeLeavesThePanel) {
  StartUp.frmResume.Visible = true;
  StartUp.cmdStart.Enabled = false;
  FormWindow& window = Open(StartUp);
  world.Find(StartUp.txtDistanceDrilled).setFocus();
  for (const int key : {Qt::Key_Return, Qt::Key_Enter}) Key(window, key);
  EXPECT_EQ(world.served, Names{});
  Key(window, Qt::Key_Escape);
  EXPECT_EQ(world.served, Names{"click cmdCancel"});
}

TEST_F(Keys, EscapeTakesTheStopDialogBack) {
  FillMain();
  Main.frmLocalWarning.Visible = true;
  Key(Open(Main), Qt::Key_Escape);
  EXPECT_EQ(world.served, Names{"click cmdWarningCancel"});
}

TEST_F(Keys, TheStopsKeyStopsFromEachWindowAndOnce) {
  FillMain();
  Open(Main);
  FormWindow& other = Open(frmWarning);
  Key(other, kStopKey);
  Key(other, kStopKey, true);
  EXPECT_EQ(world.served, Names{"click cmdStart"});
  Key(world.mirror.WindowOf(Main), kStopKey);
  EXPECT_EQ(world.served, (Names{"click cmdStart", "click cmdStart"}));
}

TEST_F(Keys, TheStopsKeyStartsNothing) {
  Main.cmdStart.Enabled = true;
  Key(Open(Main), kStopKey);
  EXPECT_EQ(world.served, Names{});
}

TEST_F(Keys, ALetterOnlyBringsTheFocusToWhatIsHeldDown) {
  FillMain();
  Main.cmdResetQuits.Press = [] {};
  Open(Main);
  auto& button = world.Find<QPushButton>(Main.cmdResetQuits);
  QShortcutEvent letter(QKeySequence("Alt+Q"), 1);
  QApplication::sendEvent(&button, &letter);
  Yield();
  EXPECT_EQ(world.served, Names{});
  EXPECT_EQ(world.mirror.WindowOf(Main).focusWidget(), &button);
  Main.cmdResetQuits.Press = nullptr;
}

}  // namespace
}  // namespace penlog
