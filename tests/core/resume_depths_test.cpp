#include "tests/core/resume_screen.h"

namespace penlog {
namespace {

// At the surface.

TEST_F(ResumeScreen, AtTheSurfaceTheTargetIsTheLastDepthAndWhatWasDrilled) {
  struct Case {
    const char* typed;
    int comma;
    int units;
    float target;
  };
  for (const Case& row :
       {Case{"", 0, 0, 0.1F}, Case{"", 1, 0, 0.1F}, Case{"  ", 0, 0, 0.1F}, Case{"0", 0, 0, 0.1F},
        Case{"1.5", 0, 0, 1.6F}, Case{"1,5", 0, 0, 1.6F}, Case{"1.5", 1, 0, 1.6F},
        Case{"1,5", 1, 0, 1.6F}, Case{"3.281", 0, 1, 1.1F}, Case{"", 0, 1, 0.1F}}) {
    session.CommaDecimal = static_cast<std::int16_t>(row.comma);
    settings.DepthUnits = static_cast<std::int16_t>(row.units);
    Plug(3);
    PutRows(5);
    Show(StartUp);
    Resume();
    AtSurface(row.typed);
    EXPECT_NEAR(session.ResumeTargetDepth, row.target, 1e-6F) << row.typed << " " << row.comma;
    EXPECT_EQ(session.ResumeDepthStatus, 1.0F);
    EXPECT_EQ(sounding.CurrentDepth, 0.0F);
    EXPECT_EQ(world.boxes.texts, Texts{});
    StartUp_cmdCancel_Click();
  }
}

TEST_F(ResumeScreen, AtTheSurfaceBeginsAtTheStartDepthInTheElevationFormat) {
  settings.DepthFormat = 1;
  Plug(3);
  PutDepths({"-4.98", "-4.96", "-4.94"});
  Resume();
  AtSurface("2");
  EXPECT_FLOAT_EQ(sounding.CurrentDepth, -5.0F);
  EXPECT_FLOAT_EQ(session.ResumeTargetDepth, -2.94F) << "drilled downward";
}

TEST_F(ResumeScreen, AtTheSurfaceTheStartDepthGoesByTheStepOfTheRows) {
  for (const float step : {0.02F, 0.04F, 0.01F}) {
    SCOPED_TRACE(step);
    settings.DepthFormat = 1;
    settings.DepthStep = step;
    Plug(3);
    PutDepths({"-4.98", "-4.96", "-4.94", "-4.92", "-4.90"});
    Show(StartUp);
    Resume();
    AtSurface("");
    EXPECT_EQ(settings.DepthStep, 0.02F);
    EXPECT_FLOAT_EQ(session.StartDepth, -5.0F);
    EXPECT_FLOAT_EQ(sounding.CurrentDepth, -5.0F);
    EXPECT_FLOAT_EQ(session.ResumeTargetDepth, -4.9F);
    StartUp_cmdCancel_Click();
  }
}

TEST_F(ResumeScreen, AtTheSurfaceRefusesWhatIsNoDistance) {
  PutRows(5);
  Resume();
  for (const char* typed : {"abc", "1.5 m", "-1", "1.2.3", "20000", "1e9"}) {
    world.boxes.texts.clear();
    StartUp.txtDistanceDrilled.Text = typed;
    World::Press(StartUp, StartUp.cmdResumeAtSurface);
    ASSERT_EQ(world.boxes.texts.size(), 1U) << typed;
    EXPECT_EQ(world.boxes.texts[0].find("\"" + std::string(typed) + "\" is no"), 0U);
    ExpectPanel();
    EXPECT_FALSE(StartUp.frLoad.Visible);
    EXPECT_EQ(session.ResumeDepthStatus, 0.0F);
  }
}

TEST_F(ResumeScreen, AtTheLastDepthRefusesADistanceThatIsTyped) {
  Plug(3);
  PutRows(5);
  Resume();
  for (const char* typed : {"1.5", "1,5", "-1", "abc", "0.001"}) {
    world.boxes.texts.clear();
    StartUp.txtDistanceDrilled.Text = typed;
    World::Press(StartUp, StartUp.cmdResumeAtLastDepth);
    EXPECT_EQ(world.boxes.texts,
              Texts{"RESUME AT LAST DEPTH GOES ON WHERE THE LAST ROW STANDS AND USES NO DISTANCE "
                    "DRILLED.  PRESS RESUME AT SURFACE, OR TAKE THE DISTANCE OUT AND PRESS RESUME "
                    "AT LAST DEPTH AGAIN."})
        << typed;
    ExpectPanel();
    EXPECT_FALSE(report_shown);
  }
}

TEST_F(ResumeScreen, AtTheLastDepthTakesA0ForNoDistance) {
  for (const char* typed : {"", " ", "0", "0.0", "0,0"}) {
    Plug(3);
    PutRows(5);
    Show(StartUp);
    Resume();
    StartUp.txtDistanceDrilled.Text = typed;
    report_shown = false;
    AtLastDepth();
    EXPECT_TRUE(report_shown) << typed;
    EXPECT_EQ(world.boxes.texts, Texts{});
    StartUp_cmdCancel_Click();
  }
}

// The spacing of the rows.

TEST_F(ResumeScreen, GoesOnWithTheStepOfItsRowsAndTheSettingsKeepTheirOwn) {
  settings.DepthStep = 0.04F;
  settings.DepthStepCounts = 8;
  settings.TipConfiguration = 1;
  settings.TipDiameter = 60;
  Plug(3);
  PutRows(5);
  Resume();
  AtLastDepth();
  EXPECT_EQ(settings.DepthStep, 0.02F);
  EXPECT_EQ(settings.DepthStepCounts, 4);
  EXPECT_EQ(world.boxes.texts,
            Texts{"THE ROWS OF THE LAST SOUNDING STAND 0.02 m APART, THE SETTINGS SAY 0.04 m.  THE "
                  "SOUNDING GOES ON WITH 0.02 m."});
  EXPECT_FLOAT_EQ(session.StartDepth, 0.0F) << "a step of the file before its first row";
  EXPECT_FLOAT_EQ(sounding.DepthCounts, 20.0F);
  EXPECT_EQ(settings.TipConfiguration, 1) << "the tip is not the step's business";
  EXPECT_EQ(settings.TipDiameter, 60);
  SaveKQSettings();
  EXPECT_EQ(SetupLine(world.Setup(), 21), "0.04");
}

TEST_F(ResumeScreen, CancelGivesTheStepOfTheSettingsBack) {
  settings.DepthStep = 0.04F;
  settings.DepthStepCounts = 8;
  Plug(3).silent = true;
  PostCall(Now() + 5 * kSecond, this, [] { StartUpWorld::Post(StartUp, StartUp.cmdCancel); });
  PutRows(5);
  Resume();
  AtLastDepth();
  EXPECT_EQ(settings.DepthStep, 0.04F);
  EXPECT_EQ(settings.DepthStepCounts, 8);
  SaveKQSettings();
  EXPECT_EQ(SetupLine(world.Setup(), 21), "0.04");
}

TEST_F(ResumeScreen, TellsTheSpacingWhereItDiffersAlone) {
  struct Case {
    const char* what;
    float resolution;
    float step;
    Texts depths;
    float goes_on;
    bool told;
  };
  const Case cases[] = {
      {"hundredths of 25 mm",
       0.005F,
       0.025F,
       {"0.03", "0.05", "0.08", "0.10", "0.13"},
       0.025F,
       false},
      {"25 mm under 20 mm",
       0.005F,
       0.02F,
       {"0.03", "0.05", "0.08", "0.10", "0.13", "0.15", "0.18", "0.20", "0.23", "0.25"},
       0.025F,
       true},
      {"a gap of a lost link",
       0.005F,
       0.02F,
       {"0.02", "0.04", "0.20", "0.22", "0.24"},
       0.02F,
       false},
      {"a drilled gap upward",
       0.005F,
       0.02F,
       {"5.02", "5.04", "4.96", "4.98", "5.00"},
       0.02F,
       false},
      {"millimetres that hundredths leave open",
       0.001F,
       0.025F,
       {"0.03", "0.05", "0.08", "0.10"},
       0.025F,
       false},
      {"a gap in the middle", 0.005F, 0.02F, {"0.02", "0.04", "0.20", "0.22"}, 0.02F, false},
      {"rows around a loss", 0.005F, 0.02F, {"0.26", "0.26", "0.29", "0.30"}, 0.02F, false},
      {"no rows", 0.005F, 0.02F, {}, 0.02F, false},
      {"one row", 0.005F, 0.02F, {"7.00"}, 0.02F, false},
      {"two rows that a lost link parts", 0.005F, 0.02F, {"0.02", "0.12"}, 0.02F, false},
      {"two rows that are too close", 0.005F, 0.1F, {"0.02", "0.04"}, 0.02F, true},
      {"10 cm", 0.02F, 0.02F, {"0.10", "0.20", "0.30", "0.40"}, 0.1F, true},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    world.boxes.texts.clear();
    settings.DepthResolution = row.resolution;
    settings.DepthStep = row.step;
    Plug(3);
    PutDepths(row.depths);
    Show(StartUp);
    Resume();
    world.boxes.texts.clear();
    AtLastDepth();
    EXPECT_EQ(settings.DepthStep, row.goes_on);
    EXPECT_EQ(world.boxes.texts.size(), row.told ? 1U : 0U);
    StartUp_cmdCancel_Click();
    EXPECT_EQ(settings.DepthStep, row.step);
  }
}

}  // namespace
}  // namespace penlog
