// The controls' values on their widgets.
#include "platform/qt/mirror.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QFontMetrics>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <vector>

#include "forms/cone_settings_form.h"
#include "forms/main_form.h"
#include "forms/restart_form.h"
#include "forms/setup_display_form.h"
#include "forms/specify_truck_interface_form.h"
#include "forms/start_up_form.h"
#include "forms/warning_form.h"
#include "platform/qt/columns_view.h"
#include "platform/qt/look.h"
#include "platform/qt/picture_view.h"
#include "platform/qt/report_view.h"
#include "platform/qt/shape_view.h"
#include "platform/qt/text_view.h"
#include "platform/qt/widget_values.h"
#include "platform_qt/window_world.h"

namespace penlog {
namespace {

/// Counts what reaches a widget.
class EventCount : public QObject {
 public:
  EventCount(QObject& watched, QEvent::Type type) : type_(type) {
    watched.installEventFilter(this);
  }
  bool eventFilter(QObject*, QEvent* event) override {
    count += event->type() == type_ ? 1 : 0;
    return false;
  }
  int count = 0;

 private:
  QEvent::Type type_;
};

TEST(Mirror, ShowsAWindowWhileItsFormIsVisible) {
  WindowWorld world;
  Show(StartUp);
  world.mirror.Follow();
  FormWindow& window = world.mirror.WindowOf(StartUp);
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(window.windowTitle(), "PENLOG");
  Hide(StartUp);
  world.mirror.Follow();
  EXPECT_FALSE(window.isVisible());
}

TEST(Mirror, FollowsTextFlagsAndColour) {
  WindowWorld world;
  Show(Main);
  world.mirror.Follow();
  Main.lblDepth.Caption = "1.230 m";
  Main.cmdStart.Enabled = true;
  Main.cmdStart.Caption = "STOP";
  Main.frmQuitWarning.Visible = true;
  Main.shpClamp.Fill = FillStyle::Solid;
  world.mirror.Follow();
  EXPECT_EQ(CaptionOf(world.Find(Main.lblDepth)), "1.230 m");
  EXPECT_TRUE(world.Find(Main.cmdStart).isEnabled());
  EXPECT_EQ(CaptionOf(world.Find(Main.cmdStart)), "STOP");
  EXPECT_TRUE(world.Find(Main.frmQuitWarning).isVisible());
  EXPECT_TRUE(world.Find<ShapeView>(Main.shpClamp).IsSolid());
}

TEST(Mirror, GoesBackWithAnUnload) {
  WindowWorld world;
  Show(Main);
  Main.lblDepth.Caption = "1.230 m";
  world.mirror.Follow();
  Unload(Main);
  Show(Main);
  world.mirror.Follow();
  EXPECT_EQ(CaptionOf(world.Find(Main.lblDepth)), "0.000 m");
}

TEST(Mirror, TouchesOnlyWhatChanged) {
  WindowWorld world;
  Show(Main);
  world.mirror.Follow();
  auto& label = world.Find<QLabel>(Main.Label7);
  label.setText("not the program's");
  world.mirror.Follow();
  EXPECT_EQ(label.text(), "not the program's") << "an unchanged caption was set again";
  Main.Label7.Caption = "ELEVATION";
  world.mirror.Follow();
  EXPECT_EQ(label.text(), "ELEVATION");
}

TEST(Mirror, AChangedValueCausesNoLayoutPass) {
  WindowWorld world;
  Show(Main);
  Main.lblChanValue(1).Visible = true;
  for (int i = 0; i < 3; ++i) world.Settle();
  QCoreApplication::processEvents();
  EventCount layouts(*world.mirror.WindowOf(Main).centralWidget(), QEvent::LayoutRequest);
  for (int i = 0; i < 10; ++i) {
    Main.lblDepth.Caption = std::to_string(i) + ".000 m";
    Main.lblBigDepth.Caption = std::to_string(i * 1000) + "m";
    Main.lblChanValue(1).Caption = std::string(static_cast<std::size_t>(i), '8');
    world.mirror.Follow();
    QCoreApplication::processEvents();
  }
  EXPECT_EQ(layouts.count, 0);
}

TEST(Mirror, DrawsAtMostThirtyFramesASecond) {
  WindowWorld world;
  Show(Main);
  world.mirror.Follow();
  const auto before = world.mirror.Frames();
  QElapsedTimer time;
  time.start();
  while (time.elapsed() < 200) world.mirror.Frame();
  const auto frames = world.mirror.Frames() - before;
  EXPECT_LE(frames, time.elapsed() / kFrameMs + 1);
  EXPECT_GE(frames, 1);
}

TEST(Mirror, AFrameThatWasTooEarlyIsDrawnByItself) {
  WindowWorld world;
  Show(Main);
  world.mirror.Follow();
  bool too_early = false;  // on a loaded machine a frame's time may have gone by already
  for (int i = 0; i < 100 && !too_early; ++i) {
    Main.lblDepth.Caption = std::to_string(i);
    world.mirror.Follow();
    Main.lblDepth.Caption = "7.000 m";
    world.mirror.Frame();
    too_early = CaptionOf(world.Find(Main.lblDepth)) != "7.000 m";
  }
  ASSERT_TRUE(too_early);
  QElapsedTimer time;
  time.start();
  while (time.elapsed() < 1000 && CaptionOf(world.Find(Main.lblDepth)) != "7.000 m") {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
  }
  EXPECT_EQ(CaptionOf(world.Find(Main.lblDepth)), "7.000 m");
}

TEST(Mirror, PlacesTheBubbleInFractionsOfTheLevel) {
  WindowWorld world;
  Show(Main);
  Main.shpBubble.Where = {true, 0.5, 0.25, 0.2, 0.2};
  world.Settle();
  const QWidget& level = world.Find(Main.shpLevel);
  const QWidget& bubble = world.Find(Main.shpBubble);
  EXPECT_NEAR(bubble.x(), level.width() * 0.5, 1);
  EXPECT_NEAR(bubble.y(), level.height() * 0.25, 1);
  world.mirror.WindowOf(Main).resize(1600, 1200);
  world.Settle();
  EXPECT_NEAR(bubble.x(), level.width() * 0.5, 1);
}

TEST(Mirror, AScreenThatIsShownAgainComesUpThoughItIsTheFrontOne) {
  WindowWorld world;
  Show(Main);
  Show(frmWarning);
  world.mirror.Follow();
  const std::int64_t raised = world.mirror.Raised();
  world.mirror.Follow();
  EXPECT_EQ(world.mirror.Raised(), raised) << "nobody asked for it";
  Show(frmWarning);  // another window lies above it since a press there
  world.mirror.Follow();
  EXPECT_EQ(world.mirror.Raised(), raised + 1);
}

TEST(Mirror, AHeldButtonKeepsTheKeysUntilItIsLetGo) {
  WindowWorld world;
  Main.cmdResetQuits.Visible = true;
  Main.cmdResetQuits.Press = [] {};
  Main.cmdResetQuits.Release = [] {};
  Show(Main);
  world.Settle();
  EXPECT_EQ(world.Hand(ActionKind::Press, Main.cmdResetQuits), "");
  Show(frmWarning);
  world.mirror.Follow();
  EXPECT_TRUE(world.mirror.WaitsForKeys());
  EXPECT_EQ(world.Hand(ActionKind::Release, Main.cmdResetQuits), "");
  world.mirror.Follow();
  EXPECT_FALSE(world.mirror.WaitsForKeys());
}

TEST(Mirror, AReadingOverItsLimitIsRed) {
  WindowWorld world;
  Main.lblChanValue(1).Visible = true;
  Main.lblChanValue(1).Caption = "55.0";
  Show(Main);
  world.Settle();
  const auto red = [&] {
    const QImage picture = world.Find(Main.lblChanValue(1)).grab().toImage();
    int count = 0;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        count += picture.pixelColor(x, y) == Look().alarm ? 1 : 0;
      }
    }
    return count;
  };
  EXPECT_EQ(red(), 0);
  Main.lblChanValue(1).ForeColor = kRed;
  world.mirror.Follow();
  EXPECT_GT(red(), 10);
}

