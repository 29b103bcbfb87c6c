// The colours of both sets against the grounds that they stand on.
#include "platform/qt/look.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTextStream>

#include "forms/main_form.h"
#include "platform_qt/window_world.h"

namespace penlog {
namespace {

struct Pair {
  const char* name;
  QColor LookColours::*front;
  QColor LookColours::*ground;
};

const Pair kPairs[] = {
    {"text on the window", &LookColours::text, &LookColours::ground},
    {"text on a frame", &LookColours::text, &LookColours::panel},
    {"text of a button", &LookColours::text, &LookColours::raised},
    {"typed text", &LookColours::text, &LookColours::field},
    {"caption on the window", &LookColours::caption, &LookColours::ground},
    {"caption on a frame", &LookColours::caption, &LookColours::panel},
    {"disabled text on the window", &LookColours::faint, &LookColours::ground},
    {"disabled text on a frame", &LookColours::faint, &LookColours::panel},
    {"disabled text in a readout", &LookColours::faint, &LookColours::readout_ground},
    {"disabled text in a field", &LookColours::faint, &LookColours::field},
    {"readout", &LookColours::readout_text, &LookColours::readout_ground},
    {"readout's text on a frame", &LookColours::readout_text, &LookColours::panel},
    {"focus on the window", &LookColours::accent, &LookColours::ground},
    {"focus on a frame", &LookColours::accent, &LookColours::panel},
    {"focus on a field", &LookColours::accent, &LookColours::field},
    {"text of what is chosen", &LookColours::on_accent, &LookColours::accent},
    {"text on the alarm", &LookColours::on_alarm, &LookColours::alarm},
    {"pressed button", &LookColours::ground, &LookColours::text},
    {"warning words on the window", &LookColours::red_text, &LookColours::ground},
    {"warning words on a frame", &LookColours::red_text, &LookColours::panel},
    {"warning words in a readout", &LookColours::red_text, &LookColours::readout_ground},
    {"red trace", &LookColours::red_mark, &LookColours::readout_ground},
    {"red lamp", &LookColours::red_mark, &LookColours::ground},
    {"red lamp on a frame", &LookColours::red_mark, &LookColours::panel},
    {"green trace", &LookColours::good, &LookColours::readout_ground},
    {"green lamp", &LookColours::good, &LookColours::ground},
    {"green lamp on a frame", &LookColours::good, &LookColours::panel},
    {"text on green", &LookColours::on_good, &LookColours::good},
    {"lit lamp", &LookColours::lit, &LookColours::ground},
    {"lit lamp on a frame", &LookColours::lit, &LookColours::panel},
    {"lit bar", &LookColours::lit, &LookColours::readout_ground},
    {"blue trace", &LookColours::blue_mark, &LookColours::readout_ground},
    {"blue key", &LookColours::blue_mark, &LookColours::panel},
    {"cyan trace", &LookColours::cyan_mark, &LookColours::readout_ground},
};

TEST(Contrast, IsThatOfTheGuideline) {
  EXPECT_NEAR(Contrast(Qt::black, Qt::white), 21.0, 0.001);
  EXPECT_NEAR(Contrast(Qt::white, Qt::black), 21.0, 0.001);
  EXPECT_NEAR(Contrast(Qt::red, Qt::red), 1.0, 0.001);
  EXPECT_NEAR(Contrast(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
  EXPECT_NEAR(Contrast(QColor(0xff, 0, 0), Qt::white), 4.0, 0.01);
}

TEST(Look, EveryTextAndMarkStandsOutFromItsGround) {
  for (const LookSet set : {LookSet::Day, LookSet::Night}) {
    for (const Pair& pair : kPairs) {
      EXPECT_GE(Contrast(LookOf(set).*pair.front, LookOf(set).*pair.ground), kLeastContrast)
          << (set == LookSet::Day ? "day: " : "night: ") << pair.name;
    }
  }
}

TEST(Look, TheDayIsBrightAndTheNightDoesNotGlare) {
  EXPECT_GT(LookOf(LookSet::Day).ground.lightnessF(), 0.85f);
  EXPECT_LT(LookOf(LookSet::Night).ground.lightnessF(), 0.12f);
  EXPECT_LT(LookOf(LookSet::Night).readout_text.lightnessF(), 0.95f);
}

TEST(Look, ARedMarkIsNotTheAlarm) {
  for (const LookSet set : {LookSet::Day, LookSet::Night}) {
    const QColor mark = LookOf(set).red_mark.toHsl();
    const QColor alarm = LookOf(set).alarm.toHsl();
    const int turn = std::abs(mark.hslHue() - alarm.hslHue());
    EXPECT_GE(std::min(turn, 360 - turn), 20) << "degrees on the circle of colours";
    EXPECT_GE(std::abs(mark.lightness() - alarm.lightness()), 5);
    EXPECT_NE(LookOf(set).red_text, LookOf(set).alarm);
  }
}

TEST(Look, ColoursOfTheProgramAreShownByTheirRole) {
  World world;
  for (const LookSet set : {LookSet::Day, LookSet::Night}) {
    ChooseLook(set);
    const LookColours& look = LookOf(set);
    EXPECT_EQ(Shown(kRed), look.red_mark);
    EXPECT_EQ(Shown(kBlue), look.blue_mark);
    EXPECT_EQ(GroundColour(kRed), look.alarm);
    EXPECT_EQ(GroundColour(kBlack), look.readout_ground);
    EXPECT_EQ(TextColour(kRed), look.red_text);
    EXPECT_EQ(TextOn(kRed, kRed), look.on_alarm);
    EXPECT_EQ(TextOn(kRed, kBlack), look.on_alarm);
  }
  ChooseLook(LookSet::Day);
}

TEST(Look, AColourWithoutARoleIsMadeToStandOut) {
  World world;
  const Colour odd[] = {{255, 255, 0}, {255, 0, 255}, {128, 128, 128}, {1, 2, 3}, {250, 250, 250}};
  for (const LookSet set : {LookSet::Day, LookSet::Night}) {
    ChooseLook(set);
    for (const Colour colour : odd) {
      EXPECT_GE(Contrast(Shown(colour), Look().readout_ground), kLeastContrast);
    }
  }
  ChooseLook(LookSet::Day);
}

TEST(Look, TheAlarmFillsNothingButTheStopInTheStyleSheet) {
  World world;
  const QString alarm = Look().alarm.name();
  QRegularExpression rule("([^{}]+)\\{[^{}]*background: " + alarm + "[^{}]*\\}");
  auto found = rule.globalMatch(StyleSheet(1.0));
  int count = 0;
  while (found.hasNext()) {
    ++count;
    EXPECT_EQ(found.next().captured(1).trimmed(), "QPushButton[role=\"stop\"]");
  }
  EXPECT_EQ(count, 1);
}

TEST(Look, ArrangementsKeepToItsGaps) {
  const QString folder = QString(PENLOG_SOURCE_DIR) + "/src/platform/qt/ui/";
  const QRegularExpression gap(
      "name=\"(\\w*(?:Margin|Spacing|spacing))\">\\s*<number>(\\d+)</number>");
  const QStringList files = QDir(folder).entryList({"*.ui"});
  EXPECT_EQ(static_cast<std::size_t>(files.size()), AllForms().size());  // each screen has its own
  for (const QString& name : files) {
    QFile file(folder + name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    auto found = gap.globalMatch(QString::fromUtf8(file.readAll()));
    EXPECT_TRUE(found.hasNext()) << name.toStdString();
    while (found.hasNext()) {
      const int pixels = found.next().captured(2).toInt();
      const auto& gaps = LookGaps();
      EXPECT_NE(std::find(gaps.begin(), gaps.end(), pixels), gaps.end())
          << name.toStdString() << ": " << pixels;
    }
  }
}

TEST(Look, ChangesTheWindowsWithTheNextFrame) {
  WindowWorld world;
  Show(Main);
  world.Settle();
  const QImage day = world.mirror.WindowOf(Main).grab().toImage();
  EXPECT_EQ(day.pixelColor(2, day.height() - 3), LookOf(LookSet::Day).ground);
  ChooseLook(LookSet::Night);
  world.Settle();
  const QImage night = world.mirror.WindowOf(Main).grab().toImage();
  EXPECT_EQ(night.pixelColor(2, night.height() - 3), LookOf(LookSet::Night).ground);
  ChooseLook(LookSet::Day);
}

}  // namespace
}  // namespace penlog
