#include "platform/serial_port.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/runtime_fault.h"
#include "platform/timer.h"
#include "platform/yield.h"
#include "support/world.h"

namespace penlog {
namespace {

struct PortOnAWire : testing::Test {
  PortOnAWire() {
    port.SetCommPort(3);
    port.OnComm = [this](int comm_event) {
      seen.push_back(comm_event);
      lines_seen.push_back({port.CTSHolding(), port.DSRHolding(), port.CDHolding()});
    };
    wire.OnOutputs = [this](bool dtr, bool rts) { outputs.push_back({dtr, rts}); };
    wire.OnBytes = [this](std::string_view bytes) { sent += bytes; };
  }
  World world;
  WireEnd& wire = world.ports.Wire(3);
  SerialPort port{"Port"};
  std::vector<int> seen;
  std::vector<ModemLines> lines_seen;
  std::vector<std::pair<bool, bool>> outputs;
  std::string sent;
};

TEST(PortSettingsText, GoodAndBadRows) {
  const struct {
    const char* text;
    bool good;
    PortSettings settings;
  } rows[] = {
      {"19200,N,8,1", true, {19200, 'N', 8, 1}},
      {"9600,E,7,2", true, {9600, 'E', 7, 2}},
      {"50,O,5,1", true, {50, 'O', 5, 1}},
      {"115200,M,8,1", true, {115200, 'M', 8, 1}},
      {"1200,S,6,1", true, {1200, 'S', 6, 1}},
      {"19200,N,8", false, {}},
      {"19200,N,8,1,1", false, {}},
      {"19200,X,8,1", false, {}},
      {"19200,N,9,1", false, {}},
      {"19200,N,8,3", false, {}},
      {"19200,N,8,1.5", false, {}},
      {"fast,N,8,1", false, {}},
      {"", false, {}},
      {"-9600,N,8,1", false, {}},
      {"19200,,8,1", false, {}},
      {" 19200,N,8,1", false, {}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.text);
    if (row.good) {
      EXPECT_EQ(ParsePortSettings(row.text), row.settings);
    } else {
      EXPECT_THROW(ParsePortSettings(row.text), RuntimeFault);
    }
  }
}

TEST_F(PortOnAWire, TheOpeningTellsTheSettings) {
  PortSettings told{};
  wire.OnOpened = [&](const PortSettings& settings) { told = settings; };
  port.SetSettings("9600,E,7,2");
  port.Open();
  Yield();
  EXPECT_EQ(told, (PortSettings{9600, 'E', 7, 2}));
}

TEST_F(PortOnAWire, BytesArriveOnlyInsideAYield) {
  port.Open();
  wire.Send("abc");
  EXPECT_EQ(port.InBufferCount(), 0);
  Yield();
  EXPECT_EQ(port.InBufferCount(), 3);
  EXPECT_EQ(port.Input(), "abc");
  EXPECT_EQ(port.InBufferCount(), 0);
  EXPECT_EQ(seen, (std::vector<int>{kCommReceive}));
}

TEST_F(PortOnAWire, InputIsEightBitClean) {
  port.Open();
  std::string all;
  for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
  wire.Send(all);
  Yield();
  EXPECT_EQ(port.Input(), all);
}

TEST_F(PortOnAWire, InputLenTakesThatManyBytesAndZeroTakesAll) {
  port.Open();
  wire.Send("abcdefgh");
  Yield();
  port.SetInputLen(3);
  EXPECT_EQ(port.Input(), "abc");
  EXPECT_EQ(port.InBufferCount(), 5);
  port.SetInputLen(50);
  EXPECT_EQ(port.Input(), "defgh");
  wire.Send("xyz");
  Yield();
  port.SetInputLen(0);
  EXPECT_EQ(port.Input(), "xyz");
  EXPECT_EQ(port.Input(), "");
}

TEST_F(PortOnAWire, ClearingAlsoDropsQueuedInput) {
  port.Open();
  wire.Send("old");
  Yield();
  wire.Send("older");
  wire.SetLines({true, false, false});
  port.ClearInBuffer();
  wire.Send("new");
  Yield();
  EXPECT_EQ(port.Input(), "new");
  EXPECT_TRUE(port.CTSHolding()) << "edges are no input";
}

TEST_F(PortOnAWire, ClearingLeavesTheInputOfOtherPorts) {
  SerialPort other("Other");
  other.SetCommPort(4);
  world.ports.Wire(4);
  port.Open();
  other.Open();
  world.ports.Wire(4).Send("kept");
  wire.Send("dropped");
  port.ClearInBuffer();
  Yield();
  EXPECT_EQ(other.Input(), "kept");
  EXPECT_EQ(port.Input(), "");
}

TEST_F(PortOnAWire, LinesChangeOnlyInsideAYield) {
  port.Open();
  wire.SetLines({true, true, true});
  EXPECT_FALSE(port.CTSHolding() || port.DSRHolding() || port.CDHolding());
  Yield();
  EXPECT_TRUE(port.CTSHolding() && port.DSRHolding() && port.CDHolding());
}

TEST_F(PortOnAWire, EachEdgeIsOneEventInOrderWithTheLinesAtThatEdge) {
  port.Open();
  wire.SetLines({true, false, false});
  wire.SetLines({true, false, true});
  wire.SetLines({false, false, true});
  wire.SetLines({false, true, true});
  Yield();
  EXPECT_EQ(seen, (std::vector<int>{kCommCts, kCommCd, kCommCts, kCommDsr}));
  EXPECT_EQ(
      lines_seen,
      (std::vector<ModemLines>{
          {true, false, false}, {true, false, true}, {false, false, true}, {false, true, true}}));
  EXPECT_EQ(port.EdgeCount(), 4);
  EXPECT_EQ(port.EdgesLostCount(), 0);
}

TEST_F(PortOnAWire, LinesHeldAtTheOpeningAreReadWithoutAnEvent) {
  wire.SetLines({true, false, true});
  port.Open();
  EXPECT_TRUE(port.CTSHolding());
  EXPECT_FALSE(port.DSRHolding());
  EXPECT_TRUE(port.CDHolding());
  Yield();
  EXPECT_TRUE(seen.empty());
}

TEST_F(PortOnAWire, ALostEdgeIsCountedThroughAllOpeningsAndMakesNoEvent) {
  port.Open();
  wire.LoseNextEdge();
  wire.SetLines({true, false, false});
  Yield();
  EXPECT_TRUE(seen.empty());
  EXPECT_EQ(port.EdgesLostCount(), 1);
  port.Close();
  port.Open();
  EXPECT_EQ(port.EdgesLostCount(), 1) << "it is missing in the depth all the same";
}

TEST_F(PortOnAWire, DtrAndRtsAreFalseWhenOpened) {
  port.Open();
  port.SetDTREnable(true);
  port.SetRTSEnable(true);
  port.Close();
  port.SetDTREnable(true);  // on a closed port nothing comes of it
  outputs.clear();
  port.Open();
  EXPECT_FALSE(port.DTREnable());
  EXPECT_FALSE(port.RTSEnable());
  Yield();
  ASSERT_FALSE(outputs.empty());
  EXPECT_EQ(outputs.back(), (std::pair{false, false}));
}

TEST_F(PortOnAWire, ClosingLowersDtrAndRts) {
  port.Open();
  port.SetDTREnable(true);
  port.SetRTSEnable(true);
  Yield();
  EXPECT_EQ(outputs.back(), (std::pair{true, true}));
  port.Close();
  Yield();
  EXPECT_EQ(outputs.back(), (std::pair{false, false}));
  EXPECT_FALSE(port.RTSEnable());
}

TEST_F(PortOnAWire, ClosingDropsWhatWasReceivedAndQueued) {
  port.Open();
  wire.Send("one");
  Yield();
  wire.Send("two");
  port.Close();
  EXPECT_EQ(port.InBufferCount(), 0);
  port.Open();
  Yield();
  EXPECT_EQ(port.InBufferCount(), 0);
}

TEST_F(PortOnAWire, OutputReachesTheFarEndInsideAYield) {
  port.Open();
  port.Output("D\r");
  EXPECT_EQ(sent, "");
  Yield();
  EXPECT_EQ(sent, "D\r");
}

TEST_F(PortOnAWire, OutputOnAClosedPortDoesNothing) {
  port.Output("D\r");
  Yield();
  EXPECT_EQ(sent, "");
}

TEST_F(PortOnAWire, BreakReachesTheFarEnd) {
  std::vector<bool> breaks;
  wire.OnBreak = [&](bool on) { breaks.push_back(on); };
  port.Open();
  port.SetBreak(true);
  port.SetBreak(false);
  Yield();
  EXPECT_EQ(breaks, (std::vector<bool>{true, false}));
}

TEST_F(PortOnAWire, AVanishedPortIsReportedOnceAndStaysOpenUntilClosed) {
  port.Open();
  wire.SetPresent(false);
  wire.SetPresent(true);
  wire.SetPresent(false);
  World::RunFor(kSecond);
  EXPECT_EQ(seen, (std::vector<int>{kCommPortGone}));
  EXPECT_TRUE(port.Gone());
  EXPECT_TRUE(port.PortOpen());
}

TEST_F(PortOnAWire, EveryCallOnAVanishedPortIsSoftButBreak) {
  port.Open();
  wire.SetPresent(false);
  Yield();
  port.Output("D\r");
  port.SetDTREnable(true);
  port.SetRTSEnable(true);
  port.ClearInBuffer();
  port.ClearOutBuffer();
  EXPECT_EQ(port.Input(), "");
  EXPECT_EQ(port.InBufferCount(), 0);
  EXPECT_THROW(port.SetBreak(true), RuntimeFault);
  port.Close();
  EXPECT_FALSE(port.PortOpen());
  Yield();
  EXPECT_EQ(sent, "");
}

TEST_F(PortOnAWire, WhatArrivedBeforeTheLossIsStillRead) {
  port.Open();
  wire.Send("last words");
  wire.SetPresent(false);
  Yield();
  EXPECT_EQ(port.Input(), "last words");
}

TEST_F(PortOnAWire, APortThatReturnedIsOpenedAgainAndWorks) {
  port.Open();
  wire.SetPresent(false);
  Yield();
  EXPECT_FALSE(EnumSerPorts(3));
  port.Close();
  EXPECT_THROW(port.Open(), RuntimeFault);
  wire.SetPresent(true);
  EXPECT_TRUE(EnumSerPorts(3));
  port.Open();
  wire.Send("hello");
  Yield();
  EXPECT_EQ(port.Input(), "hello");
}

TEST_F(PortOnAWire, TheClosingOfALostPortLeavesALaterOpeningAlone) {
  port.Open();
  wire.SetPresent(false);
  wire.SetPresent(true);
  SerialPort later("Later");
  later.SetCommPort(3);
  later.Open();
  later.SetRTSEnable(true);
  port.Close();
  wire.Send("for the later one");
  Yield();
  EXPECT_EQ(later.Input(), "for the later one");
  EXPECT_EQ(outputs.back(), (std::pair{false, true}));
}

TEST_F(PortOnAWire, AnAdapterPluggedAgainComesBackUnderAnotherNumber) {
  port.Open();
  world.ports.Renumber(3, 7);
  Yield();
  EXPECT_TRUE(port.Gone());
  EXPECT_FALSE(EnumSerPorts(3));
  EXPECT_TRUE(EnumSerPorts(7));
  port.Close();
  port.SetCommPort(7);
  port.Open();
  wire.Send("x");
  Yield();
  EXPECT_EQ(port.Input(), "x");
}

TEST_F(PortOnAWire, OpeningFaultsForAbsentBusyAndOpenPorts) {
  SerialPort other("Other");
  other.SetCommPort(9);
  EXPECT_THROW(other.Open(), RuntimeFault) << "absent";
  port.Open();
  EXPECT_THROW(port.Open(), RuntimeFault) << "open already";
  other.SetCommPort(3);
  EXPECT_THROW(other.Open(), RuntimeFault) << "in use";
  EXPECT_FALSE(other.PortOpen());
  other.SetCommPort(0);
  EXPECT_THROW(other.Open(), RuntimeFault) << "no number";
}

TEST_F(PortOnAWire, NumberAndSettingsOfAnOpenPortStand) {
  port.Open();
  EXPECT_THROW(port.SetCommPort(4), RuntimeFault);
  EXPECT_THROW(port.SetSettings("9600,N,8,1"), RuntimeFault);
  port.Close();
  EXPECT_THROW(port.SetCommPort(256), RuntimeFault);
  EXPECT_THROW(port.SetCommPort(-1), RuntimeFault);
  EXPECT_EQ(port.CommPort(), 3);
}

TEST_F(PortOnAWire, AHandlerMayCloseThePortAndReplaceItself) {
  port.Open();
  port.OnComm = [this](int) {
    port.OnComm = [](int) { FAIL() << "closed"; };
    port.Close();
  };
  wire.SetLines({true, false, false});
  wire.Send("never read");
  Yield();
  EXPECT_FALSE(port.PortOpen());
}

TEST_F(PortOnAWire, CloseAllClosesEveryPort) {
  port.Open();
  SerialPort::CloseAll();
  EXPECT_FALSE(port.PortOpen());
}

TEST(EnumSerPorts, KnowsOneToTwoHundredFiftyFive) {
  World world;
  for (const int number : {0, 1, 255, 256}) world.ports.Wire(number);
  EXPECT_FALSE(EnumSerPorts(0));
  EXPECT_TRUE(EnumSerPorts(1));
  EXPECT_FALSE(EnumSerPorts(2));
  EXPECT_TRUE(EnumSerPorts(255));
  EXPECT_FALSE(EnumSerPorts(256));
}

/// A port that takes its time to open, as one behind a network server.
struct SlowPorts : PortSystem {
  struct Driver : PortDriver {
    explicit Driver(SlowPorts& owner) : owner_(owner) {}
    ~Driver() override { ++owner_.closed; }
    void Write(std::string_view) override {}
    void SetBreak(bool) override {}
    void SetDtr(bool) override {}
    void SetRts(bool) override {}
    void DiscardInput() override {}
    void DiscardOutput() override {}
    ModemLines Lines() const override { return {true, false, false}; }
    bool Ready() const override { return owner_.ready; }

