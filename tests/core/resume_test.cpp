#include "core/resume.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "conelink/cone_settings_report.h"
#include "conelink/cone_state.h"
#include "conelink/scripted_cone.h"
#include "core/channel_files.h"
#include "core/settings_file.h"
#include "forms/cone_settings_form.h"
#include "platform/runtime_fault.h"
#include "sounding/sounding_state.h"
#include "support/temporary_lines.h"
#include "tests/core/sample_cone.h"
#include "tests/core/start_up_world.h"

namespace penlog {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kTemporary = "/data/TemporaryData.txt";

class ResumeScreen : public ::testing::Test {
 protected:
  ResumeScreen() {
    LayDownFirstRunFiles();
    LoadChannelFiles();
    settings.ConeSerialPort = 3;
    settings.TruckInterfaceSerialPort = 4;
    settings.DepthResolution = 0.005F;
    settings.DepthStep = 0.02F;
    settings.DepthStepCounts = 4;
    session.LastSoundingCompletedMessage = "LAST SOUNDING COMPLETED.  CANNOT RESTART.";
    world.ports.Wire(4);
    StartUp.cmdStart.Click = StartUp_cmdStart_Click;
    StartUp.cmdResume.Click = StartUp_cmdResume_Click;
    StartUp.cmdResumeAtLastDepth.Click = StartUp_cmdResumeAtLastDepth_Click;
    StartUp.cmdResumeAtSurface.Click = StartUp_cmdResumeAtSurface_Click;
    StartUp.cmdCancel.Click = StartUp_cmdCancel_Click;
    StartUp.cmdExit.Click = StartUp_cmdExit_Click;
    frmConeSettings.cmdClose.Click = [] { Hide(frmConeSettings); };
  }
  ~ResumeScreen() override {
    DropCalls(this);
    for (Button* button : {&StartUp.cmdStart, &StartUp.cmdResume, &StartUp.cmdResumeAtLastDepth,
                           &StartUp.cmdResumeAtSurface, &StartUp.cmdCancel, &StartUp.cmdExit,
                           &frmConeSettings.cmdClose}) {
      button->Click = {};
    }
    frmConeSettings.Load = {};
  }

  void Put(const TextLines& lines) { world.disk.Put(kTemporary, JoinedLines(lines)); }
  void PutRows(int rows) { Put(StoredLines(rows)); }
  /// Rows at these depths; their values say nothing.
  void PutDepths(const Texts& depths) {
    TextLines lines = StoredHeader();
    for (const auto& depth : depths)
      lines.push_back(StoredRowLine(depth, "2.00", {"1.0", "2.0", "3.0"}));
    Put(lines);
  }
  /// RESUME LAST SOUNDING.
  void Resume() { World::Press(StartUp, StartUp.cmdResume); }
  void AtLastDepth() {
    CloseReport();
    World::Press(StartUp, StartUp.cmdResumeAtLastDepth);
  }
  void AtSurface(const std::string& distance) {
    StartUp.txtDistanceDrilled.Text = distance;
    CloseReport();
    World::Press(StartUp, StartUp.cmdResumeAtSurface);
  }
  ScriptedCone& Plug(int number, const std::string& id = "DSE1234") {
    cones_.push_back(std::make_unique<ScriptedCone>(world.ports.Wire(number)));
    cones_.back()->SetUnit(SampleMemory(TipAndSleeve() + SampleRecord(3, 'P'), id));
    return *cones_.back();
  }
  void ExpectIdle() {
    EXPECT_TRUE(StartUp.Visible);
    EXPECT_FALSE(StartUp.frmResume.Visible);
    EXPECT_EQ(session.ResumeConeId, "");
    EXPECT_TRUE(StartUp.cmdStart.Enabled);
    EXPECT_TRUE(StartUp.cmdResume.Enabled);
    EXPECT_TRUE(StartUp.cmdCalibrate.Enabled);
    EXPECT_TRUE(StartUp.cmdExit.Enabled);
    EXPECT_FALSE(StartUp.frLoad.Visible);
    EXPECT_FALSE(StartUp.Timer1.Running());
  }
  void ExpectPanel() {
    EXPECT_TRUE(StartUp.frmResume.Visible);
    EXPECT_FALSE(StartUp.cmdStart.Enabled) << "a start would run as a resume without rows";
    EXPECT_FALSE(StartUp.cmdResume.Enabled);
    EXPECT_FALSE(StartUp.cmdCalibrate.Enabled);
    EXPECT_FALSE(StartUp.cmdSystemSetup.Enabled);
    EXPECT_TRUE(StartUp.cmdExit.Enabled);
    EXPECT_TRUE(StartUp.cmdResumeAtLastDepth.Enabled);
    EXPECT_TRUE(StartUp.cmdResumeAtSurface.Enabled);
    EXPECT_TRUE(StartUp.txtDistanceDrilled.Enabled);
    EXPECT_TRUE(StartUp.cmdCancel.Enabled);
  }
  bool StatusWas(const std::string& text) const {
    return std::find(world.statuses.begin(), world.statuses.end(), text) != world.statuses.end();
  }

