// An elevation sounding in feet with the proximity counter, byte by byte. When a change of these
// files is meant, run this program with PENLOG_BLESS=1 in its environment and read the difference
// before you commit it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "platform/numbers.h"
#include "scenarios/golden.h"
#include "scenarios/log_rows.h"
#include "scenarios/scenario.h"

namespace penlog {
namespace {

constexpr double kStep = 0.1;
constexpr double kStart = -2.0 / 3.281;  // 2 ft above datum, counted downward

ScenarioSetup InFeet() {
  ScenarioSetup setup;
  setup.rig = "proximity";
  setup.settings = {{setting::kCompanyName, "\"Ground Survey Ltd.\""},
                    {setting::kDepthResolution, "0.02"},
                    {setting::kDepthStep, "0.1"},
                    {setting::kDepthCounterType, "1"},
                    {setting::kPressureSwitchPresent, "1"},
                    {setting::kDepthFormat, "1"},
                    {setting::kDepthUnits, "1"}};
  return setup;
}

struct ElevationSounding : Scenario {
  ElevationSounding() : Scenario(InFeet()), clock(disk, "TemporaryData.txt") {
    // The script asks for it at the stop question.
    rig.log.on_added = [this](const RigRecord& record) {
      if (record.kind == RigLogKind::Control && record.text == "status") {
        at_stop = DataFile("TemporaryData.txt");
      }
    };
    PlayFile("elevation_sounding");
    cpt = File("/soundings/DYKE.cpt");
  }
  LogRows Rows() const {
    SoundingShape shape = DcsShape(kStep);
    shape.start = kStart;
    shape.elevation = true;
    const double baseline1 = LeadingNumber(LinesOf(cpt).at(18).substr(13, 20));
    return {rig.log, clock.Times(), shape, baseline1};
  }
  /// Times of the log's lines of that kind with that text.
  std::vector<Micros> TimesOf(RigLogKind kind, const std::string& text) const {
    std::vector<Micros> times;
    for (const RigRecord& record : rig.log.Of(kind)) {
      if (record.text == text) times.push_back(record.time);
    }
    return times;
  }

  RowClock clock;
  std::string at_stop;
  std::string cpt;
};

TEST(ElevationSounding, LeavesTheseFilesByteByByte) {
  ElevationSounding sounding;
  ExpectGolden("elevation_sounding/DYKE.cpt", sounding.cpt);
  ExpectGolden("elevation_sounding/TemporaryData at the stop.txt", sounding.at_stop);
  ExpectGolden("elevation_sounding/TemporaryData at the end.txt",
               sounding.DataFile("TemporaryData.txt"));
  ExpectGolden("elevation_sounding/Last Sounding Parameters.txt",
               sounding.DataFile("Last Sounding Parameters.txt"));
}

TEST(ElevationSounding, RowsAreTheMeanOfTheLastFourRepliesWithFallingElevations) {
  ElevationSounding sounding;
  const LogRows rows = sounding.Rows();
  ASSERT_EQ(rows.Count(), 15);
  rows.ExpectCptRows(sounding.cpt, true);
}

TEST(ElevationSounding, TheRecoveryCopyHoldsTheDepthsAsTheyWereCounted) {
  ElevationSounding sounding;
  ASSERT_EQ(sounding.Rows().Count(), 15);
  sounding.Rows().ExpectTemporaryRows(sounding.at_stop);
}

TEST(ElevationSounding, TheFinalBaselineIsTheReadingsOfTheLiftedConeAndNotTheFirstBaseline) {
  const ElevationSounding sounding;
  const auto lines = LinesOf(sounding.cpt);
  const std::string& first = lines.at(18);
  const std::string& final = lines.back();
  ASSERT_EQ(final.size(), first.size());
  EXPECT_EQ(final.substr(0, 13), std::string(13, ' '));
  // The inclination has changed between the two; the tip is as free as it was.
  EXPECT_NEAR(LeadingNumber(final.substr(13, 20)), LeadingNumber(first.substr(13, 20)), 1.1e-5);
  EXPECT_NE(final, first);
}

TEST(ElevationSounding, TheQuitStopsTheRigUntilTheButtonIsHeld) {
  const ElevationSounding sounding;
  const auto halted = sounding.TimesOf(RigLogKind::Motion, "halted by RTS");
  const auto released = sounding.TimesOf(RigLogKind::Motion, "released by RTS");
  ASSERT_EQ(halted.size(), 1U);
  ASSERT_EQ(released.size(), 1U);
  EXPECT_GT(released[0], halted[0] + 4 * kSecond);
  const auto& rows = sounding.clock.Times();
  const auto between = std::count_if(rows.begin(), rows.end(), [&](Micros time) {
    return time > halted[0] + 100 * kMillisecond && time < released[0];
  });
  EXPECT_EQ(between, 0) << "no row while the rig stands";
}

TEST(ElevationSounding, TheRodBreakAddsNoDepth) {
  const ElevationSounding sounding;
  // 75 counts of 2 cm: one more at the rod break would show in the last row.
  EXPECT_EQ(LinesOf(sounding.at_stop).back().substr(1, 6), "  0.89");
  EXPECT_EQ(sounding.TimesOf(RigLogKind::Motion, "rod added").size(), 1U);
}

}  // namespace
}  // namespace penlog
