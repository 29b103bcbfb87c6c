#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/numbers.h"
#include "tests/core/resume_screen.h"

namespace penlog {
namespace {

void SetStep(float resolution, float step) {
  settings.DepthResolution = resolution;
  settings.DepthStep = step;
  settings.DepthStepCounts = ToInteger16(step / resolution);
}

/// As the recovery copy holds them: `distances` in steps, one row before the first. Counted depths
/// are `off` too deep and too high in turn.
Texts DepthsOf(double start, double step, const std::vector<int>& distances, double off = 0) {
  Texts depths = {Format(static_cast<float>(start), "0.00")};
  int steps = 0;
  for (const int distance : distances) {
    steps += distance;
    off = -off;
    depths.push_back(Format(static_cast<float>(start + step * steps + off), "0.00"));
  }
  return depths;
}

/// 40 distances of `usual` steps and of `longer` ones, `others` of these, without an order.
std::vector<int> Distances(int usual, int others, int longer) {
  std::vector<int> distances(40, usual);
  std::fill_n(distances.begin(), others, longer);
  unsigned random = 7;
  for (std::size_t i = distances.size() - 1; i > 0; --i) {
    random = random * 1664525U + 1013904223U;
    std::swap(distances[i], distances[(random >> 16) % (i + 1)]);
  }
  return distances;
}

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
    SetStep(0.005F, step);
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
  SetStep(0.005F, 0.04F);
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
  SetStep(0.005F, 0.04F);
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
  const char* const kMark = "mark";
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
      {"25 mm under 10 mm",
       0.005F,
       0.01F,
       {"0.03", "0.05", "0.08", "0.10", "0.13", "0.15", "0.18", "0.20", "0.23", "0.25"},
       0.025F,
       true},
      {"20 mm under 10 mm, two of ten a count late",
       0.005F,
       0.01F,
       {"0.02", "0.05", "0.06", "0.08", "0.10", "0.12", "0.15", "0.16", "0.18", "0.20"},
       0.02F,
       true},
      {"50 mm under 10 mm, some a count late",
       0.005F,
       0.01F,
       {"0.05", "0.10", "0.16", "0.20", "0.25", "0.31", "0.35", "0.40", "0.46", "0.50"},
       0.05F,
       true},
      {"25 mm under 5 mm",
       0.005F,
       0.005F,
       {"0.03", "0.05", "0.08", "0.10", "0.13", "0.15", "0.18", "0.20", "0.23", "0.25"},
       0.025F,
       true},
      {"10 mm under 5 mm", 0.005F, 0.005F, {"0.01", "0.02", "0.03", "0.04", "0.05"}, 0.01F, true},
      {"5 mm under 10 mm",
       0.005F,
       0.01F,
       {"0.01", "0.01", "0.02", "0.02", "0.03", "0.03", "0.04", "0.04", "0.05", "0.05"},
       0.005F,
       true},
      {"20 mm under 25 mm", 0.005F, 0.025F, {"0.02", "0.04", "0.06", "0.08"}, 0.02F, true},
      {"30 mm under 25 mm", 0.005F, 0.025F, {"0.03", "0.06", "0.09", "0.12"}, 0.03F, true},
      {"two rows that are counted 20 mm apart", 0.01F, 0.025F, {"0.02", "0.04"}, 0.025F, false},
      {"rows that are counted 20 mm apart",
       0.01F,
       0.025F,
       {"0.02", "0.04", "0.06", "0.08", "0.12", "0.14", "0.16", "0.18", "0.20", "0.22"},
       0.025F,
       false},
      {"pairs that hundredths leave open",
       0.005F,
       0.02F,
       {"1.00", "1.03", kMark, "2.00", "2.03", kMark, "3.00", "3.03"},
       0.02F,
       false},
      {"two rows across a mark", 0.005F, 0.02F, {"1.42", kMark, "3.05"}, 0.02F, false},
      {"two rows across a mark, and those before",
       0.005F,
       0.02F,
       {"1.25", "1.27", kMark, "2.30"},
       0.02F,
       false},
      {"each row behind a mark",
       0.005F,
       0.05F,
       {"1.25", kMark, "2.30", kMark, "3.35", kMark, "4.40"},
       0.05F,
       false},
      {"steps between marks",
       0.005F,
       0.05F,
       {"1.25", "1.27", kMark, "2.30", "2.32", kMark, "3.44", "3.46"},
       0.02F,
       true},
      {"a row off the grid behind a lost cone", 0.005F, 0.05F, {"0.05", "0.33"}, 0.05F, true},
      {"two distances of a lost cone", 0.005F, 0.1F, {"0.10", "0.20", "0.54"}, 0.1F, false},
      {"two rows of a larger step", 0.005F, 0.05F, {"0.07", "0.14"}, 0.05F, true},
      {"two rows as if of a lost link", 0.005F, 0.05F, {"0.05", "0.34"}, 0.05F, false},
      {"three rows of a larger step", 0.005F, 0.02F, {"0.05", "0.10", "0.15"}, 0.02F, true},
      {"four rows of a larger step", 0.005F, 0.02F, {"0.05", "0.10", "0.15", "0.20"}, 0.05F, true},
      {"two rows that a lost link parts", 0.005F, 0.02F, {"0.02", "0.12"}, 0.02F, false},
      {"two rows that are too close", 0.005F, 0.1F, {"0.02", "0.04"}, 0.02F, true},
      {"10 cm", 0.02F, 0.02F, {"0.10", "0.20", "0.30", "0.40"}, 0.1F, true},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    world.boxes.texts.clear();
    SetStep(row.resolution, row.step);
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

TEST_F(ResumeScreen, OfTwoRowsTellsALongerDistanceAndKeepsTheStepOfTheSettings) {
  SetStep(0.005F, 0.05F);
  Plug(3);
  PutDepths({"0.05", "0.33"});
  Resume();
  AtSurface("");
  EXPECT_EQ(world.boxes.texts,
            Texts{"THE ROWS OF THE LAST SOUNDING STAND 0.28 m APART, THE SETTINGS SAY 0.05 m.  THE "
                  "SOUNDING GOES ON WITH 0.05 m."})
      << "once, and behind a lost link";
  EXPECT_EQ(settings.DepthStep, 0.05F);
  EXPECT_EQ(settings.DepthStepCounts, 10);
  EXPECT_FLOAT_EQ(session.StartDepth, 0.0F);
}

TEST_F(ResumeScreen, TakesRowsThatFellTogetherForNoOtherStep) {
  struct Case {
    float resolution;
    float step;
    int together;  // steps in one row
    int most;      // rows of 40 that are such ones
  };
  struct Start {
    int units;
    double metres;
    double off;  // m; enough for another rounding in the middle of two hundredths
  };
  const Start starts[] = {{0, 1, 0}, {0, 1, 2e-7}, {1, 3 / 3.281, 0}};
  for (const Case& row :
       {Case{0.001F, 0.005F, 2, 30}, Case{0.005F, 0.005F, 2, 30}, Case{0.001F, 0.01F, 2, 30},
        Case{0.005F, 0.01F, 2, 30}, Case{0.01F, 0.01F, 3, 14}, Case{0.002F, 0.012F, 2, 16},
        Case{0.005F, 0.015F, 2, 30}, Case{0.005F, 0.02F, 2, 30}, Case{0.005F, 0.025F, 2, 30},
        Case{0.005F, 0.05F, 2, 20}}) {
    for (const Start& start : starts) {
      for (int together = 0; together <= row.most; together += 10) {
        SCOPED_TRACE(Format(row.step, "0.0##") + " " + PlainNumber(together) + " " +
                     PlainNumber(start.metres) + " " + PlainNumber(start.off));
        world.boxes.texts.clear();
        settings.DepthUnits = static_cast<std::int16_t>(start.units);
        SetStep(row.resolution, row.step);
        Plug(3);
        const double step = std::round(static_cast<double>(row.step) * 1000) / 1000;
        PutDepths(
            DepthsOf(start.metres + step, step, Distances(1, together, row.together), start.off));
        Show(StartUp);
        Resume();
        AtLastDepth();
        EXPECT_EQ(settings.DepthStep, row.step);
        EXPECT_EQ(world.boxes.texts, Texts{});
        StartUp_cmdCancel_Click();
      }
    }
  }
}

/// A fast push: no step is as long as most of its rows are apart.
TEST_F(ResumeScreen, TakesRowsOfTwoAndThreeStepsForNoOtherStep) {
  for (const int longer : {20, 28}) {
    for (const float step : {0.005F, 0.01F, 0.02F}) {
      SCOPED_TRACE(Format(step, "0.0##") + " " + PlainNumber(longer));
      world.boxes.texts.clear();
      SetStep(0.005F, step);
      Plug(3);
      PutDepths(DepthsOf(1, static_cast<double>(step), Distances(2, longer, 3)));
      Show(StartUp);
      Resume();
      AtLastDepth();
      EXPECT_EQ(settings.DepthStep, step);
      ASSERT_EQ(world.boxes.texts.size(), 1U);
      EXPECT_TRUE(
          world.boxes.texts[0].starts_with("THE ROWS OF THE LAST SOUNDING STAND UNEVENLY, "))
          << world.boxes.texts[0];
      StartUp_cmdCancel_Click();
    }
  }
}

TEST_F(ResumeScreen, CountsWholeStepsToTheLastRow) {
  struct Case {
    float resolution;
    float step;
    int counts;
  };
  for (const Case& row : {Case{0.001F, 0.02F, 20}, Case{0.002F, 0.02F, 10}, Case{0.004F, 0.02F, 5},
                          Case{0.005F, 0.02F, 4}, Case{0.01F, 0.025F, 2}}) {
    SetStep(row.resolution, row.step);
    for (const int rows : {0, 1, 7, 100}) {
      PutRows(rows);
      Resume();
      EXPECT_EQ(sounding.DepthCounts, static_cast<float>(row.counts * rows)) << row.resolution;
      StartUp_cmdCancel_Click();
    }
  }
}

}  // namespace
}  // namespace penlog
