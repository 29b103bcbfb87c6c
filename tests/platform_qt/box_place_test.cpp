// Boxes keep to their window and off what must stay in sight.
#include "platform/qt/box_place.h"

#include <QScrollArea>
#include <QScrollBar>
#include <QWindow>

#include "forms/enlarged_graph_form.h"
#include "forms/main_form.h"
#include "forms/reset_comms_form.h"
#include "forms/resume_depth_form.h"
#include "forms/setup_display_form.h"
#include "forms/start_up_form.h"
#include "forms/warning_form.h"
#include "platform/box_askers.h"
#include "platform_qt/demo_values.h"
#include "platform_qt/window_world.h"

namespace penlog {
namespace {

const QRect kRoom(0, 0, 800, 600);

TEST(BoxPlace, IsTheMiddleOfWhatLiesBelowAllThatIsKept) {
  EXPECT_EQ(BoxPlace({400, 200}, kRoom, {}), QRect(199, 199, 400, 200));
  EXPECT_EQ(BoxPlace({400, 200}, kRoom, {QRect(0, 0, 800, 40), QRect(0, 60, 300, 140)}),
            QRect(199, 299, 400, 200));
}

TEST(BoxPlace, GivesWayToWhatIsKeptFarDown) {
  const std::vector<QRect> kept = {QRect(0, 0, 800, 40), QRect(0, 300, 300, 250)};
  const auto place = BoxPlace({400, 200}, kRoom, kept);
  ASSERT_TRUE(place);
  for (const QRect& one : kept) EXPECT_FALSE(one.intersects(*place));
  EXPECT_TRUE(kRoom.contains(*place));
}

TEST(BoxPlace, IsNoneWhereThereIsNoRoom) {
  EXPECT_EQ(BoxPlace({900, 200}, kRoom, {}), std::nullopt);
  EXPECT_EQ(BoxPlace({500, 200}, kRoom, {QRect(350, 0, 100, 600)}), std::nullopt);
}

TEST(LargestFree, IsTheLargestPartOffAllThatIsKept) {
  EXPECT_EQ(LargestFree(kRoom, {}), kRoom);
  EXPECT_EQ(LargestFree(kRoom, {QRect(0, 0, 800, 40), QRect(0, 60, 300, 140)}),
            QRect(0, 200, 800, 400));
  EXPECT_TRUE(LargestFree(kRoom, {QRect(-10, -10, 900, 900)}).isEmpty());
}

/// The box that is shown; null for none.
BoxWindow* OpenBox() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    auto* box = qobject_cast<BoxWindow*>(widget);
    if (box != nullptr && box->isVisible()) return box;
  }
  return nullptr;
}

QRect OnDesktop(const QWidget& widget) {
  return {widget.mapToGlobal(QPoint()), widget.size()};
}

void Ask(const std::string& screen, const std::string& text) {
  const BoxAsker asker(screen);
  PostBox(text, BoxButtons::YesNo);
}

std::string Words(std::size_t letters) {
  std::string words;
  while (words.size() < letters) words += "SOME WORDS ";
  return words;
}

TEST(BoxWindow, NeverHidesTheDepthOrTheStripWhicheverScreenAsks) {
  for (const QSize& display : {QSize(800, 600), QSize(1366, 768)}) {
    for (Form* form : AllForms()) {
      for (const std::string& text : {std::string("LINK LOST"), Words(400), Words(2990)}) {
        WindowWorld world;
        FillMain();
        Main.lblStepsSign.Visible = true;
        Show(Main);
        Show(*form);
        world.Settle();
        for (Form* shown : ShownForms()) {
          FormWindow& window = world.mirror.WindowOf(*shown);
          window.resize(window.SizeOn(display));
          window.move(0, 0);
        }
        world.Settle();
        Ask(form->Name(), text);
        world.Settle();
        auto* box = OpenBox();
        ASSERT_NE(box, nullptr);
        for (Control* kept : {&Main.lblBigDepth, &Main.lblDepth, &Main.lblStepsSign, &Main.lblState,
                              &Main.lblLastRow, &Main.lblStopKey}) {
          EXPECT_FALSE(OnDesktop(*box).intersects(OnDesktop(world.Find(*kept))))
              << kept->Name() << " by a box of " << form->Name() << " at " << display.width()
              << " with " << text.size();
        }
        const QPushButton* yes = box->ButtonFor(BoxAnswer::Yes);
        EXPECT_TRUE(box->rect().contains(QRect(yes->mapTo(box, QPoint()), yes->size())))
            << form->Name() << " at " << display.width() << " with " << text.size();
      }
    }
  }
}

struct OwnerRow {
  const char* name;
  const char* asker;
  std::vector<Form*> shown;  // the front one last
  Form* over;
};

class BoxOwner : public testing::TestWithParam<OwnerRow> {};

TEST_P(BoxOwner, IsTheScreenThatAskedOrTheConsole) {
  const OwnerRow& row = GetParam();
  WindowWorld world;
  for (Form* form : row.shown) Show(*form);
  world.Settle();
  Ask(row.asker, "SURE?");
  world.Settle();
  auto* box = OpenBox();
  ASSERT_NE(box, nullptr);
  const FormWindow& window = world.mirror.WindowOf(*row.over);
  EXPECT_EQ(box->windowHandle()->transientParent(), window.windowHandle());
  EXPECT_TRUE(OnDesktop(window).contains(OnDesktop(*box)));
}

INSTANTIATE_TEST_SUITE_P(
    BoxWindow, BoxOwner,
    testing::Values(
        OwnerRow{"BehindAnother", "Main", {&Main, &EnlargedGraph, &frmWarning}, &Main},
        OwnerRow{"AboveTheConsole", "EnlargedGraph", {&Main, &EnlargedGraph}, &EnlargedGraph},
        OwnerRow{"OfTheRecording", "", {&Main, &frmWarning}, &Main},
        OwnerRow{"OfAScreenThatIsGone", "SetupDisplay", {&Main, &frmWarning}, &Main},
        OwnerRow{"BeforeTheConsole", "", {&StartUp}, &StartUp}),
    [](const testing::TestParamInfo<OwnerRow>& row) { return row.param.name; });

TEST(BoxWindow, GoesOverToTheConsoleWhenItsScreenGoes) {
  WindowWorld world;
  Show(Main);
  Show(frmResetComms);
  Ask("frmResetComms", "SURE?");
  world.Settle();
  Hide(frmResetComms);
  world.Settle();
  EXPECT_EQ(OpenBox()->windowHandle()->transientParent(),
            world.mirror.WindowOf(Main).windowHandle());
}

/// The console that is pressed must not hide them.
TEST(WindowOrder, TheGraphAndTheResumeDepthStayAboveTheConsole) {
  for (Form* form : std::initializer_list<Form*>{&EnlargedGraph, &frmResumeDepthStatus}) {
    WindowWorld world;
    Show(Main);
    Show(*form);
    world.Settle();
    EXPECT_EQ(world.mirror.WindowOf(*form).windowHandle()->transientParent(),
              world.mirror.WindowOf(Main).windowHandle())
        << form->Name();
  }
}

TEST(BoxWindow, ScrollsOnlyWhatHasNoRoom) {
  for (const std::size_t letters : {9U, 60U, 240U, 400U}) {
    WindowWorld world;
    FillMain();
    Show(Main);
    world.Settle();
    Ask("Main", Words(letters));
    world.Settle();
    world.Settle();
    const auto* area = OpenBox()->findChild<QScrollArea*>("areaBoxText");
    EXPECT_FALSE(area->verticalScrollBar()->isVisible()) << letters;
  }
}

}  // namespace
}  // namespace penlog
