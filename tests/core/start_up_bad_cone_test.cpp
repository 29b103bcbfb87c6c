// What can stand at the end of the cone's wire instead of a good cone, from the press of START on:
// the start screen reports what it could read or tells what is wrong, and takes another press.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "conelink/cone_settings_report.h"
#include "conelink/cone_state.h"
#include "conelink/scripted_cone.h"
#include "forms/cone_settings_form.h"
#include "sounding/sounding_state.h"
#include "tests/core/sample_cone.h"
#include "tests/core/start_up_world.h"

namespace penlog {
namespace {

const std::string kNoChannel =
    "THE CONE'S SETTINGS CANNOT BE READ. PROGRAM CANNOT CONTINUE.  Its memory lists no channel.";
constexpr char kRefused[] = "THE CONE'S SETTINGS CANNOT BE READ. PROGRAM CANNOT CONTINUE.  ";

class BadCone : public ::testing::Test {
 protected:
  BadCone() {
    settings.ConeSerialPort = 3;
    settings.TruckInterfaceSerialPort = 4;
    settings.DepthResolution = 0.005F;
    settings.DepthStep = 0.02F;
    world.ports.Wire(4);
    StartUp.cmdStart.Click = StartUp_cmdStart_Click;
    frmConeSettings.Load = ConeSettingsOpen;
    frmConeSettings.cmdClose.Click = [] { Unload(frmConeSettings); };
  }
  ~BadCone() override {
    DropCalls(this);
    StartUp.cmdStart.Click = frmConeSettings.cmdClose.Click = {};
    frmConeSettings.Load = {};
  }

  void Start() {
    world.boxes.texts.clear();
    report.clear();
    world.WhenShown(frmConeSettings, [this] {
      report = frmConeSettings.lblReport.Caption;
      StartUpWorld::Post(frmConeSettings, frmConeSettings.cmdClose);
    });
    Show(StartUp);
    World::Press(StartUp, StartUp.cmdStart);
  }
  std::string Told() const { return world.boxes.texts.empty() ? "" : world.boxes.texts.front(); }
  /// A good cone in its place is found by the next press.
  void ExpectTheConsoleLives() {
    far.SetUnit(SampleMemory(TipAndSleeve()));
    Start();
    EXPECT_EQ(report.substr(0, 15), "Cone #: DCS0042");
    EXPECT_EQ(cone.ConeLinkUp, kTrue);
  }

