#include "platform/modem_watch.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "platform/clock.h"
#include "support/world.h"

namespace penlog {
namespace {

using namespace std::chrono_literals;

constexpr ModemLines kNone{false, false, false};
constexpr ModemLines kCts{true, false, false};
constexpr ModemLines kCd{false, false, true};

/// An adapter that a test drives: lines, counters, and whether it has them.
class FakeLines : public ModemLineSource {
 public:
  struct Adapter {
    std::mutex mutex;
    std::condition_variable woken;
    ModemLines lines;
    EdgeCounts counts;
    bool has_lines = true;
    bool has_counters = true;
    bool can_wait = true;
    bool is_gone = false;
    bool wake = false;
    int waits = 0;
    int interrupts = 0;
    bool destroyed = false;

    /// Sets what a reading finds; the wait ends only if `wakes`.
    void Set(ModemLines new_lines, EdgeCounts new_counts, bool wakes = true) {
      const std::lock_guard lock(mutex);
      lines = new_lines;
      counts = new_counts;
      if (wakes) Wake();
    }
    void Wake() {
      wake = true;
      woken.notify_all();
    }
  };

  explicit FakeLines(Adapter& adapter) : adapter_(adapter) {}
  ~FakeLines() override { adapter_.destroyed = true; }

  std::optional<ModemLines> Lines() override {
    const std::lock_guard lock(adapter_.mutex);
    return adapter_.has_lines ? std::optional(adapter_.lines) : std::nullopt;
  }
  std::optional<EdgeCounts> Counters() override {
    const std::lock_guard lock(adapter_.mutex);
    return adapter_.has_counters ? std::optional(adapter_.counts) : std::nullopt;
  }
  Outcome WaitChange() override {
    std::unique_lock lock(adapter_.mutex);
    ++adapter_.waits;
    adapter_.woken.notify_all();
    if (!adapter_.can_wait) return Outcome::Unsupported;
    adapter_.woken.wait(lock, [this] { return adapter_.wake || adapter_.is_gone; });
    adapter_.wake = false;
    return adapter_.is_gone ? Outcome::Gone : Outcome::Woken;
  }
  void Interrupt() override {
    const std::lock_guard lock(adapter_.mutex);
    ++adapter_.interrupts;
    adapter_.Wake();
  }

 private:
  Adapter& adapter_;
};

struct KeepingSink : PortSink {
  void Received(std::string) override {}
  void LinesChanged(ModemLines lines) override { edges.push_back(lines); }
  void LinesKnown(ModemLines lines) override { known.push_back(lines); }
  void EdgesLost(std::int64_t count) override { lost += count; }
  void EdgesPolled() override { ++polled; }
  void Vanished() override { ++vanished; }
  std::vector<ModemLines> edges;
  std::vector<ModemLines> known;
  std::int64_t lost = 0;
  int polled = 0;
  int vanished = 0;
};

/// The watch's nudges follow the virtual clock; its thread runs in real time.
struct Watching : testing::Test {
  void Start() {
    watch = std::make_unique<ModemWatch>(std::make_unique<FakeLines>(adapter), kNone, sink,
                                         [this] { ++wake_ups; });
    AwaitWait();
  }
  /// Until the thread waits once more.
  void AwaitWait() {
    std::unique_lock lock(adapter.mutex);
    const int before = adapter.waits;
    adapter.woken.wait_for(lock, 50ms, [&] { return adapter.waits > before; });
  }
  /// Collects until `enough` or for a second.
  template <class Test>
  bool CollectUntil(Test enough) {
    for (int i = 0; i < 1000 && !enough(); ++i) {
      watch->Collect();
      std::this_thread::sleep_for(1ms);
    }
    return enough();
  }
  bool CollectEdges(std::size_t count) {
    return CollectUntil([&] { return sink.edges.size() >= count; });
  }