   private:
    SlowPorts& owner_;
  };
  bool Exists(int) override { return true; }
  std::unique_ptr<PortDriver> Open(int, const PortSettings&, PortSink& opened_for) override {
    sink = &opened_for;
    return std::make_unique<Driver>(*this);
  }
  std::string DeviceName(int) override { return "slow"; }
  PortSink* sink = nullptr;
  bool ready = false;
  int closed = 0;
};

struct SlowOpening : testing::Test {
  SlowOpening() { UsePorts(&ports); }
  World world;
  SlowPorts ports;
  SerialPort port{"Slow"};
};

TEST_F(SlowOpening, WaitsUntilTheDriverIsReadyAndReadsItsLines) {
  PostCall(kSecond, this, [&] { ports.ready = true; });
  port.Open();
  EXPECT_EQ(Now(), kSecond);
  EXPECT_TRUE(port.CTSHolding());
}

TEST_F(SlowOpening, FaultsAfterTwoSecondsAndClosesTheDriver) {
  Timer timer("tick", 55);
  timer.Start();
  EXPECT_THROW(port.Open(), RuntimeFault);
  EXPECT_GE(Now(), 2 * kSecond);
  EXPECT_LE(Now(), 2 * kSecond + 55 * kMillisecond);
  EXPECT_FALSE(port.PortOpen());
  EXPECT_EQ(ports.closed, 1);
}

TEST_F(SlowOpening, FaultsAtOnceWhenThePortVanishes) {
  PostCall(100, this, [&] { ports.sink->Vanished(); });
  EXPECT_THROW(port.Open(), RuntimeFault);
  EXPECT_LT(Now(), kSecond);
  EXPECT_EQ(ports.closed, 1);
}

TEST_F(SlowOpening, TheEndDuringTheWaitClosesTheDriver) {
  PostCall(100, this, [] { EndProgram(); });
  EXPECT_THROW(port.Open(), ProgramEnd);
  EXPECT_EQ(ports.closed, 1);
}

TEST_F(SlowOpening, LinesToldWithoutAnEdgeAreNoEdge) {
  int events = 0;
  port.OnComm = [&](int) { ++events; };
  PostCall(100, this, [&] {
    ports.ready = true;
    ports.sink->LinesKnown({false, true, true});
  });
  port.Open();
  Yield();
  EXPECT_EQ(events, 0);
  EXPECT_EQ(port.EdgeCount(), 0);
  EXPECT_FALSE(port.CTSHolding()) << "told later than the driver's first lines";
  EXPECT_TRUE(port.DSRHolding());
  EXPECT_TRUE(port.CDHolding());
}

TEST_F(SlowOpening, ALossThatTheDriverTellsTwiceIsReportedOnce) {
  ports.ready = true;
  int reports = 0;
  port.OnComm = [&](int comm_event) { reports += comm_event == kCommPortGone ? 1 : 0; };
  port.Open();
  ports.sink->Vanished();
  ports.sink->Vanished();
  Yield();
  EXPECT_EQ(reports, 1);
}

TEST_F(SlowOpening, LostAndPolledEdgesAreKept) {
  ports.ready = true;
  port.Open();
  EXPECT_FALSE(port.EdgesArePolled());
  ports.sink->EdgesLost(3);
  ports.sink->EdgesLost(2);
  ports.sink->EdgesPolled();
  EXPECT_EQ(port.EdgesLostCount(), 0);
  Yield();
  EXPECT_EQ(port.EdgesLostCount(), 5);
  EXPECT_TRUE(port.EdgesArePolled());
}

}  // namespace
}  // namespace penlog
