// The process dies, and with it perhaps the machine, before, in and behind each single operation of
// a whole sounding on its disk. After each the settings are old or new, each row whose sync had
// returned is held, and the console takes the sounding up and ends it as if nothing had happened.
#include <gtest/gtest.h>

#include <array>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "attacks/crash_world.h"

namespace penlog {
namespace {

constexpr int kParts = 8;

struct NamedStop {
  Fate fate;
  const char* name;
};
constexpr std::array kStops = {NamedStop{Fate::StopBefore, "before"},
                               NamedStop{Fate::StopAmid, "in"},
                               NamedStop{Fate::StopAfter, "behind"}};

struct NamedLoss {
  Loss loss;
  const char* name;
};
constexpr std::array kLosses = {NamedLoss{Loss::Nothing, "the process alone dies"},
                                NamedLoss{Loss::Contents, "contents that were not synced are lost"},
                                NamedLoss{Loss::ContentsAndNames, "contents and names are lost"},
                                NamedLoss{Loss::HalfTail, "half of what was not synced is lost"}};

/// What is left, by kind of loss.
struct LeftBehind {
  std::vector<MemoryDisk> disks;
  std::vector<std::string> synced;
};

LeftBehind DieAt(std::int64_t step, Fate stop, const WholeSounding& whole) {
  CrashCrew crew(whole.before, CrewTask::Record);
  SyncedRows synced;
  synced.Watch(crew.disk);
  crew.disk.fate = [&](std::string_view operation, const std::string& path, std::int64_t number) {
    if (number != step) return Fate::Done;
    EXPECT_EQ(operation, whole.works.at(static_cast<std::size_t>(step - 1)).operation);
    EXPECT_EQ(path, whole.works.at(static_cast<std::size_t>(step - 1)).path);
    return stop;
  };
  crew.Live();
  EXPECT_TRUE(crew.disk.Stopped()) << "the step was not reached";
  EXPECT_FALSE(crew.ended);
  LeftBehind left;
  for (const NamedLoss& loss : kLosses) left.disks.push_back(crew.disk.After(loss.loss));
  left.synced = std::move(synced.rows);
  return left;
}

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
    const WholeSounding::Work& work = whole.works[static_cast<std::size_t>(step - 1)];
    for (const NamedStop& stop : kStops) {
      const LeftBehind left = DieAt(step, stop.fate, whole);
      for (std::size_t i = 0; i < kLosses.size(); ++i) {
        SCOPED_TRACE(std::string(stop.name) + " operation " + std::to_string(step) + ", " +
                     work.operation + " " + work.path + ", " + kLosses[i].name);
        judge.Judge(left.disks[i], left.synced);
      }
      if (HasFailure()) return;
    }
  }
  operations += static_cast<std::int64_t>(steps.size());
  total.Add(judge.count);
  EXPECT_EQ(judge.count.rows_lost, 0);
  if (GetParam() == 0) EXPECT_GT(count, 300) << "a whole sounding";
}

INSTANTIATE_TEST_SUITE_P(Parts, CrashAtEveryStep, testing::Range(0, kParts));

}  // namespace
}  // namespace penlog
