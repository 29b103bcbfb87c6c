#include "platform/edge_tracker.h"

#include <gtest/gtest.h>

namespace penlog {
namespace {

constexpr ModemLines kNone{false, false, false};
constexpr ModemLines kCts{true, false, false};
constexpr ModemLines kDsr{false, true, false};
constexpr ModemLines kCd{false, false, true};
constexpr ModemLines kCtsCd{true, false, true};

using Edges = std::vector<ModemLines>;

TEST(EdgeTracker, EdgesOfOneLineAreToldOneByOne) {
  const struct {
    const char* what;
    ModemLines lines;
    EdgeCounts counts;
    Edges edges;
    std::int64_t lost;
  } rows[] = {
      {"nothing", kNone, {0, 0, 0}, {}, 0},
      {"one edge", kCts, {1, 0, 0}, {kCts}, 0},
      {"another line", kDsr, {0, 1, 0}, {kDsr}, 0},
      {"there and back", kNone, {0, 0, 2}, {kCd, kNone}, 0},
      {"a jump by three", kCd, {0, 0, 3}, {kCd, kNone, kCd}, 0},
      {"two lines at once: the order was not seen", kCtsCd, {1, 0, 1}, {kCtsCd}, 1},
      {"two lines, one of them back again", kCts, {1, 0, 2}, {kCts}, 2},
      {"two lines, both back again", kNone, {2, 0, 2}, {}, 4},
      {"a jump by three beside another line", kCtsCd, {3, 0, 1}, {kCtsCd}, 3},
      {"noise beyond all bounds", kCts, {1001, 0, 0}, {kCts}, 1000},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EdgeTracker tracker(kNone, EdgeCounts{});
    const EdgeReport report = tracker.Take(row.lines, row.counts, 0);
    EXPECT_EQ(report.edges, row.edges);
    EXPECT_EQ(report.lost, row.lost);
  }
}

TEST(EdgeTracker, CountersMayWrapAround) {
  EdgeTracker tracker(kNone, EdgeCounts{0xFFFFFFFFu, 0, 0});
  EXPECT_EQ(tracker.Take(kNone, EdgeCounts{1, 0, 0}, 0).edges, (Edges{kCts, kNone}));
}

TEST(EdgeTracker, LinesThatRunAheadOfTheirCounterMakeNoEdgeTwice) {
  EdgeTracker tracker(kNone, EdgeCounts{});
  const Micros latency = 16 * kMillisecond;
  EXPECT_TRUE(tracker.Take(kCts, EdgeCounts{}, 0).edges.empty());
  EXPECT_EQ(tracker.Take(kCts, EdgeCounts{1, 0, 0}, latency).edges, (Edges{kCts}));
  const EdgeReport later = tracker.Take(kCts, EdgeCounts{1, 0, 0}, kSecond);
  EXPECT_TRUE(later.edges.empty());
  EXPECT_EQ(later.lost, 0);
}

TEST(EdgeTracker, AnEdgeBetweenTheTwoReadingsIsToldOnce) {
  EdgeTracker tracker(kNone, EdgeCounts{});
  // The lines were read just before the edge, the counters just after it.
  EXPECT_EQ(tracker.Take(kNone, EdgeCounts{1, 0, 0}, 0).edges, (Edges{kCts}));
  const EdgeReport later = tracker.Take(kCts, EdgeCounts{1, 0, 0}, kSecond);
  EXPECT_TRUE(later.edges.empty());
  EXPECT_EQ(later.lost, 0);
}

TEST(EdgeTracker, AnEdgeThatNoCounterSawIsFoundByTheLinesAndCountedAsLost) {
  EdgeTracker tracker(kNone, EdgeCounts{});
  EXPECT_EQ(tracker.Take(kNone, EdgeCounts{1, 0, 0}, 0).edges, (Edges{kCts}));
  EXPECT_TRUE(tracker.Take(kNone, EdgeCounts{1, 0, 0}, 40 * kMillisecond).edges.empty());
  const EdgeReport found = tracker.Take(kNone, EdgeCounts{1, 0, 0}, 60 * kMillisecond);
  EXPECT_EQ(found.edges, (Edges{kNone}));
  EXPECT_EQ(found.lost, 1);
  EXPECT_FALSE(tracker.CountersAreDead());
}

TEST(EdgeTracker, CountersThatNeverMoveAreDead) {
  EdgeTracker tracker(kNone, EdgeCounts{});
  (void)tracker.Take(kCd, EdgeCounts{}, 0);
  EXPECT_FALSE(tracker.CountersAreDead());
  EXPECT_EQ(tracker.Take(kCd, EdgeCounts{}, kSecond).edges, (Edges{kCd}));
  EXPECT_TRUE(tracker.CountersAreDead());
  EXPECT_EQ(tracker.Take(kNone, EdgeCounts{}, kSecond).edges, (Edges{kNone}))
      << "from then on the lines alone tell, at once";
}

TEST(EdgeTracker, WithoutCountersTheLinesTell) {
  EdgeTracker tracker(kCts, std::nullopt);
  EXPECT_TRUE(tracker.Take(kCts, std::nullopt, 0).edges.empty());
  EXPECT_EQ(tracker.Take(kNone, std::nullopt, 0).edges, (Edges{kNone}));
  const EdgeReport two = tracker.Take(kCtsCd, std::nullopt, 0);
  EXPECT_EQ(two.edges, (Edges{kCtsCd}));
  EXPECT_EQ(two.lost, 1);
}

}  // namespace
}  // namespace penlog
