#include "core/reset_state.h"

#include <gtest/gtest.h>

#include "conelink/cone_state.h"
#include "core/languages.h"
#include "core/resumed_zeros.h"
#include "core/soil_tables.h"
#include "display/display_state.h"
#include "forms/main_form.h"
#include "screens/setup_sounding.h"
#include "screens/specify_ports.h"
#include "sounding/sounding_state.h"
#include "tests/core/settings_world.h"

namespace penlog {
namespace {

TEST(ResetState, ClearsEveryTableInPlace) {
  SettingsWorld world;
  const auto* present = &channels.ChannelPresent(3);
  channels.ChannelPresent(3) = kTrue;
  settings.Language = 1;
  ReplaceSetting(settings.PrintMode, 2);
  session.ReadingsAveraged = 1;
  cone.ConeId = "DCS1234";
  sounding.ConsoleMode = 2;
  sounding.RowCount = 7;
  sounding.Rows(10000, 30) = 1;
  display.GraphChannel[1] = 3;
  soil.FrictionRatioMax = 100;
  words.WordCount = 1;
  setup_sounding.BackFlag = -1;
  specify_ports.ChosenPort = 3;
  resumed_zeros.Restored(3) = kTrue;
  ResetState();
  EXPECT_EQ(resumed_zeros.Restored(3), 0);
  EXPECT_EQ(channels.ChannelPresent(3), 0);
  EXPECT_EQ(settings.Language, 0);
  EXPECT_TRUE(replaced_settings.List.empty());
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
  EXPECT_EQ(specify_ports.ChosenPort, 0);
  EXPECT_EQ(&channels.ChannelPresent(3), present);
}

TEST(ResetState, PutsThePortsBackToTheirFirstSettings) {
  SettingsWorld world;
  world.ports.Wire(7);
  Main.ConeComm.SetCommPort(7);
  Main.ConeComm.SetSettings("19200,N,8,1");
  Main.ConeComm.SetInputMode(InputModes::Binary);
  Main.ConeComm.SetInputLen(1);
  Main.ConeComm.Open();
  ResetState();
  EXPECT_FALSE(Main.ConeComm.PortOpen());
  EXPECT_EQ(Main.ConeComm.CommPort(), 1);
  EXPECT_EQ(Main.ConeComm.Settings(), "9600,N,8,1");
  EXPECT_EQ(Main.ConeComm.InputMode(), InputModes::Text);
  EXPECT_EQ(Main.ConeComm.InputLen(), 0);
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
