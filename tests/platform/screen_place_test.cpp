#include "platform/screen_place.h"

#include <gtest/gtest.h>

namespace penlog {
namespace {

struct WordRow {
  const char* word;
  bool good;
  ScreenRoom room;
};

class EachPlaceWord : public testing::TestWithParam<WordRow> {};

TEST_P(EachPlaceWord, IsTakenOrRefused) {
  const auto place = ScreenPlaceOf(GetParam().word);
  ASSERT_EQ(place.has_value(), GetParam().good) << GetParam().word;
  if (!place) return;
  EXPECT_EQ(RoomOn({10, 20, 2000, 1000}, *place), GetParam().room);
}

INSTANTIATE_TEST_SUITE_P(
    ScreenPlace, EachPlaceWord,
    testing::Values(WordRow{"whole", true, {10, 20, 2000, 1000}},
                    WordRow{"left", true, {10, 20, 600, 1000}},
                    WordRow{"right", true, {610, 20, 1400, 1000}},
                    WordRow{"800x600+0+0", true, {0, 0, 800, 600}},
                    WordRow{"100x20000+7+9", true, {7, 9, 100, 20000}}, WordRow{"", false, {}},
                    WordRow{"top", false, {}}, WordRow{"99x600+0+0", false, {}},
                    WordRow{"800x600", false, {}}, WordRow{"800x600+0", false, {}},
                    WordRow{"800x600+0+0+0", false, {}}, WordRow{"800x600-5+0", false, {}},
                    WordRow{"800x600+-5+0", false, {}}, WordRow{"20001x600+0+0", false, {}},
                    WordRow{"800x600+99999999999+0", false, {}},
                    WordRow{"800 x600+0+0", false, {}}));

struct ScreenRow {
  int width;
  int narrow;
};

class EachScreen : public testing::TestWithParam<ScreenRow> {};

TEST_P(EachScreen, IsSharedWithoutGapOrOverlap) {
  const ScreenRoom screen{0, 0, GetParam().width, 700};
  const ScreenRoom left = RoomOn(screen, *ScreenPlaceOf("left"));
  const ScreenRoom right = RoomOn(screen, *ScreenPlaceOf("right"));
  EXPECT_EQ(left.width, GetParam().narrow);
  EXPECT_EQ(right.x, left.x + left.width);
  EXPECT_EQ(left.width + right.width, GetParam().width);
}

INSTANTIATE_TEST_SUITE_P(ScreenPlace, EachScreen,
                         testing::Values(ScreenRow{640, 288}, ScreenRow{800, 360},
                                         ScreenRow{1024, 360}, ScreenRow{1366, 409},
                                         ScreenRow{1920, 576}, ScreenRow{3840, 1152}));

}  // namespace
}  // namespace penlog
