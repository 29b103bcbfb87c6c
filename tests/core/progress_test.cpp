// Progress of long work, in words and as a bar.
#include "core/progress.h"

#include <gtest/gtest.h>

#include "forms/main_form.h"
#include "forms/start_up_form.h"
#include "forms/warning_form.h"
#include "support/world.h"

namespace penlog {
namespace {

TEST(Progress, SaysHowFarItIs) {
  EXPECT_EQ(ProgressText("PORT", 2, 5), "PORT 2 OF 5");
  EXPECT_EQ(ProgressText("RECORD", 7, 0), "RECORD 7");
}

TEST(Progress, FillsItsBar) {
  World world;
  const struct {
    int done, of;
    double left, width;
  } rows[] = {{0, 4, 0, 0}, {1, 4, 0, 0.25},  {4, 4, 0, 1},
              {5, 4, 0, 1}, {3, 0, 0.3, 0.1}, {13, 0, 0.3, 0.1}};
  for (const auto& row : rows) {
    ShowProgress("STEP", row.done, row.of);
    EXPECT_TRUE(StartUp.shpProgressGround.Visible);
    EXPECT_NEAR(StartUp.shpProgress.Where.left, row.left, 1e-9) << row.done;
    EXPECT_NEAR(StartUp.shpProgress.Where.width, row.width, 1e-9) << row.done;
  }
}

TEST(Progress, GoesWithItsEnd) {
  World world;
  ShowProgress("PORT", 1, 2);
  EXPECT_EQ(Main.lblProgress.Caption, "PORT 1 OF 2");
  EXPECT_EQ(frmWarning.lblProgress.Caption, "PORT 1 OF 2");
  EndProgress();
  EXPECT_EQ(Main.lblProgress.Caption, "");
  EXPECT_EQ(frmWarning.lblProgress.Caption, "");
  EXPECT_EQ(StartUp.lblProgress.Caption, "");
  EXPECT_FALSE(StartUp.shpProgressGround.Visible);
}

}  // namespace
}  // namespace penlog
