#include "core/reset_state.h"

#include <gtest/gtest.h>

#include "conelink/cone_state.h"
#include "core/languages.h"
#include "core/soil_tables.h"
#include "display/display_state.h"
#include "forms/main_form.h"
#include "screens/setup_sounding.h"
#include "sounding/sounding_state.h"
#include "tests/core/settings_world.h"

namespace penlog {
namespace {

TEST(ResetState, ClearsEveryTableInPlace) {
  SettingsWorld world;
  const auto* present = &channels.ChannelPresent(3);
  channels.ChannelPresent(3) = kTrue;
  settings.Language = 1;
  session.ReadingsAveraged = 1;
  cone.ConeId = "DCS1234";
  sounding.ConsoleMode = 2;
  sounding.RowCount = 7;
  sounding.Rows(10000, 30) = 1;
  display.GraphChannel[1] = 3;
  soil.FrictionRatioMax = 100;
  words.WordCount = 1;
  setup_sounding.BackFlag = -1;
  ResetState();
  EXPECT_EQ(channels.ChannelPresent(3), 0);
  EXPECT_EQ(settings.Language, 0);
  EXPECT_EQ(session.ReadingsAveraged, 4);
  EXPECT_EQ(session.DataDirectory, "");
  EXPECT_EQ(cone.ConeId, "");
  EXPECT_EQ(sounding.ConsoleMode, 0);
  EXPECT_EQ(sounding.RowCount, 0);
  EXPECT_EQ(sounding.Rows(10000, 30), 0);
  EXPECT_EQ(display.GraphChannel[1], 0);
  EXPECT_EQ(soil.FrictionRatioMax, 0);
  EXPECT_EQ(words.WordCount, 0);
  EXPECT_EQ(setup_sounding.BackFlag, 0);
  EXPECT_EQ(&channels.ChannelPresent(3), present);
}

TEST(ResetState, UnloadsScreensAndDropsBoxes) {
  SettingsWorld world;
  Show(Main);
  Main.lblDepth.Caption = "1.00";
  PostBox("SOMETHING");
  ResetState();
  EXPECT_FALSE(Main.Visible);
  EXPECT_FALSE(Main.Loaded);
  EXPECT_NE(Main.lblDepth.Caption, "1.00");
  EXPECT_FALSE(BoxIsOpen());
}

}  // namespace
}  // namespace penlog
