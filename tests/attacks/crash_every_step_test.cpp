// The process dies, and with it perhaps the machine, before, in and behind each single operation of
// a whole sounding on its disk. After each the settings are old or new, each row whose sync had
// returned is held, and the console takes the sounding up and ends it as if nothing had happened.
#include <gtest/gtest.h>

#include <iostream>
#include <string>
#include <vector>

#include "attacks/crash_judge.h"

namespace penlog {
namespace {

constexpr int kParts = 8;

struct CrashAtEveryStep : testing::TestWithParam<int> {
  static void TearDownTestSuite() {
    std::cout << "crash at every step: " << operations << " operations x "
              << kStops.size() * kLosses.size() << " faults, " << total.Text() << "\n";
  }
  static inline std::int64_t operations = 0;
  static inline CrashCount total;
};

TEST_P(CrashAtEveryStep, LosesNoPromisedRowAndEndsTheSoundingAsWithoutIt) {
  const WholeSounding whole;
  ASSERT_FALSE(HasFailure());
  const auto count = static_cast<std::int64_t>(whole.works.size());
  CrashJudge judge(whole);
  const std::vector<std::int64_t> steps = StepsOfPart(count, GetParam(), kParts);
  for (const std::int64_t step : steps) {
    const DiskWork& work = whole.works[static_cast<std::size_t>(step - 1)];
    for (const NamedStop& stop : kStops) {
      const LeftBehind left = DieAt(whole.before, CrewTask::Record, {step, stop.fate, work}, {});
      for (std::size_t i = 0; i < kLosses.size(); ++i) {
        SCOPED_TRACE(std::string(stop.name) + " operation " + std::to_string(step) + ", " +
                     work.Text() + ", " + kLosses[i].name);
        judge.Judge(left.disks[i], left.synced);
      }
      if (HasFailure()) return;
    }
  }
  operations += static_cast<std::int64_t>(steps.size());
  total.Add(judge.count);
  EXPECT_EQ(judge.count.rows_lost, 0);
  EXPECT_GT(count, 300) << "a whole sounding";
}

INSTANTIATE_TEST_SUITE_P(Parts, CrashAtEveryStep, testing::Range(0, kParts));

}  // namespace
}  // namespace penlog
