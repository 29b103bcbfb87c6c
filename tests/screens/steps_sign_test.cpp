// What the console itself tells of the counting of depth and of a search for a lost link, so that
// it is in sight when the status window has gone behind.
#include <gtest/gtest.h>

#include "app/wiring.h"
#include "core/progress.h"
#include "core/settings.h"
#include "forms/main_form.h"
#include "forms/warning_form.h"
#include "sounding/sounding_state.h"
#include "sounding/truck_interface.h"
#include "support/state.h"

namespace penlog {
namespace {

struct StepsSign : testing::Test {
  StepsSign() {
    WireScreens();
    Main.Load = nullptr;
    settings.ConeSerialPort = 3;
    settings.TruckInterfaceSerialPort = 4;
    Show(frmWarning);
  }
  static void Pass() { World::RunFor(250 * kMillisecond); }
  ClearedWorld world;
};

TEST_F(StepsSign, IsHiddenWhileNoStepIsKnownToBeMissing) {
  Pass();
  EXPECT_FALSE(Main.lblStepsSign.Visible);
}

TEST_F(StepsSign, StaysWhenTheStatusWindowGoesBehind) {
  Show(Main);
  sounding.ConsoleMode = 2;
  NoteStepsMayBeMissing();
  Pass();
  EXPECT_TRUE(Main.lblStepsSign.Visible);
  EXPECT_EQ(Main.lblStepsSign.Caption, "STEPS MISSING?");
  SendBehind(frmWarning);
  World::RunFor(60 * kSecond);
  EXPECT_TRUE(Main.lblStepsSign.Visible);
}

TEST_F(StepsSign, TellsALostEdge) {
  auto& wire = world.ports.Wire(4);
  OpenTruckPort("19200,N,8,1");
  Pass();
  EXPECT_FALSE(Main.lblStepsSign.Visible);
  wire.LoseNextEdge();
  wire.SetLines({!wire.Lines().cts, false, false});
  Pass();
  EXPECT_TRUE(Main.lblStepsSign.Visible);
}

TEST_F(StepsSign, TheSearchHasItsRowOnTheStatusWindow) {
  ShowProgress("LOOKING FOR THE CONE, PORT", 2, 5);
  EXPECT_EQ(frmWarning.lblProgress.Caption, "LOOKING FOR THE CONE, PORT 2 OF 5");
  const Place& steps = frmWarning.frmSteps.Where;
  const Place& row = frmWarning.lblProgress.Where;
  EXPECT_GE(row.top, steps.top + steps.height);
  EXPECT_LE(row.top + row.height, frmWarning.Label6.Where.top);
  EXPECT_GT(row.height, 0);
  EndProgress();
  EXPECT_EQ(frmWarning.lblProgress.Caption, "");
}

}  // namespace
}  // namespace penlog
