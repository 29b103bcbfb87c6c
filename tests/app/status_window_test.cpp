// The status window over the console, with windows: what the operator must see stays in sight.
#include <gtest/gtest.h>

#include <QPainter>

#include "app/recording_windows.h"
#include "conelink/cone_state.h"
#include "conelink/port_supervision.h"
#include "core/session.h"
#include "forms/main_form.h"
#include "forms/warning_form.h"

namespace penlog {
namespace {

/// The console while rows are recorded, with every link that it can lose.
struct LossWindows : RecordingWindows {
  LossWindows(const QSize& display_size, int outputs) {
    settings.ConeSerialPort = 3;
    settings.TruckInterfaceSerialPort = 4;
    settings.ASCIIOutSerialPort = outputs > 0 ? 5 : 0;
    settings.VideoOverlaySerialPort = outputs > 1 ? 6 : 0;
    settings.LumenProbePresent = outputs > 1 ? 1 : 0;
    session.ScreenScaleX = static_cast<float>(display_size.width()) / 800.0f;
    session.ScreenScaleY = static_cast<float>(display_size.height()) / 600.0f;
    Show(Main);
    FillMain();
    RaiseNotices();
    Main.lblStepsSign.Visible = true;
    Main.frmLocalWarning.Visible = false;
    ShowConsole(display_size);
  }

  /// Time for the window to follow the console, and the console's to it.
  void Pass() {
    Settle();
    RunFor(250 * kMillisecond);
    Settle();
    RunFor(250 * kMillisecond);
    Settle();
  }

  void LoseAll() {
    SupervisePorts();
    Pass();
    for (Frame* lost : {&frmWarning.frmSerialWarning, &frmWarning.frmModuleWarning}) {
      EXPECT_TRUE(lost->Visible) << lost->Name();
    }
  }

  void ExpectInSight(std::initializer_list<const Control*> controls, int title) {
    const WindowPlace& place = frmWarning.Window;
    const QRect above(place.left, place.top, place.width, place.height);
    for (const Control* control : controls) {
      const QRect kept = OnDisplay(*control).translated(0, title);
      EXPECT_FALSE(kept.intersects(above))
          << control->Name() << " is " << kept.left() << " to " << kept.right() << ", "
          << kept.top() << " to " << kept.bottom() << ", the status window " << above.left()
          << " to " << above.right() << ", " << above.top() << " to " << above.bottom();
    }
  }
};

void ExpectRoomAsItIs(FormWindow& window) {
  for (Control* control : frmWarning.Controls()) {
    const ControlMirror* mirror = window.MirrorOf(*control);
    if (mirror == nullptr || mirror->Widget() == nullptr || !control->IsShown()) continue;
    const QString cut = CutOf(*mirror->Widget());
    EXPECT_TRUE(cut.isEmpty()) << control->Name() << ": " << cut.toStdString();
  }
}

/// No text is drawn smaller than its room asks for.
TEST(StatusWindow, ItsTextsUseTheirRoom) {
  for (const QSize& display : {QSize(800, 600), QSize(1366, 768)}) {
    LossWindows world(display, 0);
    world.LoseAll();
    for (const Label* label : {&frmWarning.lblEncoderWarning, &frmWarning.lblSteps}) {
      const QWidget* widget = world.mirror.WindowOf(frmWarning).MirrorOf(*label)->Widget();
      EXPECT_GE(widget->font().pixelSize(), display.height() / 85) << label->Name();
    }
  }
}

/// With the title that a window manager adds to the console, and without one.
TEST(StatusWindow, LeavesWhatMustBeSeenInSightAtEverySize) {
  for (const QSize& display : kDisplays) {
    for (const int title : {0, display.height() / 19}) {
      for (Frame* question : {&Main.frmLocalWarning, &Main.frmTakeFinalBaseline}) {
        SCOPED_TRACE(testing::Message() << display.width() << "x" << display.height() << " "
                                        << title << " " << question->Name());
        LossWindows world(display, 2);
        Main.Window.height += title;
        world.LoseAll();
        ASSERT_EQ(ShownForms().back(), &frmWarning);
        world.ExpectInSight(
            {&Main.lblState, &Main.lblRowsOnDisk, &Main.lblRowsHeld, &Main.lblLastRow,
             &Main.lblSoundingFile, &Main.lblStopKey, &Main.lblBigDepth, &Main.lblDepth,
             &Main.lblStepsSign, &Main.lblChanValue(1), &Main.lblChanValue(8), &Main.frmQuitWarning,
             &Main.cmdStart, &Main.cmdResetPorts, &Main.cmdResetQuits, &Main.shpClamp},
            title);
        question->Visible = true;
        world.Pass();
        if (ShownForms().back() == &frmWarning) world.ExpectInSight({question}, title);
        EXPECT_EQ(ShownForms().back() == &frmWarning,
                  2 * display.width() >= 3 * (display.height() + title));
      }
    }
  }
}

TEST(StatusWindow, ItsTextsHaveRoomAtItsPlace) {
  for (const bool longer : {false, true}) {
    for (const int outputs : {0, 1, 2}) {
      for (const QSize& display : kDisplays) {
        SCOPED_TRACE(testing::Message()
                     << display.width() << " " << outputs << (longer ? " longer" : ""));
        UseTranslation(longer ? Longer : nullptr);
        LossWindows world(display, outputs);
        frmWarning.lblProgress.Caption = "LOOKING FOR THE CONE, PORT 13 OF 17";
        world.LoseAll();
        FormWindow& window = world.mirror.WindowOf(frmWarning);
        const QSize before = window.size();
        EXPECT_LT(before.width(), display.width() * 3 / 5);
        ExpectRoomAsItIs(window);
      }
    }
  }
  UseTranslation(nullptr);
}

/// Pictures for a person's eye, where a folder is named.
TEST(StatusWindow, StandsOnTheConsoleInAPicture) {
  const QString folder = qEnvironmentVariable("PENLOG_LOOK_AT");
  for (const LookSet set : {LookSet::Day, LookSet::Night}) {
    for (const QSize& display : {QSize(800, 600), QSize(1366, 768)}) {
      for (const int outputs : {0, 2}) {
        LossWindows world(display, outputs);
        ChooseLook(set);
        world.LoseAll();
        QPixmap picture = world.mirror.WindowOf(Main).grab();
        FormWindow& window = world.mirror.WindowOf(frmWarning);
        QPainter painter(&picture);
        painter.drawPixmap(window.frameGeometry().topLeft(), window.grab());
        painter.end();
        EXPECT_EQ(picture.size(), display);
        if (folder.isEmpty()) continue;
        picture.save(QString("%1/status_%2_%3_%4.png")
                         .arg(folder, set == LookSet::Day ? "day" : "night")
                         .arg(display.width())
                         .arg(outputs));
      }
    }
  }
  ChooseLook(LookSet::Day);
}

}  // namespace
}  // namespace penlog
