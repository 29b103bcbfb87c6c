#include "display/scale_axis.h"

#include <gtest/gtest.h>

namespace penlog {
namespace {

struct AxisCase {
  float max;
  float min;
  float new_max;
  float new_min;
  float step;
  int ticks;
  int divisions;
};

TEST(ScaleAxis, RoundsTheRangeByItsTable) {
  const AxisCase cases[] = {
      {0, 0, 1, 0, 1, 1, 10},                              // no range yet
      {1, 0, 1, 0, 1, 1, 10},                              // a range of exactly 1
      {0.4F, 0, 1, 0, 1, 1, 10},                           //
      {10, 0, 10, 0, 1, 10, 10},                           // on the limit
      {10.5F, 0, 12, 0, 2, 6, 1},                          // above it
      {20, 0, 20, 0, 2, 10, 1},                            //
      {49, 0, 50, 0, 5, 10, 5},                            //
      {50, 0, 50, 0, 5, 10, 5},                            //
      {50.5F, 0, 60, 0, 10, 6, 5},                         //
      {100, 0, 100, 0, 10, 10, 5},                         //
      {101, 0, 120, 0, 20, 6, 4},                          //
      {200, 0, 200, 0, 20, 10, 4},                         //
      {499, 0, 500, 0, 50, 10, 5},                         //
      {500, 0, 500, 0, 50, 10, 5},                         //
      {500.5F, 0, 600, 0, 100, 6, 5},                      //
      {1000, 0, 1000, 0, 100, 10, 5},                      //
      {1900, 0, 2000, 0, 200, 10, 4},                      //
      {2000, 0, 2000, 0, 200, 10, 4},                      //
      {2000.5F, 0, 2500, 0, 500, 5, 5},                    //
      {5000, 0, 5000, 0, 500, 10, 5},                      //
      {9999, 0, 10000, 0, 1000, 10, 5},                    //
      {10000, 0, 10000, 0, 1000, 10, 5},                   //
      {10001, 0, 12000, 0, 2000, 6, 3},                    //
      {20000, 0, 20000, 0, 2000, 10, 3},                   //
      {50000, 0, 50000, 0, 5000, 10, 4},                   //
      {50001, 0, 100000, 0, 10000, 10, 4},                 // beyond the table
      {8, -3, 8, -4, 2, 6, 1},                             // a negative end moves out
      {8, -4, 8, -4, 2, 6, 1},                             // on a multiple it stays
      {7.5F, 2.5F, 8, 2, 1, 6, 10},                        // both ends positive
      {12.7F, 11.7F, 13, 11, 1, 2, 10},                    // a start depth and a metre
      {13, 12, 13, 12, 1, 1, 10},                          //
      {-2.5F, -7.5F, -2, -8, 1, 6, 10},                    // both ends negative
      {0, -7.5F, 1, -8, 1, 9, 10},                         // an end of 0 as a maximum moves a step
      {1000, 995, 1000, 995, 1, 5, 10},                    // the 1000th multiple is the last
      {999.5F, 995, 1000, 995, 1, 5, 10},                  //
      {1002.5F, 998.5F, 1002.5F, 998, 1, 4, 10},           // beyond it an end stays
      {1004.5F, 1001.5F, 1004.5F, 1001.5F, 1, 3, 10},      //
      {-1001.5F, -1005.5F, -1001.5F, -1005.5F, 1, 4, 10},  //
      {-998, -1000, -998, -1000, 1, 2, 10},                //
      {100000, -5, 100000, 0, 10000, 10, 4},               // the ends become 0 and 100000
  };
  for (const auto& row : cases) {
    float max = row.max;
    float min = row.min;
    float step = 0;
    std::int16_t ticks = 0;
    std::int16_t divisions = 0;
    ScaleAxis(max, min, step, ticks, divisions);
    SCOPED_TRACE(testing::Message() << row.min << " to " << row.max);
    EXPECT_EQ(max, row.new_max);
    EXPECT_EQ(min, row.new_min);
    EXPECT_EQ(step, row.step);
    EXPECT_EQ(ticks, row.ticks);
    EXPECT_EQ(divisions, row.divisions);
  }
}

}  // namespace
}  // namespace penlog
