// Message boxes and file dialogs as windows that block nothing.
#include "platform/qt/box_windows.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "forms/main_form.h"
#include "forms/start_up_form.h"
#include "platform_qt/demo_values.h"
#include "platform_qt/window_world.h"

namespace penlog {
namespace {

template <class Window>
Window* OpenWindow() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    auto* window = qobject_cast<Window*>(widget);
    if (window != nullptr && window->isVisible()) return window;
  }
  return nullptr;
}

TEST(BoxWindow, ShowsTheTextAndTheButtonsOfTheFrontBox) {
  WindowWorld world;
  Show(StartUp);
  PostBox("WOULD YOU LIKE TO SEARCH FOR THE PORT?", BoxButtons::YesNo);
  PostBox("behind it");
  world.mirror.Follow();
  auto* box = OpenWindow<BoxWindow>();
  ASSERT_NE(box, nullptr);
  EXPECT_EQ(box->findChild<QLabel*>("lblBoxText")->text(),
            "WOULD YOU LIKE TO SEARCH FOR THE PORT?");
  EXPECT_NE(box->ButtonFor(BoxAnswer::Yes), nullptr);
  EXPECT_NE(box->ButtonFor(BoxAnswer::No), nullptr);
  EXPECT_EQ(box->ButtonFor(BoxAnswer::Ok), nullptr);
  EXPECT_EQ(box->windowModality(), Qt::NonModal);
}

TEST(BoxWindow, AnswersAWaitingBoxAndGoes) {
  WindowWorld world;
  Show(StartUp);
  PostCall(Now() + kSecond, &world, [&] {
    std::string why;
    EXPECT_TRUE(world.mirror.PressBoxButton(BoxAnswer::No, why)) << why;
  });
  EXPECT_EQ(MsgBox("SURE?", BoxButtons::YesNo), BoxAnswer::No);
  world.mirror.Follow();
  EXPECT_EQ(OpenWindow<BoxWindow>(), nullptr);
}

TEST(BoxWindow, ASecondPressOfTheSameBoxIsIgnored) {
  WindowWorld world;
  Show(StartUp);
  int answers = 0;
  PostBox("first", BoxButtons::Ok, [&](BoxAnswer) { ++answers; });
  PostBox("second", BoxButtons::Ok, [&](BoxAnswer) { answers += 100; });
  std::string why;
  world.mirror.PressBoxButton(BoxAnswer::Ok, why);
  world.mirror.PressBoxButton(BoxAnswer::Ok, why);
  Yield();
  EXPECT_EQ(answers, 1);
  ASSERT_NE(FrontBox(), nullptr);
  EXPECT_EQ(FrontBox()->text, "second");
}

TEST(BoxWindow, TheNextBoxTakesItsPlace) {
  WindowWorld world;
  Show(StartUp);
  PostBox("first");
  PostBox("second");
  std::string why;
  world.mirror.PressBoxButton(BoxAnswer::Ok, why);
  Yield();
  world.mirror.Follow();
  EXPECT_EQ(OpenWindow<BoxWindow>()->findChild<QLabel*>("lblBoxText")->text(), "second");
}

TEST(BoxWindow, EscapeIsCancelWhereItIsOfferedAndNothingForAQuestion) {
  const struct {
    BoxButtons buttons;
    int boxes_left;
  } rows[] = {{BoxButtons::OkCancel, 0}, {BoxButtons::Ok, 0}, {BoxButtons::YesNo, 1}};
  for (const auto& row : rows) {
    WindowWorld world;
    Show(StartUp);
    PostBox("text", row.buttons);
    world.mirror.Follow();
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(OpenWindow<BoxWindow>(), &escape);
    Yield();
    EXPECT_EQ(static_cast<int>(OpenBoxes().size()), row.boxes_left);
  }
}

TEST(BoxWindow, HasNoSuchButton) {
  WindowWorld world;
  Show(StartUp);
  std::string why;
  EXPECT_FALSE(world.mirror.PressBoxButton(BoxAnswer::Ok, why));
  EXPECT_EQ(why, "no message box is open");
  PostBox("text", BoxButtons::YesNo);
  EXPECT_FALSE(world.mirror.PressBoxButton(BoxAnswer::Ok, why));
  EXPECT_EQ(why, "the message box has no such button");
}

TEST(BoxWindow, EveryKindOfLineEndEndsALine) {
  const char* rows[] = {"one\r\rthree", "one\r\n\r\nthree", "one\n\nthree"};
  for (const char* text : rows) {
    WindowWorld world;
    Show(StartUp);
    PostBox(text);
    world.mirror.Follow();
    EXPECT_EQ(OpenWindow<BoxWindow>()->findChild<QLabel*>("lblBoxText")->text(), "one\n\nthree");
  }
}

