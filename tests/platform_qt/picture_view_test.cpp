#include "platform/qt/picture_view.h"

#include <gtest/gtest.h>

#include <QProcess>

#include "forms/enlarged_graph_form.h"
#include "platform_qt/window_world.h"

namespace penlog {
namespace {

using Names = std::vector<std::string>;

void DrawZigzag(Picture& picture) {
  for (int i = 0; i < 40; ++i) {
    const auto point = [](int row) {
      return TracePoint{row % 2 == 0 ? 0.2F : 0.8F, static_cast<float>(row) / 40};
    };
    picture.DrawSegment(1, kRed, point(i), point(i + 1));
  }
}

TEST(PictureView, FollowsAResizeFromTheData) {
  Form form("PictureViewTest", "");
  Picture picture(form, "pct");
  DrawZigzag(picture);
  PictureView grown;
  grown.resize(100, 80);
  grown.Follow(picture);
  grown.resize(260, 310);
  grown.grab();  // a hidden widget takes its size now
  PictureView fresh;
  fresh.resize(260, 310);
  fresh.Follow(picture);
  EXPECT_EQ(grown.Shown().size(), QSize(260, 310));
  EXPECT_EQ(grown.Shown(), fresh.Shown());
}

TEST(PictureView, ClickIsTheControlsClick) {
  WindowWorld world;
  EnlargedGraph.pctGraph.Click = [] {};
  Show(EnlargedGraph);
  EXPECT_EQ(world.Hand(ActionKind::Click, EnlargedGraph.pctGraph), "");
  EXPECT_EQ(world.served, Names{"click pctGraph"});
  EXPECT_EQ(world.Hand(ActionKind::Point, EnlargedGraph.pctGraph, 0), "");
  EXPECT_EQ(world.served.size(), 1U);  // moving the pointer over it is nothing
  EnlargedGraph.pctGraph.Click = nullptr;
}

TEST(PictureView, PointIsToldWhereSomebodyListens) {
  WindowWorld world;
  double across = -1;
  EnlargedGraph.pctGraph.Point = [&](double x, double, bool clicked) { across = clicked ? x : -1; };
  Show(EnlargedGraph);
  EXPECT_EQ(world.Hand(ActionKind::Point, EnlargedGraph.pctGraph, 1), "");
  EXPECT_EQ(world.served, Names{"point pctGraph"});
  EXPECT_GE(across, 0);
  EnlargedGraph.pctGraph.Point = nullptr;
}

/// At the ratio of the display that the test runs on; the next test runs it once more on another.
TEST(PictureView, IsCrispAtTheRatioOfItsDisplay) {
  Form form("PictureViewTest", "");
  Picture picture(form, "pct");
  picture.Draw({DrawStep::Kind::Line, 0.37, 0, 0.37, 1, kBlack, {}});
  QWidget window;
  window.resize(200, 150);
  PictureView view(&window);
  view.setGeometry(31, 17, 101, 83);
  view.Follow(picture);
  const double ratio = view.devicePixelRatioF();
  const QByteArray wanted = qgetenv("QT_SCALE_FACTOR");
  EXPECT_TRUE(wanted.isEmpty() || ratio == wanted.toDouble()) << ratio;
  EXPECT_EQ(view.Shown().size(), (QSizeF(101, 83) * ratio).toSize());
  const QImage image = window.grab().toImage();
  const int row = static_cast<int>((17 + 40) * ratio);
  int lit = 0;
  for (int x = static_cast<int>(34 * ratio); x < static_cast<int>(128 * ratio); ++x) {
    const QColor pixel = image.pixelColor(x, row);
    EXPECT_TRUE(pixel == Look().readout_ground || pixel == Shown(kBlack)) << x;
    lit += pixel == Shown(kBlack) ? 1 : 0;
  }
  EXPECT_GE(lit, 1);
  EXPECT_LE(lit, 2);
}

TEST(PictureView, IsCrispUnderAScaleFactor) {
  QProcess once_more;
  QProcessEnvironment surroundings = QProcessEnvironment::systemEnvironment();
  surroundings.insert("QT_SCALE_FACTOR", "1.5");
  once_more.setProcessEnvironment(surroundings);
  once_more.start(QCoreApplication::applicationFilePath(),
                  {"--gtest_filter=PictureView.IsCrispAtTheRatioOfItsDisplay"});
  ASSERT_TRUE(once_more.waitForFinished());
  const QByteArray told = once_more.readAllStandardOutput();
  EXPECT_EQ(once_more.exitCode(), 0) << told.toStdString();
  EXPECT_TRUE(told.contains("1 test from 1 test suite ran")) << told.toStdString();
}

}  // namespace
}  // namespace penlog
