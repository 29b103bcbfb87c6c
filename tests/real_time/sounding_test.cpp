// Whole soundings in real time, on pseudo terminals and network ports, against the same soundings
// in virtual time and against what the rig logged.
#include <gtest/gtest.h>

#include <cmath>
#include <ostream>

#include "platform/numbers.h"
#include "real_time/played.h"
#include "real_time/sounding_lines.h"

namespace penlog {
namespace {

constexpr int kRows = 20;
constexpr double kStep = 0.02;  // m
constexpr double kEncoderEarly = 0.005 / 8;
constexpr double kProximityEarly = 0.02 * 3 / 4;
// Rows between the tip and the sensor: 100, 40, 60 and 80 mm.
const std::map<int, int> kDelays = {{1, 0}, {2, 5}, {3, 2}, {6, 3}, {7, 4}};

SoundingPlan EncoderPlan() {
  SoundingPlan plan;
  plan.script = "encoder_sounding.txt";
  return plan;
}

SoundingPlan ElevationPlan() {
  SoundingPlan plan;
  plan.script = "elevation_sounding.txt";
  plan.rig = "proximity";
  plan.settings = {{20, "0.02"}, {23, "1"}, {24, "1"}, {25, "1"}, {26, "1"}, {41, "3"}, {42, "4"}};
  return plan;
}

struct Case {
  const char* name;
  SoundingPlan (*plan)();
  bool network;
  double start;  ///< m
  double sign;   ///< of depths in the `.cpt` file
  double early;  ///< m from the contact that counts a step to its end
};

void PrintTo(const Case& sounding, std::ostream* out) {
  *out << sounding.name;
}

/// Both ways of one sounding, played once for the test program.
struct RealSounding : testing::TestWithParam<Case> {
  void SetUp() override {
    virtual_run = PlayVirtual(GetParam().plan());
    ASSERT_EQ(virtual_run.exit_code, 0) << virtual_run.report;
    run = PlayReal(GetParam().plan(), GetParam().network);
    ASSERT_EQ(run.exit_code, 0) << run.report;
    file = TakeApart(run.cpt);
    expected = TakeApart(virtual_run.cpt);
    rows = TemporaryRows(run.temporary);
    ASSERT_EQ(static_cast<int>(rows.size()), kRows) << run.temporary;
    ASSERT_EQ(static_cast<int>(file.rows.size()), kRows) << run.cpt;
    ASSERT_EQ(static_cast<int>(expected.rows.size()), kRows) << virtual_run.cpt;
  }

  void ExpectHeaders() const;
  void ExpectDepths() const;
  void ExpectSpeeds() const;
  void ExpectValuesOfTheLog() const;

  Played virtual_run;
  Played run;
  CptFile file;
  CptFile expected;
  std::vector<std::string> rows;  ///< as they were read
};

void RealSounding::ExpectHeaders() const {
  ASSERT_EQ(file.header.size(), expected.header.size());
  for (std::size_t line = 0; line < file.header.size(); ++line) {
    // The date, and the baselines, whose last places are noise.
    if (line == 7 || line == 18) continue;
    EXPECT_EQ(file.header[line], expected.header[line]) << "line " << line + 1;
  }
  EXPECT_EQ(file.header[7].size(), std::string("2026-06-15 09:30:00").size());
  const auto head = LinesOf(run.temporary);
  EXPECT_EQ(head[0].find(run.folder + "/"), 0u) << head[0];
  EXPECT_EQ(head[8], file.header[7]);
  EXPECT_EQ(head[15], "\"" + file.header[15] + "\"");
  EXPECT_EQ(head[16], "\"" + file.header[18] + "\"");
  EXPECT_EQ(LinesOf(run.temporary_end), std::vector<std::string>{"DONE"});
}

void RealSounding::ExpectDepths() const {
  for (int row = 1; row <= kRows; ++row) {
    const auto index = static_cast<std::size_t>(row - 1);
    const double depth = GetParam().start + kStep * row;
    EXPECT_EQ(file.rows[index].substr(0, 7), expected.rows[index].substr(0, 7)) << row;
    EXPECT_NEAR(LeadingNumber(file.rows[index]), GetParam().sign * depth, 0.00051) << row;
    EXPECT_NEAR(LeadingNumber(rows[index]), depth, 0.0051) << row;
  }
}

void RealSounding::ExpectSpeeds() const {
  const auto times = TimesOfSteps(run.log, kStep, GetParam().early, kRows);
  ASSERT_EQ(static_cast<int>(times.size()), kRows);
  for (int row = 2; row <= kRows; ++row) {
    const auto index = static_cast<std::size_t>(row - 1);
    const double seconds = static_cast<double>(times[index] - times[index - 1]) / 1e6;
    // The console's time stands still within a pass.
    const double slowest = 100 * kStep / (seconds + 0.45);
    const double fastest = seconds > 0.45 ? 100 * kStep / (seconds - 0.45) : 40.0;
    const double speed = LeadingNumber(rows[index].substr(6, 7));
    EXPECT_TRUE(speed >= slowest && speed <= fastest)
        << row << ": " << speed << " for " << seconds << " s";
  }
}

/// Each row is the mean of the last four readings that were sent before it was taken.
void RealSounding::ExpectValuesOfTheLog() const {
  const auto sent = SentReadings(run.log);
  const auto times = TimesOfSteps(run.log, kStep, GetParam().early, kRows);
  ASSERT_EQ(static_cast<int>(times.size()), kRows);
  std::size_t last = 3;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const auto fields = FieldsOf(rows[row]);
    // The reading under way when the step came, or one that had just come.
    while (last < sent.size() && sent[last].time < times[row] - 200 * kMillisecond) ++last;
    const auto fits = [&](std::size_t at) {
      const auto mean = MeanOfFour(sent, at, file);
      for (std::size_t c = 0; c < fields.size(); ++c) {
        if (std::fabs(LeadingNumber(fields[c]) - mean[c]) > 1.0001e-5) return false;
      }
      return true;
    };
    std::size_t found = last;
    while (found < sent.size() && sent[found].time < times[row] + kSecond && !fits(found)) ++found;
    EXPECT_TRUE(found < sent.size() && fits(found)) << "row " << row + 1 << ": " << rows[row];
  }
}

TEST_P(RealSounding, HasTheRowsDepthsHeadersAndAlignmentOfTheVirtualOneAndTheRigsValues) {
  ExpectHeaders();
  ExpectDepths();
  ExpectSpeeds();
  const auto aligned = AlignedRows(rows, file.channels, kDelays);
  for (std::size_t row = 0; row < aligned.size(); ++row) {
    EXPECT_EQ(file.rows[row].substr(7), aligned[row]) << "row " << row + 1;
  }
  ExpectValuesOfTheLog();
  EXPECT_EQ(FieldsOf(file.last).size(), file.channels.size());
}

INSTANTIATE_TEST_SUITE_P(Wires, RealSounding,
                         testing::Values(Case{"EncoderWithTheConeOnAPty", EncoderPlan, false, 0.0,
                                              1.0, kEncoderEarly},
                                         Case{"EncoderWithTheConeOnTheNetwork", EncoderPlan, true,
                                              0.0, 1.0, kEncoderEarly},
                                         Case{"ElevationWithTheConeOnAPty", ElevationPlan, false,
                                              -3.0479, -1.0, kProximityEarly},
                                         Case{"ElevationWithTheConeOnTheNetwork", ElevationPlan,
                                              true, -3.0479, -1.0, kProximityEarly}),
                         [](const auto& info) { return info.param.name; });

}  // namespace
}  // namespace penlog
