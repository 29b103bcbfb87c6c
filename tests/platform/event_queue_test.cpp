#include "platform/event_queue.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/yield.h"
#include "support/world.h"

namespace penlog {
namespace {

std::vector<std::int64_t> NumbersOfTwoCalls() {
  World world;
  std::vector<std::int64_t> numbers;
  TheQueue().on_taken = [&numbers](Micros, const Event& event) { numbers.push_back(event.number); };
  for (int i = 0; i < 2; ++i) PostCall(Now(), nullptr, [] {});
  Yield();
  TheQueue().on_taken = nullptr;
  return numbers;
}

TEST(EventQueue, NumbersCallsAnewInEachRunOfAProcess) {
  const auto first = NumbersOfTwoCalls();
  EXPECT_EQ(first.size(), 2U);
  EXPECT_EQ(NumbersOfTwoCalls(), first);
}

TEST(EventQueue, NeverRunsADroppedCallUnderTheNumberOfANewOne) {
  World world;
  int runs = 0;
  PostCall(Now(), nullptr, [&runs] { runs += 100; });
  DropAllCalls();
  PostCall(Now() + kSecond, nullptr, [&runs] { ++runs; });
  Yield();
  EXPECT_EQ(runs, 0) << "the dropped call's event must not wake the new call early";
  World::RunFor(2 * kSecond);
  EXPECT_EQ(runs, 1);
}

}  // namespace
}  // namespace penlog
