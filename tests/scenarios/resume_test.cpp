// A sounding that was suspended, cut off or drilled out is taken up again, all through the screens.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "core/channels.h"
#include "display/display_state.h"
#include "forms/main_form.h"
#include "platform/numbers.h"
#include "scenarios/resume_scripts.h"

namespace penlog {
namespace {

// Suspended.

TEST(Suspended, GoesOnBehindTheRestartInTheSameFiles) {
  Scenario scenario;
  std::string at_resume;
  scenario.At("resumed", [&] { at_resume = scenario.File(kCpt); });
  scenario.Play(ScriptToRecording() + Push("0.4", "0.400 m") + ScriptToSuspend() + kRestart +
                ScriptToPanel() + R"(expect StartUp.lblLastSoundingCone "DCS0417"
expect StartUp.lblLastSoundingDepth "0.40 m"
)" + ScriptBy("cmdResumeAtLastDepth") +
                R"(rig test resumed
expect Main.lblDepth "0.400 m"
expect Main.lblBigDepth "0.40m"
expect Main.lblBigDepth visible
expect Main.Shape1 visible
expect Main.lblRebound "0.000 m"
expect Main.lblState "RECORDING"
expect Main.lblRowsOnDisk "20"
expect Main.lblLastRow "-"
expect Main.lblSoundingFile "S1.cpt"
expect Main.cmdExit disabled
expect Main.cmdTakeBaseline hidden
expect Main.cmdResetQuits visible
)" + Push("0.2", "0.600 m") +
                "expect Main.lblRowsOnDisk \"30\"\n" + ScriptToEnd());
  EXPECT_EQ(scenario.File(kTemporary), "DONE\r\n");
  ExpectCptDepths(scenario, 20, 30);
  EXPECT_EQ(scenario.File(kCpt).find(at_resume), 0U) << "what stood there stands";
  EXPECT_EQ(RowsOf(at_resume, kCptHeader).size(), 20U - kDelay);
  EXPECT_EQ(FilesLike(scenario, "(2)"), 0U);
}

TEST(Suspended, TwiceAndMoreIsOneSounding) {
  Scenario scenario;
  std::string script = ScriptToRecording() + Push("0.1", "0.100 m");
  for (const char* depth : {"0.200 m", "0.300 m", "0.400 m"}) {
    script += ScriptToSuspend() + kRestart + ScriptToResume() + Push("0.1", depth);
  }
  scenario.Play(script + ScriptToEnd());
  ExpectCptDepths(scenario, 20, 20);
}

TEST(Suspended, WithFewerRowsThanTheDelayGoesOn) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + Push("0.06", "0.060 m") + ScriptToSuspend() + kRestart +
                ScriptToResume() + Push("0.2", "0.260 m") + ScriptToEnd());
  ExpectCptDepths(scenario, 20, 13);
}

TEST(Suspended, BeforeItsFirstRowBeginsOneStepBelow0AndSaysSo) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + ScriptToSuspend() + kRestart +
                R"(screen StartUp
click StartUp.cmdResume
answer ok "THE LAST SOUNDING HOLDS NO ROWS."
expect StartUp.lblLastSoundingDepth "-0.02 m"
)" + ScriptBy("cmdResumeAtLastDepth") +
                "expect Main.lblDepth \"-0.020 m\"\n" + Push("0.2", "0.180 m") + ScriptToEnd());
  ExpectCptDepths(scenario, 0, 10);
}

TEST(Suspended, ByAStopWithFewerRowsThanTheDelayCanBeResumedToo) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + Push("0.06", "0.060 m") + R"(click Main.cmdStart
click Main.cmdWarningOK1
click Main.Command3
screen frmZOLRestart
)" + kRestart + ScriptToResume() +
                Push("0.2", "0.260 m") + ScriptToEnd());
  ExpectCptDepths(scenario, 20, 13);
  EXPECT_EQ(scenario.File(kTemporary), "DONE\r\n");
}

TEST(Suspended, InFeetAndElevationsGoesOnInThem) {
  ScenarioSetup setup;
  setup.settings = {{setting::kDepthFormat, "1"}, {setting::kDepthUnits, "1"}};
  Scenario scenario(setup);
  scenario.Play(ScriptToRecording() + Push("0.4", "-1.312 ft") + ScriptToSuspend() + kRestart +
                ScriptToPanel() + "expect StartUp.lblLastSoundingDepth \"-1.31 ft\"\n" +
                ScriptBy("cmdResumeAtLastDepth") + "expect Main.lblDepth \"-1.312 ft\"\n" +
                Push("0.2", "-1.969 ft") + ScriptToEnd());
  ExpectCptDepths(scenario, -20, 30, -20);
}

