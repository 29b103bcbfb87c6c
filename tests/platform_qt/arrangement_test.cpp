// The arrangements against the forms: names, room for texts, no widget on another.
#include <gtest/gtest-spi.h>

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <map>
#include <set>

#include "forms/restart_form.h"
#include "platform/qt/frame_view.h"
#include "platform/qt/mirror.h"
#include "platform/qt/mnemonics.h"
#include "platform/qt/text_view.h"
#include "platform/qt/widget_acts.h"
#include "platform/qt/widget_values.h"
#include "platform_qt/demo_values.h"
#include "platform_qt/room.h"
#include "support/world.h"

namespace penlog {
namespace {

/// The screen's load puts its panels where the set-up wants them; here each warning stands below
/// the other.
void PlaceWarningPanels() {
  double top = 0.01;
  for (Control* control : frmWarning.Controls()) {
    if (control->Kind() != ControlKind::Frame) continue;
    control->Visible = control->Name().find("Warning") != std::string::npos;
    if (!control->Visible) continue;
    control->Where = {true, 0.02, top, 0.96, 0.165};
    top += 0.17;
  }
  frmWarning.lblProgress.Where = {true, 0.02, top, 0.96, 0.035};
  frmWarning.Label6.Where = {true, 0.02, top + 0.04, 0.96, 0.095};
}

TEST(Arrangement, EachControlHasItsWidgetAndEachWidgetItsControl) {
  World world;
  EXPECT_EQ(MirrorMismatches(), std::vector<std::string>());
}

TEST(Arrangement, AControlWithoutAWidgetIsFound) {
  World world;
  struct StrangeForm : Form {
    StrangeForm() : Form("frmZOLRestart", "") { KeepFirstValues(); }
    Label lblNowhere{*this, "lblNowhere"};
  };
  StrangeForm strange;
  const FormWindow window(strange);
  EXPECT_EQ(window.Mismatches(),
            (std::vector<std::string>{
                "frmZOLRestart.lblNowhere has no widget",
                "frmZOLRestart: the widget \"lblQuestion\" of class QLabel has no control",
                "frmZOLRestart: the widget \"cmdYes\" of class QPushButton has no control",
                "frmZOLRestart: the widget \"cmdNo\" of class QPushButton has no control"}));
}

TEST(Arrangement, AFormWithoutAnArrangementIsFound) {
  World world;
  struct BareForm : Form {
    BareForm() : Form("frmBare", "") { KeepFirstValues(); }
  };
  BareForm bare;
  EXPECT_EQ(FormWindow(bare).Mismatches(), std::vector<std::string>{"frmBare has no arrangement"});
}

TEST(Arrangement, FirstTextsAreNotCutOnAnyDisplay) {
  World world;
  PlaceWarningPanels();
  for (Form* form : AllForms()) {
    Show(*form);
    FormWindow window(*form);
    for (const QSize& display : kDisplays) ExpectNothingCut(window, display);
  }
}

TEST(Arrangement, TextsOfASoundingAreNotCutOnAnyDisplay) {
  World world;
  FillMain();
  RaiseNotices();
  FillSetups();
  FillStartUp();
  SetupDisplay.frmSelectPPType.Visible = true;
  for (Form* form : std::initializer_list<Form*>{&Main, &StartUp, &SetupSounding, &SetupDisplay,
                                                 &frmResumeDepthStatus}) {
    Show(*form);
    FormWindow window(*form);
    for (const QSize& display : kDisplays) ExpectNothingCut(window, display);
  }
}

TEST(Arrangement, TheFinalBaselineQuestionIsNotCut) {
  World world;
  FillMain();
  Main.frmTakeFinalBaseline.Visible = true;
  Show(Main);
  FormWindow window(Main);
  for (const QSize& display : kDisplays) ExpectNothingCut(window, display);
}

TEST(Arrangement, NothingIsCutOrOverlapsInALongerLanguage) {
  World world;
  UseTranslation(Longer);
  PlaceWarningPanels();
  FillMain();
  RaiseNotices();
  FillSetups();
  FillStartUp();
  for (Form* form : AllForms()) {
    Show(*form);
    FormWindow window(*form);
    for (const QSize& display : kDisplays) {
      ExpectNothingCut(window, display);
      ExpectNoOverlap(window, display);
    }
  }
  UseTranslation(nullptr);
}

/// The test of the test: it must find what it looks for.
TEST(Arrangement, AClippedTextIsFound) {
  World world;
  Show(frmZOLRestart);
  FormWindow window(frmZOLRestart);
  LayOut(window, {800, 600});
  QWidget& question = *window.MirrorOf(frmZOLRestart.lblQuestion)->Widget();
  EXPECT_EQ(CutOf(question), "");
  question.setFixedSize(60, 12);
  EXPECT_NE(CutOf(question), "");
  QWidget& yes = *window.MirrorOf(frmZOLRestart.cmdYes)->Widget();
  EXPECT_EQ(CutOf(yes), "");
  yes.setFixedSize(10, 10);
  EXPECT_NE(CutOf(yes), "");
}

struct CutRow {
  const char* name;
  Control& (*control)();
  QSize small;  ///< too small for what it shows
};

class EachInput : public testing::TestWithParam<CutRow> {};

TEST_P(EachInput, TooSmallForItsValueIsFound) {
  World world;
  FillSetups();
  FillMain();
  SetupSounding.Drive1.List = {"/media/stick"};
  Main.frmGraphArea.Visible = true;
  Main.lblGraphxMax(1).Caption = "100.0";
  Control& control = GetParam().control();
  Show(control.Owner());
  FormWindow window(control.Owner());
  LayOut(window, {1366, 768});
  QWidget& widget = *window.MirrorOf(control)->Widget();
  EXPECT_EQ(CutOf(widget), "");
  widget.setFixedSize(GetParam().small);
  QCoreApplication::processEvents();
  EXPECT_NE(CutOf(widget), "");
}

INSTANTIATE_TEST_SUITE_P(
    Arrangement, EachInput,
    testing::Values(
        CutRow{"Field", []() -> Control& { return SetupSounding.txtLocation; }, {40, 40}},
        CutRow{"LowField", []() -> Control& { return SetupSounding.txtLocation; }, {400, 8}},
        CutRow{"Combo", []() -> Control& { return SetupSounding.Drive1; }, {60, 40}},
        CutRow{"List", []() -> Control& { return SetupSounding.File1; }, {60, 200}},
        CutRow{"LowList", []() -> Control& { return SetupSounding.File1; }, {400, 26}},
        CutRow{"Folders", []() -> Control& { return SetupSounding.Dir1; }, {60, 300}},
        CutRow{"Report", []() -> Control& { return frmConeSettings.lblReport; }, {200, 600}},
        CutRow{"AxisNumber", []() -> Control& { return Main.lblGraphxMax(1); }, {40, 6}}),
    [](const testing::TestParamInfo<CutRow>& row) { return row.param.name; });

TEST(Arrangement, AnOverlapIsFound) {
  World world;
  Show(frmZOLRestart);
  FormWindow window(frmZOLRestart);
  LayOut(window, {800, 600});
  QWidget& yes = *window.MirrorOf(frmZOLRestart.cmdYes)->Widget();
  QWidget& no = *window.MirrorOf(frmZOLRestart.cmdNo)->Widget();
  no.setGeometry(yes.geometry().translated(5, 5));
  EXPECT_NONFATAL_FAILURE(ExpectNoOverlap(window, {800, 600}), "overlap by");
}

TEST(Arrangement, DigitsOfTheDepthAreATwelfthOfTheWindow) {
  World world;
  FillMain();
  Show(Main);
  FormWindow window(Main);
  for (const char* text : {"0.00m", "12.34m", "-100.00m", "328.08ft"}) {
    Main.lblBigDepth.Caption = text;
    for (const QSize& display : kDisplays) {
      LayOut(window, display);
      const auto* depth = qobject_cast<TextView*>(window.MirrorOf(Main.lblBigDepth)->Widget());
      const QFontMetrics metrics(depth->FittingFont());
      EXPECT_GE(metrics.tightBoundingRect("0").height(), window.height() / 12)
          << text << " at " << display.width();
    }
  }
}

TEST(Arrangement, EveryButtonHasALetterOfItsOwn) {
  World world;
  FillMain();
  for (Form* form : AllForms()) {
    Show(*form);
    FormWindow window(*form);
    LayOut(window, {800, 600});
    std::set<QChar> letters;
    if (auto* menus = window.findChild<QMenuBar*>()) {
      for (const QAction* menu : menus->actions()) letters.insert(MnemonicOf(menu->text()));
    }
    for (Control* control : form->Controls()) {
      if (control->Kind() != ControlKind::Button) continue;
      auto* button = qobject_cast<QPushButton*>(window.MirrorOf(*control)->Widget());
      const QChar letter = MnemonicOf(button->text());
      EXPECT_FALSE(letter.isNull()) << form->Name() << "." << control->Name();
      EXPECT_TRUE(letters.insert(letter).second) << form->Name() << "." << control->Name();
      EXPECT_EQ(CaptionOf(*button).toStdString(), control->Caption);
    }
  }
}

TEST(Arrangement, TheTabulatorReachesEveryInput) {
  World world;
  FillMain();
  FillSetups();
  for (Form* form : AllForms()) {
    Show(*form);
    FormWindow window(*form);
    LayOut(window, {1366, 768});
    std::set<const QWidget*> reached;
    const QWidget* widget = &window;
    do {
      widget = widget->nextInFocusChain();
      if (widget->focusPolicy() & Qt::TabFocus) reached.insert(widget);
    } while (widget != &window);
    for (Control* control : form->Controls()) {
      if (control->Kind() != ControlKind::Button || !control->IsShown()) continue;
      EXPECT_TRUE(reached.count(window.MirrorOf(*control)->Widget()))
          << form->Name() << "." << control->Name();
    }
  }
}

TEST(Arrangement, InputsAndLampsHaveNames) {
  World world;
  FillMain();
  FillSetups();
  for (Form* form : AllForms()) {
    Show(*form);
    FormWindow window(*form);
    LayOut(window, {1366, 768});
    for (Control* control : form->Controls()) {
      if (!control->IsShown() || control->Kind() == ControlKind::Menu) continue;
      const QWidget& widget = *window.MirrorOf(*control)->Widget();
      const auto* shape = qobject_cast<const ShapeView*>(&widget);
      const bool lamp = shape != nullptr && !shape->Word().isEmpty();
      if (!lamp && !IsInput(*control)) continue;
      EXPECT_FALSE(widget.accessibleName().isEmpty()) << form->Name() << "." << control->Name();
    }
  }
  Show(Main);
  FormWindow window(Main);
  LayOut(window, {1366, 768});
  EXPECT_EQ(window.MirrorOf(Main.shpClamp)->Widget()->accessibleName(), "CLAMP CLAMPED");
  Main.shpClamp.Fill = FillStyle::Hollow;
  window.Follow();
  EXPECT_EQ(window.MirrorOf(Main.shpClamp)->Widget()->accessibleName(), "CLAMP OPEN");
  EXPECT_EQ(window.MirrorOf(Main.lblChanValue(1))->Widget()->accessibleName(),
            "Tip resistance(MPa)");
}

TEST(Arrangement, TheLargeDepthStaysLargeBesideThirtyChannels) {
  World world;
  FillMain();
  ShowChannels(30);
  Show(Main);
  FormWindow window(Main);
  for (const QSize& display : kDisplays) {
    LayOut(window, display);
    const QWidget* depth = window.MirrorOf(Main.lblBigDepth)->Widget();
    EXPECT_GE(depth->height(), window.height() / 12);
    const QWidget* last = window.MirrorOf(Main.lblChanValue(30))->Widget();
    EXPECT_GE(last->height(), 9 * window.Scale());
  }
}

TEST(Arrangement, WarningPanelsShowTheirWholeText) {
  World world;
  Show(frmWarning);
  PlaceWarningPanels();
  FormWindow window(frmWarning);
  for (const QSize& display : kDisplays) ExpectNothingCut(window, display);
}

TEST(Arrangement, AllButtonsAreInReachWithEveryNoticeUp) {
  World world;
  FillMain();
  RaiseNotices();
  ShowChannels(30);
  Main.cmdTakeBaseline.Visible = true;
  Main.lblBigDepth.Visible = false;
  FillSetups();
  for (Form* form : AllForms()) {
    Show(*form);
    FormWindow window(*form);
    for (const QSize& display : kDisplays) ExpectAllInReach(window, display);
  }
  // The other question comes when the first one is answered.
  Main.frmLocalWarning.Visible = false;
  Main.frmTakeFinalBaseline.Visible = true;
  FormWindow window(Main);
  LayOut(window, kDisplays[0]);  // the first layout of all is none that anybody sees
  for (const QSize& display : kDisplays) ExpectAllInReach(window, display);
}

TEST(Arrangement, ButtonsAreLargeEnoughForAGlove) {
  World world;
  for (Form* form : AllForms()) {
    Show(*form);
    FormWindow window(*form);
    LayOut(window, {800, 600});
    for (Control* control : form->Controls()) {
      if (control->Kind() != ControlKind::Button || !control->IsShown()) continue;
      const QWidget* widget = window.MirrorOf(*control)->Widget();
      EXPECT_GE(widget->height(), 36) << form->Name() << "." << control->Name();
      EXPECT_GE(widget->width(), 60) << form->Name() << "." << control->Name();
    }
  }
}

TEST(Arrangement, NoNoticeMovesAnythingElse) {
  const struct {
    const char* name;
    void (*raise)();
  } rows[] = {
      {"quit",
       [] {
         Main.frmQuitWarning.Visible = true;
         Main.lblOverride.Visible = true;
       }},
      {"stop dialog", [] { Main.frmLocalWarning.Visible = true; }},
      {"final baseline", [] { Main.frmTakeFinalBaseline.Visible = true; }},
      {"ball tip", [] { Main.lblBallTip.Visible = true; }},
      {"override", [] { Main.cmdResetQuits.Visible = true; }},
      {"lost link", [] { Main.lblCommError.Caption = "Cone communication lost.  Check it."; }},
      {"progress", [] { Main.lblProgress.Caption = "LOOKING FOR THE CONE, PORT 3 OF 7"; }},
      {"held rows", [] { Main.lblRowsHeld.Visible = Main.lblRowsHeldCaption.Visible = true; }},
      {"all", RaiseNotices},
  };
  for (const QSize& display : kDisplays) {
    for (const auto& row : rows) {
      World world;
      FillMain();
      Main.frmGraphArea.Visible = true;
      Main.lblBallTip.Visible = Main.cmdResetQuits.Visible = false;
      Show(Main);
      FormWindow window(Main);
      const auto places = [&] {
        LayOut(window, display);
        std::map<std::string, QRect> all;
        for (const Control* control : std::initializer_list<Control*>{
                 &Main.cmdStart, &Main.lblBigDepth, &Main.lblDepth, &Main.cmdToggleClamp,
                 &Main.lblChanValue(1), &Main.frmGraphArea, &Main.shpClamp, &Main.lblState,
                 &Main.lblSoundingFile}) {
          QWidget* widget = window.MirrorOf(*control)->Widget();
          all[control->Name()] = QRect(widget->mapTo(&window, QPoint()), widget->size());
        }
        return all;
      };
      places();  // the first layout of all is none that anybody sees
      const auto before = places();
      row.raise();
      EXPECT_EQ(places(), before) << row.name << " at " << display.width();
    }
  }
}

/// A finger that is on its way to a button finds it where it was.
TEST(Arrangement, ProgressMovesNothingOnTheFirstScreen) {
  void (*const raised[])() = {
      [] { StartUp.frLoad.Visible = true; },
      [] {
        StartUp.frLoad.Visible = true;
        StartUp.lblLoad.Caption = "SEARCHING FOR CONE.  PLEASE WAIT.  THIS MAY TAKE SOME MINUTES.";
        StartUp.lblStatusIndicator.Caption = "....................";
        StartUp.lblProgress.Caption = "STEP 1 OF 5, PORT 3 OF 7";
        StartUp.shpProgressGround.Visible = true;
      },
  };
  for (const QSize& display : kDisplays) {
    for (const auto raise : raised) {
      World world;
      Show(StartUp);
      FormWindow window(StartUp);
      const auto places = [&] {
        LayOut(window, display);
        std::vector<QRect> all;
        for (const Control* control : std::initializer_list<Control*>{
                 &StartUp.lblTitle, &StartUp.cmdStart, &StartUp.cmdResume, &StartUp.cmdCalibrate,
                 &StartUp.cmdExit}) {
          const QWidget* widget = window.MirrorOf(*control)->Widget();
          all.emplace_back(widget->mapTo(&window, QPoint()), widget->size());
        }
        return all;
      };
      places();  // the first layout of all is none that anybody sees
      const auto before = places();
      raise();
      EXPECT_EQ(places(), before) << "at " << display.width();
      ExpectNothingCut(window, display);
    }
  }
}

/// What is read from afar uses the room that a few channels leave.
TEST(Arrangement, FewChannelsHaveLargeFiguresAndChartsTheirRoom) {
  const struct {
    QSize display;
    int figures, charts;  ///< least heights
  } rows[] = {{{800, 600}, 23, 192}, {{1366, 768}, 32, 395}};
  World world;
  FillMain();
  for (int ch = 6; ch <= 8; ++ch) {
    Main.lblChanLabel(ch).Visible = Main.lblChanValue(ch).Visible = false;
  }
  Main.frmGraphArea.Visible = true;
  Show(Main);
  FormWindow window(Main);
  for (const auto& row : rows) {
    LayOut(window, row.display);
    LayOut(window, row.display);
    const auto* value = qobject_cast<TextView*>(window.MirrorOf(Main.lblChanValue(1))->Widget());
    EXPECT_GE(value->FittingFont().pixelSize(), row.figures) << row.display.width();
    EXPECT_GE(window.MirrorOf(Main.frmGraphArea)->Widget()->height(), row.charts)
        << row.display.width();
  }
}

}  // namespace
}  // namespace penlog