TEST(BoxWindow, ALongTextIsNotCut) {
  WindowWorld world;
  Show(Main);
  PostBox(
      "CAUTION: SYSTEM IS CONFIGURED TO INTERPERT TIP READINGS USING BALL TIP WITH A DIAMETER OF "
      "60 mm.  Fs / Fr / U2 READINGS MAY BE AFFECTED.  SPT AND SBT CORRELATIONS NOT "
      "ESTABLISHED.\r\n\r\nENSURE THAT THE PROPER BALL TIP IS ATTACHED AND PRESS OK.\r\n\r\nIF "
      "BALL TIP DIAMETER IS INCORRECT OR CONICAL TIP IS ATTACHED, PRESS CANCEL TO RESTART AND "
      "EDIT THE TIP CONFIGURATION IN SETUP",
      BoxButtons::OkCancel);
  world.Settle();
  const auto* label = OpenWindow<BoxWindow>()->findChild<QLabel*>("lblBoxText");
  EXPECT_GE(label->height(), label->heightForWidth(label->width()));
}

TEST(FileDialogWindow, GivesTheChosenFile) {
  WindowWorld world;
  Show(StartUp);
  PostCall(Now() + kSecond, &world, [&] {
    world.mirror.Follow();
    auto* dialog = OpenWindow<QFileDialog>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->windowModality(), Qt::NonModal);
    dialog->findChild<QLineEdit*>("fileNameEdit")->setText("check.cal");
    dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open)->click();
  });
  EXPECT_EQ(AskFile("OPEN CALIBRATION", "/tmp", "*.cal", false), "/tmp/check.cal");
}

TEST(FileDialogWindow, CancelGivesNone) {
  WindowWorld world;
  Show(StartUp);
  PostCall(Now() + kSecond, &world, [&] {
    world.mirror.Follow();
    OpenWindow<QFileDialog>()->reject();
  });
  EXPECT_EQ(AskFile("OPEN CALIBRATION", "/tmp", "*.cal", false), std::nullopt);
}

TEST(FileDialogWindow, GoesWhenTheDialogIsGone) {
  WindowWorld world;
  Show(StartUp);
  PostCall(Now() + kSecond, &world, [&] {
    world.mirror.Follow();
    AnswerFileDialog(OpenFileDialog()->id, "/tmp/by-the-player.cal");
  });
  EXPECT_EQ(AskFile("SAVE", "/tmp", "*.cal", true), "/tmp/by-the-player.cal");
  world.mirror.Follow();
  EXPECT_EQ(OpenWindow<QFileDialog>(), nullptr);
}

/// Where a widget lies on the desktop.
QRect OnDesktop(const QWidget& widget) {
  return {widget.mapToGlobal(QPoint()), widget.size()};
}

TEST(BoxWindow, NeverHidesTheDepthAndStaysOnItsWindow) {
  const std::string texts[] = {"LINK LOST", std::string(400, 'W') + " end", [] {
                                 std::string words;
                                 while (words.size() < 2990) words += "SOME WORDS ";
                                 return words;
                               }()};
  for (const QSize& size : {QSize(800, 600), QSize(1024, 768), QSize(1366, 768), QSize(1920, 1080),
                            QSize(3840, 2160)}) {
    for (const std::string& text : texts) {
      WindowWorld world;
      FillMain();
      Show(Main);
      world.Settle();
      FormWindow& window = world.mirror.WindowOf(Main);
      window.resize(size);
      world.Settle();
      PostBox(text, BoxButtons::YesNo);
      world.Settle();
      auto* box = OpenWindow<BoxWindow>();
      ASSERT_NE(box, nullptr);
      const QRect place = OnDesktop(*box);
      for (Control* depth : {&Main.lblBigDepth, &Main.lblDepth}) {
        EXPECT_FALSE(place.intersects(OnDesktop(world.Find(*depth))))
            << depth->Name() << " at " << size.width() << " with " << text.size();
      }
      EXPECT_TRUE(OnDesktop(window).contains(place)) << size.width() << " " << text.size();
      const QPushButton* yes = box->ButtonFor(BoxAnswer::Yes);
      EXPECT_TRUE(box->rect().contains(QRect(yes->mapTo(box, QPoint()), yes->size())));
    }
  }
}

TEST(BoxWindow, GoesWithItsWindow) {
  WindowWorld world;
  FillMain();
  Show(Main);
  PostBox("TEXT");
  world.Settle();
  auto* box = OpenWindow<BoxWindow>();
  const QPoint before = box->pos();
  FormWindow& window = world.mirror.WindowOf(Main);
  window.move(window.pos() + QPoint(30, 20));
  world.Settle();
  EXPECT_EQ(box->pos(), before + QPoint(30, 20));
}

TEST(BoxWindow, EnterIsTheAnswerThatGoesOn) {
  const struct {
    BoxButtons buttons;
    BoxAnswer answer;
  } rows[] = {{BoxButtons::Ok, BoxAnswer::Ok},
              {BoxButtons::OkCancel, BoxAnswer::Ok},
              {BoxButtons::YesNo, BoxAnswer::Yes},
              {BoxButtons::YesNoCareful, BoxAnswer::No}};
  for (const auto& row : rows) {
    WindowWorld world;
    Show(StartUp);
    std::vector<BoxAnswer> answers;
    PostBox("text", row.buttons, [&](BoxAnswer answer) { answers.push_back(answer); });
    world.Settle();
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(OpenWindow<BoxWindow>(), &enter);
    Yield();
    EXPECT_EQ(answers, std::vector<BoxAnswer>{row.answer});
  }
}

}  // namespace
}  // namespace penlog