TEST(Suspended, ShortlyBeforeMidnightHasItsSpeedsBehindItToo) {
  ScenarioSetup setup;
  setup.start = {2026, 6, 15, 23, 59, 5, 0};
  Scenario scenario(setup);
  std::vector<int> hours;
  scenario.At("look", [&] { hours.push_back(scenario.session.clock.Wall().hour); });
  scenario.Play(ScriptToRecording() + Push("0.1", "0.100 m") + ScriptToSuspend() + kRestart +
                ScriptToResume() + "rig test look\n" + Push("0.85", "0.950 m") + "rig test look\n" +
                ScriptToEnd());
  EXPECT_EQ(hours, (std::vector<int>{23, 0})) << "midnight comes while it records";
  const Texts rows = RowsOf(scenario.File(kCpt), kCptHeader);
  ASSERT_EQ(rows.size(), 47U);
  for (std::size_t i = 5; i < 42; ++i) {
    EXPECT_NEAR(LeadingNumber(rows[i].substr(7, 6)), 2.0, 0.7) << rows[i].substr(0, 13);
  }
}

TEST(Suspended, ShowsTheChartsOfAllRows) {
  Scenario scenario;
  std::size_t points = 0;
  float top = -1;
  scenario.At("look", [&] {
    points = Main.pctGraph(1).traces.at(0).points.size();
    top = display.GraphDepthMin;
  });
  scenario.Play(ScriptToRecording() + Push("0.4", "0.400 m") + ScriptToSuspend() + kRestart +
                ScriptToResume() + "rig test look\nend\n");
  EXPECT_EQ(points, 20U);
  EXPECT_EQ(top, 0.0F);
}

TEST(Suspended, KeepsTheBaselinesOfTheSounding) {
  Scenario scenario;
  std::vector<float> zeros;
  const auto look = [&] {
    for (const int channel : {1, 2, 3, 6, 7}) zeros.push_back(channels.Baselines(channel));
  };
  scenario.At("look", look);
  scenario.Play(ScriptToRecording() + Push("0.2", "0.200 m") + "rig test look\n" +
                ScriptToSuspend() + kRestart + ScriptToResume() + "rig test look\n" +
                ScriptToEnd());
  ASSERT_EQ(zeros.size(), 10U);
  for (std::size_t i = 0; i < 5; ++i) EXPECT_NEAR(zeros[i], zeros[i + 5], 5.1e-6F) << i;
  EXPECT_NEAR(zeros[5], 0.2531F, 2e-5F) << "taken in the air, not the record's 0.25";
}

TEST(Suspended, WithTheProbesCameraGoesOnWithItsMarks) {
  ScenarioSetup setup;
  setup.settings = {{setting::kLumenProbePresent, "2"}};
  Scenario scenario(setup);
  scenario.Play(ScriptToRecording() + Push("0.1", "0.100 m") + ScriptToSuspend() + kRestart +
                ScriptToResume() + Push("0.1", "0.200 m") + ScriptToEnd());
  const Texts marks = RowsOf(scenario.File("/soundings/S1.tim"), 2);
  ASSERT_EQ(marks.size(), 40U) << "one each 5 mm";
  for (std::size_t i = 0; i < marks.size(); ++i) {
    EXPECT_NEAR(LeadingNumber(marks[i]), 0.005 * static_cast<double>(i + 1) - 0.75, 0.0006) << i;
  }
}

TEST(Suspended, SoundingsModulesAreNotLookedForAndTheirColumnsStay) {
  ScenarioSetup setup;
  setup.rig = "dcs-modules";
  setup.settings = {{setting::kDiscoverAddOnModules, "1"}};
  Scenario scenario(setup);
  scenario.Play(ScriptToRecording() + Push("0.4", "0.400 m") + ScriptToSuspend() + kRestart +
                ScriptToPanel() + R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
answer ok "RECORDED CHANNELS ARE MISSING NOW."
screen Main
expect Main.cmdStart "STOP"
wait 5
)" + Push("0.2", "0.600 m") +
                ScriptToEnd());
  const Texts lines = LinesOf(scenario.File(kCpt));
  const Texts rows = RowsOf(scenario.File(kCpt), kCptHeader);
  ASSERT_EQ(rows.size(), 30U);
  const auto field = [](const std::string& row, std::size_t column) {
    return row.substr(13 + 20 * column, 20);
  };
  const std::string nothing = std::string(14, ' ') + "-32768";
  std::size_t columns = 0;
  for (std::size_t column = 0; 13 + 20 * column < lines[15].size(); ++column, ++columns) {
    const int channel = static_cast<int>(LeadingNumber(field(lines[15], column)));
    const bool of_module = channel == 10 || channel == 11 || channel == 23;
    EXPECT_EQ(field(rows[0], column) == nothing, false) << channel;
    EXPECT_EQ(field(rows[20], column) == nothing, of_module) << channel;
    // The hydrophone sits 100 mm above the tip: what it read in rows 6 to 20 belongs to 1 to 15.
    if (channel == 23) {
      EXPECT_NE(field(rows[14], column), nothing);
      EXPECT_EQ(field(rows[15], column), nothing);
    }
  }
  EXPECT_EQ(columns, 8U);
}