TEST(Mirror, ListsShowTheDeviceBesideTheNumber) {
  WindowWorld world;
  auto& ports = frmSpecifyTruckInterface.cmbTruckInterfaceSerialPort;
  ports.List = {"3", "12"};
  ports.Beside = {"/dev/ttyUSB0"};
  ports.ListIndex = 1;
  Show(frmSpecifyTruckInterface);
  world.mirror.Follow();
  const auto& box = world.Find<QComboBox>(ports);
  EXPECT_EQ(box.itemText(0), "3   /dev/ttyUSB0");
  EXPECT_EQ(box.itemText(1), "12");
  EXPECT_EQ(box.currentIndex(), 1);
}

TEST(Mirror, ShowsTheOperatorsLanguageAndKeepsTheProgramsText) {
  WindowWorld world;
  Show(frmZOLRestart);
  world.mirror.Follow();
  UseTranslation(
      [](std::string_view text) { return text == "YES" ? std::string("JA") : std::string(text); });
  world.mirror.Follow();
  EXPECT_EQ(CaptionOf(world.Find(frmZOLRestart.cmdYes)), "JA");
  EXPECT_EQ(frmZOLRestart.cmdYes.Caption, "YES");
  UseTranslation({});
  world.mirror.Follow();
  EXPECT_EQ(CaptionOf(world.Find(frmZOLRestart.cmdYes)), "YES");
}

