// What the operator does with the widgets, as actions of the controls.
#include <QAbstractButton>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>

#include "forms/main_form.h"
#include "forms/setup_display_form.h"
#include "forms/setup_sounding_form.h"
#include "forms/specify_truck_interface_form.h"
#include "forms/warning_form.h"
#include "platform/qt/folder_view.h"
#include "platform/qt/widget_inputs.h"
#include "platform_qt/window_world.h"

namespace penlog {
namespace {

void Mouse(QWidget& widget, QEvent::Type type, QPoint place) {
  QMouseEvent event(type, place, widget.mapToGlobal(place), Qt::LeftButton,
                    type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                    Qt::NoModifier);
  QApplication::sendEvent(&widget, &event);
}

void Key(QWidget& widget, QEvent::Type type, int key, bool repeat = false,
         const QString& text = {}) {
  QKeyEvent event(type, key, Qt::NoModifier, text, repeat);
  QApplication::sendEvent(&widget, &event);
}

void TypeKey(QWidget& widget, char letter) {
  Key(widget, QEvent::KeyPress, letter, false, QString(letter));
  Key(widget, QEvent::KeyRelease, letter, false, QString(letter));
}

struct Field : testing::Test {
  Field() {
    Show(SetupSounding);
    world.Settle();
  }
  WindowWorld world;
  TextBox& control = SetupSounding.txtOperator;
  QLineEdit& field = world.Find<QLineEdit>(control);
};

TEST_F(Field, SendsOneActionForEachChange) {
  TypeKey(field, 'A');
  TypeKey(field, 'B');
  Yield();
  EXPECT_EQ(world.served, (Names{"type txtOperator A", "type txtOperator AB"}));
  EXPECT_EQ(control.Text, "AB");
}

TEST_F(Field, IsNotOverwrittenWithItsOwnText) {
  TypeKey(field, 'A');
  world.mirror.Follow();  // the action still waits: the control holds the old text
  EXPECT_EQ(field.text(), "A");
  TypeKey(field, 'B');
  world.mirror.Follow();
  EXPECT_EQ(field.text(), "AB");
  Yield();
  world.mirror.Follow();
  EXPECT_EQ(field.text(), "AB");
}

TEST_F(Field, KeepsTheCursorWhereTheOperatorTypes) {
  control.Text = "field";
  world.mirror.Follow();
  field.setCursorPosition(2);
  TypeKey(field, 'X');
  Yield();
  world.mirror.Follow();
  EXPECT_EQ(field.text(), "fiXeld");
  EXPECT_EQ(field.cursorPosition(), 3);
}

TEST_F(Field, ShowsWhatTheProgramSets) {
  SetText(control, "J. Field");
  world.mirror.Follow();
  EXPECT_EQ(field.text(), "J. Field");
  EXPECT_TRUE(world.served.empty());
}

TEST_F(Field, ShowsWhatTheHandlerMadeOfTheText) {
  control.Change = [&] { control.Text = "handled"; };
  TypeKey(field, 'A');
  Yield();
  world.mirror.Follow();
  control.Change = nullptr;
  EXPECT_EQ(field.text(), "handled");
}

TEST_F(Field, TakesBackWhatWasRefused) {
  PostBox("CHECK THE CONE");
  TypeKey(field, 'A');
  Yield();
  world.mirror.Follow();
  EXPECT_EQ(world.refused, Names{"type txtOperator A"});
  EXPECT_EQ(field.text(), "");
}

struct Hold : testing::Test {
  Hold() {
    Main.cmdResetQuits.Visible = true;
    Main.cmdResetQuits.Press = [this] { ++presses; };
    Main.cmdResetQuits.Release = [this] { ++releases; };
    Show(Main);
    world.Settle();
  }
  ~Hold() override {
    Main.cmdResetQuits.Press = nullptr;
    Main.cmdResetQuits.Release = nullptr;
  }
  void Down() { Mouse(button, QEvent::MouseButtonPress, {20, 20}); }
  void Up() { Mouse(button, QEvent::MouseButtonRelease, {20, 20}); }
  void ExpectHeld() {
    Yield();
    EXPECT_EQ(presses, 1);
    EXPECT_EQ(releases, 0);
  }
  void ExpectReleasedOnce() {
    Yield();
    EXPECT_EQ(presses, 1);
    EXPECT_EQ(releases, 1);
  }

