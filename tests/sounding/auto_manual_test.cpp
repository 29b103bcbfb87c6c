#include "sounding/auto_manual.h"

#include "sounding/console.h"

namespace penlog {
namespace {

TEST(Manual, TakesTheClampFromTheOperatorAndForcesPressureOn) {
  Console console;
  settings.DepthCounterType = 1;
  settings.PressureSwitchPresent = 1;
  console.truck().SetLines({false, false, true});
  console.OpenPorts();
  ASSERT_EQ(sounding.PressureLine, 1);
  ASSERT_EQ(sounding.ClampLine, 1);
  Main_cmdManual_Click();
  EXPECT_EQ(sounding.PressureLine, 0);
  EXPECT_EQ(sounding.ClampLine, 0);
  EXPECT_TRUE(Console::Solid(Main.shpPressure));
  EXPECT_TRUE(Console::Solid(Main.shpClamp));
  EXPECT_EQ(Main.lblAutoOrManual.Caption, "Manual");
  EXPECT_TRUE(Main.cmdAuto.Enabled);
  EXPECT_FALSE(Main.cmdManual.Enabled);
  EXPECT_TRUE(Main.cmdToggleClamp.Enabled);
}

TEST(Manual, AProximitySoundingCountsWithoutRebound) {
  Console console;
  settings.DepthCounterType = 1;
  settings.PressureSwitchPresent = 1;
  console.OpenPorts();
  console.Cts(false);
  Main_cmdManual_Click();
  console.Pulse(3);
  console.Cts(true);
  console.Cts(false);
  console.Pulse(2);
  EXPECT_EQ(sounding.DepthCounts, 5.0f);
  EXPECT_EQ(sounding.Rebound, 0.0f);
}

TEST(Manual, ToggleOpensAndClosesTheClamp) {
  Console console;
  console.OpenPorts();
  Main_cmdManual_Click();
  Main_cmdToggleClamp_Click();
  EXPECT_EQ(sounding.ManualClampState, 0);
  EXPECT_EQ(sounding.ClampLine, 1);
  EXPECT_FALSE(Console::Solid(Main.shpClamp));
  console.EncoderDown(1);
  EXPECT_EQ(sounding.DepthCounts, 0.0f);
  Main_cmdToggleClamp_Click();
  EXPECT_EQ(sounding.ClampLine, 0);
  console.EncoderDown(1);
  EXPECT_EQ(sounding.DepthCounts, 1.0f);
}

TEST(Manual, PressAgainTakesTheStateOfTheOperator) {
  Console console;
  console.OpenPorts();
  Main_cmdManual_Click();
  Main_cmdToggleClamp_Click();
  SetClampLine(0);
  Main_cmdManual_Click();
  EXPECT_EQ(sounding.ClampLine, 1);
}

TEST(Manual, ARereadOfTheLinesKeepsWhatTheOperatorDecided) {
  Console console;
  console.OpenPorts();
  Main_cmdManual_Click();
  console.truck().SetLines({true, false, true});
  console.ports.Wire(Console::kTruckPort);
  ReadTruckLines();
  EXPECT_EQ(sounding.ClampLine, 0);
}

struct AutoCase {
  int counter_type, pressure_switch;
  bool shared;
  ModemLines lines;
  int pressure, clamp;
};

TEST(Auto, ReadsTheLinesAtOnce) {
  const AutoCase cases[] = {
      {1, 1, false, {false, false, true}, 1, 1}, {1, 1, false, {true, true, true}, 0, 0},
      {1, 0, false, {false, true, true}, 0, 0},  {0, 1, false, {false, false, true}, 0, 1},
      {0, 0, true, {true, false, true}, 0, 1},
  };
  for (const auto& row : cases) {
    Console console;
    settings.DepthCounterType = static_cast<std::int16_t>(row.counter_type);
    settings.PressureSwitchPresent = static_cast<std::int16_t>(row.pressure_switch);
    if (row.shared) settings.TruckInterfaceSerialPort = Console::kConePort;
    console.truck().SetLines(row.lines);
    console.OpenPorts();
    Main_cmdManual_Click();
    sounding.PressureLine = 0;
    Main_cmdAuto_Click();
    EXPECT_EQ(sounding.PressureLine, row.pressure);
    EXPECT_EQ(sounding.ClampLine, row.clamp);
    EXPECT_EQ(Console::Solid(Main.shpClamp), row.clamp == 0);
    EXPECT_EQ(sounding.AutoMode, 1);
    EXPECT_EQ(Main.lblAutoOrManual.Caption, "Auto");
    EXPECT_FALSE(Main.cmdAuto.Enabled);
    EXPECT_TRUE(Main.cmdManual.Enabled);
    EXPECT_FALSE(Main.cmdToggleClamp.Enabled);
  }
}

}  // namespace
}  // namespace penlog
