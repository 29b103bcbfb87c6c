// Random actions over many virtual hours. By hand, with other seeds and longer:
//
//   PENLOG_MONKEY_SEED=1000 PENLOG_MONKEY_RUNS=50 PENLOG_MONKEY_HOURS=20
//       build/bin/test_attacks --gtest_filter='Monkey*'
//
// PENLOG_MONKEY_TRACE=1 prints each action.
#include "attacks/monkey.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <string>

namespace penlog {
namespace {

int FromEnvironment(const char* name, int otherwise) {
  const char* const text = std::getenv(name);
  return text == nullptr ? otherwise : std::atoi(text);
}

TEST(Monkey, FindsNoWayToLoseARowOrToStopTheConsole) {
  const int first = FromEnvironment("PENLOG_MONKEY_SEED", 1);
  const int runs = FromEnvironment("PENLOG_MONKEY_RUNS", 4);
  const int hours = FromEnvironment("PENLOG_MONKEY_HOURS", 1);
  std::int64_t rows = 0;
  for (int seed = first; seed < first + runs; ++seed) {
    Monkey monkey(static_cast<std::uint32_t>(seed));
    monkey.Live(static_cast<Micros>(hours) * 3600 * kSecond);
    EXPECT_TRUE(monkey.Good()) << "seed " << seed << "\n" << monkey.Report();
    rows += monkey.Watch().Rows();
    std::cout << "seed " << seed << ": " << monkey.Lives() << " starts, "
              << monkey.Watch().Soundings() << " soundings, " << monkey.Watch().Closed()
              << " closed, " << monkey.Watch().Rows() << " rows\n";
  }
  EXPECT_GT(rows, 30 * runs) << "the monkey has proved little";
}

}  // namespace
}  // namespace penlog
