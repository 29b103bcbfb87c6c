#include "platform/qt/picture_view.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace penlog