// Closed, missing, damaged.

TEST(ResumeButton, BehindAClosedSoundingSaysSoAndTheScreenStays) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + Push("0.2", "0.200 m") + ScriptToEnd());
  scenario.Play(R"(screen StartUp
click StartUp.cmdResume
answer ok "LAST SOUNDING COMPLETED.  CANNOT RESTART."
expect StartUp.frmResume hidden
expect StartUp.cmdStart enabled
expect StartUp.cmdResume enabled
click StartUp.cmdStart
screen frmConeSettings 60
end
)");
}

TEST(ResumeButton, OnANewMachineSaysThatThereIsNothing) {
  Scenario scenario;
  scenario.Play(R"(screen StartUp
click StartUp.cmdResume
answer ok "THERE IS NO SOUNDING TO RESUME."
expect StartUp.frmResume hidden
click StartUp.cmdExit
)");
}

TEST(ResumeButton, CancelledLeavesTheSuspendedSoundingForLater) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + Push("0.2", "0.200 m") + ScriptToSuspend() +
                "click frmZOLRestart.cmdNo\n");
  const std::string suspended = scenario.File(kTemporary);
  scenario.Play(ScriptToPanel() + R"(expect StartUp.cmdStart disabled
click StartUp.cmdCancel
expect StartUp.frmResume hidden
click StartUp.cmdStart
answer ok "THE LAST SOUNDING WAS NOT FINISHED: /soundings/S1.cpt"
screen frmConeSettings 60
click frmConeSettings.cmdClose
screen SetupSounding
end
)");
  EXPECT_EQ(scenario.File(kTemporary), suspended);
  scenario.Play(ScriptToResume() + Push("0.2", "0.400 m") + ScriptToEnd());
  ExpectCptDepths(scenario, 20, 20);
}

TEST(ResumeButton, OfADamagedFileTellsKeepsItBesideAndGoesOn) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + Push("0.2", "0.200 m") + ScriptToSuspend() +
                "click frmZOLRestart.cmdNo\n");
  const std::string sound = scenario.File(kTemporary);
  const std::string damaged = sound + "\"  0.22   2.0";
  scenario.disk.Put(kTemporary, damaged);
  scenario.Play(R"(screen StartUp
click StartUp.cmdResume
answer ok "PART OF THE LAST SOUNDING'S TEMPORARY DATA CANNOT BE READ AND IS LEFT OUT."
)" + ScriptBy("cmdResumeAtLastDepth") +
                Push("0.2", "0.400 m") + ScriptToEnd());
  EXPECT_EQ(scenario.File(kKeptBeside), damaged);
  ExpectCptDepths(scenario, 20, 20);
}

TEST(ResumeButton, OfASoundingWithoutItsFileWritesItAnew) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + Push("0.2", "0.200 m") + ScriptToSuspend() +
                "click frmZOLRestart.cmdNo\n");
  const std::string before = scenario.File(kCpt);
  scenario.disk.Remove(kCpt);
  scenario.Play(ScriptToPanel() + R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
answer yes "THE SOUNDING FILE /soundings/S1.cpt IS MISSING."
answer ok "THE SOUNDING FILE WAS MENDED FROM THE TEMPORARY DATA.  ITS HEAD WAS WRITTEN ANEW."
screen Main
end
)");
  EXPECT_EQ(scenario.File(kCpt), before) << "head and rows, byte by byte";
}

