// Serial ports over pseudo terminals, in real time.
#include "platform/posix/termios_port.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "platform/posix/termios_settings.h"
#include "platform/runtime_fault.h"
#include "platform/serial_port.h"
#include "support/pty.h"
#include "support/real_world.h"
#include "support/temp_folder.h"

namespace penlog {
namespace {

/// The machine's ports reduced to one path under every number.
struct OnePort : PortSystem {
  explicit OnePort(std::string device) : path(std::move(device)) {}
  bool Exists(int) override { return true; }
  std::unique_ptr<PortDriver> Open(int, const PortSettings& settings, PortSink& sink) override {
    return std::make_unique<TermiosPort>(path, settings, sink);
  }
  std::string DeviceName(int) override { return path; }
  std::string path;
};

struct OverAPty : testing::Test {
  OverAPty() {
    UsePorts(&ports);
    port.OnComm = [this](int comm_event) { gone += comm_event == kCommPortGone ? 1 : 0; };
  }
  ~OverAPty() override {
    port.Close();
    UsePorts(nullptr);
  }
  bool Wait(const std::function<bool()>& over) { return RealWorld::RunFor(kSecond, over); }
  bool WaitGone() {
    return Wait([this] { return gone > 0; });
  }
  static std::string AllBytes() {
    std::string all;
    for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
    return all;
  }