  WindowWorld world;
  QPushButton& button = world.Find<QPushButton>(Main.cmdResetQuits);
  int presses = 0;
  int releases = 0;
};

TEST_F(Hold, LastsFromDownToUp) {
  Down();
  ExpectHeld();
  Up();
  ExpectReleasedOnce();
  EXPECT_EQ(world.served, (Names{"press cmdResetQuits", "release cmdResetQuits"}));
}

TEST_F(Hold, EndsWhenThePointerLeaves) {
  Down();
  ExpectHeld();
  Mouse(button, QEvent::MouseMove, {-10, 20});
  ExpectReleasedOnce();
}

TEST_F(Hold, ComingBackWithThePointerIsNoNewPress) {
  Down();
  Mouse(button, QEvent::MouseMove, {-10, 20});
  Mouse(button, QEvent::MouseMove, {20, 20});
  Up();
  ExpectReleasedOnce();
}

TEST_F(Hold, EndsWhenTheFocusIsLost) {
  Down();
  QFocusEvent event(QEvent::FocusOut);
  QApplication::sendEvent(&button, &event);
  ExpectReleasedOnce();
}

TEST_F(Hold, EndsWhenTheWindowIsLost) {
  Down();
  QEvent event(QEvent::WindowDeactivate);
  QApplication::sendEvent(&button, &event);
  ExpectReleasedOnce();
}

TEST_F(Hold, EndsWhenTheButtonIsHidden) {
  Down();
  ExpectHeld();
  Main.cmdResetQuits.Visible = false;
  world.mirror.Follow();
  ExpectReleasedOnce();
}

TEST_F(Hold, EndsWhenTheButtonIsDisabled) {
  Down();
  ExpectHeld();
  Main.cmdResetQuits.Enabled = false;
  world.mirror.Follow();
  ExpectReleasedOnce();
}

TEST_F(Hold, KeyRepeatIsNoNewPress) {
  Key(button, QEvent::KeyPress, Qt::Key_Space);
  for (int i = 0; i < 5; ++i) {
    Key(button, QEvent::KeyRelease, Qt::Key_Space, true);
    Key(button, QEvent::KeyPress, Qt::Key_Space, true);
  }
  ExpectHeld();
  Key(button, QEvent::KeyRelease, Qt::Key_Space);
  ExpectReleasedOnce();
}

TEST_F(Hold, RightButtonDoesNotPress) {
  QMouseEvent event(QEvent::MouseButtonPress, QPointF(20, 20), button.mapToGlobal(QPointF(20, 20)),
                    Qt::RightButton, Qt::RightButton, Qt::NoModifier);
  QApplication::sendEvent(&button, &event);
  Yield();
  EXPECT_EQ(presses, 0);
}

TEST_F(Hold, LeavesTheFocusToTheButtonWhenABoxComesUp) {
  const auto leaves_focus = [&] {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->inherits("penlog::BoxWindow") && window->isVisible()) {
        return window->testAttribute(Qt::WA_ShowWithoutActivating);
      }
    }
    ADD_FAILURE() << "no box is open";
    return false;
  };
  Down();
  EXPECT_TRUE(AnyButtonHeld());
  PostBox("WHILE IT IS HELD");
  world.mirror.Follow();
  EXPECT_TRUE(leaves_focus());
  ResetBoxes();
  Up();
  EXPECT_FALSE(AnyButtonHeld());
  world.mirror.Follow();
  PostBox("LATER");
  world.mirror.Follow();
  EXPECT_FALSE(leaves_focus());
}

TEST_F(Hold, WorksBelowABox) {
  PostBox("SOMETHING ELSE");
  world.mirror.Follow();
  Down();
  ExpectHeld();
  Up();
  ExpectReleasedOnce();
}

TEST(Inputs, AClickIsOneClick) {
  WindowWorld world;
  Show(Main);
  world.Settle();
  world.Find<QPushButton>(Main.cmdTakeBaseline).click();
  Yield();
  EXPECT_EQ(world.served, Names{"click cmdTakeBaseline"});
}

TEST(Inputs, AClickOnWhatWasDisabledSinceItWasShownIsStale) {
  WindowWorld world;
  Show(Main);
  world.Settle();
  Main.cmdTakeBaseline.Enabled = false;
  Main.cmdTakeBaseline.Enabled = true;  // within one frame: the operator saw nothing of it
  world.Find<QPushButton>(Main.cmdTakeBaseline).click();
  Yield();
  EXPECT_EQ(world.refused, Names{"click cmdTakeBaseline"});
  world.mirror.Follow();
  world.Find<QPushButton>(Main.cmdTakeBaseline).click();
  Yield();
  EXPECT_EQ(world.served, Names{"click cmdTakeBaseline"});
}

TEST(Inputs, ATickThatIsRefusedGoesBack) {
  WindowWorld world;
  SetupDisplay.chkRecordChan(1).Visible = true;
  Show(SetupDisplay);
  world.Settle();
  auto& box = world.Find<QAbstractButton>(SetupDisplay.chkRecordChan(1));
  PostBox("FIRST THIS");
  box.click();
  EXPECT_TRUE(box.isChecked());
  Yield();
  world.mirror.Follow();
  EXPECT_FALSE(box.isChecked());
  EXPECT_EQ(world.refused, Names{"check chkRecordChan_1 1"});
}

