#include "platform/qt/picture_canvas.h"

#include <gtest/gtest.h>

#include <cmath>

#include "forms/form.h"
#include "platform/view.h"

namespace penlog {
namespace {

struct CanvasWorld {
  CanvasWorld() {
    canvas.SetSize({100, 200}, 1);
    ChooseLook(LookSet::Night);
  }
  ~CanvasWorld() { ChooseLook(before); }
  PixelRows Follow() { return canvas.Follow(picture, QFont()); }
  QColor At(int x, int y) const { return canvas.Image().pixelColor(x, y); }

  /// Segments of a curve, `count` of them from row `first` of 400 on.
  void AddCurve(int first, int count) {
    const auto point = [](int row) {
      return TracePoint{0.5F + 0.4F * std::sin(static_cast<float>(row) / 20),  //
                        static_cast<float>(row) / 400};
    };
    for (int row = first; row < first + count; ++row) {
      picture.DrawSegment(1, kRed, point(row), point(row + 1));
    }
  }

  LookSet before = ChosenLook();
  Form form{"CanvasTest", ""};
  Picture picture{form, "pct"};
  PictureCanvas canvas;
};

TEST(PictureCanvas, TraceGoesOnWhereItEnded) {
  CanvasWorld world;
  world.AddCurve(0, 3);
  ASSERT_EQ(world.picture.traces.size(), 1U);
  EXPECT_EQ(world.picture.traces[0].points.size(), 4U);
  world.picture.DrawSegment(1, kRed, {0, 0.5F}, {0.1F, 0.6F});
  EXPECT_EQ(world.picture.traces.size(), 2U);
  world.picture.DrawSegment(2, kBlue, {0.1F, 0.6F}, {0.2F, 0.7F});
  EXPECT_EQ(world.picture.traces.size(), 3U);
  world.picture.Cls();
  EXPECT_TRUE(world.picture.traces.empty());
}

TEST(PictureCanvas, RowByRowGivesThePictureOfAFullRedraw) {
  CanvasWorld grown;
  for (int row = 0; row < 300; ++row) {
    grown.AddCurve(row, 1);
    grown.Follow();
  }
  CanvasWorld whole;
  whole.AddCurve(0, 300);
  whole.Follow();
  EXPECT_EQ(grown.canvas.Image(), whole.canvas.Image());
}

TEST(PictureCanvas, OneSegmentTouchesItsOwnRowsAlone) {
  CanvasWorld world;
  world.AddCurve(0, 200);
  world.Follow();
  EXPECT_TRUE(world.Follow().IsEmpty());
  world.AddCurve(200, 1);
  const PixelRows rows = world.Follow();
  EXPECT_FALSE(rows.IsEmpty());
  EXPECT_GE(rows.first, 98);
  EXPECT_LE(rows.last, 103);
}

TEST(PictureCanvas, FollowsASizeFromTheData) {
  CanvasWorld world;
  world.AddCurve(0, 300);
  world.Follow();
  world.canvas.SetSize({300, 500}, 1);
  world.Follow();
  CanvasWorld fresh;
  fresh.canvas.SetSize({300, 500}, 1);
  fresh.AddCurve(0, 300);
  fresh.Follow();
  EXPECT_EQ(world.canvas.Image(), fresh.canvas.Image());
}

TEST(PictureCanvas, IsCrispOnADenseDisplay) {
  CanvasWorld world;
  const double pen = world.canvas.Pen();
  world.canvas.SetSize({200, 400}, 2);
  EXPECT_EQ(world.canvas.Image().size(), QSize(200, 400));
  EXPECT_EQ(world.canvas.Pen(), 2 * pen);
  world.picture.Draw({DrawStep::Kind::Line, 0.5, 0, 0.5, 1, kBlack, {}});
  world.Follow();
  // An upright line fills whole pixels, with none half lit beside it.
  int lit = 0;
  for (int x = 0; x < 200; ++x) {
    const QColor pixel = world.At(x, 100);
    EXPECT_TRUE(pixel == Look().readout_ground || pixel == Shown(kBlack)) << x;
    lit += pixel == Shown(kBlack) ? 1 : 0;
  }
  EXPECT_EQ(lit, 2);
}

TEST(PictureCanvas, ChangesWithTheSetOfColours) {
  CanvasWorld world;
  world.picture.DrawSegment(1, kRed, {0.505F, 0.1F}, {0.505F, 0.9F});
  world.Follow();
  EXPECT_EQ(world.At(50, 100), LookOf(LookSet::Night).red_mark);
  ChooseLook(LookSet::Day);
  world.Follow();
  EXPECT_EQ(world.At(50, 100), LookOf(LookSet::Day).red_mark);
  EXPECT_EQ(world.At(5, 5), LookOf(LookSet::Day).readout_ground);
}

TEST(PictureCanvas, ClearingLeavesTheGround) {
  CanvasWorld world;
  world.AddCurve(0, 300);
  world.picture.Draw({DrawStep::Kind::Line, 0, 0.5, 1, 0.5, kBlack, {}});
  world.Follow();
  world.picture.Cls();
  world.Follow();
  QImage empty(100, 200, QImage::Format_RGB32);
  empty.fill(Look().readout_ground);
  EXPECT_EQ(world.canvas.Image(), empty);
}

TEST(PictureCanvas, TraceOutsideThePictureIsClipped) {
  CanvasWorld world;
  world.picture.DrawSegment(1, kRed, {0.505F, -3}, {0.505F, 0.25F});
  world.picture.DrawSegment(1, kRed, {0.505F, 0.25F}, {7, 0.5F});
  world.picture.DrawSegment(1, kRed, {7, 0.5F}, {7, 9});
  world.Follow();
  EXPECT_EQ(world.At(50, 5), Shown(kRed));
  EXPECT_EQ(world.At(50, 150), Look().readout_ground);
  EXPECT_EQ(world.At(99, 150), Look().readout_ground);
}

TEST(PictureCanvas, TraceThatGoesUpIsDrawnToo) {
  CanvasWorld world;
  world.picture.DrawSegment(1, kRed, {0.205F, 0.2F}, {0.205F, 0.8F});
  world.picture.DrawSegment(1, kRed, {0.205F, 0.8F}, {0.805F, 0.2F});
  world.picture.DrawSegment(1, kRed, {0.805F, 0.2F}, {0.805F, 0.8F});
  world.Follow();
  EXPECT_EQ(world.At(20, 100), Shown(kRed));
  EXPECT_EQ(world.At(80, 100), Shown(kRed));
  EXPECT_NE(world.At(50, 100), Look().readout_ground);
  EXPECT_EQ(world.At(35, 60), Look().readout_ground);
}

TEST(PictureCanvas, LaterTraceLiesAbove) {
  CanvasWorld world;
  world.picture.DrawSegment(1, kRed, {0.505F, 0.1F}, {0.505F, 0.9F});
  world.picture.DrawSegment(2, kBlue, {0.505F, 0.1F}, {0.505F, 0.5F});
  world.picture.DrawSegment(1, kRed, {0.505F, 0.9F}, {0.505F, 0.95F});
  world.Follow();
  EXPECT_EQ(world.At(50, 60), Shown(kBlue));
  EXPECT_EQ(world.At(50, 150), Shown(kRed));
}

/// A reading that is no number breaks a trace off: what follows is another trace of its series.
TEST(PictureCanvas, TraceThatWasBrokenOffGoesOnInItsSeriesPlace) {
  CanvasWorld world;
  world.picture.DrawSegment(1, kRed, {0.505F, 0.1F}, {0.505F, 0.3F});
  world.picture.DrawSegment(2, kBlue, {0.505F, 0.1F}, {0.505F, 0.9F});
  world.Follow();
  world.picture.DrawSegment(1, kRed, {0.505F, 0.5F}, {0.505F, 0.95F});
  world.Follow();
  EXPECT_EQ(world.At(50, 140), Shown(kBlue));
  EXPECT_EQ(world.At(50, 187), Shown(kRed));
}

TEST(PictureCanvas, TicksHaveOneLengthInBothDirections) {
  CanvasWorld world;
  world.picture.Draw({DrawStep::Kind::Tick, 0.5, 0, 0.5, 1, kBlack, {}});
  world.picture.Draw({DrawStep::Kind::Tick, 0, 0.5, 1, 0.5, kBlack, {}});
  world.Follow();
  int down = 0;
  int across = 0;
  for (int i = 0; i < 100; ++i) {
    down += world.At(50, i) == Shown(kBlack) ? 1 : 0;
    across += world.At(i, 100) == Shown(kBlack) ? 1 : 0;
  }
  EXPECT_EQ(down, across);
  EXPECT_NEAR(down, 10, 1);  // 150 twips, in a picture of 3000
}

}  // namespace
}  // namespace penlog