TEST(ResumeButton, WhereTheFolderRefusesTakesAnotherOne) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + Push("0.2", "0.200 m") + ScriptToSuspend() +
                "click frmZOLRestart.cmdNo\n");
  scenario.disk.Remove(kCpt);
  scenario.disk.MakeFolder("/other");
  scenario.disk.SetReadOnly("/soundings");
  scenario.Play(ScriptToPanel() + R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
answer yes "THE SOUNDING FILE /soundings/S1.cpt IS MISSING."
answer yes "THE SOUNDING FILE CANNOT BE WRITTEN."
file /other/MOVED.cpt
answer ok "THESE FILES CANNOT BE READ."
answer ok "THE SOUNDING FILE WAS MENDED FROM THE TEMPORARY DATA."
screen Main
expect Main.lblSoundingFile "MOVED.cpt"
wait 5
)" + Push("0.2", "0.400 m") +
                ScriptToEnd());
  EXPECT_EQ(LinesOf(scenario.File("/other/MOVED.cpt")).size(), kCptHeader + 20);
  EXPECT_EQ(scenario.File(kTemporary), "DONE\r\n");
}

// Cut off.

TEST(CutOff, KilledWhileItRecordsGoesOnFromTheLastRow) {
  Scenario scenario;
  scenario.TryPlay("script", ScriptToRecording() + Push("0.5", "0.500 m") + "kill\nwait 1\n");
  scenario.disk.LosePower();
  scenario.Play(ScriptToResume() + "expect Main.lblDepth \"0.500 m\"\n" + Push("0.1", "0.600 m") +
                ScriptToEnd());
  ExpectCptDepths(scenario, 20, 30);
}

TEST(CutOff, BetweenTheTwoAppendsOfARowIsMendedAndTold) {
  Scenario scenario;
  scenario.TryPlay("script", ScriptToRecording() + Push("0.5", "0.500 m") + "kill\nwait 1\n");
  const std::string cpt = scenario.File(kCpt);
  const std::string without = cpt.substr(0, cpt.rfind('\n', cpt.size() - 2) + 1);
  scenario.disk.Put(kCpt, without + "  0.40");
  scenario.Play(ScriptToPanel() + R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
answer ok "THE SOUNDING FILE WAS MENDED FROM THE TEMPORARY DATA.  AN UNFINISHED)"
                                  R"( LINE WAS TAKEN OUT.  ROWS ADDED: 1."
screen Main
end
)");
  EXPECT_EQ(scenario.File(kCpt), cpt);
}

TEST(CutOff, ByItsClosedWindowGoesOn) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + Push("0.3", "0.300 m") + "end\n");
  scenario.Play(ScriptToResume() + Push("0.3", "0.600 m") + ScriptToEnd());
  ExpectCptDepths(scenario, 20, 30);
}

TEST(CutOff, WhileTheStopQuestionStandsGoesOn) {
  Scenario scenario;
  scenario.TryPlay("script", ScriptToRecording() + Push("0.3", "0.300 m") +
                                 "click Main.cmdStart\nexpect Main.frmLocalWarning visible\n"
                                 "kill\nwait 1\n");
  scenario.Play(ScriptToResume() + Push("0.3", "0.600 m") + ScriptToEnd());
  ExpectCptDepths(scenario, 20, 30);
}

TEST(CutOff, InItsReportPageOrSearchNothingHasChanged) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + Push("0.3", "0.300 m") + "end\n");
  const auto before = scenario.disk.Files();
  scenario.TryPlay("script", ScriptToPanel() + R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
kill
wait 1
)");
  EXPECT_EQ(scenario.disk.Files(), before);
  scenario.Play(ScriptToResume() + Push("0.3", "0.600 m") + ScriptToEnd());
  ExpectCptDepths(scenario, 20, 30);
}

TEST(CutOff, AtItsEndBeforeItIsMarkedDoneIsEndedAgain) {
  Scenario scenario;
  scenario.TryPlay("script", ScriptToRecording() + Push("0.3", "0.300 m") +
                                 "click Main.cmdStart\nclick Main.cmdWarningOK1\n"
                                 "expect Main.frmTakeFinalBaseline visible\nkill\nwait 1\n");
  // The closing lines had reached the file, and "DONE" had not.
  const std::string open = scenario.File(kCpt);
  const std::string closing = "  0.220  2.00             0.30000\r\n";
  scenario.disk.Put(kCpt, open + closing + closing);
  scenario.Play(ScriptToPanel() +
                R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
click frmConeSettings.cmdClose
answer ok "THE SOUNDING FILE WAS MENDED FROM THE TEMPORARY DATA.  LINES OF)"
                R"( AN UNFINISHED END TAKEN OUT: 2."
screen Main
expect Main.cmdStart "STOP"
)" + ScriptToEnd());
  EXPECT_EQ(scenario.File(kTemporary), "DONE\r\n");
  ExpectCptDepths(scenario, 20, 15);
  EXPECT_EQ(scenario.File("/soundings/S1 (2).cpt"), open + closing + closing);
}

// Another cone, another port.