TEST(Inputs, ATickGoesToTheControl) {
  WindowWorld world;
  SetupDisplay.chkRecordChan(1).Visible = true;
  Show(SetupDisplay);
  world.Settle();
  world.Find<QAbstractButton>(SetupDisplay.chkRecordChan(1)).click();
  Yield();
  EXPECT_TRUE(SetupDisplay.chkRecordChan(1).Checked);
}

struct Files : testing::Test {
  Files() {
    SetupSounding.File1.List = {"A.cpt", "B.cpt", "C.cpt"};
    Show(SetupSounding);
    world.Settle();
  }
  WindowWorld world;
  QListWidget& list = world.Find<QListWidget>(SetupSounding.File1);
};

TEST_F(Files, ASecondClickOnTheSameEntryCountsAgain) {
  emit list.itemClicked(list.item(0));
  list.setCurrentRow(1);
  emit list.itemClicked(list.item(1));
  emit list.itemClicked(list.item(1));
  Yield();
  EXPECT_EQ(world.served.size(), 3u);
  EXPECT_EQ(world.served.back(), "select File1 1");
  EXPECT_EQ(SetupSounding.File1.Text, "B.cpt");
}

TEST_F(Files, ArrowsMoveTheMarkAndEnterChooses) {
  list.setCurrentRow(0);
  Key(list, QEvent::KeyPress, Qt::Key_Down);
  Key(list, QEvent::KeyPress, Qt::Key_Down);
  world.mirror.Follow();
  EXPECT_TRUE(world.served.empty());
  EXPECT_EQ(list.currentRow(), 2);
  Key(list, QEvent::KeyPress, Qt::Key_Return);
  Yield();
  EXPECT_EQ(world.served, Names{"select File1 2"});
}

TEST_F(Files, EntriesOfTheProgramReplaceTheOld) {
  SetupSounding.File1.List = {"D.cpt"};
  SetupSounding.File1.ListIndex = 0;
  world.mirror.Follow();
  EXPECT_EQ(list.count(), 1);
  EXPECT_EQ(list.currentRow(), 0);
  EXPECT_TRUE(world.served.empty());
}

struct Folders : testing::Test {
  Folders() {
    SetupSounding.Dir1.Text = "/srv/soundings";
    SetupSounding.Dir1.List = {"..", "2026", "2027"};
    Show(SetupSounding);
    world.Settle();
  }
  WindowWorld world;
  FolderView& view = world.Find<FolderView>(SetupSounding.Dir1);
};

TEST_F(Folders, ShowThePathAndWhatLiesBelowIt) {
  EXPECT_EQ(view.Path().text(), "/srv/soundings");
  EXPECT_EQ(view.Folders().count(), 3);
}

TEST_F(Folders, AClickSelectsAFolder) {
  view.Folders().setCurrentRow(1);
  emit view.Folders().itemClicked(view.Folders().item(1));
  Yield();
  EXPECT_EQ(world.served, Names{"select Dir1 1"});
}

TEST_F(Folders, ATypedPathCountsWhenItIsComplete) {
  view.Path().selectAll();
  TypeKey(view.Path(), '/');
  TypeKey(view.Path(), 'X');
  Yield();
  world.mirror.Follow();
  EXPECT_TRUE(world.served.empty());
  EXPECT_EQ(view.Path().text(), "/X");
  Key(view.Path(), QEvent::KeyPress, Qt::Key_Return);
  Yield();
  EXPECT_EQ(world.served, Names{"type Dir1 /X"});
}

TEST_F(Folders, AHandTypesAPath) {
  EXPECT_EQ(world.Hand(ActionKind::Type, SetupSounding.Dir1, 0, "/srv/other"), "");
  EXPECT_EQ(world.served, Names{"type Dir1 /srv/other"});
}

TEST(Inputs, ClosingAWindowIsAnActionAndHidesNothing) {
  WindowWorld world;
  Show(frmWarning);
  world.Settle();
  FormWindow& window = world.mirror.WindowOf(frmWarning);
  window.close();
  EXPECT_TRUE(window.isVisible());
  Yield();
  EXPECT_EQ(world.served, Names{"close"});
}

TEST(Inputs, ClosingTheConsoleEndsTheProgram) {
  WindowWorld world;
  Show(Main);
  world.Settle();
  world.mirror.WindowOf(Main).close();
  EXPECT_THROW(WaitYield("the end"), ProgramEnd);
}

TEST(Inputs, AMenuEntryIsClicked) {
  WindowWorld world;
  frmWarning.mnuResetComms.Enabled = true;
  Show(frmWarning);
  world.Settle();
  world.mirror.WindowOf(frmWarning).MirrorOf(frmWarning.mnuResetComms)->Entry()->trigger();
  Yield();
  EXPECT_EQ(world.served, Names{"click mnuResetComms"});
}

}  // namespace
}  // namespace penlog
