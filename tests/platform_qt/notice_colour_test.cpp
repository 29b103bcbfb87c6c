// Notices that are no alarm, and the places that are kept for them on the console.
#include <QFile>
#include <QImage>
#include <map>

#include "forms/main_form.h"
#include "forms/notice_colours.h"
#include "forms/warning_form.h"
#include "platform/qt/look.h"
#include "platform_qt/demo_values.h"
#include "platform_qt/room.h"
#include "platform_qt/window_world.h"

namespace penlog {
namespace {

void RaiseAmber() {
  Main.lblRowsHeld.Caption = "12";
  Main.lblRowsHeld.Visible = Main.lblRowsHeldCaption.Visible = Main.lblStepsSign.Visible = true;
}

int PixelsOf(const QImage& image, const QColor& colour) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) count += image.pixelColor(x, y) == colour ? 1 : 0;
  }
  return count;
}

TEST(Notices, AreAmberAndNoAlarm) {
  for (const LookSet set : {LookSet::Day, LookSet::Night}) {
    WindowWorld world;
    ChooseLook(set);
    FillMain();
    Main.cmdStart.Caption = "START";
    RaiseAmber();
    Show(Main);
    world.Settle();
    for (Control* control : {&Main.lblRowsHeld, &Main.lblStepsSign}) {
      const QWidget& widget = world.Find(*control);
      const QImage picture = const_cast<QWidget&>(widget).grab().toImage();
      EXPECT_GT(PixelsOf(picture, Look().lit), widget.width() * widget.height() / 3)
          << control->Name();
    }
    frmWarning.frmSteps.BackColor = kAmber;  // as with the sign
    Show(frmWarning);
    world.Settle();
    const QImage steps = world.Find(frmWarning.frmSteps).grab().toImage();
    EXPECT_GT(PixelsOf(steps, Look().lit), steps.width() * steps.height() / 10)
        << steps.width() << "x" << steps.height();
    const QImage window = world.mirror.WindowOf(Main).grab().toImage();
    EXPECT_EQ(PixelsOf(window, Look().alarm), 0);
    ChooseLook(LookSet::Day);
  }
}

TEST(Notices, StandOutFromTheirGround) {
  for (const LookSet set : {LookSet::Day, LookSet::Night}) {
    ChooseLook(set);
    EXPECT_EQ(GroundColour(kAmber), Look().lit);
    EXPECT_GE(Contrast(TextOn(kAmber, kBlack), GroundColour(kAmber)), kLeastContrast);
    EXPECT_GE(Contrast(GroundColour(kAmber), Look().ground), kLeastContrast);
  }
  ChooseLook(LookSet::Day);
}

std::map<std::string, QRect> PlacesOn(FormWindow& window, const QSize& display) {
  LayOut(window, display);
  std::map<std::string, QRect> places;
  for (const Control* control : window.Mirrored().Controls()) {
    const ControlMirror* mirror = window.MirrorOf(*control);
    QWidget* widget = mirror == nullptr ? nullptr : mirror->Widget();
    if (widget == nullptr || !widget->isVisible()) continue;
    places[control->Name()] = QRect(widget->mapTo(&window, QPoint()), widget->size());
  }
  return places;
}

TEST(Notices, OfMissingStepsMoveNothing) {
  for (const QSize& display : kDisplays) {
    WindowWorld world;
    FillMain();
    Main.frmGraphArea.Visible = true;
    Show(Main);
    FormWindow window(Main);
    PlacesOn(window, display);
    const auto before = PlacesOn(window, display);
    Main.lblStepsSign.Visible = true;
    auto after = PlacesOn(window, display);
    EXPECT_EQ(after.erase("lblStepsSign"), 1U);
    EXPECT_EQ(after, before) << display.width();
  }
}

TEST(Progress, OfASearchMovesNothingOnTheStatusWindow) {
  for (const QSize& display : kDisplays) {
    WindowWorld world;
    Show(frmWarning);
    FormWindow window(frmWarning);
    PlacesOn(window, display);
    const auto before = PlacesOn(window, display);
    frmWarning.lblProgress.Caption = "LOOKING FOR THE CONE, PORT 13 OF 17";
    EXPECT_EQ(PlacesOn(window, display), before) << display.width();
  }
}

/// A share of the window as a chart shows its traces on.
TEST(Charts, HaveRoomOnTheSmallestDisplay) {
  WindowWorld world;
  FillMain();
  Main.frmGraphArea.Visible = true;
  Show(Main);
  FormWindow window(Main);
  LayOut(window, {800, 600});
  EXPECT_GE(window.MirrorOf(Main.frmGraphArea)->Widget()->height(), 175);
}

/// The word table that is delivered.
std::map<std::string, std::string> GermanWords() {
  std::map<std::string, std::string> words;
  std::string english;
  bool is_english = true;
  std::string line;
  const auto take = [&] {
    if (line.size() < 2 || line.front() != '"') return;
    const std::string word = line.substr(1, line.size() - 2);
    if (is_english) english = word;
    if (!is_english) words[english] = word;
    is_english = !is_english;
  };
  QFile file(QString(PENLOG_SOURCE_DIR) + "/data/Deutsch.txt");
  EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  for (const char c : file.readAll().toStdString()) {
    if (c == '\n') take();
    if (c == '\n') line.clear();
    if (c != '\n' && c != '\r') line += c;
  }
  return words;
}

TEST(Notices, HaveGermanWordsThatFit) {
  WindowWorld world;
  const auto words = GermanWords();
  ASSERT_GT(words.size(), 150U);
  for (const Control* control : {&Main.lblStepsSign, &Main.lblRowsHeldCaption}) {
    EXPECT_EQ(words.count(control->Caption), 1U) << control->Name();
  }
  UseTranslation([&words](std::string_view text) {
    const auto found = words.find(std::string(text));
    return found == words.end() ? std::string(text) : found->second;
  });
  FillMain();
  RaiseNotices();
  RaiseAmber();
  Show(Main);
  FormWindow window(Main);
  for (const QSize& display : kDisplays) {
    ExpectNothingCut(window, display);
    ExpectNoOverlap(window, display);
  }
  UseTranslation(nullptr);
}

}  // namespace
}  // namespace penlog