  StartUpWorld world;
  bool report_shown = false;

 private:
  void CloseReport() {
    world.WhenShown(frmConeSettings, [this] {
      report_shown = true;
      StartUpWorld::Post(frmConeSettings, frmConeSettings.cmdClose);
    });
  }

  std::vector<std::unique_ptr<ScriptedCone>> cones_;
};

// What can't be resumed.

TEST_F(ResumeScreen, OfASoundingThatClosedNormallyOnlySaysSo) {
  world.disk.Put(kTemporary, "DONE\r\n");
  Resume();
  EXPECT_EQ(world.boxes.texts, Texts{"LAST SOUNDING COMPLETED.  CANNOT RESTART."});
  ExpectIdle();
}

TEST_F(ResumeScreen, WithoutAFileOnlySaysSo) {
  Resume();
  EXPECT_EQ(world.boxes.texts,
            Texts{"THERE IS NO SOUNDING TO RESUME.  /data/TemporaryData.txt IS MISSING."});
  ExpectIdle();
}

TEST_F(ResumeScreen, OfAFileThatCannotBeUsedSaysWhyAndStays) {
  struct Case {
    std::string content;
    const char* why;
  };
  TextLines cut = StoredHeader();
  cut.resize(9);
  for (const Case& row :
       {Case{"", "IT IS EMPTY."}, Case{JoinedLines(cut), "ITS HEADER IS NOT WHOLE."},
        Case{std::string(4096, '\0'), "ITS HEADER IS NOT WHOLE."}}) {
    world.boxes.texts.clear();
    world.disk.Put(kTemporary, row.content);
    Resume();
    EXPECT_EQ(world.boxes.texts,
              Texts{"THE LAST SOUNDING CANNOT BE RESUMED.  /data/TemporaryData.txt: " +
                    std::string(row.why)});
    ExpectIdle();
    EXPECT_EQ(world.disk.Read(kTemporary), row.content) << "nothing is written";
  }
}

/// A disk that doesn't give the recovery copy.
struct UnreadableDisk : MemoryDisk {
  std::string Read(const std::string& path) override {
    if (path == kTemporary) throw RuntimeFault(path + ": Input/output error");
    return MemoryDisk::Read(path);
  }
};

TEST_F(ResumeScreen, OfAFileThatCannotBeReadSaysTheReason) {
  UnreadableDisk disk;
  disk.Put(kTemporary, JoinedLines(StoredLines(3)));
  UseDisk(&disk);
  Resume();
  EXPECT_EQ(world.boxes.texts, Texts{"THE LAST SOUNDING CANNOT BE RESUMED.  "
                                     "/data/TemporaryData.txt: Input/output error"});
  ExpectIdle();
  UseDisk(&world.disk);
}

// The panel.

TEST_F(ResumeScreen, ShowsTheConeAndTheLastDepth) {
  PutRows(5);
  Resume();
  ExpectPanel();
  EXPECT_EQ(StartUp.lblLastSoundingCone.Caption, "DSE1234");
  EXPECT_EQ(StartUp.lblLastSoundingDepth.Caption, "0.10 m");
  EXPECT_EQ(world.boxes.texts, Texts{});
}

TEST_F(ResumeScreen, ShowsTheDepthAsTheConsoleDoes) {
  struct Case {
    int units;
    int format;
    const char* depth;
    const char* shown;
  };
  for (const Case& row : {Case{0, 0, "12.34", "12.34 m"}, Case{1, 0, "10.00", "32.81 ft"},
                          Case{0, 1, "12.34", "-12.34 m"}, Case{0, 1, "-250.50", "250.50 m"},
                          Case{1, 1, "-10.00", "32.81 ft"}}) {
    settings.DepthUnits = static_cast<std::int16_t>(row.units);
    settings.DepthFormat = static_cast<std::int16_t>(row.format);
    PutDepths({row.depth});
    Resume();
    EXPECT_EQ(StartUp.lblLastSoundingDepth.Caption, row.shown);
    World::Press(StartUp, StartUp.cmdCancel);
  }
}

TEST_F(ResumeScreen, TakesHeaderAndPathsFromTheFile) {
  world.disk.Put("/data/s.dis", "");
  PutRows(3);
  Resume();
  EXPECT_EQ(
      session.SoundingFiles,
      (std::array<std::string, 7>{"/data/TemporaryData.txt", "/data/s.cpt", "/data/s.dis",
                                  "/data/s.smc", "/data/s.tim", "/data/s.res", "/data/s.mp4"}));
  EXPECT_EQ(session.HasDissipationFile, kTrue);
  EXPECT_EQ(session.HasSeismicFile, 0);
  EXPECT_EQ(session.SoundingName, "NAME");
  EXPECT_EQ(session.ResumeCompanyName, "Company, Ltd.");
  EXPECT_EQ(settings.CompanyName, "") << "another job's company stays out of the settings";
  EXPECT_EQ(session.OperatorName, "Oper");
  EXPECT_EQ(session.ResumeConeId, "DSE1234");
  EXPECT_EQ(session.SoundingLocation, "Loc");
  EXPECT_EQ(session.JobNumber, "Job");
  EXPECT_EQ(session.HoleNumber, "Hole");
  EXPECT_EQ(session.SoundingDateTime, "2026-06-15 09:30:00");
  EXPECT_EQ(session.HeaderNote, "Head");
  EXPECT_EQ(session.FooterNote1, "Foot1");
  EXPECT_EQ(session.FooterNote2, "Foot2");
  EXPECT_EQ(session.GPSPosition, "GPS");
  EXPECT_FLOAT_EQ(session.WaterTable, 1.5F);
}

TEST_F(ResumeScreen, TakesRowsWithTheirSpeedsWhereTheyWereTakenFrom) {
  TextLines lines = StoredHeader();
  lines.push_back(StoredRowLine("2.02", "0.00", {"1.1", "2.1", "3.1"}));
  lines.push_back(StoredRowLine("2.04", "1.98", {"1.2", "2.2", "3.2"}));
  lines.push_back("DRILLOUT*****" + std::string(60, '*'));
  lines.push_back(StoredRowLine("2.50", "2.03", {"1.3", "2.3", "3.3"}));
  Put(lines);
  Resume();
  EXPECT_EQ(sounding.RowCount, 3);
  EXPECT_FLOAT_EQ(sounding.Rows(1, 0), 2.02F);
  EXPECT_FLOAT_EQ(sounding.Rows(3, 0), 2.5F);
  EXPECT_FLOAT_EQ(sounding.Rows(2, 3), 3.2F);
  EXPECT_FLOAT_EQ(sounding.Rows(3, 1), 1.3F);
  EXPECT_FLOAT_EQ(sounding.RowSpeed(0), 0.0F);
  EXPECT_FLOAT_EQ(sounding.RowSpeed(1), 1.98F);
  EXPECT_FLOAT_EQ(sounding.RowSpeed(2), 2.03F);
  EXPECT_FLOAT_EQ(sounding.Rows(0, 0), 2.0F) << "row 1 less a step";
  EXPECT_FLOAT_EQ(session.StartDepth, 2.0F);
  EXPECT_FLOAT_EQ(sounding.DepthCounts, 12.0F);
  EXPECT_FLOAT_EQ(channels.Baselines(2), 0.2988F);
  EXPECT_FLOAT_EQ(sounding.Rows(0, 3), 0.5007F);
}

TEST_F(ResumeScreen, OfAHeaderWithoutRowsStartsOneStepBelow0AndWarns) {
  PutRows(0);
  Resume();
  ExpectPanel();
  EXPECT_EQ(sounding.RowCount, 0);
  EXPECT_FLOAT_EQ(sounding.Rows(0, 0), -0.02F);
  EXPECT_FLOAT_EQ(session.StartDepth, -0.02F);
  EXPECT_EQ(sounding.DepthCounts, 0.0F);
  EXPECT_EQ(StartUp.lblLastSoundingDepth.Caption, "-0.02 m");
  ASSERT_EQ(world.boxes.texts.size(), 1U);
  EXPECT_EQ(world.boxes.texts[0].find("THE LAST SOUNDING HOLDS NO ROWS."), 0U);
  Plug(3);
  AtLastDepth();
  EXPECT_FLOAT_EQ(sounding.CurrentDepth, -0.02F);
}

TEST_F(ResumeScreen, OfOneRowStartsOneStepAboveIt) {
  PutDepths({"1.50"});
  Resume();
  EXPECT_EQ(sounding.RowCount, 1);
  EXPECT_FLOAT_EQ(session.StartDepth, 1.48F);
  EXPECT_FLOAT_EQ(sounding.DepthCounts, 4.0F);
  EXPECT_EQ(world.boxes.texts, Texts{});
}

TEST_F(ResumeScreen, TellsWhatIsLeftOutAndWritesNothing) {
  struct Case {
    int damaged;
    bool more;
  };
  for (const Case& row : {Case{1, false}, Case{5, false}, Case{8, true}}) {
    world.boxes.texts.clear();
    TextLines lines = StoredLines(3);
    for (int i = 0; i < row.damaged; ++i) lines.insert(lines.begin() + 18, "\"torn");
    Put(lines);
    Resume();
    ASSERT_EQ(world.boxes.texts.size(), 1U);
    const std::string& text = world.boxes.texts[0];
    EXPECT_EQ(text.find("PART OF THE LAST SOUNDING'S TEMPORARY DATA CANNOT BE READ"), 0U);
    EXPECT_NE(text.find("KEPT BESIDE"), std::string::npos);
    EXPECT_NE(text.find("LINE 19: IT IS NO WHOLE ROW"), std::string::npos);
    EXPECT_EQ(text.find("AND 3 MORE") != std::string::npos, row.more);
    EXPECT_EQ(world.disk.Read(kTemporary), JoinedLines(lines));
    ExpectPanel();
    World::Press(StartUp, StartUp.cmdCancel);
  }
}

TEST_F(ResumeScreen, TellsABaselineThatIsNoNumberAndKeepsNothingBeside) {
  TextLines lines = StoredLines(3);
  lines[16] = StoredColumns({"0.25310", "x", "0.50070"});
  Put(lines);
  Resume();
  ASSERT_EQ(world.boxes.texts.size(), 1U);
  EXPECT_NE(world.boxes.texts[0].find("LINE 17: THE BASELINE OF CHANNEL 2"), std::string::npos);
  EXPECT_EQ(world.boxes.texts[0].find("KEPT BESIDE"), std::string::npos);
}

// Cancel.

TEST_F(ResumeScreen, CancelLeavesNothingOfTheSounding) {
  settings.DepthStep = 0.04F;
  PutRows(5);
  Resume();
  World::Press(StartUp, StartUp.cmdCancel);
  ExpectIdle();
  EXPECT_EQ(sounding.RowCount, 0);
  EXPECT_EQ(sounding.RowSpeed(0), 0.0F) << "the first row of a new sounding has no speed";
  EXPECT_EQ(sounding.Rows(3, 1), 0.0F);
  EXPECT_EQ(sounding.CurrentDepth, 0.0F);
  EXPECT_EQ(session.GPSPosition, "") << "or it would stand in the next sounding's header";
  EXPECT_EQ(session.OperatorName, "");
  EXPECT_EQ(session.WaterTable, 0.0F);
  EXPECT_EQ(session.StartDepth, 0.0F);
  EXPECT_EQ(session.SoundingFiles[1], "");
  EXPECT_EQ(session.SoundingFiles[4], "");
  EXPECT_EQ(session.SoundingFiles[0], kTemporary);
  EXPECT_EQ(settings.DepthStep, 0.04F);
}

TEST_F(ResumeScreen, CancelledCanBeOpenedAgainWithAnotherFile) {
  PutRows(5);
  Resume();
  World::Press(StartUp, StartUp.cmdCancel);
  PutRows(2);
  Resume();
  ExpectPanel();
  EXPECT_EQ(sounding.RowCount, 2);
  EXPECT_EQ(sounding.Rows(3, 1), 0.0F);
}

TEST_F(ResumeScreen, CancelledIsFollowedByAnOrdinaryStart) {
  settings.DiscoverAddOnModules = 1;
  PutRows(5);
  Resume();
  World::Press(StartUp, StartUp.cmdCancel);
  const ScriptedCone& cone_of_another = Plug(3, "DSE9999");
  frmConeSettings.Load = ConeSettingsOpen;
  world.WhenShown(frmConeSettings,
                  [] { StartUpWorld::Post(frmConeSettings, frmConeSettings.cmdClose); });
  World::Press(StartUp, StartUp.cmdStart);
  EXPECT_EQ(cone_of_another.Count(" 1Y"), 1) << "modules are looked for again";
  EXPECT_EQ(channels.Baselines(1), 0.0F) << "the record's, not those of the file";
}

TEST_F(ResumeScreen, ExitEndsTheProgramFromThePanel) {
  PutRows(5);
  Resume();
  EXPECT_THROW(World::Press(StartUp, StartUp.cmdExit), ProgramEnd);
  ForgetEnd();
}

// At the last depth.

TEST_F(ResumeScreen, AtTheLastDepthFindsTheConeAndOpensItsReport) {
  settings.DiscoverAddOnModules = 1;
  const ScriptedCone& instrument = Plug(3);
  PutRows(5);
  Resume();
  AtLastDepth();
  EXPECT_TRUE(report_shown);
  EXPECT_EQ(world.boxes.texts, Texts{});
  EXPECT_EQ(session.ResumeDepthStatus, 0.0F);
  EXPECT_FLOAT_EQ(sounding.CurrentDepth, 0.1F);
  EXPECT_FALSE(StartUp.Visible);
  EXPECT_FALSE(StartUp.Timer1.Running());
  EXPECT_EQ(instrument.Count("Y"), 1);
  EXPECT_EQ(instrument.Count(" 1Y"), 0) << "modules are not looked for";
  EXPECT_EQ(instrument.openings, (std::vector<PortSettings>{{19200, 'N', 8, 1}}));
  EXPECT_FLOAT_EQ(channels.Baselines(1), 0.2531F) << "saved zeros are kept";
}

TEST_F(ResumeScreen, DepthsAreReadAsTheyStandInTheElevationFormat) {
  settings.DepthFormat = 1;
  Plug(3);
  PutDepths({"-4.98", "-4.96"});
  Resume();
  AtLastDepth();
  EXPECT_FLOAT_EQ(sounding.CurrentDepth, -4.96F);
}

TEST_F(ResumeScreen, KeepsThePortsAndPutsBackWhatACalibrationLeft) {
  Plug(3);
  session.CalibrationMode = kTrue;
  session.CalibrationPlaybackOnly = kTrue;
  session.ReadingsAveraged = 1;
  PutRows(5);
  Resume();
  AtLastDepth();
  EXPECT_EQ(session.StartConePort, 3);
  EXPECT_EQ(session.StartTruckPort, 4);
  EXPECT_EQ(session.CalibrationMode, 0);
  EXPECT_EQ(session.CalibrationPlaybackOnly, 0);
  EXPECT_EQ(session.ReadingsAveraged, 4);
}

TEST_F(ResumeScreen, KnowsWhichPortsAreThere) {
  Plug(3);
  world.ports.Wire(12);
  PutRows(5);
  Resume();
  AtLastDepth();
  EXPECT_EQ(cone.PortPresent[12], kTrue) << "the overlay's presence is taken from the table";
  EXPECT_EQ(cone.PortPresent[13], 0);
}

TEST_F(ResumeScreen, LooksForTheConeWithoutALimit) {
  ScriptedCone& instrument = Plug(3);
  instrument.silent = true;
  PostCall(Now() + 300 * kSecond, this, [&] { instrument.silent = false; });
  PutRows(5);
  Resume();
  AtLastDepth();
  EXPECT_TRUE(report_shown);
  EXPECT_EQ(world.boxes.texts, Texts{}) << "no question holds it up";
  EXPECT_GT(instrument.Count("Y"), 12);
  EXPECT_TRUE(StatusWas("LOOKING FOR CONE"));
  EXPECT_TRUE(StatusWas("CONE NOT FOUND. CHECKING PORTS"));
}

TEST_F(ResumeScreen, FindsAConeThatCameBackUnderAnotherNumber) {
  world.ports.Wire(3);
  const ScriptedCone& instrument = Plug(9);
  PutRows(5);
  Resume();
  AtLastDepth();
  EXPECT_TRUE(report_shown);
  EXPECT_EQ(world.boxes.texts, Texts{});
  EXPECT_EQ(settings.ConeSerialPort, 9);
  EXPECT_EQ(settings.TruckInterfaceSerialPort, 4);
  EXPECT_EQ(session.StartConePort, 9);
  EXPECT_GE(instrument.Count("Y"), 2);
}

TEST_F(ResumeScreen, TakesATruckInterfaceOnTheConesOwnPortWithIt) {
  for (const int truck : {3, 4}) {
    settings.ConeSerialPort = 3;
    settings.TruckInterfaceSerialPort = static_cast<std::int16_t>(truck);
    world.ports.Wire(3);
    Plug(9);
    PutRows(5);
    Show(StartUp);
    Resume();
    AtLastDepth();
    EXPECT_EQ(settings.TruckInterfaceSerialPort, truck == 3 ? 9 : 4);
    StartUp_cmdCancel_Click();
  }
}

TEST_F(ResumeScreen, CancelEndsTheSearch) {
  ScriptedCone& instrument = Plug(3);
  instrument.silent = true;
  bool panel_shown = false;
  bool resume_usable = true;
  PostCall(Now() + 100 * kSecond, this, [&] {
    panel_shown = StartUp.frmResume.Visible && StartUp.frLoad.Visible;
    resume_usable = StartUp.cmdResumeAtLastDepth.Enabled || StartUp.cmdResumeAtSurface.Enabled ||
                    StartUp.txtDistanceDrilled.Enabled || StartUp.cmdStart.Enabled;
    StartUpWorld::Post(StartUp, StartUp.cmdCancel);
  });
  PutRows(5);
  Resume();
  AtLastDepth();
  EXPECT_FALSE(report_shown);
  EXPECT_TRUE(panel_shown);
  EXPECT_FALSE(resume_usable);
  ExpectIdle();
  EXPECT_FALSE(StartUp.ConeComm.PortOpen());
}

TEST_F(ResumeScreen, ExitEndsTheSearchToo) {
  Plug(3).silent = true;
  PostCall(Now() + 20 * kSecond, this, [] { StartUpWorld::Post(StartUp, StartUp.cmdExit); });
  PutRows(5);
  Resume();
  EXPECT_THROW(AtLastDepth(), ProgramEnd);
  ForgetEnd();
}

TEST_F(ResumeScreen, OfAnotherConeIsToldAndEndsTheProgramAndTheFileStays) {
  Plug(3, "DSE9999");
  frmConeSettings.Load = ConeSettingsOpen;
  PutRows(5);
  Resume();
  EXPECT_THROW(AtLastDepth(), ProgramEnd);
  ForgetEnd();
  EXPECT_EQ(world.boxes.texts,
            Texts{"Cone #DSE1234 is required to resume the last sounding.  Please attach it and "
                  "restart the program."});
  EXPECT_EQ(world.disk.Read(kTemporary), JoinedLines(StoredLines(5)));
}

TEST_F(ResumeScreen, OfAConeWithoutChannelsLeavesThePanelForAnotherTry) {
  ScriptedCone& instrument = Plug(3);
  instrument.SetUnit(SampleMemory("", "DSE1234"));
  PutRows(5);
  Resume();
  AtLastDepth();
  EXPECT_FALSE(report_shown);
  ASSERT_EQ(world.boxes.texts.size(), 1U);
  EXPECT_EQ(world.boxes.texts[0].find("THE CONE'S SETTINGS CANNOT BE READ."), 0U);
  ExpectPanel();
  instrument.SetUnit(SampleMemory(TipAndSleeve(), "DSE1234"));
  World::Press(StartUp, StartUp.cmdResumeAtLastDepth);
  EXPECT_TRUE(report_shown);
}

// At the surface.

TEST_F(ResumeScreen, AtTheSurfaceTheTargetIsTheLastDepthAndWhatWasDrilled) {
  struct Case {
    const char* typed;
    int comma;
    int units;
    float target;
  };
  for (const Case& row :
       {Case{"", 0, 0, 0.1F}, Case{"", 1, 0, 0.1F}, Case{"  ", 0, 0, 0.1F}, Case{"0", 0, 0, 0.1F},
        Case{"1.5", 0, 0, 1.6F}, Case{"1,5", 0, 0, 1.6F}, Case{"1.5", 1, 0, 1.6F},
        Case{"1,5", 1, 0, 1.6F}, Case{"3.281", 0, 1, 1.1F}, Case{"", 0, 1, 0.1F}}) {
    session.CommaDecimal = static_cast<std::int16_t>(row.comma);
    settings.DepthUnits = static_cast<std::int16_t>(row.units);
    Plug(3);
    PutRows(5);
    Show(StartUp);
    Resume();
    AtSurface(row.typed);
    EXPECT_NEAR(session.ResumeTargetDepth, row.target, 1e-6F) << row.typed << " " << row.comma;
    EXPECT_EQ(session.ResumeDepthStatus, 1.0F);
    EXPECT_EQ(sounding.CurrentDepth, 0.0F);
    EXPECT_EQ(world.boxes.texts, Texts{});
    StartUp_cmdCancel_Click();
  }
}

TEST_F(ResumeScreen, AtTheSurfaceBeginsAtTheStartDepthInTheElevationFormat) {
  settings.DepthFormat = 1;
  Plug(3);
  PutDepths({"-4.98", "-4.96", "-4.94"});
  Resume();
  AtSurface("2");
  EXPECT_FLOAT_EQ(sounding.CurrentDepth, -5.0F);
  EXPECT_FLOAT_EQ(session.ResumeTargetDepth, -2.94F) << "drilled downward";
}

TEST_F(ResumeScreen, AtTheSurfaceRefusesWhatIsNoDistance) {
  PutRows(5);
  Resume();
  for (const char* typed : {"abc", "1.5 m", "-1", "1.2.3", "20000", "1e9"}) {
    world.boxes.texts.clear();
    StartUp.txtDistanceDrilled.Text = typed;
    World::Press(StartUp, StartUp.cmdResumeAtSurface);
    ASSERT_EQ(world.boxes.texts.size(), 1U) << typed;
    EXPECT_EQ(world.boxes.texts[0].find("\"" + std::string(typed) + "\" is no"), 0U);
    ExpectPanel();
    EXPECT_FALSE(StartUp.frLoad.Visible);
    EXPECT_EQ(session.ResumeDepthStatus, 0.0F);
  }
}

// The spacing of the rows.

TEST_F(ResumeScreen, GoesOnWithTheStepOfItsRowsAndTheSettingsKeepTheirOwn) {
  settings.DepthStep = 0.04F;
  settings.DepthStepCounts = 8;
  settings.TipConfiguration = 1;
  settings.TipDiameter = 60;
  Plug(3);
  PutRows(5);
  Resume();
  AtLastDepth();
  EXPECT_EQ(settings.DepthStep, 0.02F);
  EXPECT_EQ(settings.DepthStepCounts, 4);
  EXPECT_EQ(world.boxes.texts,
            Texts{"THE ROWS OF THE LAST SOUNDING STAND 0.02 m APART, THE SETTINGS SAY 0.04 m.  THE "
                  "SOUNDING GOES ON WITH 0.02 m."});
  EXPECT_FLOAT_EQ(session.StartDepth, 0.0F) << "a step of the file before its first row";
  EXPECT_FLOAT_EQ(sounding.DepthCounts, 20.0F);
  EXPECT_EQ(settings.TipConfiguration, 1) << "the tip is not the step's business";
  EXPECT_EQ(settings.TipDiameter, 60);
  SaveKQSettings();
  EXPECT_EQ(SetupLine(world.Setup(), 21), "0.04");
}

TEST_F(ResumeScreen, CancelGivesTheStepOfTheSettingsBack) {
  settings.DepthStep = 0.04F;
  settings.DepthStepCounts = 8;
  Plug(3).silent = true;
  PostCall(Now() + 5 * kSecond, this, [] { StartUpWorld::Post(StartUp, StartUp.cmdCancel); });
  PutRows(5);
  Resume();
  AtLastDepth();
  EXPECT_EQ(settings.DepthStep, 0.04F);
  EXPECT_EQ(settings.DepthStepCounts, 8);
  SaveKQSettings();
  EXPECT_EQ(SetupLine(world.Setup(), 21), "0.04");
}

TEST_F(ResumeScreen, TellsTheSpacingWhereItDiffersAlone) {
  struct Case {
    const char* what;
    float resolution;
    float step;
    Texts depths;
    float goes_on;
    bool told;
  };
  const Case cases[] = {
      {"hundredths of 25 mm",
       0.005F,
       0.025F,
       {"0.03", "0.05", "0.08", "0.10", "0.13"},
       0.025F,
       false},
      {"25 mm under 20 mm",
       0.005F,
       0.02F,
       {"0.03", "0.05", "0.08", "0.10", "0.13", "0.15", "0.18", "0.20", "0.23", "0.25"},
       0.025F,
       true},
      {"a gap of a lost link",
       0.005F,
       0.02F,
       {"0.02", "0.04", "0.20", "0.22", "0.24"},
       0.02F,
       false},
      {"a drilled gap upward",
       0.005F,
       0.02F,
       {"5.02", "5.04", "4.96", "4.98", "5.00"},
       0.02F,
       false},
      {"no rows", 0.005F, 0.02F, {}, 0.02F, false},
      {"one row", 0.005F, 0.02F, {"7.00"}, 0.02F, false},
      {"two rows that a lost link parts", 0.005F, 0.02F, {"0.02", "0.12"}, 0.02F, false},
      {"two rows that are too close", 0.005F, 0.1F, {"0.02", "0.04"}, 0.02F, true},
      {"10 cm", 0.02F, 0.02F, {"0.10", "0.20", "0.30", "0.40"}, 0.1F, true},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.what);
    world.boxes.texts.clear();
    settings.DepthResolution = row.resolution;
    settings.DepthStep = row.step;
    Plug(3);
    PutDepths(row.depths);
    Show(StartUp);
    Resume();
    world.boxes.texts.clear();
    AtLastDepth();
    EXPECT_EQ(settings.DepthStep, row.goes_on);
    EXPECT_EQ(world.boxes.texts.size(), row.told ? 1U : 0U);
    StartUp_cmdCancel_Click();
    EXPECT_EQ(settings.DepthStep, row.step);
  }
}

}  // namespace
}  // namespace penlog
