// A sounding beside an output whose server takes connections and says nothing.
#include <gtest/gtest.h>

#include <functional>

#include "conelink/watched_ports.h"
#include "sounding/fake_cone.h"
#include "sounding/sounding_files.h"

namespace penlog {
namespace {

constexpr int kOutput = 6;

/// Records rows while the rods go down one depth step a second.
class SlowOutput : public ::testing::Test {
 protected:
  SlowOutput() {
    settings.ASCIIOutSerialPort = kOutput;
    fake.ports.Wire(kOutput);
    Main.ASCIIOutComm.SetCommPort(kOutput);
    Main.ASCIIOutComm.Open();
    CreateSoundingFiles();
    sounding.ConsoleMode = 2;
    sounding.NextRecordCount = settings.DepthStepCounts;
  }
  ~SlowOutput() override { DropCalls(this); }

  void PushFor(int seconds) {
    for (int second = 1; second <= seconds; ++second) {
      PostCall(Now() + second * kSecond, this, [this] { OneStep(); });
    }
    LoopFor((seconds + 1) * kSecond);
  }
  void LoopFor(Micros time) {
    for (const Micros end = Now() + time; Now() < end;) MainloopPass();
  }
  void OneStep() {
    for (int count = 0; count < settings.DepthStepCounts; ++count) {
      fake.truck().SetLines({true, true, false});
      fake.truck().SetLines({false, true, false});
      fake.truck().SetLines({false, true, true});
      fake.truck().SetLines({true, true, true});
    }
  }
  void GoMute() {
    fake.ports.Wire(kOutput).SetPresent(false);
    watched.refuses_after[kOutput] = WatchedPorts::kMute;
    fake.ports.Wire(kOutput).SetPresent(true);
    watched.openings.clear();
  }

  FakeCone fake;
  WatchedPorts watched{fake.ports};
};

TEST_F(SlowOutput, CostsNoRowOnceItWasFoundOut) {
  GoMute();
  LoopFor(3 * kSecond);
  ASSERT_EQ(cone.ASCIIPortLost, kTrue);
  const auto readings = fake.Count("D");
  PushFor(100);
  EXPECT_EQ(sounding.RowCount, 100);
  EXPECT_GT(fake.Count("D") - readings, 500);
  EXPECT_EQ(watched.openings[kOutput].size(), 1u);
}

TEST_F(SlowOutput, IsTriedAgainAtTheNextRod) {
  GoMute();
  PushFor(50);
  watched.refuses_after.clear();
  LoopFor(6 * kSecond);
  EXPECT_EQ(cone.ASCIIPortLost, kFalse);
  PushFor(50);
  EXPECT_GE(sounding.RowCount, 98) << "the first trial alone may cost rows";
}

}  // namespace
}  // namespace penlog