  RealWorld world;
  Pty pty;
  OnePort ports{pty.Path()};
  SerialPort port{"Port"};
  int gone = 0;
};

TEST_F(OverAPty, DataAreEightBitCleanBothWays) {
  port.Open();
  pty.Send(AllBytes());
  ASSERT_TRUE(Wait([this] { return port.InBufferCount() == 256; }));
  EXPECT_EQ(port.Input(), AllBytes());
  port.Output(AllBytes());
  std::string taken;
  EXPECT_TRUE(Wait([&] {
    taken += pty.Take();
    return taken.size() >= 256;
  }));
  EXPECT_EQ(taken, AllBytes());
}

TEST_F(OverAPty, NothingIsEchoed) {
  port.Open();
  pty.Send("Y\r");
  ASSERT_TRUE(Wait([this] { return port.InBufferCount() == 2; }));
  EXPECT_EQ(pty.Take(), "");
}

TEST_F(OverAPty, WhatCameBeforeTheOpeningIsDropped) {
  pty.Send("stale\r\n");
  port.Open();
  pty.Send("fresh");
  ASSERT_TRUE(Wait([this] { return port.InBufferCount() >= 5; }));
  EXPECT_EQ(port.Input(), "fresh");
}

TEST_F(OverAPty, ClearingDropsWhatTheSystemHolds) {
  port.Open();
  pty.Send("old");
  ::usleep(2000);
  port.ClearInBuffer();
  pty.Send("new");
  ASSERT_TRUE(Wait([this] { return port.InBufferCount() >= 3; }));
  EXPECT_EQ(port.Input(), "new");
}

TEST_F(OverAPty, AHangUpIsReportedOnceAndNeverSpins) {
  port.Open();
  pty.HangUp();
  ASSERT_TRUE(WaitGone());
  EXPECT_LT(RealWorld::ProcessorShare(300 * kMillisecond), 0.1);
  EXPECT_EQ(gone, 1);
  EXPECT_TRUE(port.Gone());
}

TEST_F(OverAPty, EveryCallAfterAHangUpDoesNothing) {
  port.Open();
  pty.HangUp();
  ASSERT_TRUE(WaitGone());
  port.Output("D\r");
  port.SetDTREnable(true);
  port.SetRTSEnable(true);
  port.ClearInBuffer();
  port.ClearOutBuffer();
  EXPECT_EQ(port.Input(), "");
  port.Close();
  EXPECT_EQ(gone, 1);
}

TEST_F(OverAPty, AWriteThatFindsTheHangUpReportsItToo) {
  port.Open();
  pty.HangUp();
  port.Output("D\r");
  port.Output("D\r");
  ASSERT_TRUE(WaitGone());
  RealWorld::RunFor(100 * kMillisecond);
  EXPECT_EQ(gone, 1);
}

TEST_F(OverAPty, ANodeThatGoesIsReportedOnceThoughTheDeviceStillRuns) {
  const TempFolder folder;
  ports.path = folder / "port";
  std::filesystem::create_symlink(pty.Path(), ports.path);
  port.Open();
  RealWorld::RunFor(120 * kMillisecond);
  EXPECT_EQ(gone, 0);
  std::filesystem::remove(ports.path);
  ASSERT_TRUE(WaitGone());
  EXPECT_LT(RealWorld::ProcessorShare(200 * kMillisecond), 0.1);
  EXPECT_EQ(gone, 1);
}

TEST_F(OverAPty, ALinkThatLeadsToAnotherDeviceIsAVanishedPort) {
  const Pty other;
  const TempFolder folder;
  ports.path = folder / "port";
  std::filesystem::create_symlink(pty.Path(), ports.path);
  port.Open();
  std::filesystem::remove(ports.path);
  std::filesystem::create_symlink(other.Path(), ports.path);
  EXPECT_TRUE(WaitGone());
}

TEST_F(OverAPty, AVanishedPortOpensAgainWhenItIsBack) {
  const TempFolder folder;
  ports.path = folder / "port";
  std::filesystem::create_symlink(pty.Path(), ports.path);
  port.Open();
  std::filesystem::remove(ports.path);
  ASSERT_TRUE(WaitGone());
  port.Close();
  EXPECT_THROW(port.Open(), RuntimeFault);
  std::filesystem::create_symlink(pty.Path(), ports.path);
  port.Open();
  pty.Send("back");
  EXPECT_TRUE(Wait([this] { return port.InBufferCount() == 4; }));
}

TEST_F(OverAPty, NothingIsReadWhileMoreThan256EventsWait) {
  struct Quiet : EventTarget {
    Quiet() : EventTarget("quiet") {}
    void Handle(const Event&) override {}
  } quiet;
  port.Open();
  for (int i = 0; i < 257; ++i) {
    Event event;
    event.kind = EventKind::ModemEdge;
    event.target = &quiet;
    TheQueue().Post(kSecond * 3600, std::move(event));  // never due here
  }
  pty.Send("waits");
  RealWorld::RunFor(50 * kMillisecond);
  EXPECT_EQ(port.InBufferCount(), 0);
  TheQueue().Drop(&quiet);
  EXPECT_TRUE(Wait([this] { return port.InBufferCount() == 5; }));
}

TEST_F(OverAPty, OneCollectReadsABoundedAmount) {
  port.Open();
  const std::string much(64 * 1024, 'x');
  std::size_t sent = pty.Send(much);
  Yield();
  Yield();
  EXPECT_LE(static_cast<std::size_t>(port.InBufferCount()), 2 * TermiosPort::kReadSize);
  ASSERT_TRUE(Wait([&] {
    sent += pty.Send(std::string_view(much).substr(sent));
    return static_cast<std::size_t>(port.InBufferCount()) == much.size();
  }));
}

TEST_F(OverAPty, AWriteNeverWaitsAndTheRestGoesOutLater) {
  port.Open();
  std::string much;
  for (int i = 0; i < 60'000; ++i) much += static_cast<char>(i);
  const Micros start = MonotonicTime();
  port.Output(much);
  EXPECT_LT(MonotonicTime() - start, 100 * kMillisecond);
  std::string taken = pty.Take();
  EXPECT_LT(taken.size(), much.size());
  EXPECT_TRUE(Wait([&] {
    taken += pty.Take();
    return taken.size() >= much.size();
  }));
  EXPECT_TRUE(taken == much);
}

TEST_F(OverAPty, AnIdlePortCostsNoProcessorTime) {
  port.Open();
  port.Output("D\r");
  EXPECT_LT(RealWorld::ProcessorShare(200 * kMillisecond), 0.1);
}

TEST_F(OverAPty, AFarEndThatTakesNothingCostsNoProcessorTimeAndBoundedRoom) {
  port.Open();
  const std::string much(200'000, 'x');
  port.Output(much);
  EXPECT_LT(RealWorld::ProcessorShare(200 * kMillisecond), 0.1);
  std::string taken;
  Wait([&] {
    const std::size_t before = taken.size();
    taken += pty.Take();
    return taken.size() == before && before > TermiosPort::kOutputLimit;
  });
  EXPECT_GE(taken.size(), TermiosPort::kOutputLimit);
  EXPECT_LE(taken.size(), TermiosPort::kOutputLimit + 16 * 1024);
}

TEST_F(OverAPty, APseudoTerminalHasNoLinesAndSaysNothingOfThem) {
  port.Open();
  RealWorld::RunFor(100 * kMillisecond);
  EXPECT_FALSE(port.CTSHolding() || port.DSRHolding() || port.CDHolding());
  EXPECT_FALSE(port.EdgesArePolled());
  port.SetBreak(true);
  port.SetBreak(false);
  EXPECT_EQ(gone, 0);
}

TEST_F(OverAPty, ASecondOpeningIsRefusedAsInUseUntilTheFirstIsClosed) {
  port.Open();
  SerialPort other("Other");
  try {
    other.Open();
    FAIL() << "opened twice";
  } catch (const RuntimeFault& fault) {
    EXPECT_NE(std::string(fault.what()).find("in use"), std::string::npos);
  }
  port.Close();
  EXPECT_NO_THROW(other.Open());
}

TEST_F(OverAPty, AClosedPortLeavesThreadsAndDescriptorsAsTheyWere) {
  const auto count = [](const char* folder) {
    int entries = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder)) {
      ++entries;
    }
    return entries;
  };
  const int descriptors = count("/proc/self/fd");
  const int threads = count("/proc/self/task");
  for (int i = 0; i < 3; ++i) {
    port.Open();
    port.Close();
  }
  EXPECT_EQ(count("/proc/self/fd"), descriptors);
  EXPECT_EQ(count("/proc/self/task"), threads);
}

TEST_F(OverAPty, OpeningFaultsNameThePath) {
  const TempFolder folder;
  std::ofstream(folder / "text") << "no port";
  const struct {
    std::string path;
    const char* reason;
  } rows[] = {
      {folder / "absent", "No such file or directory"},
      {folder / "text", "not a serial port"},
      {folder.Path(), "Is a directory"},
      {"/dev/null", "not a serial port"},
      {"/dev/zero", "not a serial port"},
  };
  for (const auto& row : rows) {
    ports.path = row.path;
    try {
      port.Open();
      ADD_FAILURE() << row.path << " opened";
    } catch (const RuntimeFault& fault) {
      EXPECT_EQ(fault.what(), row.path + ": " + row.reason);
    }
    EXPECT_FALSE(port.PortOpen());
  }
}

TEST_F(OverAPty, SpeedsTheSystemHasNoNameForAreRefused) {
  for (const char* settings : {"12345,N,8,1", "250000,N,8,1", "51,N,8,1"}) {
    port.SetSettings(settings);
    EXPECT_THROW(port.Open(), RuntimeFault) << settings;
  }
  for (const char* settings : {"50,N,8,1", "19200,N,8,1", "4000000,N,8,1"}) {
    port.SetSettings(settings);
    EXPECT_NO_THROW(port.Open()) << settings;
    port.Close();
  }
}

TEST_F(OverAPty, WithoutAWatcherAPortCannotOpen) {
  UseIo(nullptr);
  EXPECT_THROW(port.Open(), RuntimeFault);
  UseIo(&world.clock.Io());
}

TEST_F(OverAPty, TheLineIsRawWithTheSpeedAndStopBitsAsked) {
  port.SetSettings("9600,N,8,2");
  port.Open();
  const int fd = ::open(pty.Path().c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  ASSERT_GE(fd, 0);
  termios line{};
  EXPECT_EQ(::tcgetattr(fd, &line), 0);
  ::close(fd);
  EXPECT_EQ(::cfgetospeed(&line), B9600);
  EXPECT_EQ(line.c_lflag & (ICANON | ECHO | ISIG | IEXTEN), 0u);
  EXPECT_EQ(line.c_iflag & (IXON | IXOFF | ICRNL | INLCR | ISTRIP | INPCK), 0u);
  EXPECT_EQ(line.c_oflag & OPOST, 0u);
  EXPECT_EQ(line.c_cflag & CRTSCTS, 0u);
  EXPECT_NE(line.c_cflag & CLOCAL, 0u);
  EXPECT_NE(line.c_cflag & CSTOPB, 0u);
}

}  // namespace
}  // namespace penlog