TEST(ResumedCone, OfAnotherNumberIsToldEndsTheProgramAndChangesNothing) {
  std::map<std::string, std::string> files;
  {
    Scenario first;
    first.Play(ScriptToRecording() + Push("0.3", "0.300 m") + "end\n");
    files = first.disk.Files();
  }
  ScenarioSetup setup;
  setup.change_rig = [](RigSetup& rig) { rig.cone.header.id = "DCS0418"; };
  Scenario second(setup);
  for (const auto& [path, content] : files) second.disk.Put(path, content);
  const auto before = second.disk.Files();
  second.Play(ScriptToPanel() + R"(click StartUp.cmdResumeAtLastDepth
answer ok "Cone #DCS0417 is required to resume the last)"
                                R"( sounding.  Please attach it and restart the program."
)");
  EXPECT_EQ(second.disk.Files(), before);
}

TEST(ResumedCone, UnderAnotherNumberIsFoundWithoutAQuestion) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + Push("0.3", "0.300 m") + "rig replug cone 9\nend\n");
  scenario.Play(ScriptToPanel() + R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 300
click frmConeSettings.cmdClose
screen Main
wait 5
)" + Push("0.3", "0.600 m") +
                ScriptToEnd());
  ExpectCptDepths(scenario, 20, 30);
  EXPECT_EQ(LinesOf(scenario.DataFile("System Setup Values.txt"))[setting::kConeSerialPort - 1],
            "9");
}

TEST(ResumedCone, PluggedInMinutesLaterIsFound) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + Push("0.3", "0.300 m") + "rig unplug cone\nend\n");
  scenario.Play(ScriptToPanel() + R"(click StartUp.cmdResumeAtLastDepth
wait 300
expect StartUp.lblLoad "~CONE NOT FOUND|CHECKING FOR CONE"
expect StartUp.cmdCancel enabled
rig plug cone
screen frmConeSettings 120
click frmConeSettings.cmdClose
screen Main
wait 5
)" + Push("0.3", "0.600 m") +
                ScriptToEnd());
  ExpectCptDepths(scenario, 20, 30);
}

TEST(ResumedCone, LostWhileTheAveragesFillGivesNoRowOfHalfReadings) {
  Scenario scenario;
  scenario.Play(ScriptToRecording() + Push("0.4", "0.400 m") + ScriptToSuspend() + kRestart +
                ScriptToPanel() + R"(click StartUp.cmdResumeAtLastDepth
screen frmConeSettings 60
rig fault silent 40s
click frmConeSettings.cmdClose
screen Main
rig push 0.1
wait 60
)" + Push("0.1", "0.600 m") +
                ScriptToEnd());
  const Texts rows = RowsOf(scenario.File(kCpt), kCptHeader);
  const auto tip = [](const std::string& row) { return LeadingNumber(row.substr(13, 20)); };
  ASSERT_GT(rows.size(), 25U);
  for (std::size_t i = 20; i < rows.size(); ++i) {
    EXPECT_GT(tip(rows[i]), 0.9 * tip(rows[19])) << i << ": a part of the window was empty";
  }
}

// The start anew.

TEST(StartAgain, RunsDoAgainOfTheDataDirectoryIfThereIsOne) {
  struct Case {
    const char* file;
    const char* started;
  };
  const std::string folder = VirtualSession::DataDirectory();
  for (const Case& row :
       {Case{"/DoAgain.exe", "/allusers/PENLOG(KQ)/DoAgain.exe"},
        Case{"/DoAgain", "/allusers/PENLOG(KQ)/DoAgain"}, Case{"/DoAgain.txt", "itself"}}) {
    Scenario scenario;
    scenario.disk.Put(folder + row.file, "a program");
    const std::string again = std::string(row.started) == "itself" ? "screen StartUp\nend\n" : "";
    scenario.Play(ScriptToRecording() + Push("0.1", "0.100 m") + ScriptToSuspend() + kRestart +
                  again);
    EXPECT_EQ(scenario.session.host.started, Texts{row.started});
  }
}

TEST(StartAgain, BehindTheEndOfASoundingToo) {
  Scenario scenario;
  scenario.disk.Put(VirtualSession::DataDirectory() + "/DoAgain.exe", "a program");
  std::string script = ScriptToRecording() + Push("0.2", "0.200 m") + ScriptToEnd();
  script.replace(script.rfind("cmdNo"), 5, "cmdYes");
  scenario.Play(script);
  EXPECT_EQ(scenario.session.host.started, Texts{"/allusers/PENLOG(KQ)/DoAgain.exe"});
  EXPECT_EQ(scenario.File(kTemporary), "DONE\r\n");
}

}  // namespace
}  // namespace penlog
