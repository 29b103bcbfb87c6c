#include "rig/ground.h"

#include <gtest/gtest.h>

namespace penlog {
namespace {

TEST(Ground, IsLinearBetweenTwoDepths) {
  const Ground ground({{1.0, 1000.0, 10.0, 5.0}, {2.0, 3000.0, 30.0, -5.0}});
  EXPECT_DOUBLE_EQ(ground.At(1.0).qc, 1000.0);
  EXPECT_DOUBLE_EQ(ground.At(1.25).qc, 1500.0);
  EXPECT_DOUBLE_EQ(ground.At(1.25).fs, 15.0);
  EXPECT_DOUBLE_EQ(ground.At(1.5).u2, 0.0);
  EXPECT_DOUBLE_EQ(ground.At(2.0).qc, 3000.0);
}

TEST(Ground, LoadsNothingAboveTheFirstDepthAndGoesOnBelowTheLast) {
  const Ground ground({{1.0, 1000.0, 10.0, 5.0}, {2.0, 3000.0, 30.0, 7.0}});
  EXPECT_EQ(ground.At(0.99).qc, 0.0);
  EXPECT_DOUBLE_EQ(ground.At(9.0).qc, 3000.0);
  EXPECT_EQ(Ground().At(3.0).qc, 0.0);
}

TEST(Ground, PassesOverWhatWasNotMeasured) {
  const Ground ground({{1.0, 1000.0, {}, 5.0}, {2.0, {}, 20.0, {}}, {3.0, 2000.0, 40.0, 9.0}});
  EXPECT_DOUBLE_EQ(ground.At(2.0).qc, 1500.0);
  EXPECT_DOUBLE_EQ(ground.At(1.5).fs, 0.0);
  EXPECT_DOUBLE_EQ(ground.At(2.5).fs, 30.0);
  EXPECT_DOUBLE_EQ(ground.At(2.0).u2, 7.0);
}

TEST(Ground, LeavesOutASampleThatIsNotDeeper) {
  const Ground ground({{1.0, 1000.0, {}, {}}, {1.0, 9000.0, {}, {}}, {2.0, 2000.0, {}, {}}});
  EXPECT_DOUBLE_EQ(ground.At(1.5).qc, 1500.0);
}

TEST(LayeredGround, HoldsALayerAndPassesIntoTheNextOverFiveCentimetres) {
  const Ground ground = LayeredGround({{0.0, 1.0, 0.01, 0.0}, {2.0, 5.0, 0.03, 0.1}});
  EXPECT_DOUBLE_EQ(ground.At(1.0).qc, 1000.0);
  EXPECT_DOUBLE_EQ(ground.At(1.95).qc, 1000.0);
  EXPECT_NEAR(ground.At(1.975).qc, 3000.0, 1e-6);
  EXPECT_DOUBLE_EQ(ground.At(2.0).qc, 5000.0);
  EXPECT_DOUBLE_EQ(ground.At(30.0).u2, 100.0);
}

TEST(UsualGround, StaysWithinTheFullScalesOfTheReadyCones) {
  const Ground ground = UsualGround();
  for (int i = 1; i <= 2000; ++i) {
    const GroundValues values = ground.At(i * 0.02);
    EXPECT_GT(values.qc, 100.0);
    EXPECT_LT(values.qc, 60000.0);
    EXPECT_GT(values.fs, 1.0);
    EXPECT_LT(values.fs, 500.0);
    EXPECT_LT(values.u2, 2000.0);
  }
}

}  // namespace
}  // namespace penlog
