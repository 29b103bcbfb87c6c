// Where the grid stands once rows were taken from the `.cpt` file.
#include <gtest/gtest.h>

#include "sounding/resumed_world.h"

namespace penlog {
namespace {

TEST(RecoveredRows, AreCountedInWholeStepsAtEachResolution) {
  struct Case {
    float resolution;
    std::int16_t counts;
  };
  for (const Case& row : {Case{0.001F, 20}, Case{0.002F, 10}, Case{0.004F, 5}, Case{0.005F, 4}}) {
    TextLines lines = StoredLines(kRows);
    lines[20] = "\"torn\"";
    TakenUp taken(JoinedLines(lines));
    settings.DepthResolution = row.resolution;
    settings.DepthStepCounts = row.counts;
    taken.TakeUp();
    EXPECT_TRUE(taken.WasTold("ROWS TAKEN FROM THE SOUNDING'S FILE: 1"));
    EXPECT_EQ(sounding.DepthCounts, static_cast<float>(row.counts * kRows)) << row.resolution;
  }
}

}  // namespace
}  // namespace penlog
