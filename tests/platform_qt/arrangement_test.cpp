// The arrangements against the forms: names, room for texts, no widget on another.
#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QStyleOptionButton>
#include <QStyleOptionFrame>

#include "platform/qt/frame_view.h"
#include "platform/qt/mirror.h"
#include "platform/qt/text_view.h"
#include "platform/qt/widget_acts.h"
#include "platform/qt/widget_values.h"
#include "platform_qt/demo_values.h"
#include "support/world.h"

namespace penlog {
namespace {

const QSize kDisplays[] = {{800, 600}, {1024, 768}, {1920, 1080}, {3840, 2160}};

void LayOut(FormWindow& window, const QSize& display) {
  window.Follow();
  window.resize(window.SizeOn(display));
  for (int i = 0; i < 3; ++i) {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QCoreApplication::processEvents();
  }
  window.Follow();
}

/// How much of the label's text there is no room for; empty if all is seen.
QString CutOfLabel(const QLabel& label) {
  const QRect room = label.contentsRect();
  const int flags = static_cast<int>(label.alignment()) | (label.wordWrap() ? Qt::TextWordWrap : 0);
  const QRect needed = label.fontMetrics().boundingRect(room, flags, label.text());
  if (needed.width() <= room.width() + 1 && needed.height() <= room.height() + 1) return {};
  return QString("needs %1x%2, has %3x%4")
      .arg(needed.width())
      .arg(needed.height())
      .arg(room.width())
      .arg(room.height());
}

QString CutOfButton(const QAbstractButton& button) {
  QStyleOptionButton option;
  option.initFrom(&button);
  const auto part =
      button.isCheckable() ? QStyle::SE_CheckBoxContents : QStyle::SE_PushButtonContents;
  const QRect room = button.style()->subElementRect(part, &option, &button);
  const QSize needed = button.fontMetrics().size(Qt::TextShowMnemonic, button.text());
  if (needed.width() <= room.width() + 1 && needed.height() <= room.height() + 1) return {};
  return QString("needs %1x%2, has %3x%4")
      .arg(needed.width())
      .arg(needed.height())
      .arg(room.width())
      .arg(room.height());
}

/// A text view draws smaller instead of cutting; below seven tenths it would not be read.
QString CutOfView(const TextView& view) {
  const int drawn = view.FittingFont().pixelSize();
  const int wanted = view.font().pixelSize();
  if (10 * drawn >= 7 * wanted) return {};
  return QString("is drawn with %1 pixels instead of %2").arg(drawn).arg(wanted);
}

QString CutOfFrame(const FrameView& frame) {
  const int needed = QFontMetrics(frame.HeadFont()).horizontalAdvance(frame.Caption());
  if (needed <= frame.HeadRect().width()) return {};
  return QString("needs %1, has %2").arg(needed).arg(frame.HeadRect().width());
}

QString CutOf(const QWidget& widget) {
  if (auto* label = qobject_cast<const QLabel*>(&widget)) return CutOfLabel(*label);
  if (auto* button = qobject_cast<const QAbstractButton*>(&widget)) return CutOfButton(*button);
  if (auto* view = qobject_cast<const TextView*>(&widget)) return CutOfView(*view);
  if (auto* frame = qobject_cast<const FrameView*>(&widget)) return CutOfFrame(*frame);
  return {};
}

void ExpectNothingCut(FormWindow& window, const QSize& display) {
  LayOut(window, display);
  for (Control* control : window.Mirrored().Controls()) {
    const ControlMirror* mirror = window.MirrorOf(*control);
    if (mirror == nullptr || mirror->Widget() == nullptr || !control->IsShown()) continue;
    if (CaptionOf(*mirror->Widget()).isEmpty()) continue;
    const QString cut = CutOf(*mirror->Widget());
    EXPECT_TRUE(cut.isEmpty()) << window.Mirrored().Name() << "." << control->Name() << " at "
                               << display.width() << "x" << display.height() << ": "
                               << cut.toStdString();
  }
}

bool IsInput(const Control& control) {
  switch (control.Kind()) {
    case ControlKind::Button:
    case ControlKind::TextBox:
    case ControlKind::CheckBox:
    case ControlKind::OptionButton:
    case ControlKind::ComboBox:
    case ControlKind::ListBox:
      return true;
    default:
      return false;
  }
}

void ExpectAllInReach(FormWindow& window, const QSize& display) {
  LayOut(window, display);
  for (Control* control : window.Mirrored().Controls()) {
    if (!IsInput(*control) || !control->IsShown()) continue;
    const std::string why = WhyMissed(window, *window.MirrorOf(*control)->Widget());
    EXPECT_EQ(why, "") << window.Mirrored().Name() << "." << control->Name() << " at "
                       << display.width() << "x" << display.height();
  }
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
  for (Form* form : std::initializer_list<Form*>{&Main, &StartUp, &SetupSounding, &SetupDisplay}) {
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
    EXPECT_GE(last->height(), 12 * window.Scale());
  }
}

TEST(Arrangement, WarningPanelsShowTheirWholeText) {
  World world;
  Show(frmWarning);
  for (Control* control : frmWarning.Controls()) {
    if (control->Kind() != ControlKind::Frame) continue;
    control->Visible = control->Name().find("Warning") != std::string::npos;
  }
  FormWindow window(frmWarning);
  for (const QSize& display : kDisplays) ExpectNothingCut(window, display);
}

TEST(Arrangement, AllButtonsAreInReachWithEveryNoticeUp) {
  World world;
  FillMain();
  RaiseNotices();
  ShowChannels(30);
  Main.frmTakeFinalBaseline.Visible = true;
  Main.cmdTakeBaseline.Visible = true;
  Main.lblBigDepth.Visible = false;
  FillSetups();
  for (Form* form : AllForms()) {
    Show(*form);
    FormWindow window(*form);
    for (const QSize& display : kDisplays) ExpectAllInReach(window, display);
  }
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

TEST(Arrangement, ANoticeMovesNothingElse) {
  World world;
  FillMain();
  Show(Main);
  FormWindow window(Main);
  LayOut(window, {1024, 768});
  const auto place_of = [&](Control& control) {
    QWidget* widget = window.MirrorOf(control)->Widget();
    return QRect(widget->mapTo(&window, QPoint()), widget->size());
  };
  const QRect start = place_of(Main.cmdStart);
  const QRect quits = place_of(Main.cmdResetQuits);
  const QRect clamp = place_of(Main.cmdToggleClamp);
  Main.frmQuitWarning.Visible = true;
  Main.lblQuitFor1.Caption = "Tip resistance";
  LayOut(window, {1024, 768});
  EXPECT_EQ(place_of(Main.cmdStart), start);
  EXPECT_EQ(place_of(Main.cmdResetQuits), quits);
  EXPECT_EQ(place_of(Main.cmdToggleClamp), clamp);
}

}  // namespace
}  // namespace penlog
