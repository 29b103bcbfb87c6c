#include "core/start_up_cone.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "conelink/cone_state.h"
#include "conelink/scripted_cone.h"
#include "core/channel_files.h"
#include "forms/cone_settings_form.h"
#include "sounding/reading_values.h"
#include "sounding/sounding_state.h"
#include "tests/core/sample_cone.h"
#include "tests/core/start_up_world.h"

namespace penlog {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kNoCone =
    "CONE NOT DETECTED. PROGRAM CANNOT CONTINUE. CHECK THE POWER AND USB CONNECTIONS AND TRY "
    "AGAIN";
constexpr const char* kSpecifyTruck =
    "TRUCK INTERFACE SERIAL PORT NOT DETECTED. WOULD YOU LIKE TO SPECIFY THE PORT?";

class StartUpCone : public ::testing::Test {
 protected:
  StartUpCone() {
    settings.ConeSerialPort = 3;
    settings.TruckInterfaceSerialPort = 4;
    settings.DepthResolution = 0.005F;
    settings.DepthStep = 0.02F;
    world.ports.Wire(4);
    StartUp.cmdStart.Click = StartUp_cmdStart_Click;
    StartUp.cmdCalibrate.Click = StartUp_cmdCalibrate_Click;
    frmConeSettings.cmdClose.Click = [] { Hide(frmConeSettings); };
  }
  ~StartUpCone() override {
    StartUp.cmdStart.Click = StartUp.cmdCalibrate.Click = frmConeSettings.cmdClose.Click = {};
  }

  ScriptedCone& Plug(int number, const std::string& records = TipAndSleeve()) {
    cones_.push_back(std::make_unique<ScriptedCone>(world.ports.Wire(number)));
    cones_.back()->SetUnit(SampleMemory(records));
    return *cones_.back();
  }
  /// Presses START; the operator closes the report page when it comes.
  void Start() {
    world.WhenShown(frmConeSettings, [this] {
      report_shown = true;
      buttons_at_report = StartUp.cmdStart.Enabled || StartUp.cmdExit.Enabled ||
                          StartUp.cmdCalibrate.Enabled || StartUp.cmdResume.Enabled ||
                          StartUp.cmdSystemSetup.Enabled;
      dots_at_report = StartUp.Timer1.Running();
      StartUpWorld::Post(frmConeSettings, frmConeSettings.cmdClose);
    });
    World::Press(StartUp, StartUp.cmdStart);
  }
  void ExpectReportWasShown() {
    EXPECT_TRUE(report_shown);
    EXPECT_FALSE(buttons_at_report) << "all buttons are disabled";
    EXPECT_TRUE(dots_at_report);
    EXPECT_FALSE(StartUp.Visible);
    EXPECT_FALSE(StartUp.Timer1.Running());
    EXPECT_FALSE(StartUp.ConeComm.PortOpen());
    EXPECT_EQ(cone.ConeLinkUp, kTrue);
    EXPECT_EQ(sounding.ConsoleMode, 1);
  }
  void ExpectAnotherTryIsOffered() {
    EXPECT_FALSE(report_shown);
    EXPECT_TRUE(StartUp.Visible);
    EXPECT_TRUE(StartUp.cmdStart.Enabled);
    EXPECT_TRUE(StartUp.cmdExit.Enabled);
    EXPECT_TRUE(StartUp.cmdCalibrate.Enabled);
    EXPECT_FALSE(StartUp.frLoad.Visible);
    EXPECT_FALSE(StartUp.Timer1.Running());
    EXPECT_FALSE(StartUp.ConeComm.PortOpen());
  }
  bool StatusWas(const std::string& text) const {
    return std::find(world.statuses.begin(), world.statuses.end(), text) != world.statuses.end();
  }

