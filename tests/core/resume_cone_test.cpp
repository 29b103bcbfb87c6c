// A resume's search for its cone: under which numbers it is found, and what its record may change.
#include <functional>

#include "conelink/cone_settings_text.h"
#include "conelink/port_supervision.h"
#include "core/resumed_zeros.h"
#include "tests/core/resume_screen.h"

namespace penlog {
namespace {

TEST_F(ResumeScreen, FindsAConeUnderTheTrucksNumberAndTakesThemForNoSharedPort) {
  world.ports.Wire(3);  // the truck interface
  Plug(4);
  const std::string saved = world.Setup();
  PutRows(5);
  Resume();
  AtLastDepth();
  EXPECT_TRUE(report_shown);
  ASSERT_EQ(world.boxes.texts.size(), 1U);
  EXPECT_TRUE(world.boxes.texts[0].starts_with(
      "THE CONE WAS FOUND ON PORT 4, THE TRUCK INTERFACE'S PORT OF BEFORE."));
  EXPECT_EQ(settings.ConeSerialPort, 4);
  EXPECT_TRUE(ConeTookTheTrucksNumber());
  EXPECT_EQ(session.StartConePort, 3);
  EXPECT_EQ(session.StartTruckPort, 4);
  EXPECT_EQ(world.Setup(), saved) << "a pair of one would read as a shared port at the next start";
  StartUp_cmdCancel_Click();
  EXPECT_EQ(settings.ConeSerialPort, 3) << "or a start would skip the proof of the truck's port";
  EXPECT_EQ(settings.TruckInterfaceSerialPort, 4);
  EXPECT_EQ(cone.TruckPortLost, kFalse);
}

TEST_F(ResumeScreen, ThatTookTheTrucksNumberKeepsThemApartAtTheNextTry) {
  world.ports.Wire(3);
  ScriptedCone& instrument = Plug(4);
  instrument.SetUnit(SampleMemory("", "DSE1234"));
  PutRows(5);
  Resume();
  AtLastDepth();
  ExpectPanel();
  instrument.SetUnit(SampleMemory(TipAndSleeve(), "DSE1234"));
  World::Press(StartUp, StartUp.cmdResumeAtLastDepth);
  EXPECT_TRUE(report_shown);
  EXPECT_TRUE(ConeTookTheTrucksNumber());
  EXPECT_EQ(session.StartConePort, 3);
  EXPECT_EQ(session.StartTruckPort, 4);
}

TEST_F(ResumeScreen, FindsAConeThatMovesOnFromTheTrucksNumber) {
  world.ports.Wire(3);
  ScriptedCone& under_trucks = Plug(4);
  under_trucks.On("X", "");
  ScriptedCone& instrument = Plug(9);
  instrument.silent = true;
  long asked_before = 0;
  PutRows(5);
  Resume();
  PostCall(Now() + 120 * kSecond, this, [&] {
    under_trucks.silent = true;
    instrument.silent = false;
    asked_before = instrument.Count("Y");
  });
  AtLastDepth();
  EXPECT_TRUE(report_shown);
  EXPECT_EQ(world.boxes.texts.size(), 1U) << "it was on the truck's number once";
  EXPECT_EQ(settings.ConeSerialPort, 9);
  EXPECT_EQ(settings.TruckInterfaceSerialPort, 4);
  EXPECT_EQ(cone.TruckPortLost, kFalse);
  EXPECT_EQ(session.StartConePort, 9);
  EXPECT_EQ(session.StartTruckPort, 4);
  EXPECT_EQ(instrument.Count("Y"), asked_before + 2) << "one search finds it";
}

TEST_F(ResumeScreen, CancelInTheScanTakesNoPortOver) {
  world.ports.Wire(3);
  Plug(9);
  const std::function<void()> look = [&] {
    if (StartUp.lblLoad.Caption == "CHECKING FOR CONE ON PORT 9") {
      return StartUpWorld::Post(StartUp, StartUp.cmdCancel);
    }
    PostCall(Now() + kMillisecond, this, look, EventKind::RepeatingCall);
  };
  look();
  const std::string saved = world.Setup();
  PutRows(5);
  Resume();
  AtLastDepth();
  EXPECT_FALSE(report_shown);
  ExpectIdle();
  EXPECT_EQ(settings.ConeSerialPort, 3);
  EXPECT_EQ(world.Setup(), saved);
}

TEST_F(ResumeScreen, KeepsNoZeroThatTheSoundingDidNotSave) {
  TextLines lines = StoredHeader();
  lines[15] = StoredColumns({"1", "2"});
  lines[16] = StoredColumns({"0.25310", "x"});
  lines.push_back(StoredRowLine("0.02", "2.00", {"1.0", "2.0"}));
  Put(lines);
  Plug(3);
  for (const int channel : {1, 2, 3}) channels.Baselines(channel) = 0.77F;  // of another sounding
  Resume();
  AtLastDepth();
  EXPECT_FLOAT_EQ(channels.Baselines(1), 0.2531F);
  EXPECT_EQ(channels.Baselines(2), 0.0F) << "the record's";
  EXPECT_EQ(channels.Baselines(3), 0.0F) << "not recorded";
  StartUp_cmdCancel_Click();
  EXPECT_EQ(resumed_zeros.Restored(1), 0);
}

TEST_F(ResumeScreen, FromTheSurfaceReportsNoModules) {
  settings.DiscoverAddOnModules = 1;
  cone.ModulePresent[3] = kTrue;  // of a start before
  ScriptedCone& instrument = Plug(3);
  instrument.SetUnit(SampleMemory(SampleRecord(23, 'P'), "MOD0003"), " 3");
  PutRows(5);
  Resume();
  AtSurface("0");
  EXPECT_TRUE(report_shown);
  EXPECT_EQ(instrument.Count(" 3Y"), 0);
  const std::string report = ConeSettingsReport();
  EXPECT_NE(report.find("Cone #: DSE1234"), report.npos);
  EXPECT_EQ(report.find("Module #"), report.npos) << report;
}

}  // namespace
}  // namespace penlog
