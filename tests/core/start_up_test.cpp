#include "core/start_up.h"

#include <gtest/gtest.h>

#include "sounding/sounding_state.h"
#include "tests/core/start_up_world.h"

namespace penlog {
namespace {

using Texts = std::vector<std::string>;

class StartUpScreen : public ::testing::Test {
 protected:
  StartUpWorld world;
};

TEST_F(StartUpScreen, ExitEndsTheProgramAtOnce) {
  EXPECT_THROW(StartUp_cmdExit_Click(), ProgramEnd);
  EXPECT_TRUE(EndUnderWay());
}

TEST_F(StartUpScreen, CalibrationWithoutACalibratorPortOnlySaysSo) {
  StartUp_cmdCalibrate_Click();
  EXPECT_EQ(world.boxes.texts, Texts{"CALIBRATOR SERIAL PORT NUMBER NOT SPECIFIED"});
  EXPECT_EQ(session.CalibrationMode, 0);
  EXPECT_EQ(session.ReadingsAveraged, 4);
  EXPECT_FALSE(StartUp.frLoad.Visible);
}

TEST_F(StartUpScreen, CalibrationWithAMissingCalibratorPortOnlySaysSo) {
  settings.CalibratorSerialPort = 6;
  world.ports.Wire(5);
  StartUp_cmdCalibrate_Click();
  EXPECT_EQ(world.boxes.texts, Texts{"CALIBRATOR SERIAL PORT NUMBER INCORRECT OR NOT CONNECTED"});
  EXPECT_EQ(session.CalibrationMode, 0);
}

TEST_F(StartUpScreen, CalibrationWithItsPortGoesOnAsAStart) {
  settings.CalibratorSerialPort = 6;
  world.ports.Wire(6);
  world.boxes.Answer("CONE SERIAL PORT NOT DETECTED.", BoxAnswer::No);
  session.CalibrationPlaybackOnly = kTrue;
  StartUp_cmdCalibrate_Click();
  EXPECT_EQ(world.boxes.texts.size(), 2U) << "the cone's port is asked for";
  EXPECT_EQ(session.CalibrationMode, kTrue);
  EXPECT_EQ(session.CalibrationPlaybackOnly, 0);
  EXPECT_EQ(session.ReadingsAveraged, 1);
}

TEST_F(StartUpScreen, StartKeepsTheFourPortsAsTheyWere) {
  settings.ConeSerialPort = 3;
  settings.TruckInterfaceSerialPort = 4;
  settings.ASCIIOutSerialPort = 5;
  settings.VideoOverlaySerialPort = 6;
  StartUp_cmdStart_Click();  // no port is there
  EXPECT_EQ(session.StartConePort, 3);
  EXPECT_EQ(session.StartTruckPort, 4);
  EXPECT_EQ(session.StartASCIIPort, 5);
  EXPECT_EQ(session.StartVideoPort, 6);
}

TEST_F(StartUpScreen, StartDisablesEveryButtonAndRunsTheDots) {
  bool any_enabled = true;
  bool panel = false;
  bool timer = false;
  PostCall(Now() + kMillisecond, this, [&] {
    any_enabled = StartUp.cmdStart.Enabled || StartUp.cmdResume.Enabled ||
                  StartUp.cmdSystemSetup.Enabled || StartUp.cmdCalibrate.Enabled ||
                  StartUp.cmdExit.Enabled;
    panel = StartUp.frLoad.Visible;
    timer = StartUp.Timer1.Running();
  });
  StartUp_cmdStart_Click();
  EXPECT_FALSE(any_enabled);
  EXPECT_TRUE(panel);
  EXPECT_TRUE(timer);
}

TEST_F(StartUpScreen, StartTellsOfAnUnfinishedSounding) {
  struct Row {
    const char* temporary;
    bool told;
  };
  for (const Row& row :
       {Row{"/soundings/A(001).cpt\r\nA(001)\r\n", true}, Row{"DONE\r\n", false},
        Row{"DONE", false}, Row{"DONE \n", false}, Row{"", false}, Row{"DONE.cpt\r\n", true}}) {
    world.boxes.texts.clear();
    world.disk.Put("/data/TemporaryData.txt", row.temporary);
    StartUp_cmdStart_Click();
    const bool told = world.boxes.texts[0].find("THE LAST SOUNDING WAS NOT FINISHED: ") == 0;
    EXPECT_EQ(told, row.told) << row.temporary;
    EXPECT_EQ(world.disk.Read("/data/TemporaryData.txt"), row.temporary);
  }
}

TEST_F(StartUpScreen, StartGoesBackWhenTheUnfinishedSoundingIsToBeResumed) {
  world.disk.Put("/data/TemporaryData.txt", "/soundings/A(001).cpt\r\nA(001)\r\n");
  world.boxes.Answer("THE LAST SOUNDING WAS NOT FINISHED: ", BoxAnswer::Cancel);
  StartUp_cmdStart_Click();
  EXPECT_EQ(world.boxes.texts.size(), 1U) << "asks for ports though the operator went back";
  EXPECT_TRUE(StartUp.cmdResume.Enabled);
  EXPECT_TRUE(StartUp.cmdStart.Enabled);
  EXPECT_FALSE(StartUp.frLoad.Visible);
  EXPECT_FALSE(StartUp.Timer1.Running());
}

TEST_F(StartUpScreen, StartSaysNothingOfSoundingsWhenThereIsNoTemporaryFile) {
  StartUp_cmdStart_Click();
  ASSERT_EQ(world.boxes.texts.size(), 1U);
  EXPECT_EQ(world.boxes.texts[0].find("NO SERIAL PORTS FOUND."), 0U);
}

TEST_F(StartUpScreen, StartNamesTheFileOfTheUnfinishedSounding) {
  world.disk.Put("/data/TemporaryData.txt", "/soundings/A(001).cpt\r\nA(001)\r\n");
  StartUp_cmdStart_Click();
  EXPECT_NE(world.boxes.texts[0].find("/soundings/A(001).cpt"), std::string::npos);
}

TEST_F(StartUpScreen, DotsRunTo20AndAreEmptied) {
  for (std::size_t tick = 1; tick <= 20; ++tick) {
    StartUp_Timer1_Timer();
    EXPECT_EQ(StartUp.lblStatusIndicator.Caption, std::string(tick, '.'));
  }
  StartUp_Timer1_Timer();
  EXPECT_EQ(StartUp.lblStatusIndicator.Caption, "");
  StartUp_Timer1_Timer();
  EXPECT_EQ(StartUp.lblStatusIndicator.Caption, ".");
}

TEST_F(StartUpScreen, TickCountsASecondWhenTheClocksSecondChanges) {
  StartUp_Timer1_Timer();
  const auto before = sounding.SecondsCounter;
  StartUp.Timer1.Start();
  World::RunFor(10 * kSecond + 100 * kMillisecond);
  EXPECT_EQ(sounding.SecondsCounter - before, 10);
}

TEST_F(StartUpScreen, TickServesTheLinksCounter) {
  struct Row {
    int before;
    int after;
  };
  for (const Row& row : {Row{0, 0}, Row{1, 2}, Row{999, 1000}, Row{1000, 0}}) {
    StartUp.CommTick = static_cast<std::int16_t>(row.before);
    StartUp_Timer1_Timer();
    EXPECT_EQ(StartUp.CommTick, row.after);
  }
}

}  // namespace
}  // namespace penlog