  StartUpWorld world;
  bool report_shown = false;
  bool buttons_at_report = true;
  bool dots_at_report = false;
  std::vector<std::unique_ptr<ScriptedCone>> cones_;
};

TEST_F(StartUpCone, ThatAnswersIsReportedAtOnce) {
  const ScriptedCone& instrument = Plug(3);
  Start();
  ExpectReportWasShown();
  EXPECT_EQ(world.boxes.texts, Texts{});
  EXPECT_EQ(instrument.breaks, std::vector<bool>{});
  EXPECT_EQ(instrument.Count("Y"), 1);
  EXPECT_EQ(instrument.openings, (std::vector<PortSettings>{{19200, 'N', 8, 1}}));
  EXPECT_TRUE(StatusWas("LOOKING FOR CONE"));
  EXPECT_TRUE(StatusWas("Cone Found"));
  EXPECT_FALSE(StatusWas("Looking For Module ( 1)"));
  EXPECT_EQ(cone.ConeId, "DCS0042");
  EXPECT_EQ(channels.ReplyField(1), 1);
}

TEST_F(StartUpCone, ThatAnswersOnlyAfterABreakIsFoundOnAttempt2WithoutABox) {
  ScriptedCone& instrument = Plug(3);
  instrument.needs_break = true;
  Start();
  ExpectReportWasShown();
  EXPECT_EQ(world.boxes.texts, Texts{});
  EXPECT_EQ(instrument.breaks, (std::vector<bool>{true, false}));
  EXPECT_EQ(instrument.Count("Y"), 2);
  EXPECT_FALSE(StatusWas("CONE NOT FOUND. CHECKING PORTS"));
}

TEST_F(StartUpCone, ThatNeedsABreakIsFoundWithoutABoxWhileItsModuleAnswersAtOnce) {
  LayDownFirstRunFiles();
  LoadChannelFiles();
  settings.DiscoverAddOnModules = 1;
  ScriptedCone& instrument = Plug(3);
  instrument.SetUnit(SampleMemory(SampleRecord(23, 'P'), "MOD0003"), " 3");
  instrument.needs_break = true;
  instrument.modules_answer = true;
  Start();
  ExpectReportWasShown();
  EXPECT_EQ(world.boxes.texts, Texts{});
  EXPECT_EQ(instrument.Count("Y"), 2);
  EXPECT_EQ(instrument.Count(" 3Y"), 1) << "asked once the cone was found";
  EXPECT_EQ(cone.ModulePresent[3], kTrue);
}

TEST_F(StartUpCone, ThatStaysSilentLeavesItsModulesAlone) {
  LayDownFirstRunFiles();
  LoadChannelFiles();
  settings.DiscoverAddOnModules = 1;
  ScriptedCone& instrument = Plug(3);
  instrument.SetUnit(SampleMemory(SampleRecord(23, 'P'), "MOD0003"), " 3");
  instrument.silent = true;
  instrument.modules_answer = true;
  Start();
  ExpectAnotherTryIsOffered();
  EXPECT_EQ(world.boxes.texts, Texts{kNoCone});
  EXPECT_EQ(instrument.Count(" 3Y"), 0);
  EXPECT_EQ(session.ReadingsAveraged, 4);
}

TEST_F(StartUpCone, WithAChannelFileButNoConeRecordIsNotPresentApartFrom19And20) {
  LayDownFirstRunFiles();
  ASSERT_EQ(LoadChannelFiles(), 30);
  Plug(3);
  Start();
  for (int channel = 1; channel <= 30; ++channel) {
    const bool present = channel <= 2 || channel == 19 || channel == 20;
    EXPECT_EQ(channels.ChannelPresent(channel), present ? kTrue : kFalse) << channel;
  }
}

TEST_F(StartUpCone, WithAConeRecordButNoChannelFileIsPresentWithEmptyLabels) {
  LayDownFirstRunFiles();
  world.disk.Remove("/data/Channel12.txt");
  channels.ChannelLabel(0, 12) = channels.ChannelLabel(1, 12) = "of an earlier load";
  LoadChannelFiles();
  Plug(3, TipAndSleeve() + SampleRecord(12, 'U'));
  Start();
  EXPECT_EQ(channels.ChannelPresent(12), kTrue);
  EXPECT_EQ(channels.ChannelLabel(0, 12), "");
  EXPECT_EQ(channels.ChannelLabel(1, 12), "");
}

TEST_F(StartUpCone, HasAMeaningfulChannel19OnlyWith6And7) {
  Plug(3, TipAndSleeve() + SampleRecord(6, 'I') + SampleRecord(7, 'J'));
  Start();
  channels.ChannelFullScale(19) = 20;  // degrees at 100
  EXPECT_FLOAT_EQ(InclinationOf(30, 40), 10);
  cones_.clear();
  ResetForms();
  channels = ChannelState{};
  channels.ChannelPresent(19) = kTrue;
  Show(StartUp);
  Plug(3);
  Start();
  EXPECT_EQ(channels.ChannelPresent(19), kTrue) << "as its file says";
  EXPECT_FALSE(InclinationOf(30, 40) > 0) << "no number that a limit could be held against";
}

TEST_F(StartUpCone, ModulesAreLookedForWhereTheSettingsSay) {
  settings.DiscoverAddOnModules = 1;
  ScriptedCone& instrument = Plug(3);
  instrument.SetUnit(SampleMemory(SampleRecord(23, 'P'), "MOD0003"), " 3");
  Start();
  ExpectReportWasShown();
  for (int module = 1; module <= 9; ++module) {
    EXPECT_EQ(instrument.Count(" " + std::to_string(module) + "Y"), 1) << module;
    EXPECT_TRUE(StatusWas("Looking For Module ( " + std::to_string(module) + ")"));
  }
  EXPECT_EQ(cone.ModuleCount, 1);
  EXPECT_EQ(cone.ModulePresent[3], kTrue);
  EXPECT_EQ(channels.ReplyField(23), 3) << "assigned after the last module";
}

TEST_F(StartUpCone, ModulesAreLookedForFromOneToNineWithSettingOneAlone) {
  for (const int setting : {0, 1, 2}) {
    settings.DiscoverAddOnModules = static_cast<std::int16_t>(setting);
    ScriptedCone& instrument = Plug(3);
    Start();
    EXPECT_EQ(instrument.Count(" 9Y"), setting == 1 ? 1 : 0) << setting;
    EXPECT_EQ(instrument.Count(" 0Y") + instrument.Count(" 10Y"), 0) << setting;
    cones_.clear();
    Show(StartUp);
    StartUp.cmdStart.Enabled = true;
  }
}

TEST_F(StartUpCone, ModulesAreNotLookedForWhileASoundingIsResumed) {
  settings.DiscoverAddOnModules = 1;
  session.ResumeConeId = "DCS0042";
  const ScriptedCone& instrument = Plug(3);
  Start();
  EXPECT_EQ(instrument.Count(" 1Y"), 0);
}

TEST_F(StartUpCone, ThatStaysSilentIsAskedFiveTimesAndThenSearchedFor) {
  ScriptedCone& instrument = Plug(3);
  instrument.silent = true;
  Start();
  ExpectAnotherTryIsOffered();
  EXPECT_EQ(world.boxes.texts, Texts{kNoCone});
  EXPECT_EQ(instrument.Count("Y"), 6) << "five attempts and the search";
  EXPECT_EQ(std::count(instrument.breaks.begin(), instrument.breaks.end(), true), 5)
      << "a break after each failed attempt";
  EXPECT_EQ(world.statuses, (Texts{"LOOKING FOR CONE", "CONE NOT FOUND. CHECKING PORTS",
                                   "CHECKING FOR CONE ON PORT 3", "CHECKING FOR CONE ON PORT 4"}));
}

TEST_F(StartUpCone, ThatStaysSilentIsSaidToBeMissingFromTheThirdAttempt) {
  ScriptedCone& instrument = Plug(3);
  instrument.silent = true;
  int attempts = 0;
  const std::function<void()> look = [&] {
    if (StatusWas("CONE NOT FOUND. CHECKING PORTS")) return;
    attempts = instrument.Count("Y");
    PostCall(Now() + kMillisecond, this, look, EventKind::RepeatingCall);
  };
  look();
  Start();
  DropCalls(this);
  EXPECT_EQ(attempts, 2);
}

TEST_F(StartUpCone, IsTriedAgainAtTheNextPress) {
  ScriptedCone& instrument = Plug(3);
  instrument.silent = true;
  Start();
  instrument.silent = false;
  World::Press(StartUp, StartUp.cmdStart);
  ExpectReportWasShown();
}

TEST_F(StartUpCone, OnAnotherPortIsFoundAfterTheFifthAttempt) {
  world.ports.Wire(3);
  const ScriptedCone& instrument = Plug(9);
  world.Choose(frmSpecifyTruckInterface, 4);
  Start();
  ExpectReportWasShown();
  EXPECT_EQ(world.boxes.texts,
            (Texts{"CONE DETECTED ON PORT 9", "PRESS OK TO VERIFY TRUCK INTERFACE PORT",
                   "TRUCK INTERFACE SERIAL PORT SET TO PORT 4"}));
  EXPECT_EQ(settings.ConeSerialPort, 9);
  EXPECT_EQ(session.StartConePort, 9);
  EXPECT_TRUE(world.disk.FileExists(world.SetupPath())) << "the settings are saved";
  EXPECT_EQ(instrument.Count("Y"), 2) << "the search and the sixth attempt";
}

TEST_F(StartUpCone, OnAnotherPortTakesATruckInterfaceOnItsOwnPortWithIt) {
  world.ports.Wire(3);
  Plug(9);
  settings.TruckInterfaceSerialPort = 3;
  Start();
  ExpectReportWasShown();
  EXPECT_EQ(world.boxes.texts, Texts{"CONE DETECTED ON PORT 9"});
  EXPECT_EQ(settings.TruckInterfaceSerialPort, 9);
  EXPECT_EQ(session.StartTruckPort, 9);
}

TEST_F(StartUpCone, WhoseTruckInterfaceIsNotChosenAfterASearchWaitsForTheOperator) {
  world.ports.Wire(3);
  Plug(9);
  world.Choose(frmSpecifyTruckInterface, 0);
  Start();
  ExpectAnotherTryIsOffered();
}

TEST_F(StartUpCone, ThatGivesABannerAndNothingElseIsSearchedForAgainAfterEachFifthAttempt) {
  ScriptedCone& instrument = Plug(3);
  instrument.On("X", "");
  PostCall(Now() + 120 * kSecond, this, [&] { instrument.silent = true; });
  Start();
  ExpectAnotherTryIsOffered();
  ASSERT_GE(world.boxes.texts.size(), 2U);
  EXPECT_EQ(world.boxes.texts.front(), "CONE DETECTED ON PORT 3");
  EXPECT_EQ(world.boxes.texts.back(), kNoCone);
}

TEST_F(StartUpCone, FoundAgainOnItsOldPortProvesATruckInterfaceThatHasGoneMeanwhile) {
  ScriptedCone& instrument = Plug(3);
  instrument.On("X", "");
  PostCall(Now() + 10 * kSecond, this, [&] { world.ports.Wire(4).SetPresent(false); });
  PostCall(Now() + 120 * kSecond, this, [&] { instrument.silent = true; });  // ends any search
  world.boxes.Answer(kSpecifyTruck, BoxAnswer::No);
  Start();
  ExpectAnotherTryIsOffered();
  EXPECT_EQ(world.boxes.texts, (Texts{"CONE DETECTED ON PORT 3", kSpecifyTruck,
                                      "TRUCK INTERFACE SERIAL PORT NOT SET. PROGRAM CANNOT "
                                      "CONTINUE. CHECK THE POWER AND USB CONNECTIONS AND TRY "
                                      "AGAIN"}));
  EXPECT_EQ(instrument.Count("Y"), 6) << "five attempts and the search";
  EXPECT_FALSE(world.disk.FileExists(world.SetupPath())) << "nothing is saved";
}

TEST_F(StartUpCone, FoundAgainOnItsOldPortGoesOnWithTheTruckInterfaceThatIsChosen) {
  ScriptedCone& instrument = Plug(3);
  instrument.On("X", "");
  world.ports.Wire(8);
  PostCall(Now() + 10 * kSecond, this, [&] { world.ports.Wire(4).SetPresent(false); });
  PostCall(Now() + 120 * kSecond, this, [&] { instrument.silent = true; });  // ends any search
  world.WhenShown(frmSpecifyTruckInterface, [&] {
    instrument.SetUnit(SampleMemory(TipAndSleeve()));
    world.Choose(frmSpecifyTruckInterface, 8);
  });
  Start();
  ExpectReportWasShown();
  EXPECT_EQ(world.boxes.texts, (Texts{"CONE DETECTED ON PORT 3", kSpecifyTruck,
                                      "TRUCK INTERFACE SERIAL PORT SET TO PORT 8"}));
  EXPECT_EQ(settings.ConeSerialPort, 3);
  EXPECT_EQ(settings.TruckInterfaceSerialPort, 8);
  EXPECT_EQ(session.StartTruckPort, 8);
  EXPECT_TRUE(world.disk.FileExists(world.SetupPath())) << "the settings are saved";
}

TEST_F(StartUpCone, OnAPortThatAnotherProgramHoldsIsTold) {
  Plug(3);
  world.ports.SetRefused(3, true);
  Start();
  ExpectAnotherTryIsOffered();
  EXPECT_EQ(world.boxes.texts, Texts{kNoCone});
}

TEST_F(StartUpCone, ThatIsUnpluggedWhileItIsAskedIsTold) {
  Plug(3).silent = true;
  PostCall(Now() + 2 * kSecond, this, [&] { world.ports.Wire(3).SetPresent(false); });
  Start();
  ExpectAnotherTryIsOffered();
}

TEST_F(StartUpCone, WithARecordOfChannel31IsToldAndTheConsoleLives) {
  ScriptedCone& instrument = Plug(3, SampleRecord(31, 'T'));
  Start();
  ExpectAnotherTryIsOffered();
  ASSERT_EQ(world.boxes.texts.size(), 1U);
  EXPECT_NE(world.boxes.texts[0].find("31"), std::string::npos) << world.boxes.texts[0];
  EXPECT_EQ(sounding.ConsoleMode, 0);
  EXPECT_EQ(cone.ConeLinkUp, kFalse);
  instrument.SetMemory(SampleMemory(TipAndSleeve()));
  World::Press(StartUp, StartUp.cmdStart);
  ExpectReportWasShown();
}

TEST_F(StartUpCone, MissingAtACalibrationCheckLeadsToPlaybackOnly) {
  settings.CalibratorSerialPort = 6;
  world.ports.Wire(6);
  Plug(3).silent = true;
  for (int channel = 1; channel <= 30; ++channel) channels.ChannelPresent(channel) = kTrue;
  World::Press(StartUp, StartUp.cmdCalibrate);
  EXPECT_EQ(world.boxes.texts,
            Texts{"No Cone Found. Press OK To Proceed To Cabilibration Check (Playback Only)."});
  EXPECT_EQ(session.CalibrationPlaybackOnly, kTrue);
  EXPECT_EQ(channels.ChannelPresent(1), kFalse);
  EXPECT_EQ(channels.ChannelPresent(18), kFalse);
  EXPECT_EQ(channels.ChannelPresent(19), kTrue);
  ExpectAnotherTryIsOffered();
}

TEST_F(StartUpCone, AtACalibrationCheckIsReportedWithOneReadingAveraged) {
  settings.CalibratorSerialPort = 6;
  world.ports.Wire(6);
  Plug(3);
  std::int16_t mode = 0;
  std::int16_t averaged = 0;
  world.WhenShown(frmConeSettings, [&] {
    mode = session.CalibrationMode;
    averaged = session.ReadingsAveraged;
    StartUpWorld::Post(frmConeSettings, frmConeSettings.cmdClose);
  });
  World::Press(StartUp, StartUp.cmdCalibrate);
  EXPECT_EQ(mode, kTrue);
  EXPECT_EQ(averaged, 1);
  EXPECT_EQ(session.CalibrationPlaybackOnly, 0);
}

TEST_F(StartUpCone, OfASoundingAfterACalibrationCheckAveragesFourReadingsAgain) {
  Plug(3);
  session.CalibrationMode = kTrue;
  session.CalibrationPlaybackOnly = kTrue;
  session.ReadingsAveraged = 1;
  Start();
  EXPECT_EQ(session.CalibrationMode, 0);
  EXPECT_EQ(session.CalibrationPlaybackOnly, 0);
  EXPECT_EQ(session.ReadingsAveraged, 4);
}

TEST_F(StartUpCone, RunsTheDotsWhileItIsLookedFor) {
  Plug(3).silent = true;
  Start();
  EXPECT_EQ(world.dots.size(), 21U) << "0 to 20 of them";
  EXPECT_EQ(*world.dots.rbegin(), 20U);
}

}  // namespace
}  // namespace penlog