TEST(Mirror, APictureDrawsOnlyWhatIsNew) {
  PictureView view;
  view.resize(200, 100);
  struct GraphForm : Form {
    GraphForm() : Form("frmGraph", "") { KeepFirstValues(); }
    Picture pct{*this, "pct"};
  };
  GraphForm form;
  view.grab();
  form.pct.Draw({DrawStep::Kind::Line, 0, 0, 1, 1, kWhite, {}});
  view.Follow(form.pct);
  EXPECT_EQ(view.StepsDrawn(), 1u);
  form.pct.Draw({DrawStep::Kind::Dot, 0.5, 0.5, 0, 0, kRed, {}});
  view.Follow(form.pct);
  EXPECT_EQ(view.StepsDrawn(), 2u);
  form.pct.Cls();
  form.pct.Draw({DrawStep::Kind::Line, 0, 0.5, 1, 0.5, kWhite, {}});
  view.Follow(form.pct);
  EXPECT_EQ(view.StepsDrawn(), 1u);
  const QImage picture = view.grab().toImage();
  EXPECT_NE(picture.pixelColor(20, 50), Look().readout_ground);
  EXPECT_EQ(picture.pixelColor(20, 10), Look().readout_ground) << "the cleared line still stands";
}

TEST(Mirror, APictureThatWasClearedAndFilledAgainToTheSameCountIsDrawnAnew) {
  PictureView view;
  view.resize(200, 100);
  struct GraphForm : Form {
    GraphForm() : Form("frmGraph", "") { KeepFirstValues(); }
    Picture pct{*this, "pct"};
  };
  GraphForm form;
  view.grab();
  form.pct.Draw({DrawStep::Kind::Line, 0, 0.2, 1, 0.2, kWhite, {}});
  view.Follow(form.pct);
  form.pct.Cls();
  form.pct.Draw({DrawStep::Kind::Line, 0, 0.8, 1, 0.8, kWhite, {}});
  view.Follow(form.pct);
  const QImage picture = view.grab().toImage();
  EXPECT_EQ(picture.pixelColor(100, 20), Look().readout_ground);
  EXPECT_NE(picture.pixelColor(100, 80), Look().readout_ground);
}

TEST(Mirror, TenChannelsStandInAColumn) {
  WindowWorld world;
  for (int channel = 3; channel <= 14; ++channel) {
    SetupDisplay.chkRecordChan(channel).Visible = true;
  }
  Show(SetupDisplay);
  world.Settle();
  const QWidget& first = world.Find(SetupDisplay.chkRecordChan(3));
  const QWidget& tenth = world.Find(SetupDisplay.chkRecordChan(12));
  const QWidget& eleventh = world.Find(SetupDisplay.chkRecordChan(13));
  EXPECT_EQ(first.x(), tenth.x());
  EXPECT_EQ(first.y(), 0);
  EXPECT_EQ(eleventh.y(), first.y());
  EXPECT_GT(eleventh.x(), first.x());
}

TEST(Report, ColumnsAreApartByTwoBlanks) {
  const struct {
    const char* line;
    QStringList columns;
  } rows[] = {
      {"Cone #: DCS0123  Creation Date: 010118", {"Cone #: DCS0123", "Creation Date: 010118"}},
      {"Channels Available", {"Channels Available"}},
      {"Tip  100 MPa  0.005 m from tip  1000 mm^2 Area  No Subtraction",
       {"Tip", "100 MPa", "0.005 m from tip", "1000 mm^2 Area", "No Subtraction"}},
      {"Sleeve  1 MPa  0.1 m from tip  15000 mm^2 Area   Sub Channel  1",
       {"Sleeve", "1 MPa", "0.1 m from tip", "15000 mm^2 Area", "Sub Channel 1"}},
      {"", {""}},
  };
  for (const auto& row : rows) EXPECT_EQ(ReportView::Columns(row.line), row.columns) << row.line;
}