  StartUpWorld world;
  ScriptedCone far{world.ports.Wire(3)};
  std::string report;
};

std::string Repeated(const std::string& record, int times) {
  std::string records;
  for (int i = 0; i < times; ++i) records += record;
  return records;
}

std::string WithFlags(std::string record, char flags) {
  record.back() = flags;
  return record;
}

struct BadMemory {
  const char* what;
  std::string memory;
  std::string told;  ///< begin of the box; empty: the report comes without a word
};

TEST_F(BadCone, MemoryOfAnyKindIsReportedOrTold) {
  const BadMemory rows[] = {
      {"blank memory", std::string(400, '@'), kNoChannel},
      {"zero bytes", std::string(400, '\0'), kNoChannel},
      {"blanks", std::string(400, ' '), kNoChannel},
      {"erased memory", std::string(400, '\x7f'),
       std::string(kRefused) + "A record names channel 63 of 30."},
      {"bytes 255", std::string(400, '\xff'),
       std::string(kRefused) + "A record names channel 191 of 30."},
      {"channel 31", SampleMemory(SampleRecord(31, 'T')),
       std::string(kRefused) + "A record names channel 31 of 30."},
      {"list without an end", SampleMemory(Repeated(SampleRecord(1, 'T'), 60)),
       std::string(kRefused) + "The list of channels does not end."},
      {"subtracts channel 63", SampleMemory(WithFlags(SampleRecord(1, 'T'), 'A') + "\x7f@@@A"),
       std::string(kRefused) + "Channel 1 subtracts channel 63 of 30."},
      {"subtracts an absent channel", SampleMemory(WithFlags(SampleRecord(1, 'T'), 'A') + "E@@@A"),
       "CHANNEL 1 SUBTRACTS CHANNEL 5 WHICH IS NOT PRESENT."},
      {"no span", SampleMemory("AT" + Coded(100, 4) + Coded(7, 4) + Coded(7, 4) + "@@@"),
       "CHANNEL 1 HAS NO SPAN"},
  };
  for (const auto& row : rows) {
    far.SetUnit(row.memory);
    Start();
    EXPECT_EQ(Told().substr(0, row.told.size()), row.told) << row.what;
    EXPECT_EQ(world.boxes.texts.size(), row.told.empty() ? 0U : 1U) << row.what;
    const bool refused = row.told.starts_with(kRefused);
    EXPECT_EQ(report.empty(), refused) << row.what;
    EXPECT_EQ(bool(StartUp.cmdStart.Enabled), refused) << row.what;
    StartUp.cmdStart.Enabled = true;
  }
  ExpectTheConsoleLives();
}

TEST_F(BadCone, NoiseThatPassesForAConeIsRefused) {
  far.OnAny = [this](const std::string&) { far.SendLater(0, "\x05\x1a @\xf3 \r\n"); };
  Start();
  EXPECT_EQ(Told().substr(0, sizeof kRefused - 1), kRefused);
  EXPECT_TRUE(report.empty());
  EXPECT_NE(cone.ConeLinkUp, kTrue);
  far.OnAny = {};
  ExpectTheConsoleLives();
}

TEST_F(BadCone, DepthStepThatIsTooSmallForItsSensorsIsTold) {
  settings.DepthStep = 1e-6F;
  far.SetUnit(SampleMemory(TipAndSleeve()));
  Start();
  EXPECT_EQ(Told(), std::string(kRefused) +
                        "The sensor of channel 1 lies more than 32767 depth steps from the tip.");
  settings.DepthStep = 0.02F;
  ExpectTheConsoleLives();
}

TEST_F(BadCone, BannerDoesNotMatterToTheStart) {
  const std::string banners[] = {"",
                                 "COPYRIGHT\r\n",
                                 "COPYRIGHT V9999\r\n",
                                 "COPYRIGHT V9E99\r\n",
                                 std::string("\0\xff V\0\xff\r\n", 8),
                                 std::string(1 << 20, 'V') + "\r\n"};
  for (const auto& banner : banners) {
    far.SetUnit(SampleMemory(TipAndSleeve()));
    far.On("Y", banner);
    Start();
    EXPECT_EQ(report.substr(0, 15), "Cone #: DCS0042") << banner.substr(0, 20);
    EXPECT_EQ(world.boxes.texts.size(), 0U);
    EXPECT_EQ(report.find('\0'), std::string::npos);
    StartUp.cmdStart.Enabled = true;
  }
}

TEST_F(BadCone, RepliesOfAMegabyteToEachCommandAreTold) {
  far.SetUnit(SampleMemory(TipAndSleeve()));
  for (const char* command :
       {"Y", "X", "C 1 2", "C 3 7", "C 10 6", "C 16 6", "C 22 3", "C 25 3", "C 28 3", "C 31 17"}) {
    far.Once(command, std::string(1 << 20, '\x7f') + "\r\n");
  }
  Start();
  EXPECT_EQ(Told(), std::string(kRefused) + "A record names channel 63 of 30.");
  EXPECT_LT(cone.ConeId.size(), 10'000U);
  ExpectTheConsoleLives();
}

TEST_F(BadCone, PlugThatSendsBackWhatItGetsIsTold) {
  far.OnAny = [this](const std::string& command) { far.SendLater(0, command + "\r"); };
  Start();
  EXPECT_EQ(Told().substr(0, sizeof kRefused - 1), kRefused);
  far.OnAny = {};
  ExpectTheConsoleLives();
}

TEST_F(BadCone, DeviceThatChattersWithoutALineEndIsSearchedPastAndTold) {
  std::function<void()> chatter = [&] {
    world.ports.Wire(3).Send("~");
    PostCall(Now() + 200 * kMillisecond, this, chatter);
  };
  chatter();
  world.boxes.Answer("CONE NOT DETECTED", BoxAnswer::Ok);
  Start();
  DropCalls(this);
  EXPECT_FALSE(world.boxes.texts.empty());
  EXPECT_TRUE(report.empty());
  EXPECT_TRUE(StartUp.cmdStart.Enabled);
  ExpectTheConsoleLives();
}

TEST_F(BadCone, OneModuleUnderAllNineNumbersIsUsedOnceAndTheOthersAreTold) {
  settings.DiscoverAddOnModules = 1;
  far.SetUnit(SampleMemory(TipAndSleeve()));
  for (int m = 1; m <= 9; ++m) {
    far.SetUnit(SampleMemory(SampleRecord(23, 'R'), "MOD0007"), " " + std::to_string(m));
  }
  Start();
  EXPECT_FALSE(report.empty());
  EXPECT_EQ(world.boxes.texts.size(), 8U);
  EXPECT_EQ(Told(),
            "Duplicate channels found on modules: MOD0007 MOD0007. Program cannot continue.  "
            "Please remove one of the modules and restart the program.");
  EXPECT_EQ(cone.ModulePresent[1], kTrue);
  for (std::size_t m = 2; m <= 9; ++m) EXPECT_EQ(cone.ModulePresent[m], kFalse) << m;
  EXPECT_EQ(far.Count(" 10Y"), 0);
}

}  // namespace
}  // namespace penlog
