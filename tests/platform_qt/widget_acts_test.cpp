// The player's hands: they hit what a hand would hit, and miss what it would miss.
#include "platform/qt/widget_acts.h"

#include <QPushButton>

#include "forms/main_form.h"
#include "forms/setup_display_form.h"
#include "forms/setup_sounding_form.h"
#include "forms/warning_form.h"
#include "platform_qt/window_world.h"

namespace penlog {
namespace {

TEST(Hands, FireExactlyTheControlThatIsMeant) {
  WindowWorld world;
  Show(Main);
  EXPECT_EQ(world.Hand(ActionKind::Click, Main.cmdTakeBaseline), "");
  EXPECT_EQ(world.served, Names{"click cmdTakeBaseline"});
}

TEST(Hands, DoEveryKindOfAction) {
  WindowWorld world;
  SetupDisplay.chkRecordChan(4).Visible = true;
  SetupSounding.File1.List = {"A.cpt", "B.cpt"};
  Show(SetupSounding);
  EXPECT_EQ(world.Hand(ActionKind::Type, SetupSounding.txtLocation, 0, "Basin 4, north"), "");
  EXPECT_EQ(world.Hand(ActionKind::Type, SetupSounding.txtLocation, 0, ""), "");
  EXPECT_EQ(world.Hand(ActionKind::Select, SetupSounding.cmbFileNaming, 2), "");
  EXPECT_EQ(world.Hand(ActionKind::Select, SetupSounding.File1, 1), "");
  Hide(SetupSounding);
  Show(SetupDisplay);
  EXPECT_EQ(world.Hand(ActionKind::Check, SetupDisplay.chkRecordChan(4), 1), "");
  EXPECT_EQ(world.Hand(ActionKind::Check, SetupDisplay.chkRecordChan(4), 0), "");
  EXPECT_EQ(world.served,
            (Names{"type txtLocation Basin 4, north", "type txtLocation ", "select cmbFileNaming 2",
                   "select File1 1", "check chkRecordChan_4 1", "check chkRecordChan_4 0"}));
}

TEST(Hands, HoldAndLetGo) {
  WindowWorld world;
  Main.cmdResetQuits.Visible = true;
  Main.cmdResetQuits.Press = [] {};
  Main.cmdResetQuits.Release = [] {};
  Show(Main);
  EXPECT_EQ(world.Hand(ActionKind::Press, Main.cmdResetQuits), "");
  EXPECT_EQ(world.Hand(ActionKind::Release, Main.cmdResetQuits), "");
  Main.cmdResetQuits.Press = nullptr;
  Main.cmdResetQuits.Release = nullptr;
  EXPECT_EQ(world.served, (Names{"press cmdResetQuits", "release cmdResetQuits"}));
}

TEST(Hands, ReachTheEntriesOfALongList) {
  WindowWorld world;
  for (int i = 0; i < 200; ++i) SetupSounding.File1.List.push_back(std::to_string(i) + ".cpt");
  Show(SetupSounding);
  EXPECT_EQ(world.Hand(ActionKind::Select, SetupSounding.File1, 180), "");
  EXPECT_EQ(world.served, Names{"select File1 180"});
}

TEST(Hands, MissWhatIsDisabledHiddenOrBelowABox) {
  WindowWorld world;
  Show(Main);
  EXPECT_EQ(world.Hand(ActionKind::Click, Main.cmdStart), "the control is disabled");
  EXPECT_EQ(world.Hand(ActionKind::Click, Main.cmdDissipation), "the control is not visible");
  PostBox("FIRST THIS");
  EXPECT_EQ(world.Hand(ActionKind::Click, Main.cmdTakeBaseline),
            "a message box or a dialog is open");
  Hide(Main);
  EXPECT_EQ(world.Hand(ActionKind::Click, Main.cmdExit), "the screen is not visible");
  EXPECT_TRUE(world.served.empty());
}

TEST(Hands, MissWhatIsCovered) {
  WindowWorld world;
  Show(Main);
  world.Settle();
  FormWindow& window = world.mirror.WindowOf(Main);
  QWidget& button = world.Find(Main.cmdExit);
  QWidget cover(window.centralWidget());
  cover.setObjectName("cover");
  cover.setGeometry(QRect(button.mapTo(window.centralWidget(), QPoint()), button.size())
                        .adjusted(button.width() * 2 / 3, 0, 0, 0));
  cover.show();
  cover.raise();
  EXPECT_EQ(world.Hand(ActionKind::Click, Main.cmdExit), "the widget is covered by cover");
  EXPECT_TRUE(world.served.empty());
}

TEST(Hands, MissWhatIsTooSmall) {
  WindowWorld world;
  Show(Main);
  for (int frame = 0; frame < 5; ++frame) world.Settle();  // a new window fits its texts for some
  world.Find(Main.cmdExit).setFixedSize(7, 30);
  world.Settle();
  EXPECT_EQ(world.Hand(ActionKind::Click, Main.cmdExit), "the widget is too small to hit");
}

TEST(Hands, ChooseAMenuEntry) {
  WindowWorld world;
  Show(frmWarning);
  frmWarning.mnuResetComms.Enabled = false;
  EXPECT_NE(world.Hand(ActionKind::Click, frmWarning.mnuResetComms), "");
  frmWarning.mnuResetComms.Enabled = true;
  EXPECT_EQ(world.Hand(ActionKind::Click, frmWarning.mnuResetComms), "");
  EXPECT_EQ(world.served, Names{"click mnuResetComms"});
}

TEST(Hands, CloseAWindow) {
  WindowWorld world;
  Show(frmWarning);
  OperatorAction close;
  close.kind = ActionKind::Close;
  close.form = &frmWarning;
  std::string why;
  EXPECT_TRUE(world.mirror.Act(close, why)) << why;
  Yield();
  EXPECT_EQ(world.served, Names{"close"});
}

TEST(Hands, RefuseAnActionThatTheWidgetDoesNotTake) {
  WindowWorld world;
  Show(Main);
  EXPECT_EQ(world.Hand(ActionKind::Type, Main.cmdExit, 0, "text"),
            "the widget takes no such action");
}

}  // namespace
}  // namespace penlog
