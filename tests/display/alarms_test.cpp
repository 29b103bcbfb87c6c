// One tone for each new alarm, none when it is off.
#include "display/alarms.h"

#include <gtest/gtest.h>

#include "conelink/cone_state.h"
#include "core/channels.h"
#include "core/reset_state.h"
#include "display/view_settings.h"
#include "sounding/held_rows.h"
#include "sounding/sounding_state.h"
#include "support/world.h"

namespace penlog {
namespace {

struct Alarms : testing::Test {
  Alarms() {
    ResetState();
    cone.ConeLinkUp = kTrue;
    FollowAlarms();
  }
  std::size_t Tones() const { return world.host.tones.size(); }
  static void Hold(SoundingFile file) {
    sounding.Held[static_cast<std::size_t>(file)].Text = "a row\r\n";
  }
  static void Release(SoundingFile file) {
    sounding.Held[static_cast<std::size_t>(file)].Text.clear();
  }
  World world;
};

TEST_F(Alarms, OfRowsInMemoryAloneSoundAlsoWhileTheFileLags) {
  Hold(kCptFile);
  FollowAlarms();
  EXPECT_EQ(Tones(), 1u);
  for (const std::size_t refusals : {1u, 2u}) {
    Hold(kTemporaryFile);
    FollowAlarms();
    EXPECT_EQ(Tones(), 1u + refusals);
    Release(kTemporaryFile);
    FollowAlarms();
    EXPECT_EQ(Tones(), 1u + refusals) << "that the file lags is not new";
  }
}

TEST_F(Alarms, OfAFullDiskSoundOneToneForBothFiles) {
  Hold(kTemporaryFile);
  Hold(kCptFile);
  FollowAlarms();
  EXPECT_EQ(Tones(), 1u);
  Release(kTemporaryFile);
  Release(kCptFile);
  FollowAlarms();
  Hold(kTemporaryFile);
  FollowAlarms();
  Hold(kCptFile);  // whose rows come later
  FollowAlarms();
  EXPECT_EQ(Tones(), 2u);
}

TEST_F(Alarms, EachSoundsOneToneWhenItIsNew) {
  const struct {
    void (*on)();
    void (*off)();
  } rows[] = {
      {[] { sounding.QuitState = 1; }, [] { sounding.QuitState = 0; }},
      {[] { cone.ConeLinkUp = kFalse; }, [] { cone.ConeLinkUp = kTrue; }},
      {[] { cone.ConePortLost = kTrue; }, [] { cone.ConePortLost = kFalse; }},
      {[] { cone.TruckPortLost = kTrue; }, [] { cone.TruckPortLost = kFalse; }},
      {[] { Hold(kTemporaryFile); }, [] { Release(kTemporaryFile); }},
      {[] { Hold(kCptFile); }, [] { Release(kCptFile); }},
  };
  std::size_t expected = 0;
  for (const auto& row : rows) {
    row.on();
    for (int tick = 0; tick < 20; ++tick) FollowAlarms();
    EXPECT_EQ(Tones(), ++expected);
    row.off();
    FollowAlarms();
    EXPECT_EQ(Tones(), expected);
    row.on();
    FollowAlarms();
    EXPECT_EQ(Tones(), ++expected) << "it came anew";
    row.off();
    FollowAlarms();
  }
}

TEST_F(Alarms, AnOverriddenQuitIsNoNewOne) {
  sounding.QuitState = 1;
  FollowAlarms();
  sounding.QuitState = 3;
  FollowAlarms();
  EXPECT_EQ(Tones(), 1u);
  sounding.QuitState = 1;  // it has latched again behind the override
  FollowAlarms();
  EXPECT_EQ(Tones(), 2u);
}

TEST_F(Alarms, AreSilentWhenTheToneIsOff) {
  view_settings.AlarmTone = 0;
  sounding.QuitState = 1;
  FollowAlarms();
  EXPECT_EQ(Tones(), 0u);
  view_settings.AlarmTone = 1;
  FollowAlarms();
  EXPECT_EQ(Tones(), 0u) << "what stands on is not new";
}

}  // namespace
}  // namespace penlog
