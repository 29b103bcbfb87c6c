#include "rig/ground_profile.h"

#include <gtest/gtest.h>

namespace penlog {
namespace {

struct PageRow {
  double depth;
  double top;
};

class EachDepth : public testing::TestWithParam<PageRow> {};

TEST_P(EachDepth, StandsOnItsPage) {
  const double top = ProfileTop(GetParam().depth);
  EXPECT_DOUBLE_EQ(top, GetParam().top);
  const double row = ProfileRow(GetParam().depth, top, 600);
  EXPECT_GT(row, 0.0);
  EXPECT_LT(row, 600.0);
}

INSTANTIATE_TEST_SUITE_P(Profile, EachDepth,
                         testing::Values(PageRow{0.0, -0.5}, PageRow{4.999, -0.5},
                                         PageRow{5.0, -0.5}, PageRow{5.001, 4.5},
                                         PageRow{10.0, 4.5}, PageRow{10.01, 9.5},
                                         PageRow{199.9, 194.5}));

TEST(Profile, RowsCoverThePicture) {
  EXPECT_DOUBLE_EQ(ProfileRow(-0.5, -0.5, 600), 0.0);
  EXPECT_DOUBLE_EQ(ProfileRow(0.0, -0.5, 600), 50.0);
  EXPECT_DOUBLE_EQ(ProfileRow(5.5, -0.5, 600), 600.0);
}

struct SoilRow {
  GroundValues values;  // kPa
  const char* word;
};

class EachSoil : public testing::TestWithParam<SoilRow> {};

TEST_P(EachSoil, HasItsWord) {
  EXPECT_EQ(SoilWord(GetParam().values), GetParam().word);
}

INSTANTIATE_TEST_SUITE_P(Profile, EachSoil,
                         testing::Values(SoilRow{{0, 0, 0}, ""}, SoilRow{{9000, 0, 0}, ""},
                                         SoilRow{{11000, 75, 0}, "sand"},
                                         SoilRow{{11000, 330, 0}, "silt"},
                                         SoilRow{{700, 30, 0}, "clay"},
                                         SoilRow{{700, 63, 0}, "peat"},
                                         SoilRow{{2400, 35, 0}, "silt"}));

TEST(Profile, BandsFollowTheLayersAndDropThinOnes) {
  const Ground ground = LayeredGround({{0.0, 0.7, 0.030, 0.0},
                                       {1.0, 12.0, 0.080, 0.0},
                                       {2.0, 0.7, 0.030, 0.0},
                                       {2.1, 12.0, 0.080, 0.0},
                                       {3.0, 12.0, 0.080, 0.0}});
  const auto bands = SoilBands(ground, -0.5, 3.5);
  ASSERT_EQ(bands.size(), 3u);
  EXPECT_EQ(bands[0].word, "");
  EXPECT_EQ(bands[1].word, "clay");
  EXPECT_EQ(bands[2].word, "sand");
  EXPECT_NEAR(bands[1].top, 0.0, 1e-9);
  EXPECT_NEAR(bands[2].top, 1.0, 0.051);
  EXPECT_NEAR(bands[2].bottom, 3.5, 1e-9);
  for (std::size_t i = 1; i < bands.size(); ++i) {
    EXPECT_NEAR(bands[i].top, bands[i - 1].bottom, 1e-9) << "no gap";
  }
}

TEST(Profile, AGroundWithoutValuesIsOneBandWithoutAWord) {
  const auto bands = SoilBands(Ground(), 0.0, 6.0);
  ASSERT_EQ(bands.size(), 1u);
  EXPECT_EQ(bands[0].word, "");
}

struct FullRow {
  double value;
  double full;
};

class EachFullScale : public testing::TestWithParam<FullRow> {};

TEST_P(EachFullScale, IsTheNextRoundNumber) {
  EXPECT_NEAR(FullScale(GetParam().value), GetParam().full, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(Profile, EachFullScale,
                         testing::Values(FullRow{-1, 0.01}, FullRow{0, 0.01}, FullRow{0.01, 0.01},
                                         FullRow{0.011, 0.015}, FullRow{0.3, 0.3}, FullRow{2.6, 3},
                                         FullRow{6.1, 8}, FullRow{8.1, 10}, FullRow{24.2, 30}));

TEST(Profile, ScalesCoverTheStretchAlone) {
  const Ground ground(
      {{0.0, 2900.0, 18.0, 140.0}, {5.0, 2900.0, 18.0, 140.0}, {6.0, 50000.0, 900.0, 2000.0}});
  const ProfileScales scales = ScalesOf(ground, 0.0, 5.0);
  EXPECT_NEAR(scales.qc, 3.0, 1e-9);
  EXPECT_NEAR(scales.fs, 0.02, 1e-9);
  EXPECT_NEAR(scales.u2, 0.15, 1e-9);
  EXPECT_GE(ScalesOf(ground, 0.0, 6.0).qc, 49.0);
}

}  // namespace
}  // namespace penlog
