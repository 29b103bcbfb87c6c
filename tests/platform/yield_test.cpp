#include "platform/yield.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/runtime_fault.h"
#include "platform/timer.h"
#include "support/world.h"

namespace penlog {
namespace {

/// Runs `act` for each event and keeps the events' numbers.
class Listener : public EventTarget {
 public:
  Listener() : EventTarget("listener") {}
  void Handle(const Event& event) override {
    numbers.push_back(event.number);
    if (act) act();
  }
  void Post(EventKind kind, Micros time, std::int64_t number = 0) {
    Event event;
    event.kind = kind;
    event.target = this;
    event.number = number;
    TheQueue().Post(time, std::move(event));
  }
  std::vector<std::int64_t> numbers;
  std::function<void()> act;
};

struct Yielding : testing::Test {
  Yielding() {
    OnFault([this](const std::string& text) { faults.push_back(text); });
  }
  World world;
  Listener listener;
  std::vector<std::string> faults;
};

TEST_F(Yielding, YieldNeverMovesTheClock) {
  listener.Post(EventKind::Tick, Now() + 1);
  Yield();
  EXPECT_EQ(Now(), 0);
  EXPECT_TRUE(listener.numbers.empty());
}

TEST_F(Yielding, WaitYieldMovesToTheNextEventAndRunsIt) {
  listener.Post(EventKind::Call, 5 * kSecond, 7);
  listener.Post(EventKind::Call, 6 * kSecond, 8);
  WaitYield("a test");
  EXPECT_EQ(Now(), 5 * kSecond);
  EXPECT_EQ(listener.numbers, (std::vector<std::int64_t>{7}));
}

TEST_F(Yielding, WaitYieldRunsWhatIsDueWithoutMovingTheClock) {
  listener.Post(EventKind::Call, Now(), 1);
  listener.Post(EventKind::Call, 5 * kSecond, 2);
  WaitYield("a test");
  EXPECT_EQ(Now(), 0);
  EXPECT_EQ(listener.numbers, (std::vector<std::int64_t>{1}));
}

TEST_F(Yielding, EqualTimesRunInOrderOfPosting) {
  listener.Post(EventKind::OperatorAction, 0, 1);
  listener.Post(EventKind::Tick, 0, 2);
  listener.Post(EventKind::ModemEdge, 0, 3);
  listener.Post(EventKind::SerialInput, 0, 4);
  Yield();
  EXPECT_EQ(listener.numbers, (std::vector<std::int64_t>{1, 2, 3, 4}));
}

TEST_F(Yielding, EarlierTimesRunFirstWhateverTheOrderOfPosting) {
  listener.Post(EventKind::Call, 30, 3);
  listener.Post(EventKind::Call, 10, 1);
  listener.Post(EventKind::Call, 20, 2);
  World::RunFor(100);
  EXPECT_EQ(listener.numbers, (std::vector<std::int64_t>{1, 2, 3}));
}

TEST_F(Yielding, OneYieldHandsOutSixtyFourEventsAtMost) {
  for (int i = 0; i < 100; ++i) listener.Post(EventKind::ModemEdge, 0, i);
  Yield();
  EXPECT_EQ(listener.numbers.size(), 64u);
  EXPECT_EQ(TheQueue().Backlog(), 36u);
  Yield();
  EXPECT_EQ(listener.numbers.size(), 100u);
}

TEST_F(Yielding, AFloodThatFeedsItselfStarvesNoTick) {
  Timer timer("tick", 55);
  int ticks = 0;
  timer.OnTick = [&] { ++ticks; };
  timer.Start();
  listener.act = [&] { listener.Post(EventKind::ModemEdge, Now() + 100); };
  for (int i = 0; i < 20; ++i) listener.Post(EventKind::ModemEdge, 0);
  World::RunFor(550 * kMillisecond);
  EXPECT_EQ(ticks, 10);
}

TEST_F(Yielding, EndThrowsFromTheHandlerThroughTheYield) {
  listener.act = [] { EndProgram(); };
  listener.Post(EventKind::OperatorAction, 0);
  EXPECT_THROW(Yield(), ProgramEnd);
}

TEST_F(Yielding, AfterTheEndEachYieldThrowsAndNeverDispatches) {
  EXPECT_THROW(EndProgram(), ProgramEnd);
  listener.Post(EventKind::Call, 0);
  for (int i = 0; i < 3; ++i) {
    EXPECT_THROW(Yield(), ProgramEnd);
    EXPECT_THROW(WaitYield("a test"), ProgramEnd);
  }
  EXPECT_TRUE(listener.numbers.empty());
  EXPECT_TRUE(EndUnderWay());
}

TEST_F(Yielding, EndThrownSixYieldsDeepUnwindsThemAll) {
  int depth = 0;
  int unwound = 0;
  listener.act = [&] {
    struct Count {
      explicit Count(int& n) : n_(n) {}
      ~Count() { ++n_; }
      int& n_;
    } count(unwound);
    if (++depth == 6) EndProgram();
    listener.Post(EventKind::OperatorAction, Now());
    for (;;) WaitYield("the next one");
  };
  listener.Post(EventKind::OperatorAction, 0);
  EXPECT_THROW(Yield(), ProgramEnd);
  EXPECT_EQ(unwound, 6);
}

TEST_F(Yielding, ARequestedEndIsThrownByTheNextYieldBeforeAnyEvent) {
  listener.Post(EventKind::Call, 0);
  RequestEnd();
  EXPECT_THROW(Yield(), ProgramEnd);
  EXPECT_TRUE(listener.numbers.empty());
}

/// A clock that hears of the end while it collects, as from a signal.
class EndingClock : public VirtualClock {
 public:
  void Collect() override { RequestEnd(); }
};

TEST_F(Yielding, AnEndHeardWhileCollectingComesBeforeAnyEvent) {
  EndingClock clock;
  UseClock(&clock);
  listener.Post(EventKind::Call, 0);
  EXPECT_THROW(Yield(), ProgramEnd);
  EXPECT_TRUE(listener.numbers.empty());
  UseClock(&world.clock);
}

TEST_F(Yielding, NoTrapForFaultsTakesTheEnd) {
  const auto run = [] {
    try {
      EndProgram();
    } catch (const std::exception&) {
    }
  };
  EXPECT_THROW(run(), ProgramEnd);
}

TEST_F(Yielding, AYieldInsideAQuickHandlerIsAReportedFault) {
  for (const auto kind :
       {EventKind::Tick, EventKind::SerialInput, EventKind::ModemEdge, EventKind::PortState}) {
    faults.clear();
    bool went_on = false;
    listener.act = [&] {
      Yield();
      went_on = true;
    };
    listener.Post(kind, Now());
    Yield();
    EXPECT_EQ(faults.size(), 1u);
    EXPECT_FALSE(went_on);
  }
}

TEST_F(Yielding, ActionsAnswersAndCallsMayYield) {
  for (const auto kind : {EventKind::OperatorAction, EventKind::Answer, EventKind::Call}) {
    bool went_on = false;
    listener.act = [&] {
      listener.act = nullptr;
      Yield();
      went_on = true;
    };
    listener.Post(kind, Now());
    Yield();
    EXPECT_TRUE(went_on);
  }
  EXPECT_TRUE(faults.empty());
}

TEST_F(Yielding, AFaultInAHandlerIsReportedAndTheRestGoesOn) {
  listener.act = [&] {
    if (listener.numbers.back() == 1) throw RuntimeFault("broken");
    if (listener.numbers.back() == 2) throw std::out_of_range("mistake");
  };
  for (int i = 1; i <= 3; ++i) listener.Post(EventKind::Tick, 0, i);
  Yield();
  EXPECT_EQ(faults, (std::vector<std::string>{"broken", "mistake"}));
  EXPECT_EQ(listener.numbers.size(), 3u);
}

TEST_F(Yielding, AYieldInADestructorDuringUnwindingIsRefusedWithAMessage) {
  struct Yields {
    ~Yields() {
      Yield();
      WaitYield("never");
    }
  };
  listener.Post(EventKind::Call, 0);
  testing::internal::CaptureStderr();
  try {
    const Yields yields;
    throw RuntimeFault("under way");
  } catch (const RuntimeFault&) {
  }
  EXPECT_NE(testing::internal::GetCapturedStderr().find("refused"), std::string::npos);
  EXPECT_TRUE(listener.numbers.empty());
}

TEST_F(Yielding, AWaitLoopInADestructorIsStoppedInsteadOfHanging) {
  struct Loops {
    ~Loops() {
      for (;;) WaitYield("never");
    }
  };
  EXPECT_DEATH(
      {
        const Loops loops;
        throw RuntimeFault("under way");
      },
      "refused");
}

TEST_F(Yielding, AHandlerThatClosesItsTargetLeavesNothingBehind) {
  auto second = std::make_unique<Listener>();
  listener.act = [&] { second.reset(); };
  listener.Post(EventKind::Call, 0);
  second->Post(EventKind::Call, 0);
  Yield();
  EXPECT_EQ(listener.numbers.size(), 1u);
  EXPECT_FALSE(TheQueue().NextTime().has_value());
}

TEST_F(Yielding, WhatWaitsNamesTheWaitsOutermostFirst) {
  std::string seen;
  listener.act = [&] {
    if (listener.numbers.size() == 1) {
      listener.Post(EventKind::Answer, Now());
      WaitYield("the inner wait");
    } else {
      seen = WhatWaits();
    }
  };
  listener.Post(EventKind::OperatorAction, 1);
  WaitYield("the outer wait");
  EXPECT_EQ(seen, "the outer wait > the inner wait");
  EXPECT_EQ(WhatWaits(), "");
}

TEST_F(Yielding, BacklogCountsInputEdgesAndActionsAlone) {
  for (const auto kind : {EventKind::Tick, EventKind::Call, EventKind::Answer, EventKind::PortState,
                          EventKind::RepeatingCall}) {
    listener.Post(kind, 0);
  }
  EXPECT_EQ(TheQueue().Backlog(), 0u);
  for (const auto kind :
       {EventKind::SerialInput, EventKind::ModemEdge, EventKind::OperatorAction}) {
    listener.Post(kind, 0);
  }
  EXPECT_EQ(TheQueue().Backlog(), 3u);
  TheQueue().Drop(&listener, EventKind::SerialInput);
  EXPECT_EQ(TheQueue().Backlog(), 2u);
  Yield();
  EXPECT_EQ(TheQueue().Backlog(), 0u);
}

TEST_F(Yielding, ADroppedCallNeverRuns) {
  bool ran = false;
  PostCall(0, &ran, [&] { ran = true; });
  DropCalls(&ran);
  Yield();
  EXPECT_FALSE(ran);
}

}  // namespace
}  // namespace penlog
