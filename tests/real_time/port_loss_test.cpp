// Ports that are lost and come back in real time, on a pseudo terminal and over the network, among
// eight that are present: the console is there again without a touch within 30 s of the return.
#include <gtest/gtest.h>

#include <cmath>

#include "platform/numbers.h"
#include "real_time/played.h"
#include "real_time/sounding_lines.h"

namespace penlog {
namespace {

constexpr double kStep = 0.02;  // m
constexpr int kIdlePorts = 6;   // with the cone's and the truck interface's: eight

struct PortLossInRealTime : testing::TestWithParam<bool> {};

TEST_P(PortLossInRealTime, IsOverWithin30SecondsOfTheReturnAndRowsGoOn) {
  SoundingPlan plan;
  plan.script = "port_loss.txt";
  plan.settings = {{41, "3"}, {42, "4"}};
  plan.idle_ports = kIdlePorts;
  const Played run = PlayReal(plan, GetParam());
  ASSERT_EQ(run.exit_code, 0) << run.report;
  const CptFile file = TakeApart(run.cpt);
  ASSERT_GT(file.rows.size(), 8U);
  int gaps = 0;
  int off_the_grid = 0;
  double before = 0;
  for (const std::string& row : file.rows) {
    const double steps = LeadingNumber(row) / kStep;
    EXPECT_GT(steps, before + 0.2) << row;
    if (steps > before + 1.5) ++gaps;
    if (std::fabs(steps - std::round(steps)) > 0.06) ++off_the_grid;
    before = steps;
  }
  EXPECT_LE(gaps, 1) << "rows are missing where the cone was away alone";
  EXPECT_LE(off_the_grid, 1) << "a row that was due in the loss is taken with the first reading";
}

INSTANTIATE_TEST_SUITE_P(Cone, PortLossInRealTime, testing::Bool(), [](const auto& info) {
  return info.param ? std::string("OnTheNetwork") : std::string("OnAPseudoTerminal");
});

}  // namespace
}  // namespace penlog
