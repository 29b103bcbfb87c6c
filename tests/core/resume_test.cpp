#include "core/resume.h"

#include "sounding/reached.h"
#include "tests/core/resume_screen.h"

namespace penlog {
namespace {

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

/// A start puts an unfinished sounding beside, and the start may be cut off behind that.
TEST_F(ResumeScreen, OfAMissingOrEmptyFileNamesTheNewestSoundingThatStandsBeside) {
  const auto sounding_of = [](const std::string& date_time, int rows) {
    TextLines lines = StoredLines(rows);
    lines[8] = date_time;
    return JoinedLines(lines);
  };
  struct Case {
    std::vector<std::string> beside;  // (2), (3) ...
    int newest;                       // 0: none is named
  };
  const std::string old = sounding_of("2026-06-14 16:10:00", 9);
  const std::string later = sounding_of("2026-06-15 09:30:00", 3);
  const std::string longer = sounding_of("2026-06-15 09:30:00", 4);
  const std::string text = "  AN UNFINISHED SOUNDING OF ";
  for (const Case& row :
       {Case{{later}, 2}, Case{{old, later}, 3}, Case{{later, old}, 2},
        Case{{longer, later, old}, 2}, Case{{later, later}, 3},
        Case{{"DONE\r\n", "", "half a head"}, 0}, Case{{"half a head", old}, 3}}) {
    for (const char* content : {static_cast<const char*>(nullptr), "", "\r\n"}) {
      world.boxes.texts.clear();
      for (int n = 2; n < 6; ++n) {
        const std::string path = "/data/TemporaryData (" + std::to_string(n) + ").txt";
        if (world.disk.FileExists(path)) world.disk.Remove(path);
        const auto at = static_cast<std::size_t>(n - 2);
        if (at < row.beside.size()) world.disk.Put(path, row.beside[at]);
      }
      if (world.disk.FileExists(kTemporary)) world.disk.Remove(kTemporary);
      if (content != nullptr) world.disk.Put(kTemporary, content);
      Resume();
      ASSERT_EQ(world.boxes.texts.size(), 1U);
      const std::string& told = world.boxes.texts.front();
      EXPECT_TRUE(told.starts_with(content == nullptr ? "THERE IS NO SOUNDING TO RESUME."
                                                      : "THE LAST SOUNDING CANNOT BE RESUMED."))
          << told;
      EXPECT_EQ(told.find(text) != std::string::npos, row.newest > 0) << told;
      if (row.newest > 0) {
        EXPECT_TRUE(told.ends_with(" STANDS BESIDE: /data/TemporaryData (" +
                                   std::to_string(row.newest) +
                                   ").txt.  TO GO ON WITH IT, RENAME THAT FILE TO "
                                   "\"TemporaryData.txt\" AND PRESS RESUME LAST SOUNDING AGAIN."))
            << told;
      }
      ExpectIdle();
    }
  }
  world.disk.Remove(kTemporary);
  world.disk.Rename("/data/TemporaryData (3).txt", kTemporary);
  Resume();
  ExpectPanel();
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

TEST_F(ResumeScreen, RowsHoldNoReadingOfAChannelThatWasNotRecorded) {
  PutRows(3);
  Resume();
  for (std::int32_t row = 1; row <= 3; ++row) {
    for (const int channel : {4, 18, 23, 30}) {
      EXPECT_FALSE(IsReached(sounding.Rows(row, channel))) << row << " " << channel;
    }
    for (const int channel : {1, 2, 3}) {
      EXPECT_TRUE(IsReached(sounding.Rows(row, channel))) << row << " " << channel;
    }
  }
}

TEST_F(ResumeScreen, ThatEndedBehindTheMarkOfAGapSaysSo) {
  const std::string was =
      "THE LAST SOUNDING WAS RESUMED FROM THE SURFACE, AND NO ROW WAS TAKEN AFTER THAT.";
  const std::string again =
      "  IF THE CONE STANDS AT ANOTHER DEPTH NOW, RESUME FROM THE SURFACE AGAIN.";
  struct Case {
    int units;
    int format;
    const char* depth;
  };
  for (const Case& row : {Case{0, 0, "0.10 m"}, Case{1, 0, "0.33 ft"}, Case{0, 1, "-0.10 m"}}) {
    world.boxes.texts.clear();
    settings.DepthUnits = static_cast<std::int16_t>(row.units);
    settings.DepthFormat = static_cast<std::int16_t>(row.format);
    TextLines lines = StoredLines(5);
    lines.push_back("DRILLOUT*****" + std::string(60, '*'));
    Put(lines);
    Resume();
    EXPECT_EQ(world.boxes.texts,
              Texts{was + "  ITS LAST ROW STANDS AT " + row.depth + "." + again});
    ExpectPanel();
    EXPECT_EQ(StartUp.lblLastSoundingDepth.Caption, row.depth);
    StartUp_cmdCancel_Click();
  }
  world.boxes.texts.clear();
  TextLines lines = StoredLines(0);
  lines.push_back("DRILLOUT*****" + std::string(60, '*'));
  Put(lines);
  Resume();
  ASSERT_EQ(world.boxes.texts.size(), 2U);
  EXPECT_EQ(world.boxes.texts[1], was + again);
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

TEST_F(ResumeScreen, OfWhichNoRowCanBeReadDoesNotSayThatItHasNone) {
  TextLines lines = StoredLines(3);
  for (std::size_t i = 17; i < lines.size(); ++i) lines[i] = "torn";
  Put(lines);
  Resume();
  ASSERT_FALSE(world.boxes.texts.empty());
  EXPECT_EQ(
      world.boxes.texts.back().find("NO ROW OF THE LAST SOUNDING'S TEMPORARY DATA CAN BE READ."),
      0U)
      << world.boxes.texts.back();
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
  struct Case {
    int cone;
    int truck;
    int truck_after;
  };
  // Two ports that are not in use are not the same one.
  for (const Case& row : {Case{3, 3, 9}, Case{3, 4, 4}, Case{0, 0, 0}}) {
    settings.ConeSerialPort = static_cast<std::int16_t>(row.cone);
    settings.TruckInterfaceSerialPort = static_cast<std::int16_t>(row.truck);
    world.ports.Wire(3);
    Plug(9);
    PutRows(5);
    Show(StartUp);
    Resume();
    AtLastDepth();
    EXPECT_EQ(settings.ConeSerialPort, 9);
    EXPECT_EQ(settings.TruckInterfaceSerialPort, row.truck_after);
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

TEST_F(ResumeScreen, CancelWhileTheConesMemoryIsReadOpensNoReportAndLooksForNoModules) {
  settings.DiscoverAddOnModules = 1;
  const ScriptedCone& instrument = Plug(3);
  bool reads = false;
  PostCall(Now() + 1500 * kMillisecond, this, [&] {
    reads = StartUp.lblLoad.Caption == "Cone Found" && StartUp.frLoad.Visible;
    StartUpWorld::Post(StartUp, StartUp.cmdCancel);
  });
  PutRows(5);
  Resume();
  AtLastDepth();
  EXPECT_TRUE(reads);
  EXPECT_FALSE(report_shown);
  EXPECT_EQ(instrument.Count("Y"), 1);
  EXPECT_EQ(instrument.Count(" 1Y"), 0);
  ExpectIdle();
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

}  // namespace
}  // namespace penlog