/// The report as it is drawn, on a page so wide that no column is pushed aside by the one before.
struct Page : testing::Test {
  static constexpr int kWidth = 3000;

  /// Where marks begin from the left, in fractions of the page between its margins; a mark ends
  /// where nothing is drawn for a twentieth of the page.
  std::vector<double> MarksOf(const QString& line) {
    const QImage picture = Draw(line);
    std::vector<double> marks;
    int last = -kWidth;
    for (int x = 0; x < picture.width(); ++x) {
      if (!IsDrawn(picture, x)) continue;
      if (x - last > kWidth / 20) marks.push_back((x - Margin()) / (kWidth - 2.0 * Margin()));
      last = x;
    }
    return marks;
  }
  int WidthOf(const QString& line) {
    const QImage picture = Draw(line);
    int first = -1;
    int last = -1;
    for (int x = 0; x < picture.width(); ++x) {
      if (!IsDrawn(picture, x)) continue;
      if (first < 0) first = x;
      last = x;
    }
    return last - first;
  }

  WindowWorld world;

 private:
  ReportView& View() { return world.Find<ReportView>(frmConeSettings.lblReport); }
  int Margin() { return QFontMetrics(View().font()).lineSpacing() / 2; }
  QImage Draw(const QString& line) {
    frmConeSettings.lblReport.Caption = line.toStdString();
    Show(frmConeSettings);
    world.Settle();
    View().resize(kWidth, 60);
    QImage picture(kWidth, 60, QImage::Format_RGB32);
    picture.fill(Qt::white);
    View().render(&picture, {}, {}, {});
    return picture;
  }
  static bool IsDrawn(const QImage& picture, int x) {
    for (int y = 0; y < picture.height(); ++y) {
      if (picture.pixelColor(x, y) != picture.pixelColor(picture.width() - 1, y)) return true;
    }
    return false;
  }
};

TEST_F(Page, ColumnsOfAChannelBeginAtTheirFractionsOfTheWidth) {
  const auto marks = MarksOf("Tip  1 MPa  0.1 m from tip  1000 mm^2 Area  No Subtraction");
  const std::vector<double> expected = {0, 0.12, 0.24, 0.38, 0.55};
  ASSERT_EQ(marks.size(), expected.size());
  for (std::size_t i = 0; i < marks.size(); ++i) EXPECT_NEAR(marks[i], expected[i], 0.002) << i;
}

TEST_F(Page, SecondColumnOfTheHeaderBeginsAtThirtyPerCentOfTheWidth) {
  const auto marks = MarksOf("Memory Size: 128  Last Calibration Date: 200319");
  ASSERT_EQ(marks.size(), 2u);
  EXPECT_NEAR(marks[0], 0, 0.002);
  EXPECT_NEAR(marks[1], 0.30, 0.002);
}

TEST_F(Page, HeadingIsBoldAndNoOtherLineIs) {
  const QString heading = "Channels Available";
  const QString other = "Channels Avaliable";  // of the same letters
  const int heading_width = WidthOf(heading);
  const int other_width = WidthOf(other);
  const QFont plain = world.Find(frmConeSettings.lblReport).font();  // with the window's style
  QFont bold = plain;
  bold.setBold(true);
  const auto width = [](const QFont& font, const QString& text) {
    return QFontMetrics(font).tightBoundingRect(text).width();
  };
  ASSERT_GT(width(bold, heading), width(plain, heading) + 4);
  EXPECT_NEAR(heading_width, width(bold, heading), 2);
  EXPECT_NEAR(other_width, width(plain, other), 2);
}

TEST(Look, SizesGrowWithTheWindow) {
  EXPECT_TRUE(StyleSheet(1.0).contains("font-size: 13px"));
  EXPECT_TRUE(StyleSheet(2.0).contains("font-size: 26px"));
  EXPECT_FALSE(StyleSheet(1.0).contains("@"));
}

}  // namespace
}  // namespace penlog