  World world;
  FakeLines::Adapter adapter;
  KeepingSink sink;
  std::atomic<int> wake_ups = 0;
  std::unique_ptr<ModemWatch> watch;
};

TEST_F(Watching, EachEdgeComesOnceInOrderAndWakesTheClock) {
  Start();
  const ModemLines cts_cd{true, false, true};
  adapter.Set(kCts, {1, 0, 0});
  ASSERT_TRUE(CollectEdges(1));
  adapter.Set(cts_cd, {1, 0, 1});
  ASSERT_TRUE(CollectEdges(2));
  adapter.Set(kCd, {2, 0, 1});
  ASSERT_TRUE(CollectEdges(3));
  EXPECT_EQ(sink.edges, (std::vector<ModemLines>{kCts, cts_cd, kCd}));
  EXPECT_EQ(sink.lost, 0);
  EXPECT_EQ(wake_ups, 3);
}

TEST_F(Watching, NothingReachesTheSinkButInACollect) {
  Start();
  adapter.Set(kCts, {1, 0, 0});
  for (int i = 0; i < 1000 && wake_ups == 0; ++i) std::this_thread::sleep_for(1ms);
  EXPECT_TRUE(sink.edges.empty());
  watch->Collect();
  EXPECT_EQ(sink.edges.size(), 1u);
}

TEST_F(Watching, ALineHeldSinceBeforeTheFirstWaitIsAnEdge) {
  adapter.Set(kCts, {0, 0, 0}, false);
  adapter.has_counters = false;
  Start();
  EXPECT_TRUE(CollectEdges(1)) << "the opening read the lines without it";
}

TEST_F(Watching, AJumpByThreeOnOneLineIsThreeEdges) {
  Start();
  adapter.Set(kCd, {0, 0, 3});
  ASSERT_TRUE(CollectEdges(3));
  EXPECT_EQ(sink.edges, (std::vector<ModemLines>{kCd, kNone, kCd}));
  EXPECT_EQ(sink.lost, 0);
}

TEST_F(Watching, EdgesWhoseOrderWasNotSeenAreCountedAsLost) {
  Start();
  adapter.Set({true, false, true}, {1, 0, 1});
  ASSERT_TRUE(CollectUntil([&] { return sink.lost == 1; }));
  EXPECT_EQ(sink.edges, (std::vector<ModemLines>{{true, false, true}}));
}

TEST_F(Watching, AnEdgeBetweenComparisonAndWaitIsFoundByTheNextCollects) {
  Start();
  adapter.Set(kCts, {1, 0, 0}, false);  // the wait that stands doesn't notice
  EXPECT_TRUE(CollectEdges(1));
}

TEST_F(Watching, ALineThatNoCounterFollowedIsFoundByTheRegularCheck) {
  Start();
  adapter.Set(kCts, {1, 0, 0});
  ASSERT_TRUE(CollectEdges(1));
  adapter.Set(kNone, {1, 0, 0}, false);
  const bool found = CollectUntil([&] {
    World::RunFor(10 * kMillisecond);
    return sink.edges.size() == 2;
  });
  EXPECT_TRUE(found);
  EXPECT_EQ(sink.edges.back(), kNone);
  EXPECT_EQ(sink.lost, 1);
  EXPECT_EQ(sink.polled, 0);
}

TEST_F(Watching, AnAdapterThatCannotWaitIsPolledAndSaysSoOnce) {
  adapter.can_wait = false;
  adapter.has_counters = false;
  Start();
  for (const auto& lines : {kCts, kNone, kCd}) {
    const std::size_t before = sink.edges.size();
    adapter.Set(lines, {});
    ASSERT_TRUE(CollectEdges(before + 1));
    EXPECT_EQ(sink.edges.back(), lines);
  }
  EXPECT_EQ(sink.polled, 1);
}

TEST_F(Watching, APolledAdapterWithCountersLosesNoEdgeOfOneLine) {
  adapter.can_wait = false;
  Start();
  adapter.Set(kNone, {0, 0, 4});
  ASSERT_TRUE(CollectEdges(4));
  EXPECT_EQ(sink.edges, (std::vector<ModemLines>{kCd, kNone, kCd, kNone}));
}

TEST_F(Watching, DeadCountersTurnIntoPolling) {
  Start();
  adapter.Set(kCts, {}, false);
  EXPECT_TRUE(CollectUntil([&] {
    World::RunFor(10 * kMillisecond);
    return sink.polled == 1;
  }));
  EXPECT_EQ(sink.edges, (std::vector<ModemLines>{kCts}));
}

TEST_F(Watching, AnAdapterThatIsGoneEndsTheThreadWithoutAWord) {
  Start();
  {
    const std::lock_guard lock(adapter.mutex);
    adapter.is_gone = true;
    adapter.Wake();
  }
  watch->Collect();
  watch.reset();
  EXPECT_TRUE(adapter.destroyed);
  EXPECT_TRUE(sink.edges.empty());
  EXPECT_EQ(sink.vanished, 0) << "the port's reading tells of it";
}

TEST_F(Watching, TheThreadStopsPromptlyWhateverItDoes) {
  for (const bool can_wait : {true, false}) {
    adapter.can_wait = can_wait;
    Start();
    const auto start = std::chrono::steady_clock::now();
    watch.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 100ms);
  }
}

TEST_F(Watching, AFloodIsHandedOnInBoundedBatches) {
  struct Quiet : EventTarget {
    Quiet() : EventTarget("quiet") {}
    void Handle(const Event&) override {}
  } quiet;
  Start();
  adapter.Set(kNone, {0, 0, 60});
  for (int i = 0; i < 1000 && wake_ups < 1; ++i) std::this_thread::sleep_for(1ms);
  adapter.Set(kNone, {0, 0, 120});
  for (int i = 0; i < 1000 && wake_ups < 2; ++i) std::this_thread::sleep_for(1ms);
  watch->Collect();
  EXPECT_EQ(sink.edges.size(), 64u);
  for (int i = 0; i < 300; ++i) {
    Event event;
    event.kind = EventKind::ModemEdge;
    event.target = &quiet;
    TheQueue().Post(0, std::move(event));
  }
  watch->Collect();
  EXPECT_EQ(sink.edges.size(), 64u) << "nothing while more than 256 events wait";
  TheQueue().Drop(&quiet);
  watch->Collect();
  EXPECT_EQ(sink.edges.size(), 120u);
}

TEST_F(Watching, AnInboxThatNobodyEmptiesCountsFurtherEdgesAsLost) {
  Start();
  constexpr std::uint32_t kRounds = 70;
  for (std::uint32_t round = 1; round <= kRounds; ++round) {
    adapter.Set(kNone, {0, 0, round * 64});
    for (int i = 0; i < 1000 && wake_ups < static_cast<int>(round); ++i) {
      std::this_thread::sleep_for(1ms);
    }
  }
  ASSERT_TRUE(CollectUntil([&] { return !sink.known.empty(); }));
  EXPECT_EQ(sink.edges.size(), ModemWatch::kInboxLimit);
  EXPECT_EQ(sink.edges.size() + static_cast<std::size_t>(sink.lost), kRounds * 64);
  EXPECT_EQ(sink.known, (std::vector<ModemLines>{kNone}));
}

}  // namespace
}  // namespace penlog
