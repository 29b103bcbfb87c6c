#include "sounding/quits.h"

#include <random>

#include "sounding/console.h"

namespace penlog {
namespace {

/// Channel 1 with a limit of 5, scaled already and settled.
struct Quits : Console {
  Quits() {
    settings.QuitsActive = 1;
    channels.QuitLimitDeep(1) = 5.0f;
    channels.QuitLimitShallow(kInclination) = channels.QuitLimitDeep(kInclination) = 1000.0f;
    channels.ChannelLabel(1, kInclination) = "Inclination";
    sounding.CurrentDepth = 2.0f;
    sounding.QuitSettleCount = 10;
    OpenPorts();
  }
  static constexpr int kInclination = 19;
  static bool Rts() { return Main.EncoderComm.RTSEnable(); }
};

TEST(QuitLimits, AreScaledToReadingsOnce) {
  Console console;
  channels.ChannelSensitivity(1) = 4.0f;
  channels.Baselines(1) = 0.5f;
  channels.QuitLimitShallow(1) = 0.75f;
  channels.QuitLimitDeep(1) = 0.9f;
  channels.QuitRateLimit(1) = 0.1f;
  channels.QuitLimitDeep(2) = 0.0f;
  channels.Baselines(2) = 3.0f;
  channels.QuitLimitDeep(5) = 0.8f;  // absent: stays
  Console::AddChannel(6);
  channels.ChannelSensitivity(6) = 2.0f;
  channels.QuitLimitShallow(6) = 0.4f;
  channels.QuitLimitDeep(6) = 0.5f;
  channels.QuitRateLimit(6) = 0.2f;
  channels.ChannelFullScale(19) = 15.0f;
  ScaleQuitLimits();
  EXPECT_FLOAT_EQ(channels.QuitLimitShallow(1), 3.5f);
  EXPECT_FLOAT_EQ(channels.QuitLimitDeep(1), 4.1f);
  EXPECT_FLOAT_EQ(channels.QuitRateLimit(1), 0.4f);
  EXPECT_EQ(channels.QuitLimitDeep(2), 0.0f);
  EXPECT_EQ(channels.QuitLimitDeep(5), 0.8f);
  EXPECT_FLOAT_EQ(channels.QuitLimitDeep(6), 1.0f);
  EXPECT_FLOAT_EQ(channels.QuitLimitShallow(19), 6.0f);
  EXPECT_FLOAT_EQ(channels.QuitLimitDeep(19), 7.5f);
  EXPECT_FLOAT_EQ(channels.QuitRateLimit(19), 3.0f);
}

TEST(QuitLimits, ABaselineTakenLaterDoesNotMoveThem) {
  Console console;
  channels.QuitLimitDeep(1) = 0.5f;
  channels.Baselines(1) = 1.0f;
  ScaleQuitLimits();
  channels.Baselines(1) = 9.0f;
  EXPECT_FLOAT_EQ(channels.QuitLimitDeep(1), 1.5f);
}

TEST(Quits, TheFirstTenCallsOnlyCount) {
  Quits quits;
  sounding.QuitSettleCount = 0;
  sounding.Readings(1) = 6.0f;
  for (int i = 0; i < 10; ++i) CheckQuits();
  EXPECT_EQ(sounding.QuitState, 0);
  EXPECT_EQ(sounding.QuitSettleCount, 10);
  CheckQuits();
  EXPECT_EQ(sounding.QuitState, 1);
}

struct LimitCase {
  float start, depth, shallow, deep, reading;
  bool over;
};

TEST(Quits, ShallowLimitsHoldAboveFiveMetresAndDeepLimitsAtEachDepth) {
  const LimitCase cases[] = {
      {0, 4.99f, 3, 0, 4, true},   {0, 5.0f, 3, 0, 4, false}, {0, 4.99f, 3, 0, 3, false},
      {0, 2.0f, 0, 3, 4, true},    {0, 8.0f, 0, 3, 4, true},  {0, 8.0f, 0, 3, 3, false},
      {0, 2.0f, 0, 0, 99, false},  {0, 2.0f, 9, 3, 4, true},  {10, 14.9f, 3, 0, 4, true},
      {10, 15.1f, 3, 0, 4, false},
  };
  for (const auto& row : cases) {
    Quits quits;
    session.StartDepth = row.start;
    sounding.CurrentDepth = row.depth;
    channels.QuitLimitShallow(1) = row.shallow;
    channels.QuitLimitDeep(1) = row.deep;
    sounding.Readings(1) = row.reading;
    CheckQuits();
    EXPECT_EQ(sounding.QuitState, row.over ? 1 : 0) << row.depth << " " << row.shallow;
    EXPECT_EQ(sounding.QuitFlag(1), row.over ? -1 : 0);
    EXPECT_EQ(Quits::Rts(), row.over);
    EXPECT_EQ(Main.frmQuitWarning.Visible, row.over);
    EXPECT_EQ(Main.lblChanValue(1).ForeColor, row.over ? kRed : kWhite);
  }
}

TEST(Quits, InclinationGoesByTheAbsoluteDepth) {
  struct Case {
    float start, depth, shallow, deep, reading;
    bool over;
  };
  const Case cases[] = {
      {0, 4.9f, 3, 9, 4, true},    {0, 5.0f, 3, 9, 4, false},   {10, 11.5f, 3, 9, 4, false},
      {10, 11.5f, 3, 9, 10, true}, {0, 2.0f, 0, 0, 0.1f, true}, {0, 2.0f, 0, 0, 0, false},
  };
  for (const auto& row : cases) {
    Quits quits;
    session.StartDepth = row.start;
    sounding.CurrentDepth = row.depth;
    channels.QuitLimitShallow(19) = row.shallow;
    channels.QuitLimitDeep(19) = row.deep;
    sounding.Readings(19) = row.reading;
    CheckQuits();
    EXPECT_EQ(sounding.QuitState, row.over ? 1 : 0) << row.depth << " " << row.reading;
    EXPECT_EQ(Main.lblQuitFor2.Caption, row.over ? "Inclination," : "");
    EXPECT_EQ(Main.lblQuitFor1.Caption, "");
  }
}

TEST(Quits, TextsNameTheChannelsWithoutSeparatorAndTheRates) {
  Quits quits;
  channels.QuitLimitDeep(2) = 1.0f;
  channels.QuitRateLimit(1) = 0.5f;
  channels.QuitRateLimit(19) = 0.5f;
  channels.QuitLimitShallow(19) = 1.0f;
  sounding.Readings(1) = 6.0f;
  sounding.Readings(2) = 2.0f;
  sounding.Readings(19) = 2.0f;
  sounding.RowCount = 4;
  sounding.Rows(4, 1) = 5.0f;
  sounding.Rows(4, 19) = 1.0f;
  CheckQuits();
  EXPECT_EQ(Main.lblQuitFor1.Caption, "Channel 1Channel 2Channel 1 rate,");
  EXPECT_EQ(Main.lblQuitFor2.Caption, "Inclination,Inclination rate,");
}

TEST(Quits, ColourAndTextsGoWhenTheCauseIsGoneAfterAnOverride) {
  Quits quits;
  channels.ChannelLabel(1, 1) = "Tip";
  sounding.Readings(1) = 6.0f;
  sounding.Readings(Quits::kInclination) = 2000.0f;
  CheckQuits();
  EXPECT_EQ(Main.lblQuitFor1.Caption, "Tip");
  EXPECT_EQ(Main.lblQuitFor2.Caption, "Inclination,");
  EXPECT_EQ(Main.lblChanValue(1).ForeColor, kRed);
  Main_cmdResetQuits_Press();
  sounding.Readings(1) = 1.0f;
  sounding.Readings(Quits::kInclination) = 1.0f;
  CheckQuits();
  EXPECT_EQ(Main.lblQuitFor1.Caption, "");
  EXPECT_EQ(Main.lblQuitFor2.Caption, "");
  EXPECT_EQ(Main.lblChanValue(1).ForeColor, kWhite);
  EXPECT_FALSE(Main.frmQuitWarning.Visible);
}

TEST(Quits, ThePressClearsTheFlagsOfChannelsOneToTwenty) {
  Quits quits;
  sounding.QuitState = 1;
  for (int channel = 1; channel <= 30; ++channel) sounding.QuitFlag(channel) = -1;
  Main_cmdResetQuits_Press();
  for (int channel = 1; channel <= 30; ++channel) {
    EXPECT_EQ(sounding.QuitFlag(channel), channel <= 20 ? 0 : -1) << channel;
  }
}

TEST(Quits, LeaveInclinationAndFrictionRatioOutOfTheChannels) {
  Quits quits;
  for (const int channel : {19, 20}) {
    Console::AddChannel(channel);
    channels.QuitLimitDeep(channel) = channel == 20 ? 1.0f : 1000.0f;
    channels.QuitLimitShallow(channel) = channels.QuitLimitDeep(channel);
    sounding.Readings(channel) = 500.0f;
  }
  CheckQuits();
  EXPECT_EQ(sounding.QuitState, 0);
  EXPECT_EQ(sounding.QuitFlag(20), 0);
  sounding.Readings(19) = 1500.0f;
  CheckQuits();
  EXPECT_EQ(sounding.QuitState, 1) << "the inclination by its own test";
  EXPECT_EQ(sounding.QuitFlag(19), 0);
  EXPECT_EQ(Main.lblQuitFor1.Caption, "");
}

TEST(Quits, ARateLimitOfZeroIsNoLimit) {
  Quits quits;
  sounding.Readings(1) = 4.0f;
  sounding.RowCount = 1;
  CheckQuits();
  EXPECT_EQ(sounding.QuitState, 0);
}

TEST(Quits, ARowWithoutTheChannelHasNoRate) {
  for (const int channel : {1, Quits::kInclination}) {
    Quits quits;
    channels.QuitRateLimit(channel) = 0.5f;
    sounding.Readings(channel) = 2.0f;
    sounding.RowCount = 4;
    sounding.Rows(4, channel) = -32768.0f;
    CheckQuits();
    EXPECT_EQ(sounding.QuitState, 0) << channel;
    sounding.Rows(4, channel) = 1.0f;
    CheckQuits();
    EXPECT_EQ(sounding.QuitState, 1) << channel;
  }
}

TEST(Quits, AbsentAndComputedChannelsAreNotTested) {
  Quits quits;
  channels.QuitLimitDeep(5) = 1.0f;
  sounding.Readings(5) = 2.0f;
  Console::AddChannel(21);
  channels.ChannelComputed(21) = 1;
  channels.QuitLimitDeep(21) = 1.0f;
  sounding.Readings(21) = 2.0f;
  CheckQuits();
  EXPECT_EQ(sounding.QuitState, 0);
}

TEST(Quits, ALatchedQuitStaysUntilTheOperatorActs) {
  Quits quits;
  sounding.Readings(1) = 6.0f;
  CheckQuits();
  sounding.Readings(1) = 0.0f;
  for (int i = 0; i < 20; ++i) CheckQuits();
  EXPECT_EQ(sounding.QuitState, 1);
  EXPECT_TRUE(Main.frmQuitWarning.Visible);
  EXPECT_TRUE(Quits::Rts());
}

TEST(Quits, OnASharedPortTheConePortStopsTheRig) {
  Quits quits;
  Main.EncoderComm.Close();
  settings.TruckInterfaceSerialPort = Console::kConePort;
  quits.OpenPorts();
  sounding.Readings(1) = 6.0f;
  CheckQuits();
  EXPECT_TRUE(Main.ConeComm.RTSEnable());
  Main_cmdResetQuits_Press();
  EXPECT_FALSE(Main.ConeComm.RTSEnable());
}

enum class Do { Exceed, Clear, Press, Release };

struct StateCase {
  int from;
  Do event;
  int to;
  bool rts, warning, override_shown;
};

// Each state with each event. RTS, the warning and the override label are those after it.
TEST(Quits, StateTable) {
  const StateCase cases[] = {
      {0, Do::Exceed, 1, true, true, false},  {0, Do::Clear, 0, false, false, false},
      {0, Do::Press, 0, false, false, false}, {0, Do::Release, 0, false, false, false},
      {1, Do::Exceed, 1, true, true, false},  {1, Do::Clear, 1, true, true, false},
      {1, Do::Press, 3, false, true, true},   {1, Do::Release, 1, true, true, false},
      {3, Do::Exceed, 3, false, true, true},  {3, Do::Clear, 3, false, false, true},
      {3, Do::Press, 3, false, true, true},   {3, Do::Release, 0, false, true, false},
  };
  for (const auto& row : cases) {
    Quits quits;
    if (row.from != 0) {
      sounding.Readings(1) = 6.0f;
      CheckQuits();
    }
    if (row.from == 3) Main_cmdResetQuits_Press();
    ASSERT_EQ(sounding.QuitState, row.from);
    sounding.Readings(1) = row.event == Do::Exceed ? 6.0f : 0.0f;
    if (row.event == Do::Exceed || row.event == Do::Clear) CheckQuits();
    if (row.event == Do::Press) Main_cmdResetQuits_Press();
    if (row.event == Do::Release) Main_cmdResetQuits_Release();
    const auto what = ::testing::Message() << row.from << " event " << static_cast<int>(row.event);
    EXPECT_EQ(sounding.QuitState, row.to) << what;
    EXPECT_EQ(Quits::Rts(), row.rts) << what;
    EXPECT_EQ(Main.frmQuitWarning.Visible, row.warning) << what;
    EXPECT_EQ(Main.lblOverride.Visible, row.override_shown) << what;
  }
}

TEST(Quits, AfterReleaseTheNextCheckLatchesAgainIfTheCauseIsStillThere) {
  Quits quits;
  sounding.Readings(1) = 6.0f;
  CheckQuits();
  Main_cmdResetQuits_Press();
  EXPECT_EQ(sounding.QuitFlag(1), 0);
  CheckQuits();
  EXPECT_EQ(sounding.QuitState, 3);
  Main_cmdResetQuits_Release();
  EXPECT_FALSE(Quits::Rts());
  CheckQuits();
  EXPECT_EQ(sounding.QuitState, 1);
  EXPECT_TRUE(Quits::Rts());
}

TEST(Quits, OneThatLatchesWhileTheButtonIsHeldInVainStaysLatchedOnRelease) {
  Quits quits;
  Main_cmdResetQuits_Press();  // nothing is latched yet
  EXPECT_EQ(sounding.QuitState, 0);
  sounding.Readings(1) = 6.0f;
  CheckQuits();
  Main_cmdResetQuits_Release();
  EXPECT_EQ(sounding.QuitState, 1);
  EXPECT_TRUE(Quits::Rts());
  sounding.Readings(1) = 0.0f;
  CheckQuits();
  EXPECT_TRUE(Quits::Rts()) << "until the operator acts";
  Main_cmdResetQuits_Press();
  Main_cmdResetQuits_Release();
  EXPECT_FALSE(Quits::Rts());
  EXPECT_EQ(sounding.QuitState, 0);
}

/// In whatever order things happen, the rig is stopped exactly while a quit is latched: it never
/// stands still with nothing latched, and never moves under a latched quit.
TEST(Quits, RtsIsTrueExactlyWhileAQuitIsLatched) {
  Quits quits;
  std::mt19937 random(7);
  int latched = 0;
  for (int step = 0; step < 5000; ++step) {
    switch (random() % 5) {
      case 0:
        sounding.Readings(1) = random() % 2 == 0 ? 6.0f : 0.0f;
        break;
      case 1:
        Main_cmdResetQuits_Press();
        break;
      case 2:
        Main_cmdResetQuits_Release();
        break;
      default:
        CheckQuits();
    }
    ASSERT_EQ(Quits::Rts(), sounding.QuitState == 1) << step;
    ASSERT_TRUE(sounding.QuitState != 1 || Main.frmQuitWarning.Visible) << "and it is shown";
    latched += sounding.QuitState == 1 ? 1 : 0;
  }
  EXPECT_GT(latched, 500);
}

}  // namespace
}  // namespace penlog
